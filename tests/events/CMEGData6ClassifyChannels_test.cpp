// Channels of a kind, good and bad, and the one with the peak.
#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <gtest/gtest.h>

namespace megset::CMEGData6ClassifyChannels_test {
namespace {

TEST(MegMeasureChannels, AreCountedShownOrNotAndWithoutTheBadOnes)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 0);
    ASSERT_EQ(data.initMEGData(1, 5, 1), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    data.checkInitChnlParam(&trial);
    const int types[] = {100, 103, 10, 302, 101};
    for (int i = 0; i < 5; ++i)
        trial.getChannel(i)->m_nChannelType = types[i];
    trial.m_ppChannel.set(4, nullptr);
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 2);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(true), 2);
    data.setGoodChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(true), 1);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 2);
    trial._cleanTrialChannels();
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 0);
}

TEST(MegChannels, AreCountedWhereTheyAreShownAndWithoutTheBadOnes)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getTotalMEGChannel(false, false), 0);
    ASSERT_EQ(data.initMEGData(1, 6, 1), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    data.checkInitChnlParam(&trial);
    const int types[] = {100, 103, 10, 302, 101, 200};
    for (int i = 0; i < 6; ++i)
        trial.getChannel(i)->m_nChannelType = types[i];
    trial.m_ppChannel.set(4, nullptr);
    EXPECT_EQ(data.getTotalMEGChannel(false, false), 4) << "references, too";
    EXPECT_EQ(data.getTotalMEGChannel(false, true), 4);
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.getTotalMEGChannel(false, false), 3);
    data.setGoodChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getTotalMEGChannel(true, false), 2);
    EXPECT_EQ(data.getTotalMEGChannel(false, false), 3);
    trial._cleanTrialChannels();
    EXPECT_EQ(data.getTotalMEGChannel(false, false), 0);
}

TEST(BadChannels, AreShownOrHiddenAllAtOnce)
{
    CMEGDatazk data;
    EXPECT_EQ(data.showAllBadChannels(true), 0) << "no trial";
    ASSERT_EQ(data.initMEGData(1, 4, 1), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    EXPECT_EQ(data.showAllBadChannels(false), 1) << "makes the flags";
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1) << "of channels that are all good";
    data.setGoodChnl4Alltrials(1, 0);
    data.setGoodChnl4Alltrials(2, 0);
    trial.m_ppChannel.set(2, nullptr);
    EXPECT_EQ(data.showAllBadChannels(false), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 0);
    EXPECT_EQ(data.isShowChnl4Alltrials(2), 1) << "an empty place";
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.showAllBadChannels(true), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 0) << "a good one isn't touched";
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 1);
}

TEST(BadChannels, NeedTwoChannels)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(1, 1, 1), 1);
    data.checkInitChnlParam(data.getTrialzk(0));
    data.setGoodChnl4Alltrials(0, 0);
    EXPECT_EQ(data.showAllBadChannels(false), 0);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1);
}

TEST(ChannelTypeOfATrial, OpensTheTrial)
{
    FiledDataset filed(2, 2, 3);
    CMEGDatazk& data = filed.data;
    auto trial = makeTrial(1, 2, 3);
    trial->getChannel(1)->m_nChannelType = 302;
    filed.writeTrial(1, *trial);
    data.checkInitChnlParam(data.getTrialzk(0));
    data.setShowChnl4Alltrials(1, 0);
    unsigned type = 0;
    bool flag = true;
    EXPECT_EQ(data.getChannelType(type, flag, 1, 1), 1);
    EXPECT_EQ(type, 302U);
    EXPECT_FALSE(flag);
    EXPECT_EQ(data.m_nCurrentTrial, 1);
    EXPECT_EQ(data.getChannelType(type, flag, 0, -1), 1) << "the current one";
    EXPECT_TRUE(flag);
    EXPECT_EQ(data.getChannelType(type, flag, 2, 1), 0);
    for (const int wrong : {2, -2})
        EXPECT_EQ(data.getChannelType(type, flag, 0, wrong), 0);
    CMEGDatazk none;
    EXPECT_EQ(none.getChannelType(type, flag, 0, -1), 0);
}

// ---- the channel with the peak

/// One trial in memory with named channels of these samples, all shown, and the selection at 1 to 2.
struct PeakTrial
{
    explicit PeakTrial(const std::vector<std::vector<double>>& channels)
    {
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(channels.size()), 1), 1);
        trial = data.getTrialzk(0);
        for (std::size_t i = 0; i < channels.size(); ++i) {
            CMDChannelzk& channel = *trial->getChannel(static_cast<int>(i));
            channel.addData(std::ssize(channels[i]), channels[i].data());
            channel.m_strChannelName = CString::formatted("C%d", i);
        }
        data.checkInitChnlParam(trial);
        data.m_nSelectStart = 1;
        data.m_nSelectEnd = 2;
    }

    CMEGDatazk data;
    CMDTrialzk* trial = nullptr;
};

TEST(PeakChannel, HasTheLargestAbsoluteValueInTheRange)
{
    PeakTrial t({{0, 1, 2, 0}, {0, 0, -9, 3}, {50, 0, 0, 4}});
    EXPECT_EQ(t.data.findPeakChnl_RID(1, 3, false, false), 1);
    EXPECT_EQ(t.trial->m_nCurrentChannel, 1);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 3, true, false), 2);
    EXPECT_EQ(t.data.findPeakChnl_RID(3, 3, false, false), 2);
    EXPECT_EQ(t.trial->m_nCurrentChannel, 2);
    EXPECT_EQ(t.data.findPeakChnl_RN(1, 3, false, false), "C1");
    EXPECT_EQ(t.trial->m_nCurrentChannel, 2) << "only on demand";
    EXPECT_EQ(t.data.findPeakChnl_RN(1, 3, true, false), "C1");
    EXPECT_EQ(t.trial->m_nCurrentChannel, 1);
}

TEST(PeakChannel, ByNameIsThatOfTheRangeWithoutItsLastSample)
{
    PeakTrial t({{0, 1, 2, 0}, {0, 0, 9, 0}});
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 2, false, false), 1);
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 2, false, false), "C0");
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 3, false, false), "C1");
}

TEST(PeakChannel, OfEqualPeaksIsTheFirst)
{
    PeakTrial t({{0, 5, 0, 0}, {0, -7, 0, 0}, {0, 0, 7, 0}, {7, 0, 0, 0}});
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 3, false, false), 1);
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 3, false, false), "C1");
    PeakTrial zeros({{0, 0}, {0, 0}});
    EXPECT_EQ(zeros.data.findPeakChnl_RID(0, 1, false, false), 0);
}

TEST(PeakChannel, TakesTheSelectionForMinusOneAndStaysInTheFirstChannel)
{
    PeakTrial t({{9, 0, 1, 9}, {0, 2, 0, 0}, {0, 0, 0, 9}});
    EXPECT_EQ(t.data.findPeakChnl_RID(-1, -1, false, false), 1);
    EXPECT_EQ(t.data.findPeakChnl_RID(-1, 3, false, false), 0);
    EXPECT_EQ(t.data.findPeakChnl_RID(-5, 2, false, false), 0) << "from sample 0";
    EXPECT_EQ(t.data.findPeakChnl_RID(2, 99, false, false), 0) << "to the last one";
    EXPECT_EQ(t.data.findPeakChnl_RN(1, 99, false, false), "C1") << "the last one but one";
}

TEST(PeakChannel, WithBeginAboveEndSearchesNoSamples)
{
    PeakTrial t({{9, 0, 1, 9}, {0, 2, 0, 0}});
    t.trial->setCurrentChannel(1);
    EXPECT_EQ(t.data.findPeakChnl_RID(2, 1, false, false), -1);
    EXPECT_EQ(t.trial->m_nCurrentChannel, 1);
    EXPECT_EQ(t.data.findPeakChnl_RN(2, 1, false, false), "C0");
    EXPECT_EQ(t.data.findPeakChnl_RN(1, 1, true, false), "C0") << "nor with the last one left out";
    EXPECT_EQ(t.trial->m_nCurrentChannel, 0);
}

TEST(PeakChannel, IsAShownOneOnDemand)
{
    PeakTrial t({{0, 1}, {0, 9}, {0, 5}});
    t.data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 1, false, true), 2);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 1, false, false), 1);
    for (int i = 0; i < 3; ++i)
        t.data.setShowChnl4Alltrials(i, 0);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 1, false, true), -1);
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 1, false, true), "C0");
}

TEST(PeakChannel, IsSearchedAsFarAsTheFirstChannelGoesWhicheverIsCurrent)
{
    PeakTrial t({{0, 1, 2}, {0, 0, 0, 9}, {0, 5}});
    for (const int current : {1, 2, 0}) {
        t.trial->setCurrentChannel(current);
        EXPECT_EQ(t.data.findPeakChnl_RN(0, 99, false, false), "C2");
        EXPECT_EQ(t.data.findPeakChnl_RN(2, 99, false, false), "C0") << "no sample before the last one";
        EXPECT_EQ(t.data.findPeakChnl_RID(2, 99, false, false), 0);
        EXPECT_EQ(t.trial->m_nCurrentChannel, 0) << "the first one becomes current like any other";
    }
}

TEST(PeakChannel, SearchesAShorterChannelToItsOwnEnd)
{
    PeakTrial t({{0, 1, 2, 0}, {0, 9}, {}});
    t.trial->getChannel(2)->_cleanTimeDataC(true);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 3, false, false), 1);
    EXPECT_EQ(t.data.findPeakChnl_RID(2, 3, false, false), 0);
    t.trial->m_ppChannel.set(1, nullptr);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 3, false, false), 0);
}

TEST(PeakChannel, PassesOverNaNButForTheVeryFirstSample)
{
    const double none = std::nan("");
    PeakTrial later({{0, 1, none}, {0, none, 2}});
    EXPECT_EQ(later.data.findPeakChnl_RID(0, 2, false, false), 1);
    PeakTrial first({{none, 1, 0}, {0, 5, 2}});
    EXPECT_EQ(first.data.findPeakChnl_RID(0, 2, false, false), 0) << "nothing is greater than it";
}

TEST(PeakChannel, NeedsATrialAndAFirstChannel)
{
    CMEGDatazk none;
    EXPECT_EQ(none.findPeakChnl_RID(0, 1, false, false), 0);
    EXPECT_EQ(none.findPeakChnl_RN(0, 1, false, false), "Unknown Trial");
    PeakTrial t({{0, 1}, {0, 9}});
    t.trial->m_ppChannel.set(0, nullptr);
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 1, false, false), -1);
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 1, false, false), "Unknown");
    t.trial->_cleanTrialChannels();
    EXPECT_EQ(t.data.findPeakChnl_RID(0, 1, false, false), -1);
    EXPECT_EQ(t.data.findPeakChnl_RN(0, 1, false, false), "Unknown");
}

} // namespace
} // namespace megset::CMEGData6ClassifyChannels_test
