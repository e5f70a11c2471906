// Samples of a recording go into the trials, with gains and averages.

#include "tests/import/importSession.h"

#include <climits>
#include <numeric>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::importCtfData_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Trials of a gradiometer of 2 fT per integer, an EEG channel, and one without sensor.
class ImportSamples : public ImportSession
{
protected:
    explicit ImportSamples(int trials = 3)
    {
        lists.addSensor(100, "M1");
        lists.addSensor(302, "E1");
        EXPECT_EQ(
            data.importTrialChannels(trials, 3, &lists.sensors, nullptr, &lists.sensorNames, &lists.channelNames, &doc),
            1);
        host.clearRecord();
    }

    RecordedGeometryLists lists;
    const std::vector<std::int32_t> block = {1, 2, 10, 20, 100, 200};
};

TEST_F(ImportSamples, OfOneChannelReplaceItsSamplesWithTheGainInBothArrays)
{
    EXPECT_EQ(data.importCtfDataC(0, 0, 2, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(2.0, 4.0));
    EXPECT_THAT(backup(channel(0, 0)), ElementsAre(2.0, 4.0));
    EXPECT_EQ(channel(0, 0).m_nSnsGainApplied, 1);
    EXPECT_THAT(wave(channel(0, 1)), IsEmpty());
    // Once more: the samples are new, and so is the gain in them.
    EXPECT_EQ(data.importCtfDataC(0, 0, 3, block.data() + 2), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(20.0, 40.0, 200.0));
    EXPECT_THAT(backup(channel(0, 0)), ElementsAre(20.0, 40.0, 200.0));
    EXPECT_EQ(channel(0, 0).m_nSnsGainApplied, 2);
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfAChannelWithoutMegSensorStayAsRecorded)
{
    EXPECT_EQ(data.importCtfDataC(0, 1, 2, block.data()), 1);
    EXPECT_EQ(data.importCtfDataC(0, 2, 2, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 1)), ElementsAre(1.0, 2.0));
    EXPECT_THAT(wave(channel(0, 2)), ElementsAre(1.0, 2.0));
}

TEST_F(ImportSamples, OfOneChannelMakeTheTrialCurrentAndTheOneBeforeReachesItsFile)
{
    EXPECT_EQ(data.importCtfDataC(0, 0, 2, block.data()), 1);
    EXPECT_EQ(data.importCtfDataC(2, 0, 2, block.data() + 2), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 2);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_THAT(wave(*read("run_ImportTrial0.trl")->getChannel(0)), ElementsAre(2.0, 4.0));
}

TEST_F(ImportSamples, OfNoChannelOrNoneAtAllGiveZeroWithoutAMessage)
{
    for (const int index : {-1, 3, INT_MAX, INT_MIN})
        EXPECT_EQ(data.importCtfDataC(0, index, 2, block.data()), 0) << index;
    EXPECT_EQ(data.importCtfDataC(0, 0, 0, block.data()), 0);
    EXPECT_EQ(data.importCtfDataC(0, 0, -5, block.data()), 0);
    EXPECT_EQ(data.importCtfDataC(0, 0, 2, nullptr), 0);
    EXPECT_EQ(channel(0, 0).m_nSnsGainApplied, 0);
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfATrialThatCantBeOpenedAreTold)
{
    for (const int t : {3, -2, INT_MAX}) {
        host.clearRecord();
        EXPECT_EQ(data.importCtfDataC(t, 0, 2, block.data()), 0);
        EXPECT_EQ(data.importCtfDataT(t, 3, 2, block.data()), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Open trial data error?", "Open trial data error?"));
    }
    host.clearRecord();
    EXPECT_EQ(data.importCtfDataTsplit(1, 3, 3, 2, 2, block.data()), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data error?"));
}

TEST_F(ImportSamples, OfATrialWithoutChannelsAreTold)
{
    trial(0)._cleanTrialChannels();
    EXPECT_EQ(data.importCtfDataC(0, 0, 2, block.data()), 0);
    EXPECT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 0);
    EXPECT_EQ(data.importCtfDataTsplit(0, 1, 3, 2, 2, block.data()), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Channels have not been initialized!?", "Channels have not been initialized!?",
                            "Channels have not been initialized!?"));
}

TEST_F(ImportSamples, OfAWholeTrialComeChannelAfterChannel)
{
    EXPECT_EQ(data.importCtfDataT(1, 3, 2, block.data()), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 1);
    EXPECT_THAT(wave(channel(1, 0)), ElementsAre(2.0, 4.0));
    EXPECT_THAT(backup(channel(1, 0)), ElementsAre(2.0, 4.0));
    EXPECT_THAT(wave(channel(1, 1)), ElementsAre(10.0, 20.0));
    EXPECT_THAT(wave(channel(1, 2)), ElementsAre(100.0, 200.0));
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfAnAverageOfTwoOrMoreAreScaledByTwoOverTheCount)
{
    for (const int count : {-3, 0, 1, 2, 3, 8}) {
        data.m_recordInfo.m_nAverageCount = count;
        EXPECT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 1);
        const double scale = count >= 2 ? 2.0 / count : 1.0;
        EXPECT_THAT(wave(channel(0, 0)), ElementsAre(2.0 * scale, 4.0 * scale)) << count;
        EXPECT_THAT(backup(channel(0, 0)), ElementsAre(2.0 * scale, 4.0 * scale)) << count;
        EXPECT_THAT(wave(channel(0, 1)), ElementsAre(10.0 * scale, 20.0 * scale)) << count;
        EXPECT_THAT(backup(channel(0, 2)), ElementsAre(100.0 * scale, 200.0 * scale)) << count;
    }
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfMoreChannelsThanTheTrialHasArePassedOver)
{
    std::vector<std::int32_t> more = block;
    more.insert(more.end(), {7, 7, 7, 7});
    EXPECT_EQ(data.importCtfDataT(0, 5, 2, more.data()), 1);
    EXPECT_EQ(trial(0).getTotalChannel(), 3);
    EXPECT_THAT(wave(channel(0, 2)), ElementsAre(100.0, 200.0));
    EXPECT_EQ(data.importCtfDataTsplit(0, 1, INT_MAX, 2, 2, block.data()), 1);
}

TEST_F(ImportSamples, OfFewerChannelsLeaveTheOthersButForTheGain)
{
    ASSERT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 1);
    EXPECT_EQ(data.importCtfDataT(0, 0, 2, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(4.0, 8.0));
    EXPECT_THAT(wave(channel(0, 1)), ElementsAre(10.0, 20.0));
}

TEST_F(ImportSamples, ThatAChannelRefusesDoNotEndTheImport)
{
    ASSERT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 1);
    EXPECT_EQ(data.importCtfDataT(0, 3, 2, nullptr), 1);
    EXPECT_EQ(data.importCtfDataT(0, 3, 0, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(8.0, 16.0)); // the gain went in each time
    trial(0).m_ppChannel.release(1);
    EXPECT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 2)), ElementsAre(100.0, 200.0));
    host.expectNoMessages();
}

// ---- several trials in one stretch

TEST_F(ImportSamples, OfAStretchAreCutIntoTrials)
{
    // Channel stride 5: two trials of two samples and one sample that nobody wants.
    const std::vector<std::int32_t> stretch = {1, 2, 3, 4, -1, 10, 20, 30, 40, -1, 100, 200, 300, 400, -1};
    data.m_recordInfo.m_nAverageCount = 8; // has no effect here
    EXPECT_EQ(data.importCtfDataTsplit(0, 2, 3, 5, 2, stretch.data()), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 1);
    EXPECT_THAT(wave(channel(1, 0)), ElementsAre(6.0, 8.0));
    EXPECT_THAT(wave(channel(1, 1)), ElementsAre(30.0, 40.0));
    EXPECT_THAT(backup(channel(1, 2)), ElementsAre(300.0, 400.0));
    ASSERT_NE(data.getTrialzk(0), nullptr);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(2.0, 4.0));
    EXPECT_THAT(wave(channel(0, 2)), ElementsAre(100.0, 200.0));
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfALaterBlockGoIntoTheTrialsBehind)
{
    const std::vector<std::int32_t> stretch = {5, 6};
    EXPECT_EQ(data.importCtfDataTsplit(2, 1, 2, 1, 1, stretch.data()), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 2);
    EXPECT_THAT(wave(channel(2, 0)), ElementsAre(10.0));
    EXPECT_THAT(wave(channel(2, 1)), ElementsAre(6.0));
}

TEST_F(ImportSamples, OfABlockBehindTheLastTrialFillTheTrialsBeforeIt)
{
    const std::vector<std::int32_t> stretch = {5, 6};
    EXPECT_EQ(data.importCtfDataTsplit(1, 2, 1, 2, 1, stretch.data()), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data error?"));
    EXPECT_THAT(wave(channel(2, 0)), ElementsAre(10.0));
}

TEST_F(ImportSamples, OfNoTrialPerBlockGiveOneAtOnce)
{
    for (const int none : {0, -1, INT_MIN})
        EXPECT_EQ(data.importCtfDataTsplit(99, none, 3, 2, 2, block.data()), 1) << none;
    EXPECT_EQ(data.m_nCurrentTrial, 0);
    EXPECT_THAT(wave(channel(0, 0)), IsEmpty());
    host.expectNoMessages();
}

TEST_F(ImportSamples, OfBlocksThatNoNumberHoldsGiveZero)
{
    EXPECT_EQ(data.importCtfDataTsplit(INT_MAX, INT_MAX, 3, 2, 2, block.data()), 0);
    EXPECT_EQ(data.importCtfDataTsplit(65536, 65536, 3, 2, 2, block.data()), 0); // 2^32 is not trial 0
    EXPECT_EQ(data.importCtfDataTsplit(-1, 1, 3, 2, 2, block.data()), 0);        // -1 is not the current one
    EXPECT_THAT(host.messages(),
                ElementsAre("Open trial data error?", "Open trial data error?", "Open trial data error?"));
    EXPECT_THAT(wave(channel(0, 0)), IsEmpty());
}

TEST_F(ImportSamples, OfNoChannelsLetTheGainInAlone)
{
    ASSERT_EQ(data.importCtfDataT(0, 3, 2, block.data()), 1);
    EXPECT_EQ(data.importCtfDataTsplit(0, 1, 0, 2, 2, block.data()), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(4.0, 8.0));
    EXPECT_EQ(data.importCtfDataTsplit(0, 1, 3, 2, 2, nullptr), 1);
    EXPECT_THAT(wave(channel(0, 0)), ElementsAre(8.0, 16.0));
}

TEST_F(ImportSamples, AreToTheBitIntegerTimesGainTimesScale)
{
    const double proper = 1.234567e9;
    channel(0, 0).getMEGSensorzk()->initSensorInfo(1, 100, 0, 0, proper, 1.3e6, 0.7, 0.0);
    data.m_recordInfo.m_nAverageCount = 7;
    std::mt19937 random(1);
    std::vector<std::int32_t> recorded(3 * 1000);
    for (std::int32_t& v : recorded)
        v = static_cast<std::int32_t>(random());
    EXPECT_EQ(data.importCtfDataT(0, 3, 1000, recorded.data()), 1);
    const double gain = channel(0, 0).getMEGSensorzk()->getSnsGainCtf();
    for (std::size_t i = 0; i < 1000; ++i) {
        double expected = static_cast<double>(recorded[i]);
        expected *= gain;
        expected *= 2.0 / 7;
        ASSERT_EQ(channel(0, 0).getDataWave()[i], expected) << i;
        ASSERT_EQ(channel(0, 0).getBkData()[i], expected) << i;
        ASSERT_EQ(channel(0, 1).getDataWave()[i], static_cast<double>(recorded[1000 + i]) * (2.0 / 7)) << i;
    }
}

TEST_F(ImportSamples, AreAllOnDiskWhenTheDatasetIsSaved)
{
    for (const int t : {0, 1, 2})
        ASSERT_EQ(data.importCtfDataT(t, 3, 2, block.data()), 1);
    EXPECT_EQ(data.saveAllTrials(), 1);
    for (const int t : {0, 1, 2}) {
        const auto saved = read(CString::formatted("run_ImportTrial%d.trl", t));
        EXPECT_THAT(wave(*saved->getChannel(0)), ElementsAre(2.0, 4.0));
        EXPECT_THAT(backup(*saved->getChannel(2)), ElementsAre(100.0, 200.0));
    }
    host.expectNoMessages();
}

} // namespace
} // namespace megset::importCtfData_test
