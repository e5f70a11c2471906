#pragma once
// Bad segments blanked in the working samples.

#include "apps/cli/dataset/openDataset.h"

#include <cstdint>
#include <vector>

namespace megset::cli {

struct Blanked
{
    int segments = 0;
    int trials = 0;
    std::int64_t samples = 0; ///< of each channel, counted once where segments overlap
    int outside = 0;          ///< segments that have no sample in any of the trials
};

/// Blanks the bad segments of each of the trials in all its channels, as the library's segmentRemove does: with 0, or
/// with `hold` with the sample before. The dataset's own selection of ranges stays as it is, and nothing is blanked
/// again later: that would go over all trials alike. Throws std::runtime_error that tells the trial.
Blanked blankSegments(OpenDataset& open, const std::vector<int>& trials, bool hold);

} // namespace megset::cli
