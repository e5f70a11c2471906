// The common-reference montage of a trial.

#include "megset/processing/CMDTrial3Montage.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"
#include "tests/processing/montageTrial.h"

#include <climits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial3MontageCommon_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString noReference = "No reference channel has been setup";
const CString noReversal = "No reference channel has been setup or reversed";

class CommonReference : public ::testing::Test
{
protected:
    CommonReference() { fillTrial(trial, {{1.0, 2.0}, {10.0, 20.0}, {100.0, 200.0}, {1000.0, 2000.0}}); }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(CommonReference, ASingleReferenceAtPositionTwoOfFourChangesTheFirstTwoAlone)
{
    listChannels(trial, {0, 1, 2, 3});
    setReferences(trial, {reference(1, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_THAT(waves(trial),
                ElementsAre(Samples{-9.0, -18.0}, Samples{0.0, 0.0}, Samples{100.0, 200.0}, Samples{1000.0, 2000.0}));
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
    EXPECT_EQ(backups(trial)[0], (Samples{1.0, 2.0}));
    host.expectNoMessages();
}

TEST_F(CommonReference, OrderOfTheListIsWhatCounts)
{
    listChannels(trial, {3, 1, 0});
    setReferences(trial, {reference(1, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_THAT(waves(trial),
                ElementsAre(Samples{1.0, 2.0}, Samples{0.0, 0.0}, Samples{100.0, 200.0}, Samples{990.0, 1980.0}));
}

TEST_F(CommonReference, ASingleReferenceIsNeitherWeightedNorDivided)
{
    listChannels(trial, {2});
    setReferences(trial, {reference(0, 7.0)}, 5.0);
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{99.0, 198.0}));
}

TEST_F(CommonReference, TwoReferencesOfWeightOneAndDivisorTwoTakeTheirMean)
{
    listChannels(trial, {0, 1, 2});
    setReferences(trial, {reference(0, 1.0), reference(1, 1.0)}, 2.0);
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_THAT(waves(trial),
                ElementsAre(Samples{-4.5, -9.0}, Samples{4.5, 9.0}, Samples{94.5, 189.0}, Samples{1000.0, 2000.0}));
}

TEST_F(CommonReference, ADivisorOfZeroOrBelowLeavesTheWeightedSum)
{
    for (const double divisor : {0.0, -2.0}) {
        fillTrial(trial, {{1.0}, {10.0}, {100.0}});
        trial.cleanMontageCrInfo();
        trial.m_bMontageCrDone = 0;
        listChannels(trial, {2});
        setReferences(trial, {reference(0, 2.0), reference(1, -0.5)}, divisor);
        EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
        EXPECT_EQ(waves(trial)[2], Samples{103.0});
    }
}

TEST_F(CommonReference, OneReferenceAndANullAreWeighted)
{
    listChannels(trial, {2});
    setReferences(trial, {reference(0, 7.0)}, 2.0);
    trial.m_pMontageCr->m_aMtgOperators.Add(nullptr);
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{96.5, 193.0}));
}

TEST_F(CommonReference, SettingItTwiceWithTwoOperatorsLeavesFour)
{
    EXPECT_EQ(setReferences(trial, {reference(0, 1.0), reference(1, 1.0)}), 2);
    EXPECT_EQ(setReferences(trial, {reference(2, 1.0), reference(3, 1.0)}), 2);
    EXPECT_EQ(trial.m_pMontageCr->m_aMtgOperators.GetSize(), 4);
    EXPECT_EQ(trial.m_pMontageCr->m_aMtgOperators[2]->m_nMtgChnlID, 2);
    trial.cleanMontageCrInfo();
    EXPECT_EQ(trial.m_pMontageCr, nullptr);
    EXPECT_EQ(setReferences(trial, {reference(2, 1.0)}), 1);
    EXPECT_EQ(trial.m_pMontageCr->m_aMtgOperators.GetSize(), 1);
}

TEST_F(CommonReference, NameDivisorAndFlagAreStoredAlsoWithoutOperators)
{
    EXPECT_EQ(trial.setMontageCr("average", nullptr, 3.5, 1), 0);
    ASSERT_NE(trial.m_pMontageCr, nullptr);
    EXPECT_EQ(trial.m_pMontageCr->m_strMtgName, CString("average"));
    EXPECT_EQ(trial.m_pMontageCr->m_dMtgDivisor, 3.5);
    EXPECT_EQ(trial.m_pMontageCr->m_bMtgBackupToo, 1);
}

TEST_F(CommonReference, NullOperatorsOfAListAreNotAdded)
{
    CMtgChnlOperatorzk made = reference(1, 0.5, "C1");
    CPtrArray list;
    list.Add(nullptr);
    list.Add(&made);
    EXPECT_EQ(trial.setMontageCr("", &list, 0.0, 0), 1);
    ASSERT_EQ(trial.m_pMontageCr->m_aMtgOperators.GetSize(), 1);
    EXPECT_EQ(*trial.m_pMontageCr->m_aMtgOperators[0], made);
    EXPECT_NE(trial.m_pMontageCr->m_aMtgOperators[0], &made);
}

TEST_F(CommonReference, ChannelsAreCopiedAndNullIsRefused)
{
    EXPECT_EQ(trial.addCopyMcrChnl(nullptr), 0);
    EXPECT_EQ(trial.m_pMontageCr, nullptr);
    CMtgChnlIdNamezk entry;
    entry.m_nMtgChnlID = 3;
    entry.m_strMtgChnlName = "C3";
    entry.m_nMtgChnlWord = 77;
    EXPECT_EQ(trial.addCopyMcrChnl(&entry), 1);
    ASSERT_EQ(trial.m_pMontageCr->m_aMtgChannels.GetSize(), 1);
    EXPECT_EQ(*trial.m_pMontageCr->m_aMtgChannels[0], entry);
}

TEST_F(CommonReference, WithoutAUnitNothingIsDoneOrSaid)
{
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    EXPECT_EQ(trial.reverseMontageCrW(), 0);
    EXPECT_EQ(trial.cleanMontageCrInfo(), 1);
    host.expectNoMessages();
}

TEST_F(CommonReference, WithoutOperatorsItSaysSo)
{
    listChannels(trial, {0});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    EXPECT_EQ(trial.reverseMontageCrW(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noReference, noReversal));
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
    host.clearRecord();
    trial.m_pMontageCr->m_bMtgBackupToo = 1;
    EXPECT_EQ(trial.reverseMontageCrW(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noReversal, noReversal)); // of the backup's reversal, too
    host.clearRecord();
    trial.m_bMontageCrDone = 1;
    trial.m_pMontageCr->m_bMtgBackupToo = 0;
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noReversal, noReference));
}

TEST_F(CommonReference, WithoutChannelsTheResultIsZero)
{
    CMDTrialzk empty;
    setReferences(empty, {reference(0, 1.0)});
    EXPECT_EQ(empty.doCommonRefSubstractW(), 0);
    EXPECT_EQ(empty.reverseMontageCrW(), 0);
    empty.m_pMontageCr->m_bMtgBackupToo = 1;
    EXPECT_EQ(empty.reverseMontageCrW(), 0);
    host.expectNoMessages();
}

TEST_F(CommonReference, WithoutSamplesOfAReferenceTheResultIsZero)
{
    trial.getChannel(1)->_cleanTimeDataC(true);
    listChannels(trial, {0});
    setReferences(trial, {reference(1, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    EXPECT_EQ(trial.reverseMontageCrW(), 0);
    setReferences(trial, {reference(99, 1.0), reference(-2, 1.0), reference(INT_MAX, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    trial.cleanMontageCrInfo();
    listChannels(trial, {0});
    for (int i = 0; i < 2; ++i) {
        trial.m_pMontageCr->m_aMtgOperators.Add(nullptr); // one null, then two
        EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
        EXPECT_EQ(trial.reverseMontageCrW(), 0);
    }
    EXPECT_EQ(waves(trial)[0], (Samples{1.0, 2.0}));
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
    host.expectNoMessages();
}

TEST_F(CommonReference, AReferenceOfMinusOneIsTheCurrentChannel)
{
    trial.setCurrentChannel(2);
    listChannels(trial, {3});
    setReferences(trial, {reference(-1, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{900.0, 1800.0}));
}

TEST_F(CommonReference, ABadReferenceBesideAGoodOneAddsNothing)
{
    listChannels(trial, {3});
    setReferences(trial, {reference(44, 5.0), reference(0, 2.0), reference(-7, 5.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{998.0, 1996.0}));
}

TEST_F(CommonReference, EntriesOutOfRangeNullOrWithoutChannelArePassedOver)
{
    listChannels(trial, {-1, 4, INT_MIN, INT_MAX, 1, 2});
    trial.m_pMontageCr->m_aMtgChannels.Add(nullptr);
    listChannels(trial, {3});
    trial.m_ppChannel.release(1);
    trial.getChannel(2)->_cleanTimeDataC(true);
    setReferences(trial, {reference(0, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(wave(*trial.getChannel(0)), (Samples{1.0, 2.0}));
    EXPECT_THAT(wave(*trial.getChannel(2)), IsEmpty());
    EXPECT_EQ(wave(*trial.getChannel(3)), (Samples{999.0, 1998.0}));
}

TEST_F(CommonReference, ChannelsOfOtherLengthAreTreatedAsFarAsBothHaveSamples)
{
    fillTrial(trial, {{1.0, 1.0, 1.0}, {2.0}, {10.0, 10.0}, {10.0, 10.0, 10.0, 10.0}});
    listChannels(trial, {2, 3});
    setReferences(trial, {reference(0, 1.0), reference(1, 1.0)});
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{7.0, 9.0}));
    EXPECT_EQ(waves(trial)[3], (Samples{7.0, 9.0, 9.0, 10.0}));
}

TEST_F(CommonReference, TheReversalIsExactWhereNoReferenceIsInTheList)
{
    listChannels(trial, {2, 3});
    setReferences(trial, {reference(0, 1.0), reference(1, 1.0)}, 2.0);
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
    EXPECT_EQ(waves(trial), backups(trial));
}

TEST_F(CommonReference, OfAnAverageReferenceTheReversalChangesNothingButTheFlag)
{
    fillTrial(trial, {{-3.0}, {1.0}, {2.0}});
    listChannels(trial, {0, 1, 2});
    setReferences(trial, {reference(0, 1.0), reference(1, 1.0), reference(2, 1.0)}, 3.0);
    trial.getChannel(2)->getDataWave()[0] = 5.0; // mean 1
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_THAT(waves(trial), ElementsAre(Samples{-4.0}, Samples{0.0}, Samples{4.0}));
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
    EXPECT_THAT(waves(trial), ElementsAre(Samples{-4.0}, Samples{0.0}, Samples{4.0}));
    trial.copyRawData(false, false, false, true);
    EXPECT_THAT(waves(trial), ElementsAre(Samples{-3.0}, Samples{1.0}, Samples{2.0}));
}

TEST_F(CommonReference, ASingleReferenceInTheListIsDoubledByTheReversalForThoseAfterIt)
{
    listChannels(trial, {0, 1, 2});
    setReferences(trial, {reference(1, 1.0)});
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_THAT(waves(trial),
                ElementsAre(Samples{11.0, 22.0}, Samples{20.0, 40.0}, Samples{120.0, 240.0}, Samples{1000.0, 2000.0}));
}

TEST_F(CommonReference, ASecondTimeTakesTheFirstBack)
{
    listChannels(trial, {2, 3});
    setReferences(trial, {reference(0, 1.0)});
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    const std::vector<Samples> once = waves(trial);
    EXPECT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial), once);
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
}

TEST_F(CommonReference, WithTheBackupFlagWorkingSamplesGetTheReferenceTwiceAndBackupSamplesOnce)
{
    trial.getChannel(0)->getBkData()[0] = 5.0; // reference: working 1, 2, backup 5, 2
    listChannels(trial, {2, 77});
    setReferences(trial, {reference(0, 9.0)}, 0.0, 1);
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{99.0, 198.0}));
    EXPECT_EQ(backups(trial)[2], (Samples{100.0, 200.0}));
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{101.0, 202.0}));
    EXPECT_EQ(backups(trial)[2], (Samples{105.0, 202.0}));
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
}

TEST_F(CommonReference, OfSeveralWithTheBackupFlagBothSumsAreFormedAndDivided)
{
    trial.getChannel(1)->getBkData()[1] = 40.0; // sums: working 11, 22, backup 11, 42
    listChannels(trial, {3});
    setReferences(trial, {reference(0, 1.0), reference(1, 1.0)}, 2.0, 1);
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{1011.0, 2022.0}));
    EXPECT_EQ(backups(trial)[3], (Samples{1005.5, 2021.0}));
}

TEST_F(CommonReference, WithoutBackupSamplesOfAReferenceTheReversalIsThePlainOne)
{
    trial.getChannel(0)->m_pBkData.reset();
    trial.getChannel(0)->m_nBkDataSample = 0;
    listChannels(trial, {2});
    setReferences(trial, {reference(0, 1.0)}, 0.0, 1);
    EXPECT_EQ(trial.reverseMontageCrW(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{101.0, 202.0}));
    EXPECT_EQ(backups(trial)[2], (Samples{100.0, 200.0}));
}

TEST_F(CommonReference, CleaningAfterTheSubtractionLeavesTheFlagWithNoUnit)
{
    listChannels(trial, {2});
    setReferences(trial, {reference(0, 1.0)});
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    EXPECT_EQ(trial.cleanMontageCrInfo(), 1);
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
    EXPECT_EQ(waves(trial)[2], (Samples{99.0, 198.0}));
    EXPECT_EQ(trial.doCommonRefSubstractW(), 0);
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
    host.expectNoMessages();
}

TEST_F(CommonReference, WithoutMemoryEntriesAreNotAdded)
{
    const CMtgChnlIdNamezk entry;
    std::int64_t failures = forEachAllocationFailure([&] {
        CMDTrialzk made;
        const int added = made.addCopyMcrChnl(&entry);
        EXPECT_EQ(added, made.m_pMontageCr != nullptr ? made.m_pMontageCr->m_aMtgChannels.GetSize() : 0);
    });
    EXPECT_EQ(failures, 2);
    failures = forEachAllocationFailure([&] {
        CMDTrialzk made;
        const int added = setReferences(made, {reference(0, 1.0), reference(1, 1.0)});
        EXPECT_EQ(added, made.m_pMontageCr != nullptr ? made.m_pMontageCr->m_aMtgOperators.GetSize() : 0);
    });
    EXPECT_EQ(failures, 3);
}

// Random montages against one loop over samples for each step.
TEST(RandomCommonReferences, AreThoseOfPlainLoopsToTheBit)
{
    std::mt19937 random(7);
    for (int run = 0; run < 40; ++run) {
        std::vector<Samples> x;
        const int channels = 2 + static_cast<int>(random() % 12);
        for (int i = 0; i < channels; ++i)
            x.push_back(numeric::randomSamples(1 + random() % 2500, static_cast<unsigned>(random())));
        CMDTrialzk trial;
        fillTrial(trial, x);
        std::vector<int> list;
        for (int i = 0; i < channels; ++i)
            list.push_back(static_cast<int>(random() % static_cast<unsigned>(channels + 1)));
        std::vector<CMtgChnlOperatorzk> references;
        const int operators = 1 + static_cast<int>(random() % 5);
        for (int i = 0; i < operators; ++i)
            references.push_back(reference(static_cast<int>(random() % static_cast<unsigned>(channels)),
                                           static_cast<double>(random() % 100) * 0.07));
        const double divisor = run % 3 == 0 ? 0.0 : 0.3 * run;
        listChannels(trial, list);
        setReferences(trial, references, divisor);

        const auto apply = [&](double sign) {
            std::size_t length = 0;
            for (const CMtgChnlOperatorzk& made : references)
                length = std::max(length, x[static_cast<std::size_t>(made.m_nMtgChnlID)].size());
            Samples sum(length, 0.0);
            for (const CMtgChnlOperatorzk& made : references) {
                const Samples& from = x[static_cast<std::size_t>(made.m_nMtgChnlID)];
                for (std::size_t i = 0; i < from.size(); ++i)
                    sum[i] += from[i] * made.m_dMtgWeight;
            }
            if (divisor > 0.0)
                for (double& value : sum)
                    value /= divisor;
            for (const int id : list) {
                if (id >= channels)
                    continue;
                const Samples& live = operators == 1 ? x[static_cast<std::size_t>(references[0].m_nMtgChnlID)] : sum;
                Samples& target = x[static_cast<std::size_t>(id)];
                for (std::size_t i = 0; i < std::min(target.size(), length); ++i)
                    target[i] += sign * live[i];
            }
        };
        ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
        apply(-1.0);
        EXPECT_EQ(waves(trial), x) << run;
        ASSERT_EQ(trial.reverseMontageCrW(), 1);
        apply(1.0);
        EXPECT_EQ(waves(trial), x) << run;
    }
}

} // namespace
} // namespace megset::CMDTrial3MontageCommon_test
