#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace megset::cli {

/// The text between the tags of an SVG element: markup escaped, control characters left out.
std::string svgText(const std::string& text);

/// Begins a picture on white ground: its size in its own coordinates, how many times as large it is shown, and its
/// style sheet. The caller ends it by "</svg>".
void beginSvg(double width, double height, double scale, std::string_view style, std::ostream& out);

} // namespace megset::cli
