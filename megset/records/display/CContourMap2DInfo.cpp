#include "megset/records/display/CContourMap2DInfo.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CContourMap2DInfo09File> CContourMap2DInfo09File::s_versions[] = {
    {20261121, &CContourMap2DInfo09File::serialize_20261121},
};

int CContourMap2DInfo09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "CONTOURMAP2DINFOZK", s_versions);
}

void CContourMap2DInfo09File::exchangeExtents(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_dXmin, m_dXmax, m_dYmin, m_dYmax, m_dZmin, m_dZmax, m_dPlaneXmin, m_dPlaneXmax, m_dPlaneYmin,
                    m_dPlaneYmax, m_dPlaneScale);
}

int CContourMap2DInfo09File::serialize_20261121(CArchive& ar)
{
    exchangeExtents(ar);
    return 1;
}

} // namespace megset
