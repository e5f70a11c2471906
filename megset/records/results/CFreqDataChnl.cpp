#include "megset/records/results/CFreqDataChnl.h"

#include "megset/records/recordFormat.h"

#include <algorithm>

namespace megset {

int CFreqDataChnl::getFreqData(int nDataType, double** ppData, std::int64_t* pPoints)
{
    std::vector<double>* data = isWithin(nDataType, 4) ? &m_aFreqData[static_cast<std::size_t>(nDataType)] : nullptr;
    const bool present = data != nullptr && !data->empty();
    if (ppData != nullptr)
        *ppData = present ? data->data() : nullptr;
    if (pPoints != nullptr)
        *pPoints = present ? static_cast<std::int64_t>(data->size()) : 0;
    return present ? 1 : 0;
}

int CFreqDataChnl::setFreqData(int nDataType, std::span<const double> values)
{
    if (!isWithin(nDataType, 4) || values.empty())
        return 0;
    for (std::size_t other = 0; other < m_aFreqData.size(); ++other)
        if (other != static_cast<std::size_t>(nDataType) && !m_aFreqData[other].empty() &&
            m_aFreqData[other].size() != values.size())
            return 0;
    m_aFreqData[static_cast<std::size_t>(nDataType)].assign(values.begin(), values.end());
    m_nFreqPt = static_cast<std::int64_t>(values.size());
    return 1;
}

bool CFreqDataChnl::hasFreqData() const
{
    return m_nFreqPt > 0 && std::ranges::any_of(m_aFreqData, [](const auto& data) { return !data.empty(); });
}

int CFreqDataChnl::cleanAll()
{
    m_aFreqData = {};
    m_nFreqPt = 0;
    return 1;
}

bool CFreqDataChnl::isConsistent() const
{
    return std::ranges::all_of(m_aFreqData, [this](const auto& data) { return hasShapeOrIsEmpty(data, {m_nFreqPt}); });
}

const FormatVersion<CFreqDataChnl09File> CFreqDataChnl09File::s_versions[1] = {
    {20261121, &CFreqDataChnl09File::serialize_20261121},
};

int CFreqDataChnl09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FREQDATACHNLZK", s_versions);
}

int CFreqDataChnl09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nDataBegin, m_nFreqPt);
    for (std::vector<double>& data : m_aFreqData)
        exchangeNumbers(ar, data, "m_aFreqData");
    return isConsistent() ? 1 : 0;
}

int CSumChnlFreqData::checkInit(std::int64_t points)
{
    cleanAll();
    if (points < 1)
        return 0;
    for (std::vector<double>* sum : {&m_aSumMin, &m_aSumMean, &m_aSumMax, &m_aSumPositive, &m_aSumNegative, &m_aSumRms})
        if (!resizeToZeros(*sum, points)) {
            cleanAll();
            return 0;
        }
    m_nFreqPt = points;
    return 1;
}

int CSumChnlFreqData::cleanAll()
{
    *this = CSumChnlFreqData();
    return 1;
}

bool CSumChnlFreqData::isConsistent() const
{
    for (const std::vector<double>* sum :
         {&m_aSumMin, &m_aSumMean, &m_aSumMax, &m_aSumPositive, &m_aSumNegative, &m_aSumRms})
        if (!hasShapeOrIsEmpty(*sum, {m_nFreqPt}))
            return false;
    return true;
}

const FormatVersion<CSumChnlFreqData09File> CSumChnlFreqData09File::s_versions[1] = {
    {20261121, &CSumChnlFreqData09File::serialize_20261121},
};

int CSumChnlFreqData09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SUMCHNLFREQDATAZK", s_versions);
}

int CSumChnlFreqData09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nFreqPt);
    exchangeNumbers(ar, m_aSumMin, "m_aSumMin");
    exchangeNumbers(ar, m_aSumMean, "m_aSumMean");
    exchangeNumbers(ar, m_aSumMax, "m_aSumMax");
    exchangeNumbers(ar, m_aSumPositive, "m_aSumPositive");
    exchangeNumbers(ar, m_aSumNegative, "m_aSumNegative");
    exchangeNumbers(ar, m_aSumRms, "m_aSumRms");
    EXCHANGE_FIELDS(ar, m_bRangeValid, m_nChannels, m_dMax, m_dMean, m_dMin, m_dPositive, m_dNegative, m_dRms);
    return isConsistent() ? 1 : 0;
}

CSumChnlFreqDatazk* CFreqDataTrial::getSumChnlFreqData(int nDataType)
{
    return isWithin(nDataType, 4) ? &m_aSum[static_cast<std::size_t>(nDataType)] : nullptr;
}

double CFreqDataTrial::getFreqHz(std::int64_t iFreq) const
{
    return m_dFreqBegin + m_dFreqStep * static_cast<double>(iFreq);
}

const FormatVersion<CFreqDataTrial09File> CFreqDataTrial09File::s_versions[1] = {
    {20261121, &CFreqDataTrial09File::serialize_20261121},
};

int CFreqDataTrial09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FREQDATATRIALZK", s_versions);
}

int CFreqDataTrial09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_dFreqBegin, m_dFreqStep, m_dSamplingRate, m_nSelectFreqBegin, m_nSelectFreqEnd);
    for (CSumChnlFreqDatazk& sum : m_aSum)
        if (!sum.serializezk(ar))
            return 0;
    return 1;
}

const FormatVersion<CFreqDatasetFace09File> CFreqDatasetFace09File::s_versions[1] = {
    {20261121, &CFreqDatasetFace09File::serialize_20261121},
};

int CFreqDatasetFace09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "FREQDATASETFACEZK", s_versions);
}

int CFreqDatasetFace09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strFaceName, m_nCurrentClass, m_nCurrentDataType, m_dFreqLow, m_dFreqHigh, m_dShowMin,
                    m_dShowMax);
    return 1;
}

} // namespace megset
