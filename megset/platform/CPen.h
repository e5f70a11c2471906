#pragma once

#include "megset/platform/CBrush.h"

#include <optional>

namespace megset {

inline constexpr int PS_SOLID = 0; ///< style of a line without gaps
inline constexpr int PS_DASH = 1;  ///< style of a dashed line
inline constexpr int PS_DOT = 2;   ///< style of a dotted line

/// What lines are drawn with: a value to paint from, as CBrush is.
class CPen
{
public:
    /// Makes it a pen of a style, width in pixels and colour; false where it is a pen already: DeleteObject first.
    bool CreatePen(int style, int width, COLORREF color)
    {
        if (m_pen)
            return false;
        m_pen = Pen{style, width, color};
        return true;
    }
    /// Makes it no pen again; false where it was none. One that is selected into a CDC must be replaced there first.
    bool DeleteObject()
    {
        const bool was = hasObject();
        m_pen.reset();
        return was;
    }
    bool hasObject() const { return m_pen.has_value(); }
    // For none a black solid pen without width.
    int getStyle() const { return m_pen.value_or(Pen{}).style; }
    int getWidth() const { return m_pen.value_or(Pen{}).width; }
    COLORREF getColor() const { return m_pen.value_or(Pen{}).color; }

private:
    struct Pen
    {
        int style = PS_SOLID;
        int width = 0;
        COLORREF color = 0;
    };
    std::optional<Pen> m_pen;
};

} // namespace megset
