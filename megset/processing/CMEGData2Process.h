#pragma once
// Flags of channels over all trials, and steps over the trials of a dataset.

#include "megset/geometry/CMEGData1Localization02Eeg.h"

namespace megset {

class CMEGData2Process : public CMEGData1Localization02Eeg
{
public:
    /// Makes the four flag arrays as long as the trial has channels. New ones say good 1, show 1, select 0, fourth flag
    /// 0 for every channel. 1; 0 for a trial that is not in memory or has no channels, and without memory.
    int checkInitChnlParam(int trial);
};

} // namespace megset
