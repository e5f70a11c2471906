#pragma once

#include <string>
#include <string_view>

namespace megset {

/// The library's version as "major.minor.patch".
std::string_view version();

/// Name and version of the compiler that built the library, such as "GCC 12.2.0".
std::string compiler();

} // namespace megset
