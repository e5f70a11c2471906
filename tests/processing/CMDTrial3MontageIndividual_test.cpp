// The individual-reference montage of a trial.

#include "megset/processing/CMDTrial3Montage.h"

#include "megset/platform/CException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"
#include "tests/processing/montageTrial.h"

#include <climits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial3MontageIndividual_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString noReference = "No reference channel has been setup";

class IndividualReferences : public ::testing::Test
{
protected:
    IndividualReferences() { fillTrial(trial, {{1.0, 2.0}, {10.0, 20.0}, {100.0, 200.0}, {1000.0, 2000.0}}); }
    void add(const CMtgUnit4IndividualRefzk& unit) { EXPECT_EQ(trial.addCopyMuIr(&unit), 1); }
    /// A unit of two references that keeps the list from being refused, on channel 0.
    void addPair() { add(unitOf(0, {reference(1, 1.0), reference(2, 1.0)})); }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(IndividualReferences, TwoUnitsOfOneReferenceEachDoNothing)
{
    add(unitOf(0, {reference(1, 1.0)}));
    add(unitOf(2, {reference(3, 1.0)}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    EXPECT_EQ(trial.reverseMontageIr(), 0);
    EXPECT_EQ(waves(trial), backups(trial));
    EXPECT_EQ(trial.m_bMontageIrDone, 0);
    host.expectNoMessages();
}

TEST_F(IndividualReferences, AUnitOfOneReferenceBesideOneOfTwoIsDoneWithoutItsWeight)
{
    add(unitOf(2, {reference(0, 9.0)}, 4.0));
    add(unitOf(3, {reference(0, 2.0), reference(1, 3.0)}, 4.0));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_THAT(waves(trial),
                ElementsAre(Samples{1.0, 2.0}, Samples{10.0, 20.0}, Samples{99.0, 198.0}, Samples{992.0, 1984.0}));
    EXPECT_EQ(trial.m_bMontageIrDone, 1);
    EXPECT_EQ(backups(trial)[3], (Samples{1000.0, 2000.0}));
}

TEST_F(IndividualReferences, ADivisorOfZeroLeavesTheWeightedSum)
{
    for (const double divisor : {0.0, -3.0}) {
        trial.cleanMontageIrInfo();
        add(unitOf(3, {reference(0, 2.0), reference(1, 3.0)}, divisor));
        EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
        EXPECT_EQ(waves(trial)[3], (Samples{968.0, 1936.0}));
    }
}

TEST_F(IndividualReferences, ComeFromBackupAndTheTargetStartsFromItsOwn)
{
    addPair();
    for (int i = 0; i < 3; ++i)
        trial.getChannel(i)->getDataWave()[0] = 1e6;
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    EXPECT_EQ(waves(trial)[1], (Samples{1e6, 20.0}));
}

TEST_F(IndividualReferences, TwiceInARowGivesTheSameSamples)
{
    addPair();
    add(unitOf(1, {reference(0, 1.0)}));
    ASSERT_EQ(trial.doIndividualRefSubstract(), 1);
    const std::vector<Samples> once = waves(trial);
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial), once);
}

TEST_F(IndividualReferences, TheReversalGivesBackupAndReferenceTogether)
{
    addPair();
    add(unitOf(3, {reference(0, 5.0)}));
    ASSERT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{111.0, 222.0}));
    EXPECT_EQ(waves(trial)[3], (Samples{1001.0, 2002.0}));
    EXPECT_EQ(trial.m_bMontageIrDone, 1); // nothing clears it
    const std::vector<Samples> once = waves(trial);
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial), once);
}

TEST_F(IndividualReferences, ATargetOfTwoUnitsEndsWithTheLater)
{
    addPair();
    add(unitOf(0, {reference(3, 1.0)}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{-999.0, -1998.0}));
}

TEST_F(IndividualReferences, AUnitWithoutOperatorsRaisesTheExceptionAfterThoseBeforeIt)
{
    addPair();
    add(unitOf(1, {}));
    add(unitOf(2, {reference(0, 1.0), reference(1, 1.0)}));
    EXPECT_THROW(trial.doIndividualRefSubstract(), CInvalidArgException);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    EXPECT_EQ(waves(trial)[2], (Samples{100.0, 200.0}));
    EXPECT_EQ(trial.m_bMontageIrDone, 0);
    EXPECT_THROW(trial.reverseMontageIr(), CInvalidArgException);
}

TEST_F(IndividualReferences, AUnitWithoutOperatorsIsNoMatterInAListThatIsRefused)
{
    add(unitOf(1, {}));
    add(unitOf(1, {reference(0, 1.0)}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
}

TEST_F(IndividualReferences, AnOperatorOutOfRangeIsFoundByItsNameAndStored)
{
    add(unitOf(3, {reference(99, 1.0, "C1"), reference(-1, 1.0, "C2")}));
    EXPECT_EQ(trial.reverseMontageIr(), 0); // without look-up none counts
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{890.0, 1780.0}));
    EXPECT_EQ(trial.m_aMontageIr[0]->m_aMtgRefOperators[0]->m_nMtgChnlID, 1);
    EXPECT_EQ(trial.m_aMontageIr[0]->m_aMtgRefOperators[1]->m_nMtgChnlID, 2);
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{1110.0, 2220.0}));
}

TEST_F(IndividualReferences, AnOperatorThatWasNeverResolvedIsPassedOver)
{
    add(unitOf(3, {reference(0, 1.0), reference(1, 1.0), reference(77, 1.0, "nobody")}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{989.0, 1978.0}));
    EXPECT_EQ(trial.m_aMontageIr[0]->m_aMtgRefOperators[2]->m_nMtgChnlID, 77);
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{1011.0, 2022.0}));
}

TEST_F(IndividualReferences, AnOperatorThatCantBeFoundDoesNotCount)
{
    add(unitOf(3, {reference(0, 1.0), reference(77, 1.0, "nobody")}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    EXPECT_EQ(trial.reverseMontageIr(), 0);
}

TEST_F(IndividualReferences, ANullOperatorCounts)
{
    CMtgUnit4IndividualRefzk unit = unitOf(3, {reference(0, 3.0)}, 2.0);
    unit.m_aMtgRefOperators.Add(nullptr);
    add(unit);
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1); // weighted, because there are two
    EXPECT_EQ(waves(trial)[3], (Samples{998.5, 1997.0}));
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{1001.5, 2003.0}));
}

TEST_F(IndividualReferences, AUnitWhoseOnlyOperatorIsNullOrMissingIsPassedOver)
{
    addPair();
    CMtgUnit4IndividualRefzk unit = unitOf(1, {});
    unit.m_aMtgRefOperators.Add(nullptr);
    add(unit);
    add(unitOf(2, {reference(88, 1.0, "nobody")}));
    trial.m_ppChannel[3]->_cleanTimeDataC(true);
    add(unitOf(2, {reference(3, 1.0)}));
    trial.getChannel(2)->getDataWave()[0] = 5.0;
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[1], (Samples{10.0, 20.0}));
    EXPECT_EQ(waves(trial)[2], (Samples{5.0, 200.0})); // not even restored
    EXPECT_EQ(trial.reverseMontageIr(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{5.0, 200.0}));
}

TEST_F(IndividualReferences, ASingleOperatorIsLookedUpByNameToo)
{
    addPair();
    add(unitOf(3, {reference(-5, 1.0, "C1")}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{990.0, 1980.0}));
}

TEST_F(IndividualReferences, ATargetOutOfRangeIsLookedUpEachTimeAndNotStored)
{
    add(unitOf(-1, {reference(0, 1.0), reference(1, 1.0)}, 0.0, "C3"));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[3], (Samples{989.0, 1978.0}));
    EXPECT_EQ(trial.m_aMontageIr[0]->m_nMtgTargetID, -1);
    EXPECT_EQ(trial.reverseMontageIr(), 1); // passed over
    EXPECT_EQ(waves(trial)[3], (Samples{989.0, 1978.0}));
}

TEST_F(IndividualReferences, ATargetThatCantBeFoundIsPassedOver)
{
    add(unitOf(44, {reference(0, 1.0), reference(1, 1.0)}, 0.0, "nobody"));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(trial.m_bMontageIrDone, 1);
    trial.m_ppChannel.release(3);
    trial.m_aMontageIr[0]->m_nMtgTargetID = 3;
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(wave(*trial.getChannel(2)), (Samples{100.0, 200.0}));
}

TEST_F(IndividualReferences, ANullUnitIsPassedOver)
{
    trial.m_aMontageIr.Add(nullptr);
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    addPair();
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    EXPECT_EQ(trial.reverseMontageIr(), 1);
}

TEST_F(IndividualReferences, ATargetIsTreatedUpToTheLengthOfItsBackup)
{
    fillTrial(trial, {{1.0, 2.0, 3.0}, {1.0, 1.0}, {50.0, 60.0}, {7.0, 7.0, 7.0, 7.0}});
    trial.getChannel(2)->initDataBk(1, 2, false); // its working array is shorter
    trial.getChannel(2)->getBkData()[0] = 50.0;
    trial.getChannel(2)->getBkData()[1] = 60.0;
    add(unitOf(2, {reference(0, 1.0), reference(1, 1.0)}));
    add(unitOf(3, {reference(0, 1.0), reference(1, 1.0)}));
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[2], (Samples{48.0, 57.0}));
    EXPECT_EQ(waves(trial)[3], (Samples{5.0, 4.0, 4.0, 7.0}));
}

TEST_F(IndividualReferences, ATargetWithoutBackupKeepsItsWorkingSamplesAndLosesTheReference)
{
    addPair();
    trial.getChannel(0)->m_pBkData.reset();
    trial.getChannel(0)->m_nBkDataSample = 0;
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    trial.getChannel(0)->_cleanTimeDataC(true);
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_THAT(wave(*trial.getChannel(0)), IsEmpty());
}

TEST_F(IndividualReferences, WithoutBackupSamplesOfAnyReferenceTheResultIsZero)
{
    addPair();
    for (const int i : {1, 2}) {
        trial.getChannel(i)->m_pBkData.reset();
        trial.getChannel(i)->m_nBkDataSample = 0;
    }
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    EXPECT_EQ(trial.reverseMontageIr(), 0);
    EXPECT_EQ(trial.m_bMontageIrDone, 0);
}

TEST_F(IndividualReferences, WithoutUnitsItSaysSo)
{
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    EXPECT_EQ(trial.reverseMontageIr(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noReference, noReference));
    host.clearRecord();
    trial.m_bMontageCrDone = 1;
    EXPECT_EQ(trial.doIndividualRefSubstract(), 0);
    EXPECT_THAT(host.messages(), ElementsAre(noReference, noReference)); // of the reversal, too
}

TEST_F(IndividualReferences, WithoutChannelsTheResultIsZero)
{
    CMDTrialzk empty;
    const CMtgUnit4IndividualRefzk unit = unitOf(0, {reference(1, 1.0), reference(2, 1.0)});
    empty.addCopyMuIr(&unit);
    EXPECT_EQ(empty.doIndividualRefSubstract(), 0);
    EXPECT_EQ(empty.reverseMontageIr(), 0);
    host.expectNoMessages();
}

TEST_F(IndividualReferences, AfterACommonReferenceTheTargetsLoseItAndTheOthersKeepIt)
{
    listChannels(trial, {0, 3});
    setReferences(trial, {reference(1, 1.0)});
    ASSERT_EQ(trial.doCommonRefSubstractW(), 1);
    addPair();
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    EXPECT_EQ(waves(trial)[3], (Samples{990.0, 1980.0}));
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
}

// A target by name alone is passed over by the reversal: what the reversal left on the others shows that it ran.
TEST_F(IndividualReferences, TheReversalRunsFirstAfterACommonReferenceAlone)
{
    add(unitOf(0, {reference(1, 1.0), reference(2, 1.0)}));
    add(unitOf(1, {}));
    EXPECT_THROW(trial.doIndividualRefSubstract(), CInvalidArgException);
    EXPECT_EQ(waves(trial)[0], (Samples{-109.0, -218.0}));
    trial.m_bMontageCrDone = 1;
    EXPECT_THROW(trial.doIndividualRefSubstract(), CInvalidArgException); // out of the reversal
    EXPECT_EQ(waves(trial)[0], (Samples{111.0, 222.0}));
}

TEST_F(IndividualReferences, SettingAListEmptiesAndRaisesTheException)
{
    addPair();
    EXPECT_EQ(trial.setMontageIr(nullptr), 0);
    EXPECT_EQ(trial.m_aMontageIr.GetSize(), 0);
    addPair();
    CPtrArray list;
    EXPECT_EQ(trial.setMontageIr(&list), 0);
    EXPECT_EQ(trial.m_aMontageIr.GetSize(), 0);
    addPair();
    CMtgUnit4IndividualRefzk unit = unitOf(0, {reference(1, 1.0)});
    list.Add(&unit);
    EXPECT_THROW(trial.setMontageIr(&list), CInvalidArgException);
    EXPECT_EQ(trial.m_aMontageIr.GetSize(), 0);
}

TEST_F(IndividualReferences, UnitsAreCopiedAndCleaningKeepsSamplesAndFlag)
{
    EXPECT_EQ(trial.addCopyMuIr(nullptr), 0);
    const CMtgUnit4IndividualRefzk unit = unitOf(0, {reference(1, 1.0), reference(2, 1.0)}, 3.0, "C0");
    EXPECT_EQ(trial.addCopyMuIr(&unit), 1);
    ASSERT_EQ(trial.m_aMontageIr.GetSize(), 1);
    EXPECT_EQ(*trial.m_aMontageIr[0], unit);
    ASSERT_EQ(trial.doIndividualRefSubstract(), 1);
    const std::vector<Samples> done = waves(trial);
    EXPECT_EQ(trial.cleanMontageIrInfo(), 1);
    EXPECT_EQ(trial.m_aMontageIr.GetSize(), 0);
    EXPECT_EQ(trial.m_bMontageIrDone, 1);
    EXPECT_EQ(waves(trial), done);
}

TEST_F(IndividualReferences, WithoutMemoryTheUnitIsNotAdded)
{
    const CMtgUnit4IndividualRefzk unit = unitOf(0, {reference(1, 1.0)});
    const std::int64_t failures = forEachAllocationFailure([&] {
        CMDTrialzk made;
        const int added = made.addCopyMuIr(&unit);
        EXPECT_EQ(added, made.m_aMontageIr.GetSize());
    });
    EXPECT_EQ(failures, 1);
}

TEST_F(IndividualReferences, WithoutMemoryForTheTargetItIsUsedAsItIs)
{
    addPair();
    trial.getChannel(0)->initDataBk(1, 2, false); // the restored array has to be longer
    const FailingAllocator fails(1);
    EXPECT_EQ(trial.doIndividualRefSubstract(), 1);
    EXPECT_EQ(fails.failures(), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory!")));
}

// Random lists against one loop over samples for each step.
TEST(RandomIndividualReferences, AreThoseOfPlainLoopsToTheBit)
{
    const ScriptedHost host;
    std::mt19937 random(11);
    for (int run = 0; run < 40; ++run) {
        const int channels = 3 + static_cast<int>(random() % 8);
        const auto anyChannel = [&] { return static_cast<int>(random() % static_cast<unsigned>(channels)); };
        std::vector<Samples> raw;
        for (int i = 0; i < channels; ++i)
            raw.push_back(numeric::randomSamples(1 + random() % 2500, static_cast<unsigned>(random())));
        CMDTrialzk trial;
        fillTrial(trial, raw);
        std::vector<CMtgUnit4IndividualRefzk> units;
        for (int k = 0; k < 5; ++k) {
            std::vector<CMtgChnlOperatorzk> references;
            const int operators = k == 0 ? 3 : 1 + static_cast<int>(random() % 4);
            for (int i = 0; i < operators; ++i)
                references.push_back(reference(anyChannel(), static_cast<double>(random() % 100) * 0.03));
            units.push_back(unitOf(anyChannel(), references, run % 4 == 0 ? 0.0 : 0.7 * run));
            trial.addCopyMuIr(&units.back());
        }

        std::size_t longest = 0;
        for (const CMtgUnit4IndividualRefzk& unit : units)
            for (int i = 0; i < unit.m_aMtgRefOperators.GetSize(); ++i)
                longest =
                    std::max(longest, raw[static_cast<std::size_t>(unit.m_aMtgRefOperators[i]->m_nMtgChnlID)].size());
        const auto montage = [&](double sign) {
            std::vector<Samples> x = raw;
            for (const CMtgUnit4IndividualRefzk& unit : units) {
                const bool single = unit.m_aMtgRefOperators.GetSize() == 1;
                Samples sum(longest, 0.0);
                for (int i = 0; i < unit.m_aMtgRefOperators.GetSize(); ++i) {
                    const CMtgChnlOperatorzk& made = *unit.m_aMtgRefOperators[i];
                    const Samples& from = raw[static_cast<std::size_t>(made.m_nMtgChnlID)];
                    for (std::size_t s = 0; s < from.size(); ++s)
                        sum[s] += from[s] * made.m_dMtgWeight;
                }
                if (unit.m_dMtgRefDivisor > 0.0)
                    for (double& value : sum)
                        value /= unit.m_dMtgRefDivisor;
                if (single)
                    sum = raw[static_cast<std::size_t>(unit.m_aMtgRefOperators[0]->m_nMtgChnlID)];
                const auto target = static_cast<std::size_t>(unit.m_nMtgTargetID);
                x[target] = raw[target];
                for (std::size_t s = 0; s < std::min(sum.size(), x[target].size()); ++s)
                    x[target][s] += sign * sum[s];
            }
            return x;
        };
        ASSERT_EQ(trial.doIndividualRefSubstract(), 1);
        EXPECT_EQ(waves(trial), montage(-1.0)) << run;
        ASSERT_EQ(trial.reverseMontageIr(), 1);
        EXPECT_EQ(waves(trial), montage(1.0)) << run;
        EXPECT_EQ(backups(trial), raw) << run;
    }
}

} // namespace
} // namespace megset::CMDTrial3MontageIndividual_test
