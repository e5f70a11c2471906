#include "megset/processing/CMDTrial2Process.h"

#include "tests/core/filedDataset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial2Process_test {
namespace {

using ::testing::ElementsAre;

TEST(TrialByIndex, GivesArraysAndCountsOfAChannel)
{
    const auto trial = makeTrial(0, 2, 3);
    CMDChannelzk& channel = *trial->getChannel(1);
    EXPECT_EQ(channel.initDataBk(5, 4, true), 1);
    EXPECT_EQ(trial->getChannMEGData(1), channel.getDataWave());
    EXPECT_EQ(trial->getChnlBkData(1), channel.getBkData());
    EXPECT_EQ(trial->getChnlBkDataSz(1), 4);
    EXPECT_EQ(trial->getTotalSample(1), 5);
}

TEST(TrialByIndex, TakesTheCurrentChannelForMinusOne)
{
    const auto trial = makeTrial(0, 2, 3);
    trial->m_nCurrentChannel = 1;
    EXPECT_EQ(trial->getChannMEGData(-1), trial->getChannel(1)->getDataWave());
    EXPECT_EQ(trial->getChnlBkData(-1), trial->getChannel(1)->getBkData());
    EXPECT_EQ(trial->getChnlBkDataSz(-1), 3);
    EXPECT_EQ(trial->getTotalSample(-1), 3);
}

TEST(TrialByIndex, GivesNothingOutsideTheTrial)
{
    const auto trial = makeTrial(0, 2, 3);
    for (const int outside : {-2, 2}) {
        EXPECT_EQ(trial->getChannMEGData(outside), nullptr) << outside;
        EXPECT_EQ(trial->getChnlBkData(outside), nullptr) << outside;
        EXPECT_EQ(trial->getChnlBkDataSz(outside), 0) << outside;
        EXPECT_EQ(trial->getTotalSample(outside), 0) << outside;
    }
}

TEST(TrialByIndex, FindsTheFirstChannelWhoseNameContainsTheText)
{
    const auto trial = makeTrial(0, 3, 1);
    trial->getChannel(1)->m_strChannelName = "MLC11-7";
    trial->getChannel(2)->m_strChannelName = "MLC12-7";
    EXPECT_EQ(trial->findChnlID4NameS("MLC"), 1);
    EXPECT_EQ(trial->findChnlID4NameS("12-7"), 2);
    EXPECT_EQ(trial->findChnlID4NameS("MLC12-70"), -1);
    EXPECT_EQ(trial->findChnlID4NameS(""), 0);
    EXPECT_EQ(CMDTrialzk().findChnlID4NameS(""), -1);
}

TEST(TrialGains, AreAppliedToEveryChannelWithASensor)
{
    const auto trial = makeTrial(1, 2, 2);
    CMDChannelzk& channel = *trial->getChannel(0);
    channel.m_nChannelType = 100;
    CMEGSensorzk* sensor = channel.ensureMEGSensor();
    ASSERT_NE(sensor, nullptr);
    sensor->initSensorInfo(1, 100, 0, 0, 4.0, 0.5, 1.0, 0.0);
    const double gain = sensor->getSnsGainCtf();
    ASSERT_EQ(gain, 0.5e15);
    EXPECT_EQ(trial->applyMEGSnsrGainDir2Chnls(true), 1);
    EXPECT_THAT(wave(channel), ElementsAre(valueAt(1, 0, 0) * gain, valueAt(1, 0, 1) * gain));
    EXPECT_EQ(wave(*trial->getChannel(1)), channelValues(1, 1, 2));
    EXPECT_EQ(CMDTrialzk().applyMEGSnsrGainDir2Chnls(true), 0);
}

} // namespace
} // namespace megset::CMDTrial2Process_test
