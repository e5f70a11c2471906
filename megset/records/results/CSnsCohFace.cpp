#include "megset/records/results/CSnsCohFace.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CSnsCohData09File> CSnsCohData09File::s_versions[1] = {
    {20261121, &CSnsCohData09File::serialize_20261121},
};

int CSnsCohData09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SNSCOHDATAZK", s_versions);
}

int CSnsCohData09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strDataName);
    return exchangePlanes(ar);
}

CSnsCohDatazk* CSnsCohFace::getCoherenceData(int iData) const
{
    const int at = iData == -1 ? m_nCurrentData : iData;
    return isWithin(at, m_aCohData.GetSize()) ? m_aCohData[at] : nullptr;
}

int CSnsCohFace::addCoherenceData(const CSnsCohDatazk* data)
{
    return data != nullptr ? m_aCohData.addCopy(*data) : -1;
}

const FormatVersion<CSnsCohFace09File> CSnsCohFace09File::s_versions[1] = {
    {20261121, &CSnsCohFace09File::serialize_20261121},
};

int CSnsCohFace09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "SNSCOHFACEZK", s_versions);
}

int CSnsCohFace09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nCurrentData);
    if (ar.IsLoading())
        m_aCohData.RemoveAll();
    return exchangePointers<std::int32_t>(ar, m_aCohData, [&ar](CSnsCohDatazk& data) { return data.serializezk(ar); });
}

} // namespace megset
