// Wave-analysis results of channels, and what a trial counts of them.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gtest/gtest.h>

namespace megset::waveResults_test {
namespace {

void addWave(CChnlWaveAnalyzedResultzk* result, int kind, std::int64_t samples)
{
    CWadXzk wave;
    wave.m_nKind = kind;
    wave.m_aValue.assign(static_cast<std::size_t>(samples), 1.0);
    ASSERT_EQ(result->addWadX(&wave), 1);
}

TEST(WaveResultsOfAChannel, AreMadeOnDemandByClass)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.getWaveAnalyzeResultA(0), nullptr);
    EXPECT_EQ(channel.getWaveAnalyzeResultC(0), nullptr);
    EXPECT_EQ(channel.getWaveAnalyzeResultX(0), nullptr);
    for (int nClass = 0; nClass < 3; ++nClass)
        EXPECT_EQ(channel.getWaveAnalyzeResult(0, nClass), nullptr);
    const auto* a = channel.getWaveAnalyzeResult(1, 0);
    const auto* c = channel.getWaveAnalyzeResult(1, 1);
    const auto* x = channel.getWaveAnalyzeResult(1, 2);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(c, nullptr);
    ASSERT_NE(x, nullptr);
    EXPECT_EQ(channel.m_pWaveResultA.get(), a);
    EXPECT_EQ(channel.m_pWaveResultC.get(), c);
    EXPECT_EQ(channel.m_pWaveResultX.get(), x);
    EXPECT_EQ(channel.getWaveAnalyzeResultA(1), a);
    EXPECT_EQ(channel.getWaveAnalyzeResultC(1), c);
    EXPECT_EQ(channel.getWaveAnalyzeResultX(1), x);
}

TEST(WaveResultsOfAChannel, OfAnotherClassAreNull)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.getWaveAnalyzeResult(1, 3), nullptr);
    EXPECT_EQ(channel.getWaveAnalyzeResult(1, -1), nullptr);
    EXPECT_EQ(channel.m_pWaveResultA, nullptr);
    EXPECT_EQ(channel.m_pWaveResultC, nullptr);
    EXPECT_EQ(channel.m_pWaveResultX, nullptr);
}

TEST(WaveResultsOfAChannel, AreNullWithoutMemoryAndWithoutAMessage)
{
    const ScriptedHost host;
    CMDChannelzk channel;
    for (int nClass = 0; nClass < 3; ++nClass) {
        const FailingAllocator fails(1);
        EXPECT_EQ(channel.getWaveAnalyzeResult(1, nClass), nullptr);
    }
    host.expectNoMessages();
}

// Five channels without results, the second place empty.
class WaveResultsOfATrial : public ::testing::Test
{
protected:
    WaveResultsOfATrial()
    {
        trial.allocateChannels(5);
        trial.m_ppChannel.set(1, nullptr);
    }

    CMDTrialzk trial;
};

TEST_F(WaveResultsOfATrial, AreCountedByTheirActiveOnes)
{
    EXPECT_EQ(trial.getWadChnl(0), 0);
    trial.getChannel(0)->getWaveAnalyzeResultA(1);
    trial.getChannel(2)->getWaveAnalyzeResultC(1);
    trial.getChannel(4)->getWaveAnalyzeResultA(1);
    EXPECT_EQ(trial.getWadChnl(17), 2);
    EXPECT_EQ(trial.m_nWadChannels, 2);
}

TEST_F(WaveResultsOfATrial, CountIsZeroWithNothingStoredWhenThereIsNoChannelArray)
{
    CMDTrialzk empty;
    empty.m_nWadChannels = 5;
    EXPECT_EQ(empty.getWadChnl(0), 0);
    EXPECT_EQ(empty.m_nWadChannels, 5);
}

TEST_F(WaveResultsOfATrial, GiveTheLargestSampleCountOfAKind)
{
    addWave(trial.getChannel(0)->getWaveAnalyzeResultA(1), 3, 10);
    addWave(trial.getChannel(2)->getWaveAnalyzeResultA(1), 3, 25);
    addWave(trial.getChannel(2)->getWaveAnalyzeResultA(1), 4, 40);
    addWave(trial.getChannel(3)->getWaveAnalyzeResultC(1), 3, 99);
    EXPECT_EQ(trial.getWadMaxSample(3), 25);
    EXPECT_EQ(trial.m_nWadMaxSample, 25);
    EXPECT_EQ(trial.m_nWadChannels, 2);
    EXPECT_EQ(trial.getWadMaxSample(4), 40);
    EXPECT_EQ(trial.getWadMaxSample(5), 0);
    EXPECT_EQ(trial.m_nWadMaxSample, 0);
    EXPECT_EQ(trial.m_nWadChannels, 2);
}

TEST_F(WaveResultsOfATrial, GiveZeroSamplesWhereOnlyControlResultsExist)
{
    addWave(trial.getChannel(0)->getWaveAnalyzeResultC(1), 3, 10);
    EXPECT_EQ(trial.getWadMaxSample(3), 0);
    EXPECT_EQ(trial.m_nWadChannels, 0);
}

TEST_F(WaveResultsOfATrial, SampleCountsBecomeZeroForATrialWithoutChannels)
{
    CMDTrialzk empty;
    empty.m_nWadChannels = 5;
    empty.m_nWadMaxSample = 50;
    EXPECT_EQ(empty.getWadMaxSample(3), 0);
    EXPECT_EQ(empty.m_nWadChannels, 0);
    EXPECT_EQ(empty.m_nWadMaxSample, 0);
}

TEST_F(WaveResultsOfATrial, FoundBehindTheCurrentChannelMoveItThere)
{
    addWave(trial.getChannel(3)->getWaveAnalyzeResultC(1), 7, 4);
    addWave(trial.getChannel(4)->getWaveAnalyzeResultC(1), 7, 4);
    trial.m_nCurrentChannel = 2;
    EXPECT_TRUE(trial.hasWaveAnalyzDataX4draw(1, 7));
    EXPECT_EQ(trial.m_nCurrentChannel, 3);
    trial.m_nCurrentChannel = 4;
    EXPECT_TRUE(trial.hasWaveAnalyzDataX4draw(1, 7));
    EXPECT_EQ(trial.m_nCurrentChannel, 4);
}

TEST_F(WaveResultsOfATrial, AreNotFoundForAnotherClassOrKind)
{
    addWave(trial.getChannel(3)->getWaveAnalyzeResultC(1), 7, 4);
    trial.getChannel(4)->getWaveAnalyzeResultA(1); // empty
    EXPECT_FALSE(trial.hasWaveAnalyzDataX4draw(0, 7));
    EXPECT_FALSE(trial.hasWaveAnalyzDataX4draw(2, 7));
    EXPECT_FALSE(trial.hasWaveAnalyzDataX4draw(3, 7));
    EXPECT_FALSE(trial.hasWaveAnalyzDataX4draw(1, 6));
    EXPECT_EQ(trial.m_nCurrentChannel, 0);
    EXPECT_FALSE(CMDTrialzk().hasWaveAnalyzDataX4draw(0, 7));
}

} // namespace
} // namespace megset::waveResults_test
