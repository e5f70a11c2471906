#pragma once
// Reads one trial of a dataset, and says what is wrong in itself.

#include "apps/cli/dataset/openDataset.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace megset::cli {

/// What the comparison of trials goes by.
struct TrialShape
{
    int channels = 0;
    std::int64_t samples = 0; ///< of the first channel that has any
    std::int64_t resampleStep = 1;
    bool isVirtual = false;
};

struct TrialCheck
{
    std::string file;
    std::optional<TrialShape> shape; ///< nothing when the trial couldn't be read
    std::vector<std::string> faults;
    std::vector<std::string> notes;
};

/// `index` is one of the dataset's paths.
TrialCheck checkTrial(const OpenDataset& open, int index);

} // namespace megset::cli
