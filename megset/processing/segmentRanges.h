#pragma once
// The ranges of samples that a marker's occurrences cover. Internal to processing/.

#include "megset/records/markers/CMarkerData.h"

#include <cstdint>
#include <vector>

namespace megset {

/// Samples begin to end - 1.
struct SampleSpan
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

/// The marked ranges in ascending order, from sample 0 on, with those that overlap or touch made one.
std::vector<SampleSpan> markedRanges(const CMarkerData& marker);

/// What of samples 0 to `total` - 1 is in none of the marked ranges, in ascending order.
std::vector<SampleSpan> unmarkedRanges(const CMarkerData& marker, std::int64_t total);

/// What is removed when the marked ranges are cut out of `total` samples, counted as a walk over the samples meets the
/// ranges: at a sample inside one, the first in the marker's order, the whole range counts, and the walk goes on behind
/// its end. So of ranges that overlap some samples may count twice: it is meant so.
struct RemovedSamples
{
    bool any = false;
    std::int64_t beforeTrigger = 0; ///< of ranges that begin before sample `last`, up to and with it
};
/// The count for all ranges of the marker.
RemovedSamples countRemoved(const CMarkerData& marker, std::int64_t total, std::int64_t last);

/// Whether the sampling rate is above that of the marker's ranges. One that is below is not noticed, and is meant so.
inline bool hasRateRisen(double rate, const CMarkerData& marker)
{
    constexpr double tolerance = 1e-5;
    return rate - marker.m_dMarkSampleRate > tolerance;
}

} // namespace megset
