#pragma once
// The bottom of the chain of a sum channel: statistics over the channels of a trial, as planes and as a whole, for one
// spectral class and one data type. The layers above add operations and no fields; the chain has no virtual operation.

#include "megset/platform/memory.h"

#include <cstdint>

namespace megset {

/// The planes are those of a channel's spectrum: T x F doubles, time-major.
class CSumChnlSpctmData
{
public:
    CSumChnlSpctmData() = default;
    CSumChnlSpctmData(const CSumChnlSpctmData&) = delete;
    CSumChnlSpctmData& operator=(const CSumChnlSpctmData&) = delete;
    ~CSumChnlSpctmData();

    /// Makes sure that all six planes exist with this shape; new ones are zero, those of this shape keep their content.
    /// Another shape clears the object first. 0 for T or F below 1, and without memory, which leaves the object empty.
    int checkInit(std::int64_t nTimePt, std::int64_t nFreqPt);
    /// Deletes the planes and zeroes all other fields, except the three of absolute values. 1.
    int clean();

    // Fields, in the order in which the chain declares them.

    std::int64_t m_nTimePt = 0; ///< T
    std::int64_t m_nFreqPt = 0; ///< F
    SampleArray m_pSumMin;      ///< smallest value over the channels at each point
    SampleArray m_pSumMean;
    SampleArray m_pSumMax;
    SampleArray m_pSumPositive; ///< sum of the positive values, divided
    SampleArray m_pSumNegative; ///< sum of the values at or below 0, divided
    SampleArray m_pSumRms;
    int m_nRangeValid = 0;        ///< 1: the range fields below are valid
    std::int64_t m_nChannels = 0; ///< channels that contributed
    double m_dRangeMax = 0.0;     ///< over all channels, times and frequencies
    double m_dRangeMean = 0.0;
    double m_dRangeMin = 0.0;
    double m_dRangePositive = 0.0; ///< mean of the positive values
    double m_dRangeNegative = 0.0; ///< mean of the negative values
    double m_dRangeRms = 0.0;
    double m_dAbsMax = 0.0; ///< of the absolute values; these three outlive clean()
    double m_dAbsMean = 0.0;
    double m_dAbsMin = 0.0;
    double m_dReserved1 = 0.0; ///< carried through the file
    double m_dReserved2 = 0.0;
    double m_dReserved3 = 0.0;
};

} // namespace megset
