#pragma once
// Takes a dataset back to what was recorded.

#include "apps/cli/dataset/openDataset.h"

namespace megset::cli {

/// Makes the working samples of a trial those that were recorded, with the sensors' modes (see recordedMode.h) and the
/// marks of re-sampling and montage accordingly. Channels without raw samples stay as they are. Throws
/// std::runtime_error without memory.
void restoreTrial(CMDTrialzk& trial);

/// Marks a trial whose samples are those recorded, or made from them, as such: the modes of its sensors, and no
/// montage. Gives whether it told of any processing before. Channels without raw samples stay as they are.
bool markAsRecorded(CMDTrialzk& trial);

/// Makes counts, rate and triggers of the dataset those of the recording.
void restoreRecording(CMEGDatazk& dataset);

} // namespace megset::cli
