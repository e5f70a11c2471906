#include "megset/numeric/shrink.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::shrink_test {
namespace {

struct Blocks
{
    std::size_t made = 0;
    std::vector<float> max;
    std::vector<float> min;
};

Blocks shrunk(const std::vector<double>& samples, std::size_t blockSamples, std::size_t blocks)
{
    Blocks result{0, std::vector<float>(blocks, -7.0F), std::vector<float>(blocks, -7.0F)};
    result.made = shrink(samples, blockSamples, result.max, result.min);
    return result;
}

// The walk as it is defined, with the extremes held as floats.
Blocks plainlyShrunk(const std::vector<double>& samples, std::size_t blockSamples, std::size_t blocks)
{
    Blocks result{0, std::vector<float>(blocks, 0.0F), std::vector<float>(blocks, 0.0F)};
    std::size_t s = 0;
    for (std::size_t i = 0; i < blocks && s + blockSamples < samples.size(); ++i) {
        float& max = result.max[i] = static_cast<float>(samples[s]);
        float& min = result.min[i] = static_cast<float>(samples[s]);
        for (std::size_t k = s + 1; k < s + blockSamples; ++k) {
            if (samples[k] < static_cast<double>(min))
                min = static_cast<float>(samples[k]);
            else if (samples[k] > static_cast<double>(max))
                max = static_cast<float>(samples[k]);
        }
        ++result.made;
        s += blockSamples + 1;
    }
    return result;
}

::testing::AssertionResult sameFloats(const std::vector<float>& a, const std::vector<float>& b)
{
    const std::vector<double> wideA(a.begin(), a.end());
    const std::vector<double> wideB(b.begin(), b.end());
    return sameSamples(wideA, wideB);
}

void expectPlainResult(const std::vector<double>& samples, std::size_t blockSamples, std::size_t blocks)
{
    SCOPED_TRACE(::testing::Message() << samples.size() << " samples, " << blockSamples << " in a block");
    const Blocks actual = shrunk(samples, blockSamples, blocks);
    const Blocks expected = plainlyShrunk(samples, blockSamples, blocks);
    EXPECT_EQ(actual.made, expected.made);
    EXPECT_TRUE(sameFloats(actual.max, expected.max));
    EXPECT_TRUE(sameFloats(actual.min, expected.min));
}

} // namespace

TEST(NumericShrink, OneSampleBetweenTwoBlocksIsNeverLookedAt)
{
    const Blocks blocks = shrunk({1, 5, 3, 100, -2, -8, 4, -100, 9, 9, 9, 9}, 3, 4);
    EXPECT_EQ(blocks.made, 3U);
    EXPECT_EQ(blocks.max, (std::vector<float>{5, 4, 9, 0}));
    EXPECT_EQ(blocks.min, (std::vector<float>{1, -8, 9, 0}));
}

TEST(NumericShrink, LastBlocksOfATraceStayZero)
{
    const Blocks blocks = shrunk(std::vector<double>(100, 2.5), 5, 20);
    EXPECT_EQ(blocks.made, 16U);
    std::vector<float> expected(16, 2.5F);
    expected.resize(20, 0.0F);
    EXPECT_EQ(blocks.max, expected);
    EXPECT_EQ(blocks.min, expected);
}

TEST(NumericShrink, ABlockThatFillsTheTraceIsNotMade)
{
    EXPECT_EQ(shrunk({1, 2, 3, 4, 5}, 5, 1).made, 0U);
    EXPECT_EQ(shrunk({1, 2, 3, 4, 5, 6}, 5, 1).made, 1U);
}

TEST(NumericShrink, NoSamplesAndBlocksOfNoSampleGiveZeros)
{
    for (const auto& samples : {std::vector<double>{}, std::vector<double>(10, 1.0)}) {
        const Blocks blocks = shrunk(samples, 0, 3);
        EXPECT_EQ(blocks.made, 0U);
        EXPECT_EQ(blocks.max, std::vector<float>(3, 0.0F));
        EXPECT_EQ(blocks.min, std::vector<float>(3, 0.0F));
    }
    EXPECT_EQ(shrunk({}, 5, 2).made, 0U);
}

TEST(NumericShrink, BlockLongerThanAnyTraceGivesZeros)
{
    EXPECT_EQ(shrunk({1, 2, 3}, SIZE_MAX, 2).max, std::vector<float>(2, 0.0F));
}

TEST(NumericShrink, ShorterResultBoundsTheBlocks)
{
    const std::vector<double> samples(100, 1.0);
    std::vector<float> max(4, -7.0F);
    std::vector<float> min(2, -7.0F);
    EXPECT_EQ(shrink(samples, 5, max, min), 2U);
    EXPECT_EQ(max, (std::vector<float>{1, 1, 0, 0}));
    EXPECT_EQ(min, (std::vector<float>{1, 1}));
}

TEST(NumericShrink, NanStaysAtTheStartOfABlockAndIsPassedOverElsewhere)
{
    const double nan = std::nan("");
    const Blocks blocks = shrunk({nan, 1, 2, 0, 3, nan, 2, 0}, 3, 2);
    EXPECT_TRUE(std::isnan(blocks.max[0]) && std::isnan(blocks.min[0]));
    EXPECT_EQ(blocks.max[1], 3.0F);
    EXPECT_EQ(blocks.min[1], 2.0F);
}

TEST(NumericShrink, GivesTheBitsOfThePlainWalk)
{
    for (const std::size_t n : lengths)
        for (const std::size_t blockSamples : {1U, 2U, 5U, 6U, 8U, 15U, 16U, 17U, 33U, 1000U}) {
            const std::size_t blocks = n / blockSamples;
            expectPlainResult(randomSamples(n, 1), blockSamples, blocks);
            expectPlainResult(awkwardSamples(n, 2, false), blockSamples, blocks);
            expectPlainResult(awkwardSamples(n, 3, true), blockSamples, blocks);
        }
}

TEST(NumericShrink, ZerosKeepTheSignOfThePlainWalk)
{
    for (const double tiny : {1e-310, -1e-310}) // a zero as float
        for (const double zero : {0.0, -0.0})
            for (const std::size_t blockSamples : {7U, 200U}) {
                std::vector<double> samples(blockSamples + 1, tiny);
                samples[3] = zero;
                expectPlainResult(samples, blockSamples, 1);
                samples[0] = zero;
                samples[3] = tiny;
                expectPlainResult(samples, blockSamples, 1);
            }
}

TEST(NumericShrink, ValuesThatDifferByLessThanAFloatTells)
{
    std::vector<double> samples;
    for (std::size_t i = 0; i < 5000; ++i)
        samples.push_back(1.0 + static_cast<double>((i * 7919) % 997) * 1e-9);
    for (const std::size_t blockSamples : {5U, 50U, 500U})
        expectPlainResult(samples, blockSamples, samples.size() / blockSamples);
}

} // namespace megset::numeric::shrink_test
