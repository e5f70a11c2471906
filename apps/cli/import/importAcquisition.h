#pragma once
// Makes a dataset on disk of an acquisition: a file .mega and a file .trla for each trial.

#include "apps/cli/import/importRecording.h"

#include <filesystem>

namespace megset::cli {

/// `source` and `target` are absolute. Throws std::runtime_error with file and reason: a file that is none, trials that
/// are missing or can't be read, files of others that would be written over. The dataset is built in a passing folder,
/// TARGET.import: a failure leaves all as it was.
ImportSummary importAcquisition(const std::filesystem::path& source, const std::filesystem::path& target,
                                const ImportArguments& arguments);

} // namespace megset::cli
