#pragma once

#include <string_view>

namespace megset::numeric {

/// The widest vector unit that the numeric loops use on this machine: "avx512f", "avx2" or "baseline".
std::string_view processorPath();

} // namespace megset::numeric
