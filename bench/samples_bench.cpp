// The sample store at the size of one trial: statistics of all channels beside the plain sequential sum, and blocks of
// integers taken in beside a copy into warm memory.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr std::int64_t channels = 356;
constexpr std::int64_t statisticsSamples = 57'600;
constexpr std::int64_t integerSamples = 72'000;

/// A trial of channels of noise.
std::unique_ptr<CMDTrialzk> makeTrial()
{
    auto trial = std::make_unique<CMDTrialzk>();
    if (!trial->m_ppChannel.allocate(channels))
        return nullptr;
    trial->m_nTotalChannel = channels;
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
    std::vector<double> samples(statisticsSamples);
    for (std::int64_t c = 0; c < channels; ++c) {
        for (double& v : samples)
            v = noise(random);
        CMDChannelzk* channel = trial->m_ppChannel.set(c, std::make_unique<CMDChannelzk>());
        channel->addData(statisticsSamples, samples.data());
    }
    return trial;
}

const CMDTrialzk& trial()
{
    static const auto instance = makeTrial();
    return *instance;
}

__attribute__((noinline)) double plainSum(const double* x, std::int64_t n)
{
    double sum = 0.0;
    for (std::int64_t i = 0; i < n; ++i)
        sum += x[i];
    return sum;
}

/// One pass over all channels counts each sample once, whatever the operation reads again.
template <class Function>
void perChannel(benchmark::State& state, Function function)
{
    trial(); // made before time is taken
    for (auto _ : state)
        for (int c = 0; c < channels; ++c)
            function(*trial().getChannel(c));
    state.SetItemsProcessed(state.iterations() * channels * statisticsSamples);
}

void PlainSequentialSum(benchmark::State& state)
{
    perChannel(state, [](const CMDChannelzk& channel) {
        benchmark::DoNotOptimize(plainSum(channel.getDataWave(), channel.getTotalSample()));
    });
}

void MinMeaMaxChannelByChannel(benchmark::State& state)
{
    perChannel(state, [](const CMDChannelzk& channel) {
        double min, mean, max, meanSquare;
        channel.getSelectMinMeaMaxV(0, statisticsSamples - 1, &min, &mean, &max, &meanSquare);
        benchmark::DoNotOptimize(meanSquare);
    });
}

void MinMeaMaxSdChannelByChannel(benchmark::State& state)
{
    perChannel(state, [](const CMDChannelzk& channel) {
        double min, mean, max, rms, sd, meanPlus2Sd;
        channel.getSelectMinMeaMaxSdV(0, statisticsSamples - 1, &min, &mean, &max, &rms, &sd, &meanPlus2Sd);
        benchmark::DoNotOptimize(meanPlus2Sd);
    });
}

void MinMeaMaxSdAllChannels(benchmark::State& state)
{
    std::vector<ChannelStatistics> out(channels);
    for (auto _ : state) {
        trial().getAllSelectMinMeaMaxSdV(0, statisticsSamples - 1, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * channels * statisticsSamples);
}

BENCHMARK(PlainSequentialSum)->Unit(benchmark::kMillisecond);
BENCHMARK(MinMeaMaxChannelByChannel)->Unit(benchmark::kMillisecond);
BENCHMARK(MinMeaMaxSdChannelByChannel)->Unit(benchmark::kMillisecond);
BENCHMARK(MinMeaMaxSdAllChannels)->Unit(benchmark::kMillisecond);

/// The integers of a whole recording go into working and backup arrays. Bytes are those written.
void AddDataL(benchmark::State& state)
{
    const std::vector<std::int32_t> recording(channels * integerSamples, 12345);
    std::vector<std::unique_ptr<CMDChannelzk>> all;
    for (std::int64_t c = 0; c < channels; ++c)
        all.push_back(std::make_unique<CMDChannelzk>());
    const auto add = [&] {
        for (std::size_t c = 0; c < all.size(); ++c)
            all[c]->addDataL(integerSamples, recording.data() + c * integerSamples);
    };
    add();
    for (auto _ : state) {
        if (state.range(0) != 0) { // a trial leaves and the next one comes
            for (auto& channel : all)
                channel->_cleanTimeDataC(true);
        }
        add();
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * channels * integerSamples * 2 * 8);
}
BENCHMARK(AddDataL)->ArgName("newArrays")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// As many bytes written by memcpy, array by array.
void MemcpyIntoWarmMemory(benchmark::State& state)
{
    const std::size_t bytes = channels * integerSamples * 2 * sizeof(double);
    const SampleArray from = tryNewSamples(channels * integerSamples * 2, true);
    const SampleArray to = tryNewSamples(channels * integerSamples * 2, true);
    std::memset(to.get(), 1, bytes);
    std::memset(from.get(), 1, bytes);
    for (auto _ : state) {
        std::memcpy(to.get(), from.get(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK(MemcpyIntoWarmMemory)->Unit(benchmark::kMillisecond);

} // namespace
