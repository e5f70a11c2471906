// Scans of a trigger channel of 10 million samples with 5,000 pulses, beside the plain sequential sum of as many
// samples in the same run, and reports of 100,000 marks.
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"

#include "comparison.h"
#include "tests/kit/SilentHost.h"

namespace {

using namespace megset;

constexpr std::int64_t samples = 10'000'000;
constexpr std::int64_t pulses = 5'000;
constexpr std::int64_t pulseSamples = 5;

/// Pulses of codes 1 to 20 on a line at zero, with noise of that deviation.
std::vector<double> stimulus(double noise)
{
    std::mt19937 random(1);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<double> line(samples);
    if (noise > 0.0)
        for (double& v : line)
            v = noise * normal(random);
    for (std::int64_t p = 0; p < pulses; ++p) {
        const double code = 1.0 + static_cast<double>(p % 20);
        for (std::int64_t i = 0; i < pulseSamples; ++i)
            line[static_cast<std::size_t>(p * (samples / pulses) + 500 + i)] += code;
    }
    return line;
}

CMDChannelzk& channelWith(CMEGDatazk& data, const std::vector<double>& line)
{
    data.initMEGData(1, 1, 1);
    CMDChannelzk& channel = *data.getTrialzk(0)->getChannel(0);
    channel.addData(samples, line.data());
    channel.m_nChannelType = 600;
    data.m_recordInfo.m_dRecSampleRate = 1000.0;
    return channel;
}

// Not to be reordered by the compiler, as no library may.
__attribute__((noinline)) double sequentialSum(const double* x, std::int64_t n)
{
    double sum = 0.0;
    for (std::int64_t i = 0; i < n; ++i)
        sum += x[i];
    return sum;
}

using Check = int (CMEGData6Classify::*)(bool);

/// Scans the dataset of that one trial. `ratio` is the scan's rate over that of the sum; noise is in thousandths.
void check(benchmark::State& state, Check how, int mode)
{
    SilentHost host(IDYES);
    CUserHost* former = AfxSetHost(&host);
    const std::vector<double> line = stimulus(1e-3 * static_cast<double>(state.range(0)));
    CMEGDatazk data;
    CMDChannelzk& channel = channelWith(data, line);
    Comparison comparison;
    data.m_mkTrig.m_trigScanParam.m_nTrigScanMode = mode;
    for (auto _ : state) {
        std::copy(line.begin(), line.end(), channel.getDataWave()); // a scan may have changed it
        state.SetIterationTime(comparison.measure(
            [&] { benchmark::DoNotOptimize(sequentialSum(line.data(), samples)); }, [&] { (data.*how)(true); }));
    }
    comparison.tell(state);
    std::int64_t found = 0;
    for (int i = 0; i < data.m_mkTrig.getTotalMarkers(); ++i)
        found += data.m_mkTrig.getMarker(i, false)->m_nMarkCount;
    state.counters["found"] = static_cast<double>(found);
    state.counters["markers"] = data.m_mkTrig.getTotalMarkers();
    AfxSetHost(former);
}
#define SCAN(name, how, mode)                                                                                          \
    BENCHMARK_CAPTURE(check, name, &CMEGData6Classify::how, mode)                                                      \
        ->Arg(0)                                                                                                       \
        ->Arg(50)                                                                                                      \
        ->UseManualTime()                                                                                              \
        ->Unit(benchmark::kMillisecond)
SCAN(plain, checkTrigPro, 0);
SCAN(pro, checkTrig, 0);
SCAN(absDc, checkTrigAbsDc, 0);
SCAN(absDcM, checkTrigAbsDcM, 0);

/// Both reports of 100,000 marks in as many trials as told, over 20 markers.
void report(benchmark::State& state, CString (CMEGData6Classify::*how)())
{
    SilentHost host(IDYES);
    CUserHost* former = AfxSetHost(&host);
    const int trials = static_cast<int>(state.range(0));
    CMEGDatazk data;
    data.m_ppTrial.allocate(trials);
    data.m_nTotalTrial = trials;
    for (int m = 0; m < 20; ++m)
        data.m_mkTrig.addTrigger(m, 5'000, 0, 1);
    for (int i = 0; i < 100'000; ++i) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = i % trials;
        point.m_nMarkPtBegin = i;
        point.m_dMarkPtBegin = i * 0.25;
        data.m_mkTrig.getMarker(i % 20, false)->addMarkPt(point);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize((data.*how)());
    AfxSetHost(former);
}
BENCHMARK_CAPTURE(report, std, &CMEGData6Classify::getTrialTrigInfoStd)
    ->Arg(1)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(report, pro, &CMEGData6Classify::getTrialTrigInfoPro)
    ->Arg(1)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond);

} // namespace
