#include "megset/records/results/CSrcCohFace.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

void CohSource::exchangeFields(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strSourceName, m_dPosition, m_dDirection);
}

const CohSource* CSrcCohFace::getPairSource(std::int64_t iPair, bool reference) const
{
    const std::int64_t at = iPair == -1 ? m_nCurrentPair : iPair;
    if (!isWithin(at, getTotalPair()))
        return nullptr;
    const CohPair& pair = m_aPair[static_cast<std::size_t>(at)];
    const std::int64_t source = reference ? pair.m_nReference : pair.m_nChannel;
    return isWithin(source, static_cast<std::int64_t>(m_aSource.size())) ? &m_aSource[static_cast<std::size_t>(source)]
                                                                         : nullptr;
}

const FormatVersion<CSrcCohFace9File> CSrcCohFace9File::s_versions[1] = {
    {20261121, &CSrcCohFace9File::serialize_20261121},
};

int CSrcCohFace9File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "SRCCOHFACEZK", s_versions);
}

int CSrcCohFace9File::serialize_20261121(CArchive& ar)
{
    exchangeList(ar, m_aSource, [&ar](CohSource& source) { source.exchangeFields(ar); });
    return exchangePlanes(ar);
}

} // namespace megset
