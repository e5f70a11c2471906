#include "megset/records/display/CM3DIndex2Color.h"

#include "tests/kit/recordContract.h"

#include <cmath>
#include <limits>

namespace megset::CM3DIndex2Color_test {
namespace {

struct ColorCase
{
    using Record = CM3DIndex2Colorzk;
    static constexpr std::string_view tag = "M3DINDEX2COLORZK";
    static constexpr std::string_view page = "display.md";
    static constexpr std::string_view name = "CM3DIndex2Colorzk";
    static Record filled()
    {
        Record colors;
        for (std::uint32_t i = 0; i < 512; ++i) {
            colors.m_nColorHigh[i] = 2 * i;
            colors.m_nColorLow[i] = 3 * i + 1;
        }
        colors.m_dRangeLow = -4.0;
        colors.m_dRangeHigh = 8.0;
        return colors;
    }
};

using ColorTypes = ::testing::Types<ColorCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Color, RecordContract, ColorTypes);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

double linear(std::uint32_t code)
{
    const double c = static_cast<double>(code & 0xFFU) / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

struct Lab
{
    double L, a, b;
};

// The way back, from a colour as it is shown to OKLab.
Lab labOf(std::uint32_t color)
{
    const double red = linear(color);
    const double green = linear(color >> 8U);
    const double blue = linear(color >> 16U);
    const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
    const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
    const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

double distance(const Lab& x, const Lab& y)
{
    return std::hypot(x.L - y.L, x.a - y.a, x.b - y.b);
}

void expectEvenSteps(const CM3DIndex2Color::Table& table)
{
    constexpr std::size_t stride = 73; // 7 steps; single ones are too small for bytes
    const double whole = distance(labOf(table.front()), labOf(table.back()));
    for (std::size_t i = 0; i + stride < table.size(); i += stride)
        EXPECT_NEAR(distance(labOf(table[i]), labOf(table[i + stride])), whole / 7.0, whole * 0.01) << "from " << i;
}

TEST(CM3DIndex2Color, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("M3DINDEX2COLORZK").i32(20261121);
    for (std::uint32_t i = 0; i < 512; ++i)
        bytes.u32(2 * i);
    for (std::uint32_t i = 0; i < 512; ++i)
        bytes.u32(3 * i + 1);
    EXPECT_TRUE(sameBytes(recordBytes(ColorCase::filled()), bytes.f64(-4.0).f64(8.0)));
}

TEST(CM3DIndex2Color, BothTablesBeginAtANeutralGrey)
{
    const CM3DIndex2Colorzk colors;
    const std::uint32_t neutral = colors.getNeutralColor();
    EXPECT_EQ(colors.m_nColorHigh.front(), neutral);
    EXPECT_EQ(colors.m_nColorLow.front(), neutral);
    EXPECT_EQ(neutral & 0xFFU, neutral >> 8U & 0xFFU);
    EXPECT_EQ(neutral & 0xFFU, neutral >> 16U);
}

TEST(CM3DIndex2Color, HighEndsRedAndLowEndsBlueAtOneLightness)
{
    const CM3DIndex2Colorzk colors;
    const std::uint32_t high = colors.m_nColorHigh.back();
    const std::uint32_t low = colors.m_nColorLow.back();
    EXPECT_GT(high & 0xFFU, 2 * (high >> 16U));
    EXPECT_GT(low >> 16U, 2 * (low & 0xFFU));
    EXPECT_NEAR(labOf(high).L, 0.45, 0.005);
    EXPECT_NEAR(labOf(low).L, 0.45, 0.005);
}

TEST(CM3DIndex2Color, EqualStepsLookEqual)
{
    const CM3DIndex2Colorzk colors;
    expectEvenSteps(colors.m_nColorHigh);
    expectEvenSteps(colors.m_nColorLow);
}

TEST(CM3DIndex2Color, DefaultColorsComeBack)
{
    CM3DIndex2Colorzk colors = ColorCase::filled();
    colors.setDefaultColors();
    EXPECT_EQ(colors.m_nColorHigh, CM3DIndex2Colorzk().m_nColorHigh);
    EXPECT_EQ(colors.m_nColorLow, CM3DIndex2Colorzk().m_nColorLow);
    EXPECT_EQ(colors.m_dRangeHigh, 8.0);
}

TEST(CM3DIndex2Color, IndicesOutsideTheTablesGiveTheirEnds)
{
    const CM3DIndex2Colorzk colors = ColorCase::filled();
    EXPECT_EQ(colors.getColorHigh(-1), 0U);
    EXPECT_EQ(colors.getColorHigh(512), 1022U);
    EXPECT_EQ(colors.getColorLow(-1), 1U);
    EXPECT_EQ(colors.getColorLow(600), 3U * 511U + 1U);
    EXPECT_EQ(colors.getColorLow(10), 31U);
}

TEST(CM3DIndex2Color, ValuesAreCountedFromTheMiddleOfTheRange)
{
    const CM3DIndex2Colorzk colors = ColorCase::filled(); // -4 to 8: middle 2, half 6
    EXPECT_EQ(colors.value2Index(2.0), 0);
    EXPECT_EQ(colors.value2Index(8.0), 511);
    EXPECT_EQ(colors.value2Index(-4.0), 511);
    EXPECT_EQ(colors.value2Index(5.0), 256); // 255.5
    EXPECT_EQ(colors.value2Index(100.0), 511);
    EXPECT_EQ(colors.value2Index(-infinity), 511);
    EXPECT_EQ(colors.value2Index(nan), 0);
}

TEST(CM3DIndex2Color, ValuesTakeTheTableOfTheirSide)
{
    const CM3DIndex2Colorzk colors = ColorCase::filled();
    EXPECT_EQ(colors.value2Color(2.0), colors.getNeutralColor());
    EXPECT_EQ(colors.value2Color(8.0), 1022U);
    EXPECT_EQ(colors.value2Color(-9.0), 3U * 511U + 1U);
    EXPECT_EQ(colors.value2Color(nan), colors.getNeutralColor());
}

TEST(CM3DIndex2Color, RangeMustRiseAndBeFinite)
{
    CM3DIndex2Colorzk colors;
    EXPECT_EQ(colors.setRange(1.0, 1.0), 0);
    EXPECT_EQ(colors.setRange(2.0, 1.0), 0);
    EXPECT_EQ(colors.setRange(nan, 1.0), 0);
    EXPECT_EQ(colors.setRange(0.0, infinity), 0);
    EXPECT_EQ(colors, CM3DIndex2Colorzk());
    EXPECT_EQ(colors.setRange(-1e308, 1e308), 1);
    EXPECT_EQ(colors.value2Index(1e308), 511);
    EXPECT_EQ(colors.value2Index(0.0), 0);
}

TEST(CM3DIndex2Color, FileWithoutARangeIsRefused)
{
    ByteBuilder bytes;
    bytes.wide("M3DINDEX2COLORZK").i32(20261121).zeros(8 * 512).f64(3.0).f64(3.0);
    CM3DIndex2Colorzk colors;
    EXPECT_EQ(loadRecord(colors, bytes.bytes()), 0);
}

} // namespace
} // namespace megset::CM3DIndex2Color_test
