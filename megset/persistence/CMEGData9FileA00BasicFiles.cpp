// The list of trials and their files: adding a file, deleting, moving, renaming and mending.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/pathParts.h"

namespace megset {
namespace {

constexpr const char* trialFilter = "MEG Trial Data(*.trl)|*.trl|All Files(*.*)|*.*||";

// The path that the user chose; empty when cancelled.
CString askForTrialFile(CFileDialog& dialog, FileDialogMemory& memory)
{
    dialog.remember(memory);
    return dialog.DoModal() == IDOK ? dialog.GetPathName() : CString();
}

} // namespace

// ---- adding a file

int CMEGData9FileA00Basic::addNewTrial2Dataset()
{
    static FileDialogMemory memory;
    CFileDialog dialog(true, "trl", "", OFN_FILEMUSTEXIST, trialFilter);
    CString chosen = askForTrialFile(dialog, memory);
    if (chosen.IsEmpty())
        return 0;
    saveAllTrials();
    auto opened = tryNew<CMDTrialzk>();
    if (opened == nullptr)
        return fail("Not enough memory?!");
    if (!opened->openTrialData(chosen, nullptr, ""))
        return fail("Open trial data failed ");
    correctTotal();
    TrialArray longer;
    if (!longer.allocate(m_nTotalTrial + 1))
        return fail("Not enough memory?!");
    const bool isVirtual = AfxMessageBox("Add the Trial as Virtual (e.g. averaged)?", MB_YESNO) == IDYES;
    opened->m_nVirtualTrial = isVirtual ? 1 : 0;
    const bool isElsewhere = CMDTrialzk::filePath2FileDirectory(opened->m_strTrialFilePath) != m_strTrialFolder;
    if (isElsewhere && AfxMessageBox("Add to the same fold with the dataset file?", MB_YESNO) == IDYES)
        copyToFolder(*opened, fileTitleOf(opened->m_strTrialFilePath));
    const CMDTrialzk& added = installLast(std::move(longer), std::move(opened));
    m_aTrialFilePath.Add(added.m_strTrialFilePath);
    if (isUnlikeRecording(added))
        AfxMessageBox("The trial data does not match with the recording, please re-sample and check the data!", MB_OK);
    return added.getAllChannelPt() ? 1 : 0;
}

// Where the copy can't be written, the trial keeps the file it has.
void CMEGData9FileA00Basic::copyToFolder(CMDTrialzk& trial, const CString& title) const
{
    const CString name = m_strTrialFolder + title;
    const CString stem = name.Right(4) == ".trl" ? name.Left(name.GetLength() - 4) : name;
    saveTrialAs(trial, freePath(stem, -1), trial.m_strTrialName);
}

// ---- deleting

// What is still in memory after saving could not be saved.
void CMEGData9FileA00Basic::keepWhatIsInMemory(int place)
{
    if (m_ppTrial[place] != nullptr)
        keepUnsavedTrial(m_ppTrial.release(place), -1);
}

int CMEGData9FileA00Basic::deleteTrial4Dataset(int trial)
{
    if (trial < 0 || trial >= m_aTrialFilePath.GetSize())
        return fail("Delete Trial ID error!");
    saveAllTrials();
    correctTotal();
    if (m_nTotalTrial < 2) {
        keepWhatIsInMemory(0);
        _cleanDatasetTrials();
        m_aTrialFilePath.RemoveAll();
        removeUnsavedPlaces();
        return 1;
    }
    if (trial < m_nTotalTrial && !deleteTrial(trial))
        return 0;
    m_aTrialFilePath.RemoveAt(trial);
    removeUnsavedPlace(trial);
    // Behind the deleted trial the same index stays current, and so another trial: it is meant so.
    if (m_nCurrentTrial >= m_nTotalTrial)
        m_nCurrentTrial = m_nTotalTrial - 1;
    if (m_nCurrentTrial < 0)
        m_nCurrentTrial = 0;
    openTrial(m_nCurrentTrial);
    return 1;
}

// Ends a trial and closes up the places; the paths stay.
int CMEGData9FileA00Basic::deleteTrial(int trial)
{
    const int place = trialIndex(trial);
    if (place < 0 || place >= m_nTotalTrial)
        return 0;
    TrialArray shorter;
    if (!shorter.allocate(m_nTotalTrial - 1))
        return fail("Not enough memory?!");
    keepWhatIsInMemory(place);
    for (int i = 0, to = 0; i < m_nTotalTrial; ++i)
        if (i != place)
            shorter.set(to++, m_ppTrial.release(i));
    m_ppTrial = std::move(shorter);
    --m_nTotalTrial;
    return 1;
}

// ---- moving and renaming

int CMEGData9FileA00Basic::moveTrlFile2DocFold(CDocument* doc)
{
    if (!setDocument(doc, true))
        return 0;
    const int current = m_nCurrentTrial;
    CStringArray moved;
    for (int i = 0; i < m_nTotalTrial; ++i) {
        const bool wasInMemory = m_ppTrial[i] != nullptr;
        if (getTrialzk(i) == nullptr)
            return fail("Open trial for synchronization error!");
        moveTrial(i, wasInMemory, moved);
    }
    m_aTrialFilePath = std::move(moved);
    if (!pathsMatchTrials())
        removeUnsavedPlaces();
    openTrial(current);
    return 1;
}

// Writes the trial to its new file and ends it. One that can't be written is still in its old file, unless it was in
// memory with what the user did to it.
void CMEGData9FileA00Basic::moveTrial(int place, bool wasInMemory, CStringArray& moved)
{
    CMDTrialzk& trial = *m_ppTrial[place];
    const CString name = trial.m_strTrialName.IsEmpty() ? CString::formatted("Trial%d", place) : trial.m_strTrialName;
    const CString stem = m_strTrialFolder + asFileName(m_strSessionName + name);
    if (saveTrialAs(trial, freePath(stem, place, moved), name)) {
        moved.Add(trial.m_strTrialFilePath);
        // What was in memory is in the new file alone, also where a later trial ends the move.
        if (wasInMemory && place < m_aTrialFilePath.GetSize())
            m_aTrialFilePath.SetAt(place, trial.m_strTrialFilePath);
    } else if (wasInMemory) {
        keepWhatIsInMemory(place);
    }
    m_ppTrial.set(place, nullptr);
}

int CMEGData9FileA00Basic::saveTrlFile2NewName(CDocument* doc, const CString& name, int trial)
{
    if (doc != nullptr && !setDocument(doc, true))
        return 0;
    CMDTrialzk* opened = getTrialzk(trial);
    if (opened == nullptr)
        return fail("Open trial error for saving trial to new name!");
    const int place = m_nCurrentTrial;
    const CString newName = name.IsEmpty() ? CString::formatted("%sTrial%d", m_strSessionName, place) : name;
    const CString stem = m_strTrialFolder + (name.IsEmpty() ? asFileName(newName) : name);
    if (!saveTrialAs(*opened, freePath(stem, place), newName))
        return fail("Save trial to new name error!");
    m_aTrialFilePath.SetAt(place, opened->m_strTrialFilePath);
    return 1;
}

// ---- mending

int CMEGData9FileA00Basic::updateTrlPath4Doc(CDocument* doc)
{
    if (!setDocument(doc, true))
        return 0;
    CString pointedFolder;
    for (int i = 0; i < m_aTrialFilePath.GetSize(); ++i)
        if (!mendPath(m_aTrialFilePath[i], pointedFolder))
            return 0;
    return 1;
}

// Finds one file, or has the user point at it; false when cancelled. The folder pointed at serves for those that
// follow.
bool CMEGData9FileA00Basic::mendPath(CString& path, CString& pointedFolder) const
{
    const CString name = CMDTrialzk::filePath2FileName(path);
    if (CMDTrialzk::findFile(path, path) || CMDTrialzk::findFile(m_strTrialFolder + name, path))
        return true;
    if (!pointedFolder.IsEmpty() && CMDTrialzk::findFile(pointedFolder + name, path))
        return true;
    static FileDialogMemory memory;
    CFileDialog dialog(false, "trl", name, OFN_OVERWRITEPROMPT, trialFilter);
    const CString chosen = askForTrialFile(dialog, memory);
    if (chosen.IsEmpty())
        return false;
    path = chosen;
    pointedFolder = CMDTrialzk::filePath2FileDirectory(chosen);
    return true;
}

} // namespace megset
