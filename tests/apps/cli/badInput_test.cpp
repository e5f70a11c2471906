// What the commands that process trials do with input that doesn't fit: they tell it, and nothing is half applied.

#include "apps/cli/process/montage.h"
#include "tests/apps/cli/SampleDataset.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::badInput_test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class BadInput : public testing::Test
{
protected:
    std::string path(const char* name) const { return sample.folder().native(name).string(); }
    kit::ProgramResult run(const char* command, std::vector<std::string> options)
    {
        options.insert(options.begin(), {command, sample.path()});
        return runMegset(options);
    }
    /// All files with their bytes.
    std::map<std::string, std::vector<std::byte>> files() const
    {
        std::map<std::string, std::vector<std::byte>> all;
        for (const std::string& name : sample.folder().names())
            all[name] = sample.folder().read(name);
        return all;
    }
    /// The command fails with these words and leaves every file as it was, with no new one.
    void expectRefused(const char* command, const std::vector<std::string>& options, const std::string& words)
    {
        const auto before = files();
        const auto result = run(command, options);
        EXPECT_EQ(result.exitCode, 1) << words;
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr(words));
        EXPECT_EQ(files(), before) << words;
    }
    /// Gives the channel of a trial these samples, as recorded.
    void setSamples(int trial, int channel, const std::vector<double>& values)
    {
        sample.dataset().getTrialzk(trial)->getChannel(channel)->addData(static_cast<std::int64_t>(values.size()),
                                                                         values.data());
    }

    SampleDataset sample;
};

// ---- re-sampling

TEST_F(BadInput, FactorsThatDoNotFitAreRefusedWithTheirNumbers)
{
    for (const char* target : {"--out", "--new"}) {
        expectRefused("resample", {"--factor", "0", target, path("slow.meg")}, "the factor 0 is below 1");
        expectRefused("resample", {"--factor", "-3", target, path("slow.meg")}, "the factor -3 is below 1");
        for (const char* factor : {"10", "11", "20", "1000", "9223372036854775807"})
            expectRefused("resample", {"--factor", factor, target, path("slow.meg")},
                          "Re-sampling factor (" + std::string(factor) +
                              ") cannot be larger than half of the sampling rate (10)");
    }
    EXPECT_EQ(run("resample", {"--factor", "9", "--out", path("slow.meg")}).exitCode, 0);
    EXPECT_THAT(samplesInFile(path("slow.meg"), 0, 1), ElementsAre(100, 109, 118));
}

TEST_F(BadInput, FactorThatIsNoWholeNumberIsWrongUsage)
{
    for (const char* factor : {"x", "2.5", "1e3"})
        EXPECT_EQ(run("resample", {"--factor", factor, "--in-place"}).exitCode, 2) << factor;
}

TEST_F(BadInput, TrialsOfUnequalLengthAreResampledByTheRecordingsCount)
{
    setSamples(1, 1, {1, 2, 3, 4, 5, 6, 7});
    std::vector<double> longer(30);
    for (std::size_t i = 0; i < longer.size(); ++i)
        longer[i] = static_cast<double>(i);
    setSamples(2, 1, longer);
    sample.store();
    ASSERT_EQ(run("resample", {"--factor", "4", "--out", path("slow.meg")}).exitCode, 0);
    EXPECT_THAT(samplesInFile(path("slow.meg"), 0, 1), ElementsAre(100, 104, 108, 112, 116, 119));
    EXPECT_THAT(samplesInFile(path("slow.meg"), 1, 1), ElementsAre(1, 5, 7, 7, 7, 7)); // its last one again and again
    EXPECT_THAT(samplesInFile(path("slow.meg"), 2, 1), ElementsAre(0, 4, 8, 12, 16, 20));
    EXPECT_EQ(runMegset({"restore", path("slow.meg"), "--in-place"}).exitCode, 0);
    EXPECT_EQ(samplesInFile(path("slow.meg"), 1, 1).size(), 7U);
    EXPECT_EQ(samplesInFile(path("slow.meg"), 2, 1).size(), 30U);
}

TEST_F(BadInput, ResamplingUndoesAMontageAndItsMarks)
{
    ASSERT_EQ(run("montage", {"--reference", "X1", "--channels", "E1", "--in-place"}).exitCode, 0);
    EXPECT_THAT(run("montage", {"--show"}).output, HasSubstr("1 channels less X1"));
    ASSERT_EQ(run("resample", {"--factor", "4", "--in-place"}).exitCode, 0);
    EXPECT_THAT(samplesInFile(sample.path(), 1, 3),
                ElementsAre(1300, 1304, 1308, 1312, 1316, 1319)); // of the raw samples
    EXPECT_THAT(run("montage", {"--show"}).output, Not(HasSubstr("less")));
    EXPECT_THAT(run("montage", {"--show"}).output, HasSubstr("re-sampled by 4"));
}

TEST_F(BadInput, ResampledTrialChecksOutWithItsAdditionalSample)
{
    ASSERT_EQ(run("resample", {"--factor", "4", "--in-place"}).exitCode, 0);
    const auto check = run("check", {});
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_THAT(check.output, Not(HasSubstr("note: ")));
}

// ---- montage

TEST_F(BadInput, UnknownReferenceOrChannelIsToldWithTheNearestNames)
{
    expectRefused("montage", {"--reference", "E2", "--in-place"},
                  "trial 0 of 3: there is no channel E2; the nearest names are E1, ");
    expectRefused("montage", {"--reference", "M3=2,E1", "--divisor", "2", "--in-place"},
                  "there is no channel M3; the nearest names are M1-77, M2-77");
    expectRefused("montage", {"--average", "--channels", "Q", "--out", path("new.meg")}, "there is no channel Q; ");
    expectRefused("montage", {"--reference", "E1=two", "--in-place"}, "the weight in \"E1=two\" is no number");
}

TEST_F(BadInput, MontageFileIsToldWithLineAndColumn)
{
    const std::vector<std::pair<std::string, std::string>> faults = {
        {"E1 = X1\n# fine so far\nS1 X1\n", "m.txt: line 3, column 1: there is no \"=\""},
        {"E1 = X1\n  S1 = 2*\n", "m.txt: line 2, column 10: a channel is missing"},
        {"E1 = X1 + one*S1\n", "m.txt: line 1, column 11: \"one\" is no number"},
        {"E1 = X1 + S1 / -2\n", "m.txt: line 1, column 16: the divisor is not above 0"},
        {"E1 = X1\nS1 = E1 + Q9\n", "m.txt: line 2, column 11: there is no channel Q9; the nearest names are "},
        {"E1 = X1\nE1 = S1\n", "m.txt: line 2, column 1: the channel has a reference in line 1 already"},
        {"", "m.txt: line 1, column 1: the file holds no montage"},
    };
    for (const auto& [text, fault] : faults) {
        sample.folder().write("m.txt", text);
        for (const std::vector<std::string>& target :
             std::vector<std::vector<std::string>>{{"--in-place"}, {"--out", path("new.meg")}}) {
            std::vector<std::string> options = {"--bipolar", path("m.txt")};
            options.insert(options.end(), target.begin(), target.end());
            expectRefused("montage", options, fault);
        }
    }
    expectRefused("montage", {"--bipolar", path("none.txt"), "--in-place"}, "none.txt: can't be read");
}

TEST_F(BadInput, ReferenceWithoutSamplesIsToldAndNothingChanges)
{
    sample.dataset().getTrialzk(0)->getChannel(5)->_cleanTimeDataC(true);
    sample.store();
    sample.folder().write("m.txt", "E1 = X1\n");
    expectRefused("montage", {"--reference", "X1", "--channels", "E1", "--in-place"},
                  "trial 0 of 3: the reference X1 has no samples");
    expectRefused("montage", {"--bipolar", path("m.txt"), "--in-place"},
                  "m.txt: line 1, column 6: the reference X1 has no samples");
}

TEST_F(BadInput, ReferenceThatIsShorterIsTakenFromWhatItReaches)
{
    setSamples(1, 5, {7, 8, 9});
    sample.store();
    ASSERT_EQ(run("montage", {"--reference", "X1", "--channels", "E1", "--out", path("new.meg")}).exitCode, 0);
    const std::vector<double> shorter = samplesInFile(path("new.meg"), 1, 3);
    ASSERT_EQ(shorter.size(), 20U);
    EXPECT_THAT(std::vector<double>(shorter.begin(), shorter.begin() + 5),
                ElementsAre(1300 - 7, 1301 - 8, 1302 - 9, 1303, 1304));
    EXPECT_THAT(samplesInFile(path("new.meg"), 2, 3), Each(-200.0));
}

TEST_F(BadInput, IndividualReferencesOfAResampledTrialAreRefused)
{
    sample.folder().write("m.txt", "E1 = X1\n");
    ASSERT_EQ(run("resample", {"--factor", "4", "--in-place"}).exitCode, 0);
    expectRefused("montage", {"--bipolar", path("m.txt"), "--in-place"}, "trial 0 of 3: the trial is re-sampled");
}

TEST_F(BadInput, TargetOfAnIndividualReferenceTellsTheOrderOfItsRecordedSamples)
{
    CMDTrialzk& trial = *sample.dataset().getTrialzk(0);
    CMEGSensorzk& sensor = *trial.getChannel(1)->ensureMEGSensor();
    sensor.setGradOrderNo(3);
    MontageLine line;
    line.target.channel = "M1";
    line.terms = {{"M2", 1.0, 1, 6}};
    ASSERT_EQ(applyMontageLines(trial, {line}), 1);
    EXPECT_EQ(trial.getChannel(1)->getDataWave()[3], 103.0 - 203.0);
    EXPECT_EQ(sensor.getGradOrderNo(), 0);
}

// ---- a trial in the middle

class FailingTrial : public BadInput
{
protected:
    // Cuts the file of trial 1.
    void cutTrial1()
    {
        const std::vector<std::byte> bytes = sample.folder().read("runTrial1.trl");
        sample.folder().write("runTrial1.trl", std::span(bytes).first(bytes.size() / 2));
    }
};

TEST_F(FailingTrial, IsToldByEveryCommandAndNoNewDatasetStays)
{
    for (int i = 0; i < 3; ++i)
        sample.dataset().getTrialzk(i)->getChannel(5)->setChannelType(302);
    sample.store();
    sample.folder().write("m.txt", "E1 = X1\n");
    cutTrial1();
    const std::vector<std::vector<std::string>> commands = {{"gradient", "--order", "0"},
                                                            {"resample", "--factor", "2"},
                                                            {"montage", "--average"},
                                                            {"montage", "--reference", "E1"},
                                                            {"montage", "--bipolar", path("m.txt")},
                                                            {"restore"},
                                                            {"spectrum", "--freqs", "20:40:20", "--step", "4"}};
    for (const auto& command : commands) {
        std::vector<std::string> options(command.begin() + 1, command.end());
        options.insert(options.end(), {"--out", path("new.meg")});
        expectRefused(command[0].c_str(), options, "trial 1 of 3: ");
    }
    expectRefused("resample", {"--factor", "2", "--new", path("new.meg")}, "trial 1 of 3: ");
}

TEST_F(FailingTrial, ThatIsMissingIsToldAndNoNewDatasetStays)
{
    std::filesystem::remove(sample.trialFile(1));
    for (const char* target : {"--out", "--new"})
        expectRefused("resample", {"--factor", "2", target, path("new.meg")}, "the trial's file is missing");
    expectRefused("montage", {"--reference", "E1", "--out", path("new.meg")}, "the trial's file is missing");
}

TEST_F(FailingTrial, InPlaceLeavesAllFilesAsTheyWere)
{
    sample.dataset().getTrialzk(1)->getChannel(5)->_cleanTimeDataC(true);
    sample.store();
    const auto before = files();
    const auto result = run("montage", {"--reference", "X1", "--channels", "E1", "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("trial 1 of 3: the reference X1 has no samples"));
    EXPECT_EQ(files(), before); // trial 0, which was done, is as it was again
    EXPECT_EQ(samplesInFile(sample.path(), 0, 3)[4], 304.0);
}

} // namespace

} // namespace megset::cli::badInput_test
