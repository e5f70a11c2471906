#include "megset/processing/CMEGData2Process.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2Process_test {
namespace {

using ::testing::ElementsAre;

std::vector<int> flags(const std::unique_ptr<int[]>& array, int count)
{
    return array ? std::vector<int>(array.get(), array.get() + count) : std::vector<int>();
}

TEST(ChannelFlags, FitTheTrialAndSayGoodAndShown)
{
    CMEGDatazk data;
    EXPECT_EQ(data.checkInitChnlParam(makeTrial(0, 3, 1).get()), 1);
    EXPECT_EQ(data.m_nChnlParamCount, 3);
    EXPECT_THAT(flags(data.m_pChnlGood, 3), ElementsAre(1, 1, 1));
    EXPECT_THAT(flags(data.m_pChnlShow, 3), ElementsAre(1, 1, 1));
    EXPECT_THAT(flags(data.m_pChnlSelect, 3), ElementsAre(0, 0, 0));
    EXPECT_THAT(flags(data.m_pChnlParam4, 3), ElementsAre(0, 0, 0));
}

TEST(ChannelFlags, StayWhereTheCountIsTheSame)
{
    CMEGDatazk data;
    data.checkInitChnlParam(makeTrial(0, 3, 1).get());
    data.m_pChnlGood[1] = 0;
    data.m_pChnlSelect[2] = 1;
    EXPECT_EQ(data.checkInitChnlParam(makeTrial(1, 3, 9).get()), 1);
    EXPECT_THAT(flags(data.m_pChnlGood, 3), ElementsAre(1, 0, 1));
    EXPECT_THAT(flags(data.m_pChnlSelect, 3), ElementsAre(0, 0, 1));
}

TEST(ChannelFlags, FallBackToTheirDefaultsForAnotherCount)
{
    CMEGDatazk data;
    data.checkInitChnlParam(makeTrial(0, 3, 1).get());
    data.m_pChnlGood[1] = 0;
    EXPECT_EQ(data.checkInitChnlParam(makeTrial(0, 4, 1).get()), 1);
    EXPECT_EQ(data.m_nChnlParamCount, 4);
    EXPECT_THAT(flags(data.m_pChnlGood, 4), ElementsAre(1, 1, 1, 1));
}

TEST(ChannelFlags, FallBackToTheirDefaultsForFewerChannels)
{
    CMEGDatazk data;
    data.checkInitChnlParam(makeTrial(0, 4, 1).get());
    data.m_pChnlGood[1] = 0;
    EXPECT_EQ(data.checkInitChnlParam(makeTrial(0, 3, 1).get()), 1);
    EXPECT_EQ(data.m_nChnlParamCount, 3);
    EXPECT_THAT(flags(data.m_pChnlGood, 3), ElementsAre(1, 1, 1));
    EXPECT_EQ(data.isGoodChnl4Alltrials(3), 0);
}

TEST(ChannelFlags, AreAllResetWhereOneOfThemWasMissing)
{
    CMEGDatazk data;
    const auto trial = makeTrial(0, 2, 1);
    data.checkInitChnlParam(trial.get());
    data.m_pChnlGood[1] = 0;
    data.m_pChnlParam4.reset();
    EXPECT_EQ(data.checkInitChnlParam(trial.get()), 1);
    EXPECT_THAT(flags(data.m_pChnlGood, 2), ElementsAre(1, 1));
    EXPECT_THAT(flags(data.m_pChnlParam4, 2), ElementsAre(0, 0));
}

TEST(ChannelFlags, AreNotTouchedForNullAndGoForATrialWithoutChannels)
{
    CMEGDatazk data;
    data.checkInitChnlParam(makeTrial(0, 2, 1).get());
    EXPECT_EQ(data.checkInitChnlParam(nullptr), 0);
    EXPECT_EQ(data.m_nChnlParamCount, 2);
    const CMDTrialzk empty;
    EXPECT_EQ(data.checkInitChnlParam(&empty), 0);
    EXPECT_EQ(data.m_nChnlParamCount, 0);
    EXPECT_EQ(data.m_pChnlShow, nullptr);
}

TEST(ChannelFlags, AreAllMissingWhereMemoryEndsAndCanBeMadeThen)
{
    const auto trial = makeTrial(0, 2, 1);
    const std::int64_t failures = forEachAllocationFailure([&trial] {
        const ScriptedHost host;
        CMEGDatazk data;
        if (data.checkInitChnlParam(trial.get()))
            return;
        EXPECT_EQ(data.m_nChnlParamCount, 0);
        host.expectNoMessages();
        EXPECT_EQ(data.checkInitChnlParam(trial.get()), 1);
        EXPECT_EQ(data.m_nChnlParamCount, 2);
    });
    EXPECT_EQ(failures, 4);
}

TEST(ChannelFlags, StayWhenAnotherTrialBecomesCurrent)
{
    FiledDataset filed(2, 2, 3);
    ASSERT_EQ(filed.data.checkInitChnlParam(filed.data.getTrialzk(0)), 1);
    filed.data.m_pChnlShow[1] = 0;
    ASSERT_NE(filed.data.getTrialzk(1), nullptr);
    EXPECT_THAT(flags(filed.data.m_pChnlShow, 2), ElementsAre(1, 0));
}

} // namespace
} // namespace megset::CMEGData2Process_test
