#include "megset/records/results/CFaceVolumSourceImage.h"

#include "megset/records/recordFormat.h"

#include <cmath>

namespace megset {

int CVolumSourcImag::setSize(const SourceGrid& grid, std::int64_t frames)
{
    m_grid = grid;
    m_nFrame = frames;
    if (resizeToZeros(m_aValue, elementCount({frames, grid.m_nX, grid.m_nY, grid.m_nZ})))
        return 1;
    m_grid = SourceGrid();
    m_nFrame = 0;
    return 0;
}

double CVolumSourcImag::getValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame) const
{
    return valueAt(m_aValue, indexOf(ix, iy, iz, iFrame));
}

int CVolumSourcImag::setValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame, double value)
{
    return setValueAt(m_aValue, indexOf(ix, iy, iz, iFrame), value);
}

int CVolumSourcImag::getPeak(std::int64_t iFrame, double& x, double& y, double& z, double& value) const
{
    const std::int64_t first = indexOf(0, 0, 0, iFrame);
    if (first < 0)
        return 0;
    std::int64_t peak = -1;
    for (std::int64_t i = 0; i < m_grid.totalPoint(); ++i) {
        const double candidate = valueAt(m_aValue, first + i);
        if (!std::isnan(candidate) && (peak < 0 || std::abs(candidate) > std::abs(value))) {
            peak = i;
            value = candidate;
        }
    }
    return m_grid.pointPosition(peak, x, y, z);
}

// Place of a value, -1 outside.
std::int64_t CVolumSourcImag::indexOf(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame) const
{
    const std::int64_t point = m_grid.pointIndex(ix, iy, iz);
    if (point < 0 || !isWithin(iFrame, m_nFrame) ||
        !hasShape(m_aValue, {m_nFrame, m_grid.m_nX, m_grid.m_nY, m_grid.m_nZ}))
        return -1;
    return iFrame * m_grid.totalPoint() + point;
}

const FormatVersion<CVolumSourcImag09File> CVolumSourcImag09File::s_versions[1] = {
    {20261121, &CVolumSourcImag09File::serialize_20261121},
};

int CVolumSourcImag09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "VOLUMSOURCIMAGZK", s_versions);
}

int CVolumSourcImag09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strImageName, m_strValueUnit);
    m_grid.exchangeGrid(ar);
    EXCHANGE_FIELDS(ar, m_nFrame, m_nDataBegin, m_nDataEnd, m_nFrameStep, m_dFreqLow, m_dFreqHigh);
    exchangeNumbers(ar, m_aValue, "m_aValue");
    return hasShape(m_aValue, {m_nFrame, m_grid.m_nX, m_grid.m_nY, m_grid.m_nZ}) ? 1 : 0;
}

const FormatVersion<CFaceVolumSourceImage09File> CFaceVolumSourceImage09File::s_versions[1] = {
    {20261121, &CFaceVolumSourceImage09File::serialize_20261121},
};

int CFaceVolumSourceImage09File::serializeSAMFace(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEVOLUMSOURCEIMAGEZK", s_versions);
}

int CFaceVolumSourceImage09File::serialize_20261121(CArchive& ar)
{
    return exchangeImages(ar);
}

} // namespace megset
