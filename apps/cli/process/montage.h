#pragma once
// Montages of a trial, by the library's operations.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/process/montageFile.h"

#include <string>
#include <vector>

namespace megset::cli {

struct CommonReference
{
    std::vector<std::string> references; ///< "NAME" or "NAME=WEIGHT"; none: the average of all EEG measure channels
    double divisor = 0.0;                ///< 0: not divided; the average takes the number of its channels
    std::vector<std::string> channels;   ///< that are re-referenced; none: all EEG measure channels
};

/// Subtracts the reference from the channels. Gives the number of channels. Throws std::runtime_error, with nothing
/// changed, for unknown channels, references without samples, and a trial that has a montage.
int applyCommonReference(CMDTrialzk& trial, const CommonReference& reference);

/// Makes each target its recorded samples without its reference. As above, and for a trial that is re-sampled.
int applyMontageLines(CMDTrialzk& trial, const std::vector<MontageLine>& montage);

/// What was done to the trial, a line each: gradient orders, re-sampling, montages.
std::vector<std::string> describeProcessing(const CMDTrialzk& trial);

} // namespace megset::cli
