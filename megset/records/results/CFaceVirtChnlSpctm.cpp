#include "megset/records/results/CFaceVirtChnlSpctm.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

double CVirtChnlSpctm::getValue(int nDataType, std::int64_t iTime, std::int64_t iFreq, std::int64_t freqPt) const
{
    if (!isWithin(nDataType, 4) || !isWithin(iFreq, freqPt) || iTime < 0)
        return noValue;
    const std::vector<double>& plane = m_aPlane[static_cast<std::size_t>(nDataType)];
    if (iTime >= static_cast<std::int64_t>(plane.size()) / freqPt)
        return noValue;
    return valueAt(plane, iTime * freqPt + iFreq);
}

const FormatVersion<CVirtChnlSpctm9File> CVirtChnlSpctm9File::s_versions[1] = {
    {20261121, &CVirtChnlSpctm9File::serialize_20261121},
};

int CVirtChnlSpctm9File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "VIRTCHNLSPCTMZK", s_versions);
}

int CVirtChnlSpctm9File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strChannelName, m_bShow, m_dPosition, m_dDirection);
    for (std::vector<double>& plane : m_aPlane)
        exchangeNumbers(ar, plane, "m_aPlane");
    return 1;
}

CVirtChnlSpctmzk* CFaceVirtChnlSpctm::getVirtChnlSpctm(std::int64_t index) const
{
    const std::int64_t at = index == -1 ? m_nCurrentChannel : index;
    return isWithin(at, m_aVirtSpctm.GetSize()) ? m_aVirtSpctm[static_cast<int>(at)] : nullptr;
}

int CFaceVirtChnlSpctm::addVirtChnlSpctm(const CVirtChnlSpctmzk* spctm)
{
    return spctm != nullptr && fits(*spctm) ? m_aVirtSpctm.addCopy(*spctm) : -1;
}

bool CFaceVirtChnlSpctm::fits(const CVirtChnlSpctm& spctm) const
{
    for (const std::vector<double>& plane : spctm.m_aPlane)
        if (!hasShapeOrIsEmpty(plane, {m_nTimePt, m_nFreqPt}))
            return false;
    return true;
}

const FormatVersion<CFaceVirtChnlSpctm9File> CFaceVirtChnlSpctm9File::s_versions[1] = {
    {20261121, &CFaceVirtChnlSpctm9File::serialize_20261121},
};

int CFaceVirtChnlSpctm9File::serializeSpctmC(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEVIRTCHNLSPCTMZK", s_versions);
}

int CFaceVirtChnlSpctm9File::serialize_20261121(CArchive& ar)
{
    exchangeAxes(ar);
    EXCHANGE_FIELDS(ar, m_nCurrentChannel);
    if (ar.IsLoading())
        m_aVirtSpctm.RemoveAll();
    return exchangePointers<std::int32_t>(
        ar, m_aVirtSpctm, [&](CVirtChnlSpctmzk& spctm) { return spctm.serializezk(ar) && fits(spctm); });
}

} // namespace megset
