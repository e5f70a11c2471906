#include "apps/phantom/phantom.h"
#include "tests/apps/phantom/smallPhantom.h"
#include "tests/kit/TemporaryFolder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::phantom::recording_test {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int smallChannels = 64;
constexpr int smallSamples = 300;

/// Big-endian numbers at their offsets.
struct Bytes
{
    std::vector<std::byte> bytes;

    std::uint64_t number(std::size_t at, int size) const
    {
        std::uint64_t value = 0;
        for (int i = 0; i < size; ++i)
            value = value << 8 | std::to_integer<std::uint64_t>(bytes.at(at + static_cast<std::size_t>(i)));
        return value;
    }
    int i16(std::size_t at) const { return static_cast<std::int16_t>(number(at, 2)); }
    std::int32_t i32(std::size_t at) const { return static_cast<std::int32_t>(number(at, 4)); }
    double f64(std::size_t at) const { return std::bit_cast<double>(number(at, 8)); }
    std::string text(std::size_t at, std::size_t size) const
    {
        std::string value;
        for (std::size_t i = 0; i < size && bytes.at(at + i) != std::byte{0}; ++i)
            value += static_cast<char>(bytes[at + i]);
        return value;
    }
};

class PhantomRecording : public testing::Test
{
protected:
    PhantomReport write(const PhantomOptions& options, const std::string& name = "a.ds")
    {
        return writePhantom(folder.native() / name, options);
    }
    Bytes file(const char* name) const { return {folder.read(name)}; }
    std::string textOf(const char* name) const
    {
        const std::vector<std::byte> bytes = folder.read(name);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    std::vector<std::string> namesIn(const std::string& name) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.native() / name))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// All files but the folder's name, which their names begin with.
    std::map<std::string, std::vector<std::byte>> contents(const std::string& name) const
    {
        std::map<std::string, std::vector<std::byte>> files;
        const std::string stem = name.substr(0, name.size() - 3);
        for (std::string file : namesIn(name)) {
            const auto bytes = folder.read(CString(name) + "\\" + CString(file));
            files[file.starts_with(stem + ".") ? file.substr(stem.size()) : file] = bytes;
        }
        return files;
    }
    /// Samples of the stimulus line, which is the first channel, of the only .meg4 file.
    std::vector<std::vector<int>> stimulusLine(const PhantomReport& report) const
    {
        const Bytes samples = file("a.ds\\a.meg4");
        std::vector<std::vector<int>> line;
        const std::size_t perTrial = report.channels * static_cast<std::size_t>(report.plan.samples);
        for (int trial = 0; trial < report.plan.trials; ++trial) {
            line.emplace_back();
            for (std::size_t i = 0; i < static_cast<std::size_t>(report.plan.samples); ++i)
                line.back().push_back(samples.i32(8 + 4 * (static_cast<std::size_t>(trial) * perTrial + i)));
        }
        return line;
    }

    TemporaryFolder folder;
};

/// The begins of pulses, and how long each is.
std::vector<std::pair<Stimulus, int>> pulsesOf(const std::vector<std::vector<int>>& line)
{
    std::vector<std::pair<Stimulus, int>> pulses;
    for (std::size_t trial = 0; trial < line.size(); ++trial)
        for (std::size_t i = 0; i < line[trial].size(); ++i) {
            const int code = line[trial][i];
            if (code == 0)
                continue;
            if (i == 0 || line[trial][i - 1] != code)
                pulses.push_back({{static_cast<int>(trial), static_cast<int>(i), code}, 0});
            ++pulses.back().second;
        }
    return pulses;
}

TEST_F(PhantomRecording, HasTheFilesOfACtfRecordingAndItsTruth)
{
    const PhantomReport report = write(small());
    EXPECT_THAT(namesIn("a.ds"), ElementsAre("BadChannels", "ClassFile.cls", "MarkerFile.mrk", "a.hc", "a.meg4",
                                             "a.res4", "bad.segments", "phantom_truth.json"));
    EXPECT_THAT(folder.names(), ElementsAre("a.ds"));
    EXPECT_EQ(report.channels, 64U);
    EXPECT_EQ(report.sampleFiles, 1);
    EXPECT_EQ(textOf("a.ds\\BadChannels"), "");
    EXPECT_EQ(textOf("a.ds\\bad.segments"), "");
}

TEST_F(PhantomRecording, HeadTellsShapeRateAndTrigger)
{
    write(small());
    const Bytes res4 = file("a.ds\\a.res4");
    EXPECT_EQ(res4.text(0, 8), "MEG42RS");
    EXPECT_EQ(res4.text(778, 255), "12:00");
    EXPECT_EQ(res4.text(1033, 255), "01-Jan-2000");
    EXPECT_EQ(res4.i32(1288), smallSamples);
    EXPECT_EQ(res4.i16(1292), smallChannels);
    EXPECT_EQ(res4.f64(1296), 600);
    EXPECT_EQ(res4.f64(1304), 1.5);
    EXPECT_EQ(res4.i16(1312), 3);
    EXPECT_EQ(res4.i32(1316), 120);
    EXPECT_EQ(res4.text(1712, 32), "phantom");
    const auto description = static_cast<std::size_t>(res4.i32(1836));
    EXPECT_EQ(res4.text(1844, description).size() + 1, description);
    EXPECT_EQ(res4.i16(1844 + description), 0); // filters
}

TEST_F(PhantomRecording, HeadHasNamesSensorsAndCoefficientsUpToItsEnd)
{
    write(small());
    const Bytes res4 = file("a.ds\\a.res4");
    const std::size_t names = 1844 + static_cast<std::size_t>(res4.i32(1836)) + 2;
    EXPECT_EQ(res4.text(names, 32), "UPPT001");
    EXPECT_EQ(res4.text(names + 32, 32), "BG1-0001");
    EXPECT_EQ(res4.text(names + 63 * 32, 32), "EEG032");

    const std::size_t sensors = names + smallChannels * 32;
    const auto sensor = [&](int index) { return sensors + static_cast<std::size_t>(index) * 1328; };
    const std::vector<int> firstOfKind = {0, 1, 10, 30, 32};
    const std::vector<int> types = {11, 0, 1, 5, 9};
    const std::vector<int> coils = {0, 1, 2, 2, 1};
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(res4.i16(sensor(firstOfKind[i])), types[i]);
        EXPECT_EQ(res4.i16(sensor(firstOfKind[i]) + 40), coils[i]);
        EXPECT_EQ(res4.i16(sensor(firstOfKind[i]) + 42), 0); // gradient order
        EXPECT_EQ(res4.f64(sensor(firstOfKind[i]) + 24), 1);
    }
    EXPECT_EQ(res4.f64(sensor(0) + 8), 1);
    EXPECT_EQ(res4.f64(sensor(0) + 16), 1);
    EXPECT_EQ(res4.f64(sensor(30) + 16), 1048576);

    // The outer coil is noted against the inner one, and a positive gain against the direction that it counts.
    const std::size_t first = sensor(30) + 48;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double outward = (res4.f64(first + 80 + axis * 8) - res4.f64(first + axis * 8)) / 5;
        const double counted = res4.f64(sensor(30) + 8) > 0 ? -outward : outward;
        EXPECT_NEAR(res4.f64(first + 32 + axis * 8), counted, 1e-12);
        EXPECT_NEAR(res4.f64(first + 80 + 32 + axis * 8), -counted, 1e-12);
    }

    const std::size_t records = sensor(smallChannels);
    EXPECT_EQ(res4.i16(records), 10);
    const std::size_t record = records + 2;
    EXPECT_EQ(res4.text(record, 32), res4.text(names + 30 * 32, 32));
    EXPECT_EQ(res4.i32(record + 32), 0x47314252); // G1BR
    EXPECT_EQ(res4.i16(record + 40), 3);
    EXPECT_EQ(res4.text(record + 42 + 31, 31), "BG2-0001");
    EXPECT_NE(res4.f64(record + 42 + 50 * 31), 0);
    EXPECT_EQ(res4.bytes.size(), record + 10 * 1992);
}

TEST_F(PhantomRecording, SamplesFollowATagTrialByTrial)
{
    write(small());
    const Bytes samples = file("a.ds\\a.meg4");
    EXPECT_EQ(samples.text(0, 8), "MEG41CP");
    EXPECT_EQ(samples.bytes.size(), 8U + 3 * smallChannels * smallSamples * 4);
}

TEST_F(PhantomRecording, TrialsBeyondTheLargestFileGoToContinuations)
{
    PhantomOptions options = small();
    options.trials = 5;
    write(options, "whole.ds");
    options.maxFileBytes = 8 + 2 * smallChannels * smallSamples * 4;
    EXPECT_EQ(write(options).sampleFiles, 3);
    std::vector<std::byte> joined = folder.read("whole.ds\\whole.meg4");
    joined.resize(8);
    for (const char* name : {"a.ds\\a.meg4", "a.ds\\a.1_meg4", "a.ds\\a.2_meg4"}) {
        EXPECT_EQ(file(name).text(0, 8), "MEG41CP");
        const std::vector<std::byte> part = folder.read(name);
        joined.insert(joined.end(), part.begin() + 8, part.end());
    }
    EXPECT_EQ(joined, folder.read("whole.ds\\whole.meg4"));
}

TEST_F(PhantomRecording, ATrialLargerThanAFileIsRefused)
{
    PhantomOptions options = small();
    options.maxFileBytes = 8 + smallChannels * smallSamples * 4 - 1;
    EXPECT_THROW(write(options), std::invalid_argument);
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(PhantomRecording, SameSeedGivesTheSameBytesWhateverTheFoldersName)
{
    write(small(), "one.ds");
    write(small(), "two.ds");
    EXPECT_EQ(contents("one.ds"), contents("two.ds"));
}

TEST_F(PhantomRecording, AnotherSeedGivesOtherSamplesOfTheSameSystem)
{
    PhantomOptions options = small();
    write(options, "one.ds");
    options.seed = 2;
    write(options, "two.ds");
    auto one = contents("one.ds");
    auto two = contents("two.ds");
    EXPECT_NE(one.at(".meg4"), two.at(".meg4"));
    EXPECT_EQ(one.at(".res4"), two.at(".res4"));
    EXPECT_EQ(one.at("MarkerFile.mrk"), two.at("MarkerFile.mrk"));
}

TEST_F(PhantomRecording, BytesAreTheSameOnEveryMachine)
{
    write(small());
    const auto sum = [&](const char* name) {
        std::uint64_t hash = 0xCBF29CE484222325U; // FNV-1a
        for (const std::byte byte : folder.read(name))
            hash = (hash ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3U;
        return hash;
    };
    EXPECT_EQ(sum("a.ds\\a.meg4"), 4610219010622649974U);
    EXPECT_EQ(sum("a.ds\\a.res4"), 13792200730544497653U);
    EXPECT_EQ(sum("a.ds\\a.hc"), 5490038680257066172U);
}

TEST_F(PhantomRecording, HeadCoilsAreTheSameTriangleInBothFrames)
{
    write(small());
    std::map<std::string, std::vector<double>> places;
    std::istringstream lines(textOf("a.ds\\a.hc"));
    std::string line;
    std::string title;
    while (std::getline(lines, line))
        if (line[0] == '\t')
            places[title].push_back(std::stod(line.substr(5)));
        else
            title = line;
    EXPECT_EQ(places.size(), 9U);
    const auto distance = [&](const std::string& frame, const std::string& one, const std::string& other) {
        double sum = 0;
        const std::string end = " coil position relative to " + frame + " (cm):";
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double way =
                places.at("measured " + one + end).at(axis) - places.at("measured " + other + end).at(axis);
            sum += way * way;
        }
        return std::sqrt(sum);
    };
    EXPECT_NEAR(distance("head", "left ear", "right ear"), 15, 1e-6);
    EXPECT_NEAR(distance("dewar", "left ear", "right ear"), 15, 1e-5);
    EXPECT_NEAR(distance("dewar", "nasion", "right ear"), distance("head", "nasion", "right ear"), 1e-5);
}

TEST_F(PhantomRecording, EveryCodeIsAPulseAtItsSample)
{
    PhantomOptions options = small();
    options.trials = 5;
    options.seconds = 1;
    options.stimulusIntervalSeconds = 0.0125; // 7.5, that is 8 samples
    options.pulseSamples = 4;
    options.codes.clear();
    for (int code = 1; code <= 255; ++code)
        options.codes.push_back(code);
    const PhantomReport report = write(options);
    ASSERT_GE(report.plan.stimuli.size(), 255U);
    const auto pulses = pulsesOf(stimulusLine(report));
    ASSERT_EQ(pulses.size(), report.plan.stimuli.size());
    for (std::size_t i = 0; i < pulses.size(); ++i) {
        EXPECT_EQ(pulses[i].first, report.plan.stimuli[i]);
        EXPECT_EQ(pulses[i].first.code, static_cast<int>(i % 255) + 1);
        EXPECT_EQ(pulses[i].second, 4);
    }
}

TEST_F(PhantomRecording, PulsesOfOneToFiftySamplesHaveTheirLength)
{
    for (int length = 1; length <= 50; ++length) {
        PhantomOptions options = small();
        options.trials = 2;
        options.pulseSamples = length;
        const PhantomReport report = write(options);
        const auto pulses = pulsesOf(stimulusLine(report));
        ASSERT_EQ(pulses.size(), 2U);
        EXPECT_EQ(pulses[0], (std::pair{Stimulus{0, 120, 1}, length}));
        EXPECT_EQ(pulses[1], (std::pair{Stimulus{1, 120, 1}, length}));
        std::filesystem::remove_all(folder.native("a.ds"));
    }
}

TEST_F(PhantomRecording, TruthListsTheStimuli)
{
    PhantomOptions options = small();
    options.codes = {7, 200};
    options.seed = 18446744073709551615U;
    const PhantomReport report = write(options);
    const json truth = json::parse(textOf("a.ds\\phantom_truth.json"));
    EXPECT_EQ(truth.at("seed"), 18446744073709551615U);
    EXPECT_EQ(truth.at("rate"), 600);
    EXPECT_EQ(truth.at("trials"), 3);
    EXPECT_EQ(truth.at("samplesPerTrial"), smallSamples);
    EXPECT_EQ(truth.at("preTriggerSamples"), 120);
    EXPECT_EQ(truth.at("stimulusChannel"), "UPPT001");
    EXPECT_EQ(truth.at("pulseSamples"), 10);
    EXPECT_EQ(truth.at("evokedDipole").at("positionM").size(), 3U);
    EXPECT_EQ(truth.at("stimuli"), json::parse(R"([{"trial": 0, "sample": 120, "code": 7},
        {"trial": 1, "sample": 120, "code": 200}, {"trial": 2, "sample": 120, "code": 7}])"));
}

TEST_F(PhantomRecording, MarkersHaveTheTimesFromTheTrigger)
{
    PhantomOptions options = small();
    options.trials = 1;
    options.codes = {7, 3};
    options.stimulusIntervalSeconds = 0.1;
    write(options);
    const std::string markers = textOf("a.ds\\MarkerFile.mrk");
    EXPECT_THAT(markers, HasSubstr("NUMBER OF MARKERS:\n2\n"));
    EXPECT_THAT(markers, HasSubstr("NAME:\nstimulus 3\n"));
    EXPECT_THAT(markers, HasSubstr("NAME:\nstimulus 7\n"));
    EXPECT_THAT(markers,
                HasSubstr("NUMBER OF SAMPLES:\n2\nLIST OF SAMPLES:\nTRIAL NUMBER\t\tTIME FROM SYNC POINT (in seconds)\n"
                          "                  +0\t\t\t\t     +0.000000000\n"
                          "                  +0\t\t\t\t     +0.200000000\n"));
}

TEST_F(PhantomRecording, AFolderThatExistsIsLeftAlone)
{
    std::filesystem::create_directory(folder.native("a.ds"));
    EXPECT_THROW(write(small()), std::runtime_error);
    EXPECT_THAT(namesIn("a.ds"), IsEmpty());
    EXPECT_THAT(folder.names(), ElementsAre("a.ds"));
    folder.write("b.ds", "a file");
    EXPECT_THROW(write(small(), "b.ds"), std::runtime_error);
    EXPECT_THAT(folder.names(), ElementsAre("a.ds", "b.ds"));
}

TEST_F(PhantomRecording, AnUnfinishedOneOfAnotherRunIsLeftAlone)
{
    folder.makeFolder("a.ds.part");
    EXPECT_THROW(write(small()), std::runtime_error);
    EXPECT_THAT(folder.names(), ElementsAre("a.ds.part"));
}

TEST_F(PhantomRecording, TheFoldersNameEndsWithDs)
{
    EXPECT_THROW(write(small(), "a"), std::invalid_argument);
    EXPECT_THROW(write(small(), "a.DS"), std::invalid_argument);
    EXPECT_THROW(write(small(), ".ds"), std::invalid_argument);
    EXPECT_THROW(write(small(), ""), std::invalid_argument);
    EXPECT_THAT(folder.names(), IsEmpty());
    write(small(), "with.dot and blank.ds/");
    EXPECT_THAT(folder.names(), ElementsAre("with.dot and blank.ds"));
    EXPECT_TRUE(folder.has("with.dot and blank.ds\\with.dot and blank.meg4"));
}

TEST_F(PhantomRecording, AFailureHalfwayLeavesNothing)
{
    // The hundredth continuation file has a name that is longer than the system takes.
    PhantomOptions options;
    options.trials = 102;
    options.rate = 100;
    options.seconds = 0.2;
    options.preTriggerSeconds = 0;
    options.pulseSamples = 1;
    options.channels = 1;
    options.maxFileBytes = 8 + 63 * 20 * 4;
    const std::string name(247, 'x');
    try {
        write(options, name + ".ds");
        FAIL();
    } catch (const std::runtime_error& fault) {
        EXPECT_THAT(fault.what(), HasSubstr(".100_meg4 can't be written"));
    }
    EXPECT_THAT(folder.names(), IsEmpty());
    options.trials = 100;
    EXPECT_EQ(write(options, name + ".ds").sampleFiles, 100);
}

TEST_F(PhantomRecording, AMissingFolderAboveIsNamed)
{
    try {
        write(small(), "none/a.ds");
        FAIL();
    } catch (const std::runtime_error& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("none/a.ds"));
    }
    EXPECT_THAT(folder.names(), IsEmpty());
}

} // namespace

} // namespace megset::phantom::recording_test
