#include "megset/platform/CFile.h"

#include "megset/platform/CArchive.h"
#include "megset/platform/paths.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/platform/fileFaults.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace megset::CFile_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr unsigned readFlags = CFile::modeRead | CFile::shareExclusive;
constexpr unsigned createFlags = CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive;

// The exception of an opening that fails; cause 0 when it goes well.
CFileException openFault(const CString& path, unsigned flags)
{
    CFile file;
    CFileException exception;
    const bool opened = file.Open(path, flags, &exception);
    EXPECT_EQ(opened, exception.m_cause == CFileException::none);
    EXPECT_EQ(file.isOpen(), opened);
    return exception;
}

int openCause(const CString& path, unsigned flags)
{
    return openFault(path, flags).m_cause;
}

std::string readAll(CFile& file)
{
    file.SeekToBegin();
    std::string text(file.GetLength(), '\0');
    text.resize(file.Read(text.data(), static_cast<unsigned>(text.size())));
    return text;
}

std::string fileText(const TemporaryFolder& folder, const CString& name)
{
    const auto bytes = folder.read(name);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(CFileOpening, ReadsAFileThatIsThere)
{
    const TemporaryFolder folder;
    CFile file(folder.write("a.trl", "hello"), readFlags);
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(file.GetLength(), 5U);
    EXPECT_EQ(readAll(file), "hello");
}

TEST(CFileOpening, CreatesAFileThatIsNot)
{
    const TemporaryFolder folder;
    CFile file(folder.path("new.trl"), createFlags);
    file.Write("abc", 3);
    file.Close();
    EXPECT_EQ(fileText(folder, "new.trl"), "abc");
}

TEST(CFileOpening, CreateEmptiesAFileThatIsThereUnlessToldNotTo)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "former content");
    CFile(path, createFlags | CFile::modeNoTruncate).Write("F", 1);
    EXPECT_EQ(fileText(folder, "a.trl"), "Former content");
    CFile(path, createFlags).Write("new", 3);
    EXPECT_EQ(fileText(folder, "a.trl"), "new");
}

TEST(CFileOpening, CreateForReadingEmptiesTheFileToo)
{
    const TemporaryFolder folder;
    CFile file(folder.write("a.trl", "former"), CFile::modeCreate | CFile::modeRead);
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CFileOpening, WritingWithoutCreateChangesAFileInPlace)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "abcdef");
    CFile file(path, CFile::modeReadWrite);
    file.Seek(2, CFile::begin);
    file.Write("XY", 2);
    EXPECT_EQ(readAll(file), "abXYef");
    EXPECT_EQ(openCause(folder.path("none.trl"), CFile::modeReadWrite), CFileException::fileNotFound);
}

TEST(CFileOpening, ReadingAWriteOnlyFileAndWritingAReadOnlyOneAreInvalid)
{
    const TemporaryFolder folder;
    char byte = 0;
    CFile writing(folder.path("a"), createFlags);
    EXPECT_EQ(fileFaultCause([&] { writing.Read(&byte, 1); }), CFileException::invalidFile);
    CFile reading(folder.write("b", "x"), readFlags);
    EXPECT_EQ(fileFaultCause([&] { reading.Write(&byte, 1); }), CFileException::invalidFile);
    EXPECT_NE(fileFaultCause([&] { reading.SetLength(5); }), CFileException::none);
}

TEST(CFileOpening, OfAnotherFileClosesTheFirst)
{
    const TemporaryFolder folder;
    const CString first = folder.write("a", "first");
    CFile file(first, readFlags);
    EXPECT_TRUE(file.Open(folder.write("b", "second"), readFlags));
    EXPECT_EQ(readAll(file), "second");
    EXPECT_EQ(openCause(first, readFlags), CFileException::none);
    EXPECT_FALSE(file.Open(folder.path("none"), readFlags));
    EXPECT_FALSE(file.isOpen());
}

TEST(CFileOpening, AMissingFileIsNotFound)
{
    const TemporaryFolder folder;
    const CFileException exception = openFault(folder.path("none.trl"), readFlags);
    EXPECT_EQ(exception.m_cause, CFileException::fileNotFound);
    EXPECT_EQ(exception.m_lOsError, ENOENT);
    EXPECT_EQ(exception.m_strFileName, folder.path("none.trl"));
    EXPECT_STREQ(exception.what(), ("Can't find \"" + folder.native("none.trl").native() + "\".").c_str());
}

TEST(CFileOpening, ANewFileInAMissingFolderHasABadPath)
{
    const TemporaryFolder folder;
    EXPECT_EQ(openCause(folder.path("none\\new.trl"), createFlags), CFileException::badPath);
    EXPECT_EQ(openCause(folder.path("none\\old.trl"), readFlags), CFileException::fileNotFound);
}

TEST(CFileOpening, APathBelowARegularFileIsBad)
{
    const TemporaryFolder folder;
    folder.write("a", "x");
    EXPECT_EQ(openCause(folder.path("a\\b.trl"), readFlags), CFileException::badPath);
    EXPECT_EQ(openCause(folder.path("a\\b.trl"), createFlags), CFileException::badPath);
}

TEST(CFileOpening, AFolderIsRefused)
{
    const TemporaryFolder folder;
    const CString sub = folder.makeFolder("sub");
    for (const CString& path : {folder.path("sub"), sub}) {
        EXPECT_EQ(openCause(path, readFlags), CFileException::accessDenied);
        EXPECT_EQ(openCause(path, createFlags), CFileException::accessDenied);
    }
}

// Not even the system's administrator may write it.
TEST(CFileOpening, AProgramThatRunsIsDeniedToWriters)
{
    EXPECT_EQ(openCause("\\proc\\self\\exe", CFile::modeWrite), CFileException::accessDenied);
}

TEST(CFileOpening, AnEmptyPathFails)
{
    EXPECT_EQ(openCause("", readFlags), CFileException::fileNotFound);
    EXPECT_EQ(openCause("", createFlags), CFileException::badPath);
}

TEST(CFileOpening, APipeIsRefusedWithoutWaitingForItsOtherEnd)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.native("pipe").c_str(), 0600), 0);
    EXPECT_EQ(openCause(folder.path("pipe"), readFlags), CFileException::invalidFile);
    EXPECT_EQ(openCause(folder.path("pipe"), CFile::modeReadWrite), CFileException::invalidFile);
    EXPECT_NE(openCause(folder.path("pipe"), createFlags), CFileException::none);
}

TEST(CFileOpening, NamesThatAreTooLongHaveABadPath)
{
    const TemporaryFolder folder;
    EXPECT_EQ(openCause(folder.path(CString(u'n', 255)), createFlags), CFileException::none);
    EXPECT_EQ(openCause(folder.path(CString(u'n', 256)), createFlags), CFileException::badPath);
    CString deep = folder.path();
    for (int i = 0; i < 3000; ++i)
        deep += "d\\";
    EXPECT_EQ(openCause(deep + "a", readFlags), CFileException::badPath);
}

TEST(CFileOpening, ANameWithAZeroInsideIsRefusedAndOpensNoOther)
{
    const TemporaryFolder folder;
    folder.write("a", "keep");
    CString name("a");
    name += u'\0';
    name += "b";
    EXPECT_EQ(openCause(folder.path(name), readFlags), CFileException::badPath);
    EXPECT_EQ(openCause(folder.path(name), createFlags), CFileException::badPath);
    EXPECT_EQ(fileText(folder, "a"), "keep");
}

TEST(CFileOpening, TakesNamesOfAnyLanguage)
{
    const TemporaryFolder folder;
    for (const char* name :
         {"Größe.trl", "脳磁図 1.trl", "Ω≈ç.trl", "дата.trl", "𝛼🧠.trl", " blank .trl", "100%s.trl"}) {
        CFile(folder.path(name), createFlags).Write("x", 1);
        EXPECT_TRUE(std::filesystem::exists(folder.native() / name)) << name;
        EXPECT_EQ(openCause(folder.path(name), readFlags), CFileException::none) << name;
    }
}

TEST(CFileOpening, TakesNamesThatAreNotUtf8AndNamesWithABackslash)
{
    const TemporaryFolder folder;
    for (const std::string bytes : {"bad\xFF\xFEname", "cut\xC3", "back\\slash", "\xED\xA0\x80 surrogate"}) {
        const CString path = fromNative(folder.native() / bytes);
        CFile(path, createFlags).Write("x", 1);
        EXPECT_THAT(folder.names(), ElementsAre(bytes));
        EXPECT_EQ(openCause(path, readFlags), CFileException::none);
        std::filesystem::remove(folder.native() / bytes);
        EXPECT_THAT(openFault(path, readFlags).what(), HasSubstr("Can't find"));
    }
}

TEST(CFileOpening, ThrowsFromTheConstructor)
{
    const TemporaryFolder folder;
    EXPECT_EQ(fileFaultCause([&] { CFile file(folder.path("none"), readFlags); }), CFileException::fileNotFound);
}

TEST(CFileOpening, WithoutAnExceptionObjectOnlyGivesFalse)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(CFile().Open(folder.path("none"), readFlags));
}

TEST(CFileOpening, RelativePathsMeanTheCurrentDirectoryAndAreKeptInFull)
{
    const TemporaryFolder folder;
    folder.makeFolder("sub");
    folder.enter();
    CFile file("sub\\..\\a.trl", createFlags);
    EXPECT_EQ(file.GetFilePath(), folder.path("a.trl"));
    EXPECT_EQ(file.GetFileName(), CString("a.trl"));
    EXPECT_EQ(file.GetFileTitle(), CString("a"));
    EXPECT_TRUE(folder.has("a.trl"));
}

TEST(CFileNames, TitleIsTheNameUpToItsLastDot)
{
    CFile file;
    EXPECT_TRUE(file.GetFilePath().IsEmpty() && file.GetFileName().IsEmpty() && file.GetFileTitle().IsEmpty());
    const auto title = [&](const char* path) {
        file.SetFilePath(path);
        return file.GetFileTitle().toUtf8();
    };
    EXPECT_EQ(title("C:\\d.x\\a.b.trl"), "a.b");
    EXPECT_EQ(title("C:\\d.x\\plain"), "plain");
    EXPECT_EQ(title("name.trl"), "name");
}

// ---- sharing

TEST(CFileSharing, AnExclusiveFileIsRefusedToTheNextThatAsks)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "x");
    CFile first(path, readFlags);
    const CFileException exception = openFault(path, readFlags);
    EXPECT_EQ(exception.m_cause, CFileException::sharingViolation);
    EXPECT_THAT(exception.what(), HasSubstr(folder.native("a.trl").native()));
    EXPECT_THAT(exception.what(), HasSubstr("is using it"));
    first.Close();
    EXPECT_EQ(openCause(path, readFlags), CFileException::none);
}

TEST(CFileSharing, AFileThatIsOpenElsewhereIsNotEmptied)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "precious");
    const CFile first(path, readFlags);
    EXPECT_EQ(openCause(path, createFlags), CFileException::sharingViolation);
    EXPECT_EQ(fileText(folder, "a.trl"), "precious");
}

TEST(CFileSharing, ReadersThatDenyWritingShareAFile)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "x");
    const CFile first(path, CFile::modeRead | CFile::shareDenyWrite);
    EXPECT_EQ(openCause(path, CFile::modeRead | CFile::shareDenyWrite), CFileException::none);
    EXPECT_EQ(openCause(path, CFile::modeRead | CFile::shareDenyNone), CFileException::none);
    EXPECT_EQ(openCause(path, CFile::modeRead | CFile::shareDenyRead), CFileException::sharingViolation);
    EXPECT_EQ(openCause(path, CFile::modeWrite | CFile::shareDenyWrite), CFileException::sharingViolation);
}

TEST(CFileSharing, ALockEndsWithItsFile)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "x");
    {
        const CFile first(path, readFlags);
    }
    EXPECT_EQ(openCause(path, createFlags), CFileException::none);
}

// ---- reading, writing, moving

TEST(CFileContent, ReadGivesFewerBytesOnlyAtTheEnd)
{
    const TemporaryFolder folder;
    CFile file(folder.write("a", "abcdef"), readFlags);
    std::array<char, 10> buffer = {};
    EXPECT_EQ(file.Read(buffer.data(), 4), 4U);
    EXPECT_EQ(file.Read(buffer.data(), 10), 2U);
    EXPECT_EQ(file.Read(buffer.data(), 10), 0U);
    EXPECT_EQ(file.Read(nullptr, 0), 0U);
}

TEST(CFileContent, SeekMovesFromTheStartThePositionAndTheEnd)
{
    const TemporaryFolder folder;
    CFile file(folder.write("a", "abcdef"), readFlags);
    EXPECT_EQ(file.Seek(4, CFile::begin), 4U);
    EXPECT_EQ(file.Seek(-1, CFile::current), 3U);
    EXPECT_EQ(file.GetPosition(), 3U);
    EXPECT_EQ(file.Seek(-2, CFile::end), 4U);
    EXPECT_EQ(file.SeekToEnd(), 6U);
    EXPECT_EQ(fileFaultCause([&] { file.Seek(-7, CFile::end); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 6U);
}

TEST(CFileContent, SetLengthCutsAndExtendsWithZeros)
{
    const TemporaryFolder folder;
    CFile file(folder.write("a", "abcdef"), CFile::modeReadWrite);
    file.SetLength(2);
    EXPECT_EQ(readAll(file), "ab");
    file.SetLength(4);
    EXPECT_EQ(readAll(file), std::string("ab\0\0", 4));
    EXPECT_NE(fileFaultCause([&] { file.SetLength(UINT64_MAX); }), CFileException::none);
}

TEST(CFileContent, WhatWasWrittenIsWithTheSystemAtOnce)
{
    const TemporaryFolder folder;
    CFile file(folder.path("a"), createFlags);
    file.Write("abc", 3);
    EXPECT_EQ(fileText(folder, "a"), "abc");
    file.Flush();
}

TEST(CFileContent, EveryUseOfAClosedFileIsInvalid)
{
    CFile file;
    char byte = 0;
    EXPECT_EQ(fileFaultCause([&] { file.Read(&byte, 1); }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { file.Write(&byte, 1); }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { file.Seek(0, CFile::begin); }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { static_cast<void>(file.GetPosition()); }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { static_cast<void>(file.GetLength()); }), CFileException::invalidFile);
    EXPECT_EQ(fileFaultCause([&] { file.SetLength(0); }), CFileException::invalidFile);
    EXPECT_NO_THROW(file.Close());
}

TEST(CFileContent, AFullDiskIsToldWithTheFilesName)
{
    CFile file("\\dev\\full", CFile::modeWrite);
    try {
        file.Write("abc", 3);
        FAIL() << "the device is always full";
    } catch (const CFileException& exception) {
        EXPECT_EQ(exception.m_cause, CFileException::diskFull);
        EXPECT_EQ(exception.m_lOsError, ENOSPC);
        EXPECT_STREQ(exception.what(), "The disk is full: can't write \"/dev/full\".");
    }
}

TEST(CFileContent, AnArchiveOnAFullDiskTellsItOnClose)
{
    CFile file("\\dev\\full", CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
    CArchive archive(&file, CArchive::store);
    archive << 1;
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::diskFull);
}

TEST(CFileContent, AnArchiveGoesThroughAFileAndBack)
{
    const TemporaryFolder folder;
    const CString path = folder.path("a.trl");
    const std::vector<double> wave(10'000, 1.25);
    {
        CFile file(path, createFlags);
        CArchive archive(&file, CArchive::store);
        archive << 7 << "name";
        archive.Write(wave.data(), 80'000);
        archive.Close();
        file.Close();
    }
    EXPECT_TRUE(sameBytes(folder.read("a.trl"), ByteBuilder().i32(7).wide("name").doubles(wave)));

    CFile file(path, readFlags);
    CArchive archive(&file, CArchive::load);
    std::int32_t number = 0;
    CString name;
    std::vector<double> back(10'000);
    archive >> number >> name;
    EXPECT_EQ(archive.Read(back.data(), 80'000), 80'000U);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(name, CString("name"));
    EXPECT_EQ(back, wave);
}

// ---- texts

TEST(CFileExceptionText, EveryCauseHasAReadableTextWithTheNativePath)
{
    for (int cause = CFileException::genericException; cause <= CFileException::endOfFile; ++cause) {
        const CFileException exception(cause, 0, "C:\\data\\Größe.trl");
        EXPECT_THAT(exception.what(), HasSubstr("\"C:/data/Größe.trl\"")) << cause;
        EXPECT_THAT(exception.what(), Not(HasSubstr("\\"))) << cause;
        EXPECT_THAT(CFileException(cause).what(), HasSubstr("the file")) << cause;
    }
    EXPECT_STREQ(CFileException().what(), "No error occurred.");
}

TEST(CFileExceptionText, UnknownFaultsTellWhatTheSystemSays)
{
    EXPECT_STREQ(CFileException(CFileException::hardIO, EIO, "\\a").what(),
                 "The device failed while working on \"/a\". (Input/output error)");
}

TEST(CFileExceptionText, HasTheNumbersOfItsCauses)
{
    EXPECT_EQ(CFileException::none, 0);
    EXPECT_EQ(CFileException::genericException, 1);
    EXPECT_EQ(CFileException::fileNotFound, 2);
    EXPECT_EQ(CFileException::badPath, 3);
    EXPECT_EQ(CFileException::tooManyOpenFiles, 4);
    EXPECT_EQ(CFileException::accessDenied, 5);
    EXPECT_EQ(CFileException::invalidFile, 6);
    EXPECT_EQ(CFileException::removeCurrentDir, 7);
    EXPECT_EQ(CFileException::directoryFull, 8);
    EXPECT_EQ(CFileException::badSeek, 9);
    EXPECT_EQ(CFileException::hardIO, 10);
    EXPECT_EQ(CFileException::sharingViolation, 11);
    EXPECT_EQ(CFileException::lockViolation, 12);
    EXPECT_EQ(CFileException::diskFull, 13);
    EXPECT_EQ(CFileException::endOfFile, 14);
}

TEST(CExceptionText, FillsABufferWithItsTerminatingZero)
{
    const CException exception("Größe");
    std::array<char16_t, 1024> buffer;
    buffer.fill(u'#');
    EXPECT_TRUE(exception.GetErrorMessage(buffer.data(), 1024));
    EXPECT_EQ(std::u16string(buffer.data()), u"Größe");
    EXPECT_EQ(buffer[6], u'#') << "nothing behind the zero is touched";
    EXPECT_EQ(exception.GetErrorMessage(), CString(u"Größe"));
}

TEST(CExceptionText, IsCutToItsBuffer)
{
    std::array<char16_t, 1024> buffer;
    EXPECT_TRUE(CException(CString(u'x', 1023)).GetErrorMessage(buffer.data(), 1024));
    EXPECT_EQ(std::u16string(buffer.data()).size(), 1023U);
    EXPECT_TRUE(CException(CString(u'x', 5000)).GetErrorMessage(buffer.data(), 1024));
    EXPECT_EQ(std::u16string(buffer.data()).size(), 1023U);
    EXPECT_TRUE(CException("abc").GetErrorMessage(buffer.data(), 1));
    EXPECT_EQ(buffer[0], u'\0');
    EXPECT_FALSE(CException("abc").GetErrorMessage(buffer.data(), 0));
    EXPECT_FALSE(CException("abc").GetErrorMessage(nullptr, 10));
}

TEST(CExceptionText, IsNotCutInsideACharacter)
{
    std::array<char16_t, 8> buffer;
    EXPECT_TRUE(CException("ab🧠c").GetErrorMessage(buffer.data(), 4));
    EXPECT_EQ(std::u16string(buffer.data()), u"ab");
    EXPECT_TRUE(CException("ab🧠c").GetErrorMessage(buffer.data(), 5));
    EXPECT_EQ(std::u16string(buffer.data()), u"ab🧠");
}

} // namespace
} // namespace megset::CFile_test
