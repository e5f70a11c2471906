#pragma once
// The frame that the MEG sensors of a dataset work in, as the command line names it.

#include <string>
#include <vector>

namespace megset::cli {

/// "dewar", "dewar-measured", "head": their places are the numbers that the head localisation keeps.
const std::vector<std::string>& frameNames();

/// The name of a number, "unknown" for another one.
std::string frameName(int frame);

} // namespace megset::cli
