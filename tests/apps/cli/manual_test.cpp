#include "tests/apps/cli/SampleDataset.h"

#include <cstdlib>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::manual_test {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(Manual, PageNamesEveryCommandWithItsOptions)
{
    const auto result = runMegset({"man"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith(".TH MEGSET 1 "));
    for (const char* command : {"inspect", "info", "check", "export", "gradient", "restore", "layout"})
        EXPECT_THAT(result.output, HasSubstr(std::string(".SS ") + command + "\n"));
    EXPECT_THAT(result.output, HasSubstr("\\fB\\-\\-order\\fR \\fIINT\\fR\n"));
    EXPECT_THAT(result.output, HasSubstr("\\fB\\-\\-npy\\fR")); // stands in a group of options
    EXPECT_THAT(result.output, HasSubstr("megset gradient run.meg \\-\\-order 3"));
}

TEST(Manual, EachCommandHasItsHelpOnce)
{
    std::istringstream page(runMegset({"man"}).output);
    int commands = 0;
    int helps = 0;
    for (std::string line; std::getline(page, line);) {
        commands += line.starts_with(".SS ") ? 1 : 0;
        helps += line.find("\\-\\-help\\fR") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(commands, 10);
    EXPECT_EQ(helps, commands + 1); // and the program's own
}

TEST(Manual, BashCompletesCommandsAndOptions)
{
    const TemporaryFolder folder;
    folder.write("completion", runMegset({"completion", "bash"}).output);
    const std::string script = "source " + folder.native("completion").string() +
                               "; COMP_WORDS=(megset gra); COMP_CWORD=1; _megset; echo \"${COMPREPLY[*]}\";"
                               " COMP_WORDS=(megset gradient --or); COMP_CWORD=2; _megset; echo \"${COMPREPLY[*]}\"";
    const auto result = kit::runProgram("/bin/bash", {"-c", script});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "gradient\n--order\n");
}

TEST(Manual, ZshScriptDescribesCommandsAndOptions)
{
    const auto result = runMegset({"completion", "zsh"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("#compdef megset\n"));
    EXPECT_THAT(result.output, HasSubstr("'check:Read a dataset and every trial"));
    EXPECT_THAT(result.output, HasSubstr("'--order[Gradient order, 0 (none) to 3]:INT:_files'"));
}

TEST(Manual, OtherShellIsWrongUsage)
{
    EXPECT_EQ(runMegset({"completion", "fish"}).exitCode, 2);
}

} // namespace

} // namespace megset::cli::manual_test
