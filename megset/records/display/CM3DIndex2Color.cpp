#include "megset/records/display/CM3DIndex2Color.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

// Lightness, green to red, blue to yellow.
struct OkLab
{
    double L, a, b;
};

// Both ends have chroma 0.17, which is about the most that a screen shows along both lines.
constexpr OkLab neutral{0.90, 0.0, 0.0};
constexpr OkLab highEnd{0.45, 0.1515, 0.0772};
constexpr OkLab lowEnd{0.45, -0.0178, -0.1691};

double cube(double x)
{
    return x * x * x;
}

// A linear light intensity as a byte of sRGB (IEC 61966-2-1).
std::uint32_t encoded(double linear)
{
    const double light = std::clamp(linear, 0.0, 1.0);
    const double code = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
    return static_cast<std::uint32_t>(std::lround(code * 255.0));
}

// By Ottosson's matrices.
std::uint32_t colorOf(const OkLab& lab)
{
    const double l = cube(lab.L + 0.3963377774 * lab.a + 0.2158037573 * lab.b);
    const double m = cube(lab.L - 0.1055613458 * lab.a - 0.0638541728 * lab.b);
    const double s = cube(lab.L - 0.0894841775 * lab.a - 1.2914855480 * lab.b);
    const std::uint32_t red = encoded(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s);
    const std::uint32_t green = encoded(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s);
    const std::uint32_t blue = encoded(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s);
    return blue << 16U | green << 8U | red;
}

CM3DIndex2Color::Table colorsTo(const OkLab& end)
{
    CM3DIndex2Color::Table table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(table.size() - 1);
        table[i] = colorOf({neutral.L + t * (end.L - neutral.L), t * end.a, t * end.b});
    }
    return table;
}

bool isRange(double low, double high)
{
    return std::isfinite(low) && std::isfinite(high) && low < high;
}

} // namespace

void CM3DIndex2Color::setDefaultColors()
{
    static const Table high = colorsTo(highEnd);
    static const Table low = colorsTo(lowEnd);
    m_nColorHigh = high;
    m_nColorLow = low;
}

int CM3DIndex2Color::setRange(double low, double high)
{
    if (!isRange(low, high))
        return 0;
    m_dRangeLow = low;
    m_dRangeHigh = high;
    return 1;
}

// -1 at the low end, 0 at the middle, 1 at the high end. Halves, because the range of two doubles may be none.
double CM3DIndex2Color::fromMiddle(double value) const
{
    const double middle = 0.5 * m_dRangeLow + 0.5 * m_dRangeHigh;
    const double half = 0.5 * m_dRangeHigh - 0.5 * m_dRangeLow;
    return (value - middle) / half;
}

int CM3DIndex2Color::value2Index(double value) const
{
    const double distance = std::abs(fromMiddle(value));
    if (std::isnan(distance))
        return 0;
    constexpr int last = colorCount - 1;
    return static_cast<int>(std::lround(std::min(distance, 1.0) * last));
}

std::uint32_t CM3DIndex2Color::value2Color(double value) const
{
    const int index = value2Index(value);
    return fromMiddle(value) < 0.0 ? getColorLow(index) : getColorHigh(index);
}

std::size_t CM3DIndex2Color::limited(int index)
{
    return static_cast<std::size_t>(std::clamp(index, 0, colorCount - 1));
}

const FormatVersion<CM3DIndex2Color09File> CM3DIndex2Color09File::s_versions[] = {
    {20261121, &CM3DIndex2Color09File::serialize_20261121},
};

int CM3DIndex2Color09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "M3DINDEX2COLORZK", s_versions);
}

int CM3DIndex2Color09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nColorHigh, m_nColorLow, m_dRangeLow, m_dRangeHigh);
    return ar.IsStoring() || isRange(m_dRangeLow, m_dRangeHigh) ? 1 : 0;
}

} // namespace megset
