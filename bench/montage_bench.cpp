// Montages at the size of an EEG recording: the average reference and a single reference, beside one pass over the
// samples, which is what memory allows, and beside the steps done channel by channel.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/arithmetic.h"

#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr int channels = 128;
constexpr std::int64_t samples = 200'000;

/// A trial of channels of noise, all of them listed for the montage.
std::unique_ptr<CMDTrialzk> makeTrial()
{
    auto trial = std::make_unique<CMDTrialzk>();
    if (!trial->allocateChannels(channels))
        return nullptr;
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-100.0, 100.0);
    std::vector<double> values(samples);
    for (int c = 0; c < channels; ++c) {
        for (double& v : values)
            v = noise(random);
        trial->getChannel(c)->addData(samples, values.data());
        CMtgChnlIdNamezk entry;
        entry.m_nMtgChnlID = c;
        trial->addCopyMcrChnl(&entry);
    }
    return trial;
}

CMDTrialzk& trial()
{
    static const auto instance = makeTrial();
    return *instance;
}

/// The first `count` channels as references.
void setReferences(int count, double divisor)
{
    trial().m_pMontageCr->m_aMtgOperators.RemoveAll();
    for (int c = 0; c < count; ++c) {
        CMtgChnlOperatorzk reference;
        reference.m_nMtgChnlID = c;
        trial().m_pMontageCr->m_aMtgOperators.addCopy(reference);
    }
    trial().m_pMontageCr->m_dMtgDivisor = divisor;
}

void subtract(benchmark::State& state, int references)
{
    setReferences(references, references);
    for (auto _ : state) {
        trial().m_bMontageCrDone = 0;
        if (!trial().doCommonRefSubstractW())
            state.SkipWithError("the montage failed");
    }
    state.SetBytesProcessed(state.iterations() * channels * samples * 16);
}

void AverageReference(benchmark::State& state)
{
    subtract(state, channels);
}

void SingleReference(benchmark::State& state)
{
    subtract(state, 1);
}

std::span<double> samplesOf(int channel)
{
    return {trial().getChannMEGData(channel), static_cast<std::size_t>(samples)};
}

/// The average reference as a sum over whole channels, and then the subtraction from whole channels.
void AverageReferenceChannelByChannel(benchmark::State& state)
{
    std::vector<double> mean(samples);
    for (auto _ : state) {
        numeric::fill(mean, 0.0);
        for (int c = 0; c < channels; ++c)
            numeric::addWeightedInPlace(mean, samplesOf(c), 1.0);
        numeric::divideInPlace(mean, channels);
        for (int c = 0; c < channels; ++c)
            numeric::subtractInPlace(samplesOf(c), mean);
    }
    state.SetBytesProcessed(state.iterations() * channels * samples * 16);
}

/// Each sample read and written once.
void OnePass(benchmark::State& state)
{
    trial();
    for (auto _ : state)
        for (int c = 0; c < channels; ++c)
            numeric::scaleInPlace(samplesOf(c), 1.0);
    state.SetBytesProcessed(state.iterations() * channels * samples * 16);
}

BENCHMARK(OnePass)->Unit(benchmark::kMillisecond);
BENCHMARK(AverageReference)->Unit(benchmark::kMillisecond);
BENCHMARK(AverageReferenceChannelByChannel)->Unit(benchmark::kMillisecond);
BENCHMARK(SingleReference)->Unit(benchmark::kMillisecond);

} // namespace
