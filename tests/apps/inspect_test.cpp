#include "apps/cli/inspect/inspect.h"
#include "apps/cli/inspect/recordKinds.h"
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "tests/kit/Program.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/memoryArchive.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <regex>
#include <sstream>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::inspect_test {

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr int channelSamples = 8;

// A trial of `channels` channels of eight samples each; the first has a text and a number that are hard to show.
std::vector<std::byte> trialBytes(int channels)
{
    CMDTrialzk trial;
    trial.m_strTrialName = "Trial 1";
    trial.m_nTrialReservedA = 7;
    if (channels > 0) {
        trial.allocateChannels(channels);
        std::vector<double> samples(static_cast<std::size_t>(channels * channelSamples));
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<double>(i) / 2;
        trial.setChnlWaveData(channels, channelSamples, samples.data());
        trial.m_ppChannel[0]->m_strChannelName = "A\"1\n\x1b[31m";
        trial.m_ppChannel[0]->m_dDataMin = std::numeric_limits<double>::quiet_NaN();
    }
    return storedBytes([&](CArchive& ar) { ASSERT_EQ(trial.serializezk(ar), 1); });
}

class Inspect : public testing::Test
{
protected:
    struct Inspected
    {
        TreeReport report;
        std::string tree;

        bool hasLine(const std::string& wanted) const
        {
            std::istringstream lines(tree);
            for (std::string line; std::getline(lines, line);)
                if (line == wanted)
                    return true;
            return false;
        }
    };

    Inspected inspect(std::span<const std::byte> bytes, const InspectOptions& options = {}) const
    {
        m_folder.write("file.trl", bytes);
        std::ostringstream out;
        TreeReport report = inspectFile(path(), options, out);
        return {std::move(report), out.str()};
    }
    json inspectAsJson(std::span<const std::byte> bytes, InspectOptions options = {}) const
    {
        options.json = true;
        return json::parse(inspect(bytes, options).tree);
    }
    std::string faultOf(std::span<const std::byte> bytes) const
    {
        try {
            inspect(bytes);
        } catch (const std::runtime_error& fault) {
            return fault.what();
        }
        return "";
    }
    std::filesystem::path path() const { return m_folder.native("file.trl"); }
    kit::ProgramResult run(const std::vector<std::string>& options = {}) const
    {
        std::vector<std::string> arguments{"inspect", path().string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return kit::runProgram(MEGSET_PROGRAM, arguments);
    }

    TemporaryFolder m_folder;
};

const json& entryNamed(const json& entries, const std::string& key, const std::string& name)
{
    const auto found =
        std::ranges::find_if(entries, [&](const json& entry) { return entry.contains(key) && entry.at(key) == name; });
    if (found == entries.end())
        throw std::runtime_error("no entry " + name);
    return *found;
}

TEST_F(Inspect, TrialIsShownLineByLineWithOffsets)
{
    const auto bytes = trialBytes(1);
    const Inspected shown = inspect(bytes);
    EXPECT_THAT(shown.report.faults, IsEmpty());
    EXPECT_THAT(shown.tree, StartsWith(path().string() + ": trial file (.trl), " + std::to_string(bytes.size()) +
                                       " bytes\n"
                                       "         0  [MEGTRIALZK]\n"
                                       "         0    text tag = \"MEGTRIALZK\"\n"
                                       "        24    int version = 20190730\n"
                                       "        28    [_01serializeTralBasic]\n"
                                       "        28      int64 m_nTrialReservedA = 7\n"
                                       "        36      int m_nGoodTrial = 1\n"
                                       "        40      int m_nMegPlaneDone = 0\n"));
    EXPECT_TRUE(shown.hasLine("        68      text m_strTrialName = \"Trial 1\"")) << shown.tree;
    EXPECT_THAT(shown.tree, EndsWith("  end\n"));
    EXPECT_EQ(shown.report.end, bytes.size());
    EXPECT_EQ(describeFaults(shown.report), "");
}

TEST_F(Inspect, TextIsQuotedAndItsControlCharactersAreShown)
{
    EXPECT_THAT(inspect(trialBytes(1)).tree, HasSubstr("text m_strChannelName = \"A\\\"1\\n\\x1b[31m\"\n"));
}

TEST_F(Inspect, LongTextIsCutInTheTreeAndWholeInJson)
{
    CMDTrialzk trial;
    trial.m_strTrialName = CString(std::string(5000, 'n'));
    const auto bytes = storedBytes([&](CArchive& ar) { trial.serializezk(ar); });
    EXPECT_THAT(inspect(bytes).tree, HasSubstr("m_strTrialName = \"" + std::string(60, 'n') + "\"...\n"));
    const json tree = inspectAsJson(bytes);
    const json& basics = entryNamed(tree["entries"][0]["entries"], "section", "_01serializeTralBasic");
    EXPECT_EQ(entryNamed(basics["entries"], "name", "m_strTrialName")["value"], std::string(5000, 'n'));
}

TEST_F(Inspect, BlockShowsItsSizeAndFirstElements)
{
    EXPECT_THAT(inspect(trialBytes(1)).tree,
                HasSubstr("block m_pDataWave = 64 bytes, 8 double: 0, 0.5, 1, 1.5, 2, 2.5, ...\n"));
}

TEST_F(Inspect, LongListShowsItsFirstEntriesAndCountsTheOthers)
{
    InspectOptions options;
    options.limits.list = 2;
    const Inspected shown = inspect(trialBytes(5), options);
    const std::regex channel("\\[MEGCHANNELZK\\]");
    const auto count = [&channel](const std::string& tree) {
        return std::distance(std::sregex_iterator(tree.begin(), tree.end(), channel), std::sregex_iterator());
    };
    EXPECT_EQ(count(shown.tree), 2);
    EXPECT_THAT(shown.tree, HasSubstr("    ... 6 more: present, MEGCHANNELZK\n"));
    EXPECT_THAT(shown.report.faults, IsEmpty());
    options.limits.list = 0;
    EXPECT_EQ(count(inspect(trialBytes(40), options).tree), 40);
}

TEST_F(Inspect, DepthLimitsTheLevelsBelowTheRecord)
{
    InspectOptions options;
    options.limits.depth = 0;
    const auto bytes = trialBytes(1);
    const std::string size = std::to_string(bytes.size());
    const Inspected shown = inspect(bytes, options);
    std::istringstream lines(shown.tree);
    std::vector<std::string> all;
    for (std::string line; std::getline(lines, line);)
        all.push_back(line);
    EXPECT_THAT(all, ElementsAre(EndsWith(size + " bytes"), "         0  [MEGTRIALZK]",
                                 AllOf(StartsWith("         0    ... "), HasSubstr(" more: tag, version, _01")),
                                 EndsWith(size + "  end")));
    options.limits.depth = 1;
    EXPECT_THAT(inspect(bytes, options).tree, HasSubstr("        28    [_01serializeTralBasic]\n"
                                                        "        28      ... 23 more: m_nTrialReservedA, "));
}

TEST_F(Inspect, JsonHasTheTreeWithAllOffsetsAsNumbers)
{
    const auto bytes = trialBytes(1);
    const json tree = inspectAsJson(bytes);
    EXPECT_EQ(tree["file"], path().string());
    EXPECT_EQ(tree["size"], bytes.size());
    EXPECT_EQ(tree["tag"], "MEGTRIALZK");
    EXPECT_EQ(tree["kind"], "trial file (.trl)");
    ASSERT_THAT(tree["entries"], SizeIs(1));
    const json& trial = tree["entries"][0];
    EXPECT_EQ(trial["section"], "MEGTRIALZK");
    EXPECT_EQ(trial["offset"], 0);
    EXPECT_EQ(trial["end"], bytes.size());
    EXPECT_EQ(trial["entries"][1], json({{"offset", 24}, {"type", "int"}, {"name", "version"}, {"value", 20190730}}));
    const json& channels = entryNamed(trial["entries"], "section", "_02serializeTralChnls");
    const json& channel = entryNamed(channels["entries"], "section", "MEGCHANNELZK");
    const json& info = entryNamed(channel["entries"], "section", "_01serializeChnlInfo");
    EXPECT_EQ(entryNamed(info["entries"], "name", "m_dDataMin")["value"], "nan");
    EXPECT_EQ(entryNamed(info["entries"], "name", "m_strChannelName")["value"], "A\"1\n\x1b[31m");
    const json& samples = entryNamed(channel["entries"], "section", "_03serializeTimeData");
    const json& block = entryNamed(samples["entries"], "elementType", "double");
    EXPECT_EQ(block["bytes"], 64);
    EXPECT_EQ(block["done"], 64);
    EXPECT_EQ(block["elements"], 8);
    EXPECT_EQ(block["first"], json({0.0, 0.5, 1.0, 1.5, 2.0, 2.5, 3.0, 3.5}));
    const json& result = tree["result"];
    EXPECT_EQ(result["complete"], true);
    EXPECT_EQ(result["end"], bytes.size());
    EXPECT_EQ(result["left"], 0);
    EXPECT_THAT(result["faults"], IsEmpty());
    EXPECT_THAT(result["messages"], IsEmpty());
    EXPECT_EQ(result["lastField"]["name"], "m_nTrialResampleStep");
}

TEST_F(Inspect, JsonCountsWhatItHides)
{
    InspectOptions options;
    options.limits.list = 1;
    const json tree = inspectAsJson(trialBytes(3), options);
    const json& channels = entryNamed(tree["entries"][0]["entries"], "section", "_02serializeTralChnls")["entries"];
    EXPECT_EQ(channels.back()["hidden"], 4);
    EXPECT_EQ(channels.back()["names"], json({"present", "MEGCHANNELZK"}));
}

TEST_F(Inspect, EveryPrefixOfATrialSaysWhereItStops)
{
    const auto bytes = trialBytes(1);
    forEachPrefix(bytes, [this](std::span<const std::byte> prefix) {
        const std::size_t size = prefix.size();
        if (size < 24) { // inside the tag
            ASSERT_THAT(faultOf(prefix), HasSubstr("Known tags:"));
            return;
        }
        const Inspected shown = inspect(prefix);
        ASSERT_THAT(shown.report.faults, Not(IsEmpty())) << size;
        ASSERT_TRUE(shown.report.lastField) << size;
        ASSERT_LE(shown.report.lastField->offset, size);
        ASSERT_LE(shown.report.end, size);
        ASSERT_EQ(shown.report.end + shown.report.left, size);
        ASSERT_THAT(shown.report.section, StartsWith("MEGTRIALZK")) << size;
        ASSERT_THAT(shown.tree, HasSubstr("  broken: ")) << size;
        if (size % 61 == 0) {
            ASSERT_EQ(inspectAsJson(prefix)["result"]["left"], shown.report.left) << size;
        }
    });
}

TEST_F(Inspect, CutFieldIsToldWithTheLastGoodOneAndItsSection)
{
    const auto bytes = trialBytes(1);
    const TreeReport report = inspect(std::span(bytes).first(42)).report;
    EXPECT_THAT(report.faults, ElementsAre("the file ends before the record does"));
    EXPECT_EQ(report.section, "MEGTRIALZK/_01serializeTralBasic");
    EXPECT_EQ(report.lastField->name, "m_nGoodTrial");
    EXPECT_EQ(report.lastField->offset, 36U);
    EXPECT_EQ(report.end, 40U);
    EXPECT_EQ(report.left, 2U);
    EXPECT_EQ(describeFaults(report), "the file ends before the record does\n"
                                      "  section: MEGTRIALZK/_01serializeTralBasic\n"
                                      "  last field read: int m_nGoodTrial at offset 36 in "
                                      "MEGTRIALZK/_01serializeTralBasic\n"
                                      "  stopped at offset 40, bytes left: 2");
}

TEST_F(Inspect, SectionTellsWhichChannelIsBroken)
{
    auto bytes = trialBytes(3);
    std::vector<std::size_t> tags;
    const auto tag = ByteBuilder().wide("MEGCHANNELZK").bytes();
    for (auto from = bytes.begin(); (from = std::search(from, bytes.end(), tag.begin(), tag.end())) != bytes.end();
         ++from)
        tags.push_back(static_cast<std::size_t>(from - bytes.begin()));
    ASSERT_THAT(tags, SizeIs(3));
    bytes[tags[2] + 4] = std::byte{'X'};
    const TreeReport report = inspect(bytes).report;
    EXPECT_THAT(report.faults, ElementsAre("the reader refused what it read"));
    EXPECT_EQ(report.section, "MEGTRIALZK/_02serializeTralChnls/MEGCHANNELZK[2]");
    EXPECT_EQ(report.lastField->offset, tags[2]);
    ASSERT_THAT(report.messages, Not(IsEmpty()));
    EXPECT_EQ(report.messages[0].text, "The opened file is not channel file or corrupted!");
    EXPECT_EQ(report.messages[0].offset, tags[2]);
    EXPECT_THAT(describeFaults(report), HasSubstr("\"The opened file is not channel file or corrupted!\""));
}

TEST_F(Inspect, BytesBehindTheRecordAreAFault)
{
    auto bytes = trialBytes(0);
    bytes.resize(bytes.size() + 5);
    const TreeReport report = inspect(bytes).report;
    EXPECT_THAT(report.faults, ElementsAre("5 bytes are left over behind the record"));
    EXPECT_EQ(report.left, 5U);
}

TEST_F(Inspect, BlockThatIsCutIsAFaultThoughTheReaderTakesIt)
{
    const auto bytes = storedBytes([](CArchive& ar) {
        CMDChannelzk channel;
        channel.setSizeData(8, new double[8]{});
        channel.serializezk(ar);
    });
    const json tree = inspectAsJson(bytes);
    const json& time = entryNamed(tree["entries"][0]["entries"], "section", "_03serializeTimeData");
    const auto offset = entryNamed(time["entries"], "elementType", "double")["offset"].get<std::size_t>();
    const Inspected shown = inspect(std::span(bytes).first(offset + 20));
    EXPECT_THAT(shown.tree, HasSubstr("= 20 of 64 bytes, 2 double: 0, 0\n"));
    ASSERT_THAT(shown.report.faults, SizeIs(2));
    EXPECT_THAT(shown.report.faults[1], HasSubstr("has 20 of its 64 bytes"));
}

TEST_F(Inspect, BitFlipsNeverCrash)
{
    const auto good = trialBytes(1);
    for (std::size_t i = 0; i < good.size(); ++i) {
        auto bytes = good;
        bytes[i] ^= std::byte{static_cast<unsigned char>(1U << (i % 8))};
        countTried(Tried::bitFlip);
        InspectOptions options;
        options.json = i % 61 == 0;
        try {
            const Inspected shown = inspect(bytes, options);
            ASSERT_TRUE(!options.json || json::accept(shown.tree)) << i;
        } catch (const std::runtime_error& fault) {
            ASSERT_THAT(fault.what(), HasSubstr("Known tags:")) << i;
            ASSERT_LT(i, 24U);
        }
    }
}

TEST_F(Inspect, CountThatTheFileCannotHoldEndsTheTree)
{
    auto bytes = ByteBuilder().wide("SRCCOHFACEZK").i32(20261121).i32(0x7FFFFFFF).bytes();
    bytes.resize(bytes.size() + 400, std::byte{1});
    const Inspected shown = inspect(bytes);
    EXPECT_THAT(shown.report.faults, Not(IsEmpty()));
    EXPECT_LT(shown.tree.size(), 100'000U);
}

TEST_F(Inspect, UnknownTagIsToldWithTheFirstBytesAndTheKnownTags)
{
    const std::string fault = faultOf(ByteBuilder().wide("MEGNOTHING").bytes());
    EXPECT_THAT(fault, HasSubstr(" begins with the unknown tag \"MEGNOTHING\".\n"
                                 "Its first bytes: ff fe ff 0a 4d 00 45 00 47 00 4e 00 4f 00 54 00  ....M.E.G.N.O.T.\n"
                                 "Known tags:\n  MEGDATASETZK "));
    EXPECT_THAT(fault, AllOf(HasSubstr("MEGCHANNELZK"), HasSubstr("SPCTMCHNLZK"), HasSubstr("trial file (.trl)")));
}

TEST_F(Inspect, FileWithoutTagIsToldByItsFirstBytes)
{
    const auto bytes = ByteBuilder().raw({0xFF, 0x00, 0x01, 0x41}).bytes();
    EXPECT_THAT(faultOf(bytes), HasSubstr(" begins with no tag.\nIts first bytes: ff 00 01 41  ...A\n"));
    EXPECT_THAT(faultOf({}), HasSubstr(" is empty\nKnown tags:"));
}

TEST_F(Inspect, TagOfAnyLengthIsNotLoaded)
{
    auto bytes = ByteBuilder().wideMarker().length(3000).bytes();
    bytes.resize(10'000, std::byte{'a'});
    EXPECT_THAT(faultOf(bytes), HasSubstr(" begins with no tag."));
}

TEST_F(Inspect, NarrowTagOfAnOldFileIsKnown)
{
    const auto bytes = ByteBuilder().narrow("MEGTRIALZK").i32(1).bytes();
    EXPECT_THAT(inspect(bytes).tree, HasSubstr("int version = 1\n"));
}

TEST_F(Inspect, UnknownVersionIsShownWithTheReadersMessage)
{
    const auto bytes = ByteBuilder().wide("MEGTRIALZK").i32(20190731).bytes();
    const Inspected shown = inspect(bytes);
    EXPECT_TRUE(shown.hasLine("        24    int version = 20190731")) << shown.tree;
    EXPECT_TRUE(shown.hasLine("        28  broken: the reader refused what it read")) << shown.tree;
    ASSERT_THAT(shown.report.messages, SizeIs(1));
    EXPECT_EQ(shown.report.messages[0].text, "Wrong MEG data file format!!?");
    EXPECT_EQ(shown.report.messages[0].section, "MEGTRIALZK");
    EXPECT_EQ(shown.report.messages[0].offset, 24U);
}

TEST_F(Inspect, EveryKindOfRecordIsReadByTheReaderOfItsTag)
{
    for (const RecordKind& kind : recordKinds()) {
        const auto bytes = ByteBuilder().wide(CString(kind.tag)).i32(1).bytes(); // a version that nobody has
        const Inspected shown = inspect(bytes);
        EXPECT_THAT(shown.tree, HasSubstr("[" + std::string(kind.tag) + "]\n")) << kind.tag;
        EXPECT_THAT(shown.tree, HasSubstr("    int version = 1\n")) << kind.tag;
        EXPECT_THAT(shown.report.faults, SizeIs(1)) << kind.tag;
        EXPECT_THAT(shown.report.messages, SizeIs(1)) << kind.tag;
    }
}

// The table must not fall behind the library: a record that is written there has a line here.
TEST_F(Inspect, EveryTagOfTheRecordsIsKnown)
{
    const std::regex call("serializeRecord\\(ar, \\*this, \"([A-Z0-9]+)\"");
    int found = 0;
    const std::filesystem::path records = std::filesystem::path(MEGSET_SOURCE_DIR) / "megset" / "records";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(records)) {
        if (entry.path().extension() != ".cpp")
            continue;
        std::ifstream file(entry.path());
        const std::string source(std::istreambuf_iterator<char>(file), {});
        for (std::sregex_iterator match(source.begin(), source.end(), call), end; match != end; ++match, ++found)
            EXPECT_NE(findRecordKind((*match)[1].str()), nullptr)
                << (*match)[1] << " has no line in apps/cli/inspect/recordKinds.cpp";
    }
    EXPECT_GT(found, 40);
}

TEST_F(Inspect, ProgramEndsWith0ForAGoodFileWith1ForABrokenOneAndWith2ForWrongUsage)
{
    const auto bytes = trialBytes(1);
    m_folder.write("file.trl", bytes);
    const auto good = run();
    EXPECT_EQ(good.exitCode, 0) << good.errors;
    EXPECT_THAT(good.output, HasSubstr("[MEGTRIALZK]\n"));
    EXPECT_EQ(good.errors, "");

    m_folder.write("file.trl", std::span(bytes).first(42));
    const auto broken = run();
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_THAT(broken.output, EndsWith("        40  broken: the file ends before the record does\n"));
    EXPECT_THAT(broken.errors, StartsWith("megset: " + path().string() + ": the file ends before the record does\n"));
    const auto brokenAsJson = run({"--json"});
    EXPECT_EQ(brokenAsJson.exitCode, 1);
    EXPECT_EQ(json::parse(brokenAsJson.output)["result"]["complete"], false);

    EXPECT_EQ(run({"--depth", "-1"}).exitCode, 2);
    EXPECT_EQ(run({"--max-list", "many"}).exitCode, 2);
    EXPECT_EQ(kit::runProgram(MEGSET_PROGRAM, {"inspect"}).exitCode, 2);
}

TEST_F(Inspect, ProgramTellsAFileThatIsNotThere)
{
    const auto result = run();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "megset: Can't find \"" + path().string() + "\".\n");
}

TEST_F(Inspect, DatasetIsShownWithoutItsTrialsBeingLookedFor)
{
    CMEGDatazk dataset;
    dataset.m_nTotalTrial = 1;
    dataset.m_ppTrial.allocate(1);
    dataset.m_aTrialFilePath.Add("C:\\gone.trl");
    const auto bytes = storedBytes([&](CArchive& ar) { ASSERT_EQ(dataset.serializezk(ar), 1); });
    const Inspected shown = inspect(bytes);
    EXPECT_THAT(shown.report.faults, IsEmpty());
    EXPECT_THAT(shown.tree, HasSubstr("dataset file (.meg)"));
    EXPECT_THAT(shown.tree, HasSubstr("[_00serializeMDTrialInfo]\n        32      int m_nTotalTrial = 1\n"));
    EXPECT_THAT(shown.tree, HasSubstr("gone.trl"));
    EXPECT_EQ(shown.report.end, bytes.size());
}

TEST_F(Inspect, HostOfTheProcessIsTheSameAfterwards)
{
    CUserHost& before = AfxGetHost();
    inspect(ByteBuilder().wide("MEGTRIALZK").i32(1).bytes());
    EXPECT_EQ(&AfxGetHost(), &before);
}

} // namespace

} // namespace megset::cli::inspect_test
