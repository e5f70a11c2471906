// Marks by kind, and bad segments.
#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::marksAndSegments_test {
namespace {

using ::testing::ElementsAre;

// ---- managers

TEST(MarkLines, AreThoseOfTheManagerOfTheType)
{
    const ScriptedHost host;
    CMEGDatazk data;
    CMarkerManagerzk* const managers[] = {data.getTrigManager(),          data.getMarkerManager(),
                                          data.getSegmentManager(),       data.getClassManager(),
                                          data.getThreshodMkManager(),    data.getPatternMkManager(),
                                          data.getMkManagerSelect4Move(), data.getAiMarkWave2Disease()};
    const CMarkerManagerzk* const fields[] = {&data.m_mkTrig,        &data.m_mkMarker,    &data.m_mkSegment,
                                              &data.m_mkClass,       &data.m_mkThreshold, &data.m_mkPattern,
                                              &data.m_mkSelect4Move, &data.m_mkAiMarkWave};
    for (int type = 0; type < 8; ++type) {
        EXPECT_EQ(managers[type], fields[type]);
        EXPECT_EQ(data.getShowMarkLineManager(type), managers[type]);
        EXPECT_EQ(data.m_nShowMarkLineType, type);
        EXPECT_EQ(data.getShowMarkLineManager(-1), managers[type]) << "the one chosen last";
    }
    host.expectNoMessages();
}

TEST(MarkLines, OfAWrongTypeAreNoneButTheTypeIsStored)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.getShowMarkLineManager(9), nullptr);
    EXPECT_EQ(data.m_nShowMarkLineType, 9);
    EXPECT_EQ(data.getShowMarkLineManager(-1), nullptr);
    EXPECT_EQ(data.getShowMarkLineManager(8), nullptr);
    EXPECT_EQ(data.getShowMarkLineManager(-2), nullptr);
    EXPECT_EQ(data.m_nShowMarkLineType, -2) << "a negative one, too";
    EXPECT_THAT(host.messages(), ElementsAre("Wrong Mark Line type!?", "Wrong Mark Line type!?",
                                             "Wrong Mark Line type!?", "Wrong Mark Line type!?"));
}

TEST(MarkLines, HaveATypeForEachGroup)
{
    const ScriptedHost host;
    CMEGDatazk data;
    const std::pair<int, int> types[] = {{100, 0}, {1, 1}, {300, 2}, {200, 3}, {360, 4}, {366, 5}, {460, 6}};
    for (const auto& [group, type] : types)
        EXPECT_EQ(data.getTRIGMRK_GRPID2MK_LINE_TYPE(group), type);
    host.expectNoMessages();
    for (const int group : {0, -1, 2, 101, 302})
        EXPECT_EQ(data.getTRIGMRK_GRPID2MK_LINE_TYPE(group), -1);
    EXPECT_EQ(host.messages().size(), 5U);
    EXPECT_EQ(host.messages()[0], "Wrong Trigger Mark Group ID!?");
}

// ---- bad segments

TEST(BadSegment, OfTheCurrentTrialGoesToANewMarker)
{
    FiledDataset filed(2, 1, 10);
    filed.data.m_recordInfo.m_dRecSampleRate = 500.0;
    filed.data.getTrialzk(1);
    EXPECT_EQ(filed.data.addTrialBadSegment(3.9, 10.0), 1);
    ASSERT_EQ(filed.data.m_mkSegment.getTotalMarkers(), 1);
    EXPECT_EQ(filed.data.m_mkSegment.m_strMgrInfo, "Bad_segment");
    const CMarkerDatazk& marker = *filed.data.m_mkSegment.getMarker(0, false);
    EXPECT_EQ(marker.m_nMarkID, 302);
    EXPECT_EQ(marker.m_nMarkCount, 0) << "it isn't counted";
    ASSERT_EQ(marker.getTotalTrgMrkPts(), 1);
    const MarkTrigClass& point = *marker.getMarkPt(0);
    EXPECT_EQ(point.m_nMarkPtTrial, 1);
    EXPECT_EQ(point.m_dMarkPtBegin, 3.9);
    EXPECT_EQ(point.m_dMarkPtEnd, 10.0);
    EXPECT_EQ(point.m_nMarkPtBegin, 1) << "cut";
    EXPECT_EQ(point.m_nMarkPtEnd, 5);
}

TEST(BadSegment, GoesToTheFirstMarkerWhereThereAreSome)
{
    CMEGDatazk data;
    for (const int id : {5, 6}) {
        auto marker = std::make_unique<CMarkerDatazk>();
        marker->m_nMarkID = id;
        data.m_mkSegment.addMarker(std::move(marker));
    }
    data.m_mkSegment.m_strMgrInfo = "mine";
    EXPECT_EQ(data.addTrialBadSegment(1.0, 2.0), 1);
    EXPECT_EQ(data.addTrialBadSegment(1.0, 2.0), 1) << "segments may overlap";
    EXPECT_EQ(data.m_mkSegment.getTotalMarkers(), 2);
    EXPECT_EQ(data.m_mkSegment.getMarker(0, false)->getTotalTrgMrkPts(), 2);
    EXPECT_EQ(data.m_mkSegment.getMarker(0, false)->m_nMarkID, 5);
    EXPECT_EQ(data.m_mkSegment.m_strMgrInfo, "mine");
    data.m_mkSegment.m_aMarkers.SetAt(0, nullptr);
    EXPECT_EQ(data.addTrialBadSegment(1.0, 2.0), 0) << "an empty place";
}

TEST(BadSegment, TakesTimesOutsideTheTrialAsTheyAre)
{
    CMEGDatazk data;
    data.m_recordInfo.m_dRecSampleRate = 1000.0;
    EXPECT_EQ(data.addTrialBadSegment(-7.5, 1e300), 1);
    EXPECT_EQ(data.addTrialBadSegment(std::nan(""), 0.0), 1);
    EXPECT_EQ(data.addTrialBadSegment(20.0, 10.0), 1) << "an end before the begin, too";
    const CMarkerDatazk& marker = *data.m_mkSegment.getMarker(0, false);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtBegin, -7);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(marker.getMarkPt(1)->m_nMarkPtBegin, 0);
    EXPECT_EQ(marker.getMarkPt(2)->m_nMarkPtBegin, 20);
    EXPECT_EQ(marker.getMarkPt(2)->m_nMarkPtEnd, 10);
}

TEST(BadSegment, OfATrialOpensIt)
{
    FiledDataset filed(3, 1, 10);
    const std::pair<int, int> trials[] = {{-1, 0}, {2, 2}, {-1, 2}, {1, 1}, {99, 2}, {-2, 0}};
    for (const auto& [asked, taken] : trials) {
        EXPECT_EQ(filed.data.addTrialBadSegment(asked, 1.0, 2.0), 1);
        EXPECT_EQ(filed.data.m_nCurrentTrial, taken);
        EXPECT_EQ(filed.data.m_mkSegment.getMarker(0, false)->getMarkPt(-1)->m_nMarkPtTrial, taken);
    }
    filed.data.m_nCurrentTrial = -1;
    EXPECT_EQ(filed.data.addTrialBadSegment(-1, 1.0, 2.0), 1) << "a current trial of none is the first";
    EXPECT_EQ(filed.data.m_nCurrentTrial, 0);
}

TEST(BadSegment, OfATrialThatCantBeOpenedIsRefused)
{
    ScriptedHost host;
    CMEGDatazk none;
    for (const int trial : {-2, -1, 0, 3})
        EXPECT_EQ(none.addTrialBadSegment(trial, 1.0, 2.0), 0);
    EXPECT_EQ(none.m_mkSegment.getTotalMarkers(), 0);
    FiledDataset filed(2, 1, 10);
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    EXPECT_EQ(filed.data.addTrialBadSegment(1, 1.0, 2.0), 0);
    EXPECT_EQ(filed.data.m_mkSegment.getTotalMarkers(), 0);
}

TEST(BadSegment, GivesZeroWithoutMemory)
{
    const auto failures = forEachAllocationFailure([] {
        CMEGDatazk data;
        if (data.addTrialBadSegment(1.0, 2.0)) {
            EXPECT_EQ(data.m_mkSegment.getMarker(0, false)->getTotalTrgMrkPts(), 1);
        } else {
            EXPECT_EQ(data.m_mkSegment.getTotalMarkers(), 0);
            EXPECT_EQ(data.m_mkSegment.m_strMgrInfo, "");
        }
    });
    EXPECT_EQ(failures, 3);
}

} // namespace
} // namespace megset::marksAndSegments_test
