#pragma once

#include "apps/phantom/Vector3.h"

#include <string>
#include <vector>

namespace megset::phantom {

/// A place on the helmet: the direction from the helmet's centre (x front, y left, z up) and the sensor's name.
struct HelmetPlace
{
    std::string name;
    Vector3 direction;
};

/// The 275 places, in order of their names: left side, its mirror image, midline. A name tells side (L, R, Z), region
/// (C central, F frontal, O occipital, P parietal, T temporal), row and place in the row.
std::vector<HelmetPlace> helmetPlaces();

} // namespace megset::phantom
