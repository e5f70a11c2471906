#include "megset/records/results/SourceGrid.h"

#include "megset/records/results/resultArrays.h"

#include <cmath>

namespace megset {
namespace {

// The point nearest to a place on one axis; -1 when it is more than half a step away.
std::int64_t nearest(double place, double origin, double step, std::int32_t points)
{
    const double at = std::floor((place - origin) / step + 0.5);
    return at >= 0 && at < points ? static_cast<std::int64_t>(at) : -1;
}

} // namespace

std::int64_t SourceGrid::totalPoint() const
{
    return elementCount({m_nX, m_nY, m_nZ});
}

std::int64_t SourceGrid::pointIndex(std::int64_t ix, std::int64_t iy, std::int64_t iz) const
{
    if (!isWithin(ix, m_nX) || !isWithin(iy, m_nY) || !isWithin(iz, m_nZ) || totalPoint() < 0)
        return -1;
    return (iz * m_nY + iy) * m_nX + ix;
}

int SourceGrid::pointPosition(std::int64_t index, double& x, double& y, double& z) const
{
    if (!isWithin(index, totalPoint()))
        return 0;
    const std::int64_t row = index / m_nX;
    const std::int64_t layer = row / m_nY;
    x = m_dOrigin[0] + m_dStep[0] * static_cast<double>(index % m_nX);
    y = m_dOrigin[1] + m_dStep[1] * static_cast<double>(row % m_nY);
    z = m_dOrigin[2] + m_dStep[2] * static_cast<double>(layer);
    return 1;
}

std::int64_t SourceGrid::pointAt(double x, double y, double z) const
{
    return pointIndex(nearest(x, m_dOrigin[0], m_dStep[0], m_nX), nearest(y, m_dOrigin[1], m_dStep[1], m_nY),
                      nearest(z, m_dOrigin[2], m_dStep[2], m_nZ));
}

void SourceGrid::exchangeGrid(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nX, m_nY, m_nZ, m_dOrigin, m_dStep);
}

} // namespace megset
