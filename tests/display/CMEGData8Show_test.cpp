// The channels of measure are shown, or the nearest kind that there is.

#include "megset/display/CMEGData8Show.h"

#include "tests/core/filedDataset.h"
#include "tests/display/shownChannels.h"
#include "tests/kit/FailingAllocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData8Show_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString noMeg = "No MEG measure channels, show EEG?";
const CString noMegEeg = "No MEG/EEG measure channels, show all MEG/EEG?";
const CString noSensors = "No MEG/EEG channels, show all channels?";

class ShownMeasureChannels : public ShownChannels
{
};

TEST_F(ShownMeasureChannels, AreTheMegOnesWhereThereIsOne)
{
    makeChannels({11, 100, 302, 600, 103, 120, -1});
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 1);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 0, 0, 1, 0, 0));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ShownMeasureChannels, FlagsThatWereSetBeforeAreSetAnewAndTheOthersStay)
{
    makeChannels({302, 100});
    giveFlags();
    data.setShowChnl4Alltrials(1, 0);
    data.setGoodChnl4Alltrials(0, 0);
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 1);
    EXPECT_THAT(shown(), ElementsAre(0, 1));
    EXPECT_EQ(data.isGoodChnl4Alltrials(0), 0);
}

// The boxes have one button, so that the cascade goes on whatever it asks.
TEST_F(ShownMeasureChannels, AreTheEegOnesWhereThereIsNoMeg)
{
    makeChannels({11, 300, 302, 303, 600});
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 1);
    EXPECT_THAT(shown(), ElementsAre(0, 0, 1, 1, 0));
    EXPECT_THAT(host.messages(), ElementsAre(noMeg));
    EXPECT_THAT(host.questions(), IsEmpty());
}

TEST_F(ShownMeasureChannels, AreAllMegAndEegChannelsWhereNoneIsOfMeasure)
{
    makeChannels({11, 300, 600, 120, 354});
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 1, 0, 1, 1));
    EXPECT_THAT(host.messages(), ElementsAre(noMeg, noMegEeg));
}

TEST_F(ShownMeasureChannels, AreAllChannelsAtLastWithAResultOfZero)
{
    makeChannels({600, -1, 903});
    giveFlags();
    data.setShowChnl4Alltrials(2, 0);
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 0);
    EXPECT_THAT(shown(), ElementsAre(1, 1, 1));
    EXPECT_THAT(host.messages(), ElementsAre(noMeg, noMegEeg, noSensors));
    EXPECT_THAT(host.questions(), IsEmpty());
}

TEST_F(ShownMeasureChannels, WithoutChannelsItSaysSo)
{
    makeNoChannels();
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noMeg, noMegEeg, noSensors, CString("No channel to show")));
}

TEST_F(ShownMeasureChannels, AnEmptyPlaceIsHidden)
{
    makeChannels({600, 100, 100});
    data.getMDTrial(0)->m_ppChannel.release(2);
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 1);
    EXPECT_THAT(shown(), ElementsAre(0, 1, 0));
    data.getMDTrial(0)->m_ppChannel.release(1);
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 0);
    EXPECT_THAT(shown(), ElementsAre(1, 0, 0));
}

TEST_F(ShownMeasureChannels, WithoutATrialTheResultIsZero)
{
    EXPECT_EQ(data.setShowMEGMeasureChannel(), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ShownMeasureChannels, TheCurrentTrialIsOpenedForIt)
{
    FiledDataset filed(2, 2, 2);
    const auto second = makeTrial(1, 2, 2);
    second->getChannel(1)->m_nChannelType = 101;
    filed.writeTrial(1, *second);
    filed.data.m_nCurrentTrial = 1;
    EXPECT_EQ(filed.data.setShowMEGMeasureChannel(), 1);
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(0), 0);
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(1), 1);
}

TEST_F(ShownMeasureChannels, WithoutMemoryForTheFlagsNothingIsAsked)
{
    makeChannels({100, 600});
    const std::int64_t failures = forEachAllocationFailure([this] {
        data._cleanChnlParam();
        const int done = data.setShowMEGMeasureChannel();
        EXPECT_EQ(done, data.m_nChnlParamCount == 2 ? 1 : 0);
    });
    EXPECT_EQ(failures, 4);
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre(1, 0));
}

} // namespace
} // namespace megset::CMEGData8Show_test
