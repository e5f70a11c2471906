#include "apps/cli/events/scanTriggers.h"
#include "apps/cli/import/importRecording.h"
#include "apps/phantom/phantom.h"
#include "tests/apps/cli/SampleDataset.h"

#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::triggers_test {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::SizeIs;

// Puts pulses on the trigger channel of the sample dataset, and 0 between them.
struct Pulse
{
    int trial;
    int sample;
    int length;
    double code;
};

class TriggerCommand : public testing::Test
{
protected:
    void put(const std::vector<Pulse>& pulses)
    {
        for (int t = 0; t < 3; ++t) {
            std::vector<double> line(20, 0.0);
            for (const Pulse& pulse : pulses)
                for (int i = 0; pulse.trial == t && i < pulse.length; ++i)
                    line[static_cast<std::size_t>(pulse.sample + i)] = pulse.code;
            sample.dataset().getTrialzk(t)->getChannel(4)->addData(20, line.data());
        }
        sample.store();
    }
    json scan(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"triggers", sample.path(), "--in-place", "--json"});
        const auto result = runMegset(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return json::parse(result.output).at("triggers");
    }

    SampleDataset sample;
};

TEST_F(TriggerCommand, PulsesAreFoundAtTheirFirstSampleInTheirTrial)
{
    put({{0, 7, 3, 5}, {1, 2, 1, 9}, {1, 12, 2, 9}, {2, 4, 4, 5}});
    const json found = scan();
    ASSERT_THAT(found, SizeIs(4));
    EXPECT_EQ(found[0], json({{"trial", 0},
                              {"channel", 4},
                              {"name", "Trig5"},
                              {"code", 5},
                              {"sample", 7},
                              {"length", 3},
                              {"ms", 10.0}}));
    EXPECT_EQ(found[1].at("sample"), 2);
    EXPECT_EQ(found[2].at("sample"), 12);
    EXPECT_EQ(found[3].at("name"), "Trig5");
    EXPECT_EQ(found[3].at("trial"), 2);
}

TEST_F(TriggerCommand, MarkersAreKeptInTheDatasetAndReplacedByTheNextScan)
{
    put({{0, 7, 3, 5}, {1, 2, 1, 9}, {2, 4, 4, 5}});
    const auto marks = [&] { return json::parse(runMegset({"info", sample.path(), "--json"}).output).at("marks"); };
    const json once = json::array({{{"list", "trigger"}, {"name", "Trig5"}, {"value", 5}, {"count", 2}},
                                   {{"list", "trigger"}, {"name", "Trig9"}, {"value", 9}, {"count", 1}}});
    scan();
    EXPECT_EQ(marks(), once);
    scan();
    EXPECT_EQ(marks(), once);
    scan({"--keep"});
    EXPECT_EQ(marks()[0].at("count"), 4);
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(TriggerCommand, TriggerChannelsStayAsTheyAre)
{
    put({{1, 2, 1, 9}});
    for (const char* mode : {"pro", "absdc", "absdcm", "plain"})
        EXPECT_THAT(scan({"--mode", mode}), SizeIs(1)) << mode;
    ReadingNotes notes;
    const auto open = openDatasetToLook(sample.path(), notes);
    const auto trial = readTrial(*open, 1);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(trial->getChannel(4)->getDataWave()[i], i == 2 ? 9.0 : 0.0);
}

TEST_F(TriggerCommand, TextTableAndSummaryAreWritten)
{
    put({{0, 7, 3, 5}, {1, 2, 1, 9}});
    const std::string tsv = sample.folder().native("events.tsv").string();
    const auto result = runMegset({"triggers", sample.path(), "--in-place", "--prefix", "S", "--tsv", tsv});
    EXPECT_THAT(result.output, HasSubstr("    0     5         7           10  S5\n"));
    EXPECT_THAT(result.output, HasSubstr("2 triggers in 2 trials\n"));
    std::ostringstream table;
    table << std::ifstream(tsv).rdbuf();
    EXPECT_EQ(table.str(), "onset\tduration\ttrial_type\tvalue\tsample\n"
                           "0.035\t0.015\tS5\t5\t7\n"
                           "0.11\t0.005\tS9\t9\t22\n");
}

TEST_F(TriggerCommand, ThresholdLeavesSmallPulsesOut)
{
    put({{0, 7, 3, 5}, {1, 2, 1, 9}});
    EXPECT_THAT(scan({"--threshold", "6"}), SizeIs(1));
    EXPECT_THAT(scan({"--threshold", "100"}), SizeIs(0));
}

TEST_F(TriggerCommand, RestingLineHasNone)
{
    put({});
    EXPECT_THAT(scan(), SizeIs(0));
}

TEST_F(TriggerCommand, DatasetWithoutTriggerChannelIsTold)
{
    for (int t = 0; t < 3; ++t)
        sample.dataset().getTrialzk(t)->getChannel(4)->setChannelType(700);
    sample.store();
    const auto result = runMegset({"triggers", sample.path(), "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("the dataset has no trigger channel"));
}

// Codes and lengths of the phantom, of which the truth is known.
class PhantomTriggers : public testing::TestWithParam<std::pair<int, const char*>>
{
};

TEST_P(PhantomTriggers, EveryStimulusIsFoundAtItsSampleAndNoneIsAdded)
{
    const auto& [pulse, mode] = GetParam();
    const TemporaryFolder folder;
    phantom::PhantomOptions options;
    options.channels = 1;
    options.trials = 255;
    options.seconds = 0.2;
    options.preTriggerSeconds = 0.05;
    options.pulseSamples = pulse;
    options.codes.clear();
    for (int code = 1; code <= 255; ++code)
        options.codes.push_back(code);
    const auto plan = phantom::writePhantom(folder.native("p.ds"), options).plan;
    importRecording({folder.native("p.ds").string(), folder.native("p.meg").string(), "", false});
    const auto result =
        runMegset({"triggers", folder.native("p.meg").string(), "--in-place", "--mode", mode, "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const json found = json::parse(result.output).at("triggers");
    ASSERT_EQ(found.size(), plan.stimuli.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].at("trial"), plan.stimuli[i].trial);
        EXPECT_EQ(found[i].at("sample"), plan.stimuli[i].sample);
        EXPECT_EQ(found[i].at("code"), plan.stimuli[i].code);
    }
}

INSTANTIATE_TEST_SUITE_P(PulsesAndModes, PhantomTriggers,
                         testing::Values(std::pair(1, "plain"), std::pair(1, "absdc"), std::pair(2, "plain"),
                                         std::pair(10, "plain"), std::pair(50, "plain")));

} // namespace

} // namespace megset::cli::triggers_test
