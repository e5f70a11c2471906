#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/pathParts.h"
#include "megset/platform/paths.h"

#include <algorithm>

namespace megset {
namespace {

struct FolderAndTitle
{
    CString folder;
    CString title;
};

// False for an empty path and for one with a part that is too long.
bool splitPath(const CString& path, FolderAndTitle& parts)
{
    constexpr std::size_t longestDrive = 3;
    constexpr std::size_t longestPart = 256;
    CString drive;
    CString directory;
    CString extension;
    if (path.IsEmpty() || _wsplitpath_s(path, &drive, longestDrive, &directory, longestPart, &parts.title, longestPart,
                                        &extension, longestPart) != 0)
        return false;
    parts.folder = drive + directory;
    return true;
}

} // namespace

// ---- folder and names

int CMEGData9FileA00Basic::setDocument(CDocument* doc, bool updatePath)
{
    if (!updatePath || doc != nullptr)
        m_pDocument = doc;
    if (!updatePath)
        return 1;
    if (m_pDocument != nullptr && takeDocumentPath(m_pDocument->GetPathName()))
        return 1;
    const CMDTrialzk* current = getCurrentTrialPt();
    FolderAndTitle ofTrial;
    if (current == nullptr || !splitPath(current->m_strTrialFilePath, ofTrial))
        return askForFolder();
    takeTrialFolder(ofTrial.folder);
    return 1;
}

// Folder and names from the path of a dataset file; 0 with nothing changed when it can't be split.
int CMEGData9FileA00Basic::takeDocumentPath(const CString& path)
{
    FolderAndTitle parts;
    if (!splitPath(path, parts))
        return 0;
    m_strDatasetFileName = parts.title;
    m_strSessionName = parts.title;
    takeTrialFolder(parts.folder);
    m_strDatasetPath = m_strTrialFolder + m_strSessionName;
    return 1;
}

int CMEGData9FileA00Basic::askForFolder()
{
    AfxMessageBox("Please select a direcotry to store the  data!", MB_OK);
    static FileDialogMemory memory;
    CFileDialog dialog(false, "trl", "", OFN_OVERWRITEPROMPT, "MEG Trial Data(*.trl)|*.trl|All Files(*.*)|*.*||");
    dialog.remember(memory);
    return dialog.DoModal() == IDOK ? takeDocumentPath(dialog.GetPathName()) : 0;
}

int CMEGData9FileA00Basic::setFilePathDirectory(const CString& path)
{
    CString found;
    if (!CMDTrialzk::findFile(path, found))
        return fail(CString::formatted("Find file:%s error \n", path));
    if (!takeTrialFolder(CMDTrialzk::filePath2FileDirectory(found)))
        return fail(CString::formatted("Set directory error:%s error \n", m_strTrialFolder));
    return 1;
}

// ---- files of trials

// Writes a trial under another name to a path of its own. Where that fails the trial keeps the path and name it had.
int CMEGData9FileA00Basic::saveTrialAs(CMDTrialzk& trial, const CString& path, const CString& name) const
{
    const CString formerPath = trial.m_strTrialFilePath;
    const CString formerName = trial.m_strTrialName;
    const auto restore = [&] {
        trial.m_strTrialFilePath = formerPath;
        trial.m_strTrialName = formerName;
    };
    CString target = path;
    trial.m_strTrialName = name;
    try {
        if (trial.saveTrialData(target, m_pDocument, m_strDatasetPath, true))
            return 1;
    } catch (...) {
        restore();
        throw;
    }
    restore();
    return 0;
}

namespace {

// "<stem>.trl", with a number behind the stem where that is taken.
template <class IsTaken>
CString numberedPath(const CString& stem, IsTaken isTaken)
{
    CString path = stem + ".trl";
    for (int i = 1; isTaken(path); ++i)
        path = CString::formatted("%s_%d.trl", stem, i);
    return path;
}

} // namespace

// A name is taken where a trial at another place has a file of it, or an unsaved one that was deleted is still to be
// written there. The folder does not count: a file beside the dataset is found in place of one of the same name
// elsewhere.
CString CMEGData9FileA00Basic::freePath(const CString& stem, int exceptPlace, const CStringArray& more) const
{
    return numberedPath(stem, [&](const CString& path) {
        const CString name = fileNameOf(path);
        const auto isSame = [&](const CString& other) { return fileNameOf(other).CompareNoCase(name) == 0; };
        for (int i = 0; i < m_aTrialFilePath.GetSize(); ++i)
            if (i != exceptPlace && isSame(m_aTrialFilePath.GetAt(i)))
                return true;
        return isFileNameOfUnsaved(name) || std::any_of(more.begin(), more.end(), isSame);
    });
}

// The trials of a new dataset have names of their own; only unsaved ones of the former dataset may have the same.
CString CMEGData9FileA00Basic::freePathOfNewDataset(const CString& stem) const
{
    return numberedPath(stem, [this](const CString& path) { return isFileNameOfUnsaved(fileNameOf(path)); });
}

// ---- trials from elsewhere

// A file may tell of any number of trials. Without an array no more count than have a path.
void CMEGData9FileA00Basic::correctTotal()
{
    if (!m_ppTrial)
        m_nTotalTrial = std::clamp(m_nTotalTrial, 0, m_aTrialFilePath.GetSize());
}

// Puts all trials into the longer array and the new one to its end, where it is current.
CMDTrialzk& CMEGData9FileA00Basic::installLast(TrialArray longer, std::unique_ptr<CMDTrialzk> trial)
{
    for (int i = 0; i < m_nTotalTrial; ++i)
        longer.set(i, m_ppTrial.release(i));
    m_nCurrentTrial = m_nTotalTrial;
    ++m_nTotalTrial;
    m_ppTrial = std::move(longer);
    return *m_ppTrial.set(m_nCurrentTrial, std::move(trial));
}

// Runs `add(trial)`, which moves the trial into the dataset. One that it leaves behind, also by an exception, goes to
// the unsaved trials.
template <class Add>
int CMEGData9FileA00Basic::takeOver(CMDTrialzk* trial, Add add)
{
    if (trial == nullptr || placeOfTrial(trial) >= 0)
        return 0;
    std::unique_ptr<CMDTrialzk> taken(trial);
    const auto keep = [&] {
        if (taken != nullptr)
            keepUnsavedTrial(std::move(taken), -1);
    };
    try {
        const int done = add(taken);
        keep();
        return done;
    } catch (...) {
        keep();
        throw;
    }
}

CString CMEGData9FileA00Basic::addedPath() const
{
    const CString name = CString::formatted("%sTrial%d", m_strSessionName, m_nTotalTrial);
    return freePath(m_strTrialFolder + asFileName(name), -1);
}

// A file that can't be written leaves the trial without a path: the two counts differ from then on.
void CMEGData9FileA00Basic::saveAddedTrial(CMDTrialzk& trial, const CString& path)
{
    if (saveTrialAs(trial, path, trial.m_strTrialName))
        m_aTrialFilePath.Add(trial.m_strTrialFilePath);
}

int CMEGData9FileA00Basic::addTrial(CMDTrialzk* trial, int isVirtual)
{
    return takeOver(trial, [this, isVirtual](std::unique_ptr<CMDTrialzk>& taken) {
        if (m_pDocument != nullptr)
            setDocument(m_pDocument, true);
        saveAllTrials();
        correctTotal();
        TrialArray longer;
        if (!longer.allocate(m_nTotalTrial + 1))
            return fail("Not enough memory?!");
        taken->m_nVirtualTrial = isVirtual;
        taken->m_nTrialKind = isVirtual ? 2 : 1;
        taken->m_nTrialIndex = m_nTotalTrial;
        taken->m_strTrialName = CString::formatted("ImportTrial%d", m_nTotalTrial);
        const CString path = addedPath();
        saveAddedTrial(installLast(std::move(longer), std::move(taken)), path);
        return 1;
    });
}

int CMEGData9FileA00Basic::addTrialSave(CMDTrialzk* trial, const CString& path, int save)
{
    return takeOver(trial, [&](std::unique_ptr<CMDTrialzk>& taken) {
        saveAllTrials();
        correctTotal();
        TrialArray longer;
        if (!longer.allocate(m_nTotalTrial + 1))
            return fail("Not enough memory?!");
        const bool hasFolder = save == 0 || !path.IsEmpty() || setDocument(nullptr, true);
        const CString target = path.IsEmpty() ? addedPath() : path;
        CMDTrialzk& added = installLast(std::move(longer), std::move(taken));
        if (save && hasFolder)
            saveAddedTrial(added, target);
        return 1;
    });
}

// Opens the trial and hands each row of the block to `add(channel, row)`.
template <class Sample, class Add>
int CMEGData9FileA00Basic::fillTrial(int trial, int channels, std::int64_t samples, const Sample* data, Add add)
{
    if (!openTrial(trial))
        return fail("Open trial data error?");
    const CMDTrialzk& opened = *getCurrentTrialPt();
    if (!opened.getAllChannelPt())
        return fail("Channels have not been initialized!?");
    if (channels < 1 || channels > opened.getTotalChannel() || samples < 1 || data == nullptr)
        return 0;
    for (int i = 0; i < channels; ++i, data += samples) {
        CMDChannelzk* channel = opened.getChannel(i);
        if (channel != nullptr && !add(*channel, data))
            return 0;
    }
    return 1;
}

int CMEGData9FileA00Basic::addTrialDataL2F(int trial, int channels, std::int64_t samples, const std::int32_t* data)
{
    return fillTrial(trial, channels, samples, data, [samples](CMDChannelzk& channel, const std::int32_t* row) {
        return channel.addDataL(samples, row) != 0;
    });
}

int CMEGData9FileA00Basic::setTrialDataF(int trial, int channels, std::int64_t samples, const double* data)
{
    return fillTrial(trial, channels, samples, data, [samples](CMDChannelzk& channel, const double* row) {
        return channel.addData(samples, row) != 0;
    });
}

int CMEGData9FileA00Basic::expandTrialSpace(int total)
{
    correctTotal();
    if (total < 1 || total <= m_nTotalTrial)
        return 0;
    saveAllTrials();
    TrialArray longer;
    if (!longer.allocate(total))
        return fail("Not enough memory?!");
    for (int i = m_nTotalTrial; i < total; ++i)
        if (longer.set(i, tryNew<CMDTrialzk>()) == nullptr)
            return fail("Not enough memory?!");
    for (int i = 0; i < m_nTotalTrial; ++i)
        longer.set(i, m_ppTrial.release(i));
    m_ppTrial = std::move(longer);
    m_nTotalTrial = total;
    m_nCurrentTrial = total - 1;
    return 1;
}

int CMEGData9FileA00Basic::checkFilePath(CArchive* ar)
{
    if (ar == nullptr || ar->GetFile() == nullptr)
        return 0;
    m_strDatasetPath = ar->GetFile()->GetFilePath();
    return 1;
}

} // namespace megset
