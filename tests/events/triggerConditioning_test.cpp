// How trigger channels are prepared for a scan.
#include "tests/events/stimulusDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::triggerConditioning_test {
namespace {

using ::testing::ElementsAre;

std::unique_ptr<CMDChannelzk> stimulus(const std::vector<double>& samples)
{
    auto channel = std::make_unique<CMDChannelzk>();
    makeStimulus(*channel, samples);
    return channel;
}

std::vector<double> range(const CMDChannelzk& channel)
{
    return {channel.m_dDataMin, channel.m_dDataMean, channel.m_dDataMax, channel.m_dDataMaxAbs};
}

TEST(StimulusDc, SubtractsTheMeanWithItsFirstSampleTwice)
{
    const auto channel = stimulus({4.0, 0.0, -2.0, 2.0});
    EXPECT_EQ(channel->stimTrgChnl_Dc(0), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(2.0, -2.0, -4.0, 0.0)) << "less (4 + 4 + 0 - 2 + 2) / 4";
    EXPECT_THAT(range(*channel), ElementsAre(-2.0, 2.0, 4.0, 4.0)) << "of the samples before";
    EXPECT_THAT(backup(*channel), ElementsAre(4.0, 0.0, -2.0, 2.0));
}

TEST(StimulusDc, SubtractsThePlainMeanFromTheRawSamples)
{
    const auto channel = stimulus({4.0, 0.0, -2.0, 2.0});
    EXPECT_EQ(channel->stimTrgChnl_Dc(1), 1);
    EXPECT_THAT(backup(*channel), ElementsAre(3.0, -1.0, -3.0, 1.0));
    channel->m_pBkData.reset();
    EXPECT_EQ(channel->stimTrgChnl_Dc(1), 0) << "no raw samples";
    EXPECT_EQ(channel->stimTrgChnl_Dc(0), 1);
}

TEST(StimulusDc, IsForChannelsOfAnyTypeWithSamples)
{
    const auto channel = stimulus({1.0, 3.0});
    channel->m_nChannelType = 302;
    EXPECT_EQ(channel->stimTrgChnl_Dc(0), 1);
    channel->_cleanTimeDataC(false);
    EXPECT_EQ(channel->stimTrgChnl_Dc(0), 0);
    channel->m_nTotalSample = 2; // as a file can bring it, without the array
    EXPECT_EQ(channel->stimTrgChnl_Dc(0), 0);
}

TEST(StimulusAbsDc, SubtractsTheSmallestAbsoluteValue)
{
    const auto channel = stimulus({-3.0, 2.0, -7.0, 4.0});
    EXPECT_EQ(channel->stimTrigChnl_AbsDc(1, 0), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(1.0, 0.0, 5.0, 2.0));
    EXPECT_THAT(range(*channel), ElementsAre(0.0, 9.0 / 4.0, 5.0, 5.0)) << "of the samples now";
    EXPECT_THAT(backup(*channel), ElementsAre(-3.0, 2.0, -7.0, 4.0));
}

TEST(StimulusAbsDc, WithoutSubtractionGivesAbsoluteValues)
{
    for (const auto operation : {&CMDChannelzk::stimTrigChnl_AbsDc, &CMDChannelzk::stimTrigChnl_AbsDcM}) {
        const auto channel = stimulus({-3.0, 2.0, -7.0, 4.0});
        EXPECT_EQ((*channel.*operation)(0, 1), 1);
        EXPECT_THAT(wave(*channel), ElementsAre(3.0, 2.0, 7.0, 4.0));
        EXPECT_THAT(backup(*channel), ElementsAre(3.0, 2.0, 7.0, 4.0));
        EXPECT_THAT(range(*channel), ElementsAre(2.0, 19.0 / 4.0, 7.0, 7.0));
    }
}

TEST(StimulusAbsDc, TreatsTheRawSamplesByTheirOwnLevel)
{
    const auto channel = stimulus({-3.0, 2.0, -7.0, 4.0});
    channel->getBkData()[1] = 3.5;
    EXPECT_EQ(channel->stimTrigChnl_AbsDc(1, 1), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(1.0, 0.0, 5.0, 2.0));
    EXPECT_THAT(backup(*channel), ElementsAre(0.0, 0.5, 4.0, 1.0));
    channel->m_pBkData.reset();
    EXPECT_EQ(channel->stimTrigChnl_AbsDc(1, 1), 0) << "no raw samples";
    EXPECT_THAT(wave(*channel), ElementsAre(1.0, 0.0, 5.0, 2.0)) << "the working ones are done";
}

TEST(StimulusAbsDcM, SubtractsTheMeanAbsoluteValueWithTheFirstTwice)
{
    const auto channel = stimulus({-4.0, 0.0, 10.0, 2.0});
    EXPECT_EQ(channel->stimTrigChnl_AbsDcM(1, 0), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(0.0, 0.0, 5.0, 0.0)) << "less 1 + 1 + 0 + 2.5 + 0.5";
    EXPECT_THAT(range(*channel), ElementsAre(0.0, 1.25, 5.0, 5.0));
}

TEST(StimulusAbsDcM, TreatsTheRawSamplesInTheSameWay)
{
    const auto channel = stimulus({-4.0, 0.0, 10.0, 2.0});
    channel->getBkData()[0] = 0.0;
    EXPECT_EQ(channel->stimTrigChnl_AbsDcM(1, 1), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(0.0, 0.0, 5.0, 0.0));
    EXPECT_THAT(backup(*channel), ElementsAre(0.0, 0.0, 7.0, 0.0));
}

TEST(StimulusAbsDcM, AndItsSisterAreForTriggerChannelsWithSamples)
{
    for (const auto operation : {&CMDChannelzk::stimTrigChnl_AbsDc, &CMDChannelzk::stimTrigChnl_AbsDcM}) {
        const auto channel = stimulus({-3.0, 2.0});
        channel->m_nChannelType = 601;
        EXPECT_EQ((*channel.*operation)(1, 0), 0);
        EXPECT_THAT(wave(*channel), ElementsAre(-3.0, 2.0));
        channel->m_nChannelType = 600;
        channel->_cleanTimeDataC(false);
        EXPECT_EQ((*channel.*operation)(1, 1), 0);
    }
}

TEST(StimulusAbsDcM, LeavesNoSampleAboveAnythingAfterANaN)
{
    const auto channel = stimulus({0.0, std::nan(""), 5.0});
    EXPECT_EQ(channel->stimTrigChnl_AbsDcM(1, 0), 1);
    for (const double v : wave(*channel))
        EXPECT_TRUE(std::isnan(v));
}

TEST(StimulusOfATrial, IsConditionedOnAllTriggerChannels)
{
    CMDTrialzk trial;
    EXPECT_EQ(trial.setStimTrigChannel2AbsDc(0), 0) << "no array of channels";
    ASSERT_EQ(trial.allocateChannels(4), 1);
    makeStimulus(*trial.getChannel(0), {-1.0, 4.0});
    makeStimulus(*trial.getChannel(1), {-1.0, 4.0});
    makeStimulus(*trial.getChannel(3), {-5.0, -6.0});
    trial.getChannel(1)->m_nChannelType = 100;
    trial.m_ppChannel.set(2, nullptr);
    EXPECT_EQ(trial.setStimTrigChannel2AbsDc(1), 1);
    EXPECT_THAT(wave(*trial.getChannel(0)), ElementsAre(0.0, 3.0));
    EXPECT_THAT(backup(*trial.getChannel(0)), ElementsAre(0.0, 3.0));
    EXPECT_THAT(wave(*trial.getChannel(1)), ElementsAre(-1.0, 4.0));
    EXPECT_THAT(wave(*trial.getChannel(3)), ElementsAre(0.0, 1.0));
}

// ---- all trials

TEST(TriggerDcOffset, GoesOverTheTriggerChannelsOfAllTrials)
{
    const ScriptedHost host;
    StimulusDataset filed({{4, 0, -2, 2}, {1, 1, 1, 1}});
    EXPECT_EQ(filed.data.trigChannelDcoff(1), 1);
    const CMDTrialzk& first = *filed.data.getTrialzk(0);
    EXPECT_THAT(wave(*first.getChannel(1)), ElementsAre(2.0, -2.0, -4.0, 0.0));
    EXPECT_THAT(backup(*first.getChannel(1)), ElementsAre(3.0, -1.0, -3.0, 1.0));
    EXPECT_EQ(wave(*first.getChannel(0)), channelValues(0, 0, 4));
    EXPECT_THAT(wave(*filed.data.getTrialzk(1)->getChannel(1)), ElementsAre(-0.25, -0.25, -0.25, -0.25));
    EXPECT_THAT(host.calls(),
                ElementsAre("progress begin Trigger channel Dc off-set... 0..2",
                            "progress Trigger channel Dc off-set... 0", "progress Trigger channel Dc off-set... 1",
                            "progress end Trigger channel Dc off-set..."));
}

TEST(TriggerDcOffset, AsksAboutAnAveragedRecording)
{
    constexpr const char* question = "Data may be averaged, Would you like to continue?";
    StimulusTrial trial({{2, 0}});
    trial.data.m_recordInfo.m_nAverageCount = 1;
    {
        ScriptedHost host;
        host.willAnswerNo(question);
        EXPECT_EQ(trial.data.trigChannelDcoff(0), 0);
        EXPECT_THAT(wave(trial.channel(1)), ElementsAre(2.0, 0.0));
    }
    ScriptedHost host;
    host.willAnswerYes(question);
    EXPECT_EQ(trial.data.trigChannelDcoff(0), 1);
    EXPECT_THAT(wave(trial.channel(1)), ElementsAre(0.0, -2.0));
}

TEST(TriggerDcOffset, NeedsTrialsAndPassesOverThoseThatDontOpen)
{
    ScriptedHost host;
    CMEGDatazk none;
    EXPECT_EQ(none.trigChannelDcoff(0), 0);
    StimulusDataset filed({{2, 0}, {2, 0}, {2, 0}});
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    EXPECT_EQ(filed.data.trigChannelDcoff(0), 1);
    EXPECT_THAT(wave(*filed.data.getTrialzk(2)->getChannel(1)), ElementsAre(0.0, -2.0));
}

} // namespace
} // namespace megset::triggerConditioning_test
