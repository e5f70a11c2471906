#include "megset/numeric/channelSumsLoops.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

void takePoint(double v, std::size_t i, const ChannelSumBlock& to) noexcept
{
    to.min[i] = v < to.min[i] ? v : to.min[i];
    to.max[i] = v > to.max[i] ? v : to.max[i];
    to.mean[i] += v;
    (v > 0.0 ? to.positive : to.negative)[i] += v;
}

// As in statisticsLoops.cpp: each path is a namespace whose functions have their target from the start. What they have
// in common is inlined into each of them, so that its target is theirs.
inline __attribute__((always_inline)) void takeTotal(double v, ChannelTotals& t) noexcept
{
    t.all.min = v < t.all.min ? v : t.all.min;
    t.all.max = v > t.all.max ? v : t.all.max;
    t.all.sum += v;
    t.all.sumOfSquares += v * v;
    t.positive += v > 0.0 ? v : 0.0;
    t.negative += v > 0.0 ? 0.0 : v;
}

namespace baseline {
#define MEGSET_TARGET
#define MEGSET_LANES 2
#include "megset/numeric/channelSumsLoops.inc"
} // namespace baseline

#if MEGSET_HAS_MULTIVERSION
namespace avx2 {
#define MEGSET_TARGET __attribute__((target("avx2")))
#define MEGSET_LANES 4
#include "megset/numeric/channelSumsLoops.inc"
} // namespace avx2

namespace avx512 {
#define MEGSET_TARGET __attribute__((target("avx512f")))
#define MEGSET_LANES 8
#include "megset/numeric/channelSumsLoops.inc"
} // namespace avx512
#else
namespace avx2 = baseline;
namespace avx512 = baseline;
#endif

constexpr std::size_t blockPoints = 1024; // 40 KiB of planes, inside the second-level cache with the channels

using Channels = std::span<const std::span<const double>>;

/// Of a block: where a channel stands in it, and how many of its points the channel has.
struct Part
{
    const double* data;
    std::size_t points;
};

Part partOf(std::span<const double> channel, std::size_t begin, std::size_t end) noexcept
{
    const std::size_t last = std::min(channel.size(), end);
    return last > begin ? Part{channel.data() + begin, last - begin} : Part{nullptr, 0};
}

/// The planes of the block as the first channel leaves them, and 0 where it has ended.
void startBlock(const Part& first, std::size_t begin, std::size_t end, const ChannelSumPlanes& planes) noexcept
{
    for (std::size_t i = begin; i < end; ++i) {
        const bool has = i - begin < first.points;
        const double v = has ? first.data[i - begin] : 0.0;
        planes.min[i] = planes.mean[i] = planes.max[i] = v;
        planes.positive[i] = v > 0.0 ? v : 0.0;
        planes.negative[i] = v > 0.0 ? 0.0 : v;
        planes.rms[i] = v * v;
    }
}

ChannelSumBlock blockAt(const ChannelSumPlanes& planes, std::size_t begin) noexcept
{
    return {planes.min.data() + begin, planes.mean.data() + begin, planes.max.data() + begin,
            planes.positive.data() + begin, planes.negative.data() + begin};
}

void sumBlock(Channels channels, std::size_t begin, std::size_t end, const ChannelSumPlanes& planes,
              const ChannelSumsLoops& loops, std::vector<ChannelTotals>& totals)
{
    const Part first = partOf(channels[0], begin, end);
    startBlock(first, begin, end, planes);
    for (std::size_t i = 0; i < first.points; ++i)
        takeTotal(first.data[i], totals[0]);
    const ChannelSumBlock to = blockAt(planes, begin);
    const std::size_t whole = (end - begin) / loops.channels * loops.channels;
    for (std::size_t c = 1; c < channels.size();) {
        const double* group[ChannelSumsLoops::mostChannels] = {};
        std::size_t together = 0;
        while (together < loops.channels && c + together < channels.size() && channels[c + together].size() >= end) {
            group[together] = channels[c + together].data() + begin;
            ++together;
        }
        if (together == loops.channels) {
            loops.several(group, whole, to, &totals[c]);
            const ChannelSumBlock rest = blockAt(planes, begin + whole);
            for (std::size_t k = 0; k < together; ++k)
                loops.one(group[k] + whole, end - begin - whole, rest, &totals[c + k]);
            c += together;
        } else {
            const Part part = partOf(channels[c], begin, end);
            loops.one(part.data, part.points, to, &totals[c]);
            ++c;
        }
    }
}

/// The totals so far of a channel that has not begun. Those of the first channel start from its first value, so that a
/// first value that is no number stays.
ChannelTotals unbegun(bool isFirst, std::span<const double> channel) noexcept
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (!isFirst)
        return {{infinity, -infinity}};
    const double v = channel.empty() ? 0.0 : channel[0];
    return {{v, v}};
}

void add(ChannelSumTotals& sums, const ChannelTotals& channel, std::size_t points) noexcept
{
    if (points == 0)
        return;
    const auto n = static_cast<double>(points);
    sums.min = channel.all.min < sums.min ? channel.all.min : sums.min;
    sums.max = channel.all.max > sums.max ? channel.all.max : sums.max;
    sums.mean += channel.all.sum / n;
    sums.positive += channel.positive / n;
    sums.negative += channel.negative / n;
    sums.rms += channel.all.sumOfSquares / n;
}

/// The divisors. Half of n, and the root mean square, are as the header tells: it is meant so.
void finish(std::size_t channels, const ChannelSumPlanes& planes, ChannelSumTotals& sums) noexcept
{
    if (channels < 2)
        return;
    const auto n = static_cast<double>(channels);
    const double half = n * 0.5;
    divideInPlace(planes.mean, n);
    divideInPlace(planes.positive, half);
    divideInPlace(planes.negative, half);
    for (double& v : planes.rms)
        v = std::sqrt(v / n);
    sums.mean /= n;
    sums.positive /= half;
    sums.negative /= half;
    sums.rms = std::sqrt(sums.rms / half);
}

void clear(const ChannelSumPlanes& planes) noexcept
{
    for (const std::span<double> plane :
         {planes.min, planes.mean, planes.max, planes.positive, planes.negative, planes.rms})
        std::fill(plane.begin(), plane.end(), 0.0);
}

} // namespace

const ChannelSumsLoops& channelSumsLoops(ProcessorPath path) noexcept
{
    return loopsOf(path, baseline::loops, avx2::loops, avx512::loops);
}

ChannelSumTotals sumChannels(Channels channels, const ChannelSumPlanes& planes, const ChannelSumsLoops& loops)
{
    if (channels.empty()) {
        clear(planes);
        return {};
    }
    std::vector<ChannelTotals> totals;
    totals.reserve(channels.size());
    for (const std::span<const double> channel : channels)
        totals.push_back(unbegun(totals.empty(), channel));

    const std::size_t points = planes.min.size();
    for (std::size_t begin = 0; begin < points; begin += blockPoints)
        sumBlock(channels, begin, std::min(begin + blockPoints, points), planes, loops, totals);

    ChannelSumTotals sums;
    sums.min = totals[0].all.min;
    sums.max = totals[0].all.max;
    for (std::size_t c = 0; c < channels.size(); ++c)
        add(sums, totals[c], std::min(channels[c].size(), points));
    finish(channels.size(), planes, sums);
    return sums;
}

} // namespace megset::numeric
