#pragma once
// A regular grid of source points in the head.

#include "megset/platform/CArchive.h"

#include <array>
#include <cstdint>

namespace megset {

/// Points of a box, x fastest: index (z * Y + y) * X + x. Positions are in mm in the head frame.
struct SourceGrid
{
    /// Number of points; -1 when a dimension is negative or the product too large.
    std::int64_t totalPoint() const;
    /// Index of a point; -1 outside.
    std::int64_t pointIndex(std::int64_t ix, std::int64_t iy, std::int64_t iz) const;
    /// Position of a point in mm: 1, or 0 outside.
    int pointPosition(std::int64_t index, double& x, double& y, double& z) const;
    /// The point whose cell of one step in each direction holds a position in mm; -1 when no cell does.
    std::int64_t pointAt(double x, double y, double z) const;
    void exchangeGrid(CArchive& ar);

    bool operator==(const SourceGrid&) const = default;

    std::int32_t m_nX = 0; ///< points along x
    std::int32_t m_nY = 0;
    std::int32_t m_nZ = 0;
    std::array<double, 3> m_dOrigin = {};            ///< position of point 0, mm
    std::array<double, 3> m_dStep = {5.0, 5.0, 5.0}; ///< mm between points along x, y, z
};

} // namespace megset
