#include "megset/numeric/resample.h"

#include "tests/numeric/reference.h"

#include <algorithm>

namespace megset::numeric::resample_test {

namespace {

std::vector<double> plainPick(const std::vector<double>& x, std::size_t factor, std::size_t n)
{
    std::vector<double> to(n);
    for (std::size_t k = 0, s = 0; k < n; ++k, s += factor)
        to[k] = x[std::min(s, x.size() - 1)];
    return to;
}

std::vector<double> plainAverage(const std::vector<double>& x, std::size_t factor, std::size_t n)
{
    std::vector<double> to(n);
    const std::size_t last = x.size() - 1;
    for (std::size_t k = 0, s = 0; k < n; ++k, s += factor) {
        s = std::min(s, last);
        double sum = 0.0;
        for (std::size_t j = 0; j < factor; ++j)
            sum += x[std::min(s + j, last)];
        to[k] = sum / static_cast<double>(factor);
    }
    return to;
}

std::vector<double> picked(const std::vector<double>& x, std::size_t factor, std::size_t n)
{
    std::vector<double> to(n, 42.0);
    pickEvery(x, factor, to);
    return to;
}

std::vector<double> averaged(const std::vector<double>& x, std::size_t factor, std::size_t n)
{
    std::vector<double> to(n, 42.0);
    averageEvery(x, factor, to);
    return to;
}

} // namespace

TEST(NumericResample, PicksTheFirstSampleOfEachRun)
{
    EXPECT_EQ(picked({1, 2, 3, 4, 5, 6, 7}, 3, 3), (std::vector<double>{1, 4, 7}));
}

TEST(NumericResample, AveragesEachRun)
{
    EXPECT_EQ(averaged({1, 2, 3, 4, 5, 9}, 3, 2), (std::vector<double>{2, 6}));
}

TEST(NumericResample, RepeatsTheLastSampleBehindTheEnd)
{
    EXPECT_EQ(picked({1, 2, 3}, 2, 5), (std::vector<double>{1, 3, 3, 3, 3}));
    EXPECT_EQ(averaged({1, 2, 3, 8}, 3, 4), (std::vector<double>{2, 8, 8, 8}));
    EXPECT_EQ(averaged({2, 4, 6}, 2, 3), (std::vector<double>{3, 6, 6})) << "a run that the end cuts short";
}

TEST(NumericResample, AShorterTargetTakesTheFirstRuns)
{
    EXPECT_EQ(picked({1, 2, 3, 4, 5, 6}, 2, 2), (std::vector<double>{1, 3}));
    EXPECT_EQ(averaged({1, 3, 3, 5, 5, 7}, 2, 2), (std::vector<double>{2, 4}));
    EXPECT_TRUE(picked({1, 2}, 1, 0).empty());
    EXPECT_TRUE(averaged({1, 2}, 2, 0).empty());
}

TEST(NumericResample, WritesNothingForNoSamples)
{
    EXPECT_EQ(picked({}, 2, 2), (std::vector<double>{42, 42}));
    EXPECT_EQ(averaged({}, 2, 2), (std::vector<double>{42, 42}));
}

TEST(NumericResample, ARunMayBeLongerThanTheSamples)
{
    EXPECT_EQ(averaged({1, 2}, 4, 2), (std::vector<double>{1.75, 2}));
    EXPECT_EQ(picked({1, 2}, std::numeric_limits<std::size_t>::max(), 3), (std::vector<double>{1, 2, 2}));
}

TEST(NumericResample, TheSumBeginsAtZero)
{
    EXPECT_TRUE(sameBits(averaged({-0.0, -0.0}, 2, 1)[0], 0.0));
    EXPECT_TRUE(sameBits(picked({-0.0, 1}, 2, 1)[0], -0.0));
}

TEST(NumericResample, AgreesWithThePlainLoopsToTheBit)
{
    for (const std::size_t n : lengths) {
        if (n == 0)
            continue;
        for (const std::size_t factor : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 16U, 17U, 100U, 2501U, 6000U}) {
            SCOPED_TRACE(::testing::Message() << n << " samples by " << factor);
            for (const std::size_t to : {n / factor, n / factor + 1, n / factor + 3}) {
                const auto ordinary = randomSamples(n, static_cast<unsigned>(factor));
                const auto awkward = awkwardSamples(n, static_cast<unsigned>(factor), true);
                EXPECT_TRUE(sameSamples(picked(ordinary, factor, to), plainPick(ordinary, factor, to)));
                EXPECT_TRUE(sameSamples(picked(awkward, factor, to), plainPick(awkward, factor, to)));
                EXPECT_TRUE(sameSamples(averaged(ordinary, factor, to), plainAverage(ordinary, factor, to)));
                EXPECT_TRUE(sameSamples(averaged(awkward, factor, to), plainAverage(awkward, factor, to)));
            }
        }
    }
}

TEST(NumericResample, AgreesWithThePlainLoopsForRandomFactors)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const std::size_t n = 1 + random() % 20000;
        const std::size_t factor = 1 + random() % (round % 2 == 0 ? 12 : n);
        const auto x = randomSamples(n, static_cast<unsigned>(random()));
        const std::size_t to = n / factor + 1;
        EXPECT_TRUE(sameSamples(picked(x, factor, to), plainPick(x, factor, to))) << n << " by " << factor;
        EXPECT_TRUE(sameSamples(averaged(x, factor, to), plainAverage(x, factor, to))) << n << " by " << factor;
    }
}

} // namespace megset::numeric::resample_test
