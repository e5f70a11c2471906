// Loads a dataset from the input. What could be loaded is stored, loaded and stored again, and must be the same then;
// and whatever came of the load, the operations on the dataset must get along with it.
//
// The paths of trials are the input's: no file is opened or saved while they stand. Behind the ones that replace them
// there is none at first, then one trial for all.

#include "fuzz/ScratchFolder.h"
#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <cstdint>
#include <span>

namespace megset {
namespace {

struct WithoutTrials : CMEGDatazk
{
    int serializezk(CArchive& ar) { return serializeWithoutTrials(ar); }
};

void replacePaths(CMEGData& dataset, const CString& path)
{
    for (int i = 0; i < dataset.m_aTrialFilePath.GetSize(); ++i)
        dataset.m_aTrialFilePath.SetAt(i, path);
    for (int i = 0; i < dataset.m_ppTrial.size(); ++i)
        if (CMDTrialzk* const trial = dataset.m_ppTrial[i])
            trial->m_strTrialFilePath = path;
    dataset.m_strDatasetPath.Empty();
}

CString writeTrial()
{
    CMDTrialzk trial;
    require(trial.allocateChannels(1));
    require(trial.getChannel(0)->initData(3, true) != 0);
    return scratch().write("fuzz.trl", stored(trial));
}

// The operations that a broken count or index might lead astray.
void use(CMEGDatazk& dataset)
{
    int real = 0;
    int virt = 0;
    std::int64_t from = 0;
    std::int64_t to = 0;
    dataset._20serializeTrials(0);
    dataset.getTrialRecordVirtual(real, virt, 0);
    dataset.getTotalChannel(-1);
    dataset.getTotalSample();
    dataset.getTrialFilePath(-1);
    dataset.getTrialFileName(0);
    dataset.getSelect(from, to);
    dataset.nextSelect(1, true);
    dataset.getSampleRate();
    dataset.getPreTrigMsc();
    dataset.getPts4LatencyMs(1.0);
    dataset.getTotalTrigs();
    dataset.checkInitChnlParam(dataset.getMDTrial(0));
    dataset._20serializeTrials(1);
    dataset.getTrialzk(1);
    dataset.saveUnsavedTrials();
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    WithoutTrials dataset;
    const bool loaded = load(dataset, input);
    replacePaths(dataset, {});
    if (loaded) {
        // The slots are bounded by the size of the file, which may become smaller: there is nothing in them to store.
        SlotArray<CMDTrialzk> trials = std::move(dataset.m_ppTrial);
        storeAndReload(dataset);
        dataset.m_ppTrial = std::move(trials);
    }
    limitMemory(input.size(), 16);
    use(dataset);

    const KeepDirectory keep;
    replacePaths(dataset, writeTrial());
    limitMemory(input.size(), 16);
    use(dataset);
}

} // namespace megset
