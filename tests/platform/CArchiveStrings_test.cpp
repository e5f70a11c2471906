// Strings of every length, in the wide and the narrow form.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/memoryArchive.h"
#include "tests/platform/archiveChecks.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace megset::CArchiveStrings_test {
namespace {

using namespace archiveChecks;
using Length = ByteBuilder::Length;

CString pattern(std::size_t length)
{
    std::u16string text(length, u' ');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char16_t>(u'A' + i % 26 + (i % 1000 == 0 ? 0x400 : 0));
    return CString(std::move(text));
}

std::string narrowPattern(std::size_t length)
{
    std::string text(length, ' ');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + i % 26);
    return text;
}

long peakMemoryKilobytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class StringLadder : public ::testing::TestWithParam<std::size_t>
{
};

TEST_P(StringLadder, WritesTheWideFormWithTheShortestLength)
{
    const CString text = pattern(GetParam());
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { ar << text; }), ByteBuilder().wide(text)));
}

TEST_P(StringLadder, ReadsTheWideForm)
{
    const CString text = pattern(GetParam());
    EXPECT_EQ(loaded<CString>(ByteBuilder().wide(text)), text);
}

TEST_P(StringLadder, ReadsTheNarrowForm)
{
    const std::string text = narrowPattern(GetParam());
    EXPECT_EQ(loaded<CString>(ByteBuilder().narrow(text)), CString(text));
}

TEST_P(StringLadder, ReadsLengthsInWiderStepsThanNeeded)
{
    const CString wide = pattern(GetParam());
    const std::string narrow = narrowPattern(GetParam());
    for (const Length length : {Length::byBits32, Length::byBits64}) {
        EXPECT_EQ(loaded<CString>(ByteBuilder().wide(wide, length)), wide);
        EXPECT_EQ(loaded<CString>(ByteBuilder().narrow(narrow, length)), CString(narrow));
    }
}

TEST_P(StringLadder, IsTheSameAcrossTheEndOfTheBuffer)
{
    const CString text = pattern(GetParam());
    const ByteBuilder golden = ByteBuilder().zeros(4093).wide(text).i32(77);
    const auto bytes = storedBytes([&](CArchive& ar) {
        const std::vector<std::byte> front(4093);
        ar.Write(front.data(), 4093);
        ar << text << std::int32_t{77};
    });
    EXPECT_TRUE(sameBytes(bytes, golden));

    LoadingArchive archive(bytes);
    std::vector<std::byte> front(4093);
    CString back;
    std::int32_t behind = 0;
    EXPECT_EQ(archive->Read(front.data(), 4093), 4093U);
    archive->exchange(back, behind);
    EXPECT_EQ(back, text);
    EXPECT_EQ(behind, 77);
}

INSTANTIATE_TEST_SUITE_P(Lengths, StringLadder,
                         ::testing::Values(0, 1, 254, 255, 256, 0xFFFD, 0xFFFE, 0xFFFF, 0x10000, 70000));

TEST(CArchiveStrings, HaveTheirGoldenBytesAtEachStep)
{
    const auto head = [](std::size_t length, std::size_t bytes) {
        auto all = storedBytes([&](CArchive& ar) { ar << CString(u'x', static_cast<int>(length)); });
        EXPECT_EQ(all.size(), bytes + 2 * length);
        all.resize(bytes);
        return all;
    };
    EXPECT_TRUE(sameBytes(head(0, 4), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0x00})));
    EXPECT_TRUE(sameBytes(head(254, 4), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0xFE})));
    EXPECT_TRUE(sameBytes(head(255, 6), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0x00})));
    EXPECT_TRUE(sameBytes(head(0xFFFD, 6), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0xFF, 0xFD, 0xFF})));
    EXPECT_TRUE(
        sameBytes(head(0xFFFE, 10), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00})));
    EXPECT_TRUE(
        sameBytes(head(0xFFFF, 10), ByteBuilder().raw({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00})));
}

TEST(CArchiveStrings, AShortLengthIsReadInTheSixteenBitStepToo)
{
    EXPECT_EQ(loaded<CString>(ByteBuilder().wide("abc", Length::byBits16)), CString("abc"));
    EXPECT_EQ(loaded<CString>(ByteBuilder().narrow("abc", Length::byBits16)), CString("abc"));
}

TEST(CArchiveStrings, CodeUnitsGoAsTheyAreZerosAndLoneSurrogatesIncluded)
{
    const CString text(std::u16string{u'a', u'\0', char16_t{0xD800}, char16_t{0xDC00}, char16_t{0xDFFF}, u'\xFFFE'});
    const ByteBuilder golden = ByteBuilder().wide(text);
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { ar << text; }), golden));
    EXPECT_EQ(loaded<CString>(golden), text);
}

TEST(CArchiveStrings, NarrowBytesAreUtf8WhereTheyCanBeAndWindows1252Otherwise)
{
    EXPECT_EQ(loaded<CString>(ByteBuilder().narrow("Gr\xC3\xB6\xC3\x9F"
                                                   "e")),
              CString(u"Größe"));
    EXPECT_EQ(loaded<CString>(ByteBuilder().narrow("Gr\xF6\xDF"
                                                   "e \x80\x99")),
              CString(u"Größe €™"));
}

TEST(CArchiveStrings, ATagInTheNarrowFormComparesEqual)
{
    EXPECT_EQ(loaded<CString>(ByteBuilder().narrow("MEGCHANNELZK")), CString("MEGCHANNELZK"));
}

// The ladder starts over only once; in its second turn the marker's number is a length like any other.
TEST(CArchiveStrings, ASecondWideMarkerIsALength)
{
    const CString text = pattern(0xFFFE);
    ByteBuilder bytes = ByteBuilder().wideMarker().u8(0xFF).u16(0xFFFE);
    for (const char16_t unit : text.view())
        bytes.u16(unit);
    EXPECT_EQ(loaded<CString>(bytes), text);
}

TEST(CArchiveStrings, AMarkerInTheOtherByteOrderIsReadToo)
{
    EXPECT_EQ(loaded<CString>(ByteBuilder().raw({0xFF, 0xFF, 0xFE, 0x02, 'a', 0x00, 'b', 0x00})), CString("ab"));
}

TEST(CArchiveStrings, LoadingReplacesWhatTheStringHeld)
{
    CString text("former");
    LoadingArchive archive(ByteBuilder().wide(""));
    *archive >> text;
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CArchiveStrings, AFailedLoadLeavesTheFormerText)
{
    CString text("former");
    LoadingArchive archive(ByteBuilder().wideMarker().length(3).u16('a'));
    EXPECT_EQ(archiveFault([&] { *archive >> text; }), endOfFileUnnamed);
    EXPECT_EQ(text, CString("former"));
}

TEST(CArchiveStrings, ALengthThatTheFileCantHoldIsTheEndOfFileAndTakesNoMemory)
{
    const long before = peakMemoryKilobytes();
    for (const std::uint64_t length : {std::uint64_t{14}, std::uint64_t{1000}, std::uint64_t{1} << 31U,
                                       (std::uint64_t{1} << 32U) - 2, std::uint64_t{1} << 63U, UINT64_MAX}) {
        for (const bool wide : {false, true}) {
            ByteBuilder bytes;
            if (wide)
                bytes.wideMarker();
            bytes.length(length);
            const std::size_t charactersAt = bytes.size();
            bytes.zeros(30 - charactersAt);
            if (!wide && length == 14)
                continue;
            CString text;
            LoadingArchive archive(bytes);
            EXPECT_EQ(archiveFault([&] { *archive >> text; }), endOfFileUnnamed) << length << (wide ? " wide" : "");
            EXPECT_EQ(archive->position(), charactersAt) << "no character was read";
        }
    }
    EXPECT_LT(peakMemoryKilobytes() - before, 64 * 1024) << "2^31 characters would have shown";
}

TEST(CArchiveStrings, OneCharacterTooManyIsTheEndOfFile)
{
    CString text;
    LoadingArchive wide(ByteBuilder().wideMarker().length(4).zeros(7));
    EXPECT_EQ(archiveFault([&] { *wide >> text; }), endOfFileUnnamed);
    LoadingArchive narrow(ByteBuilder().length(4).zeros(3));
    EXPECT_EQ(archiveFault([&] { *narrow >> text; }), endOfFileUnnamed);
}

TEST(CArchiveStrings, AFileThatEndsSoonerThanItSaysEndsTheStringToo)
{
    FailingFile file{std::span(ByteBuilder().wide(pattern(5000)).bytes())};
    file.endsAfter(9000);
    CArchive archive(&file, CArchive::load);
    CString text;
    EXPECT_EQ(archiveFault([&] { archive >> text; }), endOfFileUnnamed);
}

} // namespace
} // namespace megset::CArchiveStrings_test
