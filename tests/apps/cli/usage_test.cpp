// What is said to calls that don't fit: the option as it was typed, what is wrong with it, and exit code 2.
#include "tests/apps/cli/SampleDataset.h"

#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::usage_test {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The first line that is said to a wrong call.
std::string wrongUsage(const std::vector<std::string>& words)
{
    const auto result = runMegset(words);
    EXPECT_EQ(result.exitCode, 2) << words.front();
    EXPECT_EQ(result.output, "");
    return result.errors.substr(0, result.errors.find('\n'));
}

TEST(Usage, NumbersThatDoNotFitAreToldAsTheyWereTyped)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> calls = {
        {{"measure", "x.meg", "--trial", "-1"}, "megset measure: --trial: -1 is below 0"},
        {{"measure", "x.meg", "--trial", "1.5"}, "megset measure: --trial: \"1.5\" is no whole number, or too large"},
        {{"measure", "x.meg", "--trial", ""}, "megset measure: --trial: \"\" is no whole number, or too large"},
        {{"export", "x.meg", "--npy", "x", "--trial", "99999999999999999999"},
         "megset export: --trial: \"99999999999999999999\" is no whole number, or too large"},
        {{"inspect", "x.meg", "--depth", "-2"}, "megset inspect: --depth: -2 is below 0"},
        {{"array", "x", "--remove", "-1"}, "megset array: --remove: -1 is below 0"},
        {{"resample", "x.meg", "--factor", "nan"},
         "megset resample: --factor: \"nan\" is no whole number, or too large"},
        {{"spectrum", "x.meg", "--freqs", "1:2:1", "--step", "0"}, "megset spectrum: --step: 0 is below 1"},
        {{"spectrum", "x.meg", "--freqs", "1:2:1", "--cycles", "nan"},
         "megset spectrum: --cycles: \"nan\" is no number"},
        {{"spectrum", "x.meg", "--freqs", "1:2:1", "--cycles", "2"},
         "megset spectrum: --cycles: 2 is not from 3 to 10"},
        {{"spectrum", "x.meg", "--scale", "inf"}, "megset spectrum: --scale: \"inf\" is no number"},
        {{"montage", "x.meg", "--reference", "A", "--divisor", "nan"},
         "megset montage: --divisor: \"nan\" is no number"},
        {{"montage", "x.meg", "--reference", "A", "--divisor", "0"}, "megset montage: --divisor: 0 is not above 0"},
        {{"phantom", "x.ds", "--seed", "-1"}, "megset phantom: --seed: -1 is below 0"},
        {{"phantom", "x.ds", "--seconds", "nan"}, "megset phantom: --seconds: \"nan\" is no number"},
        {{"phantom", "x.ds", "--rate", "99"}, "megset phantom: the sampling rate is from 100 to 100000 Hz"},
    };
    for (const auto& [words, told] : calls)
        EXPECT_EQ(wrongUsage(words), told);
}

TEST(Usage, OptionThatIsGivenTwiceIsTold)
{
    EXPECT_EQ(wrongUsage({"gradient", "x.meg", "--order", "3", "--order", "2"}),
              "megset gradient: --order is given 2 times, and may be once");
}

TEST(Usage, UnknownOptionIsToldWithTheNearestNames)
{
    EXPECT_THAT(wrongUsage({"measure", "x.meg", "--chanels", "A"}),
                StartsWith("megset measure: there is no option --chanels; the nearest names are --channels, "));
    EXPECT_THAT(wrongUsage({"info", "x.meg", "--jsn=x"}),
                StartsWith("megset info: there is no option --jsn=x; the nearest names are --json"));
    EXPECT_THAT(wrongUsage({"info", "\x1b[2J", "--\x1b"}), Not(HasSubstr("\x1b")));
}

TEST(Usage, WordTooManyIsToldWithTheWayToGiveSeveral)
{
    EXPECT_EQ(wrongUsage({"info", "x.meg", "y.meg"}), "megset info: y.meg was not expected");
    EXPECT_EQ(wrongUsage({"marks", "x.meg", "--add", "m", "--at", "3", "4"}),
              "megset marks: 4 was not expected; several values are given as --at A --at B");
    EXPECT_EQ(wrongUsage({"channels", "x.meg", "--bad", "A", "B", "--in-place"}),
              "megset channels: B was not expected; several values are given as --bad A,B");
}

TEST(Usage, DatasetMayStandBehindTheOptions)
{
    const SampleDataset sample;
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"channels", "--bad", "E1", sample.path(), "--in-place"},
                                               {"montage", "--reference", "X1", sample.path(), "--in-place"},
                                               {"marks", "--in-place", "--bad-segment", "3:4", sample.path()},
                                               {"measure", "--channels", "E1", sample.path()}}) {
        const auto result = runMegset(words);
        EXPECT_EQ(result.exitCode, 0) << words.front() << ": " << result.errors;
    }
}

TEST(Usage, BlanksAroundTheNamesOfAListDoNotCount)
{
    const SampleDataset sample;
    const auto result = runMegset({"measure", sample.path(), "--channels", "E1, S1 "});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("\nS1 "));
    EXPECT_EQ(runMegset({"measure", sample.path(), "--channels", ""}).errors,
              "megset: the name of a channel is empty\n");
}

TEST(Usage, ChannelCannotBeGoodAndBad)
{
    const SampleDataset sample;
    EXPECT_EQ(runMegset({"channels", sample.path(), "--good", "E1", "--bad", "S1,E1", "--in-place"}).errors,
              "megset: the channel E1 is in --good and in --bad\n");
    EXPECT_EQ(runMegset({"channels", sample.path(), "--show", "M1", "--hide", "M1-77", "--in-place"}).errors,
              "megset: the channel M1-77 is in --show and in --hide\n");
    EXPECT_THAT(runMegset({"channels", sample.path(), "--good", "E1", "--hide", "S1,E1", "--in-place"}).output,
                HasSubstr("2 channels switched"));
}

TEST(Usage, WeightsAndLimitsThatAreNoNumbersChangeNothing)
{
    const SampleDataset sample;
    for (const char* weight : {"X1=nan", "X1=inf"})
        EXPECT_THAT(
            runMegset({"montage", sample.path(), "--reference", weight, "--channels", "E1", "--in-place"}).errors,
            HasSubstr(std::string("the weight in \"") + weight + "\" is no number"));
    ASSERT_EQ(runMegset({"spectrum", sample.path(), "--freqs", "20:40:20", "--in-place"}).exitCode, 0);
    EXPECT_THAT(runMegset({"spectrum", sample.path(), "--cut", "5:1", "--in-place"}).errors,
                HasSubstr("the range \"5:1\" ends below its begin"));
}

TEST(Usage, FolderIsNoNameForADataset)
{
    const SampleDataset sample;
    const std::string folder = sample.folder().native().string();
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"restore", sample.path(), "--out", folder}, {"import", folder, folder}}) {
        const auto result = runMegset(words);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr(": is a folder; the dataset needs a name in it"));
    }
    EXPECT_THAT(sample.folder().names(), Not(testing::Contains(StartsWith("."))));
}

TEST(Usage, FileOfAnotherKindIsToldAsWhatItIs)
{
    const SampleDataset sample;
    const std::string trial = sample.trialFile(0).string();
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"info", trial}, {"measure", trial}, {"restore", trial, "--in-place"}, {"marks", trial}}) {
        const auto result = runMegset(words);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, "megset: " + trial + ": a dataset (.meg) is wanted; this is: trial file (.trl)\n");
    }
    EXPECT_THAT(runMegset({"check", trial}).output,
                StartsWith("wrong: " + trial + ": a dataset (.meg) is wanted; this is: trial file (.trl)\n"));
}

TEST(Usage, FileThatIsNoRecordingIsToldWithWhatIsOne)
{
    const TemporaryFolder folder;
    folder.write("x.fif", std::string_view("\0\0\0\x64\0\0\0\x1f", 8));
    const auto result = runMegset({"import", folder.native("x.fif").string(), folder.native("x.meg").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("x.fif: is neither the folder of a CTF recording (.ds) nor the dataset of an "
                                         "acquisition (.mega)\n"));
    folder.makeFolder("y.ds");
    folder.write("y.ds\\y.meg4", "MEG41CP");
    EXPECT_THAT(runMegset({"import", folder.native("y.ds/y.meg4").string(), folder.native("x.meg").string()}).errors,
                HasSubstr("y.meg4: is a file of a recording; name its folder y.ds\n"));
}

TEST(Usage, CurrentTrialThatEndsEarlyIsTheOneThatIsBlamed)
{
    const SampleDataset sample(1);
    std::filesystem::resize_file(sample.trialFile(0), 1000);
    EXPECT_THAT(runMegset({"restore", sample.path(), "--in-place"}).errors,
                HasSubstr("runTrial0.trl: the file ends before the trial does"));
}

TEST(Usage, TrialThatIsMissingIsNamedAsOnThisSystem)
{
    const SampleDataset sample(2);
    const std::string trial = sample.trialFile(1).string();
    std::filesystem::remove(trial);
    EXPECT_THAT(runMegset({"measure", sample.path(), "--trial", "1"}).errors,
                HasSubstr("megset: " + trial + ": the trial's file is missing"));
    EXPECT_THAT(runMegset({"check", sample.path()}).output, HasSubstr("wrong: " + trial + ": the trial's file"));
}

} // namespace

} // namespace megset::cli::usage_test
