#include "megset/spectral/CSpctmTrial09File.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/formatVersion.h"

namespace megset {

int CSpctmTrial09File::serializeTrlSpctmZk(CArchive& ar)
{
    static constexpr FormatTexts texts{"SPCTMTRIALZK", "The opened file is not trial data or corrupted!",
                                       "Wrong trial spectral file format!!?"};
    static constexpr FormatVersion<CSpctmTrial09File> versions[] = {
        {20090726, &CSpctmTrial09File::serializeTrlSpctm20090726},
        {20111112, &CSpctmTrial09File::serializeTrlSpctm20111112},
        {20111206, &CSpctmTrial09File::serializeTrlSpctm20111206},
        {20120423, &CSpctmTrial09File::serializeTrlSpctm20120423},
        {20150707, &CSpctmTrial09File::serializeTrlSpctm20150707}, // the one that is written
    };
    return serializeFormat(ar, *this, texts, versions);
}

int CSpctmTrial09File::serializeTrlSpctm20090726(CArchive& ar)
{
    return _00serializeTralSpctmBasic_old(ar) && _01serializeTralSpctmData_old(ar);
}

// The two edges that stood behind the sums are never reached.
int CSpctmTrial09File::serializeTrlSpctm20111112(CArchive& ar)
{
    return _00serializeTralSpctmBasic_old(ar) && _01serializeTralSpctmData_old(ar);
}

int CSpctmTrial09File::serializeTrlSpctm20111206(CArchive& ar)
{
    return _00serializeTralSpctmBasic_obsolete20190609(ar) && _01serializeTralSpctmData_obsolete201906(ar);
}

int CSpctmTrial09File::serializeTrlSpctm20120423(CArchive& ar)
{
    return _00serializeTralSpctmBasic_obsolete20190609(ar) && exchangeSumsRIM(ar);
}

int CSpctmTrial09File::serializeTrlSpctm20150707(CArchive& ar)
{
    if (!_00serializeTralSpctmBasic_obsolete20190609(ar) || !exchangeSumsRIM(ar))
        return 0;
    EXCHANGE_FIELDS(ar, m_strLabelR, m_strLabelI, m_strLabelM);
    return 1;
}

int CSpctmTrial09File::serializeTrlSpctm20190609(CArchive& ar)
{
    _00serializeTralSpctmBasic(ar);
    EXCHANGE_FIELDS(ar, m_strLabelR, m_strLabelI, m_strLabelM, m_strLabelA);
    return exchangeSumsRIM(ar) && m_aSumChnlA.serialSumChnl(ar);
}

int CSpctmTrial09File::_00serializeTralSpctmBasic_old(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    if (ar.IsLoading())
        _cleanAll();
    EXCHANGE_FIELDS(ar, m_nSpctmCmptType, m_nSpctmResultType, m_nSpctmNormState, m_nSpctmRix1, m_nTimePt, m_nFreqPt,
                    m_nSelectTimeBegin, m_nSelectTimeEnd, m_nSelectFreqBegin, m_nSelectFreqEnd, m_nDataLength,
                    m_nDataBegin, m_nDataEnd, m_nTimeStep, m_dFreqBegin, m_dFreqEnd, m_dFreqLinearStep, m_nFreqPt,
                    m_dSpctmParam, m_dSamplingRate, m_dFreqPowerStep, m_nFreqPowerStep, m_nSpctmParam2, m_nSpctmRix2);
    return 1;
}

int CSpctmTrial09File::_00serializeTralSpctmBasic_obsolete20190609(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeAxesAndSelection(ar);
    EXCHANGE_FIELDS(ar, m_nSpctmRix3, m_nSpctmRix4, m_nSpctmRix5, m_nSpctmParam3, m_nSpctmParam4, m_nSpctmParam5,
                    m_nSpctmParam6, m_nSpctmParam7, m_nSpctmParam8, m_nSpctmParam9);
    return 1;
}

int CSpctmTrial09File::_00serializeTralSpctmBasic(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeAxesAndSelection(ar);
    EXCHANGE_FIELDS(ar, m_nSpctmParam3, m_nSpctmParam4, m_nSpctmParam5, m_nSpctmParam6, m_nSpctmParam7, m_nSpctmParam8,
                    m_nSpctmParam9, m_nSpctmRix3, m_nSpctmRix4, m_nSpctmRix5, m_nSpctmParam10);
    return 1;
}

int CSpctmTrial09File::_01serializeTralSpctmData_old(CArchive&)
{
    AfxMessageBox("Old file format is not supported!", MB_OK);
    return 0;
}

int CSpctmTrial09File::_01serializeTralSpctmData_obsolete201906(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    return _01serializeTralSpctmData_old(ar);
}

// The fields in which the two newer layouts agree.
void CSpctmTrial09File::exchangeAxesAndSelection(CArchive& ar)
{
    if (ar.IsLoading())
        _cleanAll();
    EXCHANGE_FIELDS(ar, m_nSpctmCmptType, m_nSpctmRix1, m_nAccumSpctm, m_nTimePt, m_nFreqPt, m_nDataLength,
                    m_nDataBegin, m_nDataEnd, m_nEdgePt, m_nEdgePt2, m_nTimeStep, m_dFreqBegin, m_dFreqEnd,
                    m_nFreqPowerStep, m_dFreqLinearStep, m_dFreqPowerStep, m_dSpctmParam, m_dSamplingRate, m_nSpctmRix2,
                    m_nSpctmParam1, m_nSpctmParam2, m_nSpctmResultType, m_nSpctmNormState, m_nSelectTimeBegin,
                    m_nSelectTimeEnd, m_nSelectFreqBegin, m_nSelectFreqEnd);
}

int CSpctmTrial09File::exchangeSumsRIM(CArchive& ar)
{
    return m_aSumChnlR.serialSumChnl(ar) && m_aSumChnlI.serialSumChnl(ar) && m_aSumChnlM.serialSumChnl(ar);
}

} // namespace megset
