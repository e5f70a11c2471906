#pragma once

namespace megset {

/// Azimuthal equidistant projection of a point onto a plane, seen along the third axis: the distance from the plane's
/// origin is the arc r * theta, with r the point's distance from the origin and theta its angle from the third axis;
/// the direction is that of (a, b). Arcs on a sphere around the origin so keep their length in mm. A point on the third
/// axis, above or below or the origin itself, gives 0, 0.
void flattenPoint(double a, double b, double c, double& u, double& v);

} // namespace megset
