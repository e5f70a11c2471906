#pragma once
// Which trials a command works on, as its options tell.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/dataset/sampleRange.h"

#include <string>
#include <vector>

namespace megset::cli {

/// Trials told as "3" or "2:5", both included, counted from 0: in ascending order, each once. Throws
/// std::runtime_error for a trial that the dataset doesn't name.
std::vector<int> selectTrials(const CMEGDatazk& dataset, const std::vector<std::string>& texts);

/// All trials that the dataset names.
std::vector<int> allTrials(const CMEGDatazk& dataset);

/// Samples of a trial's first channel, as the beginning of its file tells, with the dataset's rate. Throws
/// std::runtime_error when there is no such file, or no trial in it.
TrialTimes timesOfTrial(const OpenDataset& open, int trial);

} // namespace megset::cli
