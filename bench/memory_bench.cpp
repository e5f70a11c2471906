// Allocating, filling and releasing sample memory again and again, beside plain new double[].
#include <algorithm>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "megset/platform/memory.h"

namespace {

using namespace megset;

SampleArray newSamples(std::size_t n)
{
    return tryNewSamples(static_cast<std::int64_t>(n), false);
}

std::unique_ptr<double[]> newPlain(std::size_t n)
{
    return std::unique_ptr<double[]>(new double[n]);
}

/// `arrays` arrays of n samples are made, filled and released.
template <class Make>
void allocateFillRelease(benchmark::State& state, Make make)
{
    const auto arrays = static_cast<std::size_t>(state.range(0));
    const auto n = static_cast<std::size_t>(state.range(1));
    for (auto _ : state) {
        std::vector<decltype(make(n))> held(arrays);
        for (auto& array : held) {
            array = make(n);
            std::fill_n(array.get(), n, 1.0);
            benchmark::DoNotOptimize(array.get());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(arrays * n * sizeof(double)));
    releaseIdleSampleMemory();
}

void shapes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Args({1, 5'000'000})->Args({712, 57'600})->Unit(benchmark::kMillisecond);
    for (const int kib : {2, 4, 8, 16, 32, 64, 128, 256}) // where the pool begins to pay
        benchmark->Args({712, kib * 128});
}

BENCHMARK_CAPTURE(allocateFillRelease, samples, newSamples)->Apply(shapes);
BENCHMARK_CAPTURE(allocateFillRelease, plainNew, newPlain)->Apply(shapes);

/// The pool alone, without a threshold.
void PoolBlocks(benchmark::State& state)
{
    SamplePool pool;
    const auto bytes = static_cast<std::size_t>(state.range(1)) * sizeof(double);
    std::vector<void*> held(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        for (void*& block : held) {
            block = pool.allocate(bytes, false);
            std::fill_n(static_cast<double*>(block), state.range(1), 1.0);
            benchmark::DoNotOptimize(block);
        }
        for (void* block : held)
            pool.release(block);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(held.size() * bytes));
}
BENCHMARK(PoolBlocks)->Apply(shapes);

/// A new trial of another shape each time: nothing can be reused.
void EveryTrialOfAnotherShape(benchmark::State& state)
{
    std::size_t round = 0;
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::size_t n = 57'600 + 512 * (round++ % 3);
        std::vector<SampleArray> held(712);
        for (SampleArray& array : held) {
            array = newSamples(n);
            std::fill_n(array.get(), n, 1.0);
        }
        bytes += 712 * n * sizeof(double);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
    releaseIdleSampleMemory();
}
BENCHMARK(EveryTrialOfAnotherShape)->Unit(benchmark::kMillisecond);

} // namespace
