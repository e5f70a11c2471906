// Conversions of encodings, with the standard library's path class and wide characters as references.

#include "megset/platform/unicode.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace megset::unicode_test {

namespace {

const std::string replacement = "\xEF\xBF\xBD";

std::u16string units(std::initializer_list<unsigned> values)
{
    std::u16string text;
    for (const unsigned value : values)
        text.push_back(static_cast<char16_t>(value));
    return text;
}

// Every code point but the surrogates, in one text.
std::u32string everyCodePoint()
{
    std::u32string text;
    for (char32_t point = 1; point <= 0x10FFFF; ++point)
        if (point < 0xD800 || point > 0xDFFF)
            text.push_back(point);
    return text;
}

std::string randomBytes(std::mt19937& random, std::size_t length)
{
    // Bytes that often meet as UTF-8, so that sequences are found whole, cut and broken.
    static const std::string likely = "\x41\x5C\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xE2\xED\xEF\xF0\xF1\xF4\xF5";
    std::string bytes;
    for (std::size_t i = 0; i < length; ++i)
        bytes.push_back(random() % 2 == 0 ? likely[random() % likely.size()] : static_cast<char>(random() & 0xFFU));
    return bytes;
}

std::u16string randomUnits(std::mt19937& random, std::size_t length)
{
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i) {
        const auto base = random() % 2 == 0 ? 0xD800U + random() % 0x800U : random();
        text.push_back(static_cast<char16_t>(base & 0xFFFFU));
    }
    return text;
}

// What must come back from UTF-8: every surrogate that stands alone replaced.
std::u16string withoutLoneSurrogates(std::u16string text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool high = text[i] >= 0xD800 && text[i] < 0xDC00;
        const bool low = text[i] >= 0xDC00 && text[i] < 0xE000;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
            ++i;
        else if (high || low)
            text[i] = 0xFFFD;
    }
    return text;
}

const std::vector<std::string> brokenUtf8 = {
    "\x80",                 // a continuation with no start
    "\xBF\xBF",             //
    "\xC3",                 // cut
    "\xE2\x82",             //
    "\xF0\x9F\x98",         //
    "\xC0\x80",             // overlong forms of two, three and four bytes
    "\xC1\xBF",             //
    "\xE0\x80\x80",         //
    "\xE0\x9F\xBF",         //
    "\xF0\x80\x80\x80",     //
    "\xF0\x8F\xBF\xBF",     //
    "\xED\xA0\x80",         // surrogates
    "\xED\xBF\xBF",         //
    "\xF4\x90\x80\x80",     // above U+10FFFF
    "\xF5\x80\x80\x80",     //
    "\xF8\x88\x80\x80\x80", // lengths that UTF-8 doesn't have
    "\xFE",                 //
    "\xFF",                 //
};

TEST(Unicode, ConvertsTextBothWays)
{
    EXPECT_EQ(utf8ToUtf16("aäß€😀"), u"aäß€😀");
    EXPECT_EQ(utf16ToUtf8(u"aäß€😀"), "aäß€😀");
    EXPECT_EQ(utf8ToUtf16(""), u"");
    EXPECT_EQ(utf16ToUtf8(u""), "");
}

TEST(Unicode, KeepsAZeroInsideAText)
{
    EXPECT_EQ(utf8ToUtf16(std::string_view("a\0b", 3)), std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(utf16ToUtf8(std::u16string_view(u"a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(Unicode, ConvertsTheEdgesOfEveryLength)
{
    EXPECT_EQ(utf8ToUtf16("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80"), units({0x7F, 0x80, 0x7FF, 0x800}));
    EXPECT_EQ(utf8ToUtf16("\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"), units({0xD7FF, 0xE000, 0xFFFF}));
    EXPECT_EQ(utf8ToUtf16("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), units({0xD800, 0xDC00, 0xDBFF, 0xDFFF}));
}

TEST(Unicode, ConvertsEveryCodePointAsTheStandardLibraryDoes)
{
    const std::filesystem::path reference(everyCodePoint());
    EXPECT_TRUE(utf8ToUtf16(reference.string()) == reference.u16string());
    EXPECT_TRUE(utf16ToUtf8(reference.u16string()) == reference.string());
    EXPECT_TRUE(narrowToUtf16(reference.string()) == reference.u16string());
}

TEST(Unicode, ReplacesEachByteThatIsNotUtf8)
{
    for (const std::string& broken : brokenUtf8) {
        const std::u16string expected = u"<" + std::u16string(broken.size(), u'\uFFFD') + u">";
        EXPECT_EQ(utf8ToUtf16("<" + broken + ">"), expected);
        EXPECT_EQ(utf8ToUtf16(broken), std::u16string(broken.size(), u'\uFFFD')); // at the end of the text too
    }
}

TEST(Unicode, GoesOnBehindABrokenSequence)
{
    EXPECT_EQ(utf8ToUtf16("\xE2\x82ä"), u"\uFFFD\uFFFDä");
    EXPECT_EQ(utf8ToUtf16("\xF0\x9F€"), u"\uFFFD\uFFFD€");
    EXPECT_EQ(utf8ToUtf16("\xC3\xC3\xA4"), u"\uFFFDä");
}

TEST(Unicode, ReplacesSurrogatesThatStandAlone)
{
    EXPECT_EQ(utf16ToUtf8(units({'a', 0xD800, 'b'})), "a" + replacement + "b");
    EXPECT_EQ(utf16ToUtf8(units({'a', 0xDFFF, 'b'})), "a" + replacement + "b");
    EXPECT_EQ(utf16ToUtf8(units({0xDBFF})), replacement);
    EXPECT_EQ(utf16ToUtf8(units({0xDC00, 0xD800})), replacement + replacement);
    EXPECT_EQ(utf16ToUtf8(units({0xD800, 0xD83D, 0xDE00})), replacement + "😀");
}

TEST(Unicode, BringsRandomTextsBack)
{
    std::mt19937 random(11);
    for (int i = 0; i < 3000; ++i) {
        const std::u16string text = randomUnits(random, random() % 30);
        EXPECT_EQ(utf8ToUtf16(utf16ToUtf8(text)), withoutLoneSurrogates(text));
    }
}

TEST(Unicode, GivesValidTextForRandomBytes)
{
    std::mt19937 random(12);
    for (int i = 0; i < 3000; ++i) {
        const std::u16string text = utf8ToUtf16(randomBytes(random, random() % 30));
        EXPECT_EQ(text, withoutLoneSurrogates(text));
        EXPECT_EQ(utf8ToUtf16(utf16ToUtf8(text)), text);
    }
}

TEST(Unicode, ReadsNarrowBytesOutsideUtf8AsWindows1252)
{
    // 0x80 to 0x9F in order; the five places that the code page leaves free keep their number.
    const std::u16string high = u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ";
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const char16_t expected = byte < 0xA0 ? high[byte - 0x80] : static_cast<char16_t>(byte);
        const std::string text = {'<', static_cast<char>(byte), '>'};
        EXPECT_EQ(narrowToUtf16(text), std::u16string(u"<") + expected + u">") << byte;
        EXPECT_EQ(narrowToUtf16(std::string(1, static_cast<char>(byte))), std::u16string(1, expected)) << byte;
    }
}

TEST(Unicode, FallsBackPerByteInAMixedNarrowText)
{
    EXPECT_EQ(narrowToUtf16("Gr\xC3\xBCn"), u"Grün");
    EXPECT_EQ(narrowToUtf16("Gr\xFCn"), u"Grün");
    EXPECT_EQ(narrowToUtf16("\xFC ü \x80 €"), u"ü ü € €");
    EXPECT_EQ(narrowToUtf16("\xE2\x82"), u"â‚"); // a cut sequence
    EXPECT_EQ(narrowToUtf16("\xC0\x80"), u"À€"); // an overlong one
    EXPECT_EQ(narrowToUtf16(""), u"");
}

TEST(Unicode, KeepsFileNamesOfAnyLanguage)
{
    EXPECT_EQ(fileNameToUtf16("脳磁図 Grün.meg"), u"脳磁図 Grün.meg");
    EXPECT_EQ(utf16ToFileName(u"脳磁図 Grün.meg😀"), "脳磁図 Grün.meg😀");
}

TEST(Unicode, BringsFileNamesWithInvalidBytesAndBackslashesBack)
{
    EXPECT_EQ(fileNameToUtf16("a\\b\xFF"), units({'a', 0xDC5C, 'b', 0xDCFF}));
    EXPECT_EQ(utf16ToFileName(units({'a', 0xDC5C, 'b', 0xDCFF})), "a\\b\xFF");
    for (const std::string& broken : brokenUtf8)
        EXPECT_EQ(utf16ToFileName(fileNameToUtf16(broken)), broken);
    const std::string mixed = "\xED\xA0\x80😀\xF0\x9F\x98\\";
    EXPECT_EQ(utf16ToFileName(fileNameToUtf16(mixed)), mixed);
}

TEST(Unicode, BringsRandomFileNamesBack)
{
    std::mt19937 random(13);
    for (int i = 0; i < 5000; ++i) {
        const std::string name = randomBytes(random, random() % 30);
        const std::u16string text = fileNameToUtf16(name);
        EXPECT_EQ(text.find(u'\\'), std::u16string::npos);
        EXPECT_EQ(utf16ToFileName(text), name);
    }
}

TEST(Unicode, LetsNoTextPutASlashOrAZeroIntoAFileName)
{
    EXPECT_EQ(utf16ToFileName(units({0xDC2F})), replacement);
    EXPECT_EQ(utf16ToFileName(units({0xDC00})), replacement);
    EXPECT_EQ(utf16ToFileName(units({0xDC7F})), replacement);
    EXPECT_EQ(utf16ToFileName(units({0xDC80})), "\x80");
    EXPECT_EQ(utf16ToFileName(units({0xDD00, 0xD800})), replacement + replacement);
}

TEST(Unicode, ChangesCaseInTheAlphabetsOfTheLibrary)
{
    const std::u16string upper = u"AZÀÖØÞĀĲĶĹŇŊŶŸŹŽΑΡΣΫЀЏАЯ";
    const std::u16string lower = u"azàöøþāĳķĺňŋŷÿźžαρσϋѐџая";
    ASSERT_EQ(upper.size(), lower.size());
    for (std::size_t i = 0; i < upper.size(); ++i) {
        EXPECT_EQ(toLower(upper[i]), lower[i]) << i;
        EXPECT_EQ(toUpper(lower[i]), upper[i]) << i;
        EXPECT_EQ(toLower(lower[i]), lower[i]) << i;
        EXPECT_EQ(toUpper(upper[i]), upper[i]) << i;
    }
}

TEST(Unicode, LeavesUnitsWithoutCaseAlone)
{
    for (const char16_t unit : std::u16string(u"@[`{09 ×÷ßĸŉſİıς一€"))
        EXPECT_TRUE(toLower(unit) == unit && toUpper(unit) == unit) << std::hex << static_cast<unsigned>(unit);
    EXPECT_EQ(toLower(0xD83D), 0xD83D);
    EXPECT_EQ(toUpper(0xDE00), 0xDE00);
}

TEST(Unicode, ChangesNoUnitOtherwiseThanTheSystemDoes)
{
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr) << "the locale C.UTF-8 is missing";
    for (unsigned value = 0; value <= 0xFFFF; ++value) {
        const auto unit = static_cast<char16_t>(value);
        EXPECT_TRUE(toLower(unit) == unit || toLower(unit) == std::towlower(value)) << std::hex << value;
        EXPECT_TRUE(toUpper(unit) == unit || toUpper(unit) == std::towupper(value)) << std::hex << value;
    }
    std::setlocale(LC_CTYPE, "C");
}

TEST(Unicode, KnowsTheSpaces)
{
    const std::u16string spaces =
        u" \t\n\v\f\r\u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
        u"\u2028\u2029\u202F\u205F\u3000";
    int count = 0;
    for (unsigned value = 0; value <= 0xFFFF; ++value)
        count += isSpace(static_cast<char16_t>(value)) ? 1 : 0;
    EXPECT_EQ(count, static_cast<int>(spaces.size()));
    for (const char16_t unit : spaces)
        EXPECT_TRUE(isSpace(unit)) << std::hex << static_cast<unsigned>(unit);
}

} // namespace

} // namespace megset::unicode_test
