#include "megset/platform/CFileFind.h"

#include "megset/platform/paths.h"

#include "tests/kit/TemporaryFolder.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace megset::CFileFind_test {
namespace {

TEST(FileFind, FindsAFileAndTellsItsNames)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.b.trl", "x");
    CFileFind find;
    ASSERT_TRUE(find.FindFile(path));
    EXPECT_EQ(find.GetFilePath(), path);
    EXPECT_EQ(find.GetFileName(), CString("a.b.trl"));
    EXPECT_EQ(find.GetFileTitle(), CString("a.b"));
    EXPECT_EQ(find.GetRoot(), folder.path());
    EXPECT_FALSE(find.IsDirectory());
}

TEST(FileFind, GivesTheFullPathOfARelativeOne)
{
    const TemporaryFolder folder;
    folder.write("a.trl", "x");
    folder.makeFolder("sub");
    folder.enter();
    CFileFind find;
    ASSERT_TRUE(find.FindFile("sub\\..\\a.trl"));
    EXPECT_EQ(find.GetFilePath(), folder.path("a.trl"));
    EXPECT_TRUE(find.FindFile("sub/../a.trl"));
}

TEST(FileFind, FindsAFolderByItsNameOnly)
{
    const TemporaryFolder folder;
    const CString sub = folder.makeFolder("sub");
    CFileFind find;
    EXPECT_TRUE(find.FindFile(folder.path("sub")));
    EXPECT_TRUE(find.IsDirectory());
    EXPECT_FALSE(find.FindFile(sub)) << "a folder with no file name behind it is not a file that was found";
    EXPECT_FALSE(find.FindFile(folder.path("sub/")));
}

TEST(FileFind, DoesNotFindWhatIsNotThere)
{
    const TemporaryFolder folder;
    folder.write("a.trl", "x");
    CFileFind find;
    EXPECT_FALSE(find.FindFile(folder.path("none.trl")));
    EXPECT_FALSE(find.FindFile(folder.path("a.trl\\b")));
    EXPECT_FALSE(find.FindFile(""));
    EXPECT_FALSE(find.FindFile(CString(u'n', 100'000)));
    std::filesystem::create_symlink(folder.native("none"), folder.native("link"));
    EXPECT_FALSE(find.FindFile(folder.path("link")));
}

TEST(FileFind, StarsAndQuestionMarksAreOrdinaryCharacters)
{
    const TemporaryFolder folder;
    folder.write("a.trl", "x");
    CFileFind find;
    EXPECT_FALSE(find.FindFile(folder.path("*.trl")));
    EXPECT_FALSE(find.FindFile(folder.path("?.trl")));
    EXPECT_TRUE(find.FindFile(folder.write("*.trl", "x")));
}

TEST(FileFind, ANameWithAZeroInsideFindsNothing)
{
    const TemporaryFolder folder;
    CString path = folder.write("a", "x");
    path += u'\0';
    path += "b";
    EXPECT_FALSE(CFileFind().FindFile(path));
}

TEST(FileFind, AFindThatFailsOrACloseForgetsTheLastOne)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.trl", "x");
    CFileFind find;
    EXPECT_TRUE(find.GetFilePath().IsEmpty() && find.GetFileName().IsEmpty() && find.GetRoot().IsEmpty());
    ASSERT_TRUE(find.FindFile(path));
    EXPECT_FALSE(find.FindFile(folder.path("none")));
    EXPECT_TRUE(find.GetFilePath().IsEmpty());
    ASSERT_TRUE(find.FindFile(path));
    find.Close();
    EXPECT_TRUE(find.GetFilePath().IsEmpty());
}

TEST(FileFind, FindsNamesThatAreNotUtf8)
{
    const TemporaryFolder folder;
    const CString path = fromNative(folder.native() / "bad\xFFname.trl");
    folder.write(path.Mid(folder.path().GetLength()), "x");
    CFileFind find;
    ASSERT_TRUE(find.FindFile(path));
    EXPECT_EQ(find.GetFilePath(), path);
}

} // namespace
} // namespace megset::CFileFind_test
