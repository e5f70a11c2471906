// Loads a file of an acquisition from the input: its first byte says of which kind. What could be loaded is stored,
// loaded and stored again, and must be the same then.
//
// The paths of trials are the input's: no file is looked for while they stand. The conversion is run on what is left of
// a dataset without them.

#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

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

void runDataset(std::span<const std::byte> input)
{
    AcquiredDataset dataset;
    if (!load(dataset, input))
        return;
    // The slots are bounded by the size of the file, which may become smaller: there is nothing in them to store.
    dataset.m_ppTrial.reset();
    storeAndReload(dataset);
    limitMemory(input.size(), 16);
    convertNothing(dataset);
}

void runTrial(std::span<const std::byte> input)
{
    AcquiredTrial trial;
    if (!load(trial, input))
        return;
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
