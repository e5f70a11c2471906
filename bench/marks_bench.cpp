// Listing 100,000 marks of a dataset, in the process and as the command does it, with the program's start and end, and
// telling a dataset of 10,000 trial names. The trial beside them is of some size: the lists have no use for it.

#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/events/markList.h"
#include "megset/platform/paths.h"

#include "benchFolder.h"

#include <cstdlib>
#include <fstream>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;
using namespace megset::cli;

constexpr int marks = 100'000;
constexpr int trials = 50;
constexpr int trialNames = 10'000;
constexpr int channels = 100;
constexpr std::int64_t samples = 10'000;

/// A dataset of one trial, stored when `fill(dataset)` has added to it.
template <class Fill>
std::filesystem::path makeDataset(const char* name, Fill fill)
{
    OpenDataset open;
    open.path = benchFolder() / name / "a.meg";
    std::filesystem::create_directory(benchFolder() / name);
    open.document.SetPathName(fromNative(open.path));
    open.dataset.setDocument(&open.document, true);
    CMEGRecordInfozkProzk& recording = *open.dataset.getMEGRecordInfozk();
    recording.m_dRecSampleRate = recording.m_dRawSampleRate = 1200.0;
    recording.m_nRecTotalSample = recording.m_nRawTotalSample = samples;
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(channels);
    const std::vector<double> wave(samples, 1.0);
    for (int c = 0; c < channels; ++c)
        trial->getChannel(c)->addData(samples, wave.data());
    open.dataset.addTrial(trial.release(), 0);
    fill(open.dataset);
    storeDataset(open);
    return open.path;
}

/// Twenty markers of as many codes, with marks in all trials; the trials' files but the first are missing.
void addMarks(CMEGDatazk& dataset)
{
    for (int code = 1; code <= 20; ++code)
        dataset.getTrigManager()->addTrigger(code, marks / 20, 0, samples);
    for (int i = 0; i < marks; ++i) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = i % trials;
        point.m_nMarkPtBegin = point.m_nMarkPtEnd = i / trials * 5;
        dataset.getTrigManager()->getMarker(i % 20, false)->addMarkPt(point);
    }
}

/// Names of trials whose files are missing.
void addTrialNames(CMEGDatazk& dataset)
{
    dataset.saveAllTrials();
    for (int i = 1; i < trialNames; ++i)
        dataset.m_aTrialFilePath.Add(fromNative(benchFolder() / ("trial " + std::to_string(i) + ".trl")));
    dataset.m_ppTrial.allocate(trialNames);
    dataset.m_nTotalTrial = trialNames;
    dataset.m_nCurrentTrial = 0;
}

const std::filesystem::path& marked()
{
    static const std::filesystem::path made = makeDataset("marks", addMarks);
    return made;
}

const std::filesystem::path& ofManyTrials()
{
    static const std::filesystem::path made = makeDataset("trials", addTrialNames);
    return made;
}

void list(benchmark::State& state, void (*write)(const MarkList&, std::ostream&))
{
    const std::filesystem::path& path = marked();
    for (auto _ : state) {
        ReadingNotes notes;
        const auto open = openDatasetToLook(path, notes, LookAt::DatasetAlone);
        std::ofstream out("/dev/null");
        write(listMarks(open->dataset, {}), out);
    }
    state.SetItemsProcessed(state.iterations() * marks);
}
BENCHMARK_CAPTURE(list, text, &writeText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(list, json, &writeJson)->Unit(benchmark::kMillisecond);

/// The time on the clock is that of a person who waits for it.
void command(benchmark::State& state, const char* name, const std::filesystem::path& (*dataset)(), const char* options)
{
    const std::string line = std::string(MEGSET_PROGRAM " ") + name + ' ' + dataset().string() + options;
    for (auto _ : state)
        if (std::system((line + " > /dev/null").c_str()) != 0)
            return state.SkipWithError("the command failed");
}
BENCHMARK_CAPTURE(command, list, "marks", &marked, " --list")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(command, json, "marks", &marked, " --list --json")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(command, info, "info", &ofManyTrials, "")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
