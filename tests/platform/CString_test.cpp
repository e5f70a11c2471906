#include "megset/platform/CString.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace megset::CString_test {

namespace {

using megset::CString;

TEST(CString, StartsEmpty)
{
    const CString text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_EQ(text.toUtf8(), "");
    EXPECT_EQ(text.GetString()[0], 0);
}

TEST(CString, TakesUtf8AndUtf16)
{
    const std::string narrow = "Grün";
    const std::u16string wide = u"Grün";
    EXPECT_EQ(CString("Grün").view(), wide);
    EXPECT_EQ(CString(narrow).view(), wide);
    EXPECT_EQ(CString(std::string_view(narrow)).view(), wide);
    EXPECT_EQ(CString(u"Grün").view(), wide);
    EXPECT_EQ(CString(wide).view(), wide);
    EXPECT_EQ(CString(std::u16string_view(wide)).view(), wide);
    EXPECT_EQ(CString(wide).toUtf8(), narrow);
}

TEST(CString, TakesANullPointerForAnEmptyText)
{
    const char* narrow = nullptr;
    const char16_t* wide = nullptr;
    EXPECT_TRUE(CString(narrow).IsEmpty());
    EXPECT_TRUE(CString(wide).IsEmpty());
}

TEST(CString, RepeatsAUnit)
{
    EXPECT_EQ(CString(u'x', 3), CString("xxx"));
    EXPECT_EQ(CString(u'x', 0), CString());
    EXPECT_EQ(CString(u'x', -1), CString());
}

TEST(CString, CountsCodeUnits)
{
    EXPECT_EQ(CString("äö").GetLength(), 2);
    EXPECT_EQ(CString("😀").GetLength(), 2);
    EXPECT_EQ(CString(std::u16string_view(u"a\0b", 3)).GetLength(), 3);
}

TEST(CString, GivesZeroOutsideTheText)
{
    const CString text("ab");
    EXPECT_EQ(text[0], u'a');
    EXPECT_EQ(text.GetAt(1), u'b');
    EXPECT_EQ(text[2], 0);
    EXPECT_EQ(text[-1], 0);
}

TEST(CString, BecomesEmpty)
{
    CString text("ab");
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, FindsTextsFromAPositionOn)
{
    const CString text("abcabc");
    EXPECT_EQ(text.Find("bc"), 1);
    EXPECT_EQ(text.Find("bc", 1), 1);
    EXPECT_EQ(text.Find("bc", 2), 4);
    EXPECT_EQ(text.Find("bc", 5), -1);
    EXPECT_EQ(text.Find("x"), -1);
    EXPECT_EQ(text.Find("BC"), -1);
    EXPECT_EQ(text.Find("abcabcd"), -1);
    EXPECT_EQ(text.Find("a", -1), -1);
    EXPECT_EQ(text.Find("a", 7), -1);
    EXPECT_EQ(text.Find("", 6), 6);
    EXPECT_EQ(CString().Find(""), 0);
}

TEST(CString, FindsUnitsFromBothEnds)
{
    const CString text("a\\b\\c");
    EXPECT_EQ(text.Find(u'\\'), 1);
    EXPECT_EQ(text.Find(u'\\', 2), 3);
    EXPECT_EQ(text.Find(u'\\', 4), -1);
    EXPECT_EQ(text.Find(u'\\', -1), -1);
    EXPECT_EQ(text.Find(u'\\', 6), -1);
    EXPECT_EQ(text.ReverseFind(u'\\'), 3);
    EXPECT_EQ(text.ReverseFind(u'x'), -1);
    EXPECT_EQ(CString().ReverseFind(u'x'), -1);
}

TEST(CString, GivesPartsOfATextBroughtIntoItsBounds)
{
    const CString text("abcde");
    EXPECT_EQ(text.Left(2), CString("ab"));
    EXPECT_EQ(text.Left(9), text);
    EXPECT_EQ(text.Left(-1), CString());
    EXPECT_EQ(text.Right(2), CString("de"));
    EXPECT_EQ(text.Right(9), text);
    EXPECT_EQ(text.Right(-1), CString());
    EXPECT_EQ(text.Mid(1, 2), CString("bc"));
    EXPECT_EQ(text.Mid(3), CString("de"));
    EXPECT_EQ(text.Mid(3, 9), CString("de"));
    EXPECT_EQ(text.Mid(-1, 2), CString("ab"));
    EXPECT_EQ(text.Mid(5), CString());
    EXPECT_EQ(text.Mid(9, 1), CString());
    EXPECT_EQ(text.Mid(2, 2147483647), CString("cde"));
}

TEST(CString, ReplacesEveryOccurrenceOnce)
{
    CString text("aXbXc");
    EXPECT_EQ(text.Replace("X", "--"), 2);
    EXPECT_EQ(text, CString("a--b--c"));
    EXPECT_EQ(text.Replace("--", ""), 2);
    EXPECT_EQ(text, CString("abc"));
    EXPECT_EQ(text.Replace("x", "y"), 0);
    EXPECT_EQ(text.Replace("", "y"), 0);
    EXPECT_EQ(text, CString("abc"));
}

TEST(CString, ReplacesFromLeftToRightAndNotInWhatItPutIn)
{
    CString text("aaa");
    EXPECT_EQ(text.Replace("aa", "a"), 1);
    EXPECT_EQ(text, CString("aa"));
    EXPECT_EQ(text.Replace("a", "aa"), 2);
    EXPECT_EQ(text, CString("aaaa"));
}

TEST(CString, ReplacesItself)
{
    CString text("ab");
    EXPECT_EQ(text.Replace(text, "x"), 1);
    EXPECT_EQ(text, CString("x"));
    EXPECT_EQ(text.Replace("x", text), 1);
    EXPECT_EQ(text, CString("x"));
}

TEST(CString, ChangesCase)
{
    CString text("Grün ÄÖ ß 1");
    EXPECT_EQ(text.MakeLower(), CString("grün äö ß 1"));
    EXPECT_EQ(text.MakeUpper(), CString("GRÜN ÄÖ ß 1"));
}

TEST(CString, TrimsSpacesOfEveryKindAtItsEnds)
{
    CString text(u" \t\u00A0a b\u3000\r\n");
    EXPECT_EQ(CString(text).TrimLeft(), CString(u"a b\u3000\r\n"));
    EXPECT_EQ(CString(text).TrimRight(), CString(u" \t\u00A0a b"));
    EXPECT_EQ(text.Trim(), CString("a b"));
    EXPECT_EQ(CString(" \t ").TrimLeft(), CString());
    EXPECT_EQ(CString(" \t ").TrimRight(), CString());
    EXPECT_EQ(CString().Trim(), CString());
}

TEST(CString, ComparesByCodeUnits)
{
    EXPECT_EQ(CString("a").Compare("a"), 0);
    EXPECT_LT(CString("A").Compare("a"), 0);
    EXPECT_GT(CString("b").Compare("a"), 0);
    EXPECT_LT(CString("a").Compare("ab"), 0);
    EXPECT_LT(CString("z").Compare("ä"), 0);
    EXPECT_LT(CString(), CString("a"));
    EXPECT_TRUE(CString("b") > CString("a") && CString("a") <= CString("a") && CString("a") != CString("A"));
}

TEST(CString, ComparesWithoutRegardToCase)
{
    EXPECT_EQ(CString("Fp1").CompareNoCase("FP1"), 0);
    EXPECT_EQ(CString("GRÜN").CompareNoCase("grün"), 0);
    EXPECT_LT(CString("a").CompareNoCase("B"), 0);
    EXPECT_GT(CString("C").CompareNoCase("b"), 0);
    EXPECT_LT(CString("FP").CompareNoCase("fp1"), 0);
}

TEST(CString, ComparesWithLiteralsAndViews)
{
    const CString text("FP1");
    EXPECT_TRUE(text == "FP1");
    EXPECT_TRUE("FP1" == text);
    EXPECT_TRUE(text == u"FP1");
    EXPECT_TRUE(text == std::string("FP1"));
    EXPECT_TRUE(std::string_view("FP1") == text);
    EXPECT_TRUE(text != "fp1");
    EXPECT_TRUE(text < "FP2");
}

TEST(CString, JoinsTexts)
{
    CString text = CString("a") + "b" + u"c";
    text = "<" + text + CString(">");
    text += CString("d");
    text += u'e';
    EXPECT_EQ(text, CString("<abc>de"));
    text += text;
    EXPECT_EQ(text, CString("<abc>de<abc>de"));
}

TEST(CString, FormatsInPlaceWithItselfAsAnArgument)
{
    CString text("a");
    text.Format("%s%d", text, 1);
    EXPECT_EQ(text, CString("a1"));
    text.AppendFormat("+%s", text);
    EXPECT_EQ(text, CString("a1+a1"));
    text.Format(text);
    EXPECT_EQ(text, CString("a1+a1"));
    text.Format("");
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, GoesIntoAStreamAsUtf8)
{
    std::ostringstream out;
    out << CString("Grün 😀");
    EXPECT_EQ(out.str(), "Grün 😀");
}

} // namespace

} // namespace megset::CString_test
