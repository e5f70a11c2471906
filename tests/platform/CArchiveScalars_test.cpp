// Numbers, truth values, enumerations and arrays of them.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/memoryArchive.h"
#include "tests/platform/archiveChecks.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveScalars_test {
namespace {

using ::testing::ElementsAre;
using namespace archiveChecks;

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

} // namespace
} // namespace megset::CArchiveScalars_test
