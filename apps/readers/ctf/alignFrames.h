#pragma once

#include "megset/records/head/CFiducial.h"

#include <array>

namespace megset::ctf {

/// The turn and move that takes nasion and ears of one frame to where they are in another, and its inverse: 4 x 4, row
/// by row, for columns x, y, z, 1. The points agree as far as they were measured; exactly, in the middle between the
/// ears and in the direction of the nasion. False when three points are on one line, with nothing changed.
bool alignFrames(const CFiducial& from, const CFiducial& to, std::array<double, 16>& forth,
                 std::array<double, 16>& back);

} // namespace megset::ctf
