// Loads a channel's record from the input. What could be loaded is stored, loaded and stored again, and must be the
// same then; and whatever came of the load, the operations on samples must get along with it.

#include "fuzz/storeAndReload.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"

#include <cstdint>
#include <span>

namespace megset {
namespace {

// The operations that a broken count might lead astray.
void use(CMDChannelzk& channel)
{
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    double square = 0.0;
    channel.getSelectMinMeaMaxV(-1, INT64_MAX, &min, &mean, &max, &square);
    channel.getCurrentV(0, -1);
    channel.computeDataRange();
    channel.traceDataInfo();
    channel.getMegChnlNumBal();
    channel.getEegElectrode(0);
    channel.getMEGCoilzk(0);
    channel.checkInitBuf4FastDraw(0.01, 0);
    channel.initSetBuf4FastDraw(1);
    channel.applyMEGSnsrGainDir2Data(false);
    channel.checkInitData4MontageIr();
    channel.chopSize4Select(100, 2, -1, INT64_MAX);
    channel.reverseRawData();
    channel.backup2RawData();
    CMDChannelzk copy;
    copy.copyChannelInfo(&channel);
    copy.operateChnl(&channel, &channel, false, 0);
    stored(copy);
}

// The oldest records end behind their version.
struct OldChannel : CMDChannelzk
{
    int serializezk(CArchive& ar) { return serializezk_obsolete20071230(ar, true); }
};

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    OldChannel old;
    load(old, input);
    CMDChannelzk channel;
    if (load(channel, input))
        storeAndReload(channel);
    limitMemory(input.size(), 16);
    use(channel);
    stored(channel);
}

} // namespace megset
