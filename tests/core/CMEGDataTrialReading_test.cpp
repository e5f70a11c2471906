// What a dataset tells of the trials that are in memory, and sets in them.
#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <array>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGDataTrialReading_test {
namespace {

using ::testing::ElementsAre;

// Two trials of three channels with four samples; the current channel of trial 0 is 1.
class ReadDataset : public ::testing::Test
{
protected:
    ReadDataset()
    {
        EXPECT_EQ(data.setDataL2F(2, 3, 4, blockOf(2, 3, 4).data()), 1);
        data.getMDTrial(0)->m_nCurrentChannel = 1;
        data.getMDTrial(0)->getChannel(1)->m_strChannelName = "Cz";
        data.checkInitChnlParam(data.getMDTrial(0));
    }

    CMDChannelzk& channel(int trial, int index) { return *data.getMDTrial(trial)->getChannel(index); }

    CMEGDatazk data;
};

TEST_F(ReadDataset, LooksIntoAPlaceAndTakesTheCurrentOneForMinusOne)
{
    EXPECT_EQ(data.getMDTrial(-1), data.getMDTrial(0));
    EXPECT_EQ(data.getCurrentTrialPt(), data.getMDTrial(0));
    EXPECT_NE(data.getMDTrial(1), data.getMDTrial(0));
    EXPECT_EQ(data.getMDTrial(2), nullptr);
    EXPECT_EQ(data.getMDTrial(-2), nullptr);
}

TEST_F(ReadDataset, GivesNothingForAnEmptyPlace)
{
    data.m_ppTrial.set(0, nullptr);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getTotalChannel(0), 0);
    EXPECT_EQ(data.getTotalSample(), 0);
    EXPECT_EQ(data.getChannMEGData(0, 0), nullptr);
    EXPECT_EQ(data.getSelectUnit(0), "None");
    EXPECT_EQ(data.getSelectDataValueUnit(0, 0, 1, 0), "None");
    EXPECT_EQ(data.getSelectData(0, 0, 1), 0.0);
    EXPECT_EQ(data.getCurrentTrialChannelName(0), "No Data");
}

TEST_F(ReadDataset, GivesWorkingArraysOfAnyTrialInMemory)
{
    EXPECT_EQ(data.getChannMEGData(2, 1), channel(1, 2).getDataWave());
    EXPECT_EQ(data.getChannMEGData(-1, -1), channel(0, 1).getDataWave());
    EXPECT_EQ(data.getCurntTrialCurntChannDataWave(), channel(0, 1).getDataWave());
    EXPECT_EQ(data.getChannMEGData(3, 0), nullptr);
    EXPECT_EQ(data.getChannMEGData(0, 2), nullptr);
}

TEST_F(ReadDataset, GivesTheCurrentChannelsCountBesideTheArrayOfAnotherChannel)
{
    channel(0, 2).initData(9, true);
    std::int64_t n = 0;
    double* samples = nullptr;
    EXPECT_EQ(data.getChannMEGDataS(&n, &samples, 2, -1), 1);
    EXPECT_EQ(n, 4);
    EXPECT_EQ(samples, channel(0, 2).getDataWave());
    EXPECT_EQ(data.getChannMEGDataS(&n, &samples, 7, -1), 0);
    EXPECT_EQ(samples, nullptr);
    EXPECT_EQ(data.getChannMEGDataS(nullptr, nullptr, 2, -1), 1);
    EXPECT_EQ(data.getChannMEGDataS(&n, &samples, 0, 2), 0);
    EXPECT_EQ(n, 0);
}

TEST_F(ReadDataset, TellsTheSizeOfTheCurrentTrial)
{
    int channels = 0;
    std::int64_t samples = 0;
    EXPECT_EQ(data.getCurntTrialChannelSample(&channels, &samples), 2);
    EXPECT_EQ(channels, 3);
    EXPECT_EQ(samples, 4);
    EXPECT_EQ(data.getCurntTrialChannelSample(nullptr, nullptr), 2);
    CMEGDatazk empty;
    EXPECT_EQ(empty.getCurntTrialChannelSample(&channels, &samples), 0);
    EXPECT_EQ(channels, 0);
    EXPECT_EQ(samples, 0);
}

TEST_F(ReadDataset, TellsAnyOfChannelsSamplesAndTrial)
{
    int channels = 0;
    std::int64_t samples = 0;
    CMDTrialzk* trial = nullptr;
    EXPECT_EQ(data.getCurntTrialCSD(&channels, nullptr, nullptr), 0);
    EXPECT_EQ(data.getCurntTrialCSD(nullptr, &samples, nullptr), 0);
    EXPECT_EQ(data.getCurntTrialCSD(nullptr, nullptr, &trial), 0);
    EXPECT_EQ(channels, 3);
    EXPECT_EQ(samples, 4);
    EXPECT_EQ(trial, data.getMDTrial(0));
    EXPECT_EQ(CMEGDatazk().getCurntTrialCSD(&channels, &samples, &trial), -1);
    EXPECT_EQ(trial, nullptr);
}

TEST_F(ReadDataset, GivesAllSizesWithTheFirstChannelsArray)
{
    int trials = 0;
    int channels = 0;
    std::int64_t samples = 0;
    double* first = nullptr;
    EXPECT_EQ(data.getDataB(&trials, &channels, &samples, &first), 2);
    EXPECT_EQ(trials, 2);
    EXPECT_EQ(channels, 3);
    EXPECT_EQ(samples, 4);
    EXPECT_EQ(first, channel(0, 0).getDataWave());
    EXPECT_EQ(CMEGDatazk().getDataB(&trials, &channels, &samples, &first), 0);
    EXPECT_EQ(first, nullptr);
}

TEST_F(ReadDataset, NamesChannelsOfTheCurrentTrial)
{
    EXPECT_EQ(data.getCurrentTrialChannelName(1), "Cz");
    EXPECT_EQ(data.getCurrentTrialChannelName(-1), "Cz");
    EXPECT_EQ(data.getCurrentTrialChannelName(0), "Unknown");
    EXPECT_EQ(data.getCurrentTrialChannelName(3), "Unknown");
}

TEST_F(ReadDataset, GivesTypeAndShowFlagOfAChannel)
{
    channel(0, 1).m_nChannelType = 302;
    data.m_pChnlShow[1] = 0;
    unsigned type = 0;
    bool show = true;
    EXPECT_EQ(data.getChannelTypeX(type, show, 1), 1);
    EXPECT_EQ(type, 302U);
    EXPECT_FALSE(show);
}

TEST_F(ReadDataset, GivesTheTypeAloneForTheCurrentChannel)
{
    channel(0, 1).m_nChannelType = 302;
    data.m_pChnlShow[1] = 0;
    unsigned type = 0;
    bool show = true;
    EXPECT_EQ(data.getChannelTypeX(type, show, -1), 0);
    EXPECT_EQ(type, 302U);
    EXPECT_TRUE(show);
    EXPECT_EQ(data.getChannelTypeX(type, show, 3), 0);
}

TEST_F(ReadDataset, StoresTypeAndShowFlagOfAChannel)
{
    EXPECT_EQ(data.setChannelType(100, false, 2, 1), 1);
    EXPECT_EQ(channel(1, 2).m_nChannelType, 100);
    EXPECT_EQ(channel(0, 2).m_nChannelType, -1);
    EXPECT_EQ(data.m_pChnlShow[2], 0);
}

TEST_F(ReadDataset, StoresNoTypeOutsideTheFlags)
{
    EXPECT_EQ(data.setChannelType(100, false, 3, 0), 0);
    EXPECT_EQ(data.setChannelType(100, false, -1, 0), 0);
    data._cleanChnlParam();
    EXPECT_EQ(data.setChannelType(100, false, 0, 0), 0);
    EXPECT_EQ(channel(0, 0).m_nChannelType, -1);
}

TEST_F(ReadDataset, SetsTheCurrentChannelOfATrial)
{
    EXPECT_EQ(data.setCurrentChannel(1, 2), 1);
    EXPECT_EQ(data.getMDTrial(1)->m_nCurrentChannel, 2);
    EXPECT_EQ(data.setCurrentChannel(-1, 0), 1);
    EXPECT_EQ(data.getMDTrial(0)->m_nCurrentChannel, 0);
    EXPECT_EQ(data.setCurrentChannel(0, 3), 0);
    EXPECT_EQ(data.setCurrentChannel(2, 0), 0);
}

TEST_F(ReadDataset, NamesAChannelInOneTrialOrInAll)
{
    EXPECT_EQ(data.setChannelName("A", 0, 1, false), 1);
    EXPECT_EQ(channel(1, 0).m_strChannelName, "A");
    EXPECT_EQ(channel(0, 0).m_strChannelName, "");
    EXPECT_EQ(data.setChannelName("B", 0, -1, false), 1);
    EXPECT_EQ(channel(0, 0).m_strChannelName, "B");
    EXPECT_EQ(channel(1, 0).m_strChannelName, "B");
    EXPECT_EQ(data.setChannelName("C", 0, -2, false), 0);
    EXPECT_EQ(data.setChannelName("C", 0, 2, false), 0);
    EXPECT_EQ(data.setChannelName("C", 3, -1, false), 0);
}

TEST_F(ReadDataset, SetsNothingInATrialOfTheLargestNumbers)
{
    for (const int trial : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_EQ(data.setChannelName("C", 0, trial, false), 0);
        EXPECT_EQ(data.setChannelPos(trial, 0, 1.0, 2.0, 3.0), 0);
    }
}

TEST_F(ReadDataset, NamesAChannelInTheTrialsThatAreInTheirPlaces)
{
    data.m_ppTrial.set(0, nullptr);
    EXPECT_EQ(data.setChannelName("B", 0, -1, false), 1);
    EXPECT_EQ(channel(1, 0).m_strChannelName, "B");
}

TEST_F(ReadDataset, PlacesASensorInAllTrials)
{
    for (int t = 0; t < 2; ++t) {
        channel(t, 0).m_nChannelType = 100;
        channel(t, 0).ensureMEGSensor();
    }
    EXPECT_EQ(data.setChannelPos(-1, 0, 1.0, 2.0, 3.0), 1);
    for (int t = 0; t < 2; ++t) {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        EXPECT_EQ(data.getMDTrial(t)->getChannelPos(0, x, y, z), 1);
        EXPECT_THAT((std::array{x, y, z}), ElementsAre(1.0, 2.0, 3.0)) << t;
    }
    EXPECT_EQ(data.setChannelPos(0, 3, 1.0, 2.0, 3.0), 0);
}

TEST_F(ReadDataset, CountsTheChannelsThatAreShown)
{
    EXPECT_EQ(data.getTotalChnl_Visible(false), 3);
    EXPECT_EQ(data.getTotalChnl_Visible(true), 3);
    data.m_pChnlShow[0] = 0;
    EXPECT_EQ(data.getTotalChnl_Visible(false), 3);
    EXPECT_EQ(data.getTotalChnl_Visible(true), 2);
}

TEST_F(ReadDataset, HasDataToDrawWhereTheCurrentChannelHasSamples)
{
    EXPECT_EQ(data.hasData2Draw(), 1);
    channel(0, 1)._cleanTimeDataC(true);
    EXPECT_EQ(data.hasData2Draw(), 0);
}

TEST_F(ReadDataset, AppliesTheGainsToATrial)
{
    channel(0, 0).m_nChannelType = 100;
    CMEGSensorzk* sensor = channel(0, 0).ensureMEGSensor();
    ASSERT_NE(sensor, nullptr);
    sensor->initSensorInfo(1, 100, 0, 0, 4.0, 0.5, 2.0, 0.0);
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(-1, true), 1);
    EXPECT_EQ(channel(0, 0).getDataWave()[3], valueAt(0, 0, 3) * sensor->getSnsGainCtf());
}

} // namespace
} // namespace megset::CMEGDataTrialReading_test
