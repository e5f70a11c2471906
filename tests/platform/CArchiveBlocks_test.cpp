// Blocks too large for the archive's buffer and too small for a call of their own: the buffer becomes wide for them.

#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/memoryArchive.h"
#include "tests/platform/archiveChecks.h"

#include <cstddef>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveBlocks_test {
namespace {

using ::testing::ElementsAre;
using namespace archiveChecks;

constexpr unsigned wide = 128 * 1024; // bytes of the wide buffer
constexpr unsigned large = 64 * 1024; // from here on a block goes past it
constexpr unsigned middling = 9600;   // samples of a short channel

// So many blocks, each behind its number.
void storeBlocks(CArchive& ar, int blocks, unsigned size)
{
    const auto block = bytePattern(size);
    for (std::int32_t i = 0; i < blocks; ++i) {
        ar << i;
        ar.Write(block.data(), size);
    }
}

void expectBlocks(CArchive& ar, int blocks, unsigned size)
{
    const auto expected = bytePattern(size);
    for (std::int32_t i = 0; i < blocks; ++i) {
        std::vector<std::byte> block(size);
        std::int32_t number = -1;
        ar >> number;
        ASSERT_EQ(number, i);
        ASSERT_EQ(ar.Read(block.data(), size), size);
        ASSERT_EQ(block, expected) << i;
    }
}

ByteBuilder blockBytes(int blocks, unsigned size)
{
    ByteBuilder bytes;
    for (std::int32_t i = 0; i < blocks; ++i)
        bytes.i32(i).raw(bytePattern(size));
    return bytes;
}

TEST(CArchiveBlocks, MiddlingOnesAreGatheredIntoCallsOf128Kilobytes)
{
    constexpr unsigned total = 30 * (middling + 4);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    storeBlocks(store, 30, middling);
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(wide, wide, total - 2 * wide));
    EXPECT_TRUE(sameBytes(file.content(), blockBytes(30, middling)));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    expectBlocks(load, 30, middling);
    EXPECT_EQ(load.bytesLeft(), 0U);
    // What the narrow buffer held, and the rest of the first block, come before the first wide call.
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, wide, wide, wide));
}

TEST(CArchiveBlocks, CallsComeBackToWholePagesOfTheFile)
{
    FailingFile file;
    CArchive store(&file, CArchive::store);
    store << std::int32_t{1};
    store.Flush();
    storeBlocks(store, 30, middling);
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4, wide - 4, wide, 30 * (middling + 4) - (wide - 4) - wide));
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().i32(1).append(blockBytes(30, middling))));
}

TEST(CArchiveBlocks, OfEverySizeAroundTheBoundsAreWhole)
{
    for (const unsigned size : {4095U, 4096U, 4097U, large - 1, large, large + 1, wide - 1, wide, wide + 1}) {
        SCOPED_TRACE(size);
        const auto bytes = storedBytes([&](CArchive& ar) { storeBlocks(ar, 5, size); });
        EXPECT_TRUE(sameBytes(bytes, blockBytes(5, size)));
        LoadingArchive archive(bytes);
        expectBlocks(*archive, 5, size);
    }
}

TEST(CArchiveBlocks, LargeOnesStillGoPastTheWideBufferInOneCall)
{
    const auto block = bytePattern(large);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    storeBlocks(store, 2, middling);
    store.Write(block.data(), large);
    store << std::int32_t{2};
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(2 * (middling + 4), large, 4));
    EXPECT_TRUE(sameBytes(file.content(), blockBytes(2, middling).raw(block).i32(2)));
}

TEST(CArchiveBlocks, ScalarsAndTextsGoOnThroughTheWideBuffer)
{
    const auto bytes = storedBytes([&](CArchive& ar) {
        ar << 0.5;
        storeBlocks(ar, 1, middling);
        for (std::int32_t i = 0; i < 100'000; ++i)
            ar << i << CString("text");
    });
    LoadingArchive archive(bytes);
    double first = 0;
    *archive >> first;
    EXPECT_EQ(first, 0.5);
    expectBlocks(*archive, 1, middling);
    for (std::int32_t i = 0; i < 100'000; ++i) {
        std::int32_t number = -1;
        CString text;
        *archive >> number >> text;
        ASSERT_EQ(number, i);
        ASSERT_EQ(text, "text");
    }
    EXPECT_EQ(archive->bytesLeft(), 0U);
}

TEST(CArchiveBlocks, PositionAndBytesLeftAreThoseOfTheFields)
{
    const auto bytes = blockBytes(20, middling).bytes();
    LoadingArchive archive(bytes);
    std::vector<std::byte> block(middling);
    for (std::uint64_t i = 0; i < 20; ++i) {
        std::int32_t number = 0;
        *archive >> number;
        EXPECT_EQ(archive->position(), i * (middling + 4) + 4);
        archive->Read(block.data(), middling);
        EXPECT_EQ(archive->position(), (i + 1) * (middling + 4));
        EXPECT_EQ(archive->bytesLeft(), bytes.size() - archive->position());
    }
    CMemFile file;
    CArchive store(&file, CArchive::store);
    storeBlocks(store, 20, middling);
    EXPECT_EQ(store.position(), bytes.size());
    store.Flush();
    EXPECT_EQ(store.position(), bytes.size());
    EXPECT_EQ(file.GetPosition(), bytes.size());
}

TEST(CArchiveBlocks, FlushPutsALoadingFileBehindWhatWasRead)
{
    CMemFile file{std::span(blockBytes(20, middling).bytes())};
    CArchive archive(&file, CArchive::load);
    expectBlocks(archive, 3, middling);
    archive.Flush();
    EXPECT_EQ(file.GetPosition(), 3U * (middling + 4));
    std::int32_t number = 0;
    archive >> number;
    EXPECT_EQ(number, 3);
}

TEST(CArchiveBlocks, AFileThatEndsInsideAMiddlingBlockGivesWhatWasThere)
{
    auto bytes = blockBytes(3, middling).bytes();
    bytes.resize(bytes.size() - 100);
    LoadingArchive archive(bytes);
    expectBlocks(*archive, 2, middling);
    std::int32_t number = 0;
    *archive >> number;
    std::vector<std::byte> block(middling);
    EXPECT_EQ(archive->Read(block.data(), middling), middling - 100);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_EQ(archive->Read(block.data(), middling), 0U);
    EXPECT_THROW(*archive >> number, CArchiveException);
}

TEST(CArchiveBlocks, WithoutMemoryForTheWideBufferTheyGoPastTheNarrowOne)
{
    const auto block = bytePattern(middling);
    const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    storeBlocks(store, 2, middling);
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4, middling, 4, middling));
    EXPECT_TRUE(sameBytes(file.content(), blockBytes(2, middling)));
    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    expectBlocks(load, 2, middling);
    EXPECT_GT(none.failures(), 2);
}

TEST(CArchiveBlocks, AFailedWriteOfTheWideBufferIsToldOnceAndGivesItUp)
{
    FailingFile file;
    file.failWrite(2, CFileException::diskFull);
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(fileFaultCause([&] { storeBlocks(archive, 30, middling); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), wide);
    archive.Close();
    EXPECT_EQ(file.GetLength(), wide);
}

TEST(CArchiveBlocks, AFullDiskIsToldByCloseAtTheLatest)
{
    FailingFile file;
    file.fullAfter(5000);
    CArchive archive(&file, CArchive::store);
    storeBlocks(archive, 1, middling);
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::diskFull);
}

TEST(CArchiveBlocks, AFailedReadPasses)
{
    FailingFile file{std::span(blockBytes(3, middling).bytes())};
    CArchive archive(&file, CArchive::load);
    std::vector<std::byte> block(middling);
    file.failRead(1);
    EXPECT_EQ(fileFaultCause([&] { archive.Read(block.data(), middling); }), CFileException::hardIO);
}

} // namespace
} // namespace megset::CArchiveBlocks_test
