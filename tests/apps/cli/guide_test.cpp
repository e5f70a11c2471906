// docs/guide.md, typed in from its first command to its last: each prints what the page shows below it.
#include "tests/apps/cli/SampleDataset.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::guide_test {

namespace {

using testing::Contains;
using testing::HasSubstr;

using Lines = std::vector<std::string>;

constexpr const char* prompt = "$ ";
constexpr const char* leftOut = "...";
constexpr const char* folderOfThePage = "/home/ada/session";

struct Step
{
    std::string command;
    Lines shown;
};

// The commands of the blocks marked "console", each with the lines below it.
std::vector<Step> stepsOfTheGuide()
{
    std::ifstream page(MEGSET_SOURCE_DIR "/docs/guide.md");
    std::vector<Step> steps;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```"))
            isInside = line == "```console";
        else if (isInside && line.starts_with(prompt))
            steps.push_back({line.substr(std::string(prompt).size()), {}});
        else if (isInside)
            steps.at(steps.size() - 1).shown.push_back(line);
    }
    return steps;
}

// What may differ from one machine to the next: the folder, and through its name's length the size of a dataset's file
// and the places of what stands in it.
std::string stable(std::string line, const std::string& folder)
{
    std::size_t at = 0;
    while ((at = line.find(folder, at)) != std::string::npos) {
        line.replace(at, folder.size(), folderOfThePage);
        at += std::string(folderOfThePage).size();
    }
    line = std::regex_replace(line, std::regex(R"([0-9.]+ (bytes|kB)\b)"), "SIZE");
    line =
        std::regex_replace(line, std::regex(R"(^ +[0-9]+(  +(\[|end|text |int |int64 |double |\.\.\.)))"), "OFFSET$1");
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

Lines linesOf(const std::string& text)
{
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Whether the lines are the pattern's, where a line of "..." stands for any number of them.
bool matches(const Lines& lines, std::size_t at, const Lines& pattern, std::size_t next)
{
    if (next == pattern.size())
        return at == lines.size();
    if (pattern[next] == leftOut) {
        for (std::size_t i = at; i <= lines.size(); ++i)
            if (matches(lines, i, pattern, next + 1))
                return true;
        return false;
    }
    return at < lines.size() && lines[at] == pattern[next] && matches(lines, at + 1, pattern, next + 1);
}

// As a shell of a person does it, with the program in its path; what comes on standard error is seen as well.
std::string type(const std::string& command, const std::filesystem::path& folder)
{
    const std::string programs = std::filesystem::path(MEGSET_PROGRAM).parent_path().string();
    return kit::runProgram("/bin/bash", {"-c", "cd '" + folder.string() + "' && {\n" + command + "\n} 2>&1"},
                           {"PATH=" + programs + ":/usr/bin:/bin", "LC_ALL=C"})
        .output;
}

std::string joined(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

TEST(Guide, EveryCommandPrintsWhatThePageShows)
{
    const TemporaryFolder folder;
    const std::filesystem::path home = std::filesystem::canonical(folder.native());
    for (const Step& step : stepsOfTheGuide()) {
        Lines printed;
        for (const std::string& line : linesOf(type(step.command, home)))
            printed.push_back(stable(line, home.string()));
        Lines shown;
        for (const std::string& line : step.shown)
            shown.push_back(stable(line, folderOfThePage));
        EXPECT_TRUE(matches(printed, 0, shown, 0)) << "$ " << step.command << "\nthe page shows\n"
                                                   << joined(shown) << "and it prints\n"
                                                   << joined(printed);
    }
}

TEST(Guide, GoesThroughTheCommandsOfASession)
{
    Lines commands;
    for (const Step& step : stepsOfTheGuide())
        commands.push_back(step.command);
    for (const char* command : {"phantom", "import", "info", "inspect", "gradient", "channels", "triggers", "marks",
                                "blank", "montage", "resample", "measure", "check", "export"})
        EXPECT_THAT(commands, Contains(HasSubstr(std::string("megset ") + command + ' ')));
}

} // namespace

} // namespace megset::cli::guide_test
