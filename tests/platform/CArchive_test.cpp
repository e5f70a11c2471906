#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/memoryArchive.h"

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace megset::CArchive_test {
namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using Length = ByteBuilder::Length;

enum class Kind : std::int16_t
{
    none = 0,
    meg = 100
};
enum PlainEnum : std::uint8_t
{
    plainZero,
    plainTwo = 2
};

struct Fault
{
    int cause;
    std::string fileName;
    bool operator==(const Fault&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Fault& fault)
{
    return out << "cause " << fault.cause << " of file '" << fault.fileName << "'";
}

const Fault endOfFileNamed{CArchiveException::endOfFile, "memory.bin"};
const Fault endOfFileUnnamed{CArchiveException::endOfFile, ""};

// What archive exception `act` raises, if any.
template <class Act>
std::optional<Fault> archiveFault(Act act)
{
    try {
        act();
    } catch (const CArchiveException& exception) {
        return Fault{exception.m_cause, exception.m_strFileName.toUtf8()};
    }
    return std::nullopt;
}

template <class Act>
int fileFaultCause(Act act)
{
    try {
        act();
    } catch (const CFileException& exception) {
        return exception.m_cause;
    }
    return CFileException::none;
}

template <class T>
T loaded(const ByteBuilder& bytes)
{
    T value{};
    LoadingArchive archive(bytes);
    *archive >> value;
    EXPECT_EQ(archive->bytesLeft(), 0U);
    return value;
}

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

std::vector<std::byte> bytePattern(std::size_t length)
{
    std::vector<std::byte> bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = static_cast<std::byte>((i * 7 + i / 251) & 0xFFU);
    return bytes;
}

long peakMemoryKilobytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// ---- scalars

TEST(CArchiveScalars, AreLittleEndianWithoutPadding)
{
    const auto bytes = storedBytes([](CArchive& ar) {
        ar << std::int8_t{-2} << std::uint8_t{0xFE} << std::int16_t{-2} << std::uint16_t{0x1234};
        ar << std::int32_t{-2} << std::uint32_t{0x12345678} << std::int64_t{-2} << std::uint64_t{0x123456789ABCDEF0};
        ar << 1.5F << -0.1 << true << false;
    });
    const ByteBuilder golden = ByteBuilder()
                                   .raw({0xFE, 0xFE, 0xFE, 0xFF, 0x34, 0x12})
                                   .raw({0xFE, 0xFF, 0xFF, 0xFF, 0x78, 0x56, 0x34, 0x12})
                                   .raw({0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})
                                   .raw({0xF0, 0xDE, 0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12})
                                   .raw({0x00, 0x00, 0xC0, 0x3F})
                                   .raw({0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0xBF})
                                   .raw({1, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(sameBytes(bytes, golden));
}

TEST(CArchiveScalars, ReadBackTheirLimits)
{
    EXPECT_EQ(loaded<std::int8_t>(ByteBuilder().i8(INT8_MIN)), INT8_MIN);
    EXPECT_EQ(loaded<std::uint8_t>(ByteBuilder().u8(UINT8_MAX)), UINT8_MAX);
    EXPECT_EQ(loaded<std::int16_t>(ByteBuilder().i16(INT16_MIN)), INT16_MIN);
    EXPECT_EQ(loaded<std::uint16_t>(ByteBuilder().u16(UINT16_MAX)), UINT16_MAX);
    EXPECT_EQ(loaded<std::int32_t>(ByteBuilder().i32(INT32_MIN)), INT32_MIN);
    EXPECT_EQ(loaded<std::uint32_t>(ByteBuilder().u32(UINT32_MAX)), UINT32_MAX);
    EXPECT_EQ(loaded<std::int64_t>(ByteBuilder().i64(INT64_MIN)), INT64_MIN);
    EXPECT_EQ(loaded<std::uint64_t>(ByteBuilder().u64(UINT64_MAX)), UINT64_MAX);
    EXPECT_EQ(loaded<float>(ByteBuilder().f32(std::numeric_limits<float>::denorm_min())),
              std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(loaded<double>(ByteBuilder().f64(-std::numeric_limits<double>::infinity())),
              -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::signbit(loaded<double>(ByteBuilder().f64(-0.0))));
}

TEST(CArchiveScalars, KeepTheBitsOfANotANumber)
{
    const ByteBuilder bytes = ByteBuilder().u64(0x7FF8123456789ABC);
    const double value = loaded<double>(bytes);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { ar << value; }), bytes));
}

TEST(CArchiveScalars, ABoolIsAnIntAndAnyOtherNumberThanZeroReadsAsTrue)
{
    EXPECT_FALSE(loaded<bool>(ByteBuilder().i32(0)));
    EXPECT_TRUE(loaded<bool>(ByteBuilder().i32(1)));
    EXPECT_TRUE(loaded<bool>(ByteBuilder().i32(-1)));
    EXPECT_TRUE(loaded<bool>(ByteBuilder().i32(0x100)));
}

TEST(CArchiveScalars, AStringLiteralIsStoredAsAStringAndNotAsABool)
{
    EXPECT_TRUE(sameBytes(storedBytes([](CArchive& ar) { ar << "TAG"; }), ByteBuilder().wide("TAG")));
}

TEST(CArchiveScalars, EnumerationsTakeTheWidthOfTheirType)
{
    Kind kind = Kind::meg;
    PlainEnum plain = plainTwo;
    const auto bytes = storedBytes([&](CArchive& ar) { ar.exchange(kind, plain); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i16(100).u8(2)));

    kind = Kind::none;
    plain = plainZero;
    LoadingArchive archive(bytes);
    archive->exchange(kind, plain);
    EXPECT_EQ(kind, Kind::meg);
    EXPECT_EQ(plain, plainTwo);
}

TEST(CArchiveScalars, ArraysGoElementByElementWithoutACount)
{
    std::int32_t plain[3] = {1, 2, 3};
    std::array<double, 2> standard = {0.5, -0.5};
    CString texts[2] = {"a", "b"};
    bool flags[2][2] = {{true, false}, {false, true}};
    const auto bytes = storedBytes([&](CArchive& ar) { ar.exchange(plain, standard, texts, flags); });
    const ByteBuilder golden =
        ByteBuilder().i32(1).i32(2).i32(3).f64(0.5).f64(-0.5).wide("a").wide("b").i32(1).i32(0).i32(0).i32(1);
    EXPECT_TRUE(sameBytes(bytes, golden));

    std::int32_t plainBack[3] = {};
    std::array<double, 2> standardBack = {};
    CString textsBack[2];
    bool flagsBack[2][2] = {};
    LoadingArchive archive(bytes);
    archive->exchange(plainBack, standardBack, textsBack, flagsBack);
    EXPECT_THAT(plainBack, ElementsAre(1, 2, 3));
    EXPECT_EQ(standardBack, standard);
    EXPECT_THAT(textsBack, ElementsAre("a", "b"));
    EXPECT_TRUE(flagsBack[0][0] && !flagsBack[0][1] && !flagsBack[1][0] && flagsBack[1][1]);
}

TEST(CArchiveScalars, ExchangeIntGivesWhatIsInTheFileWhenLoading)
{
    const auto bytes = storedBytes([](CArchive& ar) {
        EXPECT_EQ(ar.exchangeInt(7), 7);
        EXPECT_EQ(ar.exchangeInt64(-8), -8);
    });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(7).i64(-8)));
    LoadingArchive archive(bytes);
    EXPECT_EQ(archive->exchangeInt(0), 7);
    EXPECT_EQ(archive->exchangeInt64(0), -8);
}

// ---- strings

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

// ---- ends and faults

TEST(CArchiveEnd, EveryPrefixOfARecordRaisesEndOfFileWithTheNameFromScalarsOnly)
{
    const ByteBuilder record = ByteBuilder().i32(1).f64(2).wide("AB").u8(3).i16(4).narrow("cd").i64(5).f32(6);
    const std::size_t wideAt = 4 + 8 + 4;
    const std::size_t narrowAt = wideAt + 4 + 1 + 2 + 1;
    const auto load = [](std::span<const std::byte> bytes) {
        std::int32_t i = 0;
        double d = 0;
        CString wide, narrow;
        std::uint8_t byte = 0;
        std::int16_t s = 0;
        std::int64_t l = 0;
        float f = 0;
        LoadingArchive archive(bytes);
        archive->exchange(i, d, wide, byte, s, narrow, l, f);
    };
    EXPECT_NO_THROW(load(record.bytes()));
    forEachPrefix(record.bytes(), [&](std::span<const std::byte> prefix) {
        const std::size_t size = prefix.size();
        const bool inCharacters = (size >= wideAt && size < wideAt + 4) || (size >= narrowAt && size < narrowAt + 2);
        EXPECT_EQ(archiveFault([&] { load(prefix); }), inCharacters ? endOfFileUnnamed : endOfFileNamed);
    });
}

TEST(CArchiveEnd, AShortBlockGivesTheBytesThatWereThere)
{
    std::array<std::byte, 8> data = {};
    LoadingArchive archive(ByteBuilder().raw({1, 2, 3}));
    EXPECT_EQ(archive->Read(data.data(), 8), 3U);
    EXPECT_EQ(data[2], std::byte{3});
    EXPECT_EQ(archive->Read(data.data(), 8), 0U);
    EXPECT_EQ(archive->Read(nullptr, 0), 0U);
}

TEST(CArchiveEnd, ExchangeBlockZeroesWhatAShortBlockLeaves)
{
    std::array<std::uint8_t, 6> data;
    data.fill(9);
    LoadingArchive archive(ByteBuilder().raw({1, 2}));
    EXPECT_EQ(archive->exchangeBlock(data.data(), 6), 2U);
    EXPECT_THAT(data, ElementsAre(1, 2, 0, 0, 0, 0));
}

TEST(CArchiveDirection, AStoreOnALoadingArchiveIsReadOnlyWithTheFilesName)
{
    const Fault readOnly{2, "memory.bin"};
    LoadingArchive archive(ByteBuilder().zeros(100));
    const std::array<std::byte, 2> block = {};
    EXPECT_EQ(archiveFault([&] { *archive << 1; }), readOnly);
    EXPECT_EQ(archiveFault([&] { *archive << true; }), readOnly);
    EXPECT_EQ(archiveFault([&] { *archive << CString("text"); }), readOnly);
    EXPECT_EQ(archiveFault([&] { archive->Write(block.data(), 2); }), readOnly);
    EXPECT_EQ(archiveFault([&] { archive->Write(block.data(), 0); }), readOnly);
    EXPECT_EQ(archive->position(), 0U);
}

TEST(CArchiveDirection, ALoadOnAStoringArchiveIsWriteOnlyWithTheFilesName)
{
    const Fault writeOnly{4, "memory.bin"};
    CMemFile file;
    file.SetFilePath("memory.bin");
    CArchive archive(&file, CArchive::store);
    std::int32_t number = 5;
    bool flag = false;
    CString text;
    std::array<std::byte, 2> block = {};
    EXPECT_EQ(archiveFault([&] { archive >> number; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive >> flag; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive >> text; }), writeOnly);
    EXPECT_EQ(archiveFault([&] { archive.Read(block.data(), 2); }), writeOnly);
    EXPECT_EQ(number, 5);
    archive.Close();
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CArchiveExceptionText, TellsTheFileAndTheKind)
{
    EXPECT_STREQ(CArchiveException(CArchiveException::endOfFile, "a.meg").what(),
                 "a.meg: The file ended unexpectedly.");
    EXPECT_STREQ(CArchiveException(CArchiveException::endOfFile).what(), "The file ended unexpectedly.");
    EXPECT_EQ(CArchiveException::none, 0);
    EXPECT_EQ(CArchiveException::genericException, 1);
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
    for (int cause = 0; cause <= 9; ++cause)
        EXPECT_FALSE(CArchiveException(cause).GetErrorMessage().IsEmpty()) << cause;
}

// ---- the buffer

TEST(CArchiveBuffer, FieldsStraddleItsEndUnchanged)
{
    for (std::size_t front = 4090; front <= 4100; ++front) {
        const auto filling = bytePattern(front);
        const auto bytes = storedBytes([&](CArchive& ar) {
            for (const std::byte byte : filling)
                ar << std::to_integer<std::uint8_t>(byte);
            ar << 0.1 << std::int32_t{-3} << std::int16_t{5};
        });
        EXPECT_TRUE(sameBytes(bytes, ByteBuilder().raw(filling).f64(0.1).i32(-3).i16(5)));

        LoadingArchive archive(bytes);
        std::uint8_t byte = 0;
        for (std::size_t i = 0; i < front; ++i) {
            *archive >> byte;
            ASSERT_EQ(std::byte{byte}, filling[i]);
        }
        double d = 0;
        std::int32_t i = 0;
        std::int16_t s = 0;
        *archive >> d >> i >> s;
        EXPECT_EQ(d, 0.1);
        EXPECT_EQ(i, -3);
        EXPECT_EQ(s, 5);
    }
}

TEST(CArchiveBuffer, ScalarsMoveInBuffersOf4096Bytes)
{
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < 3000; ++i)
        store << i;
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4096, 4096, 12000 - 8192));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    for (std::int32_t i = 0; i < 3000; ++i) {
        std::int32_t number = -1;
        load >> number;
        ASSERT_EQ(number, i);
    }
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 4096, 4096));
}

TEST(CArchiveBuffer, IsWidenedForFieldsThatFillFourInTurn)
{
    constexpr unsigned wide = 128 * 1024;
    constexpr std::int32_t fields = 60'000; // 240,000 bytes
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < fields; ++i)
        store << i;
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4096, 4096, 4096, 4096, wide, 4 * fields - 4 * 4096 - wide));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    for (std::int32_t i = 0; i < fields; ++i) {
        std::int32_t number = -1;
        load >> number;
        ASSERT_EQ(number, i);
    }
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 4096, 4096, wide, wide));
}

TEST(CArchiveBuffer, StaysNarrowWhereLargeBlocksStandBetweenTheFields)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    for (std::int32_t i = 0; i < 10; ++i) {
        store << i;
        store.Write(block.data(), 100'000);
    }
    store.Close();

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    std::vector<std::byte> back(block.size());
    for (std::int32_t i = 0; i < 10; ++i) {
        std::int32_t number = -1;
        load >> number;
        EXPECT_EQ(number, i);
        EXPECT_EQ(load.Read(back.data(), 100'000), 100'000U);
        EXPECT_EQ(back, block);
    }
    EXPECT_THAT(file.readSizes(), Each(AnyOf(4096U, 100'000U - 4092U)));
}

TEST(CArchiveBuffer, ArraysOfNumbersCrossItsEnds)
{
    for (const std::size_t front : {0U, 1U, 4000U, 4064U, 4065U, 4095U}) {
        SCOPED_TRACE(front);
        const auto bytes = bytePattern(static_cast<unsigned>(front));
        std::array<double, 4> numbers = {1.5, -2.0, 0.1, 1e300};
        std::int16_t shorts[3] = {1, -2, 3};
        FailingFile file;
        CArchive store(&file, CArchive::store);
        for (const std::byte byte : bytes)
            store << static_cast<std::uint8_t>(byte);
        store.exchange(numbers, shorts);
        store.Close();
        EXPECT_TRUE(sameBytes(file.content(),
                              ByteBuilder().raw(bytes).f64(1.5).f64(-2.0).f64(0.1).f64(1e300).i16(1).i16(-2).i16(3)));

        file.SeekToBegin();
        CArchive load(&file, CArchive::load);
        for (std::size_t i = 0; i < front; ++i) {
            std::uint8_t byte = 0;
            load >> byte;
        }
        std::array<double, 4> readNumbers = {};
        std::int16_t readShorts[3] = {};
        load.exchange(readNumbers, readShorts);
        EXPECT_EQ(readNumbers, numbers);
        EXPECT_THAT(readShorts, ElementsAre(1, -2, 3));
    }
}

TEST(CArchiveBuffer, ALargeBlockGoesPastItInOneCall)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    CArchive store(&file, CArchive::store);
    store << std::int32_t{1};
    store.Write(block.data(), 100'000);
    store << std::int32_t{2};
    store.Close();
    EXPECT_THAT(file.writeSizes(), ElementsAre(4, 100'000, 4));
    EXPECT_TRUE(sameBytes(file.content(), ByteBuilder().i32(1).raw(block).i32(2)));

    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    std::vector<std::byte> back(block.size());
    std::int32_t number = 0;
    load >> number;
    EXPECT_EQ(load.Read(back.data(), 100'000), 100'000U);
    EXPECT_EQ(back, block);
    load >> number;
    EXPECT_EQ(number, 2);
    EXPECT_THAT(file.readSizes(), ElementsAre(4096, 100'000 - 4092, 4096));
}

TEST(CArchiveBuffer, BlocksOfEverySizeAroundItAreWhole)
{
    for (const unsigned front : {0U, 1U, 4095U, 4096U}) {
        for (const unsigned size : {1U, 4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
            const auto head = bytePattern(front);
            const auto block = bytePattern(size);
            const auto bytes = storedBytes([&](CArchive& ar) {
                ar.Write(head.data(), front);
                ar.Write(block.data(), size);
                ar << std::int32_t{9};
            });
            EXPECT_TRUE(sameBytes(bytes, ByteBuilder().raw(head).raw(block).i32(9)));

            LoadingArchive archive(bytes);
            std::vector<std::byte> headBack(front), blockBack(size);
            std::int32_t number = 0;
            EXPECT_EQ(archive->Read(headBack.data(), front), front);
            EXPECT_EQ(archive->Read(blockBack.data(), size), size);
            *archive >> number;
            EXPECT_EQ(headBack, head);
            EXPECT_EQ(blockBack, block);
            EXPECT_EQ(number, 9);
        }
    }
}

TEST(CArchiveBuffer, PositionAndBytesLeftFollowEveryKindOfField)
{
    const auto bytes = ByteBuilder().i32(1).wide("ab").zeros(5000).f64(0).bytes();
    LoadingArchive archive(bytes);
    const auto expectAt = [&](std::uint64_t position) {
        EXPECT_EQ(archive->position(), position);
        EXPECT_EQ(archive->bytesLeft(), bytes.size() - position);
    };
    std::int32_t i = 0;
    CString text;
    std::vector<std::byte> block(5000);
    double d = 0;
    expectAt(0);
    *archive >> i;
    expectAt(4);
    *archive >> text;
    expectAt(12);
    archive->Read(block.data(), 5000);
    expectAt(5012);
    *archive >> d;
    expectAt(5020);

    CMemFile file;
    CArchive store(&file, CArchive::store);
    store << i << text;
    EXPECT_EQ(store.position(), 12U);
    EXPECT_EQ(store.bytesLeft(), 0U);
    store.Write(block.data(), 5000);
    EXPECT_EQ(store.position(), 5012U);
    store.Flush();
    EXPECT_EQ(store.position(), 5012U);
}

TEST(CArchiveBuffer, AnArchiveBeginsWhereItsFileStands)
{
    CMemFile file{std::span(ByteBuilder().i32(1).i32(2).i32(3).bytes())};
    file.Seek(4, CFile::begin);
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(archive.position(), 0U);
    EXPECT_EQ(archive.bytesLeft(), 8U);
    std::int32_t number = 0;
    archive >> number;
    EXPECT_EQ(number, 2);
}

TEST(CArchiveBuffer, MayHoldRefusesSizesOutOfProportionToTheFile)
{
    LoadingArchive archive(ByteBuilder().zeros(1000));
    EXPECT_TRUE(archive->mayHold(0));
    EXPECT_TRUE(archive->mayHold(2000 + (1U << 20U)));
    EXPECT_FALSE(archive->mayHold(2001 + (1U << 20U)));
    EXPECT_FALSE(archive->mayHold(UINT64_MAX));
}

// ---- flush, close, abort

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

TEST(CArchiveFaults, AFailedWritePassesFromTheFieldThatNeedsTheBuffer)
{
    FailingFile file;
    file.failWrite(2, CFileException::diskFull);
    CArchive archive(&file, CArchive::store);
    int stored = 0;
    EXPECT_EQ(fileFaultCause([&] {
                  for (; stored < 10'000; ++stored)
                      archive << std::int32_t{stored};
              }),
              CFileException::diskFull);
    EXPECT_EQ(stored, 2048);
    EXPECT_EQ(file.GetLength(), 4096U);
}

TEST(CArchiveFaults, AFailedWriteOfABlockPasses)
{
    const auto block = bytePattern(100'000);
    FailingFile file;
    file.fullAfter(5000);
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(fileFaultCause([&] { archive.Write(block.data(), 100'000); }), CFileException::diskFull);
    EXPECT_EQ(file.GetLength(), 5000U);
}

TEST(CArchiveFaults, AFailedReadPassesFromScalarsStringsAndBlocks)
{
    std::int32_t number = 0;
    CString text;
    std::vector<std::byte> block(5000);
    FailingFile file{std::span(ByteBuilder().zeros(10'000).bytes())};
    CArchive archive(&file, CArchive::load);
    for (const auto& load :
         {std::function<void()>([&] { archive >> number; }), std::function<void()>([&] { archive >> text; }),
          std::function<void()>([&] { archive.Read(block.data(), 5000); })}) {
        file.failRead(1);
        EXPECT_EQ(fileFaultCause(load), CFileException::hardIO);
    }
}

TEST(CArchiveFaults, AFailedSeekBackIsToldByCloseAndSwallowedByTheDestructor)
{
    FailingFile file{std::span(ByteBuilder().zeros(100).bytes())};
    std::int32_t number = 0;
    {
        CArchive archive(&file, CArchive::load);
        archive >> number;
        file.failSeek(1);
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    archive >> number;
    file.failSeek(1);
    EXPECT_EQ(fileFaultCause([&] { archive.Close(); }), CFileException::badSeek);
}

TEST(CArchiveFaults, LoadingFromAFileThatIsNotOpenIsToldAtOnce)
{
    CFile file;
    EXPECT_EQ(fileFaultCause([&] { CArchive archive(&file, CArchive::load); }), CFileException::invalidFile);
}

// ---- one list of fields for both directions

struct Record
{
    std::int32_t m_nId = 0;
    std::int64_t m_nTotal = 0;
    double m_dRate = 0;
    bool m_bGood = false;
    CString m_strName;
    std::array<double, 2> m_aRange = {};
    Kind m_kind = Kind::none;

    void exchange(CArchive& ar)
    {
        const ArchiveSection section(ar, "record");
        EXCHANGE_FIELDS(ar, m_nId, m_nTotal, m_dRate, m_bGood, m_strName, m_aRange, m_kind);
    }
    bool operator==(const Record&) const = default;
};

const Record sample = {7, 1LL << 40, 1000.5, true, "A1", {-1, 1}, Kind::meg};

TEST(CArchiveExchange, OneListWritesAndReadsARecord)
{
    Record record = sample;
    const auto bytes = storedBytes([&](CArchive& ar) { record.exchange(ar); });
    const ByteBuilder golden =
        ByteBuilder().i32(7).i64(1LL << 40).f64(1000.5).i32(1).wide("A1").doubles({-1, 1}).i16(100);
    EXPECT_TRUE(sameBytes(bytes, golden));
    EXPECT_EQ(record, sample) << "storing changes nothing";

    Record back;
    LoadingArchive archive(bytes);
    back.exchange(*archive);
    EXPECT_EQ(back, sample);
}

// ---- tracing

const std::vector<std::string> sampleLines = {"{ record @0",
                                              "0 int m_nId = 7",
                                              "4 int64 m_nTotal = 1099511627776",
                                              "12 double m_dRate = 1000.5",
                                              "20 int m_bGood = 1",
                                              "24 text m_strName = \"A1\"",
                                              "32 double m_aRange[0] = -1",
                                              "40 double m_aRange[1] = 1",
                                              "48 short m_kind = 100",
                                              "} @50"};

TEST(CArchiveTracing, TellsEveryFieldWithNameTypeOffsetAndValueWhenLoading)
{
    Record record = sample;
    LoadingArchive archive(storedBytes([&](CArchive& ar) { record.exchange(ar); }));
    TracingRecorder recorder;
    archive->setTracer(&recorder);
    Record back;
    back.exchange(*archive);
    EXPECT_EQ(recorder.lines(), sampleLines);
    ASSERT_EQ(recorder.fields().size(), 8U);
    EXPECT_EQ(recorder.fields()[0].section, "record");
    EXPECT_EQ(recorder.fields()[4].text, CString("A1"));
    EXPECT_EQ(recorder.depth(), 0U);
}

TEST(CArchiveTracing, TellsTheSameWhenStoring)
{
    TracingRecorder recorder;
    Record record = sample;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        EXPECT_EQ(ar.tracer(), &recorder);
        record.exchange(ar);
    });
    EXPECT_EQ(recorder.lines(), sampleLines);
}

TEST(CArchiveTracing, ChangesNoByte)
{
    Record record = sample;
    const auto plain = storedBytes([&](CArchive& ar) { record.exchange(ar); });
    TracingRecorder recorder;
    const auto traced = storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        record.exchange(ar);
    });
    EXPECT_TRUE(sameBytes(traced, plain));
}

TEST(CArchiveTracing, FieldsWithoutANameAreToldWithoutOne)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        ar << std::uint8_t{1} << std::int8_t{-1} << std::uint16_t{2} << std::uint32_t{3} << std::uint64_t{4} << 0.5F;
        ar << "x";
        ar.Write("ab", 2);
        ar.exchangeInt(5);
        ar.exchangeInt(6, "guard");
    });
    EXPECT_THAT(recorder.lines(),
                ElementsAre("0 byte = 1", "1 char = -1", "2 ushort = 2", "4 uint = 3", "8 uint64 = 4", "16 float = 0.5",
                            "20 text = \"x\"", "26 block 2", "28 int = 5", "32 int guard = 6"));
}

TEST(CArchiveTracing, BlocksTellTheirNameAndWhatWasThere)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().zeros(24));
    archive->setTracer(&recorder);
    std::array<double, 2> first = {}, second = {};
    archive->exchangeBlock(first.data(), 16, "wave");
    archive->exchangeBlock(second.data(), 16, "backup");
    EXPECT_THAT(recorder.lines(), ElementsAre("0 block wave 16", "16 block backup 8 of 16"));
    EXPECT_EQ(recorder.fields()[1].done, 8U);
    EXPECT_EQ(recorder.fields()[1].bytes, 16U);
}

TEST(CArchiveTracing, BlocksTellTheirElementsInBothDirections)
{
    TracingRecorder stored, loaded;
    std::array<double, 2> values = {1.5, -2};
    const auto bytes = storedBytes([&](CArchive& ar) {
        ar.setTracer(&stored);
        ar.exchangeBlock(values.data(), 16, "wave", archiveTypeName<double>());
        ar.exchangeBlock(values.data(), 8, "plain");
    });
    LoadingArchive archive{std::span(bytes).first(20)};
    archive->setTracer(&loaded);
    archive->exchangeBlock(values.data(), 16, "wave", archiveTypeName<double>());
    archive->exchangeBlock(values.data(), 8, "plain");
    for (const TracingRecorder* recorder : {&stored, &loaded}) {
        EXPECT_EQ(recorder->fields()[0].elementType, "double");
        EXPECT_TRUE(sameBytes(recorder->fields()[0].data, ByteBuilder().doubles({1.5, -2})));
        EXPECT_EQ(recorder->fields()[1].elementType, "");
    }
    EXPECT_EQ(stored.fields()[1].data.size(), 8U);
    EXPECT_EQ(loaded.fields()[1].data.size(), 4U);
}

TEST(CArchiveTracing, SectionsNestAndEndWhenAnExceptionPasses)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().i32(1).raw({2}));
    archive->setTracer(&recorder);
    const auto load = [&] {
        const ArchiveSection outer(*archive, "outer");
        std::int32_t a = 0;
        std::int32_t b = 0;
        const ArchiveSection inner(*archive, "inner");
        EXCHANGE_FIELDS(*archive, a, b);
    };
    EXPECT_THROW(load(), CArchiveException);
    EXPECT_THAT(recorder.lines(), ElementsAre("{ outer @0", "{ inner @0", "0 int a = 1", "} @4", "} @4"));
    EXPECT_EQ(recorder.fields()[0].section, "outer/inner");
}

TEST(CArchiveTracing, NamesOfAListThatFailedDontStickToLaterFields)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().raw({1, 2, 3, 4, 5}));
    archive->setTracer(&recorder);
    std::int32_t numbers[2] = {};
    EXPECT_THROW(EXCHANGE_FIELDS(*archive, numbers), CArchiveException);
    std::uint8_t byte = 0;
    *archive >> byte;
    EXPECT_THAT(recorder.lines(), ElementsAre("0 int numbers[0] = 67305985", "4 byte = 5"));
}

TEST(CArchiveTracing, EndsWithANullTracer)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        ar << 1;
        ar.setTracer(nullptr);
        ar << 2;
    });
    EXPECT_EQ(recorder.fields().size(), 1U);
}

} // namespace
} // namespace megset::CArchive_test
