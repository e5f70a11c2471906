// Noise reduction to order 3 at the size of a minute's recording: the dataset's operation, the sums alone, and a plain
// loop over channels, all over 273 gradiometers of 17 references.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/weightedSums.h"

#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr int channels = 356;
constexpr int references = 28; // the first channels; sums use the first of them
constexpr int gradiometers = 273;
constexpr std::size_t terms = 17;
constexpr std::int64_t samples = 72'000;

CString nameOf(int channel)
{
    return CString::formatted(channel < references ? "R%03d-1" : "M%03d-1", channel);
}

/// The coefficients differ from channel to channel, the references don't, as in real recordings.
CCoefficientDatazk recordOf(int channel, std::minstd_rand& random)
{
    std::uniform_real_distribution<double> coefficient(-0.01, 0.01);
    CCoefficientDatazk record;
    record.m_strCoefSensorName = nameOf(channel);
    record.m_nCoefType = CCoefficientData::getCoefficientType(3, true, false);
    record.m_nCoefCount = static_cast<int>(terms);
    for (std::size_t k = 0; k < terms; ++k) {
        record.m_aCoefRefName[k] = nameOf(static_cast<int>(k));
        record.m_aCoefValue[k] = coefficient(random);
    }
    return record;
}

std::unique_ptr<CMEGDatazk> makeDataset()
{
    auto data = std::make_unique<CMEGDatazk>();
    if (!data->initMEGData(1, channels, samples))
        return nullptr;
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
    std::vector<CCoefficientDatazk> records;
    for (int c = 0; c < channels; ++c) {
        CMDChannelzk& channel = *data->getMDTrial(0)->getChannel(c);
        channel.setChannelName(nameOf(c), false);
        channel.m_nChannelType = c < references ? 10 : c < references + gradiometers ? 100 : 302;
        if (c < references + gradiometers) {
            CMEGSensorzk* sensor = channel.ensureMEGSensor();
            sensor->m_strSensorName = nameOf(c);
            sensor->initSensorInfo(c, channel.m_nChannelType, 0, 0, 1e9, 1.0, 1.0, 0.0);
            sensor->setRealIdealCoefMode(true);
        }
        for (std::int64_t i = 0; i < samples; ++i)
            channel.getDataWave()[i] = noise(random);
        if (c >= references && c < references + gradiometers)
            records.push_back(recordOf(c, random));
    }
    data->m_recordInfo.m_coefficients.addCoefficientsData(static_cast<int>(records.size()), records.data());
    return data;
}

CMEGDatazk& dataset()
{
    static const auto instance = makeDataset();
    return *instance;
}

std::span<double> row(int channel)
{
    return {dataset().getMDTrial(0)->getChannel(channel)->getDataWave(), static_cast<std::size_t>(samples)};
}

void setOrder(int order)
{
    for (int c = references; c < references + gradiometers; ++c)
        dataset().getMDTrial(0)->getChannel(c)->getMEGSensorzk()->setGradOrderNo(order);
}

void countBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * channels * samples * 8);
}

/// From order 0 to order 3: what `megset gradient --order 3` does to a trial in memory.
void NoiseReductionToOrder3(benchmark::State& state)
{
    setOrder(0);
    for (auto _ : state) {
        dataset().setGradientNoiseReduction(3, true, false);
        setOrder(0);
        benchmark::ClobberMemory();
    }
    countBytes(state);
}
BENCHMARK(NoiseReductionToOrder3)->Unit(benchmark::kMillisecond);

/// From order 3 to order 3: the old sums go back in the same pass.
void NoiseReductionBackAndForth(benchmark::State& state)
{
    setOrder(3);
    for (auto _ : state) {
        dataset().setGradientNoiseReduction(3, true, false);
        benchmark::ClobberMemory();
    }
    setOrder(0);
    countBytes(state);
}
BENCHMARK(NoiseReductionBackAndForth)->Unit(benchmark::kMillisecond);

std::vector<double> coefficientsOf(int gradiometer)
{
    const CCoefficientDatazk& record = *dataset().m_recordInfo.m_coefficients.m_aCoefRecord[gradiometer];
    return {record.m_aCoefValue.begin(), record.m_aCoefValue.begin() + terms};
}

void WeightedSumsAlone(benchmark::State& state)
{
    std::vector<std::span<const double>> from;
    for (std::size_t k = 0; k < terms; ++k)
        from.push_back(row(static_cast<int>(k)));
    std::vector<std::vector<double>> weights;
    std::vector<numeric::WeightedSum> sums;
    for (int g = 0; g < gradiometers; ++g) {
        weights.push_back(coefficientsOf(g));
        sums.push_back({row(references + g), from, weights.back(), true});
    }
    for (auto _ : state) {
        numeric::addWeightedSums(sums);
        benchmark::ClobberMemory();
    }
    countBytes(state);
}
BENCHMARK(WeightedSumsAlone)->Unit(benchmark::kMillisecond);

__attribute__((noinline)) void plainReduction(double* target, const double* const* from, const double* weights)
{
    for (std::int64_t i = 0; i < samples; ++i) {
        double s = 0.0;
        for (std::size_t k = 0; k < terms; ++k)
            s += from[k][i] * weights[k];
        target[i] -= s;
    }
}

void PlainLoop(benchmark::State& state)
{
    std::vector<const double*> from;
    for (std::size_t k = 0; k < terms; ++k)
        from.push_back(row(static_cast<int>(k)).data());
    std::vector<std::vector<double>> weights;
    for (int g = 0; g < gradiometers; ++g)
        weights.push_back(coefficientsOf(g));
    for (auto _ : state) {
        for (int g = 0; g < gradiometers; ++g)
            plainReduction(row(references + g).data(), from.data(), weights[static_cast<std::size_t>(g)].data());
        benchmark::ClobberMemory();
    }
    countBytes(state);
}
BENCHMARK(PlainLoop)->Unit(benchmark::kMillisecond);

} // namespace
