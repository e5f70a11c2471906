// Loads a trial from the input. What could be loaded is stored, loaded and stored again, and must be the same then; and
// whatever came of the load, the operations on its channels must get along with it. A file of the same bytes must load
// as well as they do, and what is saved of it load again.

#include "fuzz/ScratchFolder.h"
#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/CDocument.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <array>
#include <cstdint>
#include <span>

namespace megset {
namespace {

// The operations that a broken count or index might lead astray.
void use(CMDTrialzk& trial)
{
    int position = 0;
    int rest = 0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    trial.getCurntChnlIndx();
    trial.getTotalSample(-1);
    trial.getChannelName(-1);
    trial.getChannelPos(-1, x, y, z);
    trial.getChannelID4Name("A");
    trial.setCurrentChannel2Name("A");
    trial.find1stTrig(1, position, rest);
    trial.getMeasureMegCoilADimension();
    trial.getMeasureEegElctDimension();
    std::array<ChannelStatistics, 8> statistics = {};
    trial.getAllSelectMinMeaMaxSdV(0, INT64_MAX, statistics);
    trial.backupAllChnlData();
    CMDTrialzk copy;
    copy.copyTrialInfo(&trial);
}

// The file says by m_nTrialReservedB whether a common-reference unit follows: with 0 there it can't be read back.
void makeReadable(CMDTrialzk& trial)
{
    if (trial.m_pMontageCr != nullptr && trial.m_nTrialReservedB == 0)
        trial.m_nTrialReservedB = 1;
}

bool open(CMDTrialzk& trial, CString path, const CDocument& document)
{
    try {
        return trial.openTrialData(path, &document, document.GetPathName()) == 1;
    } catch (const CArchiveException&) {
        return false;
    }
}

void useFile(std::span<const std::byte> input, bool isReadable)
{
    CDocument document;
    document.SetPathName(scratch().path("fuzz.meg"));
    CMDTrialzk trial;
    limitMemory(input.size(), 16);
    require(open(trial, scratch().write("fuzz.trl", input), document) == isReadable);
    if (!isReadable)
        return;
    makeReadable(trial);
    limitMemory(input.size(), 16);
    CString path = scratch().path("copy.trl");
    require(trial.saveTrialData(path, &document, document.GetPathName(), true) == 1);
    CMDTrialzk copy;
    require(open(copy, path, document));
    // There is no such folder; the host chooses another place.
    limitMemory(input.size(), 16);
    path = scratch().path("absent\\copy.trl");
    require(trial.saveTrialData(path, &document, document.GetPathName(), true) == 1);
}

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    static YesHost host("chosen.trl");
    AfxSetHost(&host);
    CMDTrialzk trial;
    const bool isReadable = load(trial, input);
    if (isReadable) {
        makeReadable(trial);
        storeAndReload(trial);
    }
    limitMemory(input.size(), 16);
    use(trial);
    useFile(input, isReadable);
}

} // namespace megset
