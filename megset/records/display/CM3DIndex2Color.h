#pragma once
// The colours of maps: one table for what is high and one for what is low, both beginning at the neutral colour.

#include "megset/platform/formatVersion.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace megset {

/// A diverging colour map. Colours are 0x00BBGGRR.
class CM3DIndex2Color
{
public:
    static constexpr int colorCount = 512;
    using Table = std::array<std::uint32_t, colorCount>;

    CM3DIndex2Color() { setDefaultColors(); }

    bool operator==(const CM3DIndex2Color&) const = default;

    /// Neutral light grey, to dark red for high and dark blue for low values. In each table the colours lie on a
    /// straight line of the OKLab colour space at equal distances (B. Ottosson, "A perceptual color space for image
    /// processing", 2020), so that equal steps of value look equal, and both ends have the same lightness.
    void setDefaultColors();

    /// The first colour of the high table.
    std::uint32_t getNeutralColor() const { return m_nColorHigh.front(); }
    /// The colour with that index, brought into 0 to 511.
    std::uint32_t getColorHigh(int index) const { return m_nColorHigh[limited(index)]; }
    std::uint32_t getColorLow(int index) const { return m_nColorLow[limited(index)]; }

    /// Sets the values that get the last colours. Gives 1, or 0 unless both are finite and low is below high, with
    /// nothing changed.
    int setRange(double low, double high);
    /// Distance of a value from the middle of the range as an index of its table: 0 at the middle, 511 at the ends and
    /// beyond, rounded to the nearest; 0 for what isn't a number.
    int value2Index(double value) const;
    /// The colour of a value: of the high table from the middle of the range upward, of the low one below.
    std::uint32_t value2Color(double value) const;

    Table m_nColorHigh{};
    Table m_nColorLow{};
    double m_dRangeLow = -1.0;
    double m_dRangeHigh = 1.0;

private:
    static std::size_t limited(int index);
    double fromMiddle(double value) const;
};

/// The file layer of a colour map.
class CM3DIndex2Color09File : public CM3DIndex2Color
{
public:
    /// Reads or writes the record "M3DINDEX2COLORZK". 1, or 0 with the messages of serializeRecord, or for a range that
    /// setRange would refuse.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CM3DIndex2Color09File> s_versions[];
};

/// A colour map; this is the class that is made.
class CM3DIndex2Colorzk : public CM3DIndex2Color09File
{
};

} // namespace megset
