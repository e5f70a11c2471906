// Listing 100,000 marks of a dataset, in the process and as the command does it, with the program's start and end. The
// trial beside them is of some size: the list has no use for it.

#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/events/markList.h"
#include "megset/platform/paths.h"

#include "benchFolder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;
using namespace megset::cli;

constexpr int marks = 100'000;
constexpr int trials = 50;
constexpr int channels = 100;
constexpr std::int64_t samples = 10'000;

/// Twenty markers of as many codes, with marks in all trials; the trials' files but the first are missing.
std::filesystem::path makeDataset()
{
    OpenDataset open;
    open.path = benchFolder() / "marks.meg";
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
    for (int code = 1; code <= 20; ++code)
        open.dataset.getTrigManager()->addTrigger(code, marks / 20, 0, samples);
    for (int i = 0; i < marks; ++i) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = i % trials;
        point.m_nMarkPtBegin = point.m_nMarkPtEnd = i / trials * 5;
        open.dataset.getTrigManager()->getMarker(i % 20, false)->addMarkPt(point);
    }
    storeDataset(open);
    return open.path;
}

const std::filesystem::path& dataset()
{
    static const std::filesystem::path made = makeDataset();
    return made;
}

void list(benchmark::State& state, void (*write)(const MarkList&, std::ostream&))
{
    const std::filesystem::path& path = dataset();
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
void command(benchmark::State& state, const char* options)
{
    const std::string line = std::string(MEGSET_PROGRAM " marks ") + dataset().string() + options + " > /dev/null";
    for (auto _ : state)
        if (std::system(line.c_str()) != 0)
            return state.SkipWithError("the command failed");
}
BENCHMARK_CAPTURE(command, list, " --list")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(command, json, " --list --json")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
