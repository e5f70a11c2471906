#include "megset/records/processing/CFilterDcLtSetting.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CFilterDcLtSetting09File> CFilterDcLtSetting09File::s_versions[] = {
    {20261121, &CFilterDcLtSetting09File::serialize_20261121},
};

int CFilterDcLtSetting09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FILTERDCLTZK", s_versions);
}

int CFilterDcLtSetting09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_bFiltLowPass, m_bFiltHighPass, m_bFiltBand, m_dFiltLowPassHz, m_dFiltHighPassHz,
                    m_dFiltBandLowHz, m_dFiltBandHighHz, m_nFiltOrder, m_bFiltZeroPhase, m_bFiltNotch, m_dFiltNotchHz,
                    m_dFiltNotchWidth, m_bDcOffset, m_bLinearTrend, m_nDcLtRange, m_nDcLtBegin, m_nDcLtEnd);
    return 1;
}

} // namespace megset
