#include "apps/cli/events/scanTriggers.h"
#include "apps/cli/import/importRecording.h"
#include "apps/phantom/phantom.h"
#include "tests/apps/cli/SampleDataset.h"

#include <chrono>
#include <cmath>
#include <fstream>
#include <numeric>
#include <set>
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
    const auto trial = trialInFile(sample.path(), 1);
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

// ---- channels that hold no stimuli

class NoStimuli : public TriggerCommand
{
protected:
    // Makes the line of trial 1, the others rest.
    void putLine(const std::vector<double>& line)
    {
        put({});
        sample.dataset().getTrialzk(1)->getChannel(4)->addData(std::ssize(line), line.data());
        sample.store();
    }
    kit::ProgramResult run(std::vector<std::string> options)
    {
        options.insert(options.begin(), {"triggers", sample.path(), "--in-place"});
        return runMegset(options);
    }
};

TEST_F(NoStimuli, ThresholdAboveTheDataIsTold)
{
    put({{0, 7, 3, 5}});
    for (const char* mode : {"plain", "pro", "absdc", "absdcm"}) {
        const auto result = run({"--mode", mode, "--threshold", "100"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, HasSubstr("\n0 triggers in 0 trials\n"));
        EXPECT_THAT(result.errors, HasSubstr("nothing on the trigger channels is above the threshold of 100\n"));
    }
}

TEST_F(NoStimuli, RestingLineIsTold)
{
    put({});
    EXPECT_THAT(run({}).errors, HasSubstr("nothing on the trigger channels is above the threshold\n"));
}

TEST_F(NoStimuli, ThresholdThatIsNoLevelIsWrongUsage)
{
    put({});
    for (const char* threshold : {"nan", "inf", "-INF", "x"})
        EXPECT_EQ(run({"--threshold", threshold}).exitCode, 2) << threshold;
}

TEST_F(NoStimuli, SamplesThatAreNoNumbersAreTold)
{
    std::vector<double> line(20, 0.0);
    line[7] = 5.0;
    line[12] = std::nan("");
    putLine(line);
    for (const char* mode : {"plain", "pro", "absdcm"}) { // their mean is no number
        const auto result = run({"--mode", mode});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, HasSubstr("\n0 triggers in 0 trials\n"));
        EXPECT_THAT(result.errors, HasSubstr("channel S1 has samples that are no numbers, in trial 1\n"));
    }
    const auto found = run({"--mode", "absdc"});
    EXPECT_THAT(found.output, HasSubstr("\n1 trigger in 1 trial\n"));
    EXPECT_THAT(found.errors, HasSubstr("samples that are no numbers"));
}

TEST_F(NoStimuli, MarkerWithoutPointsIsFilledByTheNextScan)
{
    put({{0, 7, 3, 5}});
    CMarkerManagerzk& manager = *sample.dataset().getTrigManager();
    manager.addTrigger(5, 0, 0, 20);
    manager.getMarker(0, false)->m_nMarkChannel = 4;
    sample.store();
    EXPECT_THAT(scan({"--keep"}), SizeIs(1));
    const json marks = json::parse(runMegset({"info", sample.path(), "--json"}).output).at("marks");
    EXPECT_EQ(marks, json::array({{{"list", "trigger"}, {"name", "Trig5"}, {"value", 5}, {"count", 1}}}));
}

// ---- never a scan that eats memory or time

// One trial with this trigger line.
std::unique_ptr<SampleDataset> longLine(int trials, const std::vector<double>& line)
{
    auto sample = std::make_unique<SampleDataset>(trials, std::ssize(line));
    for (int t = 0; t < trials; ++t)
        sample->dataset().getTrialzk(t)->getChannel(4)->addData(std::ssize(line), line.data());
    sample->store();
    return sample;
}

TEST(NoStimulusChannel, OfAsManyCodesAsSamplesIsScannedInNoTime)
{
    std::vector<double> line(150'000);
    std::iota(line.begin(), line.end(), 0.0);
    const auto sample = longLine(1, line);
    const auto begin = std::chrono::steady_clock::now();
    const auto result = runMegset({"triggers", sample->path(), "--in-place", "--mode", "absdc"});
    EXPECT_THAT(result.output, HasSubstr("\n149999 triggers in 1 trial\n")) << result.errors;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60))
        << "a search of all markers for each trigger takes minutes";
}

TEST(NoStimulusChannel, OfTooManyCodesIsRefusedAndTheDatasetStays)
{
    std::vector<double> line(250'000);
    std::iota(line.begin(), line.end(), 0.0);
    const auto sample = longLine(1, line);
    const auto bytes = sample->folder().read("run.meg");
    const auto result = runMegset({"triggers", sample->path(), "--in-place", "--mode", "absdc"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("Too many triggers (more than 200000), please check the trigger channels!\n"));
    EXPECT_EQ(sample->folder().read("run.meg"), bytes);
}

TEST(NoStimulusChannel, OfTooManyTriggersInAllTrialsIsRefused)
{
    std::vector<double> line(180'000, 3.0);
    line[0] = 0.0;
    const auto sample = longLine(6, line);
    const auto result = runMegset({"triggers", sample->path(), "--in-place", "--mode", "absdc"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("trial 5 of 6: Too many triggers (more than 1000000), please check the"));
}

// ---- the phantom, of which the truth is known

// Writes and imports it: the dataset's path.
std::string importPhantom(const TemporaryFolder& folder, const phantom::PhantomOptions& options)
{
    phantom::writePhantom(folder.native("p.ds"), options);
    importRecording({folder.native("p.ds").string(), folder.native("p.meg").string(), "", false});
    return folder.native("p.meg").string();
}

json truthOf(const TemporaryFolder& folder)
{
    return json::parse(std::ifstream(folder.native("p.ds") / "phantom_truth.json")).at("stimuli");
}

// Six stimuli for each length, so that all codes come.
TEST(PhantomPulses, OfOneToFiftySamplesAreFoundAtTheirSample)
{
    std::set<int> codes;
    for (int pulse = 1; pulse <= 50; ++pulse) {
        const TemporaryFolder folder;
        phantom::PhantomOptions options;
        options.channels = 1;
        options.trials = 6;
        options.seconds = 0.2;
        options.preTriggerSeconds = 0.05;
        options.pulseSamples = pulse;
        options.codes.clear();
        for (int i = 0; i < options.trials; ++i)
            options.codes.push_back(((pulse - 1) * options.trials + i) % 255 + 1);
        codes.insert(options.codes.begin(), options.codes.end());
        const auto result = runMegset({"triggers", importPhantom(folder, options), "--in-place", "--json"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        const json found = json::parse(result.output).at("triggers");
        const json truth = truthOf(folder);
        ASSERT_EQ(found.size(), truth.size()) << pulse;
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (const char* key : {"trial", "sample", "code"})
                EXPECT_EQ(found[i].at(key), truth[i].at(key)) << "pulse of " << pulse << ", stimulus " << i;
            EXPECT_EQ(found[i].at("length"), pulse);
        }
    }
    EXPECT_THAT(codes, SizeIs(255));
}

TEST(PhantomReport, SaysTheTruthThatThePhantomWrote)
{
    const TemporaryFolder folder;
    phantom::PhantomOptions options;
    options.channels = 1;
    options.trials = 5;
    options.codes = {3, 200, 7};
    const std::string path = importPhantom(folder, options);
    ASSERT_EQ(runMegset({"triggers", path, "--in-place"}).exitCode, 0);
    CString expected;
    for (const json& stimulus : truthOf(folder)) {
        const int code = stimulus.at("code");
        const int sample = stimulus.at("sample");
        expected.AppendFormat("Trial %d: 1 triggers\n  Trig%d: value %d, channel 0, %.3f ms, sample %d\n",
                              stimulus.at("trial").get<int>(), code, code, sample / options.rate * 1000.0, sample);
    }
    ReadingNotes notes;
    const auto open = openDatasetToLook(path, notes);
    const ScriptedHost host;
    EXPECT_EQ(open->dataset.getTrialTrigInfoPro(), expected);
    ASSERT_THAT(host.reports(), SizeIs(1));
    EXPECT_EQ(host.reports()[0].text, expected);
}

// Codes and lengths of the phantom.
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
