#include "megset/records/results/CFaceVolumSourceCoherenceImage.h"

#include "megset/records/recordFormat.h"

namespace megset {

int CVolumSourcCoherencImag::setSize(const SourceGrid& grid, const std::vector<double>& frequencies)
{
    m_grid = grid;
    m_aFreq = frequencies;
    if (resizeToZeros(m_aValue, elementCount({getTotalFreq(), grid.m_nX, grid.m_nY, grid.m_nZ})))
        return 1;
    m_grid = SourceGrid();
    m_aFreq.clear();
    return 0;
}

double CVolumSourcCoherencImag::getValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFreq) const
{
    return valueAt(m_aValue, indexOf(ix, iy, iz, iFreq));
}

int CVolumSourcCoherencImag::setValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFreq,
                                      double value)
{
    return setValueAt(m_aValue, indexOf(ix, iy, iz, iFreq), value);
}

// Place of a value, -1 outside.
std::int64_t CVolumSourcCoherencImag::indexOf(std::int64_t ix, std::int64_t iy, std::int64_t iz,
                                              std::int64_t iFreq) const
{
    const std::int64_t point = m_grid.pointIndex(ix, iy, iz);
    if (point < 0 || !isWithin(iFreq, getTotalFreq()) ||
        !hasShape(m_aValue, {getTotalFreq(), m_grid.m_nX, m_grid.m_nY, m_grid.m_nZ}))
        return -1;
    return iFreq * m_grid.totalPoint() + point;
}

const FormatVersion<CVolumSourcCoherencImag09File> CVolumSourcCoherencImag09File::s_versions[1] = {
    {20261121, &CVolumSourcCoherencImag09File::serialize_20261121},
};

int CVolumSourcCoherencImag09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "VOLUMSOURCCOHERENCIMAGZK", s_versions);
}

int CVolumSourcCoherencImag09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strImageName, m_strReferenceName, m_dReferencePos);
    m_grid.exchangeGrid(ar);
    EXCHANGE_FIELDS(ar, m_nDataBegin, m_nDataEnd);
    exchangeNumbers(ar, m_aFreq, "m_aFreq");
    exchangeNumbers(ar, m_aValue, "m_aValue");
    return hasShape(m_aValue, {getTotalFreq(), m_grid.m_nX, m_grid.m_nY, m_grid.m_nZ}) ? 1 : 0;
}

const FormatVersion<CFaceVolumSourceCoherenceImage09File> CFaceVolumSourceCoherenceImage09File::s_versions[1] = {
    {20261121, &CFaceVolumSourceCoherenceImage09File::serialize_20261121},
};

int CFaceVolumSourceCoherenceImage09File::serializeFaceVlmSrcNtwk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEVOLUMSOURCECOHERENCEIMAGEZK", s_versions);
}

int CFaceVolumSourceCoherenceImage09File::serialize_20261121(CArchive& ar)
{
    return exchangeImages(ar);
}

} // namespace megset
