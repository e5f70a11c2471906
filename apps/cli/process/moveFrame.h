#pragma once
// Moves the MEG sensors of a dataset to another frame.

#include "apps/cli/dataset/changeDataset.h"

#include <string>

namespace megset::cli {

/// Sensors of a trial.
struct FrameResult
{
    int moved = 0;
    int stayed = 0; ///< their place in the frame was never recorded
};

/// Makes `frame`, one of frameNames(), the frame in use of the open trial: places of the sensors and fiducials.
FrameResult setWorkFrame(CMEGDatazk& dataset, const std::string& frame);

/// That, in all trials. Gives the numbers of the last one. Throws std::runtime_error.
FrameResult moveToFrame(const ChangeArguments& arguments, const std::string& frame);

} // namespace megset::cli
