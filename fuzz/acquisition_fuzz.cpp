// Loads a file of an acquisition from the input: its first byte says of which kind. What could be loaded is stored,
// loaded and stored again, and must be the same then.
//
// The paths of trials are the input's: no file is looked for while they stand. The conversion is run on what is left of
// a dataset without them, and with others that have a trial behind them. A trial's file must load as its bytes do.

#include "fuzz/ScratchFolder.h"
#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

#include <cstdint>
#include <initializer_list>
#include <span>

namespace megset {
namespace {

struct AcquiredDataset : CMEGDatazk
{
    int serializezk(CArchive& ar) { return serializeRecordWithoutTrials(ar); }
};

struct AcquiredTrial : CMDTrialzk
{
    int serializezk(CArchive& ar) { return serializeAcq(ar); }
};

struct AcquiredChannel : CMDChannelzk
{
    int serializezk(CArchive& ar) { return serializeAcqzk(ar); }
};

// Stored without slots and without paths: nothing is there to be converted, whatever the counts say.
void convertNothing(CMEGDatazk& dataset)
{
    for (int i = 0; i < dataset.m_aRecordTrialPath.GetSize(); ++i)
        dataset.m_aRecordTrialPath.SetAt(i, {});
    dataset.m_aRecordTrialPath.RemoveAll();
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    require(dataset.serializeRecordMe(archive, nullptr) == 1);
    dataset.openTrialRecord(0, "");
    dataset.getTrialRecord(-1);
}

CString writeTrial()
{
    AcquiredTrial trial;
    require(trial.allocateChannels(1));
    require(trial.getChannel(0)->initData(3, true) != 0);
    return scratch().write("fuzz.trla", stored(trial));
}

// Opens a file of the dataset whose first trials are in the given files; for more slots there is no path.
void convertFiles(AcquiredDataset& dataset, std::initializer_list<CString> trials)
{
    dataset.m_aRecordTrialPath.RemoveAll();
    for (const CString& path : trials)
        if (dataset.m_aRecordTrialPath.GetSize() < dataset.m_ppTrial.size())
            dataset.m_aRecordTrialPath.Add(path);
    const CString path = scratch().write("fuzz.mega", stored(dataset));
    CDocument document;
    document.SetPathName(scratch().path("fuzz.meg"));
    CMEGDatazk opened;
    opened.openRecordMeX(path, &document);
    for (const int trial : {0, 1}) {
        opened.openTrialRecord(trial, "");
        opened.openTrialRecord(trial, path);
        opened.getTrialRecord(-1);
    }
    CMEGDatazk chosen;
    chosen.openRecordMeStd();
}

// Trials that are there, one that is not, and one that is a dataset. What the host chooses is a dataset, too.
void convertFiles(AcquiredDataset& dataset)
{
    const KeepDirectory keep;
    scratch().clear();
    std::filesystem::current_path(scratch().native()); // a dataset without a folder writes where it is
    const CString trial = writeTrial();
    convertFiles(dataset, {trial, trial});
    convertFiles(dataset, {trial, scratch().path("absent.trla"), scratch().path("fuzz.mega")});
}

void runDataset(std::span<const std::byte> input)
{
    AcquiredDataset dataset;
    if (!load(dataset, input))
        return;
    // The slots are bounded by the size of the file, which may become smaller: there is nothing in them to store.
    SlotArray<CMDTrialzk> slots = std::move(dataset.m_ppTrial);
    storeAndReload(dataset);
    limitMemory(input.size(), 16);
    convertNothing(dataset);
    dataset.m_ppTrial = std::move(slots);
    limitMemory(input.size(), 16);
    convertFiles(dataset);
}

bool open(CMDTrialzk& trial, const CString& path)
{
    try {
        return trial.openTrialAcq(path, "", "") == 1;
    } catch (const CArchiveException&) {
        return false;
    }
}

void runTrial(std::span<const std::byte> input)
{
    AcquiredTrial trial;
    const bool isReadable = load(trial, input);
    CMDTrialzk fromFile;
    limitMemory(input.size());
    require(open(fromFile, scratch().write("fuzz.trla", input)) == isReadable);
    if (!isReadable)
        return;
    CString path = scratch().path("copy.trla");
    CString folder;
    require(fromFile.saveTrialAcq(path, folder) == 1);
    path = scratch().path("absent\\copy.trla");
    require(fromFile.saveTrialAcq(path, folder) == 2);
    // The file says by this field whether a common-reference unit follows: with 0 there it can't be read back.
    if (trial.m_pMontageCr != nullptr && trial.m_nTrialReservedB == 0)
        trial.m_nTrialReservedB = 1;
    storeAndReload(trial);
    limitMemory(input.size(), 16);
    trial.getCurntChnlIndx();
    trial.getTotalSample(-1);
    trial.backupAllChnlData();
}

void runChannel(std::span<const std::byte> input)
{
    AcquiredChannel channel;
    if (load(channel, input))
        storeAndReload(channel);
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    static YesHost host("fuzz.mega");
    AfxSetHost(&host);
    runChosen(input, {runDataset, runTrial, runChannel});
}

} // namespace megset
