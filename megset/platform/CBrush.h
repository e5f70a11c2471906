#pragma once

#include <cstdint>
#include <optional>

namespace megset {

/// A colour as 0x00BBGGRR.
using COLORREF = std::uint32_t;

/// What areas are filled with. It is a value to paint from: a program with a real canvas reads the colour, or derives
/// its own canvas from CDC.
class CBrush
{
public:
    /// Makes it a brush of one colour; false where it is a brush already: DeleteObject first.
    bool CreateSolidBrush(COLORREF color)
    {
        if (m_color)
            return false;
        m_color = color;
        return true;
    }
    /// Makes it no brush again; false where it was none. One that is selected into a CDC must be replaced there first.
    bool DeleteObject()
    {
        const bool was = hasObject();
        m_color.reset();
        return was;
    }
    bool hasObject() const { return m_color.has_value(); }
    /// Black for none.
    COLORREF getColor() const { return m_color.value_or(0); }

private:
    std::optional<COLORREF> m_color;
};

} // namespace megset
