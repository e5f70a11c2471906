// Reports of triggers, their copy, and the trials that they select.
#include "tests/events/stimulusDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::triggerReports_test {
namespace {

using ::testing::ElementsAre;

void addTrigger(CMEGDatazk& data, const char* name, const std::vector<std::pair<int, std::int64_t>>& trialAndSample)
{
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = name;
    marker->m_nMarkValue = 7;
    for (const auto& [trial, sample] : trialAndSample) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = trial;
        point.m_nMarkPtChannel = 2;
        point.m_nMarkPtBegin = sample;
        point.m_dMarkPtBegin = static_cast<double>(sample) * 0.5;
        marker->addMarkPt(point);
    }
    data.m_mkTrig.addMarker(std::move(marker));
}

/// Three places of trials, which a report doesn't open.
void makePlaces(CMEGDatazk& data)
{
    ASSERT_EQ(data.m_ppTrial.allocate(3), 1);
    data.m_nTotalTrial = 3;
    data.m_strDatasetFileName = "Run1";
    addTrigger(data, "A", {{0, 20}, {2, 10}, {0, 4}});
    addTrigger(data, "B", {{0, 10}, {3, 1}, {-1, 1}});
}

TEST(TriggerReport, GivesALineForEachTrialAndShowsAHead)
{
    const ScriptedHost host;
    CMEGDatazk data;
    makePlaces(data);
    const CString text = "0  A 0.000 0 3 B 3.000 6 1 A 8.000 16 1  3 \n1   0 \n2  A 0.000 0 2  1 \n";
    EXPECT_EQ(data.getTrialTrigInfoStd(), text);
    ASSERT_EQ(host.reports().size(), 1U);
    EXPECT_EQ(host.reports()[0].title, "Run1 (Trials:3 Triggers:4") << "without its closing bracket";
    const CString column = "TrigName  Time2SyncTrig(ms) Point2SyncTrig Repetition ";
    EXPECT_EQ(host.reports()[0].text, "TrlID  " + column + column + column + " TotalTrig \n" + text);
}

TEST(TriggerReport, OfNoTriggersHasAHeadWithoutColumns)
{
    const ScriptedHost host;
    CMEGDatazk data;
    makePlaces(data);
    data.m_mkTrig.cleanMarks();
    EXPECT_EQ(data.getTrialTrigInfoStd(), "0   0 \n1   0 \n2   0 \n");
    EXPECT_EQ(host.reports().at(0).text, "TrlID   TotalTrig \n0   0 \n1   0 \n2   0 \n");
    EXPECT_EQ(host.reports().at(0).title, "Run1 (Trials:3 Triggers:0");
}

TEST(TriggerReport, InTheLongFormIsShownAsItIsGiven)
{
    const ScriptedHost host;
    CMEGDatazk data;
    makePlaces(data);
    const CString text = data.getTrialTrigInfoPro();
    std::int64_t count = 0;
    CString expected;
    for (int trial = 0; trial < 3; ++trial)
        expected += data.m_mkTrig.getTrialAllTrigInfoPro(trial, count);
    EXPECT_EQ(text, expected);
    EXPECT_GE(text.Find("  B: value 7, channel 2, 5.000 ms, sample 10\n"), 0);
    ASSERT_EQ(host.reports().size(), 1U);
    EXPECT_EQ(host.reports()[0].title, "Run1 (Trials:3 Triggers:4");
    EXPECT_EQ(host.reports()[0].text, text);
}

TEST(TriggerReport, WithoutTrialsSaysSo)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.getTrialTrigInfoStd(), "No Trial");
    EXPECT_EQ(data.getTrialTrigInfoPro(), "No Trial");
    EXPECT_THAT(host.messages(), ElementsAre("No Trials", "No Trials"));
    EXPECT_TRUE(host.reports().empty());
}

TEST(TriggerReport, OfAHundredThousandMarksInAThousandTrialsTakesEachOnce)
{
    const ScriptedHost host;
    CMEGDatazk data;
    ASSERT_EQ(data.m_ppTrial.allocate(1000), 1);
    data.m_nTotalTrial = 1000;
    std::vector<std::pair<int, std::int64_t>> points;
    for (int i = 0; i < 100'000; ++i)
        points.emplace_back(i % 1000, i);
    addTrigger(data, "A", points);
    data.getTrialTrigInfoStd();
    data.getTrialTrigInfoPro();
    EXPECT_EQ(host.reports().at(0).title, " (Trials:1000 Triggers:100000");
    EXPECT_EQ(host.reports().at(1).title, " (Trials:1000 Triggers:100000");
}

// ---- the copy as recorded

TEST(TriggerRecord, KeepsTheTriggersAsTheyWere)
{
    const ScriptedHost host;
    CMEGDatazk data;
    addTrigger(data, "A", {{0, 20}, {1, 10}});
    data.m_mkTrig.m_strMgrInfo = "info";
    EXPECT_EQ(data.setTrig2Record(), 1);
    const CMarkerManagerzk recorded = data.m_mkTrig;
    EXPECT_EQ(data.m_mkTrigRecord, recorded);
    data.m_mkTrig.getMarker(0, false)->m_strMarkName = "renamed";
    data.m_mkTrig.getMarker(0, false)->m_aMarkPts.RemoveAll();
    EXPECT_EQ(data.m_mkTrigRecord, recorded) << "a deep copy";
    EXPECT_EQ(data.reloadTrigRecord(), 1);
    EXPECT_EQ(data.m_mkTrig, recorded);
    EXPECT_EQ(data.m_mkTrigRecord, recorded);
    host.expectNoMessages();
}

TEST(TriggerRecord, WithoutTriggersStaysAndCantBeReloadedWhereItIsEmpty)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.setTrig2Record(), 0);
    EXPECT_EQ(data.reloadTrigRecord(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("No recorded triggers can be found!"));
    addTrigger(data, "A", {{0, 20}});
    EXPECT_EQ(data.setTrig2Record(), 1);
    data.m_mkTrig.cleanMarks();
    EXPECT_EQ(data.setTrig2Record(), 0);
    EXPECT_EQ(data.m_mkTrigRecord.getTotalMarkers(), 1);
}

// ---- trials of a trigger

TEST(TriggerOfATrial, IsFoundByNameInAnyCase)
{
    CMEGDatazk data;
    CMarkerDatazk marker;
    CMDTrialzk trial;
    marker.m_strMarkName = "Other";
    marker.m_strMarkTrialName = "Left Hand";
    trial.m_strTrigMarkName = "LEFT hand";
    EXPECT_EQ(data.isMarkTrig2TrlMatch(&marker, &trial), 1);
    trial.m_strTrigMarkName = "LEFT hands";
    EXPECT_EQ(data.isMarkTrig2TrlMatch(&marker, &trial), 0);
    EXPECT_EQ(data.isMarkTrig2TrlMatch(nullptr, &trial), 0);
    EXPECT_EQ(data.isMarkTrig2TrlMatch(&marker, nullptr), 0);
}

} // namespace
} // namespace megset::triggerReports_test
