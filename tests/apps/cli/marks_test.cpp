#include "apps/cli/events/changeMarks.h"
#include "tests/apps/cli/SampleCommand.h"

#include <algorithm>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::marks_test {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Three trials of 20 samples at 200 Hz, 5 of them before the trigger.
class Marks : public SampleCommand
{
protected:
    Marks() : SampleCommand("marks") {}

    void change(std::vector<std::string> options)
    {
        options.emplace_back("--in-place");
        const auto result = run(std::move(options));
        EXPECT_EQ(result.exitCode, 0) << result.errors;
    }
    // Each mark as "trial list name begin-end".
    std::vector<std::string> listed(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"--list", "--json"});
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const json list = json::parse(result.output);
        std::vector<std::string> marks;
        for (const json& mark : list.at("marks"))
            marks.push_back(mark.at("trial").dump() + ' ' + mark.at("list").get<std::string>() + ' ' +
                            mark.at("name").get<std::string>() + ' ' + mark.at("samples")[0].dump() + '-' +
                            mark.at("samples")[1].dump());
        return marks;
    }
    std::string faultOf(std::vector<std::string> options)
    {
        options.emplace_back("--in-place");
        const auto result = run(std::move(options));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        return result.errors;
    }
};

// ---- added

TEST_F(Marks, AreAddedByHandInSamplesOrMilliseconds)
{
    const auto result =
        run({"--add", "blink", "--at", "3:6", "--at", "10ms:20ms", "--at", "-25ms", "--trial", "1", "--in-place"});
    EXPECT_EQ(result.output, "3 marks added in 1 trial\n") << result.errors;
    EXPECT_THAT(listed(), ElementsAre("1 mark blink 0-0", "1 mark blink 3-6", "1 mark blink 7-9"));
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(Marks, OfOneNameAreOneMarkerInSeveralTrials)
{
    change({"--add", "blink", "--at", "3", "--trial", "0"});
    change({"--add", "blink", "--at", "4", "--trial", "2,1:2"});
    EXPECT_THAT(listed(), ElementsAre("0 mark blink 3-3", "1 mark blink 4-4", "2 mark blink 4-4"));
    const json info = json::parse(runMegset({"info", sample.path(), "--json"}).output);
    EXPECT_EQ(info.at("marks"), json::parse(R"([{"list": "mark", "name": "blink", "value": 0, "count": 3}])"));
}

TEST_F(Marks, GoToTheCurrentTrialUnlessOneIsTold)
{
    change({"--add", "blink", "--at", "3"});
    change({"--bad-segment", "3:4"});
    EXPECT_THAT(listed(), ElementsAre("2 mark blink 3-3", "2 segment Bad_segment 3-4"));
}

TEST_F(Marks, WithOutLeaveTheDatasetAsItIs)
{
    const std::string copy = sample.folder().native("copy.meg").string();
    EXPECT_EQ(run({"--bad-segment", "3:4", "--out", copy}).exitCode, 0);
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(runMegset({"marks", copy}).output, HasSubstr("    2         3         4         -10          -5"
                                                             "  segment    Bad_segment\n"));
    EXPECT_EQ(runMegset({"check", copy}).exitCode, 0);
    const auto nowhere = run({"--bad-segment", "3:4"});
    EXPECT_EQ(nowhere.exitCode, 1);
    EXPECT_THAT(nowhere.errors, HasSubstr("say where the changed dataset goes"));
}

TEST_F(Marks, BadSegmentsAreTheLibrarysToTheSample)
{
    CMEGRecordInfozkProzk& recording = *sample.dataset().getMEGRecordInfozk();
    recording.m_dRecSampleRate = recording.m_dRawSampleRate = 1234.5; // no sample is a whole time
    sample.store();
    std::vector<std::string> options;
    for (int i = 0; i < 20; ++i)
        options.insert(options.end(), {"--bad-segment", std::to_string(i) + ":" + std::to_string(i)});
    change(options);
    ReadingNotes notes;
    const auto open = openDatasetToLook(sample.path(), notes);
    CMarkerManagerzk& segments = *open->dataset.getSegmentManager();
    EXPECT_EQ(segments.m_strMgrInfo, "Bad_segment");
    ASSERT_EQ(segments.getTotalMarkers(), 1);
    EXPECT_EQ(segments.getMarker(0, false)->m_nMarkID, 302);
    ASSERT_EQ(segments.getMarker(0, false)->getTotalTrgMrkPts(), 20);
    for (int i = 0; i < 20; ++i) {
        const MarkTrigClass& point = *segments.getMarker(0, false)->getMarkPt(i);
        EXPECT_EQ(point.m_nMarkPtTrial, 2);
        EXPECT_EQ(point.m_nMarkPtBegin, i);
        EXPECT_EQ(point.m_nMarkPtEnd, i);
        EXPECT_NEAR(point.m_dMarkPtBegin, i / 1.2345, 1e-9) << "ms from the trial's first sample";
    }
}

TEST_F(Marks, ChangesLeaveTheSamplesAndTheCurrentTrialAsTheyAre)
{
    const auto bytes = sample.folder().read(fromNative(sample.trialFile(1).filename()));
    change({"--bad-segment", "3:4", "--trial", "0:2"});
    EXPECT_EQ(sample.folder().read(fromNative(sample.trialFile(1).filename())), bytes);
    EXPECT_EQ(json::parse(runMegset({"info", sample.path(), "--json"}).output).at("current_trial"), 2);
}

// ---- refused

TEST_F(Marks, OutsideTheTrialAreRefusedWithTheTrialsEnds)
{
    EXPECT_EQ(faultOf({"--add", "blink", "--at", "3:20", "--trial", "1"}),
              "megset: trial 1: the place \"3:20\" is not within the samples 0 to 19\n");
    EXPECT_EQ(faultOf({"--add", "blink", "--at", "-1", "--trial", "1"}),
              "megset: trial 1: the place \"-1\" is not within the samples 0 to 19\n");
    EXPECT_EQ(faultOf({"--bad-segment", "0:73ms", "--trial", "0"}),
              "megset: trial 0: the time 73 ms is outside the trial, which goes from -25 to 70 ms\n");
    EXPECT_EQ(faultOf({"--bad-segment", "-28:0ms", "--trial", "0"}),
              "megset: trial 0: the time -28 ms is outside the trial, which goes from -25 to 70 ms\n");
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(Marks, AtNoPlaceAreRefused)
{
    for (const char* place : {"", ":", "x", "3-6", "3:6s", "ms", "1e400ms", "nanms", "3:6:9"})
        EXPECT_THAT(faultOf({"--add", "blink", "--at", place}), HasSubstr("is not of the form A")) << place;
    EXPECT_THAT(faultOf({"--bad-segment", "6:3"}), HasSubstr("is not within the samples 0 to 19"));
    EXPECT_THAT(faultOf({"--bad-segment", "16:3ms"}), HasSubstr("ends before it begins"));
    EXPECT_EQ(run({"--add", "blink", "--in-place"}).exitCode, 2) << "no place at all";
    EXPECT_EQ(run({"--add", "", "--at", "3", "--in-place"}).exitCode, 2) << "no name";
}

TEST_F(Marks, InTrialsThatAreNotThereAreRefused)
{
    EXPECT_EQ(faultOf({"--add", "blink", "--at", "3", "--trial", "3"}),
              "megset: there is no trial 3; the dataset has 3\n");
    EXPECT_EQ(faultOf({"--bad-segment", "3:4", "--trial", "1:99999999999"}),
              "megset: there is no trial 99999999999; the dataset has 3\n");
    EXPECT_EQ(faultOf({"--remove", "blink", "--trial", "2:1"}), "megset: the trials \"2:1\" end before they begin\n");
    EXPECT_THAT(faultOf({"--remove", "blink", "--trial", "x"}), HasSubstr("\"x\" tells no trials"));
    EXPECT_EQ(run({"--list", "--trial", "-2"}).exitCode, 1);
}

TEST_F(Marks, OfATrialWhoseFileIsMissingAreRefused)
{
    std::filesystem::remove(sample.trialFile(1));
    EXPECT_EQ(faultOf({"--add", "blink", "--at", "3", "--trial", "1"}), "megset: trial 1: its file can't be read\n");
    change({"--add", "blink", "--at", "3", "--trial", "0"});
    EXPECT_THAT(listed(), SizeIs(1));
}

TEST_F(Marks, BadSegmentsThatOverlapAreRefused)
{
    change({"--bad-segment", "5:9", "--trial", "1"});
    for (const char* place : {"5:9", "9:12", "2:5", "6:6", "0:19"})
        EXPECT_THAT(faultOf({"--bad-segment", place, "--trial", "0:1"}),
                    HasSubstr("overlaps the bad segment of samples 5 to 9"))
            << place;
    EXPECT_THAT(faultOf({"--bad-segment", "1:3", "--bad-segment", "3:4", "--trial", "1"}),
                HasSubstr("trial 1: the segment of samples 3 to 4 overlaps the bad segment of samples 1 to 3"));
    EXPECT_THAT(listed(), ElementsAre("1 segment Bad_segment 5-9")) << "nothing is added to any trial";
    change({"--bad-segment", "10:11", "--bad-segment", "4:4", "--trial", "1"});
    change({"--bad-segment", "5:9", "--trial", "0,2"});
    EXPECT_THAT(listed(), SizeIs(5));
}

TEST_F(Marks, OfAnUnknownNameSuggestTheNearest)
{
    EXPECT_EQ(faultOf({"--remove", "blink"}), "megset: there is no marker blink, and no other\n");
    for (const char* name : {"blink", "swallow", "cough", "blank"})
        change({"--add", name, "--at", "3"});
    EXPECT_EQ(faultOf({"--remove", "blin"}),
              "megset: there is no marker blin; the nearest names are blink, blank, cough\n");
    EXPECT_THAT(run({"--list", "--name", "Cough"}).errors, HasSubstr("the nearest names are cough, "));
}

TEST_F(Marks, TwoActionsAtOnceAreWrongUsage)
{
    EXPECT_EQ(run({"--list", "--remove", "blink"}).exitCode, 2);
    EXPECT_EQ(run({"--add", "blink", "--at", "1", "--remove", "blink", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--bad-segment", "1:2", "--at", "1", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--list", "--of", "triggers"}).exitCode, 2) << "no list of this name";
    EXPECT_EQ(faultOf({}), "megset: say what to change: --add, --bad-segment or --remove\n");
}

// ---- removed

TEST_F(Marks, AreRemovedByNameWithTheirMarker)
{
    change({"--add", "blink", "--at", "3", "--at", "9", "--trial", "0:2"});
    change({"--add", "cough", "--at", "3"});
    EXPECT_EQ(run({"--remove", "blink", "--in-place"}).output, "6 marks removed in 3 trials\n");
    const json info = json::parse(runMegset({"info", sample.path(), "--json"}).output);
    EXPECT_THAT(info.at("marks"), SizeIs(1));
}

TEST_F(Marks, AreRemovedInSomeTrialsAndPlaces)
{
    change({"--add", "blink", "--at", "3:6", "--at", "9", "--trial", "0:2"});
    EXPECT_EQ(run({"--remove", "blink", "--trial", "1", "--in-place"}).output, "2 marks removed in 1 trial\n");
    EXPECT_EQ(run({"--remove", "blink", "--at", "6:8", "--in-place"}).output, "2 marks removed in 2 trials\n");
    EXPECT_THAT(listed(), ElementsAre("0 mark blink 9-9", "2 mark blink 9-9"));
    EXPECT_EQ(faultOf({"--remove", "blink", "--at", "3:6"}), "megset: the marker blink has no marks there\n");
    EXPECT_EQ(faultOf({"--remove", "blink", "--trial", "1"}), "megset: the marker blink has no marks there\n");
    EXPECT_EQ(run({"--remove", "blink", "--at", "20ms", "--trial", "0", "--in-place"}).output,
              "1 mark removed in 1 trial\n");
    ReadingNotes notes;
    const auto open = openDatasetToLook(sample.path(), notes);
    const CMarkerDatazk& marker = *open->dataset.getMarkerManager()->getMarker(0, false);
    EXPECT_EQ(marker.m_nMarkCount, 1);
    EXPECT_EQ(marker.m_aMarkPtsBk.GetSize(), 1) << "the backup goes along";
}

TEST_F(Marks, BadSegmentsAreRemovedByTheNameThatTheListShows)
{
    change({"--bad-segment", "5:9", "--trial", "0:2"});
    EXPECT_EQ(run({"--remove", "Bad_segment", "--trial", "1", "--in-place"}).output, "1 mark removed in 1 trial\n");
    EXPECT_THAT(listed(), SizeIs(2));
    change({"--bad-segment", "6:7", "--trial", "1"});
    EXPECT_THAT(listed(), SizeIs(3));
}

TEST_F(Marks, OfANameInTwoListsAreRemovedFromTheOneTold)
{
    change({"--add", "Trig5", "--at", "3"});
    auto open = openDatasetToChange(sample.path());
    open->dataset.getTrigManager()->addTrigger(5, 1, 0, 1);
    open->dataset.getTrigManager()->getMarker(-1, false)->addMarkPt(MarkTrigClass());
    storeDataset(*open);
    open.reset();
    EXPECT_EQ(faultOf({"--remove", "Trig5"}),
              "megset: the name Trig5 is in several lists: trigger, mark; say which one by --of\n");
    change({"--remove", "Trig5", "--of", "trigger"});
    EXPECT_THAT(listed(), ElementsAre("2 mark Trig5 3-3"));
}

// ---- listed

TEST_F(Marks, AreListedAsATableWithASummary)
{
    change({"--add", "blink", "--at", "3:6", "--trial", "0,2"});
    const std::string table = "trial     begin       end   begin, ms     end, ms  list       name\n"
                              "    0         3         6         -10           5  mark       blink\n"
                              "    2         3         6         -10           5  mark       blink\n";
    EXPECT_EQ(run({"--list"}).output, table + "2 marks in 2 trials\n");
    EXPECT_EQ(run({}).output, table + "2 marks in 2 trials\n") << "also without the option";
    EXPECT_EQ(run({"--list", "--trial", "1"}).output, table.substr(0, table.find('\n') + 1) + "0 marks in 0 trials\n");
}

TEST_F(Marks, AreListedByListNameAndTrial)
{
    change({"--add", "blink", "--at", "3", "--trial", "0:2"});
    change({"--add", "cough", "--at", "2", "--trial", "0:2"});
    change({"--bad-segment", "5:9", "--trial", "1"});
    EXPECT_THAT(listed({"--trial", "1"}),
                ElementsAre("1 mark cough 2-2", "1 mark blink 3-3", "1 segment Bad_segment 5-9"));
    EXPECT_THAT(listed({"--of", "segment,trigger"}), ElementsAre("1 segment Bad_segment 5-9"));
    EXPECT_THAT(listed({"--name", "cough", "--trial", "2"}), ElementsAre("2 mark cough 2-2"));
}

TEST_F(Marks, JsonTellsMarksAndMarkers)
{
    change({"--add", "a \"b\"", "--at", "3:6", "--trial", "1"});
    EXPECT_EQ(json::parse(run({"--list", "--json"}).output), json::parse(R"({
        "marks": [{"trial": 1, "list": "mark", "name": "a \"b\"", "value": 0, "channel": 0,
                   "samples": [3, 6], "ms": [-10.0, 5.0]}],
        "markers": [{"list": "mark", "name": "a \"b\"", "value": 0, "marks": 1}]})"));
    const auto added = run({"--bad-segment", "3:6", "--in-place", "--json"});
    EXPECT_EQ(json::parse(added.output).at("marks")[0].at("name"), "Bad_segment");
    const auto removed = run({"--remove", "Bad_segment", "--in-place", "--json"});
    EXPECT_EQ(json::parse(removed.output), json::parse(added.output));
}

TEST_F(Marks, AMarkerWithoutPointsIsListedWithoutPlaces)
{
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "none";
    sample.dataset().getClassManager()->addMarker(std::move(marker));
    sample.store();
    EXPECT_THAT(run({}).output, HasSubstr("    -         -         -           -           -  class      none\n"
                                          "0 marks in 0 trials\n"));
    EXPECT_EQ(json::parse(run({"--json"}).output).at("markers")[0].at("marks"), 0);
    EXPECT_EQ(faultOf({"--remove", "none", "--trial", "1"}), "megset: the marker none has no marks there\n");
    change({"--remove", "none"});
    EXPECT_EQ(json::parse(run({"--json"}).output).at("markers"), json::array());
}

TEST_F(Marks, OfAFileThatHoldsAnythingAreListedAsTheyAre)
{
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "a\nb\x1b[31m";
    MarkTrigClass point;
    point.m_nMarkPtTrial = -7;
    point.m_nMarkPtBegin = std::numeric_limits<std::int64_t>::min();
    point.m_nMarkPtEnd = std::numeric_limits<std::int64_t>::max();
    marker->addMarkPt(point);
    marker->m_aMarkPts.Add(std::unique_ptr<MarkTrigClass>());
    sample.dataset().getPatternMkManager()->addMarker(std::move(marker));
    sample.dataset().getMEGRecordInfozk()->m_dRecSampleRate = 0.0;
    sample.store();
    const auto text = run({});
    EXPECT_EQ(text.exitCode, 0) << text.errors;
    EXPECT_THAT(text.output, HasSubstr("pattern    a b\\x1b[31m\n"));
    EXPECT_EQ(json::parse(run({"--json"}).output).at("marks")[0].at("ms"), json::parse("[null, null]"));
    EXPECT_THAT(faultOf({"--bad-segment", "1:2"}), HasSubstr("the dataset's sampling rate is not above 0 Hz"));
}

// Re-sampling moves the triggers alone.
TEST_F(Marks, StayInTheirPlaceWhenTheDatasetIsReSampled)
{
    change({"--bad-segment", "8:15", "--trial", "0"});
    change({"--add", "blink", "--at", "16", "--trial", "0"});
    ASSERT_EQ(runMegset({"resample", sample.path(), "--factor", "4", "--in-place"}).exitCode, 0);
    EXPECT_THAT(listed(), ElementsAre("0 segment Bad_segment 2-3", "0 mark blink 4-4"));
    change({"--bad-segment", "4:4", "--trial", "0"});
    EXPECT_THAT(listed({"--of", "segment"}), ElementsAre("0 segment Bad_segment 2-3", "0 segment Bad_segment 4-4"));
    EXPECT_THAT(faultOf({"--bad-segment", "3:3", "--trial", "0"}), HasSubstr("overlaps"));
    ASSERT_EQ(runMegset({"restore", sample.path(), "--in-place"}).exitCode, 0);
    EXPECT_THAT(listed({"--of", "mark"}), ElementsAre("0 mark blink 16-16"));
}

// As many as a long recording has heartbeats; the benchmark measures the time.
TEST_F(Marks, AHundredThousandAreListed)
{
    constexpr int marks = 100'000;
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_strMarkName = "beat";
    for (int i = marks; i-- > 0;) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = i % 3;
        point.m_nMarkPtBegin = point.m_nMarkPtEnd = i;
        marker->addMarkPt(point);
    }
    sample.dataset().getMarkerManager()->addMarker(std::move(marker));
    sample.store();
    const auto result = run({"--list"});
    EXPECT_THAT(result.output, HasSubstr("\n    1     99997     99997      499960      499960  mark       beat\n"));
    EXPECT_THAT(result.output, HasSubstr("\n100000 marks in 3 trials\n"));
    EXPECT_EQ(std::ranges::count(result.output, '\n'), marks + 2);
    const json list = json::parse(run({"--json"}).output);
    ASSERT_THAT(list.at("marks"), SizeIs(marks));
    EXPECT_EQ(list.at("marks")[marks - 1].at("samples")[0], 99998) << "by trial, then by sample";
    EXPECT_EQ(run({"--remove", "beat", "--trial", "0,1", "--in-place"}).output, "66667 marks removed in 2 trials\n");
}

} // namespace

} // namespace megset::cli::marks_test
