#pragma once
// The fast-draw buffer of one channel: its samples reduced to the extremes of blocks, and the event around work on it.

#include "megset/spectral/CMDChannel2WaveAnalyz.h"

namespace megset {

/// The channel's layer for drawing: the buffer of block extremes.
class CMDChannel3Show : public CMDChannel2WaveAnalyz
{
public:
    /// The buffer's record, made when none is there with `create`; null without it or without memory.
    SHOW_SHRINK_DATAF* getShowShrinkData(int create);
    /// Makes the buffer fit `ratio`, columns per sample; with `force` also one that fits. 1 when it is good; 0 with
    /// fewer than 100 samples, a ratio above 0.25, fewer than 5 samples a block or 2 blocks (an older buffer stays as
    /// it is), or without memory.
    int checkInitBuf4FastDraw(double ratio, int force);
    /// The same with the ratio of the record; 0 without a record.
    int initSetBuf4FastDraw(int force);
    /// Whether the buffer fits the samples and `ratio`. Samples that were changed in place are not noticed.
    int isReady4FastBufDraw(double ratio) const;
    /// Resets the channel's event, which is made when none is there with `create`; 0 when that fails.
    int event4WorkBegin(int create);
    /// Sets the event; 0 without one.
    int event4WorkEnd();

private:
    int rebuildBuffer(SHOW_SHRINK_DATAF& buffer, double ratio);
};

} // namespace megset
