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

// Opens a file of the dataset whose slots have a trial's file, none, and one that is no trial.
void convertFiles(AcquiredDataset& dataset)
{
    const KeepDirectory keep;
    scratch().clear();
    AcquiredTrial trial;
    require(trial.allocateChannels(1));
    require(trial.getChannel(0)->initData(3, true) != 0);
    dataset.m_aRecordTrialPath.RemoveAll();
    dataset.m_aRecordTrialPath.Add(scratch().write("fuzz.trla", stored(trial)));
    dataset.m_aRecordTrialPath.Add(scratch().path("absent.trla"));
    dataset.m_aRecordTrialPath.Add(scratch().write("other.trla", stored(dataset)));
    const CString path = scratch().write("fuzz.mega", stored(dataset));
    CDocument document;
    document.SetPathName(scratch().path("fuzz.meg"));
    CMEGDatazk opened;
    opened.openRecordMeX(path, &document);
    opened.openTrialRecord(0, path);
    opened.getTrialRecord(-1);
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

void run(std::span<const std::byte> input)
{
    if (input.empty())
        return;
    const auto rest = input.subspan(1);
    switch (std::to_integer<int>(input[0]) % 3) {
    case 0:
        return runDataset(rest);
    case 1:
        return runTrial(rest);
    default:
        return runChannel(rest);
    }
}

} // namespace
} // namespace megset

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    megset::beginFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    megset::run(std::as_bytes(std::span(data, size)));
    return 0;
}
