#pragma once
// A value for every pair of sources or channels, time point and frequency point.

#include "megset/records/results/SpctmAxes.h"
#include "megset/records/results/resultArrays.h"

#include <vector>

namespace megset {

/// What a pair refers to.
struct CohPair
{
    void exchangeFields(CArchive& ar);
    bool operator==(const CohPair&) const = default;

    std::int32_t m_nChannel = -1;   ///< index in the trial's channels, or among the sources; -1: none
    std::int32_t m_nReference = -1; ///< the other one, likewise
};

/// A table of pairs with a plane of T x F values each.
struct PairPlanes : SpctmAxes
{
    std::int64_t getTotalPair() const { return static_cast<std::int64_t>(m_aPair.size()); }
    /// Makes room for `pairs` pairs of T x F values, all zero and without channels. 1, or 0 and an empty table.
    int setSize(std::int64_t timePt, std::int64_t freqPt, std::int64_t pairs);
    /// The value of a pair. -1 stands for the begin of the selection in time and frequency, and for the current pair.
    /// noValue where there is none.
    double getValue(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair) const;
    /// Stores a value, with the same meaning of -1: 1, or 0 outside.
    int setValue(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair, double value);
    /// The fields in a file: 1, or 0 when the values don't fit the axes.
    int exchangePlanes(CArchive& ar);

    bool operator==(const PairPlanes&) const = default;

    std::int64_t m_nCurrentPair = 0;
    std::vector<CohPair> m_aPair;
    std::vector<double> m_aValue; ///< [pair][time][frequency]

private:
    std::int64_t indexOf(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair) const;
};

} // namespace megset
