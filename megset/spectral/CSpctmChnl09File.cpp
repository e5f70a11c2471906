#include "megset/spectral/CSpctmChnl09File.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/formatVersion.h"
#include "megset/spectral/spectralPlanes.h"

#include <string_view>

namespace megset {
namespace {

constexpr std::string_view noMemoryR = "Has enough memory?";
constexpr std::string_view noMemoryOther = "Not enough memory!";

// 1 unless the plane could not be held, which is told.
int told(BlockResult result, std::string_view noMemoryText)
{
    if (result != BlockResult::noMemory)
        return 1;
    AfxMessageBox(noMemoryText, MB_OK);
    return 0;
}

using DropPlane = BlockResult (*)(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt);

// R, I and M of a data half whose contents are given up.
int dropDataPlanes(CArchive& ar, DropPlane drop, const CSpctmChnl& spectrum)
{
    for (const std::string_view noMemoryText : {noMemoryR, noMemoryOther, noMemoryOther})
        if (!told(drop(ar, spectrum.m_nTimePt, spectrum.m_nFreqPt), noMemoryText))
            return 0;
    return 1;
}

int dropBackupPlanes(CArchive& ar, DropPlane drop, const CSpctmChnl& spectrum)
{
    for (int plane = 0; plane < 3; ++plane)
        if (!told(drop(ar, spectrum.m_nBkTimePt, spectrum.m_nBkFreqPt), noMemoryR))
            return 0;
    return 1;
}

// The oldest form goes on behind a row that could not be held.
BlockResult dropAsFarAsItGoes(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt, std::string_view noMemoryText)
{
    const BlockResult result = dropPlaneOfGuardedRows(ar, nTimePt, nFreqPt);
    told(result, noMemoryText);
    return result;
}

} // namespace

int CSpctmChnl09File::serializeSpctmCzk(CArchive& ar)
{
    static constexpr FormatTexts texts{"SPCTMCHNLZK", "This is error in opening channel spectral data!",
                                       "Channel spectral fileformat error !!!?"};
    static constexpr FormatVersion<CSpctmChnl09File> versions[] = {
        {20090726, &CSpctmChnl09File::serializeSpctmC20090726}, {20120725, &CSpctmChnl09File::serializeSpctmC20120725},
        {20131218, &CSpctmChnl09File::serializeSpctmC20131218}, {20131219, &CSpctmChnl09File::serializeSpctmC20131219},
        {20190609, &CSpctmChnl09File::serializeSpctmC20190609}, // the one that is written
    };
    const int done = serializeFormat(ar, *this, texts, versions);
    if (!done && ar.IsStoring())
        AfxMessageBox("Channel spectral file error !!!?", MB_OK);
    return done;
}

int CSpctmChnl09File::serializeSpctmC20090726(CArchive& ar)
{
    return _01serializeSpctmData(ar) && _02serializeSpctm2BkFile(ar);
}

int CSpctmChnl09File::serializeSpctmC20120725(CArchive& ar)
{
    return _01serializeSpctmData_New(ar) && _02serializeSpctm2BkFile_new(ar);
}

int CSpctmChnl09File::serializeSpctmC20131218(CArchive& ar)
{
    return _01serializeSpctmData_New2(ar) && _02serializeSpctm2BkFile_new2(ar);
}

int CSpctmChnl09File::serializeSpctmC20131219(CArchive& ar)
{
    return _01serializeSpctmData_Fast_obsolete201906(ar) && _02serializeSpctm2BkFile_Fast_obsolete201906(ar);
}

int CSpctmChnl09File::serializeSpctmC20190609(CArchive& ar)
{
    return _01serializeSpctmData_Fast(ar) && _02serializeSpctm2BkFile_Fast(ar);
}

// Range and shape.
void CSpctmChnl09File::exchangeHeader(CArchive& ar)
{
    if (ar.IsLoading())
        _cleanSpctmData();
    EXCHANGE_FIELDS(ar, m_dSpctmMax, m_dSpctmMin, m_dSpctmMean, m_nTimePt, m_nFreqPt);
}

void CSpctmChnl09File::exchangeBkHeader(CArchive& ar)
{
    if (ar.IsLoading())
        _cleanBkSpctmData();
    EXCHANGE_FIELDS(ar, m_nBkTimePt, m_nBkFreqPt);
}

// The oldest form: each row behind a guard.
int CSpctmChnl09File::_01serializeSpctmData(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeHeader(ar);
    for (const std::string_view noMemoryText : {noMemoryR, noMemoryOther, noMemoryOther})
        dropAsFarAsItGoes(ar, m_nTimePt, m_nFreqPt, noMemoryText);
    return 1;
}

int CSpctmChnl09File::_02serializeSpctm2BkFile(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeBkHeader(ar);
    for (int plane = 0; plane < 3; ++plane)
        dropAsFarAsItGoes(ar, m_nBkTimePt, m_nBkFreqPt, noMemoryR);
    return 1;
}

// Planes value by value.
int CSpctmChnl09File::_01serializeSpctmData_New(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeHeader(ar);
    return dropDataPlanes(ar, dropPlaneOfValues, *this);
}

int CSpctmChnl09File::_02serializeSpctm2BkFile_new(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeBkHeader(ar);
    return dropBackupPlanes(ar, dropPlaneOfValues, *this);
}

// Planes row by row.
int CSpctmChnl09File::_01serializeSpctmData_New2(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeHeader(ar);
    return dropDataPlanes(ar, dropPlaneOfRows, *this);
}

int CSpctmChnl09File::_02serializeSpctm2BkFile_new2(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeBkHeader(ar);
    return dropBackupPlanes(ar, dropPlaneOfRows, *this);
}

// Planes as blocks, without A.
int CSpctmChnl09File::_01serializeSpctmData_Fast_obsolete201906(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeHeader(ar);
    const std::int64_t count = planeCount(m_nTimePt, m_nFreqPt);
    const bool legal = m_nTimePt >= 1 && m_nFreqPt >= 1;
    return told(exchangePlane(ar, m_pSpctmR, count, legal, "m_pSpctmR"), noMemoryR) &&
           told(exchangePlane(ar, m_pSpctmI, count, legal, "m_pSpctmI"), noMemoryOther) &&
           told(exchangePlane(ar, m_pSpctmM, count, legal, "m_pSpctmM"), noMemoryOther);
}

int CSpctmChnl09File::_02serializeSpctm2BkFile_Fast_obsolete201906(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    exchangeBkHeader(ar);
    const std::int64_t count = planeCount(m_nBkTimePt, m_nBkFreqPt);
    const bool legal = m_nBkTimePt >= 1; // as it is meant: the frequencies are not tested here
    return told(exchangePlane(ar, m_pBkSpctmR, count, legal, "m_pBkSpctmR"), noMemoryR) &&
           told(exchangePlane(ar, m_pBkSpctmI, count, legal, "m_pBkSpctmI"), noMemoryR) &&
           told(exchangePlane(ar, m_pBkSpctmM, count, legal, "m_pBkSpctmM"), noMemoryR);
}

// What is written today: A behind the other planes.
int CSpctmChnl09File::_01serializeSpctmData_Fast(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    if (!_01serializeSpctmData_Fast_obsolete201906(ar))
        return 0;
    const bool legal = m_nTimePt >= 1 && m_nFreqPt >= 1;
    return told(exchangePlane(ar, m_pSpctmA, planeCount(m_nTimePt, m_nFreqPt), legal, "m_pSpctmA"), noMemoryOther);
}

int CSpctmChnl09File::_02serializeSpctm2BkFile_Fast(CArchive& ar)
{
    const ArchiveSection section(ar, __func__);
    if (!_02serializeSpctm2BkFile_Fast_obsolete201906(ar))
        return 0;
    const bool legal = m_nBkTimePt >= 1;
    return told(exchangePlane(ar, m_pBkSpctmA, planeCount(m_nBkTimePt, m_nBkFreqPt), legal, "m_pBkSpctmA"), noMemoryR);
}

} // namespace megset
