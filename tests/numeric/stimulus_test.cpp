#include "megset/numeric/stimulus.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/cut.h"
#include "tests/numeric/reference.h"

#include <gtest/gtest.h>

namespace megset::numeric::stimulus_test {
namespace {

/// Zeros with pulses now and then, as a stimulus line is, and now and then something that must not be taken for zero.
std::vector<double> stimulus(std::size_t n, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<double> x(n);
    for (std::size_t i = 0; i < n; ++i)
        if (random() % 97 == 0)
            for (const std::size_t end = std::min(n, i + 1 + random() % 5); i < end; ++i)
                x[i] = static_cast<double>(random() % 20) - 4.0;
    for (double& v : x)
        if (random() % 301 == 0)
            v = -0.0;
    return x;
}

/// The same on a line that is nowhere at zero.
std::vector<double> noisyStimulus(std::size_t n, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.1, 0.05);
    std::vector<double> x = stimulus(n, seed);
    for (double& v : x)
        v += noise(random);
    return x;
}

std::vector<std::vector<double>> allSamples()
{
    std::vector<std::vector<double>> all;
    for (const std::size_t n : lengths) {
        all.push_back(stimulus(n, static_cast<unsigned>(n)));
        all.push_back(std::vector<double>(n, 0.0));
        all.push_back(std::vector<double>(n, -0.0));
        all.push_back(randomSamples(n, static_cast<unsigned>(n)));
        all.push_back(awkwardSamples(n, static_cast<unsigned>(n), true));
        all.push_back(noisyStimulus(n, static_cast<unsigned>(n)));
    }
    return all;
}

SampleRange plainRange(std::span<const double> x)
{
    if (x.empty())
        return {};
    SampleRange range{x[0], x[0], 0.0, x[0]};
    for (const double v : x) {
        range.min = v < range.min ? v : range.min;
        range.max = v > range.max ? v : range.max;
        range.maxAbsolute = std::fabs(v) > range.maxAbsolute ? std::fabs(v) : range.maxAbsolute;
        range.sum += v;
    }
    return range;
}

void expectSameRange(const SampleRange& a, const SampleRange& b)
{
    EXPECT_EQ(a.min == b.min || (std::isnan(a.min) && std::isnan(b.min)), true) << a.min << " and " << b.min;
    EXPECT_EQ(a.max == b.max || (std::isnan(a.max) && std::isnan(b.max)), true) << a.max << " and " << b.max;
    EXPECT_TRUE(sameBits(a.maxAbsolute, b.maxAbsolute)) << a.maxAbsolute << " and " << b.maxAbsolute;
    EXPECT_TRUE(sameBits(a.sum, b.sum)) << a.sum << " and " << b.sum;
}

TEST(StimulusRange, IsThatOfAPlainLoopToTheBit)
{
    for (const auto& x : allSamples())
        expectSameRange(rangeOf(x), plainRange(x));
}

TEST(StimulusRange, CountsTheFirstSampleTwiceInTheSum)
{
    const std::vector<double> x = {3.0, 1.0, -5.0};
    const SampleRange range = rangeOf(x);
    EXPECT_EQ(range.sum, 2.0);
    EXPECT_EQ(range.maxAbsolute, 5.0);
}

TEST(StimulusLevels, AreTakenFromTheAbsoluteValuesAsAPlainLoopDoes)
{
    for (const auto& x : allSamples())
        for (const double level : {0.0, 1.5, -1.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
            std::vector<double> expected = x;
            for (double& v : expected) {
                v = std::fabs(v) - level;
                v = v < 0.0 ? 0.0 : v;
            }
            std::vector<double> above = x;
            const SampleRange range = absoluteAbove(above, level);
            EXPECT_TRUE(sameSamples(above, expected));
            expectSameRange(range, plainRange(expected));
        }
}

TEST(StimulusLevels, TheSmallestAndTheMeanAbsoluteValueAreThoseOfAPlainLoop)
{
    for (const auto& x : allSamples()) {
        double smallest = x.empty() ? 0.0 : std::fabs(x[0]);
        double mean = x.empty() ? 0.0 : std::fabs(x[0]) / static_cast<double>(x.size());
        for (const double v : x) {
            smallest = std::fabs(v) < smallest ? std::fabs(v) : smallest;
            mean += std::fabs(v) / static_cast<double>(x.size());
        }
        EXPECT_TRUE(sameBits(minAbsolute(x), smallest));
        EXPECT_TRUE(sameBits(meanAbsolute(x), mean));
    }
}

TEST(StimulusLevels, ConditioningGoesByTheBlocksThatTheLevelLeft)
{
    using Level = double (*)(Row, StimulusBlocks&) noexcept;
    for (const Level levelOf : {Level{minAbsolute}, Level{meanAbsolute}}) {
        for (const auto& x : allSamples()) {
            for (const std::size_t room : {x.size(), x.size() / 2, std::size_t{0}}) {
                StimulusBlocks blocks(room);
                std::vector<double> conditioned = x;
                const double level = levelOf(conditioned, blocks);
                const SampleRange range = absoluteAbove(conditioned, level, blocks);
                std::vector<double> expected = x;
                for (double& v : expected) {
                    v = std::fabs(v) - level;
                    v = v < 0.0 ? 0.0 : v;
                }
                EXPECT_TRUE(sameSamples(conditioned, expected));
                expectSameRange(range, plainRange(expected));
            }
        }
    }
}

TEST(StimulusLevels, NothingBehindAZeroIsReadForTheSmallest)
{
    std::vector<double> x(4 * StimulusBlocks::samples, 1.0);
    x[300] = -0.0;
    StimulusBlocks blocks(x.size());
    EXPECT_TRUE(sameBits(minAbsolute(x, blocks), 0.0));
    EXPECT_EQ(blocks.described(), 2U);
}

TEST(StimulusBlocks, TellWhatABlockHolds)
{
    std::vector<double> x(3 * StimulusBlocks::samples, 0.0);
    x[StimulusBlocks::samples] = -0.0;
    x[2 * StimulusBlocks::samples + 5] = -3.0;
    x.back() = std::nan("");
    StimulusBlocks blocks(x.size());
    rangeOf(x, blocks);
    ASSERT_EQ(blocks.described(), 3U);
    EXPECT_TRUE(blocks[0].isZero);
    EXPECT_FALSE(blocks[1].isZero);
    EXPECT_EQ(blocks[1].max, 0.0);
    EXPECT_EQ(blocks[2].min, -3.0);
    EXPECT_EQ(blocks[2].max, 0.0);
    meanAbsolute(x, blocks);
    EXPECT_EQ(blocks[2].min, 0.0);
    EXPECT_EQ(blocks[2].max, 3.0);
}

TEST(StimulusBlocks, WithoutMemoryNoneAreKept)
{
    StimulusBlocks none;
    none.set(0, {});
    EXPECT_EQ(none.described(), 0U);
    StimulusBlocks two(StimulusBlocks::samples + 1);
    two.set(1, {}); // not the next one
    EXPECT_EQ(two.described(), 0U);
    two.set(0, {});
    two.set(1, {});
    two.set(2, {});
    EXPECT_EQ(two.described(), 2U);
}

template <class Passes>
void expectRuns(const std::vector<double>& x, Passes passes, auto next)
{
    std::size_t at = 0;
    for (;;) {
        std::size_t begin = at;
        while (begin < x.size() && !passes(x[begin]))
            ++begin;
        std::size_t end = begin;
        while (end < x.size() && passes(x[end]))
            ++end;
        const Run run = next(at);
        ASSERT_EQ(run.begin, begin);
        ASSERT_EQ(run.end, end);
        if (begin == end)
            return;
        at = end;
    }
}

void expectPlainRuns(const std::vector<double>& x, const StimulusBlocks& blocks)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double level : {0.0, 0.5, 3.0, -1.0, -infinity, infinity, std::nan("")}) {
        expectRuns(
            x, [=](double v) { return v > level; }, [&](std::size_t at) { return nextRunAbove(x, level, at, blocks); });
        for (const double centre : {0.0, 2.25, -infinity, std::nan("")})
            expectRuns(
                x, [=](double v) { return std::fabs(v - centre) > level; },
                [&](std::size_t at) { return nextRunApart(x, centre, level, at, blocks); });
    }
}

TEST(StimulusRuns, AreThoseOfAPlainLoop)
{
    for (const auto& x : allSamples())
        expectPlainRuns(x, {});
}

TEST(StimulusRuns, AreTheSameWhereBlocksArePassedOver)
{
    for (const auto& x : allSamples()) {
        StimulusBlocks blocks(x.size());
        rangeOf(x, blocks);
        EXPECT_EQ(blocks.described(), (x.size() + StimulusBlocks::samples - 1) / StimulusBlocks::samples);
        expectPlainRuns(x, blocks);
        StimulusBlocks half(x.size() / 2);
        rangeOf(x, half);
        expectPlainRuns(x, half);
        for (const double level : {0.0, 0.1, 1.5, -1.0}) {
            std::vector<double> above = x;
            absoluteAbove(above, level, blocks = StimulusBlocks(x.size()));
            expectPlainRuns(above, blocks);
        }
    }
}

TEST(StimulusRuns, ABlockWithoutASampleThatPassesIsNotRead)
{
    std::vector<double> x(4 * StimulusBlocks::samples, 0.25);
    StimulusBlocks blocks(x.size());
    rangeOf(x, blocks);
    x[300] = x[800] = 7.0; // unknown to the blocks
    blocks.set(3, {0.25, 7.0, false});
    EXPECT_EQ(nextRunAbove(x, 0.5, 0, blocks).begin, 800U);
    EXPECT_EQ(nextRunApart(x, 0.0, 0.5, 0, blocks).begin, 800U);
    EXPECT_EQ(nextRunAbove(x, 0.5, 0).begin, 300U);
}

TEST(StimulusRuns, BehindTheEndThereIsNone)
{
    const std::vector<double> x = {1.0, 1.0};
    for (const std::size_t from : {2U, 3U, 1000U}) {
        EXPECT_EQ(nextRunAbove(x, 0.0, from).begin, 2U);
        EXPECT_EQ(nextRunApart(x, 0.0, 0.0, from).end, 2U);
    }
}

TEST(Cut, BringsWhatAnIntegerCantHoldToTheNearestEnd)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(cutToInt(-2.9), -2);
    EXPECT_EQ(cutToInt(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(cutToInt(-infinity), std::numeric_limits<int>::min());
    EXPECT_EQ(cutToInt(std::nan("")), 0);
    EXPECT_EQ(cutToCount(2.9), 2);
    EXPECT_EQ(cutToCount(9.3e18), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(cutToCount(-infinity), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(cutToCount(std::nan("")), 0);
}

TEST(Arithmetic, SubtractsOneValueFromAll)
{
    for (const std::size_t n : lengths) {
        std::vector<double> x = randomSamples(n, 7);
        std::vector<double> expected = x;
        for (double& v : expected)
            v -= 12.5;
        subtractInPlace(x, 12.5);
        EXPECT_TRUE(sameSamples(x, expected));
    }
}

} // namespace
} // namespace megset::numeric::stimulus_test
