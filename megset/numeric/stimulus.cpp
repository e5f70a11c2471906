#include "megset/numeric/stimulus.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "megset/numeric/fetchAhead.h"
#include "megset/numeric/multiversion.h"
#include "megset/numeric/statisticsLoops.h"
#include "megset/numeric/stimulusLoops.h"
#include "megset/platform/memory.h"

namespace megset::numeric {

namespace {

constexpr std::size_t stimulusBlock = StimulusBlocks::samples;
constexpr std::size_t stimulusGroup = 64;

// These loops go without vectors of 512 bits, which take a port away from their dependent scalar additions.

// Whether a group holds nothing but +0.0.
inline __attribute__((always_inline)) bool isZeroGroup(const double* x) noexcept
{
    std::uint64_t bits = 0;
    for (std::size_t k = 0; k < stimulusGroup; ++k)
        bits |= std::bit_cast<std::uint64_t>(x[k]);
    return bits == 0;
}

// How many samples, from the first on, are nothing but +0.0: in whole groups, or all.
MEGSET_MULTIVERSION_256 std::size_t leadingZeros(const double* x, std::size_t n) noexcept
{
    std::size_t i = 0;
    for (; i + stimulusGroup <= n; i += stimulusGroup)
        if (!isZeroGroup(x + i))
            return i;
    for (std::size_t k = i; k < n; ++k)
        if (std::bit_cast<std::uint64_t>(x[k]) != 0)
            return i;
    return n;
}

// The same from the last one on, for samples of which some are not.
MEGSET_MULTIVERSION_256 std::size_t trailingZeros(const double* x, std::size_t n) noexcept
{
    std::size_t left = n;
    while (left >= stimulusGroup && isZeroGroup(x + left - stimulusGroup))
        left -= stimulusGroup;
    return n - left;
}

// The samples but for +0.0 before and behind; none when they are nothing else.
template <class Value>
std::span<Value> withoutZeros(std::span<Value> x) noexcept
{
    x = x.subspan(leadingZeros(x.data(), x.size()));
    return x.first(x.size() - trailingZeros(x.data(), x.size()));
}

MEGSET_MULTIVERSION_256 double stimulusSum(const double* x, std::size_t n, double sum) noexcept
{
    std::size_t i = 0;
    for (; i + stimulusGroup <= n; i += stimulusGroup) {
        if (isZeroGroup(x + i)) {
            sum += 0.0; // makes a sum of -0.0 positive, as each of the group's zeros would
            continue;
        }
        for (std::size_t k = 0; k < stimulusGroup; ++k)
            sum += x[i + k];
    }
    for (; i < n; ++i)
        sum += x[i];
    return sum;
}

// Several chains, because each comparison waits for the one before it. NaN is passed over.
MEGSET_MULTIVERSION_256 void stimulusAbsoluteRange(const double* x, std::size_t n, double& min, double& max) noexcept
{
    constexpr std::size_t chains = 32;
    std::array<double, chains> least;
    std::array<double, chains> most;
    least.fill(min);
    most.fill(max);
    std::size_t i = 0;
    for (; i + chains <= n; i += chains) {
        fetchLinesAhead(x + i, chains);
        for (std::size_t c = 0; c < chains; ++c) {
            const double v = std::fabs(x[i + c]);
            least[c] = v < least[c] ? v : least[c];
            most[c] = v > most[c] ? v : most[c];
        }
    }
    for (; i < n; ++i) {
        const double v = std::fabs(x[i]);
        least[0] = v < least[0] ? v : least[0];
        most[0] = v > most[0] ? v : most[0];
    }
    for (std::size_t half = chains / 2; half > 0; half /= 2) {
        for (std::size_t c = 0; c < half; ++c) {
            least[c] = least[c + half] < least[c] ? least[c + half] : least[c];
            most[c] = most[c + half] > most[c] ? most[c + half] : most[c];
        }
    }
    min = least[0];
    max = most[0];
}

// The first index from `from` on whose sample passes; n when there is none.
template <class Test>
inline __attribute__((always_inline)) std::size_t firstPassing(const double* x, std::size_t n, std::size_t from,
                                                               Test passes) noexcept
{
    constexpr std::size_t together = 32;
    for (; from + together <= n; from += together) {
        std::int64_t hits = 0;
        for (std::size_t k = 0; k < together; ++k)
            hits += passes(x[from + k]) ? std::int64_t{1} : std::int64_t{0};
        if (hits != 0)
            break;
    }
    while (from < n && !passes(x[from]))
        ++from;
    return from;
}

// A test that passes for a sample between two others passes for one of these, so that a block's extremes tell.
template <class Test>
inline __attribute__((always_inline)) Run nextRun(Row x, std::size_t from, const StimulusBlocks& blocks,
                                                  Test passes) noexcept
{
    const std::size_t n = x.size();
    while (from < n) {
        std::size_t block = from / stimulusBlock;
        while (block < blocks.described() && !passes(blocks[block].min) && !passes(blocks[block].max))
            ++block;
        const bool isDescribed = block < blocks.described();
        const std::size_t end = isDescribed ? std::min((block + 1) * stimulusBlock, n) : n;
        from = firstPassing(x.data(), end, std::max(from, std::min(block * stimulusBlock, n)), passes);
        if (from < end)
            return {from, firstPassing(x.data(), n, from, [passes](double v) { return !passes(v); })};
    }
    return {n, n};
}

MEGSET_MULTIVERSION_256 Run stimulusRunAbove(Row x, std::size_t from, const StimulusBlocks& blocks,
                                             double level) noexcept
{
    return nextRun(x, from, blocks, [level](double v) { return v > level; });
}

MEGSET_MULTIVERSION_256 Run stimulusRunApart(Row x, std::size_t from, const StimulusBlocks& blocks, double centre,
                                             double distance) noexcept
{
    return nextRun(x, from, blocks, [centre, distance](double v) { return std::fabs(v - centre) > distance; });
}

template <class Value>
std::span<Value> blockOf(std::span<Value> x, std::size_t block) noexcept
{
    const std::size_t from = block * stimulusBlock;
    return x.subspan(from, std::min(stimulusBlock, x.size() - from));
}

std::size_t blockCount(std::size_t samples) noexcept
{
    return samples / stimulusBlock + (samples % stimulusBlock != 0 ? 1 : 0);
}

// What a block holds before the samples other than +0.0 are read.
StimulusBlock blockBefore(Row samples, Row all) noexcept
{
    if (samples.size() == all.size())
        return {};
    return {0.0, 0.0, samples.empty()};
}

StimulusBlock describeAbsolute(Row x) noexcept
{
    const Row some = withoutZeros(x);
    StimulusBlock block = blockBefore(some, x);
    if (!some.empty())
        stimulusAbsoluteRange(some.data(), some.size(), block.min, block.max);
    return block;
}

// The block that becomes of one of absolute values: what the level does to them keeps their order.
StimulusBlock blockAbove(const StimulusBlock& block, double level) noexcept
{
    if (block.max < block.min)
        return {};
    return {aboveLevel(block.min, level), aboveLevel(block.max, level), false};
}

// Range and sum of a row, taken block by block.
class RangeSoFar
{
public:
    explicit RangeSoFar(double first) noexcept : sum(first), m_range{first, first} {}

    void take(const StimulusBlock& block) noexcept
    {
        m_range.min = block.min < m_range.min ? block.min : m_range.min;
        m_range.max = block.max > m_range.max ? block.max : m_range.max;
    }

    /// The range of `all`, which are the samples taken.
    SampleRange of(Row all) const noexcept
    {
        // Behind a NaN in the first place the extremes are not known.
        const double largest =
            std::isnan(m_range.min) ? maxAbsolute(all) : std::max(std::fabs(m_range.min), std::fabs(m_range.max));
        return {m_range.min, m_range.max, largest, sum};
    }

    double sum;

private:
    MinMax m_range;
};

} // namespace

StimulusBlocks::StimulusBlocks(std::size_t n) noexcept
    : m_blocks(tryNewArray<StimulusBlock>(static_cast<std::int64_t>(blockCount(n)))),
      m_room(m_blocks != nullptr ? blockCount(n) : 0)
{
}

SampleRange rangeOf(Row x, StimulusBlocks& blocks) noexcept
{
    blocks.clear();
    if (x.empty())
        return {};
    const StatisticsLoops& loops = statisticsLoops(currentProcessorPath());
    RangeSoFar range(x.front());
    for (std::size_t i = 0; i < blockCount(x.size()); ++i) {
        const Row samples = blockOf(x, i);
        StimulusBlock block{0.0, 0.0, leadingZeros(samples.data(), samples.size()) == samples.size()};
        if (block.isZero) {
            range.sum += 0.0;
        } else {
            MinMax extremes{StimulusBlock().min, StimulusBlock().max};
            loops.continueMinMax(samples.data(), samples.size(), extremes);
            block = {extremes.min, extremes.max, false};
            range.sum = stimulusSum(samples.data(), samples.size(), range.sum);
        }
        range.take(block);
        blocks.set(i, block);
    }
    return range.of(x);
}

SampleRange rangeOf(Row x) noexcept
{
    StimulusBlocks none;
    return rangeOf(x, none);
}

double minAbsolute(Row x, StimulusBlocks& blocks) noexcept
{
    blocks.clear();
    if (x.empty())
        return 0.0;
    double smallest = std::fabs(x.front());
    for (std::size_t i = 0; i < blockCount(x.size()); ++i) {
        if (!(smallest > 0.0)) // there is no smaller one, or it is a NaN that stays
            break;
        const Row samples = blockOf(x, i);
        const StimulusBlock block = describeAbsolute(samples);
        smallest = block.min < smallest ? block.min : smallest;
        blocks.set(i, block);
    }
    return smallest;
}

double minAbsolute(Row x) noexcept
{
    StimulusBlocks none;
    return minAbsolute(x, none);
}

double meanAbsolute(Row x, StimulusBlocks& blocks) noexcept
{
    blocks.clear();
    if (x.empty())
        return 0.0;
    const StimulusLoops& loops = stimulusLoops(currentProcessorPath());
    const double count = static_cast<double>(x.size());
    GrowingSum mean(std::fabs(x.front()) / count);
    for (std::size_t i = 0; i < blockCount(x.size()); ++i) {
        const Row all = blockOf(x, i);
        const Row samples = withoutZeros(all);
        StimulusBlock block = blockBefore(samples, all);
        if (!samples.empty()) {
            MinMax range{block.min, block.max};
            loops.addAbsolute(samples.data(), samples.size(), count, mean, range);
            block = {range.min, range.max, false};
        }
        blocks.set(i, block);
    }
    return mean.value();
}

double meanAbsolute(Row x) noexcept
{
    StimulusBlocks none;
    return meanAbsolute(x, none);
}

SampleRange absoluteAbove(std::span<double> x, double level, StimulusBlocks& blocks) noexcept
{
    if (x.empty())
        return {};
    const StimulusLoops& loops = stimulusLoops(currentProcessorPath());
    const bool zeroStays = level >= 0.0;
    RangeSoFar range(aboveLevel(x.front(), level));
    GrowingSum sum(range.sum);
    for (std::size_t i = 0; i < blockCount(x.size()); ++i) {
        const std::span<double> samples = blockOf(x, i);
        StimulusBlock block = i < blocks.described() ? blocks[i] : describeAbsolute(samples);
        if (!block.isZero || !zeroStays) {
            const std::span<double> changed = zeroStays ? withoutZeros(samples) : samples;
            loops.addAbove(changed.data(), changed.size(), level, sum);
            block = blockAbove(block, level);
        }
        range.take(block);
        blocks.set(i, block);
    }
    range.sum = sum.value();
    return range.of(x);
}

SampleRange absoluteAbove(std::span<double> x, double level) noexcept
{
    StimulusBlocks none;
    return absoluteAbove(x, level, none);
}

Run nextRunAbove(Row x, double level, std::size_t from, const StimulusBlocks& blocks) noexcept
{
    return stimulusRunAbove(x, from, blocks, level);
}

Run nextRunApart(Row x, double centre, double distance, std::size_t from, const StimulusBlocks& blocks) noexcept
{
    return stimulusRunApart(x, from, blocks, centre, distance);
}

} // namespace megset::numeric
