// The header of the real CTF recording, which MEGSET_TEST_DATA names: its .res4 file alone, and all that opening does.

#include "apps/readers/ctf/openCtf.h"

#include <cstdlib>
#include <filesystem>

#include <benchmark/benchmark.h>

namespace {

using namespace megset;

constexpr const char* recordingName = "testdata_ctf_short_discontinuous";

/// The folder of the recording; empty, with the benchmark skipped, where there is none.
std::filesystem::path recording(benchmark::State& state)
{
    const char* data = std::getenv("MEGSET_TEST_DATA");
    const std::filesystem::path folder =
        std::filesystem::path(data != nullptr ? data : "") / "ctf" / (std::string(recordingName) + ".ds");
    if (data != nullptr && std::filesystem::is_directory(folder))
        return folder;
    state.SkipWithError("MEGSET_TEST_DATA names no folder with the recording");
    return {};
}

void ReadRes4(benchmark::State& state)
{
    const std::filesystem::path folder = recording(state);
    if (folder.empty())
        return;
    const std::filesystem::path file = folder / (std::string(recordingName) + ".res4");
    for (auto _ : state)
        benchmark::DoNotOptimize(ctf::parseRes4(ctf::readBytes(file), file).channels.size());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(file)));
}
BENCHMARK(ReadRes4)->Unit(benchmark::kMillisecond);

void OpenRecording(benchmark::State& state)
{
    const std::filesystem::path folder = recording(state);
    if (folder.empty())
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(ctf::openCtf(folder).trials());
}
BENCHMARK(OpenRecording)->Unit(benchmark::kMillisecond);

} // namespace
