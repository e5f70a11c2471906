#include "megset/records/results/CChnlWaveAnalyzedResult.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

#include <algorithm>

namespace megset {

const FormatVersion<CWadX09File> CWadX09File::s_versions[1] = {
    {20261121, &CWadX09File::serialize_20261121},
};

int CWadX09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "WADXZK", s_versions);
}

int CWadX09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nKind, m_strName, m_nDataBegin, m_nStep);
    exchangeNumbers(ar, m_aValue, "m_aValue");
    return 1;
}

CWadXzk* CChnlWaveAnalyzedResult::getWadX(int nKind, int index) const
{
    int found = 0;
    for (int i = 0; i < m_aWad.GetSize(); ++i)
        if (m_aWad[i] != nullptr && m_aWad[i]->m_nKind == nKind && found++ == index)
            return m_aWad[i];
    return nullptr;
}

std::int64_t CChnlWaveAnalyzedResult::getMaxSample(int nKind) const
{
    std::int64_t largest = 0;
    for (int i = 0; i < m_aWad.GetSize(); ++i)
        if (m_aWad[i] != nullptr && m_aWad[i]->m_nKind == nKind)
            largest = std::max(largest, m_aWad[i]->getTotalSample());
    return largest;
}

int CChnlWaveAnalyzedResult::addWadX(const CWadXzk* wad)
{
    if (wad == nullptr)
        return 0;
    m_aWad.addCopy(*wad);
    return 1;
}

int CChnlWaveAnalyzedResult::cleanAll()
{
    m_aWad.RemoveAll();
    return 1;
}

const FormatVersion<CChnlWaveAnalyzedResult09File> CChnlWaveAnalyzedResult09File::s_versions[1] = {
    {20261121, &CChnlWaveAnalyzedResult09File::serialize_20261121},
};

int CChnlWaveAnalyzedResult09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "CHNLWAVEANALYZEDRESULTZK", s_versions);
}

int CChnlWaveAnalyzedResult09File::serialize_20261121(CArchive& ar)
{
    if (ar.IsLoading())
        m_aWad.RemoveAll();
    return exchangePointers<std::int32_t>(ar, m_aWad, [&ar](CWadXzk& wad) { return wad.serializezk(ar); });
}

void WaveResultSummary::exchangeFields(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nKind, m_nClass, m_nChannels, m_nMaxSample, m_dMin, m_dMean, m_dMax, m_dRms);
}

const WaveResultSummary* CTrlWaveAnalyzedResult::getSummary(int nKind, int nClass) const
{
    for (const WaveResultSummary& summary : m_aSummary)
        if (summary.m_nKind == nKind && summary.m_nClass == nClass)
            return &summary;
    return nullptr;
}

int CTrlWaveAnalyzedResult::setSummary(const WaveResultSummary& summary)
{
    for (WaveResultSummary& existing : m_aSummary)
        if (existing.m_nKind == summary.m_nKind && existing.m_nClass == summary.m_nClass) {
            existing = summary;
            return 1;
        }
    m_aSummary.push_back(summary);
    return 1;
}

const FormatVersion<CTrlWaveAnalyzedResult09File> CTrlWaveAnalyzedResult09File::s_versions[1] = {
    {20261121, &CTrlWaveAnalyzedResult09File::serialize_20261121},
};

int CTrlWaveAnalyzedResult09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "TRLWAVEANALYZEDRESULTZK", s_versions);
}

int CTrlWaveAnalyzedResult09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nCurrentKind, m_nCurrentClass, m_nSelectBegin, m_nSelectEnd, m_nBaselineBegin,
                    m_nBaselineEnd);
    exchangeList(ar, m_aSummary, [&ar](WaveResultSummary& summary) { summary.exchangeFields(ar); });
    return 1;
}

void WaveAnalysis::exchangeFields(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nKind, m_strName, m_strUnit, m_dFreqLow, m_dFreqHigh, m_dWindowMs, m_dStepMs);
}

const WaveAnalysis* CFaceWaveAnalyzedResult::getAnalysis(int nKind) const
{
    for (const WaveAnalysis& analysis : m_aAnalysis)
        if (analysis.m_nKind == nKind)
            return &analysis;
    return nullptr;
}

int CFaceWaveAnalyzedResult::setAnalysis(const WaveAnalysis& analysis)
{
    for (WaveAnalysis& existing : m_aAnalysis)
        if (existing.m_nKind == analysis.m_nKind) {
            existing = analysis;
            return 1;
        }
    m_aAnalysis.push_back(analysis);
    return 1;
}

const FormatVersion<CFaceWaveAnalyzedResult09File> CFaceWaveAnalyzedResult09File::s_versions[1] = {
    {20261121, &CFaceWaveAnalyzedResult09File::serialize_20261121},
};

int CFaceWaveAnalyzedResult09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEWAVEANALYZEDRESULTZK", s_versions);
}

int CFaceWaveAnalyzedResult09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nCurrentKind, m_nCurrentClass, m_bShow, m_dShowMin, m_dShowMax);
    exchangeList(ar, m_aAnalysis, [&ar](WaveAnalysis& analysis) { analysis.exchangeFields(ar); });
    return 1;
}

} // namespace megset
