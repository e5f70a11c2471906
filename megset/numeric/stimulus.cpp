#include "megset/numeric/stimulus.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "megset/numeric/multiversion.h"
#include "megset/numeric/statisticsLoops.h"

namespace megset::numeric {

namespace {

constexpr std::size_t stimulusBlock = 1024; // 8 KiB, well inside the first-level cache
constexpr std::size_t groupSamples = 64;

// Whether a group holds nothing but +0.0.
inline __attribute__((always_inline)) bool isZeroGroup(const double* x) noexcept
{
    std::uint64_t bits = 0;
    for (std::size_t k = 0; k < groupSamples; ++k)
        bits |= std::bit_cast<std::uint64_t>(x[k]);
    return bits == 0;
}

MEGSET_MULTIVERSION double stimulusSum(const double* x, std::size_t n, double sum) noexcept
{
    std::size_t i = 0;
    for (; i + groupSamples <= n; i += groupSamples) {
        if (isZeroGroup(x + i)) {
            sum += 0.0; // makes a sum of -0.0 positive, as each of the group's zeros would
            continue;
        }
        for (std::size_t k = 0; k < groupSamples; ++k)
            sum += x[i + k];
    }
    for (; i < n; ++i)
        sum += x[i];
    return sum;
}

// The divisions stand alone, so that only the additions wait for each other.
MEGSET_MULTIVERSION double stimulusMeanAbsolute(const double* x, std::size_t n, double divisor, double sum) noexcept
{
    std::array<double, groupSamples> parts;
    std::size_t i = 0;
    for (; i + groupSamples <= n; i += groupSamples) {
        if (isZeroGroup(x + i))
            continue;
        for (std::size_t k = 0; k < groupSamples; ++k)
            parts[k] = std::fabs(x[i + k]) / divisor;
        for (std::size_t k = 0; k < groupSamples; ++k)
            sum += parts[k];
    }
    for (; i < n; ++i)
        sum += std::fabs(x[i]) / divisor;
    return sum;
}

inline __attribute__((always_inline)) double aboveLevel(double x, double level) noexcept
{
    const double above = std::fabs(x) - level;
    return above < 0.0 ? 0.0 : above;
}

MEGSET_MULTIVERSION void stimulusAbove(double* x, std::size_t n, double level) noexcept
{
    const bool zeroStays = level >= 0.0;
    std::size_t i = 0;
    for (; i + groupSamples <= n; i += groupSamples) {
        if (zeroStays && isZeroGroup(x + i))
            continue; // and need not be written
        for (std::size_t k = 0; k < groupSamples; ++k)
            x[i + k] = aboveLevel(x[i + k], level);
    }
    for (; i < n; ++i)
        x[i] = aboveLevel(x[i], level);
}

// Several chains, because each comparison waits for the one before it. All begin alike, so that a NaN in the first
// place stays in all of them.
MEGSET_MULTIVERSION double stimulusMinAbsolute(const double* x, std::size_t n) noexcept
{
    constexpr std::size_t chains = 16;
    std::array<double, chains> least;
    least.fill(std::fabs(x[0]));
    std::size_t i = 0;
    for (; i + chains <= n; i += chains)
        for (std::size_t c = 0; c < chains; ++c)
            least[c] = std::fabs(x[i + c]) < least[c] ? std::fabs(x[i + c]) : least[c];
    double result = least[0];
    for (const double v : least)
        result = v < result ? v : result;
    for (; i < n; ++i)
        result = std::fabs(x[i]) < result ? std::fabs(x[i]) : result;
    return result;
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

template <class Test>
inline __attribute__((always_inline)) Run nextRun(const double* x, std::size_t n, std::size_t from,
                                                  Test passes) noexcept
{
    const std::size_t begin = firstPassing(x, n, from, passes);
    return {begin, firstPassing(x, n, begin, [passes](double v) { return !passes(v); })};
}

MEGSET_MULTIVERSION Run stimulusRunAbove(const double* x, std::size_t n, std::size_t from, double level) noexcept
{
    return nextRun(x, n, from, [level](double v) { return v > level; });
}

MEGSET_MULTIVERSION Run stimulusRunApart(const double* x, std::size_t n, std::size_t from, double centre,
                                         double distance) noexcept
{
    return nextRun(x, n, from, [centre, distance](double v) { return std::fabs(v - centre) > distance; });
}

// Takes the samples block by block, while they are in cache.
class RangeSoFar
{
public:
    void take(Row block) noexcept
    {
        if (m_isFirst) {
            m_range = {block.front(), block.front()};
            m_sum = block.front();
            m_isFirst = false;
        }
        m_loops.continueMinMax(block.data(), block.size(), m_range);
        m_sum = stimulusSum(block.data(), block.size(), m_sum);
    }

    /// The range of `all`, which are the samples taken.
    SampleRange of(Row all) const noexcept
    {
        // Behind a NaN in the first place the extremes are not known.
        const double largest =
            std::isnan(m_range.min) ? maxAbsolute(all) : std::max(std::fabs(m_range.min), std::fabs(m_range.max));
        return {m_range.min, m_range.max, largest, m_sum};
    }

private:
    const StatisticsLoops& m_loops = statisticsLoops(currentProcessorPath());
    MinMax m_range;
    double m_sum = 0.0;
    bool m_isFirst = true;
};

} // namespace

SampleRange rangeOf(Row x) noexcept
{
    RangeSoFar range;
    for (std::size_t from = 0; from < x.size(); from += stimulusBlock)
        range.take(x.subspan(from, std::min(stimulusBlock, x.size() - from)));
    return range.of(x);
}

SampleRange absoluteAbove(std::span<double> x, double level) noexcept
{
    RangeSoFar range;
    for (std::size_t from = 0; from < x.size(); from += stimulusBlock) {
        const auto block = x.subspan(from, std::min(stimulusBlock, x.size() - from));
        stimulusAbove(block.data(), block.size(), level);
        range.take(block);
    }
    return range.of(x);
}

double minAbsolute(Row x) noexcept
{
    return x.empty() ? 0.0 : stimulusMinAbsolute(x.data(), x.size());
}

double meanAbsolute(Row x) noexcept
{
    if (x.empty())
        return 0.0;
    const double count = static_cast<double>(x.size());
    return stimulusMeanAbsolute(x.data(), x.size(), count, std::fabs(x.front()) / count);
}

Run nextRunAbove(Row x, double level, std::size_t from) noexcept
{
    return stimulusRunAbove(x.data(), x.size(), std::min(from, x.size()), level);
}

Run nextRunApart(Row x, double centre, double distance, std::size_t from) noexcept
{
    return stimulusRunApart(x.data(), x.size(), std::min(from, x.size()), centre, distance);
}

} // namespace megset::numeric
