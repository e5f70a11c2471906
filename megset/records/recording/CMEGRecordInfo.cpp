#include "megset/records/recording/CMEGRecordInfo.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

#include <string>

namespace megset {
namespace {

// Makes room for the parameters that are announced, all zero; false when there is none.
bool makeParameters(const CArchive& ar, COnlineFilter& filter)
{
    const std::int64_t count = filter.m_nFilterParamCount;
    if (count < 0 || !ar.mayHold(static_cast<std::uint64_t>(count) * sizeof(double)))
        return false;
    const auto zeros = tryNewZeroArray<double>(count);
    if (zeros == nullptr)
        return false;
    filter.m_filterParam.emplace(zeros.get(), zeros.get() + count);
    return true;
}

} // namespace

int COnlineFilter::exchangeFields(CArchive& ar)
{
    if (ar.IsStoring() && m_filterParam)
        m_nFilterParamCount = static_cast<std::int32_t>(m_filterParam->size());
    EXCHANGE_FIELDS(ar, m_nFilterKind, m_dFilterFreq, m_nFilterClass, m_nFilterParamCount);
    const bool present = exchangeGuard(ar, m_filterParam.has_value(), "hasFilterParam");
    if (ar.IsLoading())
        m_filterParam.reset();
    if (!present)
        return 1;
    if (ar.IsLoading() && !makeParameters(ar, *this))
        return 0;
    for (double& parameter : *m_filterParam)
        ar.exchangeNamed("m_filterParam", parameter);
    return 1;
}

int CMEGRecordInfo::clearFilterInfo()
{
    m_aOnlineFilter.RemoveAll();
    return 1;
}

const FormatVersion<CMEGRecordInfo09File> CMEGRecordInfo09File::s_versions[1] = {
    {20261121, &CMEGRecordInfo09File::serialize_20261121},
};

int CMEGRecordInfo09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGRECORDINFOBASEZK", s_versions);
}

int CMEGRecordInfo09File::serialize_20261121(CArchive& ar)
{
    serialize00Bk(ar);
    exchangeBasicWords(ar);
    exchangeBasicSamples(ar);
    serialize02AcqInfo(ar);
    if (!exchangeOnlineFilters(ar))
        return 0;
    serialize06Database(ar);
    exchangeTail(ar);
    return 1;
}

int CMEGRecordInfo09File::serialize00Bk(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nRawTotalSample, m_nRawPreTrigPts, m_dRawSampleRate, m_bResampleAverage, m_nResampleFactor);
    return 1;
}

void CMEGRecordInfo09File::exchangeBasicWords(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nBasicWordA, m_nBasicWordB, m_nBasicWordC, m_nBasicWordD, m_nAverageCount, m_nBasicWordE,
                    m_nBasicWordF);
}

void CMEGRecordInfo09File::exchangeBasicSamples(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nRecTotalSample, m_nRecPreTrigPts, m_dRecSampleRate, m_dBasicValue);
}

int CMEGRecordInfo09File::serialize02AcqInfo(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nAcqWordA, m_nAcqWordB, m_nAcqWordC, m_nAcqWordD, m_strAcqTextA, m_strAcqTextB, m_aAcqText,
                    m_nAcqWordE, m_strAcqTextC, m_nAcqWordF);
    return 1;
}

int CMEGRecordInfo09File::exchangeOnlineFilters(CArchive& ar)
{
    if (ar.IsLoading())
        clearFilterInfo();
    EXCHANGE_FIELDS(ar, m_dFilterWordA, m_aFilterValue);
    const auto exchangeFilter = [&ar](COnlineFilter& filter) { return filter.exchangeFields(ar); };
    if (exchangePointers<std::int64_t>(ar, m_aOnlineFilter, exchangeFilter))
        return 1;
    AfxMessageBox("Is memory enough?!", MB_OK);
    return 0;
}

// Texts by their numbers, both included.
void CMEGRecordInfo09File::exchangeDbTexts(CArchive& ar, int first, int last)
{
    for (int i = first - 1; i < last; ++i)
        ar.exchangeNamed("m_strDbText[" + std::to_string(i) + "]", m_strDbText[static_cast<std::size_t>(i)]);
}

int CMEGRecordInfo09File::serialize06Database(CArchive& ar)
{
    exchangeDbTexts(ar, 1, 7);
    EXCHANGE_FIELDS(ar, m_nDbWordA);
    exchangeDbTexts(ar, 8, 11);
    EXCHANGE_FIELDS(ar, m_nDbWordB);
    exchangeDbTexts(ar, 12, 15);
    EXCHANGE_FIELDS(ar, m_nDbWordC, m_nDbWordD);
    exchangeDbTexts(ar, 16, 19);
    EXCHANGE_FIELDS(ar, m_nDbWordE);
    exchangeDbTexts(ar, 20, 20);
    EXCHANGE_FIELDS(ar, m_nDbWordF);
    exchangeDbTexts(ar, 21, 36);
    EXCHANGE_FIELDS(ar, m_nDbWordG);
    exchangeDbTexts(ar, 37, 40);
    EXCHANGE_FIELDS(ar, m_dDbValueA, m_dDbValueB, m_nDbWordH, m_nDbWordI, m_dDbValueC, m_dDbValueD, m_nDbShort);
    exchangeDbTexts(ar, 41, 41);
    return 1;
}

void CMEGRecordInfo09File::exchangeTail(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nTailWordRec1, m_nTailWordRec2, m_dTailValueRec);
}

} // namespace megset
