// Gains and factors that go into the samples of a whole trial.

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::sensorGain_test {
namespace {

using ::testing::ElementsAre;

/// Makes the channel a gradiometer of 2 fT per recorded integer.
void giveSensor(CMDChannelzk& channel)
{
    channel.m_nChannelType = 100;
    CMEGSensorzk* sensor = channel.ensureMEGSensor();
    ASSERT_NE(sensor, nullptr);
    sensor->initSensorInfo(1, 100, 0, 0, 1e15, 0.5, 1.0, 0.0);
    ASSERT_EQ(sensor->getSnsGainCtf(), 2.0);
}

class TrialScale : public ::testing::Test
{
protected:
    ~TrialScale() override { host.expectNoMessages(); }

    ScriptedHost host;
    std::unique_ptr<CMDTrialzk> trial = makeTrial(0, 2, 2); // 0, 1 and 100, 101
};

TEST_F(TrialScale, GoesIntoWorkingAndRawSamplesOfEveryChannel)
{
    EXPECT_EQ(trial->scaleWaveData(2.0, 1, 0), 1);
    EXPECT_THAT(wave(*trial->getChannel(0)), ElementsAre(0.0, 2.0));
    EXPECT_THAT(backup(*trial->getChannel(0)), ElementsAre(0.0, 2.0));
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(200.0, 202.0));
    EXPECT_THAT(backup(*trial->getChannel(1)), ElementsAre(200.0, 202.0));
}

TEST_F(TrialScale, LeavesTheRawSamplesUnlessTheyAreAskedFor)
{
    EXPECT_EQ(trial->scaleWaveData(2.0, 0, 1), 1);
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(200.0, 202.0));
    EXPECT_THAT(backup(*trial->getChannel(1)), ElementsAre(100.0, 101.0));
}

TEST_F(TrialScale, GivesOneWhateverTheChannelsGive)
{
    trial->getChannel(0)->_cleanTimeDataC(true);
    trial->getChannel(1)->m_pBkData.reset();
    trial->getChannel(1)->m_nBkDataSample = 0;
    EXPECT_EQ(trial->scaleWaveData(3.0, 1, 0), 1);
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(300.0, 303.0));
    trial->m_ppChannel.release(0);
    EXPECT_EQ(trial->scaleWaveData(2.0, 0, 0), 1);
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(600.0, 606.0));
}

TEST_F(TrialScale, GivesZeroWithoutChannels)
{
    EXPECT_EQ(CMDTrialzk().scaleWaveData(2.0, 1, 0), 0);
}

class DatasetGain : public ::testing::Test
{
protected:
    DatasetGain()
    {
        for (const int t : {0, 1}) {
            const auto trial = makeTrial(t, 2, 2);
            giveSensor(*trial->getChannel(1));
            filed.writeTrial(t, *trial);
        }
        EXPECT_NE(filed.data.getTrialzk(0), nullptr);
    }
    ~DatasetGain() override { host.expectNoMessages(); }

    ScriptedHost host;
    FiledDataset filed{2, 2, 2};
    CMEGDatazk& data = filed.data;
};

TEST_F(DatasetGain, GoesInOnceHoweverOftenItIsAskedForOnce)
{
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(-1, true), 1);
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(-1, true), 1);
    EXPECT_THAT(wave(*data.getMDTrial(0)->getChannel(1)), ElementsAre(200.0, 202.0));
    EXPECT_THAT(backup(*data.getMDTrial(0)->getChannel(1)), ElementsAre(200.0, 202.0));
    EXPECT_THAT(wave(*data.getMDTrial(0)->getChannel(0)), ElementsAre(0.0, 1.0));
}

TEST_F(DatasetGain, GoesInTwiceWhereItIsAskedForTwice)
{
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(-1, false), 1);
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(-1, false), 1);
    EXPECT_THAT(wave(*data.getMDTrial(0)->getChannel(1)), ElementsAre(400.0, 404.0));
    EXPECT_EQ(data.getMDTrial(0)->getChannel(1)->m_nSnsGainApplied, 2);
}

TEST_F(DatasetGain, ReachesATrialThatWasNotInMemory)
{
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(1, true), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_THAT(wave(*data.getMDTrial(1)->getChannel(1)), ElementsAre(20200.0, 20202.0));
}

TEST_F(DatasetGain, GivesZeroForATrialThatIsNotThere)
{
    for (const int trial : {2, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(data.applyMEGSnsrGainDirTrial(trial, false), 0) << trial;
    EXPECT_THAT(wave(*data.getMDTrial(0)->getChannel(1)), ElementsAre(100.0, 101.0));
}

TEST(DatasetGainWithoutFile, GivesZeroForATrialThatCantBeOpened)
{
    ScriptedHost host;
    host.willAnswerNo();
    FiledDataset filed(2, 1, 1);
    std::filesystem::remove(filed.folder.native(FiledDataset::name(1)));
    EXPECT_EQ(filed.data.applyMEGSnsrGainDirTrial(1, true), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
}

} // namespace
} // namespace megset::sensorGain_test
