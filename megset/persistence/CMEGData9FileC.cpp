#include "megset/persistence/CMEGData9FileC.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CWaitCursor.h"
#include "megset/platform/archiveLists.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

constexpr const char* electrodeFilter = "Electrode File(*.epos)|*.epos|All Files(*.*)|*.*||";
constexpr const char* seegFilter = "SEEG File(*.seeg)|*.seeg|All Files(*.*)|*.*||";

// Runs `exchange(archive)` on the file that the dialog gives. What it answers is not looked at.
template <class Exchange>
int withChosenFile(CFileDialog& dialog, FileDialogMemory& memory, const CString& addedEnd, Exchange exchange)
{
    const bool stores = !addedEnd.IsEmpty();
    dialog.remember(memory);
    if (dialog.DoModal() != IDOK)
        return 0;
    CString path = dialog.GetPathName();
    if (stores && path.Find(addedEnd) < 0) // anywhere, also in the name of a folder: it is meant so
        path += addedEnd;
    CFile file;
    CFileException exception;
    const unsigned flags = stores ? CFile::modeCreate | CFile::modeWrite : unsigned{CFile::modeRead};
    if (!file.Open(path, flags | CFile::shareExclusive, &exception))
        return fail(exception.GetErrorMessage());
    CArchive archive(&file, stores ? CArchive::store : CArchive::load);
    exchange(archive);
    if (stores)
        archive.Flush();
    archive.Close();
    file.Close();
    return 1;
}

} // namespace

/// What the file has for one channel.
struct CMEGData9FileC::ElectrodeEntry
{
    int type = 0;
    std::unique_ptr<CEEGelectrodezk> electrode; ///< null for a channel without one
};

CMDTrialzk* CMEGData9FileC::trialWithChannels(int trial)
{
    CMDTrialzk* opened = getTrialzk(trial);
    return opened != nullptr && opened->getTotalChannel() > 0 ? opened : nullptr;
}

// ---- electrodes

int CMEGData9FileC::openElectrodeInfo(bool bAllTrials)
{
    const CWaitCursor wait;
    static FileDialogMemory memory;
    CFileDialog dialog(true, "epos", "", OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST, electrodeFilter);
    return withChosenFile(dialog, memory, "", [&](CArchive& ar) { serializeElectrodeInfo(ar, bAllTrials); });
}

int CMEGData9FileC::saveElectrodesInfo()
{
    static FileDialogMemory memory;
    CFileDialog dialog(false, "epos", "", OFN_OVERWRITEPROMPT, electrodeFilter);
    return withChosenFile(dialog, memory, ".epos", [&](CArchive& ar) { serializeElectrodeInfo(ar, false); });
}

int CMEGData9FileC::serializeElectrodeInfo(CArchive& ar, bool bAllTrials)
{
    struct File
    {
        int serialize(CArchive& archive) { return data.serializeElectrodeInfo20170726(archive, allTrials); }
        CMEGData9FileC& data;
        bool allTrials;
    };
    static constexpr FormatVersion<File> versions[] = {{20170726, &File::serialize}};
    const FormatTexts texts{"ELECTRODINFOFILE", "The opened file is not electrode information file or corrupted!",
                            "Wrong electrode information file format!!?"};
    File file{*this, bAllTrials};
    return serializeFormat(ar, file, texts, versions);
}

int CMEGData9FileC::serializeElectrodeInfo20170726(CArchive& ar, bool allTrials)
{
    return ar.IsStoring() ? storeElectrodes(ar) : loadElectrodes(ar, allTrials);
}

int CMEGData9FileC::storeElectrodes(CArchive& ar)
{
    const CMDTrialzk* trial = trialWithChannels(-1);
    if (trial == nullptr)
        return 0;
    const int count = ar.exchangeInt(trial->getTotalChannel(), "channels");
    for (int i = 0; i < count; ++i) {
        CMDChannelzk* channel = trial->getChannel(i);
        CEEGelectrodezk* electrode = channel != nullptr ? channel->getEegElectrode(0) : nullptr;
        if (!exchangeGuard(ar, electrode != nullptr))
            continue;
        ar.exchangeNamed("m_nChannelType", channel->m_nChannelType);
        electrode->serializezk(ar);
    }
    return 1;
}

// Nothing is given to a channel before the whole file has been read.
int CMEGData9FileC::loadElectrodes(CArchive& ar, bool allTrials)
{
    const int count = ar.exchangeInt(0, "channels");
    if (count < 1 || !ar.mayHold(static_cast<std::uint64_t>(count) * sizeof(ElectrodeEntry)))
        return 0;
    const ElectrodeEntries entries = tryNewZeroArray<ElectrodeEntry>(count);
    if (entries == nullptr)
        return 0; // without a message: it is meant so
    for (int i = 0; i < count; ++i) {
        ElectrodeEntry& entry = entries[static_cast<std::size_t>(i)];
        if (!exchangeGuard(ar, false))
            continue;
        ar.exchangeNamed("m_nChannelType", entry.type);
        entry.electrode = tryNew<CEEGelectrodezk>();
        if (entry.electrode == nullptr || !entry.electrode->serializezk(ar))
            return 0;
    }
    return spreadElectrodes(entries, count, allTrials);
}

namespace {

// The channel's electrode; a channel of another geometry gives that up for a new one. Null without memory, which is
// told.
CEEGelectrodezk* electrodeOf(CMDChannelzk& channel)
{
    auto* electrode = dynamic_cast<CEEGelectrodezk*>(channel.m_pGeomHw.get());
    if (electrode == nullptr || channel.m_nGeomType != 2) {
        channel._initGeomHw(2);
        electrode = dynamic_cast<CEEGelectrodezk*>(channel.m_pGeomHw.get());
    }
    return electrode;
}

} // namespace

// The number of channels is compared on the first trial that has any, and the answer holds for the others.
int CMEGData9FileC::spreadElectrodes(const ElectrodeEntries& entries, int count, bool allTrials)
{
    const TrialWalk walk = walkOver(allTrials);
    bool compared = false;
    for (int k = walk.first; k < walk.end; ++k) {
        const CMDTrialzk* trial = trialWithChannels(k);
        if (trial == nullptr)
            continue;
        const int channels = trial->getTotalChannel();
        const CString question =
            CString::formatted("Channel number does not match: %d->%d ! Continue?", channels, count);
        if (!compared && channels != count && AfxMessageBox(question, MB_YESNO) != IDYES)
            return 0;
        compared = true;
        for (int i = 0; i < std::min(count, channels); ++i) {
            const ElectrodeEntry& entry = entries[static_cast<std::size_t>(i)];
            CMDChannelzk* channel = trial->getChannel(i);
            CEEGelectrodezk* target =
                entry.electrode != nullptr && channel != nullptr ? electrodeOf(*channel) : nullptr;
            if (target == nullptr)
                continue;
            *target = *entry.electrode;
            channel->m_nChannelType = entry.type;
        }
    }
    return 1;
}

// ---- SEEG probes

int CMEGData9FileC::openSeegInfo(int bAllTrials)
{
    const CWaitCursor wait;
    static FileDialogMemory memory;
    CFileDialog dialog(true, "seeg", "", OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST, seegFilter);
    return withChosenFile(dialog, memory, "", [&](CArchive& ar) { serializeSeegInfo(ar, bAllTrials); });
}

int CMEGData9FileC::saveSeegInfo()
{
    static FileDialogMemory memory;
    CFileDialog dialog(false, "seeg", "", OFN_OVERWRITEPROMPT, seegFilter);
    return withChosenFile(dialog, memory, ".seeg", [&](CArchive& ar) { serializeSeegInfo(ar, 0); });
}

int CMEGData9FileC::serializeSeegInfo(CArchive& ar, int bAllTrials)
{
    struct File
    {
        int serialize(CArchive& archive) { return data.serializeSeegInfo20171006(archive, allTrials); }
        CMEGData9FileC& data;
        bool allTrials;
    };
    static constexpr FormatVersion<File> versions[] = {{20171006, &File::serialize}};
    // The text for another tag speaks of electrodes: it is meant so.
    const FormatTexts texts{"SEEGINFO", "The opened file is not electrode information file or corrupted!",
                            "Wrong SEEG information file format!!?"};
    File file{*this, bAllTrials != 0};
    return serializeFormat(ar, file, texts, versions);
}

int CMEGData9FileC::serializeSeegInfo20171006(CArchive& ar, bool allTrials)
{
    return ar.IsStoring() ? storeProbes(ar) : loadProbes(ar, allTrials);
}

int CMEGData9FileC::storeProbes(CArchive& ar)
{
    CMDTrialzk* trial = trialWithChannels(-1);
    if (trial == nullptr)
        return 0;
    exchangeGuard(ar, true);
    return exchangePointers<std::int64_t>(
        ar, trial->m_aSeegProbe, [&ar](auto& probe) { return probe.serializezk(ar); }, "m_aSeegProbe");
}

namespace {

using ProbeList = CTypedPtrArray<CSeegProbezk>;

void replaceProbes(CMDTrialzk& trial, ProbeList probes)
{
    trial.m_aSeegProbe = std::move(probes);
    trial.m_nCurrentSeegProbe = trial.m_aSeegProbe.IsEmpty() ? -1 : 0;
}

// False without memory.
bool copyProbes(const ProbeList& probes, ProbeList& copies)
{
    for (int i = 0; i < probes.GetSize(); ++i) {
        auto copy = tryNew<CSeegProbezk>(*probes.GetAt(i));
        if (copy == nullptr)
            return false;
        copies.Add(std::move(copy));
    }
    return true;
}

} // namespace

// A trial's own probes go when the new ones are there.
int CMEGData9FileC::loadProbes(CArchive& ar, bool allTrials)
{
    if (!exchangeGuard(ar, false))
        return 1;
    ProbeList probes;
    if (!exchangePointers<std::int64_t>(
            ar, probes, [&ar](auto& probe) { return probe.serializezk(ar); }, "m_aSeegProbe"))
        return 0;
    if (!allTrials) {
        if (CMDTrialzk* trial = getTrialzk(-1))
            replaceProbes(*trial, std::move(probes));
        return 1;
    }
    for (int k = 0; k < placedTrials(); ++k) {
        CMDTrialzk* trial = getTrialzk(k);
        if (trial == nullptr)
            continue;
        ProbeList copies;
        if (!copyProbes(probes, copies))
            return 0;
        replaceProbes(*trial, std::move(copies));
    }
    return 1;
}

} // namespace megset
