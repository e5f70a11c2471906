#pragma once

#include <string>

namespace megset::cli {

/// A text of a file, such as a name, fit for a line of a terminal: it commands nothing, and breaks no line.
std::string shownLine(const std::string& text);

} // namespace megset::cli
