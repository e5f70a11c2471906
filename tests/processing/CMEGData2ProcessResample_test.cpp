#include "tests/processing/resampledDataset.h"

#include "megset/platform/CArchiveException.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2ProcessResample_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DatasetResampling, PicksEveryFourthSampleOfAllTrials)
{
    const ScriptedHost host;
    RecordedDataset filed(3, 2, 100);
    EXPECT_EQ(filed.data.reSampleData(false, 4, true), 1);
    EXPECT_EQ(filed.data.m_nCurrentTrial, 2) << "the last trial is current";
    for (int trial = 0; trial < 3; ++trial)
        for (int channel = 0; channel < 2; ++channel)
            EXPECT_EQ(filed.waveOf(trial, channel), resampled(channelValues(trial, channel, 100), false, 4, 26));
    const CMDTrialzk& trial = *filed.data.getTrialzk(1);
    EXPECT_EQ(trial.m_bTrialResampled, 0);
    EXPECT_EQ(trial.m_nTrialResampleStep, 4);
    EXPECT_EQ(backup(*trial.getChannel(0)), channelValues(1, 0, 100)) << "the recording stays";
    host.expectNoMessages();
}

TEST(DatasetResampling, SetsTheParametersOfTheDataset)
{
    RecordedDataset filed(1, 1, 1000);
    EXPECT_EQ(filed.data.reSampleData(true, 3, false), 1);
    const CMEGRecordInfozkProzk& record = filed.data.m_recordInfo;
    EXPECT_EQ(record.m_nRecTotalSample, 333);
    EXPECT_EQ(record.m_nRecPreTrigPts, 33);
    EXPECT_EQ(record.m_dRecSampleRate, 1000.0 / 3.0);
    EXPECT_EQ(record.m_bResampleAverage, 1);
    EXPECT_EQ(record.m_nResampleFactor, 3);
    EXPECT_EQ(record.m_nRawTotalSample, 1000);
    EXPECT_EQ(record.m_nRawPreTrigPts, 100);
    EXPECT_EQ(record.m_dRawSampleRate, 1000.0);
    EXPECT_EQ(filed.data.getTrialzk(0)->m_bTrialResampled, 1);
}

TEST(DatasetResampling, FactorZeroOrNegativeBehavesAsFactorOne)
{
    for (const std::int64_t factor : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        const ScriptedHost host;
        RecordedDataset filed(1, 1, 20);
        EXPECT_EQ(filed.data.reSampleData(true, factor, true), 1);
        auto expected = channelValues(0, 0, 20);
        expected.push_back(expected.back());
        EXPECT_EQ(filed.waveOf(0, 0), expected);
        EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 1);
        host.expectNoMessages();
    }
}

TEST(DatasetResampling, AFactorOfHalfTheSamplesIsRefused)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 1000);
    EXPECT_EQ(filed.data.reSampleData(false, 500, true), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Re-sampling factor (500) cannot be larger than half of the sampling rate (500)"));
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 1000));
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 1);
}

TEST(DatasetResampling, TheLargestFactorGivesThreeSamples)
{
    RecordedDataset filed(1, 1, 1000);
    EXPECT_EQ(filed.data.reSampleData(false, 499, true), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 499, 998));
}

TEST(DatasetResampling, HugeFactorsAndEmptyRecordsAreRefused)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 10);
    EXPECT_EQ(filed.data.reSampleData(false, std::numeric_limits<std::int64_t>::max(), true), 0);
    recordAs(filed.data, 0);
    EXPECT_EQ(filed.data.reSampleData(false, 1, true), 0);
    recordAs(filed.data, -1000);
    EXPECT_EQ(filed.data.reSampleData(false, 1, true), 0);
    EXPECT_EQ(host.messages().size(), 3U);
    EXPECT_EQ(host.messages()[2], "Re-sampling factor (1) cannot be larger than half of the sampling rate (-500)");
}

TEST(DatasetResampling, ACountOfRawSamplesThatNothingHoldsIsNoMemory)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 10);
    recordAs(filed.data, most);
    EXPECT_EQ(filed.data.resampledCount(1), most);
    EXPECT_EQ(filed.data.resampledCount(2), most / 2 + 1);
    EXPECT_EQ(filed.data.reSampleData(false, 1, true), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    EXPECT_EQ(filed.data.getMDTrial(0)->getChannel(0)->getBkDataSample(), 10);
}

TEST(DatasetResampling, TheLastAverageOverTheEndCountsTheLastSampleAgain)
{
    RecordedDataset filed(1, 1, 1000);
    EXPECT_EQ(filed.data.reSampleData(true, 3, true), 1);
    const auto samples = filed.waveOf(0, 0);
    ASSERT_EQ(samples.size(), 334U);
    EXPECT_EQ(samples[0], (0.0 + 1.0 + 2.0) / 3.0);
    EXPECT_EQ(samples[333], (999.0 + 999.0 + 999.0) / 3.0);
}

TEST(DatasetResampling, WorkingCountIsOneAboveTheRecord)
{
    RecordedDataset filed(1, 1, 1000);
    for (const std::int64_t factor : {1, 2, 3, 7, 499}) {
        EXPECT_EQ(filed.data.reSampleData(false, factor, true), 1);
        EXPECT_EQ(filed.data.getTotalSample(), filed.data.m_recordInfo.m_nRecTotalSample + 1);
    }
}

TEST(DatasetResampling, CanBeRepeatedAndUndone)
{
    RecordedDataset filed(1, 1, 30);
    EXPECT_EQ(filed.data.reSampleData(true, 5, true), 1);
    EXPECT_EQ(filed.data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 30), false, 2, 16));
    EXPECT_EQ(filed.data.reSampleData(false, 1, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 30), false, 1, 31));
    const CMEGRecordInfozkProzk& record = filed.data.m_recordInfo;
    EXPECT_EQ(record.m_nRecTotalSample, 30);
    EXPECT_EQ(record.m_nRecPreTrigPts, 3);
    EXPECT_EQ(record.m_dRecSampleRate, 1000.0);
}

TEST(DatasetResampling, OfTheCurrentTrialLeavesTheOthersAndSetsTheDatasetAllTheSame)
{
    RecordedDataset filed(2, 1, 40);
    filed.data.getTrialzk(1);
    EXPECT_EQ(filed.data.reSampleData(false, 4, false), 1);
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 4);
    EXPECT_EQ(filed.waveOf(1, 0), resampled(channelValues(1, 0, 40), false, 4, 11));
    const ScriptedHost host;
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 40));
    EXPECT_THAT(host.messages(), ElementsAre("Sample has been changed: 10->40, Please re-sample and check the data"));
}

TEST(DatasetResampling, PassesOverTrialsThatCantBeOpenedOrHaveNoChannels)
{
    ScriptedHost host;
    RecordedDataset filed(3, 1, 20);
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    CMDTrialzk empty;
    filed.writeTrial(2, empty);
    EXPECT_EQ(filed.data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 20), false, 2, 11));
}

TEST(DatasetResampling, OfAllTrialsWalksOverTheirPlacesAlone)
{
    ScriptedHost host;
    RecordedDataset filed(1, 1, 20);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    filed.data.m_nTotalTrial = 5;
    EXPECT_EQ(filed.data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 20), false, 2, 11));
    host.expectNoMessages();
}

TEST(DatasetResampling, OfACurrentTrialThatIsNoneSetsTheParametersAlone)
{
    RecordedDataset filed(1, 1, 20);
    filed.data.m_nCurrentTrial = std::numeric_limits<int>::max();
    EXPECT_EQ(filed.data.reSampleData(false, 2, false), 1);
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 2);
    EXPECT_EQ(filed.trialsInMemory(), 0);
}

TEST(DatasetResampling, WithoutTrialsSetsTheParametersAlone)
{
    CMEGDatazk data;
    recordAs(data, 100);
    EXPECT_EQ(data.reSampleData(false, 5, true), 1);
    EXPECT_EQ(data.reSampleData(false, 5, false), 1);
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 20);
}

TEST(DatasetResampling, PadsATrialShorterThanTheRecordAndCutsALongerOne)
{
    RecordedDataset filed(2, 1, 10);
    recordAs(filed.data, 20);
    EXPECT_EQ(filed.data.reSampleData(true, 3, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 10), true, 3, 7));
    recordAs(filed.data, 6);
    EXPECT_EQ(filed.data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(filed.waveOf(0, 0), (std::vector<double>{0, 2, 4, 6}));
}

TEST(DatasetResampling, PassesOverEmptyPlacesAndChannelsWithoutRawSamples)
{
    RecordedDataset filed(1, 3, 8);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.m_ppChannel.set(0, nullptr);
    trial.getChannel(1)->m_pBkData.reset();
    trial.getChannel(1)->m_nBkDataSample = 0;
    EXPECT_EQ(filed.data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(wave(*trial.getChannel(1)), channelValues(0, 1, 8));
    EXPECT_EQ(wave(*trial.getChannel(2)).size(), 5U);
}

TEST(DatasetResampling, WhereMemoryEndsInALaterTrialLeavesTheOneBeforeDone)
{
    int endedInTheSecond = 0;
    for (std::int64_t n = 1;; ++n) {
        const ScriptedHost host;
        RecordedDataset filed(2, 1, 20);
        filed.data.getTrialzk(0);
        int done = 0;
        std::int64_t failures = 0;
        {
            const FailingAllocator failing(n);
            try {
                done = filed.data.reSampleData(false, 2, true);
            } catch (const CArchiveException&) {
                continue; // of a trial's file, which could not be held
            }
            failures = failing.failures();
        }
        if (failures == 0)
            break;
        if (done)
            continue;
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
        EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 1);
        EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 20);
        if (filed.data.m_nCurrentTrial == 0)
            continue;
        ++endedInTheSecond;
        const auto first = filed.readTrial(0);
        EXPECT_EQ(wave(*first->getChannel(0)), resampled(channelValues(0, 0, 20), false, 2, 11));
        EXPECT_EQ(first->m_nTrialResampleStep, 2);
        EXPECT_EQ(filed.data.getCurrentTrialPt()->m_nTrialResampleStep, 1);
    }
    EXPECT_EQ(endedInTheSecond, 1);
}

TEST(DatasetResampling, WhereMemoryEndsLeavesTheTrialAndTheSettingsAsTheyWere)
{
    RecordedDataset filed(2, 1, 20);
    filed.data.getTrialzk(1);
    CMEGDatazk& data = filed.data;
    EXPECT_EQ(data.m_ppTrial.size(), 2);
    const ScriptedHost host;
    const FailingAllocator first(1);
    EXPECT_EQ(data.reSampleData(false, 2, false), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 20);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 1);
    EXPECT_EQ(data.getCurrentTrialPt()->m_nTrialResampleStep, 1);
}

TEST(DatasetResampling, EveryRefusedAllocationIsToldOrSurvived)
{
    forEachAllocationFailure([] {
        CMEGDatazk data;
        {
            const FailingAllocator none(0);
            EXPECT_EQ(data.initMEGData(2, 2, 20), 1);
            data.m_aTrialFilePath.Add("a");
            data.m_aTrialFilePath.Add("b");
        }
        recordAs(data, 20);
        const ScriptedHost host;
        if (!data.reSampleData(true, 2, false)) {
            EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
            EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 1);
        }
    });
}

TEST(DatasetResampling, AgreesWithThePlainLoopForRandomFactors)
{
    std::mt19937 random(3);
    for (int round = 0; round < 60; ++round) {
        const std::int64_t samples = 6 + random() % 3000;
        const std::int64_t factor = 1 + static_cast<std::int64_t>(random()) % (samples / 2 - 1);
        const bool average = random() % 2 == 0;
        CMEGDatazk data;
        ASSERT_EQ(data.initMEGData(1, 1, samples), 1);
        recordAs(data, samples);
        std::vector<double> x(static_cast<std::size_t>(samples));
        for (double& v : x)
            v = std::normal_distribution<double>(0.0, 1000.0)(random);
        CMDChannelzk& channel = *data.getTrialzk(0)->getChannel(0);
        channel.addData(samples, x.data());
        ASSERT_EQ(data.reSampleData(average, factor, false), 1);
        EXPECT_EQ(wave(channel), resampled(x, average, factor, samples / factor + 1)) << samples << " by " << factor;
    }
}

// ---- parameters and triggers

TEST(ResampleParameters, ScaleTheTriggersFromTheirBackup)
{
    CMEGDatazk data;
    recordAs(data, 1000);
    CMarkerDatazk& trigger = addMarker(data.m_mkTrig, {10, 101, 999});
    CMarkerDatazk& mark = addMarker(data.m_mkMarker, {10, 101});
    data.m_mkTrig.addMarker(nullptr);
    data.m_mkTrig.m_aMarkers.Add(std::unique_ptr<CMarkerDatazk>());
    EXPECT_EQ(data.setResampleParameter(false, 4), 1);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(2, 25, 249));
    EXPECT_EQ(trigger.getMarkPt(1)->m_nMarkPtEnd, 26);
    EXPECT_EQ(trigger.m_markWindow, (MarkWindow{25, 75, 2, 12}));
    EXPECT_THAT(beginsOf(mark), ElementsAre(10, 101)) << "other marks keep their samples";
    EXPECT_EQ(data.setResampleParameter(false, 2), 1);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(5, 50, 499));
}

TEST(ResampleParameters, AFactorBelowOneChangesNothing)
{
    CMEGDatazk data;
    recordAs(data, 1000);
    const CMarkerDatazk& trigger = addMarker(data.m_mkTrig, {10});
    EXPECT_EQ(data.setResampleParameter(true, 0), 1);
    EXPECT_EQ(data.setResampleParameter(true, -3), 1);
    EXPECT_EQ(data.m_recordInfo.m_bResampleAverage, 0);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(10));
}

TEST(ResampleParameters, AMarkerThatLostPointsGetsAllOfThemBack)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 1000);
    CMarkerDatazk& trigger = addMarker(filed.data.m_mkTrig, {100, 200, 300});
    trigger.m_aMarkPts.RemoveAt(1);
    EXPECT_EQ(filed.data.reSampleData(false, 10, true), 1);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(10, 20, 30));
    EXPECT_THAT(host.messages(),
                ElementsAre("The triggers have been modified and the re-sampling needs to restore original data!"));
    EXPECT_THAT(host.questions(), IsEmpty());
}

TEST(ResampleParameters, OccurrencesThatTheBackupLacksStayWithoutAWord)
{
    const ScriptedHost host;
    CMEGDatazk data;
    recordAs(data, 1000);
    CMarkerDatazk& trigger = addMarker(data.m_mkTrig, {100, 200, 300});
    trigger.m_aMarkPtsBk.RemoveAt(2);
    EXPECT_EQ(data.setResampleParameter(false, 10), 1);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(10, 20, 300));
    host.expectNoMessages();
}

TEST(ResampleParameters, StayAsTheyWereWhenAMarkerCantBeRestored)
{
    CMEGDatazk data;
    recordAs(data, 1000);
    addMarker(data.m_mkTrig, {100, 200}).m_aMarkPts.RemoveAt(0);
    const ScriptedHost host;
    const FailingAllocator first(1);
    EXPECT_EQ(data.setResampleParameter(true, 4), 0);
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 1000);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 1);
}

TEST(ResampleParameters, PassOverOccurrencesThatAreMissing)
{
    CMEGDatazk data;
    recordAs(data, 1000);
    CMarkerDatazk& trigger = addMarker(data.m_mkTrig, {100, 200});
    trigger.m_aMarkPts.SetAt(0, nullptr);
    trigger.m_aMarkPtsBk.SetAt(1, nullptr);
    EXPECT_EQ(data.setResampleParameter(false, 4), 1);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(-1, 200));
}

} // namespace
} // namespace megset::CMEGData2ProcessResample_test
