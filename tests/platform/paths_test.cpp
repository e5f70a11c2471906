#include "megset/platform/paths.h"

#include "tests/kit/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace megset::paths_test {
namespace {

struct Split
{
    CString drive, directory, title, extension;
    bool operator==(const Split&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Split& split)
{
    return out << "'" << split.drive << "' '" << split.directory << "' '" << split.title << "' '" << split.extension
               << "'";
}

// The sizes that stored paths are split with.
constexpr std::size_t driveSize = 3;
constexpr std::size_t otherSize = 256;

int splitInto(Split& parts, const CString& path)
{
    return _wsplitpath_s(path, &parts.drive, driveSize, &parts.directory, otherSize, &parts.title, otherSize,
                         &parts.extension, otherSize);
}

Split split(const CString& path)
{
    Split parts;
    EXPECT_EQ(splitInto(parts, path), 0);
    return parts;
}

TEST(PathSplitting, TakesAPathApart)
{
    EXPECT_EQ(split("C:\\data\\run1.trl"), (Split{"C:", "\\data\\", "run1", ".trl"}));
    EXPECT_EQ(split("C:run1.trl"), (Split{"C:", "", "run1", ".trl"}));
    EXPECT_EQ(split("run1.trl"), (Split{"", "", "run1", ".trl"}));
    EXPECT_EQ(split("data\\run1"), (Split{"", "data\\", "run1", ""}));
    EXPECT_EQ(split("C:\\"), (Split{"C:", "\\", "", ""}));
    EXPECT_EQ(split("C:"), (Split{"C:", "", "", ""}));
    EXPECT_EQ(split(""), Split());
}

TEST(PathSplitting, KeepsTheServerOfANetworkPathInTheDirectory)
{
    EXPECT_EQ(split("\\\\server\\share\\a.trl"), (Split{"", "\\\\server\\share\\", "a", ".trl"}));
}

TEST(PathSplitting, TheExtensionBeginsAtTheLastDotOfTheName)
{
    EXPECT_EQ(split("C:\\a.b\\c.d.trl"), (Split{"C:", "\\a.b\\", "c.d", ".trl"}));
    EXPECT_EQ(split("C:\\a.b\\c"), (Split{"C:", "\\a.b\\", "c", ""}));
    EXPECT_EQ(split("C:\\a.b\\"), (Split{"C:", "\\a.b\\", "", ""}));
    EXPECT_EQ(split(".trl"), (Split{"", "", "", ".trl"}));
    EXPECT_EQ(split("\\.trl"), (Split{"", "\\", "", ".trl"}));
    EXPECT_EQ(split("name."), (Split{"", "", "name", "."}));
    EXPECT_EQ(split(".."), (Split{"", "", ".", "."}));
}

TEST(PathSplitting, TakesForwardSlashesAsSeparatorsToo)
{
    EXPECT_EQ(split("C:/data\\x/run1.trl"), (Split{"C:", "/data\\x/", "run1", ".trl"}));
    EXPECT_EQ(split("/a.b/c"), (Split{"", "/a.b/", "c", ""}));
}

TEST(PathSplitting, PartsMayFillTheirSizeButForTheTerminatingZero)
{
    const CString directory = "\\" + CString(u'd', 253) + "\\";
    const CString title(u't', 255);
    const CString extension = "." + CString(u'e', 254);
    EXPECT_EQ(split("C:" + directory + title + extension), (Split{"C:", directory, title, extension}));
}

TEST(PathSplitting, APartThatIsTooLongEmptiesAllAndGivesTheRangeError)
{
    const CString tooLong(u'x', 256);
    for (const CString& path : {"C:\\" + CString(u'd', 254) + "\\a.trl", "C:\\d\\" + tooLong + ".trl",
                                "C:\\d\\a." + CString(u'e', 255), tooLong}) {
        Split parts = {"old", "old", "old", "old"};
        EXPECT_EQ(splitInto(parts, path), ERANGE) << path;
        EXPECT_EQ(parts, Split()) << path;
    }
}

TEST(PathSplitting, PartsThatNobodyAskedForAreNotLimited)
{
    CString title;
    const CString path = "C:\\" + CString(u'd', 1000) + "\\name." + CString(u'e', 1000);
    EXPECT_EQ(_wsplitpath_s(path, nullptr, 0, nullptr, 0, &title, 256, nullptr, 0), 0);
    EXPECT_EQ(title, CString("name"));
}

TEST(PathSplitting, MayWriteOverThePathItself)
{
    CString path("C:\\data\\run1.trl");
    CString extension;
    EXPECT_EQ(_wsplitpath_s(path, nullptr, 0, &path, 256, nullptr, 0, &extension, 256), 0);
    EXPECT_EQ(path, CString("\\data\\"));
    EXPECT_EQ(extension, CString(".trl"));
}

TEST(PathForms, BackslashesInsideAreSlashesOutside)
{
    EXPECT_EQ(toNative("\\data\\run 1\\a.trl").native(), "/data/run 1/a.trl");
    EXPECT_EQ(fromNative("/data/run 1/a.trl"), CString("\\data\\run 1\\a.trl"));
    EXPECT_EQ(toNative("C:\\a").native(), "C:/a");
    EXPECT_EQ(toNative("/mixed\\a").native(), "/mixed/a");
    EXPECT_EQ(toNative("").native(), "");
    EXPECT_EQ(fromNative(""), CString());
}

TEST(PathForms, EveryNativeNameComesBackByteForByte)
{
    for (const std::string name : {"/a/Größe", "/a/脳🧠", "/a/back\\slash", "/a/\\", "/a/\xFF\xFE", "/a/\xC3",
                                   "/a/\xC3(", "/a/\xED\xB0\x80", "/a/\xF0\x9F\xA7", "/a/\x80\xF0\x9F\xA7\xA0\x80"})
        EXPECT_EQ(toNative(fromNative(name)).native(), name);
}

TEST(PathForms, ABackslashInANameIsNoSeparatorInside)
{
    EXPECT_EQ(fromNative("/a/b\\c").ReverseFind(u'\\'), 2);
}

TEST(PathForms, EveryByteOfANameComesBack)
{
    std::string name;
    for (int byte = 1; byte < 256; ++byte)
        name += static_cast<char>(static_cast<unsigned char>(byte));
    EXPECT_EQ(toNative(fromNative(name)).native(), name);
}

TEST(PathForms, FullPathResolvesDotsFromTheCurrentDirectory)
{
    const TemporaryFolder folder;
    folder.enter();
    EXPECT_EQ(fullPath("a.trl"), folder.path("a.trl"));
    EXPECT_EQ(fullPath(".\\x\\..\\a.trl"), folder.path("a.trl"));
    EXPECT_EQ(fullPath("\\abs\\.\\a"), CString("\\abs\\a"));
    EXPECT_EQ(fullPath(""), CString());
}

TEST(CurrentDirectory, HasNoBackslashAtItsEndButForTheRoot)
{
    const TemporaryFolder folder;
    folder.enter();
    EXPECT_EQ(currentDirectory() + "\\", folder.path());
    ASSERT_TRUE(SetCurrentDirectory("\\"));
    EXPECT_EQ(currentDirectory(), CString("\\"));
}

TEST(CurrentDirectory, IsCopiedIntoABufferWithItsZero)
{
    const TemporaryFolder folder;
    folder.enter();
    const CString here = currentDirectory();
    const auto length = static_cast<std::uint32_t>(here.GetLength());
    std::array<char16_t, 512> buffer;
    buffer.fill(u'#');
    EXPECT_EQ(GetCurrentDirectory(512, buffer.data()), length);
    EXPECT_EQ(CString(buffer.data()), here);
    EXPECT_EQ(buffer[length + 1], u'#');

    buffer.fill(u'#');
    EXPECT_EQ(GetCurrentDirectory(length + 1, buffer.data()), length);
    EXPECT_EQ(CString(buffer.data()), here);
}

TEST(CurrentDirectory, TellsTheSizeItNeedsWhenTheBufferIsTooSmall)
{
    const TemporaryFolder folder;
    folder.enter();
    const auto length = static_cast<std::uint32_t>(currentDirectory().GetLength());
    std::array<char16_t, 512> buffer;
    buffer.fill(u'#');
    EXPECT_EQ(GetCurrentDirectory(length, buffer.data()), length + 1);
    EXPECT_EQ(GetCurrentDirectory(0, nullptr), length + 1);
    EXPECT_EQ(std::count(buffer.begin(), buffer.end(), u'#'), 512);
}

TEST(CurrentDirectory, OfMoreThan511CharactersDoesNotFitTheBufferOf512)
{
    const TemporaryFolder folder;
    folder.enter();
    std::array<char16_t, 512> buffer = {};
    const auto enterDepth = [&](int total) {
        folder.enter();
        CString path = folder.path();
        while (total - path.GetLength() > 200)
            path += CString(u'd', 100) + "\\";
        path += CString(u'e', total - path.GetLength());
        std::filesystem::create_directories(toNative(path));
        EXPECT_TRUE(SetCurrentDirectory(path));
        EXPECT_EQ(currentDirectory().GetLength(), total);
    };
    enterDepth(511);
    EXPECT_EQ(GetCurrentDirectory(512, buffer.data()), 511U);
    enterDepth(512);
    EXPECT_EQ(GetCurrentDirectory(512, buffer.data()), 513U);
}

TEST(CurrentDirectory, IsEmptyWhenItIsGone)
{
    const TemporaryFolder folder;
    folder.makeFolder("gone");
    ASSERT_TRUE(SetCurrentDirectory(folder.path("gone")));
    std::filesystem::remove(folder.native("gone"));
    std::array<char16_t, 512> buffer = {};
    EXPECT_TRUE(currentDirectory().IsEmpty());
    EXPECT_EQ(GetCurrentDirectory(512, buffer.data()), 0U);
    EXPECT_EQ(fullPath("a.trl"), CString("a.trl"));
}

TEST(CurrentDirectory, StaysWhenTheNewOneCantBeEntered)
{
    const TemporaryFolder folder;
    folder.enter();
    const CString here = currentDirectory();
    EXPECT_FALSE(SetCurrentDirectory(folder.path("none")));
    EXPECT_FALSE(SetCurrentDirectory(folder.write("file", "x")));
    EXPECT_FALSE(SetCurrentDirectory(""));
    EXPECT_EQ(currentDirectory(), here);
}

} // namespace
} // namespace megset::paths_test
