// What saving and opening a trial costs beside plain system calls over as many bytes, in time and in memory, and what
// the buffer for drawing costs beside reading the samples once.
//
// Each iteration measures both, one right after the other; `ratio` is the median of plain time over megset's time, 1
// being as fast as plain, and `cpu_ratio` the same in processor time, which tells more on a machine with other work.

#include "bench/benchFolder.h"
#include "bench/comparison.h"
#include "bench/processMemory.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/memory.h"
#include "megset/platform/paths.h"

#include <benchmark/benchmark.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <malloc.h>

namespace megset {
namespace {

struct Shape
{
    int channels;
    std::int64_t samples;

    std::size_t bytes() const // working and backup samples
    {
        return static_cast<std::size_t>(channels) * static_cast<std::size_t>(samples) * 2 * sizeof(double);
    }
};

constexpr Shape large = {300, 72'000}; // 346 MB
constexpr Shape small = {356, 1'200};  // 6.8 MB

std::unique_ptr<CMDTrialzk> madeTrial(const Shape& shape)
{
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(shape.channels);
    std::vector<double> wave(static_cast<std::size_t>(shape.samples));
    for (std::size_t i = 0; i < wave.size(); ++i)
        wave[i] = static_cast<double>(i % 1000);
    for (int channel = 0; channel < shape.channels; ++channel)
        trial->getChannel(channel)->addData(shape.samples, wave.data());
    return trial;
}

// ---- the library

CString trialPath()
{
    return fromNative(benchFolder() / "a.trl");
}

void save(CMDTrialzk& trial)
{
    CString path = trialPath();
    if (!trial.saveTrialData(path, nullptr, {}, true))
        std::abort();
}

std::unique_ptr<CMDTrialzk> opened()
{
    auto trial = std::make_unique<CMDTrialzk>();
    CString path = trialPath();
    if (!trial->openTrialData(path, nullptr, {}))
        std::abort();
    return trial;
}

// ---- measuring

std::filesystem::path plainPath()
{
    return benchFolder() / "plain";
}

void removeFiles()
{
    std::filesystem::remove(plainPath());
    std::filesystem::remove(toNative(trialPath()));
}

/// Both write a new file.
void SaveTrial(benchmark::State& state, const Shape& shape)
{
    const auto trial = madeTrial(shape);
    std::vector<char> data(shape.bytes(), 1);
    Comparison comparison;
    for (auto _ : state) {
        removeFiles();
        state.SetIterationTime(comparison.measure([&] { plainWrite(plainPath(), data); }, [&] { save(*trial); }));
    }
    comparison.tell(state);
}

/// Both read into memory that was in use before: the trial that left made room for the one that comes.
void OpenTrial(benchmark::State& state, const Shape& shape)
{
    auto trial = madeTrial(shape);
    std::vector<char> data(shape.bytes(), 1);
    save(*trial);
    plainWrite(plainPath(), data);
    Comparison comparison;
    for (auto _ : state) {
        trial.reset();
        state.SetIterationTime(comparison.measure([&] { plainRead(plainPath(), data); }, [&] { trial = opened(); }));
    }
    comparison.tell(state);
}

/// Leaving a trial and coming to the next: one is saved and freed, the other is read.
void ChangeTrial(benchmark::State& state, const Shape& shape)
{
    auto trial = madeTrial(shape);
    std::vector<char> data(shape.bytes(), 1);
    Comparison comparison;
    for (auto _ : state) {
        removeFiles();
        const auto plainWork = [&] {
            plainWrite(plainPath(), data);
            plainRead(plainPath(), data);
        };
        const auto megsetWork = [&] {
            save(*trial);
            trial.reset();
            trial = opened();
        };
        state.SetIterationTime(comparison.measure(plainWork, megsetWork));
    }
    comparison.tell(state);
}

BENCHMARK_CAPTURE(SaveTrial, large, large)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(OpenTrial, large, large)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(SaveTrial, small, small)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(OpenTrial, small, small)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(ChangeTrial, small, small)->Unit(benchmark::kMillisecond)->UseManualTime();

// ---- memory

/// What the work takes at its peak beyond what is in use when it begins, in MB.
template <class Work>
double peakMegabytes(Work work)
{
    releaseIdleSampleMemory();
    ::malloc_trim(0);
    forgetPeakMemory();
    const double before = processMemory("VmRSS");
    work();
    return (processMemory("VmHWM") - before) / 1e6;
}

void PeakMemoryOfTrial(benchmark::State& state, const Shape& shape)
{
    for (auto _ : state) {
        auto trial = madeTrial(shape);
        state.counters["trial_MB"] = static_cast<double>(shape.bytes()) / 1e6;
        state.counters["save_MB"] = peakMegabytes([&] { save(*trial); });
        trial.reset();
        state.counters["open_MB"] = peakMegabytes([&] { trial = opened(); });
    }
}

BENCHMARK_CAPTURE(PeakMemoryOfTrial, large, large)->Unit(benchmark::kMillisecond)->Iterations(1);

// ---- the buffer for drawing

std::uint64_t readOnce(const CMDChannelzk& channel)
{
    const double* wave = channel.getDataWave();
    std::uint64_t sum = 0; // of integers: the compiler may take many at once
    for (std::int64_t i = 0; i < channel.getTotalSample(); ++i)
        sum += std::bit_cast<std::uint64_t>(wave[i]);
    return sum;
}

void ShrinkBuffer(benchmark::State& state)
{
    CMDChannelzk channel;
    channel.initDataBk(10'000'000, 0, true);
    for (std::int64_t i = 0; i < channel.getTotalSample(); ++i)
        channel.m_pDataWave[static_cast<std::size_t>(i)] = static_cast<double>(i * 7919 % 20'011 - 10'000);
    Comparison comparison;
    for (auto _ : state) {
        state.SetIterationTime(comparison.measure([&] { benchmark::DoNotOptimize(readOnce(channel)); },
                                                  [&] { channel.checkInitBuf4FastDraw(0.01, 1); }));
    }
    if (channel.m_pShowShrink == nullptr || channel.m_pShowShrink->m_nBinCount != 100'000)
        state.SkipWithError("the buffer was not built");
    comparison.tell(state);
}
BENCHMARK(ShrinkBuffer)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace
} // namespace megset
