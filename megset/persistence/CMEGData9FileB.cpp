#include "megset/persistence/CMEGData9FileB.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

// Whether a file may have that many trials: it holds a path for each of them, so that their slots take about as much
// memory as the file, or little anyway.
bool mayHaveTrials(const CArchive& ar, int trials)
{
    constexpr std::uint64_t little = std::uint64_t{1} << 20U;
    const std::uint64_t fileBytes = ar.position() + ar.bytesLeft();
    return trials >= 0 && static_cast<std::uint64_t>(trials) * sizeof(void*) <= 2 * fileBytes + little;
}

} // namespace

// The number that selects a routine and the date in its name differ in the second row: it is meant so.
const FormatVersion<CMEGData9FileB> CMEGData9FileB::s_versions[23] = {
    {20080104, &CMEGData9FileB::serializezk20080104}, {20080609, &CMEGData9FileB::serializezk20090727},
    {20100428, &CMEGData9FileB::serializezk20100428}, {20110210, &CMEGData9FileB::serializezk20110210},
    {20120326, &CMEGData9FileB::serializezk20120326}, {20120419, &CMEGData9FileB::serializezk20120419},
    {20120501, &CMEGData9FileB::serializezk20120501}, {20120527, &CMEGData9FileB::serializezk20120527},
    {20120824, &CMEGData9FileB::serializezk20120824}, {20130404, &CMEGData9FileB::serializezk20130404},
    {20130421, &CMEGData9FileB::serializezk20130421}, {20130502, &CMEGData9FileB::serializezk20130502},
    {20130508, &CMEGData9FileB::serializezk20130508}, {20140516, &CMEGData9FileB::serializezk20140516},
    {20150724, &CMEGData9FileB::serializezk20150724}, {20150806, &CMEGData9FileB::serializezk20150806},
    {20160222, &CMEGData9FileB::serializezk20160222}, {20161123, &CMEGData9FileB::readFile20161123},
    {20170706, &CMEGData9FileB::serializezk20170706}, {20171006, &CMEGData9FileB::serializezk20171006},
    {20190609, &CMEGData9FileB::serializezk20190609}, {20190725, &CMEGData9FileB::serializezk20190725},
    {20200729, &CMEGData9FileB::serializezk20200729}, // the one that is written
};

int CMEGData9FileB::serializezk(CArchive& ar)
{
    const FormatTexts texts{"MEGDATASETZK", "The opened file is not MEG dataset file or corrupted!",
                            "Wrong MEG dataset file format!!?"};
    const int done = serializeFormat(ar, *this, texts, s_versions);
    if (ar.IsLoading())
        return done;
    if (done)
        ar.Flush();
    return 1; // a store that failed is not told by the result: it is meant so
}

int CMEGData9FileB::serializeWithoutTrials(CArchive& ar)
{
    struct Scope
    {
        explicit Scope(bool& without) : m_without(without) { m_without = true; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { m_without = false; }
        bool& m_without;
    };
    const Scope scope(m_bWithoutTrials);
    return serializezk(ar);
}

// ---- versions

int CMEGData9FileB::serializezk20200729(CArchive& ar)
{
    if (!(_00serializeMDTrialInfo(ar) && sections20190609(ar) && tailOf16(ar)))
        return 0;
    if (!m_bWithoutTrials && !_20serializeTrials(ar.IsStoring() ? 1 : 0))
        AfxMessageBox("Serial trial error!", MB_OK); // the dataset counts as read all the same
    return 1;
}

int CMEGData9FileB::serializezk20190725(CArchive& ar)
{
    return sections20190609(ar) && tailOf16(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20190609(CArchive& ar)
{
    return sections20190609(ar) && tailOf15(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20171006(CArchive& ar)
{
    return sections20170706(ar) && tailOf14(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20170706(CArchive& ar)
{
    return sections20170706(ar) && tailOf11(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20161123(CArchive& ar)
{
    return sections20160222(ar) && tailOf10(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20160222(CArchive& ar)
{
    return sections20160222(ar) && tailOf8(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20150806(CArchive& ar)
{
    return sections20140516(ar) && tailOf8(ar) && _Zold_00serializeMDTrialzksml(ar);
}
int CMEGData9FileB::serializezk20150724(CArchive& ar)
{
    return _Zold_00serializeMDTrialzksml(ar) && sections20140516(ar) && tailOf8(ar);
}
int CMEGData9FileB::serializezk20140516(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20140516(ar) && tailOf8(ar);
}

// Behind the file of this version the reader of the one before runs as well, and what it gives is what the file gives.
// The trial list ends the file: that reader meets the end at once, which the caller is told. It is meant so.
int CMEGData9FileB::readFile20161123(CArchive& ar)
{
    return serializezk20161123(ar) && serializezk20160222(ar);
}

int CMEGData9FileB::sections20190609(CArchive& ar)
{
    return sections20170706(ar) && m_faceWaveResult.serialize(ar);
}

int CMEGData9FileB::sections20170706(CArchive& ar)
{
    return _01serializeFiducialPts(ar) && _02serializeTrgMkSgTrPtAm(ar) && sections03To12(ar) &&
           _13serializeMkMgSelect4Cut(ar) && _14serializeEegData(ar);
}

int CMEGData9FileB::sections20160222(CArchive& ar)
{
    return sections20140516(ar) && _14serializeEegData(ar);
}

int CMEGData9FileB::sections20140516(CArchive& ar)
{
    return _01serializeFiducialPts(ar) && _Zold_02serializeTrigs20170706(ar) && sections03To12(ar) &&
           _13serializeMkMgSelect4Cut(ar);
}

int CMEGData9FileB::sections03To11(CArchive& ar)
{
    return _03serializeSensors(ar) && _04serializeFilterInfo(ar) && _06serializeRecordInfo(ar) &&
           _09serializeShowInfo(ar) && _10serializeMEGOthers(ar) && _11serializeROI(ar);
}

int CMEGData9FileB::sections03To12(CArchive& ar)
{
    return sections03To11(ar) && _12serializeParam4AllTrlChnlShow_new(ar);
}

// ---- sections

// The trial list: counts, names, and the path of each trial's own file. The trials themselves are not in the file.
int CMEGData9FileB::_00serializeMDTrialInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_00serializeMDTrialInfo");
    m_strDatasetPath.Empty();
    checkFilePath(&ar);
    cleanTrialList(ar);
    EXCHANGE_FIELDS(ar, m_nTotalTrial, m_nCurrentTrial, m_nRealTrial, m_nVirtualTrial, m_strDatasetFileName,
                    m_strSessionName, m_nDatasetFlagA, m_strTrialFolder);
    exchangePaths(ar, m_aTrialFilePath, "m_aTrialFilePath");
    bool present = false;
    return exchangeSlots(ar, present) ? 1 : 0;
}

void CMEGData9FileB::cleanTrialList(CArchive& ar)
{
    if (!ar.IsLoading())
        return;
    _cleanDatasetTrials();
    m_aTrialFilePath.RemoveAll();
    removeUnsavedPlaces(); // those of the former dataset go to their own files
}

void CMEGData9FileB::exchangePaths(CArchive& ar, CStringArray& paths, std::string_view name)
{
    const std::int64_t count = ar.exchangeInt64(paths.GetSize(), name);
    for (std::int64_t i = 0; i < count; ++i) {
        CString path = ar.IsStoring() ? paths.GetAt(static_cast<int>(i)) : CString();
        ar.exchangeNamed("path", path);
        if (ar.IsLoading())
            paths.Add(path);
    }
}

// The word that says whether the dataset has slots, which are empty after loading. False when they can't be made.
bool CMEGData9FileB::exchangeSlots(CArchive& ar, bool& present)
{
    present = exchangeGuard(ar, static_cast<bool>(m_ppTrial), "m_ppTrial");
    if (ar.IsStoring() || !present)
        return true;
    if (mayHaveTrials(ar, m_nTotalTrial) && m_ppTrial.allocate(m_nTotalTrial))
        return true;
    AfxMessageBox("Not enough memory?!", MB_OK);
    return false;
}

int CMEGData9FileB::_01serializeFiducialPts(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeFiducialPts");
    return m_headLocalization.serializezk(ar);
}

int CMEGData9FileB::exchangeMarkers(CArchive& ar, std::initializer_list<CMarkerManagerzk CMEGData::*> managers)
{
    for (const auto manager : managers)
        if (!(this->*manager).serializeMLM(ar))
            return 0;
    return 1;
}

int CMEGData9FileB::_02serializeTrgMkSgTrPtAm(CArchive& ar)
{
    const ArchiveSection section(ar, "_02serializeTrgMkSgTrPtAm");
    return exchangeMarkers(ar, {&CMEGData::m_mkTrig, &CMEGData::m_mkTrigRecord, &CMEGData::m_mkMarker,
                                &CMEGData::m_mkSegment, &CMEGData::m_mkClass, &CMEGData::m_mkThreshold,
                                &CMEGData::m_mkPattern, &CMEGData::m_mkAiMarkWave});
}

// Has no bytes, and keeps its place in the chain.
int CMEGData9FileB::_03serializeSensors(CArchive&)
{
    return 1;
}

int CMEGData9FileB::_04serializeFilterInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_04serializeFilterInfo");
    EXCHANGE_FIELDS(ar, m_nFilterSettingCount, m_nFilterSettingCount2);
    return m_filterDcLt.serializezk(ar) && m_filterDcLt2.serializezk(ar);
}

int CMEGData9FileB::_06serializeRecordInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_06serializeRecordInfo");
    return m_recordInfo.serialize(ar);
}

int CMEGData9FileB::_09serializeShowInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_09serializeShowInfo");
    exchangeShowInfo(ar);
    EXCHANGE_FIELDS(ar, m_dShowRangeMegLow, m_dShowRangeMegHigh, m_nShowWordD, m_nShowWordE);
    return 1;
}

// What every version has of it.
void CMEGData9FileB::exchangeShowInfo(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_bShowVirtChnl, m_bShowMEGSensorActive, m_bShowSensor2DOverlap, m_bShowMEGSensor, m_nShowWordA,
                    m_nShowWordB, m_dZoomMEGSensor, m_dZoomMEGRef, m_dZoomEEGSensor, m_dZoomEEGRef, m_dZoomType903,
                    m_dZoomType902, m_dZoomType904, m_dZoomTrig, m_dZoomOthers, m_dShowTimeScaleX, m_nSensorSize2D,
                    m_dSensorSize2D, m_d2DSensorColorStepLow, m_d2DSensorColorStepHigh, m_d2DSensorColorHigh,
                    m_d2DSensorColorLow, m_nShowWordC, m_dShowScaleA, m_dShowScaleB);
}

int CMEGData9FileB::_10serializeMEGOthers(CArchive& ar)
{
    const ArchiveSection section(ar, "_10serializeMEGOthers");
    EXCHANGE_FIELDS(ar, m_strProcessInfo);
    return 1;
}

// The region of interest in the dewar.
int CMEGData9FileB::_11serializeROI(CArchive& ar)
{
    const ArchiveSection section(ar, "_11serializeROI");
    EXCHANGE_FIELDS(ar, m_nRoiWord, m_clrRoiA, m_clrRoiB, m_nRoiWord2, m_dRoiXMin, m_dRoiXMax, m_dRoiYMin, m_dRoiYMax,
                    m_dRoiZMin, m_dRoiZMax, m_dRoiXDim, m_dRoiYDim, m_dRoiZDim);
    return 1;
}

// The flags that a channel has in all trials. What can't be made is told by the result alone: it is meant so.
int CMEGData9FileB::_12serializeParam4AllTrlChnlShow_new(CArchive& ar)
{
    const ArchiveSection section(ar, "_12serializeParam4AllTrlChnlShow_new");
    return exchangeGoodShow(ar) && exchangeFlags(ar, m_pChnlSelect, "m_pChnlSelect") && makeMissingFlags(ar);
}

int CMEGData9FileB::exchangeGoodShow(CArchive& ar)
{
    if (ar.IsLoading())
        _cleanChnlParam();
    EXCHANGE_FIELDS(ar, m_nChnlParamCount);
    return exchangeFlags(ar, m_pChnlGood, "m_pChnlGood") && exchangeFlags(ar, m_pChnlShow, "m_pChnlShow");
}

int CMEGData9FileB::exchangeFlags(CArchive& ar, std::unique_ptr<int[]>& flags, std::string_view name)
{
    if (!exchangeGuard(ar, flags != nullptr))
        return 1;
    if (ar.IsLoading()) {
        const bool possible =
            m_nChnlParamCount >= 0 && ar.mayHold(static_cast<std::uint64_t>(m_nChnlParamCount) * sizeof(int));
        flags = possible ? tryNewZeroArray<int>(m_nChnlParamCount) : nullptr;
        if (flags == nullptr)
            return 0;
    }
    for (int i = 0; i < m_nChnlParamCount; ++i)
        ar.exchangeNamed(name, flags[static_cast<std::size_t>(i)]);
    return 1;
}

// Files lack the fourth array, and old ones the selection. They are made here, because checkInitChnlParam sets all four
// to their defaults where one is missing: the flags that were read would be lost at the first look.
int CMEGData9FileB::makeMissingFlags(CArchive& ar)
{
    if (!ar.IsLoading() || m_pChnlGood == nullptr || m_pChnlShow == nullptr)
        return 1;
    for (auto* flags : {&m_pChnlSelect, &m_pChnlParam4})
        if (*flags == nullptr && (*flags = tryNewZeroArray<int>(m_nChnlParamCount)) == nullptr)
            return 0;
    return 1;
}

int CMEGData9FileB::_13serializeMkMgSelect4Cut(CArchive& ar)
{
    const ArchiveSection section(ar, "_13serializeMkMgSelect4Cut");
    EXCHANGE_FIELDS(ar, m_nSegmentCutState, m_nSegmentCutNext);
    return m_mkSelect4Move.serializeMLM(ar);
}

int CMEGData9FileB::_14serializeEegData(CArchive& ar)
{
    const ArchiveSection section(ar, "_14serializeEegData");
    if (!(m_fidEegMeasure.serialize(ar) && m_fidWorkEeg.serialize(ar)))
        return 0;
    EXCHANGE_FIELDS(ar, m_nEegShowWord, m_dElectrodeSize2D, m_nElectrodeSize2D, m_d2DElectrodeColorStepLow,
                    m_d2DElectrodeColorStepHigh, m_d2DElectrodeColorHigh, m_d2DElectrodeColorLow, m_dShowRangeEegLow,
                    m_dShowRangeEegHigh);
    return 1;
}

// ---- tail

int CMEGData9FileB::tailOf2(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nSelectStart, m_nSelectEnd);
    return 1;
}

int CMEGData9FileB::tailOf5(CArchive& ar)
{
    tailOf2(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordA, m_nTailWordB, m_dTailValueA);
    return 1;
}

int CMEGData9FileB::tailOf8(CArchive& ar)
{
    tailOf5(ar);
    EXCHANGE_FIELDS(ar, m_nShowMarkLineType, m_nTailWordC, m_nTailWordD);
    return 1;
}

// Without the word E, which came later and in front of F.
int CMEGData9FileB::tailOf10(CArchive& ar)
{
    tailOf8(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordF, m_nTailWordG);
    return 1;
}

int CMEGData9FileB::tailOf11(CArchive& ar)
{
    tailOf8(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordE, m_nTailWordF, m_nTailWordG);
    return 1;
}

int CMEGData9FileB::tailOf14(CArchive& ar)
{
    tailOf11(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordH, m_nTailWordI, m_nTailWordJ);
    return 1;
}

int CMEGData9FileB::tailOf15(CArchive& ar)
{
    tailOf14(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordK);
    return 1;
}

int CMEGData9FileB::tailOf16(CArchive& ar)
{
    tailOf15(ar);
    EXCHANGE_FIELDS(ar, m_nTailWordL);
    return 1;
}

// ---- trials

int CMEGData9FileB::_20serializeTrials(int isStoring)
{
    return isStoring ? storeTrials() : openCurrentTrial();
}

// Trials on disk are left alone: storing a dataset writes what is in memory.
int CMEGData9FileB::storeTrials()
{
    for (int i = 0; i < m_ppTrial.size(); ++i) {
        if (m_ppTrial[i] != nullptr && !storeTrialAt(i)) {
            AfxMessageBox("Save trial data error!", MB_OK);
            return 1; // the rest are not saved, and stay: it is meant so
        }
    }
    return 1;
}

int CMEGData9FileB::openCurrentTrial()
{
    if (m_nTotalTrial < 1 || !m_ppTrial)
        return 1;
    const int paths = m_aTrialFilePath.GetSize();
    if (paths == 0)
        return fail("No trial path for opening trial!");
    checkPathsMatchTrials();
    m_nCurrentTrial = std::max(std::min({m_nCurrentTrial, m_nTotalTrial - 1, paths - 1}), 0);
    std::unique_ptr<CMDTrialzk> made;
    CMDTrialzk* trial = m_ppTrial[m_nCurrentTrial];
    if (trial == nullptr) {
        made = tryNew<CMDTrialzk>();
        trial = made.get();
    }
    if (trial == nullptr)
        return 1; // without a word: it is meant so
    CString path = m_aTrialFilePath.GetAt(m_nCurrentTrial);
    if (!trial->openTrialData(path, m_pDocument, m_strDatasetPath))
        return fail("Open trial data failed ");
    m_aTrialFilePath.SetAt(m_nCurrentTrial, trial->m_strTrialFilePath);
    if (made != nullptr)
        m_ppTrial.set(m_nCurrentTrial, std::move(made));
    warnOfChangedSamples(*trial);
    return 1;
}

} // namespace megset
