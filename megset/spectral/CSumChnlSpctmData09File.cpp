#include "megset/spectral/CSumChnlSpctmData09File.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/formatVersion.h"
#include "megset/spectral/spectralPlanes.h"

namespace megset {
namespace {

constexpr int sumPlanes = 6;

} // namespace

int CSumChnlSpctmData09File::serialSumChnl(CArchive& ar)
{
    static constexpr FormatTexts texts{"SUMCHNLZK", "The opened file is not trial data or corrupted!",
                                       "Wrong trial sum-channel spectrum!!?"};
    static constexpr FormatVersion<CSumChnlSpctmData09File> versions[] = {
        {20120423, &CSumChnlSpctmData09File::serialSumChnl20120423},
        {20120725, &CSumChnlSpctmData09File::serialSumChnl20120725},
        {20131220, &CSumChnlSpctmData09File::serialSumChnl20131220}, // the one that is written
    };
    return serializeFormat(ar, *this, texts, versions);
}

int CSumChnlSpctmData09File::serialSumChnl20120423(CArchive& ar)
{
    return b00serialSumChnData(ar) && b01serialInfo(ar) && b03serialPeakFreqValue(ar);
}

int CSumChnlSpctmData09File::serialSumChnl20120725(CArchive& ar)
{
    return b00serialSumChnData_New(ar) && b01serialInfo_New(ar);
}

int CSumChnlSpctmData09File::serialSumChnl20131220(CArchive& ar)
{
    return b00serialSumChnData_Fast(ar) && b01serialInfo_New(ar);
}

void CSumChnlSpctmData09File::exchangeShape(CArchive& ar)
{
    if (ar.IsLoading())
        clean();
    EXCHANGE_FIELDS(ar, m_nTimePt, m_nFreqPt);
}

// The oldest form: each row behind a guard. The planes are given up.
int CSumChnlSpctmData09File::b00serialSumChnData(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeShape(ar);
    for (int plane = 0; plane < sumPlanes; ++plane)
        if (dropPlaneOfGuardedRows(ar, m_nTimePt, m_nFreqPt) == BlockResult::noMemory)
            return 0;
    return 1;
}

// Planes value by value, which are given up.
int CSumChnlSpctmData09File::b00serialSumChnData_New(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeShape(ar);
    for (int plane = 0; plane < sumPlanes; ++plane)
        if (dropPlaneOfValues(ar, m_nTimePt, m_nFreqPt) == BlockResult::noMemory)
            return 0;
    return 1;
}

int CSumChnlSpctmData09File::b00serialSumChnData_Fast(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeShape(ar);
    const std::int64_t count = planeCount(m_nTimePt, m_nFreqPt);
    const auto exchange = [&](SampleArray& plane, std::string_view name) {
        const bool legal = m_nTimePt >= 1 && m_nFreqPt >= 1;
        return exchangePlane(ar, plane, count, legal, name) != BlockResult::noMemory;
    };
    return exchange(m_pSumMin, "m_pSumMin") && exchange(m_pSumMean, "m_pSumMean") && exchange(m_pSumMax, "m_pSumMax") &&
           exchange(m_pSumPositive, "m_pSumPositive") && exchange(m_pSumNegative, "m_pSumNegative") &&
           exchange(m_pSumRms, "m_pSumRms");
}

// Statistics of the oldest form, without the three of the signs and the root mean square.
int CSumChnlSpctmData09File::b01serialInfo(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    EXCHANGE_FIELDS(ar, m_nRangeValid, m_nChannels, m_dRangeMin, m_dRangeMean, m_dRangeMax, m_dAbsMax, m_dAbsMean,
                    m_dAbsMin, m_dReserved3, m_dReserved2, m_dReserved1);
    return 1;
}

int CSumChnlSpctmData09File::b01serialInfo_New(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    EXCHANGE_FIELDS(ar, m_nRangeValid, m_nChannels, m_dRangeMin, m_dRangeMean, m_dRangeMax, m_dRangePositive,
                    m_dRangeNegative, m_dRangeRms, m_dAbsMax, m_dAbsMean, m_dAbsMin, m_dReserved3, m_dReserved2,
                    m_dReserved1);
    return 1;
}

int CSumChnlSpctmData09File::b03serialPeakFreqValue(CArchive&)
{
    AfxMessageBox("Old file format is not supported!", MB_OK);
    return 0;
}

} // namespace megset
