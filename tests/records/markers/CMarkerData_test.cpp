#include "megset/records/markers/CMarkerData.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"

#include <limits>

namespace megset::CMarkerData_test {
namespace {

MarkTrigClass filledPoint(std::int64_t begin)
{
    MarkTrigClass point;
    point.m_nMarkPtWord = 11;
    point.m_strMarkPtName = "pt";
    point.m_nMarkPtTrial = 3;
    point.m_nMarkPtChannel = 4;
    point.m_dMarkPtBegin = 1.5;
    point.m_dMarkPtEnd = 2.5;
    point.m_nMarkPtBegin = begin;
    point.m_nMarkPtEnd = begin + 5;
    point.m_nMarkPtValueB = 6;
    point.m_nMarkPtValueE = 7;
    return point;
}

struct MarkerCase
{
    using Record = CMarkerDatazk;
    static constexpr std::string_view tag = "MARKERDATAZK";
    static constexpr std::string_view page = "markers.md";
    static constexpr std::string_view name = "CMarkerDatazk";
    static Record filled()
    {
        Record marker;
        marker.m_nMarkGroupID = 100;
        marker.m_nMarkID = 2;
        marker.m_nMarkValue = 8;
        marker.m_nMarkValueBk = 9;
        marker.m_nMarkCount = 3;
        marker.m_strMarkName = "Trig8";
        marker.m_strMarkInfo = "info";
        marker.m_strMarkTrialName = "trial";
        marker.m_nMarkChannel = 5;
        marker.m_nMarkPtKind = 1;
        marker.m_dMarkSampleRate = 1200.0;
        marker.m_nMarkShow = 0;
        marker.m_nMarkColor = 0x123456;
        marker.m_markWindow = {10, 20, 30, 40};
        marker.m_markWindowBk = {11, 21, 31, 41};
        marker.m_aMarkPts.addCopy(filledPoint(100));
        marker.m_aMarkPts.Add(nullptr);
        marker.m_aMarkPts.addCopy(filledPoint(200));
        marker.m_aMarkPtsBk.addCopy(filledPoint(300));
        marker.m_aMarkPtsBk.addCopy(filledPoint(400));
        return marker;
    }
};

using MarkerTypes = ::testing::Types<MarkerCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Marker, RecordContract, MarkerTypes);

ByteBuilder& addPoint(ByteBuilder& bytes, std::int64_t begin)
{
    bytes.i32(1).i64(11).wide("pt").i32(3).i32(4).f64(1.5).f64(2.5);
    return bytes.i64(begin).i64(begin + 5).i64(6).i64(7);
}

TEST(CMarkerData, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("MARKERDATAZK").i32(20261121).i32(100).i32(2).i64(8).i64(9).i64(3);
    bytes.wide("Trig8").wide("info").wide("trial").i32(5).i64(1).f64(1200.0).i32(0).u32(0x123456);
    bytes.i64(10).i64(20).i64(30).i64(40).i64(11).i64(21).i64(31).i64(41);
    addPoint(bytes.i32(3), 100).i32(0);
    addPoint(bytes, 200);
    addPoint(addPoint(bytes.i32(2), 300), 400);
    EXPECT_TRUE(sameBytes(recordBytes(MarkerCase::filled()), bytes));
}

TEST(CMarkerData, NewOccurrenceIsZeroAndNameless)
{
    const MarkTrigClass point;
    EXPECT_EQ(point.m_nMarkPtWord, 0);
    EXPECT_TRUE(point.m_strMarkPtName.IsEmpty());
    EXPECT_EQ(point.m_nMarkPtTrial, 0);
    EXPECT_EQ(point.m_dMarkPtBegin, 0.0);
    EXPECT_EQ(point.m_nMarkPtValueE, 0);
}

TEST(CMarkerData, LoadingStopsWhenAnOccurrenceCannotBeMade)
{
    const ScriptedHost host;
    const auto bytes = recordBytes(MarkerCase::filled());
    const FailingAllocator failing(2);
    CMarkerDatazk marker;
    EXPECT_EQ(loadRecord(marker, bytes), 0);
    EXPECT_EQ(marker.getTotalTrgMrkPts(), 2); // the first, and the empty place behind it
}

TEST(CMarkerData, OccurrencesAreFoundByIndexAndTheNewestByMinusOne)
{
    const CMarkerDatazk marker = MarkerCase::filled();
    EXPECT_EQ(marker.getTotalTrgMrkPts(), 3);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtBegin, 100);
    EXPECT_EQ(marker.getMarkPt(1), nullptr);
    EXPECT_EQ(marker.getMarkPt(-1)->m_nMarkPtBegin, 200);
    EXPECT_EQ(marker.getMarkPt(3), nullptr);
    EXPECT_EQ(marker.getMarkPt(-2), nullptr);
    EXPECT_EQ(CMarkerDatazk().getMarkPt(-1), nullptr);
}

TEST(CMarkerData, ClassifyingATrialAppendsACountedOccurrenceWithTimesFromTheTrigger)
{
    CMarkerDatazk marker;
    EXPECT_EQ(marker.addClassifyTrial(2, 7, 120, 240, 1200.0, 50.0), 1);
    ASSERT_EQ(marker.getTotalTrgMrkPts(), 1);
    const MarkTrigClass& point = *marker.getMarkPt(0);
    EXPECT_EQ(point.m_nMarkPtTrial, 2);
    EXPECT_EQ(point.m_nMarkPtChannel, 7);
    EXPECT_EQ(point.m_nMarkPtBegin, 120);
    EXPECT_EQ(point.m_nMarkPtEnd, 240);
    EXPECT_DOUBLE_EQ(point.m_dMarkPtBegin, 50.0); // 100 ms into the trial
    EXPECT_DOUBLE_EQ(point.m_dMarkPtEnd, 150.0);
    EXPECT_EQ(marker.m_nMarkCount, 1);
}

TEST(CMarkerData, ACountAtItsLargestStaysThere)
{
    CMarkerDatazk marker;
    marker.m_nMarkCount = INT64_MAX - 1;
    EXPECT_EQ(marker.addClassifyTrial(0, 0, 1, 2, 100.0, 0.0), 1);
    EXPECT_EQ(marker.addClassifyTrial(0, 0, 1, 2, 100.0, 0.0), 1);
    EXPECT_EQ(marker.m_nMarkCount, INT64_MAX);
}

TEST(CMarkerData, ClassifyingATrialNeedsARateAndMemory)
{
    CMarkerDatazk marker;
    EXPECT_EQ(marker.addClassifyTrial(0, 0, 1, 2, 0.0, 0.0), 0);
    EXPECT_EQ(marker.addClassifyTrial(0, 0, 1, 2, std::numeric_limits<double>::quiet_NaN(), 0.0), 0);
    for (int n = 1; n <= 2; ++n) {
        const FailingAllocator failing(n);
        EXPECT_EQ(marker.addClassifyTrial(0, 0, 1, 2, 100.0, 0.0), 0);
    }
    EXPECT_EQ(marker, CMarkerDatazk());
}

TEST(CMarkerData, CleaningDropsBothListsAndTheCount)
{
    CMarkerDatazk marker = MarkerCase::filled();
    EXPECT_EQ(marker.cleanMarkedPts(), 3);
    EXPECT_EQ(marker.getTotalTrgMrkPts(), 0);
    EXPECT_TRUE(marker.m_aMarkPtsBk.IsEmpty());
    EXPECT_EQ(marker.m_nMarkCount, 0);
    EXPECT_EQ(marker.m_strMarkName, CString("Trig8"));
    EXPECT_EQ(marker.cleanMarkedPts(), 0);
}

TEST(CMarkerData, OccurrenceAddedAtAReducedRateSurvivesReSampling)
{
    CMarkerDatazk marker;
    MarkTrigClass point;
    point.m_nMarkPtBegin = 25;
    point.m_nMarkPtEnd = 30;
    ASSERT_EQ(marker.addMarkPt(point, 4), 1);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 100);
    EXPECT_EQ(marker.scaleMarkPts(4), 1);
    EXPECT_EQ(*marker.getMarkPt(0), point);
    EXPECT_EQ(marker.scaleMarkPts(1), 1);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtBegin, 100);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, 120);
    EXPECT_EQ(marker.m_nMarkCount, 0);
}

TEST(CMarkerData, OccurrenceBehindOnesWithoutBackupGetsNone)
{
    CMarkerDatazk marker;
    marker.m_aMarkPts.addCopy(filledPoint(1));
    ASSERT_EQ(marker.addMarkPt(filledPoint(2)), 1);
    EXPECT_EQ(marker.getTotalTrgMrkPts(), 2);
    EXPECT_TRUE(marker.m_aMarkPtsBk.IsEmpty());
}

TEST(CMarkerData, ScalingDividesBackupIntoWindowAndOccurrencesThatBothListsHave)
{
    CMarkerDatazk marker = MarkerCase::filled(); // 100, none, 200 over 300, 400
    EXPECT_EQ(marker.scaleMarkPts(2), 1);
    EXPECT_EQ(marker.m_markWindow, (MarkWindow{5, 10, 15, 20}));
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtBegin, 150);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, 152); // 305 / 2
    EXPECT_EQ(marker.getMarkPt(1), nullptr);
    EXPECT_EQ(marker.getMarkPt(2)->m_nMarkPtBegin, 200);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 300);
}

TEST(CMarkerData, ScalingByLessThanOneChangesNothing)
{
    CMarkerDatazk marker = MarkerCase::filled();
    EXPECT_EQ(marker.scaleMarkPts(0), 1);
    EXPECT_EQ(marker.scaleMarkPts(-3), 1);
    EXPECT_EQ(marker, MarkerCase::filled());
}

TEST(CMarkerData, LostOccurrencesComeBackFromTheBackup)
{
    CMarkerDatazk marker = MarkerCase::filled();
    EXPECT_FALSE(marker.hasLostMarkPts());
    marker.m_aMarkPts.RemoveAll();
    EXPECT_TRUE(marker.hasLostMarkPts());
    {
        const FailingAllocator failing(2);
        EXPECT_EQ(marker.reloadBkMarkPts(), 0);
        EXPECT_EQ(marker.getTotalTrgMrkPts(), 0);
    }
    EXPECT_EQ(marker.reloadBkMarkPts(), 1);
    EXPECT_EQ(marker.m_aMarkPts, marker.m_aMarkPtsBk);
    EXPECT_NE(marker.getMarkPt(0), marker.m_aMarkPtsBk.GetAt(0));
}

TEST(CMarkerData, BackupIsAtTheRecordedRate)
{
    CMarkerDatazk marker = MarkerCase::filled();
    {
        const FailingAllocator failing(1);
        EXPECT_EQ(marker.backupMarkPts(3), 0);
        EXPECT_EQ(marker, MarkerCase::filled());
    }
    EXPECT_EQ(marker.backupMarkPts(3), 1);
    EXPECT_EQ(marker.m_markWindowBk, (MarkWindow{30, 60, 90, 120}));
    ASSERT_EQ(marker.m_aMarkPtsBk.GetSize(), 3);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 300);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(1), nullptr);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(2)->m_nMarkPtEnd, 615);
}

TEST(CMarkerData, SamplesBeyondTheTypeStayAtItsLimit)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    CMarkerDatazk marker;
    marker.m_markWindow = {most, -most, most / 2, -1};
    EXPECT_EQ(marker.backupMarkPts(2), 1);
    EXPECT_EQ(marker.m_markWindowBk, (MarkWindow{most, -most, most - 1, -2}));
}

} // namespace
} // namespace megset::CMarkerData_test
