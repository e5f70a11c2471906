#pragma once

#include "apps/cli/dataset/openDataset.h"

#include <functional>
#include <vector>

namespace megset::cli {

/// Opens the dataset's trials one after another, each of which is written back when the next is opened, and shows the
/// progress under a title. Throws std::runtime_error that tells at which trial of how many it ended, and why: when a
/// trial can't be opened, or `change` throws.
void forEachTrial(OpenDataset& open, const CString& title, const std::function<void(CMDTrialzk&)>& change);

/// The same with some of them, in this order; `change` gets the trial's index, too. The others aren't opened.
void forTrials(OpenDataset& open, const CString& title, const std::vector<int>& trials,
               const std::function<void(CMDTrialzk&, int)>& change);

} // namespace megset::cli
