// Spectra of a trial of 300 channels, planes of 500 times and 60 frequencies: baseline division, logarithm and scale
// in place, beside one pass over the same planes, which is what memory allows; and the sum planes, beside a pass that
// only reads.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/arithmetic.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <memory>
#include <random>
#include <span>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr int channels = 300;
constexpr std::int64_t times = 500;
constexpr std::int64_t freqs = 60;
constexpr auto planeElements = static_cast<std::size_t>(times * freqs);
constexpr int active = 0;
constexpr int real = 0;

std::span<double> plane(CMDTrialzk& trial, int channel)
{
    return {trial.getChannel(channel)->getSpctmChnlA(false)->m_pSpctmR.get(), planeElements};
}

/// Values above 0, the same in every channel.
void refill(CMDTrialzk& trial)
{
    static const std::vector<double> values = [] {
        std::minstd_rand random(1);
        std::uniform_real_distribution<double> power(0.1, 100.0);
        std::vector<double> x(planeElements);
        for (double& v : x)
            v = power(random);
        return x;
    }();
    for (int c = 0; c < channels; ++c)
        std::copy(values.begin(), values.end(), plane(trial, c).begin());
}

std::unique_ptr<CMDTrialzk> makeTrial()
{
    auto trial = std::make_unique<CMDTrialzk>();
    if (!trial->allocateChannels(channels))
        return nullptr;
    trial->getSpctmTrialA(true)->setSpctmTimePtFreqPt(times, freqs, 1);
    for (int c = 0; c < channels; ++c)
        trial->getChannel(c)->getSpctmChnlA(true)->initSpctmSpace(times, freqs, true, 0, 0);
    refill(*trial);
    return trial;
}

CMDTrialzk& trial()
{
    static const auto instance = makeTrial();
    return *instance;
}

/// Runs `operation` on planes that hold the same values each time.
template <class Operation>
void onFreshPlanes(benchmark::State& state, Operation operation)
{
    for (auto _ : state) {
        state.PauseTiming();
        refill(trial());
        state.ResumeTiming();
        if (!operation(trial()))
            state.SkipWithError("the operation failed");
    }
    state.SetBytesProcessed(state.iterations() * channels * times * freqs * 16);
}

/// Each value read and written once.
void OnePass(benchmark::State& state)
{
    onFreshPlanes(state, [](CMDTrialzk& spectra) {
        for (int c = 0; c < channels; ++c)
            numeric::scaleInPlace(plane(spectra, c), 1.5);
        return 1;
    });
}

void Scale(benchmark::State& state)
{
    onFreshPlanes(state, [](CMDTrialzk& spectra) { return spectra.scaleSpctmAllDataType4Class(active, 1.5); });
}

void BaselineDivision(benchmark::State& state)
{
    onFreshPlanes(state, [](CMDTrialzk& spectra) { return spectra.rootStrip(0, 100, 100.0, -1, true, active, real); });
}

void Logarithm(benchmark::State& state)
{
    onFreshPlanes(state, [](CMDTrialzk& spectra) { return spectra.transformSpctm2log(-1, true, active, real); });
}

void RootMeanSquareNormalization(benchmark::State& state)
{
    onFreshPlanes(state, [](CMDTrialzk& spectra) { return spectra.normSpctmGlobEachFreqAllChnAllTimSc_rms(active); });
}

/// Each value read once, in eight chains of vectors, so that nothing but memory is waited for.
double readPlane(std::span<const double> x)
{
    constexpr std::size_t chains = 64;
    double sums[chains] = {};
    for (std::size_t i = 0; i + chains <= x.size(); i += chains)
        for (std::size_t c = 0; c < chains; ++c)
            sums[c] += x[i + c];
    double sum = 0.0;
    for (const double s : sums)
        sum += s;
    return sum;
}

void ReadPass(benchmark::State& state)
{
    trial(); // made before time is taken
    for (auto _ : state)
        for (int c = 0; c < channels; ++c)
            benchmark::DoNotOptimize(readPlane(plane(trial(), c)));
    state.SetBytesProcessed(state.iterations() * channels * times * freqs * 8);
}

/// The six statistics over channels, at every point and as a whole.
void SumPlanes(benchmark::State& state)
{
    CMEGDatazk data;
    for (auto _ : state) {
        if (data.computTrialSpctm(&trial(), false, false, false, false, active, real) == nullptr)
            state.SkipWithError("there are no sums");
    }
    state.SetBytesProcessed(state.iterations() * channels * times * freqs * 8);
}

BENCHMARK(ReadPass)->Unit(benchmark::kMillisecond);
BENCHMARK(SumPlanes)->Unit(benchmark::kMillisecond);
BENCHMARK(OnePass)->Unit(benchmark::kMillisecond);
BENCHMARK(Scale)->Unit(benchmark::kMillisecond);
BENCHMARK(BaselineDivision)->Unit(benchmark::kMillisecond);
BENCHMARK(Logarithm)->Unit(benchmark::kMillisecond);
BENCHMARK(RootMeanSquareNormalization)->Unit(benchmark::kMillisecond);

} // namespace
