#pragma once
// Time and frequency axes of spectral results, with the selection on them.

#include "megset/platform/CArchive.h"

#include <cstdint>

namespace megset {

/// The axes of planes of T x F values.
struct SpctmAxes
{
    /// Sample number in the trial of a time point, which is limited to 0 .. T - 1.
    std::int64_t getSpctmTimePt(std::int64_t iTime) const;
    /// Frequency of a frequency point in Hz, which is limited to 0 .. F - 1.
    double getSpctmFreqHz(std::int64_t iFreq) const;
    void exchangeAxes(CArchive& ar);

    bool operator==(const SpctmAxes&) const = default;

    std::int64_t m_nTimePt = 0;     ///< T
    std::int64_t m_nFreqPt = 0;     ///< F
    std::int64_t m_nDataBegin = 0;  ///< first sample of the trial that was analysed
    std::int64_t m_nEdgePt = 0;     ///< samples trimmed at each end of it
    std::int64_t m_nTimeStep = 1;   ///< samples between two time points
    double m_dFreqBegin = 0;        ///< lowest frequency, Hz
    double m_dFreqLinearStep = 1.0; ///< Hz between frequency points
    std::int64_t m_nSelectTimeBegin = 0;
    std::int64_t m_nSelectTimeEnd = 0;
    std::int64_t m_nSelectFreqBegin = 0;
    std::int64_t m_nSelectFreqEnd = 0;
};

} // namespace megset
