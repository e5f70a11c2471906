#include "apps/phantom/portable.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace megset::phantom::portable_test {

namespace {

TEST(SineOfTurns, AgreesWithTheLibrarysSine)
{
    for (int i = -1024; i <= 1024; ++i) {
        const double turns = i / 1024.0;
        EXPECT_NEAR(sineOfTurns(turns), std::sin(2 * std::numbers::pi * turns), 2e-15) << turns;
        EXPECT_NEAR(cosineOfTurns(turns), std::cos(2 * std::numbers::pi * turns), 2e-15) << turns;
    }
}

TEST(SineOfTurns, ComesAgainWithEveryTurn)
{
    for (int i = 0; i < 1024; ++i)
        for (const int turns : {-1000, -3, 1, 2, 100000})
            EXPECT_EQ(sineOfTurns(turns + i / 1024.0), sineOfTurns(i / 1024.0)) << turns << ' ' << i;
}

TEST(SineOfTurns, IsExactAtWholeAndHalfTurns)
{
    EXPECT_EQ(sineOfTurns(0), 0);
    EXPECT_EQ(sineOfTurns(1), 0);
    EXPECT_EQ(sineOfTurns(-2.5), 0);
    EXPECT_NEAR(sineOfTurns(0.25), 1, 1e-15);
    EXPECT_NEAR(sineOfTurns(0.75), -1, 1e-15);
}

TEST(RandomStream, GivesTheSameNumbersForTheSameSeedAndStream)
{
    RandomStream one(7, 3);
    RandomStream same(7, 3);
    RandomStream otherSeed(8, 3);
    RandomStream otherStream(7, 4);
    for (int i = 0; i < 100; ++i) {
        const std::uint64_t value = one.next();
        EXPECT_EQ(value, same.next());
        EXPECT_NE(value, otherSeed.next());
        EXPECT_NE(value, otherStream.next());
    }
}

TEST(RandomStream, UniformNumbersFillTheRangeEvenly)
{
    RandomStream random(1, 1);
    std::vector<int> counts(10);
    for (int i = 0; i < 100000; ++i)
        ++counts.at(static_cast<std::size_t>(10 * random.uniform()));
    for (const int count : counts)
        EXPECT_NEAR(count, 10000, 400);
}

TEST(RandomStream, NormalNumbersHaveTheMomentsOfTheBellCurve)
{
    RandomStream random(1, 2);
    constexpr int numbers = 400000;
    double sum = 0;
    double squares = 0;
    int beyondTwo = 0;
    for (int i = 0; i < numbers; ++i) {
        const double value = random.normal();
        sum += value;
        squares += value * value;
        beyondTwo += std::abs(value) > 2 ? 1 : 0;
    }
    EXPECT_NEAR(sum / numbers, 0, 0.006);
    EXPECT_NEAR(squares / numbers, 1, 0.01);
    EXPECT_NEAR(beyondTwo / double(numbers), 0.0455, 0.002);
}

TEST(NarrowBandNoise, HasVarianceOneAndItsFrequency)
{
    constexpr double rate = 1000;
    NarrowBandNoise noise(10, 1.5, rate, RandomStream(3, 1));
    constexpr int samples = 400000;
    double squares = 0;
    int crossings = 0;
    double last = noise.next();
    for (int i = 0; i < samples; ++i) {
        const double value = noise.next();
        squares += value * value;
        crossings += last < 0 && value >= 0 ? 1 : 0;
        last = value;
    }
    EXPECT_NEAR(squares / samples, 1, 0.1);
    EXPECT_NEAR(crossings / (samples / rate), 10, 1);
}

} // namespace

} // namespace megset::phantom::portable_test
