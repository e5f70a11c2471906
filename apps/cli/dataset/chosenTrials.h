#pragma once
// The trials that a command changes: the current one, or all.

#include "apps/cli/dataset/openDataset.h"

#include <functional>

namespace megset::cli {

/// Throws std::runtime_error with the path of a trial's file that isn't found: of all trials, or of the current one.
void requireTrials(const OpenDataset& open, bool all);

/// Calls `change` on the current trial, or on all of them under a title, as forEachTrial does; the current one is
/// current again afterwards. Throws std::runtime_error.
void forChosenTrials(OpenDataset& open, bool all, const CString& title, const std::function<void(CMDTrialzk&)>& change);

/// Makes a trial current again that others were opened after. Throws std::runtime_error.
void returnToTrial(OpenDataset& open, int trial);

/// The current trial of a dataset that is only looked at. Throws std::runtime_error when it can't be read.
CMDTrialzk& currentTrial(OpenDataset& open);

} // namespace megset::cli
