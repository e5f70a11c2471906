#pragma once
// Numbers of the sensors of a Neuromag array, by lobe.

#include "megset/platform/CString.h"

#include <vector>

namespace megset {

/// Lobes of the array.
inline constexpr int neuromagLobes = 5;

/// The sensor numbers of a lobe, 1 to 5, as texts of four digits: each triplet's number, then 0, 1 and 2 for its
/// sensors. Triplet 252 is in lobes 1 and 5: it is meant so. Empty for another lobe.
std::vector<CString> neuromagSensorNumbers(int lobe);

} // namespace megset
