// Ranges of the selection marker: how they are added, blanked and cut out.
#include "tests/processing/resampledDataset.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2ProcessSegment_test {

// The cut is a private operation: the arguments of an explicit instantiation are free from access checks.
template <int (CMEGData2Process::*operation)(int)>
struct Opened
{
    friend int segmentCut(CMEGData2Process& data, int allTrials) { return (data.*operation)(allTrials); }
};
template struct Opened<&CMEGData2Process::segmentCut>;
int segmentCut(CMEGData2Process& data, int allTrials);

namespace {

using ::testing::ElementsAre;

constexpr const char* rateChanged = "The sampling rate changed, would you like to remove all the old selection?!";

using Ranges = std::vector<std::pair<std::int64_t, std::int64_t>>;

CMarkerDatazk& mark(CMEGDatazk& data, const Ranges& ranges)
{
    CMarkerDatazk& marker = addMarker(data.m_mkSelect4Move, {});
    for (const auto& [begin, end] : ranges) {
        MarkTrigClass point;
        point.m_nMarkPtBegin = begin;
        point.m_nMarkPtEnd = end;
        marker.addMarkPt(point);
    }
    marker.m_dMarkSampleRate = data.m_recordInfo.m_dRecSampleRate;
    return marker;
}

// ---- adding a range

TEST(SelectedRange, IsAddedToANewMarkerAtTheCurrentTrialAndChannel)
{
    RecordedDataset filed(2, 3, 100);
    CMEGDatazk& data = filed.data;
    data.setCurrentChannel(1, 2);
    data.getTrialzk(1)->setCurrentChannel(2);
    EXPECT_EQ(data.addSegment4Cut(20, 30), 1);
    ASSERT_EQ(data.m_mkSelect4Move.getTotalMarkers(), 1);
    const CMarkerDatazk& marker = *data.m_mkSelect4Move.getMarker(0, false);
    EXPECT_EQ(marker.m_dMarkSampleRate, 1000.0);
    EXPECT_EQ(marker.m_nMarkCount, 1);
    ASSERT_EQ(marker.getTotalTrgMrkPts(), 1);
    const MarkTrigClass& point = *marker.getMarkPt(0);
    EXPECT_EQ(point.m_nMarkPtTrial, 1);
    EXPECT_EQ(point.m_nMarkPtChannel, 2);
    EXPECT_EQ(point.m_nMarkPtBegin, 20);
    EXPECT_EQ(point.m_nMarkPtEnd, 30);
    EXPECT_EQ(point.m_dMarkPtBegin, 10.0) << "ms from the trigger at sample 10";
    EXPECT_EQ(point.m_dMarkPtEnd, 20.0);
}

TEST(SelectedRange, GoesToTheNewestMarker)
{
    RecordedDataset filed(1, 1, 100);
    mark(filed.data, {});
    const CMarkerDatazk& newest = mark(filed.data, {{1, 2}});
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1);
    EXPECT_EQ(filed.data.m_mkSelect4Move.getTotalMarkers(), 2);
    EXPECT_EQ(newest.getTotalTrgMrkPts(), 2);
    EXPECT_EQ(filed.data.m_mkSelect4Move.m_nCurrentMarker, 1);
}

TEST(SelectedRange, OfMinusOneIsTheSelection)
{
    RecordedDataset filed(1, 1, 100);
    filed.data.m_nSelectStart = 40;
    filed.data.m_nSelectEnd = 50;
    EXPECT_EQ(filed.data.addSegment4Cut(-1, -1), 1);
    EXPECT_EQ(filed.data.addSegment4Cut(-1, 45), 1);
    EXPECT_EQ(filed.data.addSegment4Cut(45, -1), 1);
    const CMarkerDatazk& marker = *filed.data.m_mkSelect4Move.getMarker(0, false);
    EXPECT_THAT(beginsOf(marker), ElementsAre(40, 40, 45));
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, 50);
    EXPECT_EQ(marker.getMarkPt(1)->m_nMarkPtEnd, 45);
    EXPECT_EQ(marker.getMarkPt(2)->m_nMarkPtEnd, 50);
}

TEST(SelectedRange, EndsWithTheDataWhereTheSelectionEndsBehindThem)
{
    RecordedDataset filed(1, 1, 100);
    filed.data.m_nSelectEnd = 99;
    EXPECT_EQ(filed.data.addSegment4Cut(20, 1000), 1);
    EXPECT_EQ(filed.data.m_mkSelect4Move.getMarker(0, false)->getMarkPt(0)->m_nMarkPtEnd, 1000)
        << "the test looks at the selection, not at the end";
    filed.data.m_nSelectEnd = 100;
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1);
    EXPECT_EQ(filed.data.m_mkSelect4Move.getMarker(0, false)->getMarkPt(1)->m_nMarkPtEnd, 99);
}

TEST(SelectedRange, ThatIsEmptyIsRefusedAndLeavesTheMarkerThatWasMade)
{
    RecordedDataset filed(1, 1, 100);
    EXPECT_EQ(filed.data.addSegment4Cut(20, 20), 0);
    EXPECT_EQ(filed.data.addSegment4Cut(20, 10), 0);
    ASSERT_EQ(filed.data.m_mkSelect4Move.getTotalMarkers(), 1);
    EXPECT_EQ(filed.data.m_mkSelect4Move.getMarker(0, false)->getTotalTrgMrkPts(), 0);
    EXPECT_EQ(filed.data.m_mkSelect4Move.getMarker(0, false)->m_dMarkSampleRate, 0.0);
}

TEST(SelectedRange, AtAHigherRateAsksForTheOldOnes)
{
    RecordedDataset filed(1, 1, 100);
    CMarkerDatazk& marker = mark(filed.data, {{1, 2}, {3, 4}});
    marker.m_nMarkCount = 2;
    marker.m_dMarkSampleRate = 999.0;
    {
        ScriptedHost host;
        host.willAnswerNo(rateChanged);
        EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 0);
        EXPECT_EQ(marker.getTotalTrgMrkPts(), 2);
        EXPECT_EQ(marker.m_dMarkSampleRate, 999.0);
    }
    ScriptedHost host;
    host.willAnswerYes(rateChanged);
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1);
    EXPECT_THAT(beginsOf(marker), ElementsAre(20));
    EXPECT_EQ(marker.m_nMarkCount, 1);
    EXPECT_EQ(marker.m_dMarkSampleRate, 1000.0);
}

TEST(SelectedRange, AtALowerRateOrBesideNoOldOnesIsAddedWithoutAsking)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 100);
    CMarkerDatazk& marker = mark(filed.data, {});
    marker.m_dMarkSampleRate = 1.0;
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1) << "no old ones";
    marker.m_dMarkSampleRate = 2000.0;
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1) << "a rate that sank isn't noticed";
    marker.m_dMarkSampleRate = 1000.0 - 0.9e-5;
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 1) << "nor one that is the same";
    EXPECT_TRUE(host.questions().empty());
}

TEST(SelectedRange, AtARateThatIsHigherByALittleAsks)
{
    RecordedDataset filed(1, 1, 100);
    CMarkerDatazk& marker = mark(filed.data, {{1, 2}});
    marker.m_dMarkSampleRate = 1000.0 - 1.1e-5;
    ScriptedHost host;
    host.willAnswerNo(rateChanged);
    EXPECT_EQ(filed.data.addSegment4Cut(20, 30), 0);
    EXPECT_EQ(marker.getTotalTrgMrkPts(), 1);
}

TEST(SelectedRange, NeedsATrialAndMemory)
{
    CMEGDatazk none;
    none.m_recordInfo.m_nRecTotalSample = 100;
    EXPECT_EQ(none.addSegment4Cut(20, 30), 0);
    EXPECT_EQ(none.m_mkSelect4Move.getTotalMarkers(), 1);
    const auto failures = forEachAllocationFailure([] {
        CMEGDatazk data;
        data.m_ppTrial.allocate(1);
        data.m_nTotalTrial = 1;
        data.m_nCurrentTrial = 0;
        data.m_ppTrial.set(0, std::make_unique<CMDTrialzk>());
        data.m_recordInfo.m_nRecTotalSample = 100;
        const int added = data.addSegment4Cut(20, 30);
        const CMarkerDatazk* marker = data.m_mkSelect4Move.getMarker(0, false);
        EXPECT_EQ(marker != nullptr ? marker->getTotalTrgMrkPts() : 0, added);
    });
    EXPECT_GE(failures, 3);
}

// ---- blanking

TEST(SegmentRemoval, BlanksTheRangesInAllTrials)
{
    RecordedDataset filed(2, 2, 10);
    mark(filed.data, {{2, 3}, {7, 20}});
    EXPECT_EQ(filed.data.segmentRemove(1, 0), 1);
    EXPECT_EQ(filed.data.m_nSegmentCutState, 1);
    EXPECT_EQ(filed.data.m_nSegmentCutNext, 0);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 4, 5, 6, 0, 0, 0)) << "to the last sample";
    EXPECT_THAT(filed.waveOf(1, 1), ElementsAre(10100, 10101, 0, 0, 10104, 10105, 10106, 0, 0, 0));
    EXPECT_EQ(backup(*filed.data.getTrialzk(1)->getChannel(1)), channelValues(1, 1, 10)) << "the raw samples stay";
}

TEST(SegmentRemoval, BlanksThemInTheCurrentTrial)
{
    RecordedDataset filed(2, 1, 5);
    mark(filed.data, {{2, 3}});
    filed.data.getTrialzk(1);
    EXPECT_EQ(filed.data.segmentRemove(0, 0), 1);
    EXPECT_THAT(filed.waveOf(1, 0), ElementsAre(10000, 10001, 0, 0, 10004));
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 5));
}

TEST(SegmentRemoval, HoldsTheSampleBeforeARangeAndZeroAtTheStart)
{
    RecordedDataset filed(1, 1, 10);
    mark(filed.data, {{0, 1}, {4, 5}, {6, 6}, {8, 30}});
    filed.data.getTrialzk(0)->getChannel(0)->getDataWave()[0] = 99.0;
    EXPECT_EQ(filed.data.segmentRemove(0, 7), 1);
    EXPECT_EQ(filed.data.m_nSegmentCutNext, 7);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 0, 2, 3, 3, 3, 3, 7, 7, 7));
}

TEST(SegmentRemoval, OfModeMinusOneIsTheOneUsedLast)
{
    RecordedDataset filed(1, 1, 5);
    mark(filed.data, {{2, 3}});
    EXPECT_EQ(filed.data.segmentRemove(0, -1), 1) << "a new dataset holds";
    EXPECT_EQ(filed.data.m_nSegmentCutNext, 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 1, 1, 4));
    filed.data.m_nSegmentCutNext = 0;
    EXPECT_EQ(filed.data.segmentRemove(0, -1), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 4));
}

TEST(SegmentRemoval, TakesTheUnionOfOverlappingRangesOfTheNewestMarker)
{
    RecordedDataset filed(1, 1, 10);
    mark(filed.data, {{0, 9}});
    mark(filed.data, {{5, 7}, {2, 5}, {3, 3}, {9, 8}, {-5, -1}});
    EXPECT_EQ(filed.data.segmentRemove(0, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 0, 0, 0, 0, 8, 9));
}

TEST(SegmentRemoval, NeedsAMarker)
{
    RecordedDataset filed(1, 1, 5);
    EXPECT_EQ(filed.data.segmentRemove(1, 0), 0);
    EXPECT_EQ(filed.data.m_nSegmentCutState, 0);
    EXPECT_EQ(filed.data.m_nSegmentCutNext, 1);
}

TEST(SegmentRemoval, PassesOverTrialsThatDontOpenEmptyPlacesAndChannelsWithoutSamples)
{
    RecordedDataset filed(3, 3, 5);
    CMEGDatazk& data = filed.data;
    auto trial = makeTrial(2, 3, 5);
    trial->getChannel(1)->_cleanTimeDataC(true);
    filed.writeTrial(2, *trial);
    mark(data, {{2, 3}});
    data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    ScriptedHost host;
    host.willAnswerNo();
    EXPECT_EQ(data.segmentRemove(1, 0), 1);
    EXPECT_THAT(filed.waveOf(2, 2), ElementsAre(20200, 20201, 0, 0, 20204));
}

TEST(SegmentRemoval, OfAllTrialsWalksOverTheirPlacesAlone)
{
    ScriptedHost host;
    RecordedDataset filed(1, 1, 5);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    filed.data.m_nTotalTrial = 5;
    mark(filed.data, {{2, 3}});
    EXPECT_EQ(filed.data.segmentRemove(1, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 4));
    host.expectNoMessages();
}

TEST(SegmentRemoval, BlanksAgainWhereverATrialIsPrepared)
{
    RecordedDataset filed(1, 1, 5);
    mark(filed.data, {{2, 3}});
    EXPECT_EQ(filed.data.segmentRemove(0, 0), 1);
    filed.data.getTrialzk(0)->getChannel(0)->reverseRawData();
    EXPECT_EQ(filed.data.prepareRawData4DcOffFiltDatset(nullptr, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 0, 0, 4));
}

// ---- cutting out

TEST(SegmentCut, ShortensTheWorkingSamplesAndLeavesAZeroAtTheEnd)
{
    RecordedDataset filed(2, 1, 20);
    CMEGDatazk& data = filed.data;
    data.m_recordInfo.m_nRecPreTrigPts = 10;
    mark(data, {{8, 12}, {2, 4}});
    data.getTrialzk(0)->getChannel(0)->m_nCurrentSample = 19;
    addMarker(data.m_mkTrig, {10, 15});
    EXPECT_EQ(segmentCut(data, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 1, 5, 6, 7, 13, 14, 15, 16, 17, 18, 19, 0));
    EXPECT_EQ(data.getTrialzk(0)->getChannel(0)->m_nCurrentSample, 0);
    EXPECT_EQ(backup(*data.getTrialzk(0)->getChannel(0)), channelValues(0, 0, 20));
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 13);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 6) << "0, 1, 5, 6, 7 and one more";
    // Of the ranges 2 to 4 and 8 to 9 lie before sample 9, or begin there.
    const CMarkerDatazk& trigger = *data.m_mkTrig.getMarker(0, false);
    EXPECT_THAT(beginsOf(trigger), ElementsAre(5, 10));
    EXPECT_EQ(trigger.getMarkPt(1)->m_nMarkPtEnd, 15);
    EXPECT_EQ(trigger.m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 10) << "the backup stays, as the raw samples do";
    EXPECT_EQ(filed.waveOf(1, 0).size(), 20U);
}

TEST(SegmentCut, CutsAllTrials)
{
    RecordedDataset filed(2, 2, 6);
    mark(filed.data, {{1, 4}});
    EXPECT_EQ(segmentCut(filed.data, 1), 1);
    EXPECT_THAT(filed.waveOf(0, 1), ElementsAre(100, 105, 0));
    EXPECT_THAT(filed.waveOf(1, 0), ElementsAre(10000, 10005, 0));
}

TEST(SegmentCut, OfAllTrialsWalksOverTheirPlacesAlone)
{
    ScriptedHost host;
    RecordedDataset filed(1, 1, 6);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    filed.data.m_nTotalTrial = 5;
    mark(filed.data, {{1, 4}});
    EXPECT_EQ(segmentCut(filed.data, 1), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 5, 0));
    host.expectNoMessages();
}

TEST(SegmentCut, OfResampledSamplesEndsWithAZeroInPlaceOfTheOneMore)
{
    RecordedDataset filed(1, 1, 13);
    ASSERT_EQ(filed.data.reSampleData(false, 2, true), 1);
    ASSERT_EQ(filed.waveOf(0, 0), (std::vector<double>{0, 2, 4, 6, 8, 10, 12}));
    mark(filed.data, {{1, 2}});
    EXPECT_EQ(segmentCut(filed.data, 0), 1);
    EXPECT_THAT(filed.waveOf(0, 0), ElementsAre(0, 6, 8, 10, 0));
    EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 5);
}

TEST(SegmentCut, TheRawSamplesBringTheDataBack)
{
    RecordedDataset filed(1, 1, 6);
    mark(filed.data, {{1, 4}});
    EXPECT_EQ(segmentCut(filed.data, 0), 1);
    EXPECT_EQ(filed.data.getTrialzk(0)->getChannel(0)->reverseRawData(), 1);
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 6));
    EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 3) << "while the dataset stays short";
}

TEST(SegmentCut, NeedsAMarkerSamplesAndARange)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 6);
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
    CMarkerDatazk& marker = mark(filed.data, {});
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
    for (const auto& [begin, end] : Ranges{{4, 3}, {-9, -1}, {6, 9}}) {
        marker.cleanMarkedPts();
        MarkTrigClass point;
        point.m_nMarkPtBegin = begin;
        point.m_nMarkPtEnd = end;
        marker.addMarkPt(point);
        EXPECT_EQ(segmentCut(filed.data, 0), 0);
    }
    mark(filed.data, {{1, 4}});
    filed.data.m_recordInfo.m_nRecTotalSample = 0;
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
    EXPECT_EQ(filed.waveOf(0, 0).size(), 6U);
    host.expectNoMessages();
}

TEST(SegmentCut, AtAHigherRateIsRefused)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 6);
    CMarkerDatazk& marker = mark(filed.data, {{1, 4}});
    marker.m_dMarkSampleRate = 500.0;
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
    EXPECT_THAT(host.messages(), ElementsAre("The sampling rate changed, the cut range is invalidated!!??"));
    EXPECT_EQ(filed.waveOf(0, 0).size(), 6U);
    marker.m_dMarkSampleRate = 2000.0;
    EXPECT_EQ(segmentCut(filed.data, 0), 1);
}

TEST(SegmentCut, LeavesChannelsWithoutRawSamplesAndFillsShortOnes)
{
    RecordedDataset filed(1, 4, 8);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.getChannel(1)->m_pBkData.reset();
    trial.getChannel(1)->m_nBkDataSample = 0;
    trial.m_ppChannel.set(2, nullptr);
    const double few[] = {1, 2, 3};
    trial.getChannel(3)->addData(3, few);
    mark(filed.data, {{1, 1}, {4, 5}});
    EXPECT_EQ(segmentCut(filed.data, 0), 1);
    EXPECT_EQ(wave(*trial.getChannel(1)), channelValues(0, 1, 8));
    EXPECT_THAT(wave(*trial.getChannel(3)), ElementsAre(1, 3, 0, 0, 0, 0));
}

TEST(SegmentCut, TellsOfMissingMemory)
{
    RecordedDataset filed(1, 1, 6);
    mark(filed.data, {{1, 4}});
    filed.data.getTrialzk(0);
    const ScriptedHost host;
    {
        const FailingAllocator first(1);
        EXPECT_EQ(segmentCut(filed.data, 0), 0);
    }
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 6));
    EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 6);
}

TEST(SegmentCut, AsksForNoMemoryThatARecordMerelyTells)
{
    RecordedDataset filed(1, 1, 6);
    mark(filed.data, {{1, 4}});
    filed.data.m_recordInfo.m_nRecTotalSample = std::int64_t{1} << 40;
    const ScriptedHost host;
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    filed.data.m_recordInfo.m_nRecTotalSample = std::numeric_limits<std::int64_t>::max();
    filed.data.m_recordInfo.m_nRecPreTrigPts = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(segmentCut(filed.data, 0), 0);
}

struct Counted
{
    std::int64_t count;
    std::int64_t pre;
    std::int64_t removedPre;
};

// The walk over the samples as it is told.
Counted walk(const Ranges& ranges, std::int64_t total, std::int64_t pre)
{
    const std::int64_t last = pre - 1;
    std::int64_t kept = 0, keptPre = 0, removedPre = 0;
    for (std::int64_t i = 0; i < total; ++i) {
        bool isInside = false;
        for (const auto& [begin, end] : ranges) {
            const std::int64_t b = std::max<std::int64_t>(begin, 0);
            const std::int64_t e = std::min(end, total - 1);
            if (i < b || i > e)
                continue;
            isInside = true;
            i = e;
            if (b < last && b <= std::min(e, last))
                removedPre += std::min(e, last) - b + 1;
            break;
        }
        kept += isInside ? 0 : 1;
        keptPre += !isInside && i < last ? 1 : 0;
    }
    return {kept + 1, keptPre + 1, removedPre};
}

TEST(SegmentCut, CountsOverlappingRangesInTheOrderOfTheWalk)
{
    RecordedDataset filed(1, 1, 20);
    CMEGDatazk& data = filed.data;
    data.m_recordInfo.m_nRecPreTrigPts = 15;
    mark(data, {{2, 3}, {2, 8}}); // two samples, and then all seven of the second range
    addMarker(data.m_mkTrig, {15});
    EXPECT_EQ(segmentCut(data, 0), 1);
    EXPECT_THAT(beginsOf(*data.m_mkTrig.getMarker(0, false)), ElementsAre(15 - 2 - 7));
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 20 - 7 + 1);
}

TEST(SegmentCut, AgreesWithAPlainWalkOnRandomRanges)
{
    std::mt19937 random(11);
    for (int round = 0; round < 300; ++round) {
        const auto total = static_cast<std::int64_t>(1 + random() % 60);
        const auto pre = static_cast<std::int64_t>(random() % 70) - 5;
        Ranges ranges;
        for (auto i = random() % 6; i > 0; --i) {
            const auto begin = static_cast<std::int64_t>(random() % 80) - 10;
            ranges.emplace_back(begin, begin + static_cast<std::int64_t>(random() % 15) - 2);
        }
        CMEGDatazk data;
        ASSERT_EQ(data.initMEGData(1, 1, total), 1);
        CMDChannelzk& channel = *data.getTrialzk(0)->getChannel(0);
        const std::vector<double> samples = channelValues(0, 1, total);
        channel.addData(total, samples.data());
        data.m_recordInfo.m_nRecTotalSample = total;
        data.m_recordInfo.m_nRecPreTrigPts = pre;
        mark(data, ranges);
        addMarker(data.m_mkTrig, {1000});
        const Counted expected = walk(ranges, total, pre);
        if (!segmentCut(data, 0)) {
            EXPECT_EQ(expected.count, total + 1) << "nothing to remove";
            continue;
        }
        EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, expected.count);
        EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, expected.pre);
        EXPECT_EQ(data.m_mkTrig.getMarker(0, false)->getMarkPt(0)->m_nMarkPtBegin, 1000 - expected.removedPre);
        std::vector<double> kept;
        for (std::int64_t i = 0; i < total; ++i)
            if (std::none_of(ranges.begin(), ranges.end(),
                             [i](const auto& range) { return range.first <= i && i <= range.second; }))
                kept.push_back(samples[static_cast<std::size_t>(i)]);
        kept.push_back(0.0);
        EXPECT_EQ(wave(channel), kept);
    }
}

TEST(SegmentCut, OfAHundredThousandRangesEndsSoon)
{
    Ranges ranges;
    for (std::int64_t i = 0; i < 100'000; ++i)
        ranges.emplace_back(i, 100'000 - i % 7);
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(1, 1, 200'000), 1);
    data.m_recordInfo.m_nRecTotalSample = 200'000;
    mark(data, ranges);
    EXPECT_EQ(segmentCut(data, 0), 1);
    EXPECT_EQ(data.m_recordInfo.m_nRecTotalSample, 100'000);
}

} // namespace
} // namespace megset::CMEGData2ProcessSegment_test
