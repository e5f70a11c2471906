// Groups of channels that are shown.
#include "megset/display/CMEGData8Show.h"

#include "tests/core/filedDataset.h"
#include "tests/display/shownChannels.h"
#include "tests/kit/FailingAllocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData8ShowGroup_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShowGroups : public ShownChannels
{
protected:
    void name(const std::vector<const char*>& names)
    {
        for (std::size_t i = 0; i < names.size(); ++i)
            channel(static_cast<int>(i)).m_strChannelName = names[i];
    }
};

TEST_F(ShowGroups, OfAWordAreTheMegMeasureChannelsWhoseNameContainsIt)
{
    makeChannels({100, 101, 103, 11, 302, 120});
    name({"MLF11", "MRF11", "ALF", "MLF", "MLF", "MLF"});
    EXPECT_EQ(data.setShowGroup4Word("LF"), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 0, 1, 0, 0, 0));
    EXPECT_EQ(data.setShowGroup4Word("lf"), 1) << "case counts";
    EXPECT_THAT(shown(), Each(0));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ShowGroups, OfAnEmptyWordAreAllMegMeasureChannels)
{
    makeChannels({100, 101, 302, 104, 103});
    name({"MLF11", "", "MLF", "MLF"});
    EXPECT_EQ(data.setShowGroup4Word(""), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 1, 0, 0, 1));
}

TEST_F(ShowGroups, AnEmptyPlaceIsHidden)
{
    makeChannels({100, 100});
    data.getMDTrial(0)->m_ppChannel.release(1);
    EXPECT_EQ(data.setShowGroup4Word(""), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 0));
    EXPECT_EQ(data.setShowGroup4WordEeg("", 0), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 0));
}

TEST_F(ShowGroups, SucceedWithoutChannels)
{
    makeNoChannels();
    EXPECT_EQ(data.setShowGroup4Word("M"), 1);
    EXPECT_EQ(data.setShowGroup4WordTrial("M", 0, true), 1);
    EXPECT_EQ(data.setShowGroup4WordEeg("", 1), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ShowGroups, WithoutATrialTheResultIsZero)
{
    EXPECT_EQ(data.setShowGroup4Word("M"), 0);
    EXPECT_EQ(data.setShowGroup4WordTrial("M", -1, true), 0);
    EXPECT_EQ(data.setShowGroup4WordEeg("", 1), 0);
}

TEST_F(ShowGroups, OfAWordInATrialAreThoseOfAllTrials)
{
    FiledDataset filed(3, 2, 2);
    for (int i = 0; i < 3; ++i) {
        const auto trial = makeTrial(i, 2, 2);
        trial->getChannel(i % 2)->m_nChannelType = 100;
        filed.writeTrial(i, *trial);
    }
    const std::vector<int> flagsBefore{filed.data.setShowGroup4WordTrial("", 2, false)};
    EXPECT_THAT(flagsBefore, ElementsAre(1));
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 0) << "the trial only has to exist";
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(0), 1) << "the current trial's channels count";
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(1), 0);
    for (const int trial : {-2, 3, 99})
        EXPECT_EQ(filed.data.setShowGroup4WordTrial("nothing", trial, true), 0) << trial;
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(0), 1) << "no such trial: nothing changed";
    EXPECT_EQ(filed.data.setShowGroup4WordTrial("nothing", -1, true), 1);
    EXPECT_EQ(filed.data.isShowChnl4Alltrials(0), 0);
}

TEST_F(ShowGroups, OfAWordInATrialNeedTheArrayOfTrials)
{
    data.m_nTotalTrial = 2;
    data.m_nCurrentTrial = 0;
    EXPECT_EQ(data.setShowGroup4WordTrial("", 0, true), 0);
    EXPECT_THAT(host.calls(), IsEmpty()) << "no trial is opened for it";
}

TEST_F(ShowGroups, OfEegGoByModeAndNotByTheText)
{
    makeChannels({300, 301, 302, 303, 310, 320, 330, 340, 350, 354, 100, 600, -1});
    const auto shownBy = [this](int mode) {
        EXPECT_EQ(data.setShowGroup4WordEeg("a text that no name contains", mode), 1);
        return shown();
    };
    EXPECT_THAT(shownBy(1), ElementsAre(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0));
    EXPECT_THAT(shownBy(2), ElementsAre(0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(shownBy(3), ElementsAre(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(shownBy(4), ElementsAre(0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(shownBy(5), ElementsAre(0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0));
    EXPECT_THAT(shownBy(6), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0));
    for (const int mode : {0, 7, -1, 1000})
        EXPECT_THAT(shownBy(mode), Each(1)) << mode;
}

TEST_F(ShowGroups, WithoutMemoryForTheFlagsGiveZero)
{
    makeChannels({100, 302});
    const std::int64_t failures = forEachAllocationFailure([this] {
        data._cleanChnlParam();
        const int done = data.setShowGroup4Word("");
        EXPECT_EQ(done, data.m_nChnlParamCount == 2 ? 1 : 0);
    });
    EXPECT_EQ(failures, 4);
    EXPECT_THAT(shown(), ElementsAre(1, 0));
}

class ShowFlag : public ShownChannels
{
};

TEST_F(ShowFlag, IsSetInBothForms)
{
    makeChannels({100, 100, 100});
    giveFlags();
    EXPECT_EQ(data.setMEGSensorShow(false, 1), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 0, 1));
    EXPECT_EQ(data.setMEGSensorShow(false, 2, 0, true), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 0, 0));
    EXPECT_EQ(data.setMEGSensorShow(true, 1), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 1, 0));
}

TEST_F(ShowFlag, OfTheCurrentChannelIsSetForMinusOne)
{
    makeChannels({100, 100, 100});
    giveFlags();
    data.getMDTrial(0)->m_nCurrentChannel = 2;
    EXPECT_EQ(data.setMEGSensorShow(false, -1), 1);
    EXPECT_THAT(shown(), ElementsAre(1, 1, 0));
    EXPECT_EQ(data.setMEGSensorShow(false, -1, 0, false), 0) << "the other form has no current channel";
}

TEST_F(ShowFlag, OutsideTheFlagsIsNotSet)
{
    EXPECT_EQ(data.setMEGSensorShow(true, -1), 0);
    EXPECT_EQ(data.setMEGSensorShow(true, 0), 0);
    makeChannels({100});
    EXPECT_EQ(data.setMEGSensorShow(true, 0), 0) << "flags that were never made";
    giveFlags();
    EXPECT_EQ(data.setMEGSensorShow(true, 1), 0);
    EXPECT_EQ(data.setMEGSensorShow(true, -2), 0);
    EXPECT_EQ(data.setMEGSensorShow(true, 0), 1);
}

TEST_F(ShowFlag, OfVirtualChannelsIsKept)
{
    EXPECT_EQ(data.getShowVirtChnl(), 1);
    EXPECT_EQ(data.setShowVirtChnl(false), 1);
    EXPECT_EQ(data.getShowVirtChnl(), 0);
    EXPECT_EQ(data.setShowVirtChnl(true), 1);
    EXPECT_EQ(data.m_bShowVirtChnl, 1);
}

} // namespace
} // namespace megset::CMEGData8ShowGroup_test
