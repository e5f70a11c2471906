// The trials on disk, of which one at a time is in memory: opening, saving, and those that could not be saved.
#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/pathParts.h"

#include <algorithm>

namespace megset {

bool CMEGData::checkPathsMatchTrials() const
{
    if (!pathsMatchTrials())
        AfxMessageBox("File path and trial error!", MB_OK);
    return pathsMatchTrials();
}

int CMEGData::openTrial(int trial)
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
    CString path = m_aTrialFilePath.GetAt(index);
    auto opened = tryNew<CMDTrialzk>();
    if (opened == nullptr)
        return 0;
    if (!opened->openTrialData(path, m_pDocument, m_strDatasetPath))
        return fail("Open trial data failed ");
    return installOpened(index, std::move(opened));
}

// Such a trial is newer than its file.
bool CMEGData::takeResident(int index)
{
    if (m_ppTrial[index] == nullptr)
        return false;
    m_nCurrentTrial = index;
    return true;
}

int CMEGData::installOpened(int index, std::unique_ptr<CMDTrialzk> opened)
{
    m_aTrialFilePath.SetAt(index, opened->m_strTrialFilePath);
    m_nCurrentTrial = index;
    const CMDTrialzk& current = *m_ppTrial.set(index, std::move(opened));
    warnOfChangedSamples(current);
    return current.getAllChannelPt() ? 1 : 0;
}

CMEGData::TrialWalk CMEGData::walkOver(bool allTrials) const
{
    if (allTrials)
        return {0, placedTrials()};
    const bool isTrial = m_nCurrentTrial >= 0 && m_nCurrentTrial < m_nTotalTrial;
    return isTrial ? TrialWalk{m_nCurrentTrial, m_nCurrentTrial + 1} : TrialWalk{};
}

bool CMEGData::isUnlikeRecording(const CMDTrialzk& trial) const
{
    const CMDChannelzk* first = trial.getChannel(0);
    return first != nullptr && trial.m_nTrialResampleStep != m_recordInfo.m_nResampleFactor &&
           first->m_nTotalSample != m_recordInfo.m_nRecTotalSample;
}

void CMEGData::warnOfChangedSamples(const CMDTrialzk& trial) const
{
    if (isUnlikeRecording(trial))
        AfxMessageBox(CString::formatted("Sample has been changed: %I64d->%I64d, Please re-sample and check the data",
                                         m_recordInfo.m_nRecTotalSample, trial.getChannel(0)->m_nTotalSample),
                      MB_OK);
}

int CMEGData::saveAllTrials()
{
    if (m_nTotalTrial < 1 || !checkPathsMatchTrials() || !m_ppTrial)
        return 0;
    for (int i = 0; i < m_nTotalTrial; ++i) {
        if (m_ppTrial[i] != nullptr && !saveTrialAt(i)) {
            AfxMessageBox("Save trial data error!", MB_OK);
            return 1; // the rest stay in memory: it is meant so
        }
    }
    return 1;
}

// Writes the trial of one place to its file and frees it.
int CMEGData::saveTrialAt(int index)
{
    if (!storeTrialAt(index))
        return 0;
    m_ppTrial.set(index, nullptr);
    return 1;
}

// Writes the trial of one place, which is empty meanwhile, to its file. One that can't be saved goes to the unsaved
// trials, also where an exception tells so, which passes on.
int CMEGData::storeTrialAt(int index)
{
    std::unique_ptr<CMDTrialzk> trial = m_ppTrial.release(index);
    const bool hasPath = index < m_aTrialFilePath.GetSize();
    CString path = hasPath ? m_aTrialFilePath.GetAt(index) : CString();
    try {
        if (trial->saveTrialData(path, m_pDocument, m_strDatasetPath, false)) {
            if (hasPath)
                m_aTrialFilePath.SetAt(index, trial->m_strTrialFilePath);
            m_ppTrial.set(index, std::move(trial));
            return 1;
        }
    } catch (...) {
        keepUnsavedTrial(std::move(trial), index);
        throw;
    }
    keepUnsavedTrial(std::move(trial), index);
    return 0;
}

// One that had no file yet notes the path that it was meant for, since its place may go.
void CMEGData::keepUnsavedTrial(std::unique_ptr<CMDTrialzk> trial, int place)
{
    if (trial->m_strTrialFilePath.IsEmpty() && place >= 0 && place < m_aTrialFilePath.GetSize())
        trial->m_strTrialFilePath = m_aTrialFilePath.GetAt(place);
    m_aUnsavedPlace.push_back(place);
    m_aUnsavedTrial.Add(std::move(trial));
}

int CMEGData::placeOfTrial(const CMDTrialzk* trial) const
{
    for (std::int64_t i = 0; trial != nullptr && i < m_ppTrial.size(); ++i)
        if (m_ppTrial[i] == trial)
            return static_cast<int>(i);
    return -1;
}

void CMEGData::removeUnsavedPlace(int place)
{
    for (int& each : m_aUnsavedPlace)
        each = each == place ? -1 : each > place ? each - 1 : each;
}

void CMEGData::removeUnsavedPlaces()
{
    std::fill(m_aUnsavedPlace.begin(), m_aUnsavedPlace.end(), -1);
}

bool CMEGData::isFileNameOfUnsaved(const CString& name) const
{
    for (int i = 0; i < m_aUnsavedTrial.GetSize(); ++i)
        if (m_aUnsavedPlace[static_cast<std::size_t>(i)] == -1 &&
            fileNameOf(m_aUnsavedTrial.GetAt(i)->m_strTrialFilePath).CompareNoCase(name) == 0)
            return true;
    return false;
}

// Oldest first: of two versions of one trial the later one is what its file holds in the end.
int CMEGData::saveUnsavedTrials()
{
    for (int i = 0; i < m_aUnsavedTrial.GetSize();)
        if (!saveUnsavedTrial(i))
            ++i;
    return m_aUnsavedTrial.GetSize();
}

// Writes one of them to the path that its place has in the list, and lets it go.
int CMEGData::saveUnsavedTrial(int i)
{
    CMDTrialzk& trial = *m_aUnsavedTrial.GetAt(i);
    const int place = m_aUnsavedPlace[static_cast<std::size_t>(i)];
    const bool hasPath = place >= 0 && place < m_aTrialFilePath.GetSize();
    CString path = hasPath ? m_aTrialFilePath.GetAt(place) : trial.m_strTrialFilePath;
    if (!trial.saveTrialData(path, m_pDocument, m_strDatasetPath, true))
        return 0;
    if (hasPath)
        m_aTrialFilePath.SetAt(place, trial.m_strTrialFilePath);
    m_aUnsavedTrial.RemoveAt(i);
    m_aUnsavedPlace.erase(m_aUnsavedPlace.begin() + i);
    return 1;
}

CMDTrialzk* CMEGData::getTrialzk(int trial)
{
    return openTrial(trial) ? getCurrentTrialPt() : nullptr;
}

CMDTrialzk* CMEGData::getMDTrial(int trial) const
{
    const int index = trialIndex(trial);
    return index >= 0 && index < m_nTotalTrial ? m_ppTrial[index] : nullptr;
}

int CMEGData::getTotalChannel(int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getTotalChannel() : 0;
}

std::int64_t CMEGData::getTotalSample() const
{
    const CMDTrialzk* slot = getCurrentTrialPt();
    return slot != nullptr ? slot->getTotalSample(-1) : 0;
}

int CMEGData::getTrialRecordVirtual(int& real, int& virt, int mode)
{
    real = virt = 0;
    if (m_nTotalTrial < 1 || !checkPathsMatchTrials() || !m_ppTrial)
        return 0;
    int counted = 0;
    if (mode == 0) {
        real = m_nRealTrial;
        virt = m_nVirtualTrial;
        counted = 1;
    } else if (mode == 1) {
        counted = countVirtualAtEnd(virt);
    } else if (mode == 2) {
        counted = countAllTrials(real, virt);
    }
    if (!counted)
        return 0;
    // A file may have brought any counts, so that the difference may leave the range of int.
    real = static_cast<int>(std::int64_t{m_nTotalTrial} - virt);
    return m_nTotalTrial;
}

// Virtual trials stand at the end: the first recorded one from there ends the count.
int CMEGData::countVirtualAtEnd(int& virt)
{
    for (int i = m_nTotalTrial - 1; i >= 0; --i) {
        const CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr)
            return fail("Open trial for checking error!");
        if (!trial->isVirtualTrial())
            break;
        ++virt;
    }
    return 1;
}

int CMEGData::countAllTrials(int& real, int& virt)
{
    for (int i = 0; i < m_nTotalTrial; ++i) {
        const CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr)
            return fail("Open trial for checking error!");
        ++(trial->isVirtualTrial() ? virt : real);
    }
    return 1;
}

int CMEGData::getTrialComments(int trial)
{
    const CMDTrialzk* opened = getTrialzk(trial);
    return opened != nullptr ? opened->m_nGoodTrial : 0;
}

int CMEGData::applyMEGSnsrGainDirTrial(int trial, bool once)
{
    CMDTrialzk* opened = getTrialzk(trial);
    return opened != nullptr ? opened->applyMEGSnsrGainDir2Chnls(once) : 0;
}

} // namespace megset
