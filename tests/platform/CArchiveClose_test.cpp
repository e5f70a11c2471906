// Flush, close and abort.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/platform/archiveChecks.h"

#include <cstdint>
#include <span>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveClose_test {
namespace {

using ::testing::ElementsAre;
using namespace archiveChecks;

TEST(CArchiveClose, FlushWritesTheBufferOutAndStoringGoesOn)
{
    FailingFile file;
    CArchive archive(&file, CArchive::store);
    archive << std::int32_t{1};
    EXPECT_EQ(file.GetLength(), 0U);
    archive.Flush();
    EXPECT_EQ(file.GetLength(), 4U);
    archive << std::int32_t{2};
    archive.Close();
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().i32(1).i32(2)));
}

TEST(CArchiveClose, FlushOfALoadingArchivePutsTheFileBehindWhatWasRead)
{
    CMemFile file{std::span(ByteBuilder().i32(1).i32(2).i32(3).bytes())};
    CArchive archive(&file, CArchive::load);
    std::int32_t number = 0;
    archive >> number;
    archive.Flush();
    EXPECT_EQ(file.GetPosition(), 4U);
    EXPECT_EQ(archive.position(), 4U);
    EXPECT_EQ(archive.bytesLeft(), 8U);
    archive >> number;
    EXPECT_EQ(number, 2);
    archive.Close();
    EXPECT_EQ(file.GetPosition(), 8U);
}

TEST(CArchiveClose, LetsTheFileGoOpenAndDoesNothingTheSecondTime)
{
    FailingFile file;
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(archive.GetFile(), &file);
    archive << std::int32_t{1};
    archive.Close();
    archive.Close();
    archive.Flush();
    EXPECT_EQ(archive.GetFile(), nullptr);
    EXPECT_TRUE(file.isOpen());
    EXPECT_THAT(file.writeSizes(), ElementsAre(4));
    EXPECT_EQ(archive.position(), 4U);
}

TEST(CArchiveClose, UseAfterwardsRaisesInvalidFile)
{
    std::int32_t number = 0;
    CString text;
    CMemFile file{std::span(ByteBuilder().zeros(100).bytes())};
    CArchive load(&file, CArchive::load);
    load >> number;
    load.Close();
    EXPECT_EQ(fileFaultCause([&] { load >> number; }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { load >> text; }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { load.Read(&number, 4); }), CFileException::invalidFile);
    EXPECT_EQ(load.bytesLeft(), 0U);
    EXPECT_EQ(archiveFault([&] { load << number; }), (Fault{CArchiveException::readOnly, ""}));

    CArchive store(&file, CArchive::store);
    store.Close();
    EXPECT_EQ(fileFaultCause([&] { store << number; }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { store << text; }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { store.Write(&number, 4); }), CFileException::invalidFile);
}

TEST(CArchiveClose, AnArchiveWithoutAFileIsAClosedOne)
{
    CArchive archive(nullptr, CArchive::store);
    EXPECT_EQ(fileFaultCause([&] { archive << 1; }), CFileException::invalidFile);
    EXPECT_NO_THROW(archive.Close());
}

TEST(CArchiveClose, AbortDropsWhatWasNotWritten)
{
    FailingFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive << std::int32_t{1};
        archive.Abort();
        EXPECT_EQ(archive.GetFile(), nullptr);
    }
    EXPECT_TRUE(file.writeSizes().empty());
}

TEST(CArchiveClose, TheDestructorWritesTheRest)
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive << std::int32_t{1};
    }
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().i32(1)));
}

TEST(CArchiveClose, TheDestructorSwallowsAFailedWriteAndCloseTellsOfIt)
{
    FailingFile file;
    file.fullAfter(2);
    {
        CArchive archive(&file, CArchive::store);
        archive << std::int32_t{1};
    }
    EXPECT_EQ(file.GetLength(), 2U);

    CArchive archive(&file, CArchive::store);
    archive << std::int32_t{1};
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::diskFull);
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::none) << "the rest is given up the first time";
}

TEST(CArchiveClose, AFaultOfTheFilesFlushPasses)
{
    FailingFile file;
    file.failFlush(1);
    CArchive archive(&file, CArchive::store);
    archive << std::int32_t{1};
    EXPECT_EQ(fileFaultCause([&] { archive.Flush(); }), CFileException::hardIO);
    EXPECT_EQ(file.GetLength(), 4U);
}

} // namespace
} // namespace megset::CArchiveClose_test
