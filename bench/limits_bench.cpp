// What the machine can do with one thread, which no operation over as many bytes can beat: memory read, copied and
// scaled in place, and a file written anew and read from the cache. Bytes count once, whatever is done to them.

#include "bench/benchFolder.h"
#include "bench/comparison.h"

#include "megset/numeric/multiversion.h"
#include "megset/platform/memory.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <vector>

namespace megset {
namespace {

constexpr std::int64_t values = 32'000'000; // 256 MB, as the larger of the other benchmarks have
constexpr std::size_t bytes = values * sizeof(double);

SampleArray touched()
{
    SampleArray array = tryNewSamples(values, false);
    std::fill_n(array.get(), values, 1.0);
    return array;
}

/// In huge pages, as the library has its samples.
double* memory(int which)
{
    static const SampleArray arrays[] = {touched(), touched()};
    return arrays[which].get();
}

void tellBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

/// Integers in eight chains of the widest vectors, so that nothing but memory is waited for.
MEGSET_MULTIVERSION std::uint64_t limitRead(const double* x)
{
    constexpr std::size_t chains = 64;
    std::uint64_t sums[chains] = {};
    for (std::size_t i = 0; i < values; i += chains) {
        std::uint64_t block[chains];
        std::memcpy(block, x + i, sizeof(block));
        for (std::size_t c = 0; c < chains; ++c)
            sums[c] += block[c];
    }
    std::uint64_t sum = 0;
    for (const std::uint64_t s : sums)
        sum += s;
    return sum;
}

MEGSET_MULTIVERSION void limitScale(double* x)
{
    for (std::int64_t i = 0; i < values; ++i)
        x[i] *= 1.0000001;
}

void MemoryRead(benchmark::State& state)
{
    memory(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(limitRead(memory(0)));
    tellBytes(state);
}

void MemoryCopy(benchmark::State& state)
{
    memory(0);
    for (auto _ : state) {
        std::memcpy(memory(1), memory(0), bytes);
        benchmark::ClobberMemory();
    }
    tellBytes(state);
}

void MemoryScale(benchmark::State& state)
{
    memory(0);
    for (auto _ : state) {
        limitScale(memory(0));
        benchmark::ClobberMemory();
    }
    tellBytes(state);
}

std::vector<char>& block()
{
    static std::vector<char> held(bytes, 1);
    return held;
}

void FileWrite(benchmark::State& state)
{
    block();
    for (auto _ : state) {
        std::filesystem::remove(benchFolder() / "limit");
        state.SetIterationTime(secondsOf([] { plainWrite(benchFolder() / "limit", block()); }).wall);
    }
    std::filesystem::remove(benchFolder() / "limit");
    tellBytes(state);
}

void FileRead(benchmark::State& state)
{
    plainWrite(benchFolder() / "limit", block());
    for (auto _ : state)
        state.SetIterationTime(secondsOf([] { plainRead(benchFolder() / "limit", block()); }).wall);
    std::filesystem::remove(benchFolder() / "limit");
    tellBytes(state);
}

BENCHMARK(MemoryRead)->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryCopy)->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryScale)->Unit(benchmark::kMillisecond);
BENCHMARK(FileWrite)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
BENCHMARK(FileRead)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

} // namespace
} // namespace megset
