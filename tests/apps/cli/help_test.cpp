#include "tests/apps/cli/SampleDataset.h"

#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::help_test {

namespace {

using testing::HasSubstr;

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
