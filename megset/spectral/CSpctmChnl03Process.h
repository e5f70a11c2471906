#pragma once
// Work on a channel's spectrum in place: cuts, normalisations, transforms, statistics of a selection.
// Needs the planes of CSpctmChnl.

#include "megset/platform/CString.h"
#include "megset/spectral/CSpctmChnl01Function.h"

namespace megset {

/// Every operation works on the plane of one data type. An absent plane, a data type other than 0 to 3, and T or F
/// below 1 give 0 or 0.0 and change nothing. Clamped means: a negative index becomes 0, one at or above the limit
/// becomes the limit - 1. No message is shown where none is named.
class CSpctmChnl03Process : public CSpctmChnl01Function
{
public:
    // Cuts

    /// Values below dLow or above dHigh become dFill. NaN stays.
    int cutSpctmDataExtrama(double dLow, double dHigh, double dFill, int nDataType);
    /// Overwrites a band of frequencies, a block of times or a rectangle, ends included, with dFill. Bounds are
    /// clamped; a begin above its end overwrites nothing and gives 1.
    int cutSpctmFreqBlock(std::int64_t iFreqBegin, std::int64_t iFreqEnd, double dFill, int nDataType);
    int cutSpctmTimeBlock(std::int64_t iTimeBegin, std::int64_t iTimeEnd, double dFill, int nDataType);
    int cutSpctmSelect(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin, std::int64_t iFreqEnd,
                       double dFill, int nDataType);

    // Selections: rectangles, ends included

    /// The mean, bounds clamped. 0.0 for an empty one.
    double getSelectSpctmValue(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                               std::int64_t iFreqEnd, int nDataType) const;

    // The next three clamp with an exception: a frequency begin at or above F stays, and sets the time end to F - 1
    // instead, which leaves nothing to read.

    /// Minimum, mean, maximum and root mean square; gives the count of values. Without values the outputs stay as they
    /// are. Of a single value dRms is its plain square.
    std::int64_t getSelectSpctmValueMMMR(int nDataType, std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                         std::int64_t iFreqBegin, std::int64_t iFreqEnd, double& dMin, double& dMean,
                                         double& dMax, double& dRms) const;
    /// Sum and count; gives the low 32 bits of the count. Zeros without values.
    int getSelectSpctmValueX(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                             std::int64_t iFreqEnd, double& dSum, std::int64_t& nCount, int nDataType) const;
    /// The numbers of times and frequencies, then a line for each frequency, highest first, with the values over time;
    /// "No data" without a plane.
    CString getSelectSpctmValue2Txt(int nDataType, std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                    std::int64_t iFreqBegin, std::int64_t iFreqEnd) const;

    // Single frequencies; 0.0 for an index outside 0 .. F - 1

    /// The largest absolute value; NaN is passed over.
    double getSpctmFreqAbsMax(std::int64_t iFreq, int nDataType) const;
    /// The mean over time; without bOneFreq the mean of the plane as last computed by getSpctmRange. 0.0 for a plane
    /// whose first value is 0.0, whatever the others are: it is meant so.
    double getSpctmFreqAverage(std::int64_t iFreq, bool bOneFreq, int nDataType) const;
    /// The mean square. No root is taken: the caller averages over channels first.
    double getSpctmFreqRootMean(std::int64_t iFreq, int nDataType) const;

    // Ranges; each output may be null, and is 0 without a plane

    /// Minimum, maximum and mean, computed and kept, or with bCompute 0 as last kept. The mean is a running one in
    /// which early rows weigh more, as it is meant: a plane of c gives c * (T + 1) / 2.
    int getSpctmRange(double* pMin, double* pMax, double* pMean, int bCompute, int nDataType);
    /// The same of absolute values, always computed and never kept. bCompute is not read.
    int getSpctmRangeAbs(double* pMin, double* pMax, double* pMean, int bCompute, int nDataType) const;

    // Normalisations and transforms

    /// Divides one frequency. 0 with nothing changed for a plane whose first value is 0.0, for an index outside
    /// 0 .. F - 1 and for a divisor of 0.0.
    int globaleNormalSpctmFreq(std::int64_t iFreq, double dDivisor, int nDataType);
    /// v = (v - dOffset) * dScale
    int normSpctmValue2Shrt(double dScale, double dOffset, int nDataType);
    /// Divides each frequency by its mean over time, unless that is 0. dReserved is not read.
    int normalizeSpctm4FreqX(double dReserved, int nDataType);
    /// Divides each frequency by its mean over the baseline iTimeBegin <= t < iTimeEnd, and multiplies with dScale. An
    /// end beyond T counts as T, one below 1 as 1, a begin past the end as the time before it, a negative begin as 0.
    /// 0 for an empty baseline, and without memory ("Not enough memory?!"). Zero baselines give what the division
    /// gives.
    int rootStrip(std::int64_t iTimeBegin, std::int64_t iTimeEnd, double dScale, int nDataType);
    int scaleSpctm(double dScale, int nDataType);
    /// NaN and infinite values become 0.0.
    int setSpctmNAN2zero(int nDataType);
    /// The natural logarithm, without a guard: 0 gives minus infinity, negative values NaN.
    int transformSpctm2log(int nDataType);

private:
    template <class Operation>
    int inPlace(int nDataType, Operation operation);
};

} // namespace megset
