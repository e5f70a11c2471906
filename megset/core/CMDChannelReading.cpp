// What is read from a channel's working samples: a range of them, its mean and its statistics.
#include "megset/core/CMDChannel.h"

#include "megset/numeric/statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace megset {

CMDChannel::SampleRange CMDChannel::resolveRange(std::int64_t from, std::int64_t to) const
{
    if (waveSpan().empty())
        return {};
    const std::int64_t last = m_nTotalSample - 1;
    const auto resolved = [&](std::int64_t end) {
        return end == -1 ? std::clamp<std::int64_t>(m_nCurrentSample, 0, last) : std::min(end, last);
    };
    // Other negative values are not told apart: a start before the samples is moved to the first one, and an end before
    // them leaves the range reversed. It is kept at -2, so that differences of the two don't overflow.
    return {std::max<std::int64_t>(resolved(from), 0), std::max<std::int64_t>(resolved(to), -2), true};
}

std::span<const double> CMDChannel::samplesOf(const SampleRange& range) const
{
    return waveSpan().subspan(static_cast<std::size_t>(range.from),
                              static_cast<std::size_t>(range.to - range.from + 1));
}

// The samples that statistics use: the first of the range always counts, so a reversed range is one of a single sample.
std::span<const double> CMDChannel::statisticsSpan(std::int64_t from, std::int64_t to) const
{
    SampleRange range = resolveRange(from, to);
    if (!range.hasSamples)
        return {};
    range.to = std::max(range.from, range.to);
    return samplesOf(range);
}

double CMDChannel::getCurrentV(std::int64_t from, std::int64_t to) const
{
    const SampleRange range = resolveRange(from, to);
    if (!range.isForward())
        return 0.0;
    const auto samples = samplesOf(range);
    const double sum = numeric::sum(samples, numeric::noStart);
    return samples.size() >= 2 ? sum / static_cast<double>(samples.size()) : sum;
}

std::int64_t CMDChannel::getSelectData(double*& out, std::int64_t from, std::int64_t to) const
{
    const SampleRange range = resolveRange(from, to);
    if (out == nullptr || !range.isForward())
        return 0;
    const auto samples = samplesOf(range);
    std::memmove(out, samples.data(), samples.size_bytes());
    return std::ssize(samples);
}

namespace {

void give(double* target, double value)
{
    if (target != nullptr)
        *target = value;
}

// Of `count` samples, at least one. The sums are divided only where there is more than one.
ChannelStatistics statisticsOf(const numeric::RowStatistics& sums, std::size_t count)
{
    if (count == 1) // the root mean square of a single sample is its plain square: it is meant so
        return {1, sums.min, sums.mean, sums.max, sums.sumOfSquares, 0.0, sums.mean};
    const double divisor = static_cast<double>(count);
    const double deviation = std::sqrt(sums.sumOfSquaredDeviations / divisor);
    return {static_cast<std::int64_t>(count),
            sums.min,
            sums.mean,
            sums.max,
            std::sqrt(sums.sumOfSquares / divisor),
            deviation,
            sums.mean + 2.0 * deviation};
}

// The first sample is left out of the squared deviations and counts in the divisor: it is meant so.
constexpr std::size_t deviationsFrom = 1;

} // namespace

std::int64_t CMDChannel::getSelectMinMeaMaxV(std::int64_t from, std::int64_t to, double* min, double* mean, double* max,
                                             double* meanSquare) const
{
    const auto samples = statisticsSpan(from, to);
    if (samples.empty())
        return 0;
    const numeric::SampleStatistics sums = numeric::statistics(samples, numeric::noStart);
    const double divisor = static_cast<double>(samples.size());
    give(min, sums.min);
    give(mean, sums.sum / divisor);
    give(max, sums.max);
    give(meanSquare, sums.sumOfSquares / divisor);
    return std::ssize(samples);
}

// Sums up the range of as many channels as `results` hold, in blocks: `sumUp(rows, sums)` fills one Sums for each row,
// `finish(channel, sums, row)` makes the result of it. Channels without samples have a plain one.
template <class Sums, class Result, class SumUp, class Finish>
void CMDChannel::readInBlocks(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                              std::span<Result> results, SumUp sumUp, Finish finish)
{
    constexpr std::size_t blockChannels = 64;
    channels = channels.first(std::min(channels.size(), results.size()));
    for (std::size_t begin = 0; begin < channels.size(); begin += blockChannels) {
        std::array<numeric::Row, blockChannels> rows;
        std::array<Sums, blockChannels> sums;
        const std::size_t count = std::min(blockChannels, channels.size() - begin);
        for (std::size_t i = 0; i < count; ++i)
            if (const CMDChannel* channel = channels[begin + i])
                rows[i] = channel->statisticsSpan(from, to);
        sumUp(std::span(rows).first(count), std::span(sums));
        for (std::size_t i = 0; i < count; ++i)
            results[begin + i] = rows[i].empty() ? Result() : finish(*channels[begin + i], sums[i], rows[i]);
    }
}

void CMDChannel::getSelectMinMeaMaxV(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                                     std::span<ChannelMeans> out)
{
    using Sums = numeric::SampleStatistics;
    readInBlocks<Sums>(
        channels, from, to, out, [](auto rows, auto sums) { numeric::statisticsOfRows(rows, sums, numeric::noStart); },
        [=](const CMDChannel& channel, const Sums& sums, numeric::Row row) {
            return channel.meansOf(sums, row, from, to);
        });
}

ChannelMeans CMDChannel::meansOf(const numeric::SampleStatistics& sums, std::span<const double> samples,
                                 std::int64_t from, std::int64_t to) const
{
    const double divisor = static_cast<double>(samples.size());
    const double mean = sums.sum / divisor;
    return {std::ssize(samples),
            sums.min,
            mean,
            sums.max,
            sums.sumOfSquares / divisor,
            resolveRange(from, to).isForward() ? mean : 0.0};
}

std::int64_t CMDChannel::getSelectMinMeaMaxSdV(std::int64_t from, std::int64_t to, double* min, double* mean,
                                               double* max, double* rms, double* sd, double* meanPlus2Sd) const
{
    const auto samples = statisticsSpan(from, to);
    if (samples.empty())
        return 0;
    const ChannelStatistics result =
        statisticsOf(numeric::describe(samples, deviationsFrom, numeric::noStart), samples.size());
    give(min, result.min);
    give(mean, result.mean);
    give(max, result.max);
    give(rms, result.rms);
    give(sd, result.sd);
    give(meanPlus2Sd, result.meanPlus2Sd);
    return result.samples;
}

void CMDChannel::getSelectMinMeaMaxSdV(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                                       std::span<ChannelStatistics> out)
{
    using Sums = numeric::RowStatistics;
    readInBlocks<Sums>(
        channels, from, to, out,
        [](auto rows, auto sums) { numeric::describeRows(rows, sums, deviationsFrom, numeric::noStart); },
        [](const CMDChannel&, const Sums& sums, numeric::Row row) { return statisticsOf(sums, row.size()); });
}

} // namespace megset
