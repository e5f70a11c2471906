#pragma once
// A picture of a time-frequency plane.

#include <iosfwd>
#include <string>
#include <vector>

namespace megset::cli {

struct SpectrumMap
{
    std::string title;
    std::string unit;           ///< of the values
    std::vector<double> ms;     ///< latency of each time point
    std::vector<double> hz;     ///< of each frequency point
    std::vector<double> values; ///< time-major: time point t, frequency point f at t * hz.size() + f
};

/// An SVG picture with both axes, and a bar that explains the colours. Equal steps of a value are equal steps to the
/// eye (the scale viridis of Smith and van der Walt, 2015). Values that are no finite numbers are grey. A plane of more
/// than 400 points along an axis is drawn by the means of neighbours.
void writeSvg(const SpectrumMap& map, std::ostream& out);

} // namespace megset::cli
