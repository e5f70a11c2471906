// Re-sampling of a trial of 356 x 72,000 samples, beside the memory's limit in the same run: reading as fast as wide
// loads can, and writing what the operation writes.
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/processorPath.h"
#include "megset/numeric/resample.h"
#include "megset/numeric/statistics.h"

namespace {

using namespace megset;

constexpr int channels = 356;
constexpr std::int64_t samples = 72'000;

/// One trial in memory, filled with noise.
CMEGDatazk& dataset()
{
    static CMEGDatazk data;
    if (data.getTotalTrial() > 0)
        return data;
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
    data.initMEGData(1, channels, samples);
    for (int c = 0; c < channels; ++c) {
        CMDChannelzk& channel = *data.getTrialzk(0)->getChannel(c);
        for (std::int64_t i = 0; i < samples; ++i)
            channel.getBkData()[i] = noise(random);
    }
    data.m_recordInfo.m_nRawTotalSample = data.m_recordInfo.m_nRecTotalSample = samples;
    data.m_recordInfo.m_dRawSampleRate = data.m_recordInfo.m_dRecSampleRate = 4000.0;
    return data;
}

void countBytes(benchmark::State& state, std::int64_t factor)
{
    const std::int64_t moved = channels * (samples + (factor > 0 ? samples / factor : 0));
    state.SetBytesProcessed(state.iterations() * moved * static_cast<std::int64_t>(sizeof(double)));
    state.SetLabel(std::string(numeric::processorPath()));
}

/// The limit for factor 4: reads every raw sample and writes a quarter as many.
void MemoryLimit(benchmark::State& state)
{
    const CMDTrialzk& trial = *dataset().getTrialzk(0);
    std::vector<double> to(static_cast<std::size_t>(channels * samples / 4));
    for (auto _ : state) {
        for (int c = 0; c < channels; ++c) {
            const double* from = trial.getChannel(c)->getBkData();
            benchmark::DoNotOptimize(numeric::minMax({from, static_cast<std::size_t>(samples)}));
            std::memset(to.data() + c * samples / 4, 1, samples / 4 * sizeof(double));
        }
        benchmark::ClobberMemory();
    }
    countBytes(state, 4);
}
BENCHMARK(MemoryLimit)->Unit(benchmark::kMillisecond);

__attribute__((noinline)) void plainPick(const double* x, std::int64_t factor, double* to, std::int64_t n)
{
    for (std::int64_t k = 0; k < n; ++k)
        to[k] = x[k * factor];
}

__attribute__((noinline)) void plainAverage(const double* x, std::int64_t factor, double* to, std::int64_t n)
{
    for (std::int64_t k = 0; k < n; ++k) {
        double sum = 0.0;
        for (std::int64_t j = 0; j < factor; ++j)
            sum += x[k * factor + j];
        to[k] = sum / static_cast<double>(factor);
    }
}

template <class Loop>
void plain(benchmark::State& state, Loop loop)
{
    const std::int64_t factor = state.range(0);
    const std::int64_t n = samples / factor;
    const CMDTrialzk& trial = *dataset().getTrialzk(0);
    std::vector<double> to(static_cast<std::size_t>(channels * n));
    for (auto _ : state) {
        for (int c = 0; c < channels; ++c)
            loop(trial.getChannel(c)->getBkData(), factor, to.data() + c * n, n);
        benchmark::ClobberMemory();
    }
    countBytes(state, factor);
}
BENCHMARK_CAPTURE(plain, pick, plainPick)->Arg(4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plain, average, plainAverage)->Arg(4)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void reSampleData(benchmark::State& state, bool average)
{
    CMEGDatazk& data = dataset();
    const std::int64_t factor = state.range(0);
    data.reSampleData(average, factor, false); // makes the arrays of the new count
    for (auto _ : state) {
        data.reSampleData(average, factor, false);
        benchmark::ClobberMemory();
    }
    countBytes(state, factor);
}
BENCHMARK_CAPTURE(reSampleData, pick, false)->Arg(1)->Arg(2)->Arg(4)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reSampleData, average, true)
    ->Arg(2)
    ->Arg(3)
    ->Arg(4)
    ->Arg(5)
    ->Arg(7)
    ->Arg(8)
    ->Arg(10)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);

/// Measurement of all channels over the whole trial.
void Measure(benchmark::State& state)
{
    CMEGDatazk& data = dataset();
    data.reSampleData(false, 1, false);
    data.m_nSelectStart = 0;
    data.m_nSelectEnd = samples - 1;
    double min = 0.0, mean = 0.0, max = 0.0, rms = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            data.getMeasurementResults(min, mean, max, rms, false, static_cast<int>(state.range(0)), 2));
    countBytes(state, 0);
}
BENCHMARK(Measure)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
