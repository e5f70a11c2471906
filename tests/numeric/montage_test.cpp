#include "megset/numeric/montage.h"

#include "tests/numeric/reference.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::numeric::montage_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SignalSums, AreFormedInOrderAndThenDivided)
{
    const std::vector<double> a = {1.0, 2.0, 3.0};
    const std::vector<double> b = {10.0, 20.0};
    const WeightedSignal signals[] = {{a, 2.0}, {b, -1.0}};
    std::vector<double> to(4, 99.0);
    signalSum({signals, 4.0}, to);
    EXPECT_THAT(to, ElementsAre(-2.0, -4.0, 1.5, 0.0));
}

TEST(SignalSums, AreNotDividedByADivisorOfZeroOrBelow)
{
    const std::vector<double> a = {1.0, -2.0};
    const WeightedSignal signals[] = {{a, 3.0}};
    for (const double divisor : {0.0, -0.0, -4.0, std::nan("")}) {
        std::vector<double> to(2);
        signalSum({signals, divisor}, to);
        EXPECT_THAT(to, ElementsAre(3.0, -6.0));
    }
}

TEST(SignalSums, OfNothingAreZero)
{
    std::vector<double> to(3, 5.0);
    signalSum({{}, 2.0}, to);
    EXPECT_THAT(to, ElementsAre(0.0, 0.0, 0.0));
    signalSum({{}, 2.0}, {});
}

TEST(ReferenceOfMany, EndsWithTheLengthAndWithEachTarget)
{
    const std::vector<double> a = {1.0, 2.0, 3.0, 4.0};
    const WeightedSignal signals[] = {{a, 1.0}};
    std::vector<double> x(4, 10.0);
    std::vector<double> shorter(2, 10.0);
    std::vector<double> none;
    const std::span<double> targets[] = {x, none, shorter};
    subtractFromEach({signals, 0.0}, 3, targets);
    EXPECT_THAT(x, ElementsAre(9.0, 8.0, 7.0, 10.0));
    EXPECT_THAT(shorter, ElementsAre(9.0, 8.0));
    addToEach({signals, 0.0}, 6, targets);
    EXPECT_THAT(x, ElementsAre(10.0, 10.0, 10.0, 14.0));
    EXPECT_THAT(shorter, ElementsAre(10.0, 10.0));
    EXPECT_THAT(none, IsEmpty());
}

TEST(ReferenceOfOne, IsWhatItHasBecomeForTheTargetsAfterIt)
{
    std::vector<double> a = {10.0, 20.0};
    std::vector<double> reference = {1.0, 2.0};
    std::vector<double> b = {30.0, 40.0};
    const std::span<double> targets[] = {a, reference, b};
    subtractFromEach(reference, targets);
    EXPECT_THAT(a, ElementsAre(9.0, 18.0));
    EXPECT_THAT(reference, ElementsAre(0.0, 0.0));
    EXPECT_THAT(b, ElementsAre(30.0, 40.0));
    reference = {1.0, 2.0};
    addToEach(reference, targets);
    EXPECT_THAT(a, ElementsAre(10.0, 20.0));
    EXPECT_THAT(reference, ElementsAre(2.0, 4.0));
    EXPECT_THAT(b, ElementsAre(32.0, 44.0));
}

// Signals of many lengths against loops over one signal and one target at a time.
TEST(ReferencesOfRandomSignals, AreThoseOfPlainLoopsToTheBit)
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        std::vector<std::vector<double>> x;
        for (unsigned k = 0; k < 9; ++k) {
            const std::size_t n = lengths[(k * 5 + seed * 3) % lengths.size()];
            x.push_back(seed % 3 == 2 ? awkwardSamples(n, seed * 100 + k, true) : randomSamples(n, seed * 100 + k));
        }
        std::vector<std::vector<double>> expected = x;
        const double divisor = seed % 2 == 0 ? 3.0 : 0.0;
        const std::size_t length = std::max({x[1].size(), x[4].size(), x[7].size()});

        std::vector<double> sum(length, 0.0);
        for (const std::size_t k : {4U, 1U, 7U, 4U})
            for (std::size_t i = 0; i < x[k].size(); ++i)
                sum[i] += x[k][i] * (0.1 + static_cast<double>(k));
        if (divisor > 0.0)
            for (double& value : sum)
                value /= divisor;
        for (const std::size_t k : {0U, 1U, 4U, 8U, 1U})
            for (std::size_t i = 0; i < std::min(length, x[k].size()); ++i)
                expected[k][i] -= sum[i];

        std::vector<WeightedSignal> signals;
        for (const std::size_t k : {4U, 1U, 7U, 4U})
            signals.push_back({x[k], 0.1 + static_cast<double>(k)});
        std::vector<double> formed(length);
        signalSum({signals, divisor}, formed);
        EXPECT_TRUE(sameSamples(formed, sum)) << seed;
        std::vector<std::span<double>> targets;
        for (const std::size_t k : {0U, 1U, 4U, 8U, 1U})
            targets.emplace_back(x[k]);
        subtractFromEach({signals, divisor}, length, targets);
        for (std::size_t k = 0; k < x.size(); ++k)
            EXPECT_TRUE(sameSamples(x[k], expected[k])) << seed << ' ' << k;

        for (const std::size_t k : {3U, 2U, 5U, 6U})
            for (std::size_t i = 0; i < std::min(expected[2].size(), expected[k].size()); ++i)
                expected[k][i] += expected[2][i];
        const std::span<double> others[] = {x[3], x[2], x[5], x[6]};
        addToEach(x[2], others);
        for (std::size_t k = 0; k < x.size(); ++k)
            EXPECT_TRUE(sameSamples(x[k], expected[k])) << seed << ' ' << k;
    }
}

// Enough signals for the pass over four, with ends inside and at the bounds of blocks.
TEST(SumsOfManySignals, AreFormedOneAfterTheOtherToTheBit)
{
    for (const bool awkward : {false, true})
        for (std::size_t count = 0; count < 14; ++count) {
            std::vector<std::vector<double>> x;
            std::vector<WeightedSignal> signals;
            for (unsigned k = 0; k < count; ++k) {
                const std::size_t n = k % 5 == 3 ? 256 + 10 * k : 1100;
                x.push_back(awkward ? awkwardSamples(n, k, true) : randomSamples(n, k));
                signals.push_back({x.back(), 0.3 * k - 1.0});
            }
            std::vector<double> expected(1100, 0.0);
            for (std::size_t k = 0; k < count; ++k)
                for (std::size_t i = 0; i < x[k].size(); ++i)
                    expected[i] += x[k][i] * signals[k].weight;
            for (double& value : expected)
                value /= 7.0;
            std::vector<double> to(1100);
            signalSum({signals, 7.0}, to);
            EXPECT_TRUE(sameSamples(to, expected)) << count;
        }
}

} // namespace
} // namespace megset::numeric::montage_test
