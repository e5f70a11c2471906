#include "megset/core/CMDTrialzk.h"

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrialzk_test {
namespace {

using ::testing::ElementsAre;

// ---- making channels

TEST(TrialChannels, AreMadeNewAndTheFirstIsCurrent)
{
    CMDTrialzk trial;
    trial.m_nCurrentChannel = 9;
    EXPECT_EQ(trial.allocateChannels(4), 1);
    EXPECT_EQ(trial.getTotalChannel(), 4);
    EXPECT_EQ(trial.m_nCurrentChannel, 0);
    for (int i = 0; i < 4; ++i) {
        ASSERT_NE(trial.getChannel(i), nullptr);
        EXPECT_EQ(trial.getChannel(i)->getTotalSample(), 0);
    }
}

TEST(TrialChannels, TakeThePlaceOfFormerOnes)
{
    const auto trial = makeTrial(1, 2, 3);
    EXPECT_EQ(trial->allocateChannels(5), 1);
    EXPECT_EQ(trial->getTotalChannel(), 5);
    EXPECT_EQ(trial->getChannel(0)->getDataWave(), nullptr);
}

TEST(TrialChannels, GoWhenFewerThanOneIsAskedFor)
{
    for (const int none : {0, -3}) {
        const auto trial = makeTrial(1, 2, 3);
        EXPECT_EQ(trial->allocateChannels(none), 0) << none;
        EXPECT_EQ(trial->getTotalChannel(), 0) << none;
        EXPECT_FALSE(trial->getAllChannelPt()) << none;
    }
}

TEST(TrialChannels, AreAllGoneWhereMemoryEnds)
{
    const std::int64_t failures = forEachAllocationFailure([] {
        ScriptedHost host;
        CMDTrialzk trial;
        if (trial.allocateChannels(3)) {
            EXPECT_EQ(trial.getTotalChannel(), 3);
            host.expectNoMessages();
            return;
        }
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?"));
        EXPECT_EQ(trial.getTotalChannel(), 0);
        EXPECT_EQ(trial.getChannel(0), nullptr);
        EXPECT_EQ(trial.allocateChannels(2), 1);
    });
    EXPECT_EQ(failures, 4); // the array and each channel
}

// ---- filling from a block

TEST(TrialWaveData, TakesEachChannelFromItsPartOfTheBlock)
{
    CMDTrialzk trial;
    const std::vector<double> block = {1, 2, 3, 10, 20, 30};
    EXPECT_EQ(trial.setChnlWaveData(2, 3, block.data()), 1);
    ASSERT_EQ(trial.getTotalChannel(), 2);
    EXPECT_THAT(wave(*trial.getChannel(0)), ElementsAre(1, 2, 3));
    EXPECT_THAT(wave(*trial.getChannel(1)), ElementsAre(10, 20, 30));
    EXPECT_THAT(backup(*trial.getChannel(1)), ElementsAre(10, 20, 30));
}

TEST(TrialWaveData, KeepsTheChannelsWhereTheirNumberFits)
{
    const auto trial = makeTrial(0, 2, 3);
    const CMDChannelzk* first = trial->getChannel(0);
    trial->getChannel(1)->m_strChannelName = "kept";
    const std::vector<double> block = {1, 2, 3, 4};
    EXPECT_EQ(trial->setChnlWaveData(2, 2, block.data()), 1);
    EXPECT_EQ(trial->getChannel(0), first);
    EXPECT_EQ(trial->getChannelName(1), "kept");
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(3, 4));
}

TEST(TrialWaveData, MakesTheChannelsAnewWhereTheirNumberDiffers)
{
    const auto trial = makeTrial(0, 2, 3);
    trial->getChannel(1)->m_strChannelName = "gone";
    const std::vector<double> block = {1, 2, 3};
    EXPECT_EQ(trial->setChnlWaveData(3, 1, block.data()), 1);
    EXPECT_EQ(trial->getTotalChannel(), 3);
    EXPECT_EQ(trial->getChannelName(1), "Unknown");
}

TEST(TrialWaveData, LosesTheChannelsForFewerThanOne)
{
    const auto trial = makeTrial(0, 2, 3);
    const double value = 1.0;
    EXPECT_EQ(trial->setChnlWaveData(0, 1, &value), 0);
    EXPECT_EQ(trial->getTotalChannel(), 0);
}

TEST(TrialWaveData, HasItsChannelsMadeBeforeSamplesAreMissed)
{
    CMDTrialzk trial;
    const double value = 1.0;
    EXPECT_EQ(trial.setChnlWaveData(2, 0, &value), 0);
    EXPECT_EQ(trial.getTotalChannel(), 2);
    EXPECT_EQ(trial.setChnlWaveData(3, 1, nullptr), 0);
    EXPECT_EQ(trial.getTotalChannel(), 3);
}

TEST(TrialWaveData, TellsWhereMemoryEndsAndCanBeFilledThen)
{
    const std::vector<double> block = {1, 2, 3, 4};
    const std::int64_t failures = forEachAllocationFailure([&block] {
        ScriptedHost host;
        CMDTrialzk trial;
        if (trial.setChnlWaveData(2, 2, block.data()))
            return;
        EXPECT_EQ(host.messages().size(), 1U);
        EXPECT_EQ(trial.setChnlWaveData(2, 2, block.data()), 1);
        EXPECT_THAT(wave(*trial.getChannel(1)), ElementsAre(3, 4));
    });
    EXPECT_EQ(failures, 7); // the array, two channels, two sample arrays for each
}

// ---- raw data

class RawData : public ::testing::Test
{
protected:
    RawData() : trial(makeTrial(0, 3, 2))
    {
        trial->getChannel(0)->m_nChannelType = 100;
        trial->getChannel(1)->m_nChannelType = 302;
        trial->getChannel(2)->m_nChannelType = 600;
        for (int i = 0; i < 3; ++i)
            trial->getChannel(i)->getDataWave()[0] = -1.0;
    }

    // Which channels came back, a bit each.
    int reversed() const
    {
        int bits = 0;
        for (int i = 0; i < 3; ++i)
            bits |= trial->getChannel(i)->getDataWave()[0] != -1.0 ? 1 << i : 0;
        return bits;
    }

    std::unique_ptr<CMDTrialzk> trial;
};

TEST_F(RawData, ComesBackForMegChannels)
{
    EXPECT_EQ(trial->copyRawData(true, false, false, false), 1);
    EXPECT_EQ(reversed(), 1);
}

TEST_F(RawData, ComesBackForEegChannels)
{
    EXPECT_EQ(trial->copyRawData(false, true, false, false), 1);
    EXPECT_EQ(reversed(), 2);
}

TEST_F(RawData, ComesBackForEegChannelsOfEveryKind)
{
    for (const int type : {300, 301, 310, 330, 350, 354}) {
        trial->getChannel(1)->m_nChannelType = type;
        trial->getChannel(1)->getDataWave()[0] = -1.0;
        EXPECT_EQ(trial->copyRawData(false, true, false, false), 1);
        EXPECT_EQ(reversed(), 2) << type;
    }
}

TEST_F(RawData, ComesBackForReferencesAsForOtherMegChannels)
{
    trial->getChannel(0)->m_nChannelType = 10;
    EXPECT_EQ(trial->copyRawData(true, false, false, false), 1);
    EXPECT_EQ(reversed(), 1);
}

TEST_F(RawData, DoesNotHeedTheThirdArgument)
{
    EXPECT_EQ(trial->copyRawData(false, false, true, false), 1);
    EXPECT_EQ(reversed(), 0);
}

TEST_F(RawData, ComesBackForEveryChannelWithOthers)
{
    EXPECT_EQ(trial->copyRawData(false, false, false, true), 1);
    EXPECT_EQ(reversed(), 7);
}

TEST_F(RawData, ComesBackAroundEmptyPlaces)
{
    trial->m_ppChannel.set(1, nullptr);
    EXPECT_EQ(trial->copyRawData(true, true, false, true), 1);
    EXPECT_EQ(CMDTrialzk().copyRawData(true, true, true, true), 0);
}

// ---- what the channels are

TEST(TrialInfo, IsTakenOverChannelByChannelWithoutSamples)
{
    const auto source = makeTrial(0, 2, 3);
    source->getChannel(1)->m_strChannelName = "Cz";
    source->getChannel(1)->m_nChannelType = 302;
    const auto trial = makeTrial(5, 2, 4);
    EXPECT_EQ(trial->copyTrialInfo(source.get()), 1);
    EXPECT_EQ(trial->getChannelName(1), "Cz");
    EXPECT_EQ(trial->getChannType(1), 302);
    EXPECT_EQ(wave(*trial->getChannel(1)), channelValues(5, 1, 4));
}

TEST(TrialInfo, IsTakenOverAsFarAsBothHaveChannels)
{
    const auto source = makeTrial(0, 3, 1);
    source->getChannel(0)->m_strChannelName = "A";
    source->getChannel(1)->m_strChannelName = "B";
    const auto fewer = makeTrial(0, 1, 1);
    EXPECT_EQ(fewer->copyTrialInfo(source.get()), 1);
    EXPECT_EQ(fewer->getChannelName(0), "A");
    const auto more = makeTrial(0, 4, 1);
    EXPECT_EQ(more->copyTrialInfo(source.get()), 1);
    EXPECT_EQ(more->getChannelName(1), "B");
    EXPECT_EQ(more->getChannelName(3), "Unknown");
}

TEST(TrialInfo, HasTheHeadLocalisation)
{
    const auto source = makeTrial(0, 1, 1);
    source->m_headLocalization.m_nWorkCoordinate = 2;
    source->m_headLocalization.m_fidDewarMsr.getFiducialPt(0)->setFidPos(1.0, 2.0, 3.0);
    const auto trial = makeTrial(0, 1, 1);
    ASSERT_FALSE(trial->m_headLocalization == source->m_headLocalization);
    EXPECT_EQ(trial->copyTrialInfo(source.get()), 1);
    EXPECT_TRUE(trial->m_headLocalization == source->m_headLocalization);
}

TEST(TrialInfo, IsNotTakenFromNothing)
{
    EXPECT_EQ(makeTrial(0, 1, 1)->copyTrialInfo(nullptr), 0);
    const auto source = makeTrial(0, 1, 1);
    EXPECT_EQ(CMDTrialzk().copyTrialInfo(source.get()), 0);
}

TEST(TrialInfo, OfTheTrialItselfChangesNothing)
{
    const auto trial = makeTrial(0, 1, 2);
    trial->getChannel(0)->m_strChannelName = "Cz";
    EXPECT_EQ(trial->copyTrialInfo(trial.get()), 1);
    EXPECT_EQ(trial->getChannelName(0), "Cz");
}

TEST(TrialInfo, TellsWhereMemoryForASensorEnds)
{
    const auto source = makeTrial(0, 2, 1);
    source->getChannel(1)->m_nChannelType = 100;
    ASSERT_NE(source->getChannel(1)->ensureMEGSensor(), nullptr);
    const auto trial = makeTrial(0, 2, 1);
    const std::int64_t failures = forEachAllocationFailure([&] {
        ScriptedHost host;
        if (!trial->copyTrialInfo(source.get())) {
            EXPECT_THAT(host.messages(), ElementsAre("Is there enough memory?!"));
        }
    });
    EXPECT_GE(failures, 1);
    EXPECT_NE(trial->getChannel(1)->getMEGSensorzk(), nullptr);
}

} // namespace
} // namespace megset::CMDTrialzk_test
