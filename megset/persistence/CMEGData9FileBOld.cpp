// The dataset files of old versions: the routines and sections that nothing writes any more.

#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/archiveLists.h"

#include <utility>

namespace megset {
namespace {

int failToReadTrial()
{
    AfxMessageBox("Is there enough memory for read MEG trial data?", MB_OK);
    return 0;
}

} // namespace

// ---- versions

int CMEGData9FileB::serializezk20130508(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && _01serializeFiducialPts(ar) &&
           _Zold_02serializeTrigs(ar) && sections03To12(ar) && _13serializeMkMgSelect4Cut(ar) && tailOf8(ar);
}
int CMEGData9FileB::serializezk20130502(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20130421(ar) && tailOf8(ar);
}
int CMEGData9FileB::serializezk20130421(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20130421(ar) && tailOf5(ar);
}
int CMEGData9FileB::serializezk20130404(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20120824(ar) && tailOf5(ar);
}
int CMEGData9FileB::serializezk20120824(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20120824(ar) && tailOf2(ar);
}
int CMEGData9FileB::serializezk20120527(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20120419(ar) &&
           _zold_13serializeSelectCut(ar) && tailOf2(ar);
}
int CMEGData9FileB::serializezk20120501(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20120419(ar) && tailOf2(ar);
}
int CMEGData9FileB::serializezk20120419(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && sections20120419(ar);
}

int CMEGData9FileB::serializezk20120326(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && _01serializeFiducialPts(ar) &&
           _zold_Zold_02serializeTrigs_obsolete20140421(ar) && _03serializeSensors(ar) && _04serializeFilterInfo(ar) &&
           _06serializeRecordInfo(ar) && _09serializeShowInfo_obsolete20120419(ar) && _10serializeMEGOthers(ar) &&
           _11serializeROI(ar) && _Zold_12serializeParam4AllTrlChnlShow(ar);
}

int CMEGData9FileB::serializezk20110210(CArchive& ar)
{
    return sections20080609(ar) && _11serializeROI(ar) && _Zold_12serializeParam4AllTrlChnlShow(ar);
}
int CMEGData9FileB::serializezk20100428(CArchive& ar)
{
    return sections20080609(ar) && _10serializeMEGOthers(ar);
}
int CMEGData9FileB::serializezk20090727(CArchive& ar)
{
    return sections20080609(ar) && _10serializeMEGOthers(ar);
}

// Reads nothing: the dataset stays as it was.
int CMEGData9FileB::serializezk20080104(CArchive&)
{
    return 1;
}

int CMEGData9FileB::sections20130421(CArchive& ar)
{
    return _01serializeFiducialPts(ar) && _Zold_02serializeTrigs(ar) && sections03To12(ar) &&
           _zold_13serializeSelectCut(ar);
}

int CMEGData9FileB::sections20120824(CArchive& ar)
{
    return _01serializeFiducialPts(ar) && _zold_Zold_02serializeTrigs_obsolete20140421(ar) && sections03To12(ar) &&
           _zold_13serializeSelectCut(ar);
}

int CMEGData9FileB::sections20120419(CArchive& ar)
{
    return _01serializeFiducialPts(ar) && _zold_Zold_02serializeTrigs_obsolete20140421(ar) && sections03To11(ar) &&
           _Zold_12serializeParam4AllTrlChnlShow(ar);
}

int CMEGData9FileB::sections20080609(CArchive& ar)
{
    return _Zold_00serializeMDTrialzk_doubleStoreOpenTrl(ar) && _01serializeFiducialPts(ar) &&
           _zold_Zold_02serializeTrigs_obsolete20140421(ar) && _03serializeSensors(ar) && _04serializeProcessInfo(ar) &&
           _06serializeRecordInfo(ar) && _09serializeShowInfo_obsolete20120419(ar);
}

// ---- the trial list

void CMEGData9FileB::exchangeTrialListOld(CArchive& ar)
{
    cleanTrialList(ar);
    EXCHANGE_FIELDS(ar, m_nTotalTrial, m_nCurrentTrial, m_nRealTrial, m_nVirtualTrial, m_strTrialFolder);
    exchangePaths(ar, m_aTrialFilePath, "m_aTrialFilePath");
    EXCHANGE_FIELDS(ar, m_strDatasetFileName, m_strSessionName, m_nDatasetFlagA);
}

// Trials that were in memory when the dataset was saved stand in the file as whole records, and stay in memory.
int CMEGData9FileB::_Zold_00serializeMDTrialzk_doubleStoreOpenTrl(CArchive& ar)
{
    const ArchiveSection section(ar, "_Zold_00serializeMDTrialzk_doubleStoreOpenTrl");
    exchangeTrialListOld(ar);
    bool present = false;
    if (!exchangeSlots(ar, present))
        return 0;
    for (int i = 0; present && i < m_nTotalTrial; ++i)
        if (exchangeGuard(ar, false) && !loadEmbeddedTrial(ar, i))
            return 0;
    return 1;
}

// A trial of which only a part could be read is not kept: saving it would replace its file.
int CMEGData9FileB::loadEmbeddedTrial(CArchive& ar, int index)
{
    auto trial = tryNew<CMDTrialzk>();
    if (trial == nullptr)
        return failToReadTrial();
    if (!trial->serializezk(ar))
        return 0;
    m_ppTrial.set(index, std::move(trial));
    return 1;
}

// The flag of a trial says that it was in memory: it is opened again, and leaves when the next one is, so that one
// trial is in memory in the end.
int CMEGData9FileB::_Zold_00serializeMDTrialzksml(CArchive& ar)
{
    const ArchiveSection section(ar, "_Zold_00serializeMDTrialzksml");
    m_strDatasetPath.Empty();
    checkFilePath(&ar);
    exchangeTrialListOld(ar);
    bool present = false;
    if (!exchangeSlots(ar, present))
        return 0;
    for (int i = 0; present && i < m_nTotalTrial; ++i)
        if (exchangeGuard(ar, false) && !m_bWithoutTrials && getTrialzk(i) == nullptr)
            return failToReadTrial();
    return 1;
}

// ---- other sections

// Seven managers: without that of the marked waves.
int CMEGData9FileB::_Zold_02serializeTrigs20170706(CArchive& ar)
{
    const ArchiveSection section(ar, "_Zold_02serializeTrigs20170706");
    return exchangeMarkers(ar, {&CMEGData::m_mkTrig, &CMEGData::m_mkTrigRecord, &CMEGData::m_mkMarker,
                                &CMEGData::m_mkSegment, &CMEGData::m_mkClass, &CMEGData::m_mkThreshold,
                                &CMEGData::m_mkPattern});
}

// Six: also without the recorded triggers.
int CMEGData9FileB::_Zold_02serializeTrigs(CArchive& ar)
{
    const ArchiveSection section(ar, "_Zold_02serializeTrigs");
    return exchangeMarkers(ar, {&CMEGData::m_mkTrig, &CMEGData::m_mkMarker, &CMEGData::m_mkSegment,
                                &CMEGData::m_mkClass, &CMEGData::m_mkThreshold, &CMEGData::m_mkPattern});
}

// The first four of those.
int CMEGData9FileB::_zold_Zold_02serializeTrigs_obsolete20140421(CArchive& ar)
{
    const ArchiveSection section(ar, "_zold_Zold_02serializeTrigs_obsolete20140421");
    return exchangeMarkers(ar,
                           {&CMEGData::m_mkTrig, &CMEGData::m_mkMarker, &CMEGData::m_mkSegment, &CMEGData::m_mkClass});
}

// The text stands here and again in section 10, where a version has both: the second one remains.
int CMEGData9FileB::_04serializeProcessInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_04serializeProcessInfo");
    if (!m_filterDcLt.serializezk(ar))
        return 0;
    EXCHANGE_FIELDS(ar, m_nFilterSettingCount, m_strProcessInfo);
    return 1;
}

int CMEGData9FileB::_09serializeShowInfo_obsolete20120419(CArchive& ar)
{
    const ArchiveSection section(ar, "_09serializeShowInfo_obsolete20120419");
    exchangeShowInfo(ar);
    return 1;
}

int CMEGData9FileB::_Zold_12serializeParam4AllTrlChnlShow(CArchive& ar)
{
    const ArchiveSection section(ar, "_Zold_12serializeParam4AllTrlChnlShow");
    return exchangeGoodShow(ar) && makeMissingFlags(ar);
}

// The marker behind the state has no place in a dataset any more.
int CMEGData9FileB::_zold_13serializeSelectCut(CArchive& ar)
{
    const ArchiveSection section(ar, "_zold_13serializeSelectCut");
    EXCHANGE_FIELDS(ar, m_nSegmentCutState);
    if (ar.IsStoring())
        return 1;
    CMarkerDatazk unused;
    return unused.serializezk(ar);
}

} // namespace megset
