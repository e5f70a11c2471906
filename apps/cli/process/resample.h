#pragma once
// Re-sampling of a dataset by a whole factor.

#include "apps/cli/dataset/changeDataset.h"

#include <cstdint>
#include <string>

namespace megset::cli {

struct ResampleRequest
{
    std::int64_t factor = 1;
    bool average = false; ///< the mean of each run of samples instead of its first
};

/// Re-samples all trials from their raw samples, which stay: factor 1 undoes it. What else was done to the trials is
/// undone as by restoreTrial(); gives in how many there was something. Throws std::runtime_error for a factor below 1,
/// with the library's words for one of half the samples and more, and for a trial that can't be opened.
int resampleDataset(OpenDataset& open, const ResampleRequest& request);

/// Makes a dataset that takes the re-sampled samples for its recording. Gives its rate, Hz. The source is only read.
/// Throws as above; no half-made dataset is left then.
double makeResampled(const ChangeArguments& arguments, const ResampleRequest& request, const std::string& target);

} // namespace megset::cli
