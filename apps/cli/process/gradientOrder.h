#pragma once
// Noise reduction of a trial to an order, from whatever order it stands at.

#include "apps/cli/dataset/changeDataset.h"

namespace megset::cli {

struct GradientRequest
{
    int order = 0;         ///< 0 to 3
    bool ideal = false;    ///< coefficients worked out from the sensors' geometry, not measured
    bool adaptive = false; ///< with balancing that was adapted to the recording's noise
};

/// What became of the channels of a trial.
struct GradientResult
{
    int reduced = 0;   ///< channels that are at the order now
    int unreduced = 0; ///< MEG channels without coefficients for it, which are at order 0
};

/// Brings the trial in memory to the order. The library's operation leaves references changed and modes of channels
/// without coefficients as they were; here every sensor's mode tells its samples' state afterwards, so that the same
/// order twice is the same as once. Throws std::runtime_error, with nothing changed, when the dataset has no
/// coefficients for the order, or for taking a channel back from the order in which it stands.
GradientResult setGradientOrder(CMEGDatazk& dataset, const GradientRequest& request);

/// The same in all trials of the dataset that the arguments name. Gives what became of the last trial.
GradientResult reduceNoise(const ChangeArguments& arguments, const GradientRequest& request);

} // namespace megset::cli
