#pragma once
// The sensors of a trial on the plane.

#include "megset/core/CMDTrialzk.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace megset::cli {

struct MapPoint
{
    std::string name;
    double x = 0.0; ///< mm, to the right of the head
    double y = 0.0; ///< mm, to the back of the head
};

/// One kind of sensors, seen from above with the nose up. The upper left corner is 0, 0.
struct SensorMap
{
    std::string title;
    std::vector<MapPoint> points;
    double width = 0.0;
    double height = 0.0;
};

/// The maps of the trial's MEG and EEG measure channels, by the library's standard projection; kinds without sensors
/// are left out. The trial's plane positions are computed anew.
std::vector<SensorMap> makeSensorMaps(CMDTrialzk& trial);

/// The maps side by side as an SVG picture.
void writeSvg(const std::vector<SensorMap>& maps, std::ostream& out);

} // namespace megset::cli
