#pragma once
// Planes derived from a channel's spectrum, and values of single frequencies.
// Needs the planes of CSpctmChnl.

#include "megset/numeric/planes.h"
#include "megset/spectral/CSpctmChnl.h"

namespace megset {

/// An absent plane, a data type other than 0 to 3, and T or F below 1 give 0, null or 0.0.
class CSpctmChnl01Function : public CSpctmChnl
{
public:
    /// M from R and I, made when it is missing: sqrt((R*R + I*I) * 0.5), which gives 2; without I sqrt(R*R), which
    /// gives 1. The factor belongs to what magnitude means here. 0 without R or memory.
    int computeMagnitude();
    /// A from R and I in radians, made when it is missing: atan2(I, R), which gives 2; without I atan(R), which gives
    /// 1. 0 without R or memory.
    int computePhase();
    /// Computes M and gives it a sign: that of R (nPolarity 1), of I (2), or of the one that is larger in absolute
    /// value, R on a tie (3). 0 when there is no M to compute; 0, with M computed, for another polarity and when the
    /// I that is asked for is absent.
    int setPolarity2Magnitude(int nPolarity);

    /// pOut[t] = the value of that frequency at time t, for the first nTimePt times. 0 when nTimePt is above T or iFreq
    /// outside 0 .. F - 1.
    int getOneFreqBandData(int nDataType, double* pOut, std::int64_t iFreq, std::int64_t nTimePt) const;
    /// The same from iTimeBegin up to, and not including, iTimeEnd; both must lie in 0 .. T - 1, in this order.
    int getOneFreqBandDataTbe(int nDataType, double* pOut, std::int64_t iFreq, std::int64_t iTimeBegin,
                              std::int64_t iTimeEnd) const;

    /// The standard deviation over time of each frequency of R, I, M or A (division by T), in an array of nFreqOut
    /// values that the caller deletes. Before, nFreqOut is brought into 1 .. F, and -1 becomes F. With fewer than F
    /// the later frequencies begin anew at the first place: it is meant so. Null without memory.
    double* getStdR_T1Fn(std::int64_t& nFreqOut) const { return getStd(0, nFreqOut); }
    double* getStdI_T1Fn(std::int64_t& nFreqOut) const { return getStd(1, nFreqOut); }
    double* getStdM_T1Fn(std::int64_t& nFreqOut) const { return getStd(2, nFreqOut); }
    double* getStdA_T1Fn(std::int64_t& nFreqOut) const { return getStd(3, nFreqOut); }

protected:
    /// The plane of a data type; empty when it is absent or T or F below 1.
    numeric::Plane plane(int nDataType) const;
    /// 0 .. F - 1
    bool isFreqIndex(std::int64_t iFreq) const { return iFreq >= 0 && iFreq < m_nFreqPt; }

private:
    bool makePlane(SampleArray& samples) const;
    double* getStd(int nDataType, std::int64_t& nFreqOut) const;
};

} // namespace megset
