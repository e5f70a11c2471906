#include "apps/cli/import/importRecording.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/apps/cli/shortPhantom.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::import_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A phantom of 3 trials of a tenth of a second.
class Import : public testing::Test
{
protected:
    Import() { phantom::writePhantom(folder.native("rec.ds"), shortPhantom()); }

    std::string path(const char* name) const { return folder.native(name).string(); }
    kit::ProgramResult import(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"import", path("rec.ds"), path("run.meg")});
        return runMegset(options);
    }

    TemporaryFolder folder;
};

TEST_F(Import, MakesADatasetThatIsInOrder)
{
    const auto result = import();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("run.meg: 3 trials, "));
    EXPECT_THAT(result.output, HasSubstr(" 120 samples\n"));
    const auto check = runMegset({"check", path("run.meg")});
    EXPECT_EQ(check.output, path("run.meg") + ": 3 of 3 trials read, nothing wrong\n");
    EXPECT_THAT(folder.names(), ElementsAre("rec.ds", "run.meg", "run_ImportTrial0.trl", "run_ImportTrial1.trl",
                                            "run_ImportTrial2.trl"));
}

TEST_F(Import, SessionGetsTheNameOfTheDatasetOrTheOneThatIsGiven)
{
    import();
    EXPECT_EQ(nlohmann::json::parse(runMegset({"info", path("run.meg"), "--json"}).output).at("session"), "run");
    import({"--force", "--session", "Subject 7"});
    EXPECT_EQ(nlohmann::json::parse(runMegset({"info", path("run.meg"), "--json"}).output).at("session"), "Subject 7");
}

TEST_F(Import, ExistingDatasetStaysUnlessForced)
{
    folder.write("run.meg", "mine");
    const auto refused = import();
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.errors, HasSubstr("run.meg: exists already"));
    EXPECT_THAT(folder.names(), ElementsAre("rec.ds", "run.meg"));
    EXPECT_EQ(import({"--force"}).exitCode, 0);
    EXPECT_EQ(runMegset({"check", path("run.meg")}).exitCode, 0);
}

TEST_F(Import, ForcedImportReplacesNoFolder)
{
    std::filesystem::create_directory(folder.native("run_ImportTrial1.trl"));
    const auto result = import({"--force"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("run_ImportTrial1.trl: is a folder"));
    EXPECT_THAT(folder.names(), ElementsAre("rec.ds", "run_ImportTrial1.trl"));
}

TEST_F(Import, TrialFileOfSomebodyElseIsNotWrittenOver)
{
    folder.write("run_ImportTrial1.trl", "mine");
    const auto result = import();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("run_ImportTrial1.trl: exists already"));
}

TEST_F(Import, BrokenRecordingLeavesNothingBehind)
{
    std::filesystem::resize_file(folder.native("rec.ds") / "rec.res4", 2000);
    const auto result = import();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("rec.res4: "));
    EXPECT_THAT(folder.names(), ElementsAre("rec.ds"));
}

// A limit on the size of files stands for a full disk: the geometry of a trial still fits, its samples do not.
// Imports to new.meg, with room for what is there as run.meg but for one kilobyte.
kit::ProgramResult importOnFullDisk(const TemporaryFolder& folder, const std::string& option)
{
    const std::uintmax_t whole = std::filesystem::file_size(folder.native("run_ImportTrial0.trl"));
    const std::string limit = std::to_string(whole / 1024 - 1);
    return kit::runProgram("/bin/bash",
                           {"-c", "trap '' XFSZ; ulimit -f " + limit + "; exec \"$0\" import \"$1\" \"$2\" " + option,
                            MEGSET_PROGRAM, folder.native("rec.ds").string(), folder.native("new.meg").string()});
}

TEST_F(Import, FullDiskLeavesNothingBehindAndIsTold)
{
    ASSERT_EQ(import().exitCode, 0);
    const std::vector<std::string> names = folder.names();
    const auto result = importOnFullDisk(folder, "");
    EXPECT_EQ(result.exitCode, 1) << result.output;
    EXPECT_THAT(result.errors, HasSubstr("new_ImportTrial"));
    EXPECT_EQ(folder.names(), names);
}

TEST_F(Import, ForcedImportThatFailsLeavesTheFormerDataset)
{
    ASSERT_EQ(import().exitCode, 0);
    folder.write("new.meg", "mine");
    folder.write("new_ImportTrial1.trl", "mine, too");
    const auto dataset = folder.read("new.meg");
    const auto trial = folder.read("new_ImportTrial1.trl");
    const std::vector<std::string> names = folder.names();
    EXPECT_EQ(importOnFullDisk(folder, "--force").exitCode, 1);
    EXPECT_EQ(folder.names(), names);
    EXPECT_EQ(folder.read("new.meg"), dataset);
    EXPECT_EQ(folder.read("new_ImportTrial1.trl"), trial);
}

TEST_F(Import, CutSamplesGiveTheWholeTrialsAndASentence)
{
    const auto file = folder.native("rec.ds") / "rec.meg4";
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 100);
    const auto result = import();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("2 trials"));
    EXPECT_THAT(result.errors, HasSubstr("rec.meg4"));
    EXPECT_EQ(runMegset({"check", path("run.meg")}).exitCode, 0);
}

TEST_F(Import, FolderThatIsNoRecordingIsTold)
{
    folder.makeFolder("empty.ds");
    const auto result = runMegset({"import", path("empty.ds"), path("run.meg")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("empty.ds"));
    EXPECT_EQ(runMegset({"import", path("none.ds"), path("run.meg")}).exitCode, 1);
}

TEST_F(Import, TargetInAFolderThatIsNotThereIsTold)
{
    const auto result = runMegset({"import", path("rec.ds"), path("no") + "/run.meg"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no such folder"));
}

TEST(Demo, GoesThroughAllStepsAndMayBeRepeated)
{
    const TemporaryFolder folder;
    const std::string target = folder.native("demo").string();
    for (int i = 0; i < 2; ++i) {
        const auto result = runMegset({"demo", target});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        for (const char* step : {"1. megset phantom", "2. megset import", "3. megset info", "4. megset gradient",
                                 "5. megset layout", "6. megset export", "times less", "clean.npy"})
            EXPECT_THAT(result.output, HasSubstr(step));
    }
}

TEST(Demo, FolderOfSomebodyElseIsLeftAlone)
{
    const TemporaryFolder folder;
    folder.write("thesis.txt", "mine");
    const auto result = runMegset({"demo", folder.native().string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("thesis.txt"));
    EXPECT_THAT(folder.names(), ElementsAre("thesis.txt"));
}

TEST(Demo, RecordingsOfARealPhantomAreLeftAlone)
{
    for (const std::string own : {"phantom_2019.ds", "phantom.ds", "cleaned"}) {
        const TemporaryFolder folder;
        folder.makeFolder(own);
        folder.write(own + "\\a.res4", "mine");
        const auto result = runMegset({"demo", folder.native().string()});
        EXPECT_EQ(result.exitCode, 1) << own;
        EXPECT_THAT(result.errors, HasSubstr("holds other files"));
        EXPECT_TRUE(folder.has(own + "\\a.res4"));
    }
}

TEST(Demo, FolderThatCannotBeMadeOrFilledIsToldAndNoneStays)
{
    const TemporaryFolder folder;
    folder.write("file", "");
    EXPECT_THAT(runMegset({"demo", folder.native("file/demo").string()}).errors,
                HasSubstr("file/demo: can't be made: "));
    const auto full =
        kit::runProgram("/bin/bash", {"-c", std::string("trap '' XFSZ; ulimit -f 1; exec ") + MEGSET_PROGRAM +
                                                " demo " + folder.native("demo").string()});
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

} // namespace

} // namespace megset::cli::import_test
