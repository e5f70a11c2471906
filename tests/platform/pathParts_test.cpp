#include "megset/platform/pathParts.h"

#include <gtest/gtest.h>

namespace megset::pathParts_test {
namespace {

TEST(PathParts, OfAPath)
{
    EXPECT_EQ(fileNameOf("C:\\a\\b.c.d"), CString("b.c.d"));
    EXPECT_EQ(fileTitleOf("C:\\a\\b.c.d"), CString("b.c"));
    EXPECT_EQ(fileExtensionOf("C:\\a\\b.c.d"), CString("d"));
}

TEST(PathParts, OfANameAlone)
{
    EXPECT_EQ(fileNameOf("name"), CString("name"));
    EXPECT_EQ(fileTitleOf("name"), CString("name"));
    EXPECT_EQ(fileExtensionOf("a.b\\name"), CString());
}

TEST(NameAsFileName, IsItselfWhereItIsOneComponent)
{
    for (const char* name : {"", "Trial0", "left hand (1)", "..", "a.b", "\xC3\xA4\xE6\x97\xA5", "a:b?*"})
        EXPECT_EQ(asFileName(name), CString(name));
}

TEST(NameAsFileName, HasNoSeparators)
{
    EXPECT_EQ(asFileName("..\\..\\a/b"), CString(".._.._a_b"));
    EXPECT_EQ(asFileName("\\"), CString("_"));
}

TEST(NameAsFileName, HasNoControlCharacters)
{
    EXPECT_EQ(asFileName(CString(std::u16string_view(u"a\0b\n\x1f\x7f ", 7))), CString("a_b___ "));
}

} // namespace
} // namespace megset::pathParts_test
