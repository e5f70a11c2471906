// What opening a dataset of many trials costs beside opening its one trial, and what walking through the trials costs
// beside plain write and read calls of the same bytes.
//
// Each iteration measures both, one right after the other; `ratio` is the median of plain time over megset's time, 1
// being as fast as plain, and `cpu_ratio` the same in processor time.

#include "bench/benchFolder.h"
#include "bench/comparison.h"
#include "bench/processMemory.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/paths.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace megset {
namespace {

constexpr int channels = 356;
constexpr std::int64_t samples = 1'200;
constexpr std::size_t trialBytes = std::size_t{channels} * samples * 2 * sizeof(double); // 6.8 MB

void demand(bool holds)
{
    if (!holds)
        std::abort();
}

CString trialPath(int trial)
{
    return fromNative(benchFolder() / ('t' + std::to_string(trial) + ".trl"));
}

std::filesystem::path plainPath(int trial)
{
    return benchFolder() / ("plain" + std::to_string(trial));
}

void makeTrialFiles(int files)
{
    CMDTrialzk trial;
    demand(trial.allocateChannels(channels) != 0);
    const std::vector<double> wave(static_cast<std::size_t>(samples), 0.5);
    for (int channel = 0; channel < channels; ++channel)
        trial.getChannel(channel)->addData(samples, wave.data());
    for (int i = 0; i < files; ++i) {
        CString path = trialPath(i);
        demand(trial.saveTrialData(path, nullptr, {}, true) != 0);
    }
}

/// A dataset file of so many trials, none of them in memory when it is made.
CString makeDatasetFile(int trials)
{
    CMEGDatazk dataset;
    demand(dataset.m_ppTrial.allocate(trials) != 0);
    dataset.m_nTotalTrial = trials;
    dataset.m_nCurrentTrial = 0;
    dataset.m_recordInfo.m_nRecTotalSample = samples;
    for (int i = 0; i < trials; ++i)
        dataset.m_aTrialFilePath.Add(trialPath(i));
    const CString path = fromNative(benchFolder() / "a.meg");
    CFile file(path, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
    CArchive archive(&file, CArchive::store);
    demand(dataset.serializezk(archive) != 0);
    return path;
}

std::unique_ptr<CMEGDatazk> opened(const CString& path)
{
    auto dataset = std::make_unique<CMEGDatazk>();
    CFile file(path, CFile::modeRead | CFile::shareExclusive);
    CArchive archive(&file, CArchive::load);
    demand(dataset->serializezk(archive) != 0 && dataset->getCurrentTrialPt() != nullptr);
    return dataset;
}

/// `plain` is opening the current trial alone; `over_ms` what the dataset costs beyond it.
void OpenDataset(benchmark::State& state)
{
    makeTrialFiles(1);
    const CString path = makeDatasetFile(static_cast<int>(state.range(0)));
    std::unique_ptr<CMEGDatazk> dataset = opened(path);
    auto trial = std::make_unique<CMDTrialzk>();
    Comparison comparison;
    for (auto _ : state) {
        dataset.reset();
        trial.reset();
        const auto openTrial = [&] {
            trial = std::make_unique<CMDTrialzk>();
            CString file = trialPath(0);
            demand(trial->openTrialData(file, nullptr, {}) != 0);
        };
        state.SetIterationTime(comparison.measure(openTrial, [&] { dataset = opened(path); }));
    }
    comparison.tell(state);
    state.counters["over_ms"] = state.counters["megset_ms"] - state.counters["plain_ms"];
}
BENCHMARK(OpenDataset)->Arg(1)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseManualTime();

/// Every step writes the trial that leaves and reads the next one.
void WalkTrials(benchmark::State& state)
{
    const int trials = static_cast<int>(state.range(0));
    makeTrialFiles(trials);
    const CString path = makeDatasetFile(trials);
    std::vector<char> data(trialBytes, 1);
    for (int i = 0; i < trials; ++i)
        plainWrite(plainPath(i), data);
    const std::unique_ptr<CMEGDatazk> dataset = opened(path);
    Comparison comparison;
    for (auto _ : state) {
        const auto plainWork = [&] {
            for (int i = 1; i <= trials; ++i) {
                plainWrite(plainPath(i - 1), data);
                plainRead(plainPath(i % trials), data);
            }
        };
        const auto megsetWork = [&] {
            for (int i = 1; i <= trials; ++i)
                demand(dataset->getTrialzk(i % trials) != nullptr);
        };
        state.SetIterationTime(comparison.measure(plainWork, megsetWork));
    }
    comparison.tell(state);
    state.counters["trial_MB"] = static_cast<double>(trialBytes) / 1e6;
    state.counters["peak_MB"] = processMemory("VmHWM") / 1e6;
}
BENCHMARK(WalkTrials)->Arg(60)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace
} // namespace megset
