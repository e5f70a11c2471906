#pragma once
// Flags of channels over all trials, and steps over the trials of a dataset.

#include "megset/geometry/CMEGData1Localization02Eeg.h"

namespace megset {

class CMEGData2Process : public CMEGData1Localization02Eeg
{
public:
    /// Makes the four flag arrays as long as the trial has channels, dropping arrays of another length. Where any is
    /// new, all say good 1, show 1, select 0, fourth flag 0 for every channel. 1; 0 for null, for a trial without
    /// channels, and without memory, which leaves no arrays.
    int checkInitChnlParam(const CMDTrialzk* trial);
};

} // namespace megset
