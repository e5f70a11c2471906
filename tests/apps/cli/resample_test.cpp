#include "apps/cli/process/resample.h"
#include "tests/apps/cli/SampleCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::resample_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Resample : public SampleCommand
{
protected:
    Resample() : SampleCommand("resample") {}

    // Samples of channel 1 of a trial.
    static std::vector<double> samples(const std::string& dataset, int trial)
    {
        return samplesInFile(dataset, trial, 1);
    }
};

TEST_F(Resample, FactorIsAppliedToAllTrialsAndUndoneByRestore)
{
    const auto result = run({"--factor", "4", "--in-place"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "re-sampled by 4: 50 Hz\n");
    // One sample more than 20 / 4: the library's own count.
    EXPECT_THAT(samples(sample.path(), 1), ElementsAre(1100, 1104, 1108, 1112, 1116, 1119));
    EXPECT_EQ(runMegset({"restore", sample.path(), "--in-place"}).exitCode, 0);
    EXPECT_EQ(samples(sample.path(), 1).size(), 20U);
    EXPECT_EQ(samples(sample.path(), 1)[19], 1119.0);
    const auto check = runMegset({"check", sample.path()});
    EXPECT_THAT(check.output, HasSubstr("nothing wrong"));
    EXPECT_THAT(check.output, testing::Not(HasSubstr("note")));
}

TEST_F(Resample, MeanOfEachRunIsTakenWithAverage)
{
    EXPECT_EQ(run({"--factor", "4", "--average", "--in-place"}).exitCode, 0);
    EXPECT_EQ(samples(sample.path(), 0)[1], 105.5);
}

// The samples come from what was recorded, and so must what is told of them.
TEST_F(Resample, UndoesMontageAndNoiseReductionAndTellsSo)
{
    for (int t = 0; t < 3; ++t) {
        CMDTrialzk& trial = *sample.dataset().getTrialzk(t);
        trial.m_bMontageCrDone = t == 1;
        trial.getChannel(1)->getMEGSensorzk()->setGradOrderNo(t == 0 ? 3 : 0);
    }
    sample.store();
    const auto result = run({"--factor", "4", "--in-place"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("noise reduction and montage are undone in 2 trials; --new keeps them\n"));
    EXPECT_THAT(samples(sample.path(), 0), ElementsAre(100, 104, 108, 112, 116, 119));
    for (int t = 0; t < 3; ++t) {
        const auto trial = trialInFile(sample.path(), t);
        EXPECT_EQ(trial->getChannel(1)->getMEGSensorzk()->getGradOrderNo(), 0);
        EXPECT_EQ(trial->m_bMontageCrDone, 0);
        EXPECT_EQ(trial->m_nTrialResampleStep, 4);
    }
    EXPECT_EQ(run({"--factor", "2", "--in-place"}).errors, "") << "nothing is left to undo";
}

TEST_F(Resample, NewDatasetTakesTheSamplesForItsRecordingAndTheSourceStays)
{
    const auto before = sample.folder().read("runTrial1.trl");
    const auto result = run({"--factor", "4", "--new", file("slow.meg")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(sample.folder().read("runTrial1.trl"), before);
    EXPECT_THAT(sample.folder().names(), ElementsAre("run.meg", "runTrial0.trl", "runTrial1.trl", "runTrial2.trl",
                                                     "slow.meg", "slowTrial0.trl", "slowTrial1.trl", "slowTrial2.trl"));
    EXPECT_EQ(samples(file("slow.meg"), 1)[2], 1108.0);
    EXPECT_EQ(runMegset({"check", file("slow.meg")}).exitCode, 0) << runMegset({"check", file("slow.meg")}).output;
}

TEST_F(Resample, NewDatasetHasTheMarksAtTheirPlaceAndTheBadChannels)
{
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"marks", "--add", "blink", "--at", "8:15", "--trial", "1"},
          {"marks", "--bad-segment", "4:19", "--trial", "2"},
          {"channels", "--bad", "M2"}}) {
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.begin() + 1, {sample.path(), "--in-place"});
        ASSERT_EQ(runMegset(arguments).exitCode, 0);
    }
    auto open = openDatasetToChange(sample.path());
    MarkTrigClass trigger;
    trigger.m_nMarkPtBegin = 12;
    open->dataset.getTrigManager()->addTrigger(5, 1, 12, 20);
    open->dataset.getTrigManager()->getMarker(0, false)->addMarkPt(trigger);
    storeDataset(*open);
    open.reset();
    ASSERT_EQ(run({"--factor", "4", "--new", file("slow.meg")}).exitCode, 0);
    EXPECT_THAT(runMegset({"marks", file("slow.meg")}).output,
                HasSubstr("    0         3         3          40          40  trigger    Trig5\n"
                          "    1         2         3          20          40  mark       blink\n"
                          "    2         1         4           0          60  segment    Bad_segment\n"));
    ReadingNotes notes;
    const auto slow = openDatasetToLook(file("slow.meg"), notes);
    EXPECT_EQ(slow->dataset.isGoodChnl4Alltrials(1), 1);
    EXPECT_EQ(slow->dataset.isGoodChnl4Alltrials(2), 0);
    const CMarkerDatazk& marker = *slow->dataset.getTrigManager()->getMarker(0, false);
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, 0) << "it has no end";
    EXPECT_EQ(marker.m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 3) << "the new recording's";
}

TEST_F(Resample, NewDatasetOfAReSampledOneIsRefused)
{
    ASSERT_EQ(run({"--factor", "2", "--in-place"}).exitCode, 0);
    const auto result = run({"--factor", "2", "--new", file("slow.meg")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("the dataset is re-sampled already: restore it first"));
    EXPECT_FALSE(sample.folder().has("slow.meg"));
}

TEST_F(Resample, NewDatasetsInOneFolderDoNotShareFiles)
{
    ASSERT_EQ(run({"--factor", "4", "--new", file("slow.meg")}).exitCode, 0);
    ASSERT_EQ(run({"--factor", "2", "--new", file("faster.meg")}).exitCode, 0);
    EXPECT_EQ(samples(file("slow.meg"), 1).size(), 6U);
    EXPECT_EQ(samples(file("faster.meg"), 1).size(), 11U);
    const auto before = sample.folder().read("slowTrial0.trl");
    const auto again = run({"--factor", "2", "--new", file("slow.meg")});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.errors, HasSubstr("slow.meg: exists already"));
    EXPECT_EQ(sample.folder().read("slowTrial0.trl"), before);
}

TEST_F(Resample, FactorsThatDoNotFitAreRefusedAndLeaveNothing)
{
    const auto names = sample.folder().names();
    for (const char* factor : {"0", "-3", "10", "1000"}) {
        const auto result = run({"--factor", factor, "--out", file("slow.meg")});
        EXPECT_EQ(result.exitCode, 1) << factor;
        EXPECT_NE(result.errors, "");
        EXPECT_EQ(sample.folder().names(), names);
    }
    EXPECT_THAT(run({"--factor", "10", "--in-place"}).errors, HasSubstr("cannot be larger than half"));
}

TEST(Channels, AreSwitchedForAllTrials)
{
    const SampleDataset sample;
    const auto result =
        runMegset({"channels", sample.path(), "--bad", "M1,E1", "--hide", "S1", "--select", "X1", "--in-place"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "4 channels switched\n");
    ReadingNotes notes;
    const auto open = openDatasetToLook(sample.path(), notes);
    std::vector<int> good;
    std::vector<int> shown;
    std::vector<int> selected;
    for (int i = 0; i < 6; ++i) {
        good.push_back(open->dataset.isGoodChnl4Alltrials(i));
        shown.push_back(open->dataset.isShowChnl4Alltrials(i));
        selected.push_back(open->dataset.isSelectChnl4Alltrials(i));
    }
    EXPECT_THAT(good, ElementsAre(1, 0, 1, 0, 1, 1));
    EXPECT_THAT(shown, ElementsAre(1, 1, 1, 1, 0, 1));
    EXPECT_THAT(selected, ElementsAre(0, 0, 0, 0, 0, 1));
}

TEST(Channels, UnknownNameSwitchesNothing)
{
    const SampleDataset sample;
    const auto before = sample.folder().read("run.meg");
    const auto result = runMegset({"channels", sample.path(), "--bad", "M1,Q9", "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no channel Q9"));
    EXPECT_EQ(sample.folder().read("run.meg"), before);
}

} // namespace

} // namespace megset::cli::resample_test
