#include "megset/records/markers/CMarkerManager.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"

#include <limits>

namespace megset::CMarkerManager_test {
namespace {

// The contract knows the names of the other records only.
struct ManagerRecord : CMarkerManagerzk
{
    int serializezk(CArchive& ar) { return serializeMLM(ar); }
};

CMarkerDatazk marker(std::int64_t value, int channel, const CString& name)
{
    CMarkerDatazk one;
    one.m_nMarkValue = value;
    one.m_nMarkChannel = channel;
    one.m_strMarkName = name;
    return one;
}

MarkTrigClass point(int trial, std::int64_t begin, double beginMs)
{
    MarkTrigClass one;
    one.m_nMarkPtTrial = trial;
    one.m_nMarkPtChannel = 1;
    one.m_nMarkPtBegin = begin;
    one.m_dMarkPtBegin = beginMs;
    return one;
}

struct ManagerCase
{
    using Record = ManagerRecord;
    static constexpr std::string_view tag = "MARKERMANAGERZK";
    static constexpr std::string_view page = "markers.md";
    static constexpr std::string_view name = "CMarkerManagerzk";
    static Record filled()
    {
        Record manager;
        manager.m_strMgrInfo = "info";
        manager.m_trigScanParam.m_nTrigScanMode = 3;
        manager.m_trigScanParam.m_dTrigThreshold = 2.5;
        manager.m_trigScanParam.m_strTrigPrefix = "Stim";
        manager.m_nCurrentMarker = 1;
        manager.m_aMarkers.addCopy(marker(5, 1, "a"));
        manager.m_aMarkers.Add(nullptr);
        manager.m_aMarkers.addCopy(marker(6, 2, "b"));
        manager.m_aMarkers.GetAt(0)->m_aMarkPts.addCopy(point(0, 10, 1.0));
        return manager;
    }
};

using ManagerTypes = ::testing::Types<ManagerCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(MarkerManager, RecordContract, ManagerTypes);

TEST(CMarkerManager, WritesTheseBytes)
{
    const ManagerRecord manager = ManagerCase::filled();
    ByteBuilder bytes;
    bytes.wide("MARKERMANAGERZK").i32(20261121).wide("info").i32(3).f64(2.5).wide("Stim").i32(1);
    bytes.i32(3).i32(1).raw(recordBytes(*manager.m_aMarkers.GetAt(0)));
    bytes.i32(0).i32(1).raw(recordBytes(*manager.m_aMarkers.GetAt(2)));
    EXPECT_TRUE(sameBytes(recordBytes(manager), bytes));
}

TEST(CMarkerManager, BrokenMarkerEndsTheList)
{
    ScriptedHost host;
    ByteBuilder bytes;
    bytes.wide("MARKERMANAGERZK").i32(20261121).wide("").i32(0).f64(0.5).wide("").i32(-1);
    bytes.i32(1).i32(1).wide("MARKERDATAXX").i32(20261121);
    ManagerRecord manager;
    EXPECT_EQ(loadRecord(manager, bytes.bytes()), 0);
    EXPECT_THAT(host.messages(), ::testing::ElementsAre("MARKERDATAZK: The record is of another kind or corrupted!"));
    EXPECT_EQ(manager.getTotalMarkers(), 0);
}

TEST(CMarkerManager, NewOneScansPlainlyWithAThresholdBetweenRestAndTheLeastCode)
{
    const CMarkerManagerzk manager;
    EXPECT_EQ(manager.m_trigScanParam.m_nTrigScanMode, 0);
    EXPECT_EQ(manager.m_trigScanParam.m_dTrigThreshold, 0.5);
    EXPECT_EQ(manager.m_trigScanParam.m_strTrigPrefix, CString("Trig"));
    EXPECT_EQ(manager.getTotalMarkers(), 0);
}

TEST(CMarkerManager, AddedTriggerIsTheNewestMarker)
{
    CMarkerManagerzk manager;
    EXPECT_EQ(manager.addTrigger(5, 1, 30, 100), 1);
    EXPECT_EQ(manager.addTrigger(-7, 1, 0, 100), 1);
    ASSERT_EQ(manager.getTotalMarkers(), 2);
    const CMarkerDatazk* newest = manager.getMarker(-1, false);
    EXPECT_EQ(newest->m_nMarkValue, -7);
    EXPECT_EQ(newest->m_nMarkCount, 1);
    EXPECT_EQ(newest->m_strMarkName, CString("Trig-7"));
    EXPECT_EQ(newest->getTotalTrgMrkPts(), 0);
    EXPECT_EQ(manager.m_nCurrentMarker, -1);
    EXPECT_EQ(manager.getMarker(0, false)->m_markWindow, (MarkWindow{30, 70, 0, 0}));
}

TEST(CMarkerManager, TriggerOutsideItsTrialHasNoNegativeWindow)
{
    CMarkerManagerzk manager;
    EXPECT_EQ(manager.addTrigger(1, 1, -5, 10), 1);
    EXPECT_EQ(manager.getMarker(-1, false)->m_markWindow, (MarkWindow{0, 10, 0, 0}));
    EXPECT_EQ(manager.addTrigger(1, 1, 20, 10), 1);
    EXPECT_EQ(manager.getMarker(-1, false)->m_markWindow, (MarkWindow{20, 0, 0, 0}));
}

TEST(CMarkerManager, TriggerWithoutMemoryIsNotAdded)
{
    CMarkerManagerzk manager;
    const FailingAllocator failing(1);
    EXPECT_EQ(manager.addTrigger(5, 1, 30, 100), 0);
    EXPECT_EQ(manager.getTotalMarkers(), 0);
}

TEST(CMarkerManager, MarkersAreFoundByIndex)
{
    ManagerRecord manager = ManagerCase::filled();
    EXPECT_EQ(manager.getMarker(0, false), manager.m_aMarkers.GetAt(0));
    EXPECT_EQ(manager.getMarker(1, false), nullptr);
    EXPECT_EQ(manager.getMarker(-1, false), manager.m_aMarkers.GetAt(2));
    EXPECT_EQ(manager.getMarker(3, true), nullptr);
    EXPECT_EQ(manager.getMarker(-2, true), nullptr);
    EXPECT_EQ(manager.m_nCurrentMarker, 1);
    EXPECT_EQ(manager.getMarker(2, true), manager.m_aMarkers.GetAt(2));
    EXPECT_EQ(manager.m_nCurrentMarker, 2);
}

TEST(CMarkerManager, RoundIndexIsBroughtIntoTheList)
{
    ManagerRecord manager = ManagerCase::filled();
    EXPECT_EQ(manager.getMarkerRoundIndx(-1, false), manager.m_aMarkers.GetAt(2));
    EXPECT_EQ(manager.getMarkerRoundIndx(99, false), manager.m_aMarkers.GetAt(2));
    EXPECT_EQ(manager.m_nCurrentMarker, 1);
    EXPECT_EQ(manager.getMarkerRoundIndx(-5, true), manager.m_aMarkers.GetAt(0));
    EXPECT_EQ(manager.m_nCurrentMarker, 0);
    CMarkerManagerzk empty;
    EXPECT_EQ(empty.getMarkerRoundIndx(-1, true), nullptr);
    EXPECT_EQ(empty.getMarkerRoundIndx(4, true), nullptr);
    EXPECT_EQ(empty.m_nCurrentMarker, -1);
}

TEST(CMarkerManager, AddingTakesAMarkerOverButNoNull)
{
    CMarkerManagerzk manager;
    EXPECT_EQ(manager.addMarker(nullptr), -1);
    EXPECT_EQ(manager.addMarker(std::make_unique<CMarkerDatazk>(marker(1, 2, "x"))), 0);
    EXPECT_EQ(manager.addMarker(std::make_unique<CMarkerDatazk>()), 1);
    EXPECT_EQ(manager.getMarker(0, false)->m_strMarkName, CString("x"));
}

TEST(CMarkerManager, CleaningDropsTheMarkersAndKeepsTheParameters)
{
    ManagerRecord manager = ManagerCase::filled();
    EXPECT_EQ(manager.cleanMarks(), 3);
    EXPECT_EQ(manager.getTotalMarkers(), 0);
    EXPECT_EQ(manager.m_nCurrentMarker, -1);
    EXPECT_EQ(manager.m_trigScanParam.m_dTrigThreshold, 2.5);
    EXPECT_EQ(manager.m_strMgrInfo, CString("info"));
}

TEST(CMarkerManager, MarkersMatchByValueAndChannelWhateverTheirNames)
{
    const ManagerRecord manager = ManagerCase::filled();
    const CMarkerDatazk renamed = marker(6, 2, "another");
    EXPECT_EQ(manager.findMatchMarkerData(&renamed), manager.m_aMarkers.GetAt(2));
    const CMarkerDatazk otherChannel = marker(6, 1, "b");
    EXPECT_EQ(manager.findMatchMarkerData(&otherChannel), nullptr);
    const CMarkerDatazk otherValue = marker(7, 2, "b");
    EXPECT_EQ(manager.findMatchMarkerData(&otherValue), nullptr);
    EXPECT_EQ(manager.findMatchMarkerData(nullptr), nullptr);
}

TEST(CMarkerManager, SetupTakesTheParametersAndMakesATriggerOfAMarker)
{
    CMarkerManagerzk manager;
    TrigScanParam param;
    param.m_strTrigPrefix = "Key";
    param.m_dTrigThreshold = 9.0;
    CMarkerDatazk one = marker(4, 1, "");
    one.m_markWindow = {1, 2, 3, 4};
    one.m_aMarkPts.addCopy(point(0, 5, 1.0));
    EXPECT_EQ(manager.setupTrgClsMks(&one, &param), 1);
    EXPECT_EQ(manager.m_trigScanParam, param);
    EXPECT_EQ(one.m_strMarkName, CString("Key4"));
    EXPECT_EQ(one.m_nMarkGroupID, 100);
    EXPECT_EQ(one.m_nMarkPtKind, 1);
    EXPECT_EQ(one.m_markWindowBk, one.m_markWindow);
    EXPECT_EQ(one.m_aMarkPtsBk, one.m_aMarkPts);
    EXPECT_EQ(manager.getTotalMarkers(), 0);
}

TEST(CMarkerManager, SetupKeepsWhatAMarkerHas)
{
    CMarkerManagerzk manager;
    CMarkerDatazk one = marker(8, 1, "mine");
    one.m_nMarkGroupID = 4;
    one.m_nMarkPtKind = 2;
    EXPECT_EQ(manager.setupTrgClsMks(&one, nullptr), 1);
    EXPECT_EQ(manager.m_trigScanParam, TrigScanParam());
    EXPECT_EQ(one.m_strMarkName, CString("mine"));
    EXPECT_EQ(one.m_nMarkGroupID, 4);
    EXPECT_EQ(one.m_nMarkPtKind, 2);
}

TEST(CMarkerManager, SetupWorksOnTheManagersOwnParameters)
{
    CMarkerManagerzk manager;
    manager.m_trigScanParam.m_strTrigPrefix = "Own";
    CMarkerDatazk one;
    EXPECT_EQ(manager.setupTrgClsMks(&one, &manager.m_trigScanParam), 1);
    EXPECT_EQ(one.m_strMarkName, CString("Own0"));
}

TEST(CMarkerManager, ShortSetupLeavesNameAndParametersAlone)
{
    CMarkerManagerzk manager;
    CMarkerDatazk one;
    EXPECT_EQ(manager.setupTrgClsMks1(&one), 1);
    EXPECT_TRUE(one.m_strMarkName.IsEmpty());
    EXPECT_EQ(one.m_nMarkGroupID, 100);
    EXPECT_EQ(manager.setupTrgClsMks1(nullptr), 0);
    EXPECT_EQ(manager.setupTrgClsMks(nullptr, nullptr), 0);
    one.m_aMarkPts.addCopy(point(0, 1, 1.0));
    const FailingAllocator failing(1);
    EXPECT_EQ(manager.setupTrgClsMks1(&one), 0);
}

// Trial 1: "b" at 20 ms, its second occurrence, then "a" at 30.5 ms; trial 0: "b".
CMarkerManagerzk reported()
{
    CMarkerManagerzk manager;
    manager.m_aMarkers.addCopy(marker(5, 1, "a"));
    manager.m_aMarkers.Add(nullptr);
    manager.m_aMarkers.addCopy(marker(6, 2, "b"));
    manager.m_aMarkers.GetAt(0)->m_aMarkPts.addCopy(point(1, 61, 30.5));
    manager.m_aMarkers.GetAt(0)->m_aMarkPts.Add(nullptr);
    manager.m_aMarkers.GetAt(2)->m_aMarkPts.addCopy(point(0, 7, 3.5));
    manager.m_aMarkers.GetAt(2)->m_aMarkPts.addCopy(point(1, 40, 20.0));
    return manager;
}

TEST(CMarkerManager, StandardReportIsALineByTimeFromTheFirstTrigger)
{
    std::int64_t count = -1;
    EXPECT_EQ(reported().getTrialAllTrigInfoStd(1, count), CString("1  b 0.000 0 2 a 10.500 21 1  2 \n"));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(reported().getTrialAllTrigInfoStd(0, count), CString("0  b 0.000 0 1  1 \n"));
    EXPECT_EQ(count, 1);
}

TEST(CMarkerManager, ReportsOfATrialWithoutTriggersSayZero)
{
    std::int64_t count = -1;
    EXPECT_EQ(reported().getTrialAllTrigInfoStd(9, count), CString("9   0 \n"));
    EXPECT_EQ(count, 0);
    count = -1;
    EXPECT_EQ(reported().getTrialAllTrigInfoPro(9, count), CString("Trial 9: 0 triggers\n"));
    EXPECT_EQ(count, 0);
}

TEST(CMarkerManager, DetailedReportHasALineForEachTrigger)
{
    std::int64_t count = -1;
    EXPECT_EQ(reported().getTrialAllTrigInfoPro(1, count), CString("Trial 1: 2 triggers\n"
                                                                   "  b: value 6, channel 1, 20.000 ms, sample 40\n"
                                                                   "  a: value 5, channel 1, 30.500 ms, sample 61\n"));
    EXPECT_EQ(count, 2);
}

TEST(CMarkerManager, ReportsOfAllTrialsAreThoseOfEach)
{
    const CMarkerManagerzk manager = reported();
    for (const int trials : {0, 1, 2, 5}) {
        CString std;
        CString pro;
        std::int64_t sum = 0;
        std::int64_t largest = 0;
        for (int trial = 0; trial < trials; ++trial) {
            std::int64_t count = 0;
            std += manager.getTrialAllTrigInfoStd(trial, count);
            pro += manager.getTrialAllTrigInfoPro(trial, count);
            sum += count;
            largest = std::max(largest, count);
        }
        std::int64_t total = -1;
        std::int64_t most = -1;
        EXPECT_EQ(manager.getAllTrigInfoStd(trials, total, most), std);
        EXPECT_EQ(total, sum);
        EXPECT_EQ(most, largest);
        total = -1;
        EXPECT_EQ(manager.getAllTrigInfoPro(trials, total), pro);
        EXPECT_EQ(total, sum);
    }
}

TEST(CMarkerManager, ReportTakesSamplesFarApart)
{
    CMarkerManagerzk manager;
    manager.m_aMarkers.addCopy(marker(5, 1, "a"));
    manager.m_aMarkers.GetAt(0)->m_aMarkPts.addCopy(point(0, std::numeric_limits<std::int64_t>::min(), 0.0));
    manager.m_aMarkers.GetAt(0)->m_aMarkPts.addCopy(point(0, std::numeric_limits<std::int64_t>::max(), 0.0));
    std::int64_t count = 0;
    manager.getTrialAllTrigInfoStd(0, count);
    EXPECT_EQ(count, 2);
}

} // namespace
} // namespace megset::CMarkerManager_test
