// The buffer: what crosses its ends, and in which calls the bytes reach the file.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/memoryArchive.h"
#include "tests/platform/archiveChecks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveBuffer_test {
namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using namespace archiveChecks;

TEST(CArchiveBuffer, FieldsStraddleItsEndUnchanged)
{
    for (std::size_t front = 4090; front <= 4100; ++front) {
        const auto filling = bytePattern(front);
        const auto bytes = storedBytes([&](CArchive& ar) {
            for (const std::byte byte : filling)
                ar << std::to_integer<std::uint8_t>(byte);
            ar << 0.1 << std::int32_t{-3} << std::int16_t{5};
        });
        EXPECT_TRUE(sameBytes(bytes, ByteBuilder().raw(filling).f64(0.1).i32(-3).i16(5)));

        LoadingArchive archive(bytes);
        std::uint8_t byte = 0;
        for (std::size_t i = 0; i < front; ++i) {
            *archive >> byte;
            ASSERT_EQ(std::byte{byte}, filling[i]);
        }
        double d = 0;
        std::int32_t i = 0;
        std::int16_t s = 0;
        *archive >> d >> i >> s;
        EXPECT_EQ(d, 0.1);
        EXPECT_EQ(i, -3);
        EXPECT_EQ(s, 5);
    }
}

TEST(CArchiveBuffer, ScalarsMoveInBuffersOf4096Bytes)
{
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < 3000; ++i)
        store << i;
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4096, 4096, 12000 - 8192));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    for (std::int32_t i = 0; i < 3000; ++i) {
        std::int32_t number = -1;
        load >> number;
        ASSERT_EQ(number, i);
    }
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 4096, 4096));
}

TEST(CArchiveBuffer, IsWidenedForFieldsThatFillFourInTurn)
{
    constexpr unsigned wide = 128 * 1024;
    constexpr std::int32_t fields = 60'000; // 240,000 bytes
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < fields; ++i)
        store << i;
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4096, 4096, 4096, 4096, wide, 4 * fields - 4 * 4096 - wide));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    for (std::int32_t i = 0; i < fields; ++i) {
        std::int32_t number = -1;
        load >> number;
        ASSERT_EQ(number, i);
    }
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 4096, 4096, wide, wide));
}

TEST(CArchiveBuffer, StaysNarrowWhereLargeBlocksStandBetweenTheFields)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < 10; ++i) {
        store << i;
        store.Write(block.data(), 100'000);
    }
    store.Close();

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    std::vector<std::byte> back(block.size());
    for (std::int32_t i = 0; i < 10; ++i) {
        std::int32_t number = -1;
        load >> number;
        EXPECT_EQ(number, i);
        EXPECT_EQ(load.Read(back.data(), 100'000), 100'000U);
        EXPECT_EQ(back, block);
    }
    EXPECT_THAT(file.readSizes(), Each(AnyOf(4096U, 100'000U - 4092U)));
}

TEST(CArchiveBuffer, ArraysOfNumbersCrossItsEnds)
{
    for (const std::size_t front : {0U, 1U, 4000U, 4064U, 4065U, 4095U}) {
        SCOPED_TRACE(front);
        const auto bytes = bytePattern(static_cast<unsigned>(front));
        std::array<double, 4> numbers = {1.5, -2.0, 0.1, 1e300};
        std::int16_t shorts[3] = {1, -2, 3};
        FailingFile file;
        CArchive store(&file, CArchive::store);
        for (const std::byte byte : bytes)
            store << static_cast<std::uint8_t>(byte);
        store.exchange(numbers, shorts);
        store.Close();
        EXPECT_TRUE(sameBytes(file.content(),
                              ByteBuilder().raw(bytes).f64(1.5).f64(-2.0).f64(0.1).f64(1e300).i16(1).i16(-2).i16(3)));

        file.SeekToBegin();
        CArchive load(&file, CArchive::load);
        for (std::size_t i = 0; i < front; ++i) {
            std::uint8_t byte = 0;
            load >> byte;
        }
        std::array<double, 4> readNumbers = {};
        std::int16_t readShorts[3] = {};
        load.exchange(readNumbers, readShorts);
        EXPECT_EQ(readNumbers, numbers);
        EXPECT_THAT(readShorts, ElementsAre(1, -2, 3));
    }
}

TEST(CArchiveBuffer, ALargeBlockGoesPastItInOneCall)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    store << std::int32_t{1};
    store.Write(block.data(), 100'000);
    store << std::int32_t{2};
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4, 100'000, 4));
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().i32(1).raw(block).i32(2)));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    std::vector<std::byte> back(block.size());
    std::int32_t number = 0;
    load >> number;
    EXPECT_EQ(load.Read(back.data(), 100'000), 100'000U);
    EXPECT_EQ(back, block);
    load >> number;
    EXPECT_EQ(number, 2);
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 100'000 - 4092, 4096));
}

TEST(CArchiveBuffer, BlocksOfEverySizeAroundItAreWhole)
{
    for (const unsigned front : {0U, 1U, 4095U, 4096U}) {
        for (const unsigned size : {1U, 4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
            const auto head = bytePattern(front);
            const auto block = bytePattern(size);
            const auto bytes = storedBytes([&](CArchive& ar) {
                ar.Write(head.data(), front);
                ar.Write(block.data(), size);
                ar << std::int32_t{9};
            });
            EXPECT_TRUE(sameBytes(bytes, ByteBuilder().raw(head).raw(block).i32(9)));

            LoadingArchive archive(bytes);
            std::vector<std::byte> headBack(front), blockBack(size);
            std::int32_t number = 0;
            EXPECT_EQ(archive->Read(headBack.data(), front), front);
            EXPECT_EQ(archive->Read(blockBack.data(), size), size);
            *archive >> number;
            EXPECT_EQ(headBack, head);
            EXPECT_EQ(blockBack, block);
            EXPECT_EQ(number, 9);
        }
    }
}

TEST(CArchiveBuffer, PositionAndBytesLeftFollowEveryKindOfField)
{
    const auto bytes = ByteBuilder().i32(1).wide("ab").zeros(5000).f64(0).bytes();
    LoadingArchive archive(bytes);
    const auto expectAt = [&](std::uint64_t position) {
        EXPECT_EQ(archive->position(), position);
        EXPECT_EQ(archive->bytesLeft(), bytes.size() - position);
    };
    std::int32_t i = 0;
    CString text;
    std::vector<std::byte> block(5000);
    double d = 0;
    expectAt(0);
    *archive >> i;
    expectAt(4);
    *archive >> text;
    expectAt(12);
    archive->Read(block.data(), 5000);
    expectAt(5012);
    *archive >> d;
    expectAt(5020);

    CMemFile file;
    CArchive store(&file, CArchive::store);
    store << i << text;
    EXPECT_EQ(store.position(), 12U);
    EXPECT_EQ(store.bytesLeft(), 0U);
    store.Write(block.data(), 5000);
    EXPECT_EQ(store.position(), 5012U);
    store.Flush();
    EXPECT_EQ(store.position(), 5012U);
}

TEST(CArchiveBuffer, AnArchiveBeginsWhereItsFileStands)
{
    CMemFile file{std::span(ByteBuilder().i32(1).i32(2).i32(3).bytes())};
    file.Seek(4, CFile::begin);
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(archive.position(), 0U);
    EXPECT_EQ(archive.bytesLeft(), 8U);
    std::int32_t number = 0;
    archive >> number;
    EXPECT_EQ(number, 2);
}

TEST(CArchiveBuffer, MayHoldRefusesSizesOutOfProportionToTheFile)
{
    LoadingArchive archive(ByteBuilder().zeros(1000));
    EXPECT_TRUE(archive->mayHold(0));
    EXPECT_TRUE(archive->mayHold(2000 + (1U << 20U)));
    EXPECT_FALSE(archive->mayHold(2001 + (1U << 20U)));
    EXPECT_FALSE(archive->mayHold(UINT64_MAX));
}

} // namespace
} // namespace megset::CArchiveBuffer_test
