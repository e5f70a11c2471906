#include "megset/numeric/processorPath.h"
#include "megset/platform/version.h"
#include "tests/kit/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::program_test {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

kit::ProgramResult megsetProgram(const std::vector<std::string>& arguments)
{
    return kit::runProgram(MEGSET_PROGRAM, arguments);
}

TEST(Program, VersionTellsVersionCompilerAndProcessorPathOnALineEach)
{
    const auto result = megsetProgram({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "megset " + std::string(version()) + "\ncompiler " + compiler() + "\nprocessor path " +
                                 std::string(numeric::processorPath()) + "\n");
    EXPECT_EQ(result.errors, "");
}

TEST(Program, HelpGoesToStandardOutput)
{
    const auto result = megsetProgram({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("Usage: megset"));
    EXPECT_THAT(result.output, HasSubstr("--version"));
    EXPECT_EQ(result.errors, "");
}

TEST(Program, NoArgumentsIsWrongUsageAndShowsTheHelp)
{
    const auto result = megsetProgram({});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("Usage: megset"));
}

TEST(Program, UnknownOptionIsWrongUsage)
{
    const auto result = megsetProgram({"--no-such-option"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("--no-such-option"));
}

TEST(Program, UnknownCommandIsWrongUsage)
{
    const auto result = megsetProgram({"no-such-command"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("no-such-command"));
}

TEST(Program, UnknownCommandIsToldWithTheNearestNames)
{
    const std::string errors = megsetProgram({"gradeint", "run.meg"}).errors;
    EXPECT_THAT(errors, StartsWith("megset: there is no command gradeint; the nearest names are gradient, "));
    EXPECT_THAT(errors, HasSubstr("\nmegset --help tells the options.\n"));
    EXPECT_THAT(megsetProgram({"\x1b[2J"}).errors, Not(HasSubstr("\x1b")));
}

TEST(Program, WrongUsageNamesTheCommandAndItsHelp)
{
    const auto result = megsetProgram({"info"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "megset info: DATASET is required\nmegset info --help tells the options.\n");
}

TEST(Program, FolderToInspectIsToldAsOne)
{
    const auto result = megsetProgram({"inspect", "/tmp"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "megset: /tmp: is a folder; its files can be looked at one by one\n");
}

TEST(Program, OutputThatCannotBeWrittenIsAFailure)
{
    const auto result = kit::runProgram("/bin/sh", {"-c", "exec \"$0\" --version >/dev/full", MEGSET_PROGRAM});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, StartsWith("megset: standard output"));
}

} // namespace

} // namespace megset::program_test
