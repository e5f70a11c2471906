// Synthetic gradiometers of random data: the numbers of plain loops, to the bit, and the way back.

#include "tests/core/gradientTrials.h"
#include "tests/numeric/reference.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace megset::gradientNumbers_test {

// The slow forms are private; an explicit instantiation may name them.
namespace {

using Reduce = int (CMEGData0SensorInfo::*)(int, bool, bool);
using TakeBack = int (CMEGData0SensorInfo::*)();

template <class Key, typename Key::Type member>
struct Reveal
{
    friend typename Key::Type revealed(Key) { return member; }
};
struct SlowReduce
{
    using Type = Reduce;
    friend Reduce revealed(SlowReduce);
};
struct SlowTakeBack
{
    using Type = TakeBack;
    friend TakeBack revealed(SlowTakeBack);
};
template struct Reveal<SlowReduce, &CMEGData0SensorInfo::setGradientNoiseReductionSlow>;
template struct Reveal<SlowTakeBack, &CMEGData0SensorInfo::setGradient2NonSlow>;

using gradient::fill;
using gradient::PlainReduction;
using gradient::samples;
using numeric::randomSamples;
using numeric::sameSamples;

/// `references` first (or last), then gradiometers; orders 1 to 3 have ever more references. With `coupled` references
/// have records of order 1, too.
PlainReduction randomReduction(int references, int gradiometers, std::size_t n, bool coupled, unsigned seed)
{
    PlainReduction made;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> gain(0.5e9, 2e9);
    std::normal_distribution<double> coefficient(0.0, 0.3);
    const auto noise = [&random, n] { return randomSamples(n, static_cast<unsigned>(random())); };
    for (int r = 0; r < references; ++r)
        made.channels.push_back({"R" + std::to_string(10 + r), 10 + r % 4, gain(random), noise()});
    for (int m = 0; m < gradiometers; ++m)
        made.channels.push_back({"M" + std::to_string(100 + m), 100, gain(random), noise()});
    if (seed % 2 == 0)
        std::reverse(made.channels.begin(), made.channels.end());
    for (const int order : {1, 2, 3}) {
        for (const gradient::Channel& channel : made.channels) {
            if (channel.type < 100 && !(coupled && order == 1))
                continue;
            gradient::Record record{channel.name + "-77", "G" + std::to_string(order) + "BR", {}};
            for (int r = 0; r < references * order / 3; ++r)
                record.terms.emplace_back("R" + std::to_string(10 + r) + "-77", coefficient(random));
            made.records.push_back(record);
        }
    }
    return made;
}

void expectSame(const CMEGDatazk& data, const PlainReduction& plain, const char* what)
{
    for (std::size_t c = 0; c < plain.channels.size(); ++c)
        EXPECT_TRUE(
            sameSamples(samples(*data.getMDTrial(0)->getChannel(static_cast<int>(c))), plain.channels[c].samples))
            << what << ", channel " << c;
}

double largest(const std::vector<std::vector<double>>& all)
{
    double most = 0.0;
    for (const auto& row : all)
        for (const double v : row)
            most = std::max(most, std::fabs(v));
    return most;
}

double largestDifference(const std::vector<std::vector<double>>& a, const std::vector<std::vector<double>>& b)
{
    double most = 0.0;
    for (std::size_t c = 0; c < a.size(); ++c)
        for (std::size_t i = 0; i < a[c].size(); ++i)
            most = std::max(most, std::fabs(a[c][i] - b[c][i]));
    return most;
}

TEST(NoiseReductionNumbers, AreThoseOfPlainLoopsToTheBit)
{
    for (const unsigned seed : {1U, 2U, 3U, 4U}) {
        for (const std::size_t n : {1U, 15U, 64U, 1100U}) {
            PlainReduction plain = randomReduction(6, 11, n, seed > 2, seed);
            CMEGDatazk data;
            fill(data, 1, plain.channels, plain.records);
            for (const int order : {3, 1, 1, 0, 2}) {
                ASSERT_EQ(data.setGradientNoiseReduction(order, true, false), 1);
                plain.bringTo(order == 0 ? "none" : "G" + std::to_string(order) + "BR");
                expectSame(data, plain, "reduced");
            }
            ASSERT_EQ(data.setGradient2Non(), 1);
            plain.addBack();
            expectSame(data, plain, "taken back");
        }
    }
}

TEST(NoiseReductionNumbers, OneThenThreeThenOneGivesOrderOneUpToRounding)
{
    const PlainReduction plain = randomReduction(9, 20, 700, false, 6);
    CMEGDatazk data;
    fill(data, 1, plain.channels, plain.records);
    ASSERT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    const auto first = samples(*data.getMDTrial(0));
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_GT(largestDifference(samples(*data.getMDTrial(0)), first), 1.0);
    ASSERT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_LT(largestDifference(samples(*data.getMDTrial(0)), first), 1e-12 * largest(first));
}

TEST(NoiseReductionNumbers, OfTheSlowFormsAreTheSameUpToRounding)
{
    const PlainReduction plain = randomReduction(6, 9, 200, false, 3);
    CMEGDatazk quick;
    CMEGDatazk slow;
    fill(quick, 2, plain.channels, plain.records);
    fill(slow, 2, plain.channels, plain.records);
    const auto compare = [&] {
        for (const int t : {0, 1}) {
            const auto ours = samples(*quick.getMDTrial(t));
            EXPECT_LT(largestDifference(ours, samples(*slow.getMDTrial(t))), 1e-12 * largest(ours));
        }
    };
    for (const int order : {3, 1, 2, 0}) {
        ASSERT_EQ(quick.setGradientNoiseReduction(order, true, false), 1);
        ASSERT_EQ((slow.*revealed(SlowReduce()))(order, true, false), 1);
        compare();
    }
    ASSERT_EQ(quick.setGradient2Non(), 1);
    ASSERT_EQ((slow.*revealed(SlowTakeBack()))(), 1);
    compare();
    EXPECT_EQ(slow.getMDTrial(0)->getChannel(8)->getMEGSensorzk()->getGradOrderNo(), 2);
}

TEST(NoiseReductionNumbers, OfTheSlowFormComeTermByTermFromCoefficientSampleAndGains)
{
    CMEGDatazk data;
    fill(data, 1, {{"M1", 100, 3.0, {1.0}}, {"R1", 10, 0.7, {0.1}}}, {{"M1", "G1BR", {{"R1", 0.3}}}});
    ASSERT_EQ((data.*revealed(SlowReduce()))(1, true, false), 1);
    volatile double s = 0.3 * 0.1;
    s = s * 0.7;
    s = s / 3.0;
    EXPECT_EQ(samples(*data.getMDTrial(0)->getChannel(0))[0], 1.0 - s);
    EXPECT_EQ(data.getMDTrial(0)->getChannel(0)->getMEGSensorzk()->getGradOrderNo(), 1);
}

TEST(NoiseReductionNumbers, TheSlowFormReducesMeasureChannelsAlone)
{
    CMEGDatazk data;
    fill(data, 1, {{"R1", 10, 1.0, {3.0}}, {"M1", 100, 1.0, {0.0}}, {"R2", 10, 1.0, {2.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}}}, {"R1", "G1BR", {{"R2", 1.0}}}});
    EXPECT_EQ((data.*revealed(SlowReduce()))(1, true, false), 1);
    EXPECT_EQ(samples(*data.getMDTrial(0)->getChannel(0))[0], 3.0);
    EXPECT_EQ(samples(*data.getMDTrial(0)->getChannel(1))[0], -3.0);
    EXPECT_EQ(data.getMDTrial(0)->getChannel(0)->getMEGSensorzk()->getGradOrderNo(), 0);
    for (const int order : {-1, 4})
        EXPECT_EQ((data.*revealed(SlowReduce()))(order, true, false), 0);
    EXPECT_EQ(samples(*data.getMDTrial(0)->getChannel(1))[0], -3.0);
}

} // namespace
} // namespace megset::gradientNumbers_test
