#include "megset/numeric/stimulusLoops.h"

#include "tests/numeric/reference.h"

#include <gtest/gtest.h>

namespace megset::numeric::stimulusLoops_test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Around powers of two, where a sum's unit changes, and what has no unit.
const std::vector<double> starts = {0.0,           5e-324,       1e-310,     1e-290, 1.0,        1.0 + 0x1p-52,
                                    2.0 - 0x1p-52, 0x1p52,       0x1p53 - 1, 0x1p53, 0x1.8p1000, 0x1.fp1023,
                                    infinity,      std::nan(""), 0x1p-1022,  1e-3,   1024 - 1e-9};

/// Values from 0 on, of one size.
std::vector<double> ofOneSize(std::size_t n, double size)
{
    std::mt19937_64 random(n);
    std::uniform_real_distribution<double> uniform(0.0, size);
    std::vector<double> x(n);
    for (double& v : x)
        v = uniform(random);
    return x;
}

/// Multiples of 2^-53, of which half are half-way between two numbers from 1 on.
std::vector<double> oftenHalfWay(std::size_t n, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<double> x(n);
    for (double& v : x)
        v = static_cast<double>(random() % 1000) * 0x1p-53;
    return x;
}

/// Of any size from 0 on, with a NaN or an infinity now and then when there is an `odd` one.
std::vector<double> ofManySizes(std::size_t n, unsigned seed, double odd)
{
    std::mt19937 random(seed);
    std::vector<double> x(n);
    for (double& v : x)
        v = random() % 400 == 0 ? odd : std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 80) - 90);
    return x;
}

std::vector<std::vector<double>> allSamples()
{
    std::vector<std::vector<double>> all;
    for (const std::size_t n : lengths) {
        const auto seed = static_cast<unsigned>(n);
        for (const double size : {1e-320, 1e-17, 1e-9, 0.1, 3.0, 1e9, 1e306})
            all.push_back(ofOneSize(n, size));
        all.push_back(oftenHalfWay(n, seed));
        for (const double odd : {0.0, 1e300, infinity, std::nan("")})
            all.push_back(ofManySizes(n, seed, odd));
        all.push_back(awkwardSamples(n, seed, true));
    }
    return all;
}

template <class Work>
void onEachPath(Work work)
{
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512})
        if (path <= currentProcessorPath())
            work(stimulusLoops(path));
}

void expectAbsoluteSum(const StimulusLoops& loops, const std::vector<double>& x, double divisor, double start)
{
    GrowingSum sum(start);
    MinMax range{infinity, -infinity};
    loops.addAbsolute(x.data(), x.size(), divisor, sum, range);
    MinMax plainRange{infinity, -infinity};
    double plain = start;
    for (const double v : x) {
        plain += std::fabs(v) / divisor;
        plainRange.min = std::fabs(v) < plainRange.min ? std::fabs(v) : plainRange.min;
        plainRange.max = std::fabs(v) > plainRange.max ? std::fabs(v) : plainRange.max;
    }
    ASSERT_TRUE(sameBits(sum.value(), plain)) << std::hexfloat << x.size() << " by " << divisor << " from " << start
                                              << ": " << sum.value() << " and " << plain;
    ASSERT_TRUE(sameBits(range.min, plainRange.min) && sameBits(range.max, plainRange.max));
}

TEST(GrowingSums, OfAbsoluteValuesAreThoseOfAPlainLoopToTheBit)
{
    onEachPath([](const StimulusLoops& loops) {
        for (const auto& x : allSamples())
            for (const double start : starts)
                for (const double divisor : {1.0, 3.0, 10'000'000.0})
                    expectAbsoluteSum(loops, x, divisor, start);
    });
}

TEST(GrowingSums, OfWhatIsAboveALevelAreThoseOfAPlainLoopToTheBit)
{
    onEachPath([](const StimulusLoops& loops) {
        for (const auto& x : allSamples()) {
            for (const double level : {0.0, 0.05, -1.0, 1e305, infinity, std::nan("")}) {
                std::vector<double> above = x;
                GrowingSum sum(1.5);
                loops.addAbove(above.data(), above.size(), level, sum);
                std::vector<double> expected = x;
                double plain = 1.5;
                for (double& v : expected) {
                    v = std::fabs(v) - level;
                    v = v < 0.0 ? 0.0 : v;
                    plain += v;
                }
                ASSERT_TRUE(sameSamples(above, expected)) << level;
                ASSERT_TRUE(sameBits(sum.value(), plain)) << level;
            }
        }
    });
}

TEST(GrowingSums, GoOnFromOneCallToTheNext)
{
    const std::vector<double> x = ofOneSize(20'000, 0.7);
    onEachPath([&](const StimulusLoops& loops) {
        GrowingSum sum(0.0);
        MinMax range{infinity, -infinity};
        double plain = 0.0;
        for (const double v : x)
            plain += v / 7.0;
        for (std::size_t i = 0; i < x.size(); i += 100)
            loops.addAbsolute(x.data() + i, 100, 7.0, sum, range);
        EXPECT_TRUE(sameBits(sum.value(), plain));
        EXPECT_EQ(sum.rounder(), 512.0); // follows the sum, or each group would be added one by one
    });
}

TEST(GrowingSums, RoundValuesHalfWayByWhatTheSumIs)
{
    const std::vector<double> halfUnits(1000, 0x1p-53);
    onEachPath([&](const StimulusLoops& loops) {
        for (const double start : {1.0, 1.0 + 0x1p-52}) { // even, which stays, and odd, which becomes even
            GrowingSum sum(start);
            MinMax range;
            loops.addAbsolute(halfUnits.data(), halfUnits.size(), 1.0, sum, range);
            EXPECT_EQ(sum.value(), start == 1.0 ? 1.0 : 1.0 + 0x1p-51);
        }
    });
}

TEST(GrowingSums, AGroupIsAddedWhereItStaysBelowTheNextPowerOfTwo)
{
    GrowingSum sum(5.0);
    EXPECT_EQ(sum.rounder(), 4.0);
    EXPECT_TRUE(sum.add({1.5, 0.0}));
    EXPECT_EQ(sum.value(), 6.5);
    EXPECT_FALSE(sum.add({1.5, 0.0}));     // up to 8, where the unit is another
    EXPECT_FALSE(sum.add({0.5, 0x1p-51})); // a value was half-way
    EXPECT_TRUE(sum.add({0.5, 0x1.fp-52}));
    EXPECT_FALSE(sum.add({std::nan(""), 0.0}));
    EXPECT_EQ(sum.value(), 7.0);
}

TEST(GrowingSums, WithoutAUnitTakeNoGroup)
{
    for (const double start : {0.0, -0.0, 5e-324, 0x1p-1022, infinity, std::nan("")})
        EXPECT_FALSE(GrowingSum(start).add({0.0, 0.0})) << start;
    for (const double start : {0x1p-1021, 0x1.8p1023})
        EXPECT_TRUE(GrowingSum(start).add({0.0, 0.0})) << start;
    EXPECT_FALSE(GrowingSum(0x1.fp1023).add({0x1p1023, 0.0}));
}

} // namespace
} // namespace megset::numeric::stimulusLoops_test
