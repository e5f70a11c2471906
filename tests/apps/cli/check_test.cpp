#include "apps/cli/dataset/checkDataset.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/kit/tried.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli {

// GoogleTest finds it in the namespace of its argument only.
static void PrintTo(const Finding& finding, std::ostream* out)
{
    *out << (finding.isFault ? "fault in " : "note on ") << finding.file << ": " << finding.text;
}

} // namespace megset::cli

namespace megset::cli::check_test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

auto faultIn(const std::string& file, const std::string& text)
{
    return AllOf(Field(&Finding::isFault, true), Field(&Finding::file, EndsWith(file)),
                 Field(&Finding::text, HasSubstr(text)));
}

auto noteOn(const std::string& file, const std::string& text)
{
    return AllOf(Field(&Finding::isFault, false), Field(&Finding::file, EndsWith(file)),
                 Field(&Finding::text, HasSubstr(text)));
}

std::vector<Finding> findings(const SampleDataset& sample)
{
    return checkDataset(sample.path()).findings;
}

TEST(Check, DatasetInOrderHasNoFinding)
{
    const SampleDataset sample;
    const CheckReport report = checkDataset(sample.path());
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.trials, 3);
    EXPECT_EQ(report.trialsRead, 3);
}

TEST(Check, ProgramEndsWith0AndSaysThatNothingIsWrong)
{
    const SampleDataset sample;
    const auto result = runMegset({"check", sample.path()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, sample.path() + ": 3 of 3 trials read, nothing wrong\n");
    EXPECT_EQ(result.errors, "");
}

TEST(Check, ProgramEndsWith1AndTellsTheFile)
{
    const SampleDataset sample;
    std::filesystem::remove(sample.trialFile(1));
    const auto result = runMegset({"check", sample.path()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("wrong: "));
    EXPECT_THAT(result.output, HasSubstr("runTrial1.trl: the trial's file is neither beside the dataset nor"));
    EXPECT_THAT(result.output, HasSubstr("2 of 3 trials read, 1 fault\n"));
}

TEST(Check, JsonHasTheFindings)
{
    const SampleDataset sample;
    std::filesystem::remove(sample.trialFile(1));
    const auto result = runMegset({"check", sample.path(), "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json.at("dataset"), sample.path());
    EXPECT_EQ(json.at("trials"), 3);
    EXPECT_EQ(json.at("trials_read"), 2);
    EXPECT_EQ(json.at("faults"), 1);
    EXPECT_EQ(json.at("findings")[0].at("level"), "fault");
    EXPECT_THAT(json.at("findings")[0].at("file").get<std::string>(), EndsWith("runTrial1.trl"));
}

TEST(Check, NothingIsChanged)
{
    const SampleDataset sample;
    const auto dataset = sample.folder().read("run.meg");
    const auto trial = sample.folder().read("runTrial1.trl");
    checkDataset(sample.path());
    EXPECT_EQ(sample.folder().read("run.meg"), dataset);
    EXPECT_EQ(sample.folder().read("runTrial1.trl"), trial);
}

TEST(Check, CutTrialIsAFault)
{
    const SampleDataset sample;
    std::filesystem::resize_file(sample.trialFile(1), std::filesystem::file_size(sample.trialFile(1)) - 3);
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("runTrial1.trl", "the file ends before the trial does")));
}

TEST(Check, BytesBehindATrialAreAFault)
{
    const SampleDataset sample;
    std::ofstream(sample.trialFile(1), std::ios::app) << "abc";
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("runTrial1.trl", "3 bytes are left over")));
}

TEST(Check, FileThatIsNoTrialIsAFaultWithTheReadersWords)
{
    const SampleDataset sample;
    sample.folder().write("runTrial1.trl", "\x05stuff and more");
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("runTrial1.trl", "The opened file is not trial or corrupted!")));
}

TEST(Check, OtherCountsOfTrialsAndPathsAreAFault)
{
    SampleDataset sample;
    sample.dataset().getTrialzk(0);
    sample.dataset().m_aTrialFilePath.RemoveAt(1);
    sample.store();
    EXPECT_THAT(findings(sample), testing::Contains(faultIn("run.meg", "counts 3 trials and names 2 files")));
}

TEST(Check, TwoTrialsWithOneFileAreAFault)
{
    SampleDataset sample;
    sample.dataset().saveAllTrials();
    sample.dataset().m_aTrialFilePath.SetAt(1, sample.dataset().m_aTrialFilePath.GetAt(0));
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("run.meg", "trials 0 and 1 have the same file")));
}

TEST(Check, ChannelOfOtherLengthIsAFault)
{
    SampleDataset sample;
    sample.dataset().getTrialzk(1)->getChannel(2)->initData(7, true);
    sample.dataset().saveAllTrials();
    EXPECT_THAT(findings(sample),
                ElementsAre(faultIn("runTrial1.trl", "channel 2 (M2-77) has 7 samples, the trial has 20")));
}

TEST(Check, OtherSamplesThanTheRecordingAreANoteAloneAndAFaultWithOtherReSampling)
{
    SampleDataset sample;
    sample.dataset().getMEGRecordInfozk()->m_nRecTotalSample = 10;
    sample.dataset().getTrialzk(1)->m_nTrialResampleStep = 2;
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(noteOn("runTrial0.trl", "the trial has 20 samples, the recording has 10"),
                                              faultIn("runTrial1.trl", "and their re-sampling differs"),
                                              noteOn("runTrial2.trl", "the trial has 20 samples")));
}

TEST(Check, TrialWithOtherChannelsIsAFault)
{
    SampleDataset sample;
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(2);
    sample.dataset().addTrial(trial.release(), 0);
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("runTrial3.trl", "the trial has 2 channels")));
}

TEST(Check, TrialOfAnotherDatasetIsToldWithItsFile)
{
    const SampleDataset sample;
    SampleDataset other(1, 30);
    other.dataset().getTrialzk(0)->m_nTrialResampleStep = 2;
    other.store();
    std::filesystem::copy_file(other.trialFile(0), sample.trialFile(1),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_THAT(findings(sample),
                ElementsAre(faultIn("runTrial1.trl", "the trial has 30 samples, the recording has 20, "
                                                     "and their re-sampling differs")));
}

TEST(Check, TrialThatAnotherProgramHoldsIsRead)
{
    const SampleDataset sample;
    CFile other;
    ASSERT_TRUE(other.Open(fromNative(sample.trialFile(1)), CFile::modeReadWrite | CFile::shareExclusive));
    EXPECT_THAT(findings(sample), IsEmpty());
}

TEST(Check, TrialThatMayNotBeReadIsToldWithItsFile)
{
    const SampleDataset sample;
    std::filesystem::remove(sample.trialFile(1));
    std::filesystem::create_symlink(sample.trialFile(1), sample.trialFile(1)); // leads to itself
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("runTrial1.trl", "")));
}

TEST(Check, SwitchesForAnotherNumberOfChannelsAreANote)
{
    SampleDataset sample;
    CMEGDatazk& dataset = sample.dataset();
    dataset.checkInitChnlParam(dataset.getTrialzk(0));
    dataset.m_nChnlParamCount = 2;
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(noteOn("run.meg", "the channel switches are for 2 channels, the trials "
                                                                "have 6; they fall back to their defaults")));
}

TEST(Check, RateThatIsNoneIsAFault)
{
    SampleDataset sample;
    sample.dataset().getMEGRecordInfozk()->m_dRecSampleRate = 0.0;
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("run.meg", "the sampling rate is not above 0 Hz")));
}

TEST(Check, VirtualTrialsThatTheDatasetDoesNotCountAreANote)
{
    SampleDataset sample;
    sample.dataset().getTrialzk(1)->m_nVirtualTrial = 1;
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(noteOn("run.meg", "counts 0 virtual trials, the trials say 1")));
}

TEST(Check, MarkInATrialThatIsNotThereIsAFault)
{
    SampleDataset sample;
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "Trig5";
    MarkTrigClass point;
    point.m_nMarkPtTrial = 3;
    marker->addMarkPt(point);
    sample.dataset().m_mkTrig.addMarker(std::move(marker));
    sample.store();
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("run.meg", "the marker Trig5 occurs in trial 3")));
}

TEST(Check, MovedDatasetIsInOrderWithANoteForEachTrial)
{
    const SampleDataset sample;
    const TemporaryFolder other;
    for (const std::string& name : sample.folder().names())
        std::filesystem::rename(sample.folder().native(name), other.native(name));
    const CheckReport report = checkDataset(other.native("run.meg"));
    EXPECT_THAT(report.findings, ElementsAre(noteOn("runTrial0.trl", "opening the trial mends that"),
                                             noteOn("runTrial1.trl", "opening the trial mends that"),
                                             noteOn("runTrial2.trl", "opening the trial mends that")));
    EXPECT_EQ(report.faults(), 0);
}

TEST(Check, CutDatasetIsAFault)
{
    const SampleDataset sample;
    std::filesystem::resize_file(sample.path(), std::filesystem::file_size(sample.path()) - 1);
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("run.meg", "the file ends before the dataset does")));
}

TEST(Check, BytesBehindTheDatasetAreAFault)
{
    const SampleDataset sample;
    std::ofstream(sample.path(), std::ios::app) << 'x';
    EXPECT_THAT(findings(sample), ElementsAre(faultIn("run.meg", "1 byte left over behind the dataset")));
}

TEST(Check, EveryPrefixOfADatasetIsJudged)
{
    const SampleDataset sample(1);
    const auto size = std::filesystem::file_size(sample.path());
    for (std::uintmax_t cut = 1; cut < size; cut += 97) {
        countTried(Tried::prefix);
        std::filesystem::resize_file(sample.path(), size - cut);
        ASSERT_GT(checkDataset(sample.path()).faults(), 0) << size - cut << " bytes";
    }
}

} // namespace

} // namespace megset::cli::check_test
