// The loops behind numeric/channelSums, one set per processor path. Internal to numeric/ and its tests.
#pragma once

#include <cstddef>

#include "megset/numeric/channelSums.h"
#include "megset/numeric/processorPath.h"
#include "megset/numeric/statistics.h"

namespace megset::numeric {

/// Where the planes of a block begin.
struct ChannelSumBlock
{
    double* min;
    double* mean;
    double* max;
    double* positive;
    double* negative;
};

/// What the values of one channel are so far.
struct ChannelTotals
{
    SampleStatistics all;
    double positive = 0.0;
    double negative = 0.0;
};

/// The loops of one processor path.
struct ChannelSumsLoops
{
    static constexpr std::size_t mostChannels = 8;

    std::size_t channels; ///< how many channels the loop over several takes at once

    /// Takes the first n values of one channel into the planes of a block and its own totals.
    void (*one)(const double* x, std::size_t n, const ChannelSumBlock& to, ChannelTotals* totals);
    /// The same of `channels` channels, one after the other at every point; n is a multiple of `channels`.
    void (*several)(const double* const* x, std::size_t n, const ChannelSumBlock& to, ChannelTotals* totals);
};

/// The loops of a path. A path that this build does not have gives the baseline.
const ChannelSumsLoops& channelSumsLoops(ProcessorPath path) noexcept;

/// sumChannels by the loops of a path.
ChannelSumTotals sumChannels(std::span<const std::span<const double>> channels, const ChannelSumPlanes& planes,
                             const ChannelSumsLoops& loops);

} // namespace megset::numeric
