#include "megset/persistence/CMEGData9FileRecord.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CWaitCursor.h"
#include "megset/platform/archiveLists.h"
#include "megset/platform/pathParts.h"
#include "megset/platform/paths.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

constexpr unsigned toRead = CFile::modeRead | CFile::shareExclusive;
constexpr const char* openFailed = "Open trial data failed ";

// By characters, so that a name that ends in one of these letters loses it too: it is meant so.
CString withoutEndOutOf(const CString& text, const CString& letters)
{
    int length = text.GetLength();
    while (length > 0 && letters.Find(text.GetAt(length - 1)) >= 0)
        --length;
    return text.Left(length);
}

} // namespace

const FormatVersion<CMEGData9FileRecord> CMEGData9FileRecord::s_acqVersions[2] = {
    {20200727, &CMEGData9FileRecord::serializeAcq20200727},
    {20220418, &CMEGData9FileRecord::serializeAcq20220418}, // the one that is written
};

int CMEGData9FileRecord::serializeRecordWithoutTrials(CArchive& ar)
{
    const FormatTexts texts{"MEACQDATASETZK", "The opened file is not MEG acquisition file or corrupted!",
                            "Wrong MEG acquisition file format!!?"};
    return serializeFormat(ar, *this, texts, s_acqVersions);
}

int CMEGData9FileRecord::serializeRecordMe(CArchive& ar, CDocument* doc)
{
    if (!serializeRecordWithoutTrials(ar))
        return 0;
    if (!moveRcdTrl2NewDatasetTrl(ar.GetFile()->GetFilePath(), doc))
        AfxMessageBox("Import recorded trial to data trail error!", MB_OK);
    return 1; // the dataset counts as read all the same
}

// ---- versions

int CMEGData9FileRecord::serializeAcq20220418(CArchive& ar)
{
    return sections00To11(ar) && _12serializeAcqParam4AllTrlChnlShow(ar) && sections13To14(ar) && tailOf14(ar);
}

int CMEGData9FileRecord::serializeAcq20200727(CArchive& ar)
{
    return sections00To11(ar) && _12serializeAcqParam4AllTrlChnlShow_obsolete20220418(ar) && sections13To14(ar) &&
           tailOf14(ar);
}

int CMEGData9FileRecord::sections00To11(CArchive& ar)
{
    return _00serializeMDTrialInfo(ar) && _01serializeAcqFiducialPts(ar) && _02serializeAcqTrgMkSgTrPtAm(ar) &&
           _03serializeAcqSensors(ar) && _04serializeAcqFilterInfo(ar) && _06serializeAcqRecordInfo(ar) &&
           _09serializeAcqShowInfo(ar) && _10serializeAcqMEGOthers(ar) && _11serializeAcqROI(ar);
}

int CMEGData9FileRecord::sections13To14(CArchive& ar)
{
    return _13serializeAcqMkMgSelect4Cut(ar) && _14serializeAcqEegData(ar);
}

// ---- sections

// The trial list as an analysis' dataset has it; folder and paths are those of the recording, and kept apart.
int CMEGData9FileRecord::_00serializeMDTrialInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_00serializeMDTrialInfo");
    if (!checkFilePath(&ar))
        return 0;
    cleanTrialList(ar);
    if (ar.IsLoading())
        m_aRecordTrialPath.RemoveAll();
    EXCHANGE_FIELDS(ar, m_nTotalTrial, m_nCurrentTrial, m_nRealTrial, m_nVirtualTrial, m_strDatasetFileName,
                    m_strSessionName, m_nDatasetFlagA, m_strRecordFolder);
    exchangePaths(ar, m_aRecordTrialPath, "m_aRecordTrialPath");
    bool present = false;
    return exchangeSlots(ar, present) ? 1 : 0;
}

int CMEGData9FileRecord::_01serializeAcqFiducialPts(CArchive& ar)
{
    return _01serializeFiducialPts(ar);
}

int CMEGData9FileRecord::_02serializeAcqTrgMkSgTrPtAm(CArchive& ar)
{
    return _02serializeTrgMkSgTrPtAm(ar);
}

int CMEGData9FileRecord::_03serializeAcqSensors(CArchive& ar)
{
    return _03serializeSensors(ar);
}

int CMEGData9FileRecord::_04serializeAcqFilterInfo(CArchive& ar)
{
    return _04serializeFilterInfo(ar);
}

// The base information alone. What is recorded is raw: after either direction the two are the same, however the file
// was written.
int CMEGData9FileRecord::_06serializeAcqRecordInfo(CArchive& ar)
{
    const ArchiveSection section(ar, "_06serializeAcqRecordInfo");
    if (!m_recordInfo.CMEGRecordInfo09File::serialize(ar))
        return 0;
    m_recordInfo.m_nRawTotalSample = m_recordInfo.m_nRecTotalSample;
    m_recordInfo.m_nRawPreTrigPts = m_recordInfo.m_nRecPreTrigPts;
    m_recordInfo.m_dRawSampleRate = m_recordInfo.m_dRecSampleRate;
    return 1;
}

int CMEGData9FileRecord::_09serializeAcqShowInfo(CArchive& ar)
{
    return _09serializeShowInfo(ar);
}

int CMEGData9FileRecord::_10serializeAcqMEGOthers(CArchive& ar)
{
    return _10serializeMEGOthers(ar);
}

int CMEGData9FileRecord::_11serializeAcqROI(CArchive& ar)
{
    return _11serializeROI(ar);
}

// The fourth array is in the file here.
int CMEGData9FileRecord::_12serializeAcqParam4AllTrlChnlShow(CArchive& ar)
{
    const ArchiveSection section(ar, "_12serializeAcqParam4AllTrlChnlShow");
    return exchangeGoodShow(ar) && exchangeFlags(ar, m_pChnlSelect, "m_pChnlSelect") &&
           exchangeFlags(ar, m_pChnlParam4, "m_pChnlParam4") && makeMissingFlags(ar);
}

int CMEGData9FileRecord::_12serializeAcqParam4AllTrlChnlShow_obsolete20220418(CArchive& ar)
{
    return _12serializeParam4AllTrlChnlShow_new(ar);
}

int CMEGData9FileRecord::_13serializeAcqMkMgSelect4Cut(CArchive& ar)
{
    return _13serializeMkMgSelect4Cut(ar);
}

int CMEGData9FileRecord::_14serializeAcqEegData(CArchive& ar)
{
    return _14serializeEegData(ar);
}

// ---- opening

int CMEGData9FileRecord::openRecordMeStd()
{
    const CWaitCursor wait;
    static FileDialogMemory memory;
    CFileDialog dialog(true, "mega", "", OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST,
                       "MEG Acquired (*.mega)|*.mega|All Files(*.*)|*.*||");
    dialog.remember(memory);
    if (dialog.DoModal() != IDOK)
        return 0;
    CFile file;
    CFileException exception;
    if (!file.Open(dialog.GetPathName(), toRead, &exception))
        return fail(exception.GetErrorMessage());
    CArchive archive(&file, CArchive::load);
    serializeRecordMe(archive, nullptr); // what it answers is not looked at
    return 1;
}

int CMEGData9FileRecord::openRecordMeX(const CString& path, CDocument* doc)
{
    if (path.IsEmpty() || doc == nullptr || doc->GetPathName().IsEmpty() || !takeDocument(*doc))
        return 0;
    CFile file;
    if (!file.Open(path, toRead))
        return 0;
    CArchive archive(&file, CArchive::load);
    return serializeRecordMe(archive, doc);
}

// The document, and folder and names from its path. Unlike setDocument this leaves the current directory alone.
bool CMEGData9FileRecord::takeDocument(CDocument& doc)
{
    constexpr std::size_t longestDrive = 3;
    constexpr std::size_t longestPart = 256;
    m_pDocument = &doc;
    CString drive;
    CString directory;
    CString title;
    CString extension;
    if (_wsplitpath_s(doc.GetPathName(), &drive, longestDrive, &directory, longestPart, &title, longestPart, &extension,
                      longestPart) != 0)
        return false;
    m_strDatasetFileName = title;
    m_strSessionName = title;
    m_strTrialFolder = drive + directory;
    m_strDatasetPath = m_strTrialFolder + m_strSessionName;
    return true;
}

// ---- conversion

// Every trial of the recording becomes a file of the dataset. What was written when this ends, early or not, is the
// list of paths, so that nothing written is out of reach.
int CMEGData9FileRecord::moveRcdTrl2NewDatasetTrl(const CString& megaPath, CDocument* doc)
{
    const int kept = m_nCurrentTrial;
    CStringArray written;
    const auto install = [&] {
        m_aTrialFilePath = std::move(written);
        removeUnsavedPlaces();
    };
    int done = 0;
    try {
        done = convertTrials(megaPath, doc, written);
    } catch (...) {
        install();
        throw;
    }
    install();
    if (done)
        openTrial(kept == -1 ? 0 : kept); // -1 would be the last trial here
    return done;
}

// A trial without a slot or without a path in the file has nothing to be converted.
int CMEGData9FileRecord::convertTrials(const CString& megaPath, CDocument* doc, CStringArray& written)
{
    const CString docFolder = doc != nullptr ? CMDTrialzk::filePath2FileDirectory(doc->GetPathName()) : CString();
    const int count =
        static_cast<int>(std::min<std::int64_t>(m_ppTrial.size(), std::int64_t{m_aRecordTrialPath.GetSize()}));
    for (int i = 0; i < count; ++i) {
        const bool wasInMemory = m_ppTrial[i] != nullptr;
        auto trial = takeAcquiredTrial(i, wasInMemory, megaPath, docFolder);
        if (trial == nullptr) {
            AfxMessageBox(openFailed, MB_OK);
            continue;
        }
        m_nCurrentTrial = i;
        CMDTrialzk& current = *m_ppTrial.set(i, std::move(trial));
        if (!current.getAllChannelPt())
            return 0;
        warnOfChangedSamples(current);
        if (current.m_strTrialName.IsEmpty())
            current.m_strTrialName = CString::formatted("Trial%d", i);
        fillSessionName(doc);
        saveConverted(i, wasInMemory, written);
    }
    return 1;
}

// The slot's trial or a new one, with what the recording's file holds, out of its slot; null when that can't be read. A
// trial that was in memory is kept then, with what the user did to it.
std::unique_ptr<CMDTrialzk> CMEGData9FileRecord::takeAcquiredTrial(int index, bool wasInMemory, const CString& megaPath,
                                                                   const CString& docFolder)
{
    auto trial = wasInMemory ? m_ppTrial.release(index) : tryNew<CMDTrialzk>();
    try {
        if (trial == nullptr || trial->openTrialAcq(m_aRecordTrialPath.GetAt(index), megaPath, docFolder))
            return trial;
    } catch (...) {
        if (wasInMemory)
            keepUnsavedTrial(std::move(trial), -1);
        throw;
    }
    if (wasInMemory)
        keepUnsavedTrial(std::move(trial), -1);
    return nullptr;
}

void CMEGData9FileRecord::fillSessionName(const CDocument* doc)
{
    if (!m_strSessionName.IsEmpty())
        return;
    m_strSessionName = m_strDatasetFileName;
    if (m_strSessionName.IsEmpty() && doc != nullptr)
        m_strSessionName = withoutEndOutOf(doc->GetTitle(), ".meg");
}

// Writes the trial to its new file and ends it. The names come from files of others: whatever they hold, the new file
// lies in the folder. A trial that can't be written is still in the recording's file, unless it was in memory with what
// the user did to it.
void CMEGData9FileRecord::saveConverted(int index, bool wasInMemory, CStringArray& written)
{
    CMDTrialzk& trial = *m_ppTrial[index];
    const CString stem = m_strTrialFolder + asFileName(m_strSessionName + trial.m_strTrialName);
    CString path = freePath(stem, index, written);
    if (trial.saveTrialData(path, m_pDocument, m_strDatasetPath, true))
        written.Add(trial.m_strTrialFilePath);
    else if (wasInMemory)
        keepUnsavedTrial(m_ppTrial.release(index), -1);
    m_ppTrial.set(index, nullptr);
}

// ---- single trials

int CMEGData9FileRecord::openTrialRecord(int trial, const CString& acqPath)
{
    const int index = trialIndex(trial);
    if (index < 0 || index >= m_nTotalTrial || !m_ppTrial)
        return 0;
    if (index == m_nCurrentTrial && m_ppTrial[index] != nullptr)
        return 1;
    if (!checkPathsMatchTrials())
        return 0;
    saveAllTrials();
    if (takeResident(index))
        return 1;
    if (!acqPath.IsEmpty() && m_pDocument == nullptr)
        return fail(openFailed);
    CString path = m_aTrialFilePath.GetAt(index);
    auto opened = tryNew<CMDTrialzk>();
    if (opened == nullptr)
        return 0;
    const int done = acqPath.IsEmpty() ? opened->openTrialData(path, m_pDocument, m_strDatasetPath)
                                       : opened->openTrialAcq(path, acqPath, m_pDocument->GetPathName());
    return done ? installOpened(index, std::move(opened)) : fail(openFailed);
}

CMDTrialzk* CMEGData9FileRecord::getTrialRecord(int trial)
{
    return openTrialRecord(trial, "") ? getCurrentTrialPt() : nullptr;
}

} // namespace megset
