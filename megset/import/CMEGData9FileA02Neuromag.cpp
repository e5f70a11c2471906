#include "megset/import/CMEGData9FileA02Neuromag.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/pathParts.h"

#include <algorithm>

namespace megset {
namespace {

constexpr int droppedTrial = 7; // kind of trial

bool agreed(const CString& question)
{
    return AfxMessageBox(question, MB_YESNO) == IDYES;
}

// Samples of a selection, both ends included; 0 where no 64 bits hold them.
std::int64_t selectedSize(std::int64_t from, std::int64_t to)
{
    std::int64_t size = 0;
    if (__builtin_sub_overflow(to, from, &size) || __builtin_add_overflow(size, 1, &size))
        return 0;
    return size;
}

bool isCut(int mode)
{
    return mode == 1 || mode == 2;
}

int chopChannels(const CMDTrialzk& trial, std::int64_t newSize, int mode, std::int64_t from, std::int64_t to)
{
    if (trial.getTotalChannel() < 1)
        return 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* channel = trial.m_ppChannel[i];
        // A channel of raw samples alone refuses and stays; any other refuses for want of memory.
        if (channel != nullptr && !channel->chopSize4Select(newSize, mode, from, to) &&
            channel->getDataWave() != nullptr)
            return 0;
    }
    return 1;
}

} // namespace

int CMEGData9FileA02Neuromag::addImportNeuromagTrial(CMDTrialzk* trial, int bVirtual)
{
    if (trial == nullptr || placeOfTrial(trial) >= 0)
        return 0;
    std::unique_ptr<CMDTrialzk> taken(trial);
    SlotArray<CMDTrialzk> longer;
    try {
        saveAllTrials();
        if (!longer.allocate(m_nTotalTrial + 1)) {
            keepUnsavedTrial(std::move(taken), -1);
            return fail("Not enough memory?!");
        }
    } catch (...) {
        keepUnsavedTrial(std::move(taken), -1);
        throw;
    }
    trial->m_nVirtualTrial = bVirtual;
    trial->m_nTrialKind = 1; // whatever bVirtual says
    trial->m_nTrialIndex = m_nTotalTrial;
    trial->m_strTrialName = CString::formatted("ImportTrial%d", m_nTotalTrial);
    const CString name = CString::formatted("%sTrial%d", m_strSessionName, m_nTotalTrial);
    const CString path = freePath(m_strTrialFolder + asFileName(name), -1);
    installLast(std::move(longer), std::move(taken));
    m_nRealTrial = m_nTotalTrial;
    m_nVirtualTrial = 0; // whatever bVirtual says
    saveAddedTrial(*trial, path);
    trial->codeSnsLocation2Name();
    checkInitChnlParam(trial);
    setShowMEGMeasureChannel();
    return 1;
}

// ---- dropped trials

// Asks where the trial is unlike those of the dataset.
bool CMEGData9FileA02Neuromag::mayDrop(const CMDTrialzk& trial, int mode, std::int64_t size)
{
    if (m_nCurrentTrial < 0 || m_nCurrentTrial >= m_nTotalTrial) {
        takeRecordedSize(size);
        return true;
    }
    const CMDTrialzk* present = getCurrentTrialPt();
    // Opening the current trial would end another one of this dataset, which is as good to compare with.
    if (present == nullptr)
        present = placeOfTrial(&trial) >= 0 ? &trial : getTrialzk(-1);
    if (present == nullptr)
        return false;
    if (present->getTotalChannel() != trial.getTotalChannel() &&
        !agreed("The droped trial and existing trial have unequal channels, which may be troublesome!  would you like "
                "to continue?"))
        return false;
    return mode != 0 || present->getTotalSample(0) == trial.getTotalSample(0) ||
           agreed("The droped trial and existing trial have unequal sample, which may be troublesome!  would you like "
                  "to continue?");
}

// Writes the trial to the path. It keeps the path that it has. Gives the path of the file, empty where it failed.
CString CMEGData9FileA02Neuromag::saveForDrop(CMDTrialzk& trial, const CString& path) const
{
    const CString former = trial.m_strTrialFilePath;
    CString target = path;
    try {
        const bool saved = trial.saveTrialData(target, m_pDocument, m_strDatasetPath, true) != 0;
        target = saved ? trial.m_strTrialFilePath : CString();
    } catch (...) {
        trial.m_strTrialFilePath = former;
        throw;
    }
    trial.m_strTrialFilePath = former;
    return target;
}

// A copy of the trial, read from a new file of its own; null without one. The trials in memory are saved.
std::unique_ptr<CMDTrialzk> CMEGData9FileA02Neuromag::copyThroughFile(CMDTrialzk& trial)
{
    const bool isOwn = placeOfTrial(&trial) >= 0; // saving all trials will end it
    if (!isOwn)
        saveAllTrials();
    const CString name = CString::formatted("%sDragDropTrial%d", m_strSessionName, m_nTotalTrial);
    CString path = saveForDrop(trial, freePath(m_strTrialFolder + asFileName(name), -1));
    if (isOwn)
        saveAllTrials();
    if (path.IsEmpty())
        return nullptr;
    auto copy = tryNew<CMDTrialzk>();
    // The file is where the path says: one of that name beside the document is not meant.
    if (copy == nullptr || !copy->openTrialData(path, nullptr, "")) {
        fail("Open New Drag-Drop trial error! is Memory enough?");
        return nullptr;
    }
    copy->m_nTrialKind = droppedTrial;
    copy->m_nTrialIndex = m_nTotalTrial;
    return copy;
}

int CMEGData9FileA02Neuromag::dropNewTrial(CMDTrialzk* trial, int mode, std::int64_t from, std::int64_t to)
{
    if (trial == nullptr)
        return 0;
    const std::int64_t selected = selectedSize(from, to);
    if (mode >= 1 && mode <= 3 && selected < 2)
        return fail("Selected sample is too small!?, please select at least 2 samples");
    const std::int64_t size = isCut(mode) ? selected : trial->getTotalSample(0);
    if (!mayDrop(*trial, mode, size))
        return 0;
    std::unique_ptr<CMDTrialzk> copy = copyThroughFile(*trial);
    if (copy == nullptr || (isCut(mode) && !chopChannels(*copy, size, mode, from, to)))
        return 0;
    SlotArray<CMDTrialzk> longer;
    if (!longer.allocate(m_nTotalTrial + 1))
        return fail("Not enough memory?!");
    m_aTrialFilePath.Add(copy->m_strTrialFilePath);
    installLast(std::move(longer), std::move(copy));
    if (isCut(mode)) {
        takeRecordedSize(size);
        saveAllTrials();
    }
    return 1;
}

int CMEGData9FileA02Neuromag::chopSize4Select(CMDTrialzk* trial, std::int64_t newSize, int mode, std::int64_t from,
                                              std::int64_t to)
{
    if (trial == nullptr || newSize < 1 || !chopChannels(*trial, newSize, mode, from, to))
        return 0;
    takeRecordedSize(newSize);
    saveAllTrials();
    return 1;
}

void CMEGData9FileA02Neuromag::takeRecordedSize(std::int64_t size)
{
    m_recordInfo.m_nRecTotalSample = size;
    m_recordInfo.m_nRawTotalSample = size;
}

int CMEGData9FileA02Neuromag::dropNewMeg(CMEGData9FileA02Neuromag* source, CMDTrialzk* trial, int mode,
                                         std::int64_t from, std::int64_t to)
{
    if (source == nullptr)
        return 0;
    m_recordInfo = source->m_recordInfo;
    m_recordInfo.m_nRecPreTrigPts = 0;
    m_headLocalization = source->m_headLocalization;
    for (double CMEGData::*factor :
         {&CMEGData::m_dZoomMEGSensor, &CMEGData::m_dZoomMEGRef, &CMEGData::m_dZoomEEGSensor, &CMEGData::m_dZoomEEGRef,
          &CMEGData::m_dZoomType903, &CMEGData::m_dZoomType902, &CMEGData::m_dZoomType904, &CMEGData::m_dZoomTrig,
          &CMEGData::m_dZoomOthers, &CMEGData::m_dShowTimeScaleX})
        this->*factor = source->*factor;
    checkInitChnlParam(trial);
    copyFlags(*source);
    dropNewTrial(trial, mode, from, to); // what it gives is not looked at
    return 1;
}

// Of the channels that both datasets have flags for.
void CMEGData9FileA02Neuromag::copyFlags(const CMEGData& source)
{
    const int count = std::min(m_nChnlParamCount, source.m_nChnlParamCount);
    for (auto array :
         {&CMEGData::m_pChnlGood, &CMEGData::m_pChnlShow, &CMEGData::m_pChnlSelect, &CMEGData::m_pChnlParam4})
        if (count > 0 && this->*array != nullptr && source.*array != nullptr)
            std::copy_n((source.*array).get(), count, (this->*array).get());
}

} // namespace megset
