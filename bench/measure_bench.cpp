// Measurement of 300 channels over 57,600 samples: each channel for itself, one after the other and in one go, and all
// of them into four numbers.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr int channels = 300;
constexpr std::int64_t samples = 57'600;
constexpr unsigned allChannels = 2;

/// One trial of noise, all of it selected.
std::unique_ptr<CMEGDatazk> makeDataset()
{
    auto data = std::make_unique<CMEGDatazk>();
    if (!data->initMEGData(1, channels, samples))
        return nullptr;
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
    for (int c = 0; c < channels; ++c) {
        double* const wave = data->getMDTrial(0)->getChannel(c)->getDataWave();
        for (std::int64_t i = 0; i < samples; ++i)
            wave[i] = noise(random);
    }
    data->m_nSelectStart = 0;
    data->m_nSelectEnd = samples - 1;
    return data;
}

CMEGDatazk& dataset()
{
    static const auto instance = makeDataset();
    return *instance;
}

void countSamples(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * channels * samples);
}

/// Minimum, mean, maximum, root mean square and standard deviation of each channel.
void MeasureEachChannel(benchmark::State& state)
{
    CMEGDatazk& data = dataset();
    double min, mean, max, rms, sd, meanPlus2Sd;
    for (auto _ : state)
        for (int c = 0; c < channels; ++c) {
            if (data.getMeasurementParam1ChnlSD(c, -1, -1, min, mean, max, rms, sd, meanPlus2Sd) != samples)
                state.SkipWithError("a channel could not be measured");
            benchmark::DoNotOptimize(meanPlus2Sd);
        }
    countSamples(state);
}
BENCHMARK(MeasureEachChannel)->Unit(benchmark::kMillisecond);

/// The same numbers in one go.
void MeasureAllChannels(benchmark::State& state)
{
    CMEGDatazk& data = dataset();
    std::vector<ChannelStatistics> out(channels);
    for (auto _ : state) {
        if (data.getMeasurementParamAllChnlSD(-1, -1, out) != channels)
            state.SkipWithError("the channels could not be measured");
        benchmark::DoNotOptimize(out.data());
    }
    countSamples(state);
}
BENCHMARK(MeasureAllChannels)->Unit(benchmark::kMillisecond);

/// What all channels have together, of their means (mode 0) or of their samples (mode 1).
void measureTogether(benchmark::State& state, int mode)
{
    CMEGDatazk& data = dataset();
    double min, mean, max, rms;
    for (auto _ : state) {
        if (data.getMeasurementResults(min, mean, max, rms, false, mode, allChannels) != channels)
            state.SkipWithError("the channels could not be measured");
        benchmark::DoNotOptimize(rms);
    }
    countSamples(state);
}
void MeasureMeans(benchmark::State& state)
{
    measureTogether(state, 0);
}
BENCHMARK(MeasureMeans)->Unit(benchmark::kMillisecond);
void MeasureSamples(benchmark::State& state)
{
    measureTogether(state, 1);
}
BENCHMARK(MeasureSamples)->Unit(benchmark::kMillisecond);

} // namespace
