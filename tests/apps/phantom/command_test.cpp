#include "tests/kit/Program.h"
#include "tests/kit/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::phantom::command_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PhantomCommand : public testing::Test
{
protected:
    kit::ProgramResult run(const std::string& name, std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"phantom", (folder.native() / name).string()});
        return kit::runProgram(MEGSET_PROGRAM, options);
    }

    TemporaryFolder folder;
};

TEST_F(PhantomCommand, WritesTheRecordingAndTellsItsShape)
{
    const auto result =
        run("a.ds", {"--trials", "2", "--seconds", "0.5", "--rate", "600", "--channels", "3", "--seed", "5"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("a.ds: 2 trials, 65 channels, 300 samples at 600 Hz, 2 stimuli\n"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(folder.read("a.ds\\a.meg4").size(), 8U + 2 * 65 * 300 * 4);
}

TEST_F(PhantomCommand, SeedChoosesTheRecording)
{
    const std::vector<std::string> few = {"--trials", "1", "--channels", "1"};
    auto other = few;
    other.insert(other.end(), {"--seed", "2"});
    EXPECT_EQ(run("a.ds", few).exitCode, 0);
    EXPECT_EQ(run("b.ds", few).exitCode, 0);
    EXPECT_EQ(run("c.ds", other).exitCode, 0);
    EXPECT_EQ(folder.read("a.ds\\a.meg4"), folder.read("b.ds\\b.meg4"));
    EXPECT_NE(folder.read("a.ds\\a.meg4"), folder.read("c.ds\\c.meg4"));
}

TEST_F(PhantomCommand, AnOptionThatCanNotBeIsWrongUsage)
{
    const std::vector<std::pair<std::string, std::string>> wrong = {
        {"--trials", "0"}, {"--seconds", "nan"}, {"--rate", "10"}, {"--channels", "276"}, {"--seed", "-1"}};
    for (const auto& [option, value] : wrong) {
        const auto result = run("a.ds", {option, value});
        EXPECT_EQ(result.exitCode, 2) << option;
        EXPECT_EQ(result.output, "");
        EXPECT_NE(result.errors, "");
    }
    EXPECT_EQ(run("a").exitCode, 2);
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(PhantomCommand, AFolderThatExistsIsAFailure)
{
    folder.makeFolder("a.ds");
    const auto result = run("a.ds");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("a.ds exists already"));
    EXPECT_THAT(folder.names(), ElementsAre("a.ds"));
}

} // namespace

} // namespace megset::phantom::command_test
