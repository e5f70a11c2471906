#include "megset/platform/terminalText.h"

#include <gtest/gtest.h>

namespace megset::terminalText_test {
namespace {

TEST(TerminalText, ControlCharactersAreShownEscaped)
{
    EXPECT_EQ(showControlCharacters("a\x1b[2Jb\a\x7f"), "a\\x1b[2Jb\\x07\\x7f");
    EXPECT_EQ(showControlCharacters(std::u16string_view(u"\u009b31m")), "\\x9b31m");
    EXPECT_EQ(showControlCharacters(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(TerminalText, LineFeedsAndTabulatorsStay)
{
    EXPECT_EQ(showControlCharacters("a\n\tb\n"), "a\n\tb\n");
}

TEST(TerminalText, ACarriageReturnStandsEscapedUnlessALineFeedFollows)
{
    EXPECT_EQ(showControlCharacters("a\r\nb\rc\r"), "a\nb\\x0dc\\x0d");
}

TEST(TerminalText, MarksThatTurnTheWritingDirectionAreShownEscaped)
{
    EXPECT_EQ(showControlCharacters(std::u16string_view(u"a\u202egem.exe\u2066\u2028")),
              "a\\u202egem.exe\\u2066\\u2028");
}

TEST(TerminalText, BackslashesAndOtherLanguagesStay)
{
    EXPECT_EQ(showControlCharacters(std::u16string_view(u"C:\\donn\u00e9es\\\u6e2c\u5b9a.meg")),
              std::u16string_view(u"C:\\donn\u00e9es\\\u6e2c\u5b9a.meg"));
}

TEST(TerminalText, CuttingNeverSplitsACharacter)
{
    const CString text = std::u16string_view(u"a\u6e2c\U0001F9E0b");
    EXPECT_EQ(cutToColumns(text, 6), text);
    EXPECT_EQ(cutToColumns(text, 5), text.Left(4));
    EXPECT_EQ(cutToColumns(text, 4), text.Left(2));
    EXPECT_EQ(cutToColumns(text, 2), "a");
    EXPECT_EQ(cutToColumns(text, 0), "");
}

} // namespace
} // namespace megset::terminalText_test
