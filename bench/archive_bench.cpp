// What the archive costs: blocks against plain system calls, scalars in memory.

#include "bench/benchFolder.h"

#include "megset/platform/CArchive.h"
#include "megset/platform/CMemFile.h"
#include "megset/platform/paths.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace megset {
namespace {

constexpr std::size_t blockBytes = 100'000'000;
constexpr std::int64_t fieldCount = 1'000'000;

std::vector<double>& samples()
{
    static std::vector<double> values(blockBytes / sizeof(double), 1.5);
    return values;
}

void tellBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(blockBytes));
}

void tellFields(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * fieldCount);
}

// ---- one block of 100 MB

void writePlain(const std::filesystem::path& path)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    for (std::size_t done = 0; done < blockBytes;) {
        const ssize_t put = ::write(file, reinterpret_cast<const char*>(samples().data()) + done, blockBytes - done);
        if (put <= 0)
            break;
        done += static_cast<std::size_t>(put);
    }
    ::close(file);
}

void writeArchive(const std::filesystem::path& path)
{
    CFile file(fromNative(path), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
    CArchive archive(&file, CArchive::store);
    archive.Write(samples().data(), static_cast<unsigned>(blockBytes));
    archive.Close();
    file.Close();
}

void blockWritePlain(benchmark::State& state)
{
    for (auto _ : state)
        writePlain(benchFolder() / "plain");
    tellBytes(state);
}

void blockWriteArchive(benchmark::State& state)
{
    for (auto _ : state)
        writeArchive(benchFolder() / "archive");
    tellBytes(state);
}

void blockReadPlain(benchmark::State& state)
{
    writePlain(benchFolder() / "plain");
    for (auto _ : state) {
        const int file = ::open((benchFolder() / "plain").c_str(), O_RDONLY);
        for (std::size_t done = 0; done < blockBytes;) {
            const ssize_t got = ::read(file, reinterpret_cast<char*>(samples().data()) + done, blockBytes - done);
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        ::close(file);
    }
    tellBytes(state);
}

void blockReadArchive(benchmark::State& state)
{
    writeArchive(benchFolder() / "archive");
    for (auto _ : state) {
        CFile file(fromNative(benchFolder() / "archive"), CFile::modeRead | CFile::shareExclusive);
        CArchive archive(&file, CArchive::load);
        if (archive.Read(samples().data(), static_cast<unsigned>(blockBytes)) != blockBytes)
            state.SkipWithError("the block is not whole");
    }
    tellBytes(state);
}

BENCHMARK(blockWritePlain)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(blockWriteArchive)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(blockReadPlain)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(blockReadArchive)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- a million fields, by `exchange` as the formats do it

template <class Field>
void fieldsStore(benchmark::State& state)
{
    CMemFile file;
    std::vector<Field> fields(static_cast<std::size_t>(fieldCount), Field{3});
    for (auto _ : state) {
        file.SeekToBegin();
        CArchive archive(&file, CArchive::store);
        for (Field& field : fields)
            archive.exchange(field);
        archive.Close();
    }
    tellFields(state);
}

template <class Field>
void fieldsLoad(benchmark::State& state)
{
    CMemFile file(std::vector<std::byte>(static_cast<std::size_t>(fieldCount) * sizeof(Field)));
    std::vector<Field> fields(static_cast<std::size_t>(fieldCount));
    for (auto _ : state) {
        file.SeekToBegin();
        CArchive archive(&file, CArchive::load);
        for (Field& field : fields)
            archive.exchange(field);
        benchmark::ClobberMemory();
    }
    tellFields(state);
}

// The same by a list of named fields, five at a time.
void recordsStore(benchmark::State& state)
{
    CMemFile file;
    std::int32_t id = 1;
    std::int32_t type = 2;
    double x = 3;
    double y = 4;
    double rate = 5;
    for (auto _ : state) {
        file.SeekToBegin();
        CArchive archive(&file, CArchive::store);
        for (std::int64_t i = 0; i < fieldCount / 5; ++i)
            EXCHANGE_FIELDS(archive, id, type, x, y, rate);
        archive.Close();
    }
    tellFields(state);
}

BENCHMARK(fieldsStore<std::int32_t>);
BENCHMARK(fieldsStore<double>);
BENCHMARK(fieldsLoad<std::int32_t>);
BENCHMARK(fieldsLoad<double>);
BENCHMARK(recordsStore);

} // namespace
} // namespace megset
