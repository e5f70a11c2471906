#include "apps/cli/dataset/DatasetInfo.h"
#include "apps/cli/dataset/TrialSummary.h"
#include "megset/platform/sanitizers.h"
#include "tests/apps/cli/SampleDataset.h"

#include <sys/resource.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::info_test {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::SizeIs;

json infoOf(const SampleDataset& sample)
{
    const auto result = runMegset({"info", sample.path(), "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return json::parse(result.output);
}

TEST(Info, JsonTellsTheSession)
{
    const SampleDataset sample;
    const json info = infoOf(sample);
    EXPECT_EQ(info.at("file"), sample.path());
    EXPECT_EQ(info.at("session"), "run");
    EXPECT_EQ(info.at("current_trial"), 2);
    EXPECT_EQ(info.at("rate_hz"), 200.0);
    EXPECT_EQ(info.at("samples"), 20);
    EXPECT_EQ(info.at("pre_trigger_samples"), 5);
    EXPECT_EQ(info.at("resampling_factor"), 1);
    EXPECT_EQ(info.at("recorded"), json({{"rate_hz", 200.0}, {"samples", 20}, {"pre_trigger_samples", 5}}));
    EXPECT_EQ(info.at("averages"), 0);
    EXPECT_EQ(info.at("filter_hz"), json({0.0, 100.0}));
    EXPECT_EQ(info.at("bytes").at("dataset"), std::filesystem::file_size(sample.path()));
}

TEST(Info, JsonTellsEveryTrial)
{
    SampleDataset sample;
    sample.dataset().getTrialzk(1)->m_nGoodTrial = 0;
    sample.dataset().getTrialzk(2)->m_nVirtualTrial = 1;
    sample.store();
    const json trials = infoOf(sample).at("trials");
    ASSERT_THAT(trials, SizeIs(3));
    EXPECT_EQ(trials[1], json({{"index", 1},
                               {"name", "ImportTrial1"},
                               {"file", sample.trialFile(1).string()},
                               {"found", true},
                               {"virtual", false},
                               {"good", false},
                               {"channels", 6},
                               {"samples", 20},
                               {"bytes", std::filesystem::file_size(sample.trialFile(1))}}));
    EXPECT_EQ(trials[2].at("virtual"), true);
    EXPECT_EQ(trials[2].at("good"), true);
}

TEST(Info, JsonTellsEveryChannel)
{
    SampleDataset sample;
    sample.dataset().checkInitChnlParam(sample.dataset().getCurrentTrialPt());
    sample.dataset().setGoodChnl4Alltrials(1, 0);
    sample.dataset().setShowChnl4Alltrials(2, 0);
    sample.store();
    const json channels = infoOf(sample).at("channels");
    ASSERT_THAT(channels, SizeIs(6));
    EXPECT_EQ(channels[1], json({{"index", 1},
                                 {"name", "M1-77"},
                                 {"raw_name", "M1-77"},
                                 {"type", 100},
                                 {"type_name", "None"},
                                 {"kind", "meg"},
                                 {"geometry", "sensor"},
                                 {"unit", "fT"},
                                 {"good", false},
                                 {"show", true},
                                 {"position_mm", {1.0, 2.0, 3.0}},
                                 {"gradient_order", 0}}));
    EXPECT_EQ(channels[2].at("show"), false);
    EXPECT_EQ(channels[0].at("kind"), "ref");
    EXPECT_EQ(channels[3].at("kind"), "eeg");
    EXPECT_EQ(channels[3].at("unit"), "uV");
    EXPECT_EQ(channels[3].at("position_mm"), nullptr);
    EXPECT_EQ(channels[4].at("kind"), "trigger");
    EXPECT_EQ(channels[5].at("kind"), "other");
    EXPECT_EQ(channels[5].at("gradient_order"), nullptr);
}

TEST(Info, JsonTellsMarkersWithTheirLists)
{
    SampleDataset sample;
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "Trig5";
    marker->m_nMarkValue = 5;
    marker->addMarkPt(MarkTrigClass());
    marker->addMarkPt(MarkTrigClass());
    sample.dataset().m_mkTrig.addMarker(std::move(marker));
    sample.store();
    EXPECT_EQ(infoOf(sample).at("marks"),
              json::array({{{"list", "trigger"}, {"name", "Trig5"}, {"value", 5}, {"count", 2}}}));
}

TEST(Info, TextShowsSessionTrialsAndChannels)
{
    const SampleDataset sample;
    const auto result = runMegset({"info", sample.path()});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("session         run\n"));
    EXPECT_THAT(result.output, HasSubstr("rate            200 Hz\n"));
    EXPECT_THAT(result.output, HasSubstr("channels        6 (meg 2, ref 1, eeg 1, trigger 1, other 1)\n"));
    EXPECT_THAT(result.output, HasSubstr("    2  recorded  good        20  "));
    EXPECT_THAT(result.output, HasSubstr("    1  M1-77             100   meg"));
}

TEST(Info, MissingTrialIsShownAsSuchAndTheRestIsTold)
{
    const SampleDataset sample;
    std::filesystem::remove(sample.trialFile(2));
    const auto result = runMegset({"info", sample.path(), "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("runTrial2.trl: the trial's file is missing"));
    const json info = json::parse(result.output);
    EXPECT_EQ(info.at("trials")[2].at("found"), false);
    EXPECT_EQ(info.at("trials")[1].at("found"), true);
    EXPECT_THAT(info.at("channels"), SizeIs(0));
}

TEST(Info, NothingIsChanged)
{
    const SampleDataset sample;
    const auto before = sample.folder().read("run.meg");
    const auto names = sample.folder().names();
    runMegset({"info", sample.path()});
    EXPECT_EQ(sample.folder().read("run.meg"), before);
    EXPECT_EQ(sample.folder().names(), names);
}

TEST(Info, FileThatIsNoDatasetIsToldWithItsPath)
{
    const TemporaryFolder folder;
    folder.write("notes.txt", "not a dataset");
    const auto result = runMegset({"info", folder.native("notes.txt").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("notes.txt: "));
    EXPECT_EQ(result.output, "");
}

TEST(Info, FolderIsToldAsOneWithTheWayToADataset)
{
    const TemporaryFolder folder;
    const auto result = runMegset({"info", folder.native().string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr(": is a folder, not a dataset; megset import makes one of a recording"));
}

TEST(Info, MissingFileIsTold)
{
    const auto result = runMegset({"info", "/no/such/file.meg"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("file.meg"));
}

TEST(Info, ControlCharactersOfNamesDoNotReachTheTerminal)
{
    SampleDataset sample;
    sample.dataset().getTrialzk(2)->getChannel(1)->m_strChannelName = "A\x1b[31m\nB";
    sample.store();
    const auto result = runMegset({"info", sample.path()});
    EXPECT_THAT(result.output, HasSubstr("A\\x1b[31m B"));
    EXPECT_EQ(result.output.find('\x1b'), std::string::npos);
}

#if !MEGSET_ADDRESS_SANITIZER
// In processor time, which other work on the machine doesn't lengthen.
double childrensSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

TEST(Info, TenThousandTrialNamesAreToldWithinASecond)
{
    SampleDataset sample;
    sample.dataset().saveAllTrials();
    constexpr int total = 10000;
    for (int i = 3; i < total; ++i)
        sample.dataset().m_aTrialFilePath.Add(sample.folder().path("trial " + std::to_string(i) + ".trl"));
    ASSERT_TRUE(sample.dataset().m_ppTrial.allocate(total));
    sample.dataset().m_nTotalTrial = total;
    sample.dataset().m_nCurrentTrial = 0;
    sample.store();
    const double before = childrensSeconds();
    const json info = infoOf(sample);
    EXPECT_LT(childrensSeconds() - before, 1.0);
    EXPECT_THAT(info.at("trials"), SizeIs(total));
    EXPECT_EQ(info.at("trials")[2].at("found"), true);
    EXPECT_EQ(info.at("trials")[total - 1].at("found"), false);
}
#endif

TEST(TrialSummary, TrialWithoutChannelsHasNoSamples)
{
    const TemporaryFolder folder;
    CMDTrialzk trial;
    trial.m_strTrialName = "empty";
    CString path = folder.path("empty.trl");
    trial.saveTrialData(path, nullptr, CString(), true);
    const auto summary = readTrialSummary(folder.native("empty.trl"));
    ASSERT_TRUE(summary.has_value());
    EXPECT_EQ(summary->name, "empty");
    EXPECT_EQ(summary->channels, 0);
    EXPECT_EQ(summary->samples, 0);
}

TEST(TrialSummary, FileThatIsCutInItsFirstChannelIsNone)
{
    const SampleDataset sample;
    std::filesystem::resize_file(sample.trialFile(0), 400);
    EXPECT_FALSE(readTrialSummary(sample.trialFile(0)).has_value());
}

TEST(TrialSummary, RestOfTheFileIsNotRead)
{
    const SampleDataset sample;
    std::filesystem::resize_file(sample.trialFile(0), std::filesystem::file_size(sample.trialFile(0)) / 2);
    const auto summary = readTrialSummary(sample.trialFile(0));
    ASSERT_TRUE(summary.has_value());
    EXPECT_EQ(summary->samples, 20);
}

} // namespace

} // namespace megset::cli::info_test
