// Computing the planes of one trial as the spectrum command does, and what memory that takes beside the trial and the
// planes that it is given: it does not grow with the channels.

#include "apps/cli/spectrum/computeSpectra.h"

#include "megset/platform/memory.h"

#include "processMemory.h"

#include <cmath>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr double rate = 1200.0;
constexpr double megabyte = 1e6;

std::unique_ptr<CMDTrialzk> makeTrial(int channels, std::int64_t samples)
{
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(channels);
    std::vector<double> wave(static_cast<std::size_t>(samples));
    for (int c = 0; c < channels; ++c) {
        for (std::size_t i = 0; i < wave.size(); ++i)
            wave[i] = std::sin(0.05 * static_cast<double>(i) + c);
        trial->getChannel(c)->setChannelType(100);
        trial->getChannel(c)->addData(samples, wave.data());
    }
    return trial;
}

// Channels, seconds.
void ComputePlanes(benchmark::State& state)
{
    const auto channels = static_cast<int>(state.range(0));
    const auto samples = static_cast<std::int64_t>(rate) * state.range(1);
    cli::SpectrumRequest request;
    request.axis = spectrum::linearAxis("2:100:2");
    for (auto _ : state) {
        state.PauseTiming();
        auto trial = makeTrial(channels, samples);
        const double before = processMemory("VmRSS");
        forgetPeakMemory();
        state.ResumeTiming();
        cli::computeSpectra(*trial, rate, request);
        state.PauseTiming();
        const double plane = std::ceil(static_cast<double>(samples) / 24.0) * 50.0 * 8.0;
        const double kept = 8.0 * plane * channels; // four planes and their backup
        state.counters["trial_MB"] = 2.0 * 8.0 * static_cast<double>(samples) * channels / megabyte;
        state.counters["kept_planes_MB"] = kept / megabyte;
        state.counters["planes_of_one_MB"] = 4.0 * plane / megabyte;
        state.counters["after_above_MB"] = (processMemory("VmRSS") - before - kept) / megabyte;
        state.counters["live_MB"] = static_cast<double>(sampleMemoryStatistics().live) / megabyte;
        state.counters["idle_MB"] = static_cast<double>(sampleMemoryStatistics().idle) / megabyte;
        state.counters["peak_above_MB"] = (processMemory("VmHWM") - before - kept) / megabyte;
        trial.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * channels);
}
BENCHMARK(ComputePlanes)
    ->Args({16, 10})
    ->Args({64, 10})
    ->Args({256, 10})
    ->Args({64, 60})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

} // namespace
