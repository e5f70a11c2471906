// The end of the file, stores and loads in the wrong direction, and faults of the file below.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/memoryArchive.h"
#include "tests/platform/archiveChecks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveEnds_test {
namespace {

using ::testing::ElementsAre;
using namespace archiveChecks;

TEST(CArchiveEnd, EveryPrefixOfARecordRaisesEndOfFileWithTheNameFromScalarsOnly)
{
    const ByteBuilder record = ByteBuilder().i32(1).f64(2).wide("AB").u8(3).i16(4).narrow("cd").i64(5).f32(6);
    const std::size_t wideAt = 4 + 8 + 4;
    const std::size_t narrowAt = wideAt + 4 + 1 + 2 + 1;
    const auto load = [](std::span<const std::byte> bytes) {
        std::int32_t i = 0;
        double d = 0;
        CString wide, narrow;
        std::uint8_t byte = 0;
        std::int16_t s = 0;
        std::int64_t l = 0;
        float f = 0;
        LoadingArchive archive(bytes);
        archive->exchange(i, d, wide, byte, s, narrow, l, f);
    };
    EXPECT_NO_THROW(load(record.bytes()));
    forEachPrefix(record.bytes(), [&](std::span<const std::byte> prefix) {
        const std::size_t size = prefix.size();
        const bool inCharacters = (size >= wideAt && size < wideAt + 4) || (size >= narrowAt && size < narrowAt + 2);
        EXPECT_EQ(archiveFault([&] { load(prefix); }), inCharacters ? endOfFileUnnamed : endOfFileNamed);
    });
}

TEST(CArchiveEnd, AShortBlockGivesTheBytesThatWereThere)
{
    std::array<std::byte, 8> data = {};
    LoadingArchive archive(ByteBuilder().raw({1, 2, 3}));
    EXPECT_EQ(archive->Read(data.data(), 8), 3U);
    EXPECT_EQ(data[2], std::byte{3});
    EXPECT_EQ(archive->Read(data.data(), 8), 0U);
    EXPECT_EQ(archive->Read(nullptr, 0), 0U);
}

TEST(CArchiveEnd, ExchangeBlockZeroesWhatAShortBlockLeaves)
{
    std::array<std::uint8_t, 6> data;
    data.fill(9);
    LoadingArchive archive(ByteBuilder().raw({1, 2}));
    EXPECT_EQ(archive->exchangeBlock(data.data(), 6), 2U);
    EXPECT_THAT(data, ElementsAre(1, 2, 0, 0, 0, 0));
}

TEST(CArchiveDirection, AStoreOnALoadingArchiveIsReadOnlyWithTheFilesName)
{
    const Fault readOnly{2, "memory.bin"};
    LoadingArchive archive(ByteBuilder().zeros(100));
    const std::array<std::byte, 2> block = {};
    EXPECT_EQ(archiveFault([&] { *archive << 1; }), readOnly);
    EXPECT_EQ(archiveFault([&] { *archive << true; }), readOnly);
    EXPECT_EQ(archiveFault([&] { *archive << CString("text"); }), readOnly);
    EXPECT_EQ(archiveFault([&] { archive->Write(block.data(), 2); }), readOnly);
    EXPECT_EQ(archiveFault([&] { archive->Write(block.data(), 0); }), readOnly);
    EXPECT_EQ(archive->position(), 0U);
}

TEST(CArchiveDirection, ALoadOnAStoringArchiveIsWriteOnlyWithTheFilesName)
{
    const Fault writeOnly{4, "memory.bin"};
    CMemFile file;
    file.SetFilePath("memory.bin");
    CArchive archive(&file, CArchive::store);
    std::int32_t number = 5;
    bool flag = false;
    CString text;
    std::array<std::byte, 2> block = {};
    EXPECT_EQ(archiveFault([&] { archive >> number; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive >> flag; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive >> text; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive.Read(block.data(), 2); }), writeOnly);
    EXPECT_EQ(number, 5);
    archive.Close();
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CArchiveExceptionText, TellsTheFileAndTheKind)
{
    EXPECT_STREQ(CArchiveException(CArchiveException::endOfFile, "a.meg").what(),
                 "a.meg: The file ended unexpectedly.");
    EXPECT_STREQ(CArchiveException(CArchiveException::endOfFile).what(), "The file ended unexpectedly.");
    EXPECT_EQ(CArchiveException::none, 0);
    EXPECT_EQ(CArchiveException::genericException, 1);
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
    for (int cause = 0; cause <= 9; ++cause)
        EXPECT_FALSE(CArchiveException(cause).GetErrorMessage().IsEmpty()) << cause;
}

TEST(CArchiveFaults, AFailedWritePassesFromTheFieldThatNeedsTheBuffer)
{
    FailingFile file;
    file.failWrite(2, CFileException::diskFull);
    CArchive archive(&file, CArchive::store);
    int stored = 0;
    EXPECT_EQ(fileFaultCause([&] {
                  for (; stored < 10'000; ++stored)
                      archive << std::int32_t{stored};
              }),
              CFileException::diskFull);
    EXPECT_EQ(stored, 2048);
    EXPECT_EQ(file.GetLength(), 4096U);
}

TEST(CArchiveFaults, AFailedWriteOfABlockPasses)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    file.fullAfter(5000);
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(fileFaultCause([&] { archive.Write(block.data(), 100'000); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), 5000U);
}

TEST(CArchiveFaults, AFailedReadPassesFromScalarsStringsAndBlocks)
{
    std::int32_t number = 0;
    CString text;
    std::vector<std::byte> block(5000);
    FailingFile file{std::span(ByteBuilder().zeros(10'000).bytes())};
    CArchive archive(&file, CArchive::load);
    for (const auto& load :
         {std::function<void()>([&] { archive >> number; }), std::function<void()>([&] { archive >> text; }),
          std::function<void()>([&] { archive.Read(block.data(), 5000); })}) {
        file.failRead(1);
        EXPECT_EQ(fileFaultCause(load), CFileException::hardIO);
    }
}

TEST(CArchiveFaults, AFailedSeekBackIsToldByCloseAndSwallowedByTheDestructor)
{
    FailingFile file{std::span(ByteBuilder().zeros(100).bytes())};
    std::int32_t number = 0;
    {
        CArchive archive(&file, CArchive::load);
        archive >> number;
        file.failSeek(1);
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    archive >> number;
    file.failSeek(1);
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::badSeek);
}

TEST(CArchiveFaults, LoadingFromAFileThatIsNotOpenIsToldAtOnce)
{
    CFile file;
    EXPECT_EQ(fileFaultCause([&] { CArchive archive(&file, CArchive::load); }), CFileException::invalidFile);
}

} // namespace
} // namespace megset::CArchiveEnds_test
