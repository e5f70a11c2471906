// One trial made anew from its raw samples before a filter goes over the dataset.
#include "tests/processing/resampledDataset.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2ProcessPrepare_test {
namespace {

using ::testing::ElementsAre;

TEST(TrialRebuild, CopiesTheRawSamplesOfATrialThatIsNotResampled)
{
    RecordedDataset filed(1, 2, 6);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.getChannel(0)->getDataWave()[2] = -1.0;
    trial.getChannel(1)->_cleanTimeDataC(false);
    for (const std::int64_t step : {1, 0, -4}) {
        trial.m_nTrialResampleStep = step;
        EXPECT_EQ(filed.data.reSampleTrl4DcOffFilt(&trial), 1);
        EXPECT_EQ(wave(*trial.getChannel(0)), channelValues(0, 0, 6));
        EXPECT_EQ(wave(*trial.getChannel(1)), channelValues(0, 1, 6));
    }
}

TEST(TrialRebuild, ResamplesByTheFactorOfTheDatasetAndTheChannelsOwnCount)
{
    RecordedDataset filed(1, 1, 30);
    CMEGDatazk& data = filed.data;
    ASSERT_EQ(data.reSampleData(true, 3, true), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    trial.getChannel(0)->getDataWave()[0] = -1.0;
    recordAs(data, 999); // the record's count doesn't matter
    data.m_recordInfo.m_nResampleFactor = 3;
    data.m_recordInfo.m_bResampleAverage = 1;
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(wave(*trial.getChannel(0)), resampled(channelValues(0, 0, 30), true, 3, 11));
    data.m_recordInfo.m_bResampleAverage = 0;
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(wave(*trial.getChannel(0)), resampled(channelValues(0, 0, 30), false, 3, 11))
        << "the dataset's averaging counts, not the trial's";
}

TEST(TrialRebuild, ATrialResampledOtherwiseResetsTheDataset)
{
    RecordedDataset filed(1, 1, 30);
    CMEGDatazk& data = filed.data;
    ASSERT_EQ(data.reSampleData(true, 3, true), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    data.m_recordInfo.m_nResampleFactor = 2;
    data.m_recordInfo.m_bResampleAverage = 0;
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 3);
    EXPECT_EQ(data.m_recordInfo.m_bResampleAverage, 1);
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 10);
}

TEST(TrialRebuild, TheDatasetStaysWhereTheTrialsCountFits)
{
    RecordedDataset filed(1, 1, 30);
    CMEGDatazk& data = filed.data;
    CMDTrialzk& trial = *data.getTrialzk(0);
    trial.m_nTrialResampleStep = 3;
    data.m_recordInfo.m_nResampleFactor = 2;
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 2);
    EXPECT_EQ(wave(*trial.getChannel(0)), resampled(channelValues(0, 0, 30), false, 2, 16));
}

TEST(TrialRebuild, TheFirstChannelTellsWhetherTheTrialsCountFits)
{
    RecordedDataset filed(1, 2, 30);
    CMEGDatazk& data = filed.data;
    CMDTrialzk& trial = *data.getTrialzk(0);
    trial.m_nTrialResampleStep = 3;
    data.m_recordInfo.m_nResampleFactor = 2;
    const std::vector<double> few(10, 1.0);
    trial.getChannel(1)->addData(10, few.data());
    trial.setCurrentChannel(1);
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 2) << "the first one has the record's 30";
    trial.getChannel(1)->addData(30, channelValues(0, 1, 30).data());
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 3) << "and now the second alone";
}

TEST(TrialRebuild, AgreesWithThePlainLoopForRandomTrials)
{
    std::mt19937 random(37);
    for (int round = 0; round < 60; ++round) {
        CMEGDatazk data;
        ASSERT_EQ(data.initMEGData(1, 3, 1), 1);
        CMDTrialzk& trial = *data.getTrialzk(0);
        std::vector<std::vector<double>> raw;
        for (int i = 0; i < 3; ++i) {
            raw.push_back(numeric::randomSamples(1 + random() % 2000, static_cast<unsigned>(random())));
            trial.getChannel(i)->addData(std::ssize(raw.back()), raw.back().data());
            trial.getChannel(i)->getDataWave()[0] = -1.0;
        }
        const auto step = static_cast<std::int64_t>(1 + random() % 9);
        const auto factor = random() % 2 == 0 ? step : static_cast<std::int64_t>(1 + random() % 40);
        recordAs(data, 5000);
        data.m_recordInfo.m_nResampleFactor = factor;
        data.m_recordInfo.m_bResampleAverage = round % 2;
        trial.m_nTrialResampleStep = step;
        trial.m_bTrialResampled = (round / 2) % 2;
        // None of the trials has the record's count, so that one with another step resets the dataset.
        const bool resets = step != factor;
        const bool average = (resets ? trial.m_bTrialResampled : data.m_recordInfo.m_bResampleAverage) != 0;
        ASSERT_EQ(data.reSampleTrl4DcOffFilt(&trial), 1);
        EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, step);
        for (int i = 0; i < 3; ++i) {
            const auto& x = raw[static_cast<std::size_t>(i)];
            const auto expected = step > 1 ? resampled(x, average, step, std::ssize(x) / step + 1) : x;
            EXPECT_TRUE(numeric::sameSamples(wave(*trial.getChannel(i)), expected)) << "by " << step;
        }
    }
}

TEST(TrialRebuild, SurvivesFactorsThatNoOneCanMean)
{
    for (const std::int64_t factor : {std::int64_t{0}, std::int64_t{-7}, std::numeric_limits<std::int64_t>::min(),
                                      std::numeric_limits<std::int64_t>::max()}) {
        RecordedDataset filed(1, 1, 30);
        CMDTrialzk& trial = *filed.data.getTrialzk(0);
        trial.m_nTrialResampleStep = 3;
        filed.data.m_recordInfo.m_nResampleFactor = factor;
        filed.data.m_recordInfo.m_bResampleAverage = 1;
        EXPECT_EQ(filed.data.reSampleTrl4DcOffFilt(&trial), 1);
        EXPECT_EQ(filed.data.getTotalSample(), factor > 1 ? 1 : 31);
    }
}

TEST(TrialRebuild, NeedsATrialWithAnArrayOfChannels)
{
    CMEGDatazk data;
    CMDTrialzk empty;
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(nullptr), 0);
    EXPECT_EQ(data.reSampleTrl4DcOffFilt(&empty), 0);
}

TEST(TrialRebuild, PassesOverEmptyPlacesAndChannelsWithoutRawSamples)
{
    RecordedDataset filed(1, 3, 8);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.m_ppChannel.set(0, nullptr);
    trial.getChannel(1)->m_pBkData.reset();
    trial.getChannel(1)->m_nBkDataSample = 0;
    EXPECT_EQ(filed.data.reSampleTrl4DcOffFilt(&trial), 1);
    trial.m_nTrialResampleStep = 2;
    filed.data.m_recordInfo.m_nResampleFactor = 2;
    EXPECT_EQ(filed.data.reSampleTrl4DcOffFilt(&trial), 1);
    EXPECT_EQ(wave(*trial.getChannel(1)), channelValues(0, 1, 8));
    EXPECT_EQ(wave(*trial.getChannel(2)).size(), 5U);
}

TEST(TrialRebuild, TellsOfMissingMemory)
{
    for (const std::int64_t step : {1, 2}) {
        RecordedDataset filed(1, 1, 8);
        CMDTrialzk& trial = *filed.data.getTrialzk(0);
        trial.m_nTrialResampleStep = filed.data.m_recordInfo.m_nResampleFactor = step;
        trial.getChannel(0)->_cleanTimeDataC(false);
        const ScriptedHost host;
        const FailingAllocator first(1);
        EXPECT_EQ(filed.data.reSampleTrl4DcOffFilt(&trial), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    }
}

// ---- the preparation of a pass over the dataset

void select(CMEGDatazk& data, const std::vector<std::pair<std::int64_t, std::int64_t>>& ranges)
{
    CMarkerDatazk& marker = addMarker(data.m_mkSelect4Move, {});
    for (const auto& [begin, end] : ranges) {
        MarkTrigClass point;
        point.m_nMarkPtBegin = begin;
        point.m_nMarkPtEnd = end;
        marker.addMarkPt(point);
    }
    data.m_nSegmentCutState = 1;
}

TEST(Preparation, TakesATrialThatIsGiven)
{
    RecordedDataset filed(1, 1, 5);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.getChannel(0)->getDataWave()[2] = -1.0;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(&trial, 99), 1) << "whatever the index is";
    EXPECT_EQ(wave(*trial.getChannel(0)), channelValues(0, 0, 5));
    CMDTrialzk empty;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(&empty, 0), 0);
}

TEST(Preparation, OpensATrialByItsIndex)
{
    RecordedDataset filed(2, 1, 5);
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 1), 1);
    EXPECT_EQ(filed.data.m_nCurrentTrial, 1);
    filed.data.getTrialzk(1)->getChannel(0)->getDataWave()[0] = -1.0;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, -1), 1) << "the current one";
    EXPECT_EQ(filed.waveOf(1, 0), channelValues(1, 0, 5));
}

TEST(Preparation, GivesZeroForATrialThatCantBeHadOrHasNoChannels)
{
    ScriptedHost host;
    RecordedDataset filed(3, 1, 5);
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 3), 0);
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, -2), 0);
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 1), 0);
    CMDTrialzk empty;
    filed.writeTrial(2, empty);
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 2), 0);
    CMEGDatazk none;
    EXPECT_EQ(none.prepareRawData4DcOffFiltDatset(nullptr, -1), 0);
}

TEST(Preparation, BlanksTheRemovedSegmentsAgain)
{
    RecordedDataset filed(1, 1, 8);
    select(filed.data, {{2, 3}});
    filed.data.m_nSegmentCutNext = 0;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 4, 5, 6, 7));
    filed.data.m_nSegmentCutNext = 1;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 1, 1, 4, 5, 6, 7));
}

TEST(Preparation, GivesZeroWhereSegmentsWereRemovedAndTheirMarkerIsGone)
{
    RecordedDataset filed(1, 1, 8);
    filed.data.m_nSegmentCutState = 1;
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 0), 0);
}

TEST(SegmentBlanking, HoldsTheSampleBeforeEachRangeAndZeroBeforeTheFirst)
{
    RecordedDataset filed(1, 1, 10);
    select(filed.data, {{7, 20}, {-3, 1}, {3, 4}, {5, 5}, {4, 3}});
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    EXPECT_EQ(filed.data.segmentRemov4DcOffFilt(&trial), 1);
    EXPECT_THAT(wave(*trial.getChannel(0)), ElementsAre(0, 0, 2, 2, 2, 2, 6, 6, 6, 6));
}

TEST(SegmentBlanking, TakesTheUnionOfOverlappingRanges)
{
    RecordedDataset filed(1, 1, 10);
    select(filed.data, {{2, 8}, {3, 4}, {20, 30}});
    filed.data.m_nSegmentCutNext = 0;
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    EXPECT_EQ(filed.data.segmentRemov4DcOffFilt(&trial), 1);
    EXPECT_THAT(wave(*trial.getChannel(0)), ElementsAre(0, 1, 0, 0, 0, 0, 0, 0, 0, 9));
}

TEST(SegmentBlanking, DoesNothingWhereNoSegmentWasRemoved)
{
    CMEGDatazk data;
    EXPECT_EQ(data.segmentRemov4DcOffFilt(nullptr), 1);
    RecordedDataset filed(1, 1, 10);
    select(filed.data, {{2, 8}});
    filed.data.m_nSegmentCutState = 0;
    EXPECT_EQ(filed.data.segmentRemov4DcOffFilt(filed.data.getTrialzk(0)), 1);
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 10));
}

TEST(SegmentBlanking, NeedsTrialMarkerAndArrayOfChannels)
{
    CMEGDatazk data;
    data.m_nSegmentCutState = 1;
    CMDTrialzk trial;
    EXPECT_EQ(data.segmentRemov4DcOffFilt(&trial), 0);
    select(data, {{-5, std::numeric_limits<std::int64_t>::max()}});
    EXPECT_EQ(data.segmentRemov4DcOffFilt(nullptr), 0);
    EXPECT_EQ(data.segmentRemov4DcOffFilt(&trial), 0);
    ASSERT_EQ(trial.allocateChannels(2), 1);
    trial.m_ppChannel.set(0, nullptr);
    EXPECT_EQ(data.segmentRemov4DcOffFilt(&trial), 1) << "channels without samples";
    EXPECT_EQ(trial.getChannel(1)->initData(3, true), 1);
    trial.getChannel(1)->getDataWave()[1] = 5.0;
    data.m_mkSelect4Move.getMarker(0, false)->m_aMarkPts.Add(std::unique_ptr<MarkTrigClass>());
    EXPECT_EQ(data.segmentRemov4DcOffFilt(&trial), 1);
    EXPECT_THAT(wave(*trial.getChannel(1)), ElementsAre(0, 0, 0));
}

} // namespace
} // namespace megset::CMEGData2ProcessPrepare_test
