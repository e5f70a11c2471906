#include "megset/platform/CMemFile.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/platform/fileFaults.h"

#include <array>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMemFile_test {
namespace {

using ::testing::ElementsAre;

TEST(FileInMemory, StartsEmptyOrWithItsContentAtTheStart)
{
    EXPECT_EQ(CMemFile().GetLength(), 0U);
    CMemFile file{ByteBuilder().raw({1, 2, 3}).bytes()};
    EXPECT_EQ(file.GetLength(), 3U);
    EXPECT_EQ(file.GetPosition(), 0U);
    EXPECT_TRUE(file.isOpen());
}

TEST(FileInMemory, ReadsUpToItsEnd)
{
    std::array<std::uint8_t, 4> buffer = {};
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    EXPECT_EQ(file.Read(buffer.data(), 2), 2U);
    EXPECT_EQ(file.Read(buffer.data() + 2, 2), 1U);
    EXPECT_EQ(file.Read(buffer.data(), 2), 0U);
    EXPECT_THAT(buffer, ElementsAre(1, 2, 3, 0));
    file.Seek(100, CFile::begin);
    EXPECT_EQ(file.Read(buffer.data(), 2), 0U);
}

TEST(FileInMemory, WritesOverAndBehindItsContent)
{
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    file.Seek(2, CFile::begin);
    const std::array<std::uint8_t, 2> data = {8, 9};
    file.Write(data.data(), 2);
    file.Write(nullptr, 0);
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().raw({1, 2, 8, 9})));
    EXPECT_EQ(file.GetPosition(), 4U);
}

TEST(FileInMemory, AWriteBehindTheEndFillsTheGapWithZeros)
{
    CMemFile file;
    file.Seek(3, CFile::begin);
    EXPECT_EQ(file.GetLength(), 0U);
    file.Write("\x07", 1);
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().raw({0, 0, 0, 7})));
}

TEST(FileInMemory, SeekRefusesPositionsBeforeTheStartAndBeyondAllFiles)
{
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    EXPECT_EQ(file.Seek(-1, CFile::end), 2U);
    EXPECT_EQ(file.Seek(-2, CFile::current), 0U);
    EXPECT_EQ(fileFaultCause([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
    EXPECT_EQ(fileFaultCause([&] { file.Seek(-4, CFile::end); }), CFileException::badSeek);
    EXPECT_EQ(fileFaultCause([&] { file.Seek(INT64_MIN, CFile::end); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 0U);
    EXPECT_EQ(file.Seek(INT64_MAX, CFile::begin), static_cast<std::uint64_t>(INT64_MAX));
    EXPECT_EQ(fileFaultCause([&] { file.Seek(1, CFile::current); }), CFileException::badSeek);
    EXPECT_EQ(fileFaultCause([&] { file.Write("x", 1); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), 3U);
}

TEST(FileInMemory, SetLengthCutsAndExtendsWithZeros)
{
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    file.SetLength(1);
    file.SetLength(3);
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().raw({1, 0, 0})));
    EXPECT_EQ(fileFaultCause([&] { file.SetLength(UINT64_MAX); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), 3U);
}

TEST(FileInMemory, OpenNamesItAndCreateEmptiesIt)
{
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    file.Seek(2, CFile::begin);
    EXPECT_TRUE(file.Open("a.trl", CFile::modeRead));
    EXPECT_EQ(file.GetFilePath(), CString("a.trl"));
    EXPECT_EQ(file.GetPosition(), 0U);
    EXPECT_EQ(file.GetLength(), 3U);
    EXPECT_TRUE(file.Open("b.trl", CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite));
    EXPECT_EQ(file.GetLength(), 3U);
    EXPECT_TRUE(file.Open("b.trl", CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(FileInMemory, DetachGivesTheContentAwayAndLeavesNothing)
{
    CMemFile file{std::span(ByteBuilder().raw({1, 2, 3}).bytes())};
    file.SeekToEnd();
    EXPECT_TRUE(sameBytes(file.detach(), ByteBuilder().raw({1, 2, 3})));
    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_EQ(file.GetPosition(), 0U);
}

TEST(FileInMemory, ContentOutlivesCloseAndFlush)
{
    CMemFile file;
    file.Write("ab", 2);
    file.Flush();
    file.Close();
    EXPECT_EQ(file.GetLength(), 2U);
}

TEST(FileThatFails, FailsTheCallItWasToldToAndNoOther)
{
    FailingFile file;
    file.SetFilePath("a.trl");
    file.failWrite(2, CFileException::accessDenied);
    file.Write("a", 1);
    EXPECT_EQ(fileFaultCause([&] { file.Write("b", 1); }), CFileException::accessDenied);
    file.Write("c", 1);
    EXPECT_EQ(file.GetLength(), 2U);
    EXPECT_THAT(file.writeSizes(), ElementsAre(1, 1, 1));
}

TEST(FileThatFails, AFullDiskTakesWhatFits)
{
    FailingFile file;
    file.fullAfter(3);
    EXPECT_EQ(fileFaultCause([&] { file.Write("abcd", 4); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), 3U);
    EXPECT_EQ(fileFaultCause([&] { file.Write("e", 1); }), CFileException::diskFull);
    EXPECT_EQ(fileFaultCause([&] { file.SetLength(4); }), CFileException::diskFull);
}

TEST(FileThatFails, EndsSoonerThanItsLengthTells)
{
    FailingFile file{std::span(ByteBuilder().zeros(10).bytes())};
    file.endsAfter(4);
    std::array<std::byte, 10> buffer = {};
    EXPECT_EQ(file.GetLength(), 10U);
    EXPECT_EQ(file.Read(buffer.data(), 10), 4U);
    EXPECT_EQ(file.Read(buffer.data(), 10), 0U);
    EXPECT_THAT(file.readSizes(), ElementsAre(10, 10));
}

} // namespace
} // namespace megset::CMemFile_test
