// New datasets, virtual trials and the work trial.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CProgresszk.h"
#include "megset/platform/pathParts.h"

namespace megset {
namespace {

constexpr int recordedKind = 1;
constexpr int importedVirtualKind = 2;

std::unique_ptr<CMDTrialzk> noTrial(const CString& message)
{
    AfxMessageBox(message, MB_OK);
    return nullptr;
}

// A trial with that many channels, as far as the model has them like those of the model; null without memory, which is
// told.
std::unique_ptr<CMDTrialzk> trialLike(const CMDTrialzk* model, int channels)
{
    auto trial = tryNew<CMDTrialzk>();
    if (trial == nullptr)
        return noTrial("Not enough memory?");
    if (!trial->allocateChannels(channels) || (model != nullptr && !trial->copyTrialInfo(model)))
        return nullptr;
    return trial;
}

bool hasSamples(const CMDTrialzk& trial)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* channel = trial.getChannel(i); channel != nullptr && channel->m_nTotalSample > 0)
            return true;
    return false;
}

bool clearSamples(const CMDTrialzk& trial, std::int64_t samples)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (!trial.getChannel(i)->initData(samples, true))
            return false;
    return true;
}

bool fillChannels(const CMDTrialzk& trial, int channels, std::int64_t samples, const double* data)
{
    for (int i = 0; i < channels; ++i)
        if (CMDChannelzk* channel = trial.getChannel(i);
            channel != nullptr && !channel->addData(samples, data + i * samples))
            return false;
    return true;
}

// The path of a place that stands in a file, where it may be any number.
CString pathAt(const CStringArray& paths, std::int64_t place)
{
    if (place < 0 || place >= paths.GetSize())
        AfxThrowInvalidArgException();
    return paths.GetAt(static_cast<int>(place));
}

// Keeps a trial that is in memory out of its place for a while, so that nobody saves and ends it.
class OutOfPlace
{
public:
    OutOfPlace(SlotArray<CMDTrialzk>& trials, int place)
        : m_trials(trials), m_place(place), m_trial(trials.release(place))
    {
    }
    OutOfPlace(const OutOfPlace&) = delete;
    OutOfPlace& operator=(const OutOfPlace&) = delete;
    ~OutOfPlace()
    {
        if (m_trial != nullptr)
            m_trials.set(m_place, std::move(m_trial));
    }

private:
    SlotArray<CMDTrialzk>& m_trials;
    int m_place;
    std::unique_ptr<CMDTrialzk> m_trial;
};

} // namespace

// ---- new datasets

// Ends all trials but the model, which it gives where it is one of them.
std::unique_ptr<CMDTrialzk> CMEGData9FileA00Basic::dropTrials(const CMDTrialzk* model)
{
    auto kept = m_ppTrial.release(placeOfTrial(model));
    _cleanDatasetTrials();
    m_aTrialFilePath.RemoveAll();
    removeUnsavedPlaces();
    return kept;
}

int CMEGData9FileA00Basic::setTrialChannels(int trials, int channels, CMDTrialzk* model, const CString& suffix)
{
    const auto kept = dropTrials(model);
    if (trials < 1 || channels < 1 || !setDocument(nullptr, true))
        return 0;
    if (m_strTrialFolder.IsEmpty())
        return fail("File directory has not been initialized!");
    TrialArray places;
    if (!places.allocate(trials))
        return fail("Not enough memory?");
    if (m_pDocument != nullptr)
        setDocument(m_pDocument, true);
    CStringArray paths;
    CProgresszk progress("set trial and channel data ...", 0, trials);
    for (int i = 0; i < trials; ++i) {
        progress.setPos(i);
        const auto trial = trialLike(model, channels);
        if (trial == nullptr)
            return 0;
        trial->m_nVirtualTrial = 0;
        trial->m_nTrialKind = recordedKind;
        trial->m_nTrialIndex = i;
        const CString name = CString::formatted("%d%s", i, suffix);
        const CString stem = CString::formatted("%s%s_%s", m_strTrialFolder, m_strSessionName, name);
        if (saveTrialAs(*trial, freePathOfNewDataset(stem), name))
            paths.Add(trial->m_strTrialFilePath);
    }
    m_ppTrial = std::move(places);
    m_nTotalTrial = trials;
    m_aTrialFilePath = std::move(paths);
    openTrial(0);
    return 1;
}

int CMEGData9FileA00Basic::setOneTrialChannels(int channels, CMDTrialzk* model, CDocument* doc, const CString* suffix)
{
    const auto kept = dropTrials(model);
    if (channels < 1)
        return 0;
    auto trial = trialLike(model, channels);
    if (trial == nullptr || !setDocument(doc, true) || m_strDatasetPath.IsEmpty())
        return 0;
    TrialArray places;
    if (!places.allocate(1))
        return fail("Not enough memory?");
    const CString ending = suffix != nullptr ? *suffix : CString();
    trial->m_nVirtualTrial = 1;
    trial->m_nTrialKind = importedVirtualKind;
    trial->m_nTrialIndex = 0;
    trial->m_strTrialName = CString::formatted("%d%s", 0, ending);
    CMDTrialzk& only = installLast(std::move(places), std::move(trial));
    const CString stem = CString::formatted("%s%d%s", m_strDatasetPath, 1, ending); // the file counts from 1
    saveAddedTrial(only, freePathOfNewDataset(stem));
    return 1;
}

// ---- virtual trials

CMDTrialzk* CMEGData9FileA00Basic::makeInitTrial(CMDTrialzk* source, std::int64_t samples, int kind,
                                                 const CString& directory, const CString& name)
{
    const CMDTrialzk* model = source != nullptr ? source : getCurrentTrialPt();
    if (model == nullptr)
        return noTrial("There is no data to make a new trial!").release();
    if (model->getTotalChannel() < 1)
        return nullptr;
    auto trial = trialLike(model, model->getTotalChannel());
    if (trial == nullptr || (samples > 0 && !clearSamples(*trial, samples)))
        return nullptr;
    trial->m_nVirtualTrial = 1;
    trial->m_nTrialKind = kind;
    trial->m_strTrialName = name;
    trial->m_strTrialFilePath = CString::formatted("%s%s.trl", directory, name);
    return trial.release();
}

CMDTrialzk* CMEGData9FileA00Basic::virtualTrialInit(CMDTrialzk* source, int kind, const CString& suffix, bool detach)
{
    const CMDTrialzk* model = source != nullptr ? source : getCurrentTrialPt();
    if (model == nullptr)
        return noTrial("There is no data for making virtual trial!").release();
    if (!hasSamples(*model))
        return nullptr;
    correctTotal();
    auto made = tryNew<CMDTrialzk>();
    TrialArray longer;
    if (made == nullptr || !longer.allocate(m_nTotalTrial + 1))
        return noTrial("Not enough memory?!").release();
    CMDTrialzk& trial = installLast(std::move(longer), std::move(made)); // for good, whatever fails from here on
    if (!trial.allocateChannels(model->getTotalChannel()) || !trial.copyTrialInfo(model))
        return nullptr;
    const int place = m_nCurrentTrial;
    trial.m_nVirtualTrial = 1;
    trial.m_nTrialKind = kind;
    trial.m_nTrialIndex = place;
    trial.m_strTrialName = CString::formatted("VirtualTrial%d%s.trl", place, suffix);
    if (place != m_aTrialFilePath.GetSize())
        AfxMessageBox("file path and trial number does not match in MEGData9FileA!?", MB_OK);
    const CString stem = virtualTrialStem(*model, CString::formatted("VirtualTrial%d%s", place, suffix));
    if (stem.IsEmpty())
        return nullptr;
    saveAddedTrial(trial, freePath(stem, -1));
    return detach ? m_ppTrial.release(place).release() : &trial;
}

// Where a virtual trial goes: beside the file of its source or, where that has none, to the document's folder. Empty
// where there is no such place.
CString CMEGData9FileA00Basic::virtualTrialStem(const CMDTrialzk& source, const CString& name)
{
    const CString& sourcePath = source.m_strTrialFilePath;
    CString found;
    if (!sourcePath.IsEmpty())
        return CMDTrialzk::findFile(sourcePath, found)
                   ? CMDTrialzk::filePath2FileDirectory(found) + asFileName(m_strSessionName + name)
                   : CString();
    if (m_pDocument == nullptr || !setDocument(m_pDocument, true))
        return {};
    return m_strTrialFolder + asFileName(m_strSessionName + name);
}

int CMEGData9FileA00Basic::virtualTrialUpdate(CMDTrialzk* trial, int channels, std::int64_t samples, const double* data)
{
    const OutOfPlace inHand(m_ppTrial, placeOfTrial(trial)); // one that is not detached
    saveAllTrials();
    if (trial == nullptr || data == nullptr || channels < 1 || samples < 1 || channels > trial->getTotalChannel())
        return 0;
    const std::int64_t place = trial->m_nTrialIndex;
    if (place < 0 || place >= m_nTotalTrial)
        return fail("Virtual trial ID is out of range!");
    CString path = pathAt(m_aTrialFilePath, place);
    if (path != trial->m_strTrialFilePath)
        return fail("The updated virtual trial file path does not match!");
    if (!fillChannels(*trial, channels, samples, data))
        return 0;
    if (!trial->saveTrialData(path, m_pDocument, m_strDatasetPath, false))
        return fail("Save updated virtual trial error!");
    m_aTrialFilePath.SetAt(static_cast<int>(place), trial->m_strTrialFilePath);
    return 1;
}

// ---- the work trial

CMDTrialzk* CMEGData9FileA00Basic::wkVtTrialRent(int trial, bool virtualOnly)
{
    CMDTrialzk* rented = getTrialzk(trial);
    if (rented == nullptr || (virtualOnly && !rented->isVirtualTrial()))
        return nullptr;
    CString path = m_aTrialFilePath.GetAt(m_nCurrentTrial);
    if (!rented->saveTrialData(path, m_pDocument, m_strDatasetPath, false))
        return noTrial("Save trial data error!").release();
    m_aTrialFilePath.SetAt(m_nCurrentTrial, rented->m_strTrialFilePath);
    rented->m_nTrialIndex = m_nCurrentTrial;
    return m_ppTrial.release(m_nCurrentTrial).release();
}

int CMEGData9FileA00Basic::wkVtTrialReturn(CMDTrialzk* trial)
{
    if (placeOfTrial(trial) >= 0)
        return 1; // it is back already
    saveAllTrials();
    if (trial == nullptr)
        return 0;
    CString path = pathAt(m_aTrialFilePath, trial->m_nTrialIndex);
    const int place = static_cast<int>(trial->m_nTrialIndex);
    if (place >= m_nTotalTrial || !m_ppTrial)
        return 0;
    if (path != trial->m_strTrialFilePath &&
        AfxMessageBox("The work trial has been changed  or corrupted! continue?", MB_YESNO) != IDYES)
        return 0;
    if (!trial->saveTrialData(path, m_pDocument, m_strDatasetPath, false))
        return fail("Save wkVtTrial trial data error!");
    m_aTrialFilePath.SetAt(place, trial->m_strTrialFilePath);
    m_nCurrentTrial = place;
    keepWhatIsInMemory(place); // a copy opened meanwhile that could not be saved
    m_ppTrial.set(place, std::unique_ptr<CMDTrialzk>(trial));
    return 1;
}

} // namespace megset
