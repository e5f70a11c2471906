#pragma once
// Samples of a dataset as a file for other tools.

#include "apps/cli/dataset/openDataset.h"

#include <optional>
#include <string>
#include <vector>

namespace megset::cli {

struct ExportOptions
{
    std::vector<std::string> channels; ///< names; none: by kind
    std::string kind = "all";
    std::optional<int> trial; ///< nothing: all trials, end to end
    std::string samples;      ///< "A:B" of each trial; empty: all
    bool raw = false;         ///< the samples as recorded, not as worked on
};

struct ExportedShape
{
    std::int64_t channels = 0;
    std::int64_t samples = 0;
};

/// Channels x samples as float64, in the library's units. A row of a channel without samples, or with fewer than the
/// others, is filled up with zeros. Throws std::runtime_error, and leaves no file then.
ExportedShape exportNpy(OpenDataset& open, const ExportOptions& options, const std::filesystem::path& path);

/// A line of names, then a line for each sample: the trial's index, the time in s from the trigger, and a value for
/// each channel, separated by tabs.
ExportedShape exportText(OpenDataset& open, const ExportOptions& options, const std::filesystem::path& path);

} // namespace megset::cli
