// Rates of the loops in numeric/, beside the plain sequential sum and a copy into warm memory in the same run.
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/convert.h"
#include "megset/numeric/processorPath.h"
#include "megset/numeric/statistics.h"
#include "megset/platform/memory.h"

namespace {

using namespace megset;
using namespace megset::numeric;

constexpr std::size_t channels = 356;
constexpr std::size_t samples = 57'600;
constexpr std::size_t total = channels * samples;

std::span<double> fresh(SampleArray& array, std::size_t n)
{
    array = tryNewSamples(static_cast<std::int64_t>(n), true);
    return {array.get(), n};
}

/// Sample arrays of the size of one trial, filled with noise.
struct Trial
{
    Trial()
    {
        std::minstd_rand random(1);
        std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
        for (std::size_t c = 0; c < channels; ++c) {
            arrays[c] = tryNewSamples(samples, false);
            for (std::size_t i = 0; i < samples; ++i)
                arrays[c][i] = noise(random);
            rows.emplace_back(arrays[c].get(), samples);
        }
    }

    SampleArray arrays[channels];
    std::vector<Row> rows;
};

const Trial& trial()
{
    static const Trial instance;
    return instance;
}

__attribute__((noinline)) double plainSum(const double* x, std::size_t n)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i)
        sum += x[i];
    return sum;
}

void countBytes(benchmark::State& state, std::size_t bytesPerRun)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytesPerRun));
    state.SetLabel(std::string(processorPath()));
}

void PlainSequentialSum(benchmark::State& state)
{
    trial(); // made before time is taken
    for (auto _ : state)
        for (const Row& row : trial().rows)
            benchmark::DoNotOptimize(plainSum(row.data(), row.size()));
    countBytes(state, total * sizeof(double));
}
BENCHMARK(PlainSequentialSum)->Unit(benchmark::kMillisecond);

template <class Function>
void perRow(benchmark::State& state, Function function)
{
    for (auto _ : state)
        for (const Row& row : trial().rows)
            benchmark::DoNotOptimize(function(row));
    countBytes(state, total * sizeof(double));
}

BENCHMARK_CAPTURE(perRow, sum, [](Row x) { return sum(x); })->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perRow, minMax, [](Row x) { return minMax(x); })->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perRow, maxAbsolute, [](Row x) { return maxAbsolute(x); })->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perRow, statistics, [](Row x) { return statistics(x); })->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perRow, sumOfSquaredDeviations, [](Row x) {
    return sumOfSquaredDeviations(x, 1.0);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perRow, describe, [](Row x) { return describe(x, 1); })->Unit(benchmark::kMillisecond);

void StatisticsOfRows(benchmark::State& state)
{
    std::vector<SampleStatistics> out(channels);
    for (auto _ : state) {
        statisticsOfRows(trial().rows, out);
        benchmark::DoNotOptimize(out.data());
    }
    countBytes(state, total * sizeof(double));
}
BENCHMARK(StatisticsOfRows)->Unit(benchmark::kMillisecond);

void DescribeRows(benchmark::State& state)
{
    std::vector<RowStatistics> out(channels);
    for (auto _ : state) {
        describeRows(trial().rows, out, 1);
        benchmark::DoNotOptimize(out.data());
    }
    countBytes(state, total * sizeof(double));
}
BENCHMARK(DescribeRows)->Unit(benchmark::kMillisecond);

void MemcpyIntoWarmMemory(benchmark::State& state)
{
    SampleArray a, b;
    const auto from = fresh(a, total), to = fresh(b, total);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size_bytes());
        benchmark::ClobberMemory();
    }
    countBytes(state, total * sizeof(double));
}
BENCHMARK(MemcpyIntoWarmMemory)->Unit(benchmark::kMillisecond);

/// One source of type T, two targets; counts the bytes of one target.
template <class T, class Function>
void intoTwo(benchmark::State& state, Function function)
{
    SampleArray a, b;
    const auto to = fresh(a, total), alsoTo = fresh(b, total);
    const std::vector<T> from(total, T{1});
    for (auto _ : state) {
        function(std::span<const T>(from), to, alsoTo);
        benchmark::ClobberMemory();
    }
    countBytes(state, total * sizeof(double));
}

template <class T, class Function>
void intoOne(benchmark::State& state, Function function)
{
    intoTwo<T>(state, [&](auto from, auto to, auto) { function(from, to); });
}

void intToOne(benchmark::State& state)
{
    intoOne<std::int32_t>(state, [](auto from, auto to) { convert(from, to); });
}
void intToTwo(benchmark::State& state)
{
    intoTwo<std::int32_t>(state, [](auto from, auto to, auto alsoTo) { convert(from, to, alsoTo); });
}
void floatScaledToTwo(benchmark::State& state)
{
    intoTwo<float>(state, [](auto from, auto to, auto alsoTo) { convertScaled(from, 0.5, to, alsoTo); });
}
void copyToOne(benchmark::State& state)
{
    intoOne<double>(state, [](auto from, auto to) { copy(from, to); });
}
void copyToTwo(benchmark::State& state)
{
    intoTwo<double>(state, [](auto from, auto to, auto alsoTo) { copy(from, to, alsoTo); });
}
void scale(benchmark::State& state)
{
    intoTwo<double>(state, [](auto, auto to, auto) { scaleInPlace(to, 1.0); });
}
void divideByNumber(benchmark::State& state)
{
    intoTwo<double>(state, [](auto, auto to, auto) { divideInPlace(to, 1.0); });
}
void fillWithNumber(benchmark::State& state)
{
    intoTwo<double>(state, [](auto, auto to, auto) { fill(to, 1.0); });
}
void subtractFromRow(benchmark::State& state)
{
    intoTwo<double>(state, [](auto from, auto to, auto) { subtractInPlace(to, from); });
}
void addWeighted(benchmark::State& state)
{
    intoTwo<double>(state, [](auto from, auto to, auto) { addWeightedInPlace(to, from, 0.5); });
}
void differenceIntoTwo(benchmark::State& state)
{
    intoTwo<double>(state, [](auto from, auto to, auto alsoTo) { subtract(from, to, to, alsoTo); });
}
BENCHMARK(intToOne)->Unit(benchmark::kMillisecond);
BENCHMARK(intToTwo)->Unit(benchmark::kMillisecond);
BENCHMARK(floatScaledToTwo)->Unit(benchmark::kMillisecond);
BENCHMARK(copyToOne)->Unit(benchmark::kMillisecond);
BENCHMARK(copyToTwo)->Unit(benchmark::kMillisecond);
BENCHMARK(fillWithNumber)->Unit(benchmark::kMillisecond);
BENCHMARK(scale)->Unit(benchmark::kMillisecond);
BENCHMARK(divideByNumber)->Unit(benchmark::kMillisecond);
BENCHMARK(subtractFromRow)->Unit(benchmark::kMillisecond);
BENCHMARK(addWeighted)->Unit(benchmark::kMillisecond);
BENCHMARK(differenceIntoTwo)->Unit(benchmark::kMillisecond);

} // namespace
