#include "apps/cli/spectrum/spectrumMap.h"

#include "apps/cli/picture/svg.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <ostream>
#include <sstream>

namespace megset::cli {

namespace {

constexpr std::size_t mostCells = 400;
constexpr double left = 70.0;
constexpr double top = 40.0;
constexpr double width = 640.0;
constexpr double height = 360.0;
constexpr double barLeft = left + width + 25.0;
constexpr double barWidth = 18.0;

struct Colour
{
    int red = 0;
    int green = 0;
    int blue = 0;
};

// The scale at 0, 0.1, ... 1, from its authors' table; between these it is close to straight.
Colour colourOf(double part)
{
    constexpr std::array<Colour, 11> scale = {{{68, 1, 84},
                                               {72, 36, 117},
                                               {65, 68, 135},
                                               {53, 95, 141},
                                               {42, 120, 142},
                                               {33, 145, 140},
                                               {34, 168, 132},
                                               {68, 191, 112},
                                               {122, 209, 81},
                                               {189, 223, 38},
                                               {253, 231, 37}}};
    const double at = std::clamp(part, 0.0, 1.0) * 10.0;
    const auto index = std::min<std::size_t>(static_cast<std::size_t>(at), 9);
    const double rest = at - static_cast<double>(index);
    const auto mix = [rest](int a, int b) { return static_cast<int>(std::lround(a + rest * (b - a))); };
    const Colour& a = scale[index];
    const Colour& b = scale[index + 1];
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}

std::string hex(const Colour& colour)
{
    std::ostringstream text;
    text << '#' << std::hex << std::setfill('0');
    for (const int part : {colour.red, colour.green, colour.blue})
        text << std::setw(2) << part;
    return text.str();
}

std::string number(double value)
{
    std::ostringstream text;
    text << std::setprecision(4) << value;
    return text.str();
}

// A plane of few enough cells for a picture.
struct Grid
{
    std::size_t columns = 0; ///< along time
    std::size_t rows = 0;    ///< along frequency
    std::vector<double> values;
};

// The mean of the finite values of some cells, NaN without any.
double meanOf(const SpectrumMap& map, std::size_t t0, std::size_t t1, std::size_t f0, std::size_t f1)
{
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t t = t0; t < t1; ++t)
        for (std::size_t f = f0; f < f1; ++f)
            if (const double value = map.values[t * map.hz.size() + f]; std::isfinite(value)) {
                sum += value;
                ++count;
            }
    return count > 0 ? sum / static_cast<double>(count) : std::numeric_limits<double>::quiet_NaN();
}

Grid gridOf(const SpectrumMap& map)
{
    const std::size_t times = map.ms.size();
    const std::size_t frequencies = map.hz.size();
    Grid grid = {std::min(times, mostCells), std::min(frequencies, mostCells), {}};
    for (std::size_t c = 0; c < grid.columns; ++c)
        for (std::size_t r = 0; r < grid.rows; ++r)
            grid.values.push_back(meanOf(map, c * times / grid.columns, (c + 1) * times / grid.columns,
                                         r * frequencies / grid.rows, (r + 1) * frequencies / grid.rows));
    return grid;
}

struct Range
{
    double low = 0.0;
    double high = 1.0;

    double part(double value) const { return high > low ? (value - low) / (high - low) : 0.5; }
};

Range rangeOf(const Grid& grid)
{
    Range range = {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (const double value : grid.values)
        if (std::isfinite(value)) {
            range.low = std::min(range.low, value);
            range.high = std::max(range.high, value);
        }
    return range.low <= range.high ? range : Range();
}

void writeCells(const Grid& grid, const Range& range, std::ostream& out)
{
    const double w = width / static_cast<double>(grid.columns);
    const double h = height / static_cast<double>(grid.rows);
    out << "<g shape-rendering=\"crispEdges\">\n";
    for (std::size_t c = 0; c < grid.columns; ++c)
        for (std::size_t r = 0; r < grid.rows; ++r) {
            const double value = grid.values[c * grid.rows + r];
            out << "<rect x=\"" << left + w * static_cast<double>(c) << "\" y=\""
                << top + height - h * static_cast<double>(r + 1) << "\" width=\"" << w + 0.05 << "\" height=\""
                << h + 0.05 << "\" fill=\"" << (std::isfinite(value) ? hex(colourOf(range.part(value))) : "#999999")
                << "\"/>\n";
        }
    out << "</g>\n";
}

void writeAxes(const SpectrumMap& map, std::ostream& out)
{
    constexpr std::size_t ticks = 6;
    const auto indexOf = [](std::size_t tick, std::size_t count) { return tick * (count - 1) / (ticks - 1); };
    for (std::size_t i = 0; i < ticks; ++i) {
        const std::size_t t = indexOf(i, map.ms.size());
        const std::size_t f = indexOf(i, map.hz.size());
        const double x = left + width * (static_cast<double>(t) + 0.5) / static_cast<double>(map.ms.size());
        const double y = top + height * (1.0 - (static_cast<double>(f) + 0.5) / static_cast<double>(map.hz.size()));
        out << "<text x=\"" << x << "\" y=\"" << top + height + 18 << "\">" << number(map.ms[t]) << "</text>\n"
            << "<text x=\"" << left - 6 << "\" y=\"" << y + 4 << "\" text-anchor=\"end\">" << number(map.hz[f])
            << "</text>\n";
    }
    out << "<text x=\"" << left + width / 2 << "\" y=\"" << top + height + 40 << "\">latency, ms</text>\n"
        << "<text transform=\"translate(20 " << top + height / 2 << ") rotate(-90)\">frequency, Hz</text>\n"
        << "<text x=\"" << left + width / 2 << "\" y=\"22\" font-size=\"15\">" << svgText(map.title) << "</text>\n";
}

void writeBar(const Range& range, const std::string& unit, std::ostream& out)
{
    constexpr int steps = 64;
    for (int i = 0; i < steps; ++i)
        out << "<rect x=\"" << barLeft << "\" y=\"" << top + height * (steps - 1 - i) / steps << "\" width=\""
            << barWidth << "\" height=\"" << height / steps + 0.5 << "\" fill=\"" << hex(colourOf((i + 0.5) / steps))
            << "\"/>\n";
    for (int i = 0; i <= 4; ++i)
        out << "<text x=\"" << barLeft + barWidth + 5 << "\" y=\"" << top + height * (4 - i) / 4 + 4
            << "\" text-anchor=\"start\">" << number(range.low + (range.high - range.low) * i / 4) << "</text>\n";
    out << "<text x=\"" << barLeft + barWidth / 2 << "\" y=\"" << top - 8 << "\">" << svgText(unit) << "</text>\n";
}

} // namespace

void writeSvg(const SpectrumMap& map, std::ostream& out)
{
    constexpr double fullWidth = barLeft + barWidth + 80.0;
    constexpr double fullHeight = top + height + 55.0;
    beginSvg(fullWidth, fullHeight, 1.0,
             "text{font:12px sans-serif;fill:#222}text:not([text-anchor]){text-anchor:middle}", out);
    if (!map.ms.empty() && !map.hz.empty()) {
        const Grid grid = gridOf(map);
        const Range range = rangeOf(grid);
        writeCells(grid, range, out);
        writeAxes(map, out);
        writeBar(range, map.unit, out);
    }
    out << "</svg>\n";
}

} // namespace megset::cli
