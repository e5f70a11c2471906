#pragma once
// What the beginning of a trial's file tells, without reading the trial.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace megset::cli {

struct TrialSummary
{
    std::string name;
    bool good = true;
    bool isVirtual = false; ///< computed, not recorded
    int channels = 0;
    std::int64_t samples = 0; ///< of the first channel
    std::uint64_t bytes = 0;  ///< of the file
};

/// Reads a trial's file up to the sample count of its first channel, whatever the file's version. Nothing when there is
/// no such file, or no such trial in it.
std::optional<TrialSummary> readTrialSummary(const std::filesystem::path& path);

} // namespace megset::cli
