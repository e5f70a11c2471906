// The example of docs/triggers.md is what the scans give.
#include "tests/events/stimulusDataset.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::triggersPage_test {
namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

using Cells = std::vector<std::string>;

std::string page()
{
    std::ifstream file(MEGSET_SOURCE_DIR "/docs/triggers.md");
    return {std::istreambuf_iterator<char>(file), {}};
}

Cells cellsOf(const std::string& line)
{
    Cells cells;
    std::istringstream text(line.substr(1));
    for (std::string cell; std::getline(text, cell, '|');) {
        const std::size_t begin = cell.find_first_not_of(' ');
        cells.push_back(begin == std::string::npos ? "" : cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin));
    }
    return cells;
}

// The rows of the table whose head begins with this cell, the head included and the rule under it left out.
std::vector<Cells> tableOf(const std::string& firstCell)
{
    std::istringstream lines(page());
    std::vector<Cells> rows;
    for (std::string line; std::getline(lines, line);) {
        const bool isRow = line.starts_with("|");
        if (rows.empty() ? line.starts_with("| " + firstCell + " |") : isRow)
            rows.push_back(cellsOf(line));
        else if (!rows.empty())
            break;
    }
    if (rows.size() > 1)
        rows.erase(rows.begin() + 1);
    return rows;
}

std::string numberBehind(const std::string& words)
{
    const std::string text = page();
    const std::size_t begin = text.find(words) + words.size();
    return text.substr(begin, text.find_first_not_of("0123456789.", begin) - begin);
}

std::string seconds(double value)
{
    return value == 0.0 ? "0" : CString::formatted("%.3f", value).toUtf8();
}

// As the table has it: begin in ms, begin and end sample, end in s, first and last value.
Cells cellsOf(const Occurrence& found)
{
    const auto& [begin, end, ms, s, first, last] = found;
    return {std::to_string(std::lround(ms)), std::to_string(begin), std::to_string(end), seconds(s),
            std::to_string(first),           std::to_string(last)};
}

using Scan = int (CMEGData6Classify::*)(CMarkerManagerzk&, CMDTrialzk*, TrigScanParam*);
const std::pair<const char*, Scan> rules[] = {{"plain", &CMEGData6Classify::getTrialTriggers},
                                              {"AbsDc", &CMEGData6Classify::getTrialTrigAbsDc}};

TEST(TriggersPage, ShowsTheTwoRulesAsTheScansHaveThem)
{
    const std::vector<Cells> line = tableOf("Sample");
    ASSERT_THAT(line, SizeIs(2));
    std::vector<double> samples(20);
    for (std::size_t i = 1; i < line[0].size(); ++i)
        samples.at(std::stoul(line[0][i])) = std::stod(line[1].at(i));
    std::vector<Cells> expected;
    for (const auto& [rule, scan] : rules) {
        StimulusTrial trial({samples});
        EXPECT_EQ(trial.data.m_recordInfo.m_dRecSampleRate, std::stod(numberBehind("\nAt ")));
        CMarkerManagerzk out;
        out.m_trigScanParam.m_dTrigThreshold = std::stod(numberBehind("with a threshold of "));
        (trial.data.*scan)(out, nullptr, nullptr);
        for (const Occurrence& found : occurrences(out)) {
            Cells cells = cellsOf(found);
            cells.insert(cells.begin(), expected.size() % 3 == 0 ? rule : "");
            expected.push_back(cells);
        }
    }
    std::vector<Cells> shown = tableOf("Rule");
    ASSERT_THAT(shown, SizeIs(7)) << "a head, and three occurrences of each rule";
    shown.erase(shown.begin());
    EXPECT_EQ(shown, expected);
}

TEST(TriggersPage, TellsTheBoundsOfAScan)
{
    EXPECT_THAT(page(),
                HasSubstr(CString::formatted("which is %.1f for scans", TrigScanParam().m_dTrigThreshold).toUtf8()));
    EXPECT_THAT(page(), HasSubstr("Too many triggers (more than 1000000), please check the trigger channels!"));
}

} // namespace
} // namespace megset::triggersPage_test
