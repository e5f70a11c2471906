#include "apps/cli/events/blankSegments.h"
#include "tests/apps/cli/SampleDataset.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::blank_test {

namespace {

using testing::HasSubstr;

class Blank : public testing::Test
{
protected:
    void mark(const std::string& place, const std::string& trials)
    {
        const auto result =
            runMegset({"marks", sample.path(), "--bad-segment", place, "--trial", trials, "--in-place"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }
    kit::ProgramResult run(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"blank", sample.path(), "--segments", "--in-place"});
        return runMegset(options);
    }
    // What the samples of all channels must be: as recorded but for those blanked, which are `value(channel)`.
    template <class Value>
    void expect(int trial, const std::set<std::int64_t>& blanked, Value value)
    {
        const auto read = trialInFile(sample.path(), trial);
        for (int c = 0; c < SampleDataset::channels; ++c)
            for (std::int64_t i = 0; i < 20; ++i) {
                EXPECT_EQ(read->getChannel(c)->getDataWave()[i],
                          blanked.contains(i) ? value(c) : SampleDataset::sampleAt(trial, c, i))
                    << "trial " << trial << ", channel " << c << ", sample " << i;
                EXPECT_EQ(read->getChannel(c)->getBkData()[i], SampleDataset::sampleAt(trial, c, i))
                    << "the raw samples stay";
            }
    }
    void expectZero(int trial, const std::set<std::int64_t>& blanked)
    {
        expect(trial, blanked, [](int) { return 0.0; });
    }

    SampleDataset sample;
};

TEST_F(Blank, SegmentsBecomeZeroEachInItsOwnTrial)
{
    mark("3:5", "0");
    mark("10:11", "0,2");
    const auto result = run();
    EXPECT_EQ(result.output, "3 bad segments blanked in 2 trials: 7 samples set to 0\n") << result.errors;
    expectZero(0, {3, 4, 5, 10, 11});
    expectZero(1, {});
    expectZero(2, {10, 11});
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(Blank, SegmentsHoldTheSampleBeforeThem)
{
    mark("3:5", "1");
    const auto result = run({"--hold"});
    EXPECT_EQ(result.output, "1 bad segment blanked in 1 trial: 3 samples held at the one before\n") << result.errors;
    expect(1, {3, 4, 5}, [](int channel) { return SampleDataset::sampleAt(1, channel, 2); });
}

TEST_F(Blank, HoldFromTheFirstSampleOnIsZero)
{
    mark("0:2", "1");
    EXPECT_EQ(run({"--hold"}).exitCode, 0);
    expectZero(1, {0, 1, 2});
}

TEST_F(Blank, TrialsCanBeChosen)
{
    mark("3:5", "0:2");
    EXPECT_EQ(run({"--trial", "1"}).output, "1 bad segment blanked in 1 trial: 3 samples set to 0\n");
    expectZero(0, {});
    expectZero(1, {3, 4, 5});
    expectZero(2, {});
}

TEST_F(Blank, OverlappingSegmentsOfTheLibraryCountTheirSamplesOnce)
{
    sample.dataset().getTrialzk(1);
    for (const auto& [begin, end] : {std::pair(10.0, 30.0), std::pair(20.0, 40.0), std::pair(50.0, 500.0)})
        ASSERT_EQ(sample.dataset().addTrialBadSegment(begin, end), 1); // samples 2-6, 4-8 and 10-100
    sample.store();
    EXPECT_EQ(run().output, "3 bad segments blanked in 1 trial: 17 samples set to 0\n");
    expectZero(1, {2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19});
}

TEST_F(Blank, SegmentsOutsideTheTrialsAreToldAndLeftOut)
{
    sample.dataset().addTrialBadSegment(500.0, 600.0); // behind the last sample
    sample.dataset().addTrialBadSegment(10.0, 20.0);
    sample.dataset().getSegmentManager()->getMarker(0, false)->getMarkPt(-1)->m_nMarkPtTrial = 7;
    sample.store();
    const auto result = run();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "0 bad segments blanked in 0 trials: 0 samples set to 0\n");
    EXPECT_THAT(result.errors, HasSubstr("2 bad segments outside the trials left out\n"));
}

TEST_F(Blank, WithoutSegmentsChangesNothing)
{
    EXPECT_EQ(run().output, "0 bad segments blanked in 0 trials: 0 samples set to 0\n");
    expectZero(1, {});
}

// A later pass over the dataset would go over the selection of all trials alike.
TEST_F(Blank, LeavesTheDatasetsOwnSelectionOfRanges)
{
    sample.dataset().m_nSegmentCutNext = 5;
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "selection";
    sample.dataset().getMkManagerSelect4Move()->addMarker(std::move(marker));
    sample.store();
    mark("3:5", "1");
    EXPECT_EQ(run().exitCode, 0);
    ReadingNotes notes;
    const auto open = openDatasetToLook(sample.path(), notes);
    EXPECT_EQ(open->dataset.m_nSegmentCutState, 0);
    EXPECT_EQ(open->dataset.m_nSegmentCutNext, 5);
    ASSERT_EQ(open->dataset.getMkManagerSelect4Move()->getTotalMarkers(), 1);
    EXPECT_EQ(open->dataset.getMkManagerSelect4Move()->getMarker(0, false)->m_strMarkName, "selection");
}

TEST_F(Blank, OfAReSampledDatasetBlanksTheSamePlace)
{
    mark("8:15", "0");
    ASSERT_EQ(runMegset({"resample", sample.path(), "--factor", "4", "--in-place"}).exitCode, 0);
    EXPECT_EQ(run().output, "1 bad segment blanked in 1 trial: 2 samples set to 0\n");
    const auto read = trialInFile(sample.path(), 0);
    const double expected[] = {100.0, 104.0, 0.0, 0.0, 116.0};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(read->getChannel(1)->getDataWave()[i], expected[i]);
}

TEST_F(Blank, ByOutLeavesTheDatasetAsItIsAndRestoreUndoesIt)
{
    mark("3:5", "1");
    const std::string copy = sample.folder().native("copy.meg").string();
    ASSERT_EQ(runMegset({"blank", sample.path(), "--segments", "--out", copy}).exitCode, 0);
    expectZero(1, {});
    ASSERT_EQ(run().exitCode, 0);
    expectZero(1, {3, 4, 5});
    ASSERT_EQ(runMegset({"restore", sample.path(), "--in-place"}).exitCode, 0);
    expectZero(1, {});
}

TEST_F(Blank, FaultsAreTold)
{
    EXPECT_EQ(runMegset({"blank", sample.path(), "--in-place"}).exitCode, 2) << "what is to be blanked isn't said";
    EXPECT_THAT(run({"--trial", "3"}).errors, HasSubstr("there is no trial 3; the dataset has 3"));
    mark("3:5", "1");
    std::filesystem::remove(sample.trialFile(1));
    const auto result = run();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("trial 1 of 3: it can't be opened"));
}

} // namespace

} // namespace megset::cli::blank_test
