// Numbers over all samples of a channel, against plain loops.

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel7ProcessX_test {

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

std::vector<double> randomSamples(std::size_t n, unsigned seed)
{
    std::mt19937 generator(seed);
    std::normal_distribution<double> distribution(3.0, 1000.0);
    std::vector<double> samples(n);
    for (double& sample : samples)
        sample = distribution(generator);
    return samples;
}

void fillChannel(CMDChannelzk& channel, const std::vector<double>& samples)
{
    ASSERT_EQ(channel.addData(static_cast<std::int64_t>(samples.size()), samples.data()),
              static_cast<std::int64_t>(samples.size()));
}

std::vector<double> workingSamples(const CMDChannelzk& channel)
{
    return {channel.m_pDataWave.get(), channel.m_pDataWave.get() + channel.m_nTotalSample};
}

std::vector<double> backupSamples(const CMDChannelzk& channel)
{
    return {channel.m_pBkData.get(), channel.m_pBkData.get() + channel.m_nBkDataSample};
}

TEST(ChannelRange, FieldsAreThoseOfAPlainLoopWithTheFirstSampleTwiceInTheMean)
{
    for (const std::size_t n : {1U, 2U, 3U, 7U, 64U, 1001U}) {
        const std::vector<double> samples = randomSamples(n, static_cast<unsigned>(n));
        CMDChannelzk channel;
        fillChannel(channel, samples);
        ASSERT_EQ(channel.computeDataRange(), 1);
        double low = samples[0];
        double high = samples[0];
        double sum = samples[0];
        double largest = 0.0;
        for (const double sample : samples) {
            low = sample < low ? sample : low;
            high = sample > high ? sample : high;
            largest = std::fabs(sample) > largest ? std::fabs(sample) : largest;
            sum += sample;
        }
        EXPECT_EQ(channel.m_dDataMin, low);
        EXPECT_EQ(channel.m_dDataMax, high);
        EXPECT_EQ(channel.m_dDataMean, sum / static_cast<double>(n));
        EXPECT_EQ(channel.m_dDataMaxAbs, largest);
    }
}

TEST(ChannelRange, MeanOfOneSampleIsTwiceThatSample)
{
    CMDChannelzk channel;
    fillChannel(channel, {-5.0});
    EXPECT_EQ(channel.computeDataRange(), 1);
    EXPECT_EQ(channel.m_dDataMin, -5.0);
    EXPECT_EQ(channel.m_dDataMax, -5.0);
    EXPECT_EQ(channel.m_dDataMean, -10.0);
    EXPECT_EQ(channel.m_dDataMaxAbs, 5.0);
}

TEST(ChannelRange, WithoutSamplesNothingChanges)
{
    CMDChannelzk channel;
    channel.m_dDataMin = 1.0;
    channel.m_dDataMean = 2.0;
    channel.m_nTotalSample = 5; // as a file can bring it, without the array
    EXPECT_EQ(channel.computeDataRange(), 0);
    EXPECT_EQ(channel.m_dDataMin, 1.0);
    EXPECT_EQ(channel.m_dDataMean, 2.0);
}

TEST(ChannelRange, PhysicalValuesAndRangeStateStay)
{
    CMDChannelzk channel;
    channel.m_dPhysicalMin = -3.0;
    channel.m_dPhysicalMax = 4.0;
    channel.m_nChnlRangeState = 9;
    fillChannel(channel, {1.0, 2.0});
    channel.computeDataRange();
    EXPECT_EQ(channel.m_dPhysicalMin, -3.0);
    EXPECT_EQ(channel.m_dPhysicalMax, 4.0);
    EXPECT_EQ(channel.m_nChnlRangeState, 9);
}

TEST(ChannelRange, BitValueIsPhysicalExtentOverDataExtent)
{
    CMDChannelzk channel;
    channel.m_dPhysicalMin = -10.0;
    channel.m_dPhysicalMax = 30.0;
    channel.m_dDataMin = -100.0;
    channel.m_dDataMax = 100.0;
    EXPECT_EQ(channel.getBitValue(), 0.2);
    EXPECT_EQ(channel.getOffset(), 30.0 / 0.2 - 100.0);
}

TEST(ChannelRange, BitValueAndOffsetAreZeroWithoutAnExtent)
{
    CMDChannelzk channel;
    channel.m_dPhysicalMax = 30.0;
    EXPECT_EQ(channel.getBitValue(), 0.0);
    EXPECT_EQ(channel.getOffset(), 0.0);
    channel.m_dDataMin = 1.0;
    EXPECT_EQ(channel.getBitValue(), 0.0);
    channel.m_dDataMin = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(channel.getBitValue(), 0.0);
    EXPECT_EQ(channel.getOffset(), 0.0);
}

TEST(ChannelRange, OffsetIsZeroForABitValueNotAboveZero)
{
    CMDChannelzk channel;
    channel.m_dDataMax = 1.0;
    EXPECT_EQ(channel.getBitValue(), 0.0);
    EXPECT_EQ(channel.getOffset(), 0.0);
    channel.m_dPhysicalMin = 5.0;
    EXPECT_EQ(channel.getBitValue(), -5.0);
    EXPECT_EQ(channel.getOffset(), 0.0);
}

TEST(ChannelScale, WorkingSamplesAloneWithoutBoth)
{
    CMDChannelzk channel;
    const std::vector<double> samples = randomSamples(100, 1);
    fillChannel(channel, samples);
    EXPECT_EQ(channel.scaleWaveData(2.5, 0), 1);
    std::vector<double> expected = samples;
    for (double& sample : expected)
        sample *= 2.5;
    EXPECT_THAT(workingSamples(channel), ElementsAreArray(expected));
    EXPECT_THAT(backupSamples(channel), ElementsAreArray(samples));
    EXPECT_EQ(channel.scaleWaveData(2.0, 1), 1);
    for (double& sample : expected)
        sample *= 2.0;
    EXPECT_THAT(workingSamples(channel), ElementsAreArray(expected));
    EXPECT_EQ(backupSamples(channel)[7], samples[7] * 2.0);
}

TEST(ChannelScale, WithoutSamplesGivesZeroAndLeavesTheBackup)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.scaleWaveData(2.0, 0), 0);
    fillChannel(channel, {1.0, 2.0});
    channel._cleanTimeDataC(false);
    EXPECT_EQ(channel.scaleWaveData(2.0, 1), 0);
    EXPECT_THAT(backupSamples(channel), ElementsAre(1.0, 2.0));
}

TEST(ChannelScale, AMissingBackupGivesZeroWithTheWorkingSamplesScaled)
{
    CMDChannelzk channel;
    ASSERT_EQ(channel.initDataBk(2, 0, true), 1);
    channel.addData1(0, 3.0);
    EXPECT_EQ(channel.scaleWaveData(2.0, 1), 0);
    EXPECT_THAT(workingSamples(channel), ElementsAre(6.0, 0.0));
    EXPECT_EQ(channel.scaleWaveData(2.0, 0), 1);
}

TEST(ChannelScale, BackupOfAnotherLengthIsScaledWhole)
{
    CMDChannelzk channel;
    ASSERT_EQ(channel.initDataBk(2, 3, true), 1);
    for (const int i : {0, 1, 2})
        channel.addData1(i, i + 1.0);
    EXPECT_EQ(channel.scaleWaveData(2.0, 1), 1);
    EXPECT_THAT(workingSamples(channel), ElementsAre(2.0, 4.0));
    EXPECT_THAT(backupSamples(channel), ElementsAre(2.0, 4.0, 6.0));
}

std::vector<int> expanded(const std::vector<int>& source, std::int64_t m)
{
    const auto n = static_cast<std::int64_t>(source.size());
    std::vector<int> result;
    const double ratio = static_cast<double>(n) / static_cast<double>(m);
    for (std::int64_t i = 0; i < m; ++i) {
        const double x = static_cast<double>(i) * ratio;
        const double low = std::max(std::floor(x), 0.0);
        const double high = std::min(std::ceil(x), static_cast<double>(m - 1));
        const double atLow = low < static_cast<double>(n) ? source[static_cast<std::size_t>(low)] : 0.0;
        const double atHigh = high < static_cast<double>(n) ? source[static_cast<std::size_t>(high)] : 0.0;
        result.push_back(static_cast<int>((x - low) * atLow + (high - x) * atHigh));
    }
    return result;
}

TEST(ChannelExpand, PointsOnASourceIndexGetZero)
{
    const int source[] = {100, 200};
    int target[] = {-1, -1, -1, -1};
    EXPECT_EQ(CMDChannelzk::expandDataPoints(2, source, 4, target), 1);
    // Indices 0, 0.5, 1, 1.5: the second is 0.5 x 100 + 0.5 x 200, the last 0.5 x 200 with nothing behind the source.
    EXPECT_THAT(target, ElementsAre(0, 150, 0, 100));
}

TEST(ChannelExpand, WeightsStandTheOtherWayRoundThanInAnInterpolation)
{
    const int source[] = {1000, 0, 0};
    int target[4] = {};
    EXPECT_EQ(CMDChannelzk::expandDataPoints(3, source, 4, target), 1);
    EXPECT_EQ(target[1], 750); // three quarters of the way from sample 0 to sample 1
    EXPECT_EQ(target[2], 0);
}

TEST(ChannelExpand, ValuesAreCutTowardsZero)
{
    const int source[] = {5, 5};
    int target[4] = {};
    EXPECT_EQ(CMDChannelzk::expandDataPoints(2, source, 4, target), 1);
    EXPECT_EQ(target[3], 2);
    const int negative[] = {-5, -5};
    EXPECT_EQ(CMDChannelzk::expandDataPoints(2, negative, 4, target), 1);
    EXPECT_EQ(target[3], -2);
}

TEST(ChannelExpand, CurveIsThatOfThePlainLoop)
{
    std::mt19937 generator(5);
    std::uniform_int_distribution<int> value(INT_MIN, INT_MAX);
    for (const auto& [n, m] : std::vector<std::pair<std::size_t, std::size_t>>{
             {1, 2}, {1, 9}, {2, 3}, {3, 7}, {10, 11}, {49, 50}, {100, 1000}, {333, 1001}}) {
        std::vector<int> source(n);
        for (int& element : source)
            element = value(generator);
        std::vector<int> target(m, -1);
        ASSERT_EQ(CMDChannelzk::expandDataPoints(static_cast<std::int64_t>(n), source.data(),
                                                 static_cast<std::int64_t>(m), target.data()),
                  1);
        EXPECT_EQ(target, expanded(source, static_cast<std::int64_t>(m))) << n << " to " << m;
    }
}

TEST(ChannelExpand, CountsThatDontGrowAndMissingArraysGiveZero)
{
    const int source[] = {1, 2, 3};
    int target[] = {-7, -7, -7};
    for (const auto& [n, m] :
         std::vector<std::pair<std::int64_t, std::int64_t>>{{0, 3}, {-1, 3}, {3, 3}, {3, 2}, {3, 0}, {INT64_MIN, 3}})
        EXPECT_EQ(CMDChannelzk::expandDataPoints(n, source, m, target), 0);
    EXPECT_EQ(CMDChannelzk::expandDataPoints(2, nullptr, 3, target), 0);
    EXPECT_EQ(CMDChannelzk::expandDataPoints(2, source, 3, nullptr), 0);
    EXPECT_THAT(target, ElementsAre(-7, -7, -7));
}

// A gradiometer of two coils 50 mm apart, the second along the normal of the first or across it.
CMEGSensorzk gradiometer(bool axial)
{
    CMEGSensorzk sensor;
    sensor.m_pSnsCoils.m_aCoils.resize(2);
    sensor.setSnsPos(-1, 0, 0.0, 0.0, 0.0);
    sensor.setSnsOrn(-1, 0, 0.0, 0.0, 1.0);
    sensor.setSnsPos(-1, 1, axial ? 0.0 : 50.0, 0.0, axial ? 50.0 : 0.0);
    return sensor;
}

TEST(ChannelGradiometer, ValuesAreThoseOfTheSensor)
{
    CMDChannelzk channel;
    channel._initGeomHw(1);
    channel.setChannelType(101);
    *channel.getMEGSensorzk() = gradiometer(true);
    EXPECT_EQ(channel.getCoilBaseLine(), 50.0);
    EXPECT_EQ(channel.isAxialGrad(), 1);
    *channel.getMEGSensorzk() = gradiometer(false);
    EXPECT_EQ(channel.isAxialGrad(), 0);
    for (int order = 0; order <= 3; ++order) {
        channel.getMEGSensorzk()->setGradOrderNo(order);
        EXPECT_EQ(channel.hasSyntheticGradiometer(), order >= 2 ? 1 : 0);
    }
}

TEST(ChannelGradiometer, WithoutASensorAllIsZero)
{
    CMDChannelzk channel;
    channel.setChannelType(101);
    EXPECT_EQ(channel.getCoilBaseLine(), 0.0);
    EXPECT_EQ(channel.hasSyntheticGradiometer(), 0);
    EXPECT_EQ(channel.isAxialGrad(), 0);
    channel._initGeomHw(2);
    channel.setChannelType(101);
    EXPECT_EQ(channel.getCoilBaseLine(), 0.0);
    EXPECT_EQ(channel.isAxialGrad(), 0);
}

TEST(ChannelGradiometer, ItsQuestionsNeedAMegType)
{
    CMDChannelzk channel;
    channel._initGeomHw(1);
    *channel.getMEGSensorzk() = gradiometer(true);
    channel.getMEGSensorzk()->setGradOrderNo(3);
    channel.setChannelType(600);
    EXPECT_EQ(channel.getCoilBaseLine(), 0.0);
    EXPECT_EQ(channel.isAxialGrad(), 0);
    EXPECT_EQ(channel.hasSyntheticGradiometer(), 0);
    channel.setChannelType(10);
    EXPECT_EQ(channel.getCoilBaseLine(), 50.0);
    EXPECT_EQ(channel.isAxialGrad(), 1);
    EXPECT_EQ(channel.hasSyntheticGradiometer(), 1);
}

} // namespace

} // namespace megset::CMDChannel7ProcessX_test
