#include "tests/apps/cli/SampleDataset.h"

#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::help_test {

namespace {

using testing::HasSubstr;
using testing::Not;

// All commands, as bash completes them behind the program's name.
std::vector<std::string> commands()
{
    const std::string script = runMegset({"completion", "bash"}).output;
    const std::size_t begin = script.find("compgen -W \"") + 12;
    std::istringstream words(script.substr(begin, script.find('"', begin) - begin));
    std::vector<std::string> names;
    for (std::string word; words >> word;)
        if (word.front() != '-')
            names.push_back(word);
    return names;
}

TEST(Help, EveryCommandTellsItsOptionsWithAnExample)
{
    ASSERT_GT(commands().size(), 10U);
    for (const std::string& command : commands()) {
        const auto help = runMegset({command, "--help"});
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_THAT(help.output, HasSubstr("Example:\n  megset ")) << command;
    }
}

TEST(Help, OfTheProgramHasItsCommandsUnderHeadings)
{
    const std::string help = runMegset({"--help"}).output;
    EXPECT_THAT(help, HasSubstr("Usage: megset [OPTIONS] [COMMAND]\n"));
    EXPECT_THAT(help, HasSubstr("\nTo get a dataset:\n  import  "));
    EXPECT_THAT(help, HasSubstr("\nTo find and mark events:\n  triggers  "));
    EXPECT_THAT(help, HasSubstr("\nmegset COMMAND --help tells the options of a command"));
    for (const std::string& command : commands())
        EXPECT_THAT(help, HasSubstr("\n  " + command + "  "));
}

TEST(Help, TellsTheValuesThatAnOptionTakes)
{
    const std::string help = runMegset({"measure", "--help"}).output;
    EXPECT_THAT(help, HasSubstr("\nArguments:\n  DATASET  "));
    EXPECT_THAT(help, HasSubstr("  --channels TEXT,...  "));
    EXPECT_THAT(help, HasSubstr("  --kind {meg,ref,eeg,trigger,other,all}\n"));
    EXPECT_THAT(help, HasSubstr(" All channels of a kind (default: meg)\n"));
    EXPECT_THAT(help, HasSubstr("  --trial INT  "));
    EXPECT_THAT(runMegset({"gradient", "--help"}).output, HasSubstr(" Gradient order, 0 (none) to 3 (required)\n"));
}

TEST(Help, TellsWhichOptionsBelongTogether)
{
    EXPECT_THAT(runMegset({"export", "--help"}).output, HasSubstr("\nOne of these:\n  --npy TEXT  "));
    EXPECT_THAT(runMegset({"channels", "--help"}).output, HasSubstr("\nAt least one of these:\n  --good TEXT,...  "));
    EXPECT_THAT(runMegset({"electrodes", "--help"}).output,
                HasSubstr("\nAt most one of these (without one, the list):\n  --save TEXT  "));
    EXPECT_THAT(runMegset({"blank", "--help"}).output, HasSubstr("\nWhere the result goes:\n  --out TEXT  "));
}

TEST(Help, HasNoWordsOfTheParser)
{
    for (const std::string& command : commands())
        for (const char* word : {"REQUIRED", "Excludes:", "Needs:", "Option Group", ":NONNEGATIVE", "SUBCOMMAND"})
            EXPECT_THAT(runMegset({command, "--help"}).output, Not(HasSubstr(word))) << command;
}

TEST(Help, EveryCommandIsInTheDocumentation)
{
    std::ostringstream page;
    page << std::ifstream(MEGSET_SOURCE_DIR "/docs/commands.md").rdbuf();
    for (const std::string& command : commands())
        EXPECT_THAT(page.str(), testing::AnyOf(HasSubstr("## " + command), HasSubstr(", " + command + "\n")))
            << command;
}

} // namespace

} // namespace megset::cli::help_test
