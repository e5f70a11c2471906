#pragma once
// A session from the recording to clean samples, step by step, on a simulated recording.

#include <filesystem>
#include <iosfwd>

namespace megset::cli {

/// Makes everything in a folder of its own, and tells each step with its figures. What an earlier demonstration left in
/// the folder is replaced. Throws std::runtime_error when the folder holds anything else.
void runDemo(const std::filesystem::path& folder, std::ostream& out);

} // namespace megset::cli
