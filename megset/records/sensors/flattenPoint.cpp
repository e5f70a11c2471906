#include "megset/records/sensors/flattenPoint.h"

#include <cmath>

namespace megset {

void flattenPoint(double a, double b, double c, double& u, double& v)
{
    const double fromAxis = std::hypot(a, b);
    if (fromAxis == 0.0) {
        u = v = 0.0;
        return;
    }
    const double arc = std::hypot(a, b, c) * std::atan2(fromAxis, c);
    u = arc * (a / fromAxis);
    v = arc * (b / fromAxis);
}

} // namespace megset
