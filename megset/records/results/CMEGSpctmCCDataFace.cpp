#include "megset/records/results/CMEGSpctmCCDataFace.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

int CMEGSpctmCCTrlData::setSize(const std::vector<std::int32_t>& channels, std::int64_t timePt, std::int64_t freqPt)
{
    *this = CMEGSpctmCCTrlData();
    const auto count = static_cast<std::int64_t>(channels.size());
    if (elementCount({count, count, timePt, freqPt}) < 0)
        return 0;
    m_aChannel = channels;
    m_nTimePt = timePt;
    m_nFreqPt = freqPt;
    return 1;
}

int CMEGSpctmCCTrlData::initPlanes(int nDataType)
{
    if (!isWithin(nDataType, 4))
        return 0;
    return resizeToZeros(m_aPlane[static_cast<std::size_t>(nDataType)],
                         elementCount({getTotalChannel(), getTotalChannel(), m_nTimePt, m_nFreqPt}));
}

double CMEGSpctmCCTrlData::getValue(int nDataType, std::int64_t a, std::int64_t b, std::int64_t iTime,
                                    std::int64_t iFreq) const
{
    return isWithin(nDataType, 4) ? valueAt(m_aPlane[static_cast<std::size_t>(nDataType)], indexOf(a, b, iTime, iFreq))
                                  : noValue;
}

int CMEGSpctmCCTrlData::setValue(int nDataType, std::int64_t a, std::int64_t b, std::int64_t iTime, std::int64_t iFreq,
                                 double value)
{
    return isWithin(nDataType, 4)
               ? setValueAt(m_aPlane[static_cast<std::size_t>(nDataType)], indexOf(a, b, iTime, iFreq), value)
               : 0;
}

bool CMEGSpctmCCTrlData::isConsistent() const
{
    for (const std::vector<double>& plane : m_aPlane)
        if (!hasShapeOrIsEmpty(plane, {getTotalChannel(), getTotalChannel(), m_nTimePt, m_nFreqPt}))
            return false;
    return elementCount({getTotalChannel(), getTotalChannel(), m_nTimePt, m_nFreqPt}) >= 0;
}

// Place of a value, -1 outside.
std::int64_t CMEGSpctmCCTrlData::indexOf(std::int64_t a, std::int64_t b, std::int64_t iTime, std::int64_t iFreq) const
{
    const std::int64_t channels = getTotalChannel();
    if (!isWithin(a, channels) || !isWithin(b, channels) || !isWithin(iTime, m_nTimePt) ||
        !isWithin(iFreq, m_nFreqPt) || !isConsistent())
        return -1;
    return ((a * channels + b) * m_nTimePt + iTime) * m_nFreqPt + iFreq;
}

const FormatVersion<CMEGSpctmCCTrlData09File> CMEGSpctmCCTrlData09File::s_versions[1] = {
    {20261121, &CMEGSpctmCCTrlData09File::serialize_20261121},
};

int CMEGSpctmCCTrlData09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGSPCTMCCTRLDATAZK", s_versions);
}

int CMEGSpctmCCTrlData09File::serialize_20261121(CArchive& ar)
{
    exchangeAxes(ar);
    exchangeNumbers(ar, m_aChannel, "m_aChannel");
    for (std::vector<double>& plane : m_aPlane)
        exchangeNumbers(ar, plane, "m_aPlane");
    return isConsistent() ? 1 : 0;
}

CMEGSpctmCCTrlDatazk* CMEGSpctmCCDataFace::getCCSpctmTrlData4Class(int nClass, bool bCreate)
{
    if (!isWithin(nClass, 3))
        return nullptr;
    std::optional<CMEGSpctmCCTrlDatazk>& slot = m_aTrlData[static_cast<std::size_t>(nClass)];
    if (!slot && bCreate)
        slot.emplace();
    return slot ? &*slot : nullptr;
}

const CMEGSpctmCCTrlDatazk* CMEGSpctmCCDataFace::getCCSpctmTrlData4Class(int nClass) const
{
    if (!isWithin(nClass, 3) || !m_aTrlData[static_cast<std::size_t>(nClass)])
        return nullptr;
    return &*m_aTrlData[static_cast<std::size_t>(nClass)];
}

int CMEGSpctmCCDataFace::cleanAll()
{
    m_aTrlData = {};
    return 1;
}

std::int64_t CMEGSpctmCCDataFace04Prcs::getSpctmTimePt(std::int64_t iTime, int nClass, int /*nDataType*/) const
{
    const CMEGSpctmCCTrlDatazk* data = getCCSpctmTrlData4Class(nClass);
    return data != nullptr ? data->SpctmAxes::getSpctmTimePt(iTime) : -1;
}

const FormatVersion<CMEGSpctmCCDataFace09File> CMEGSpctmCCDataFace09File::s_versions[1] = {
    {20261121, &CMEGSpctmCCDataFace09File::serialize_20261121},
};

int CMEGSpctmCCDataFace09File::serializeSpctmFace(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGSPCTMCCDATAFACEZK", s_versions);
}

int CMEGSpctmCCDataFace09File::serialize_20261121(CArchive& ar)
{
    for (std::optional<CMEGSpctmCCTrlDatazk>& slot : m_aTrlData) {
        const bool present = exchangeGuard(ar, slot.has_value());
        if (ar.IsLoading())
            slot.reset();
        if (!present)
            continue;
        if (ar.IsLoading())
            slot.emplace();
        if (!slot->serializezk(ar))
            return 0;
    }
    return 1;
}

} // namespace megset
