#include "apps/readers/ctf/alignFrames.h"

#include <cmath>
#include <optional>

namespace megset::ctf {

namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<double, 16>;

Vector sum(const Vector& a, double factor, const Vector& b)
{
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

double product(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector across(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Of length 1; not-a-number without length.
Vector unit(const Vector& a)
{
    const double length = std::hypot(a[0], a[1], a[2]);
    return {a[0] / length, a[1] / length, a[2] / length};
}

Vector positionOf(const CFiducial& fiducials, CFiducial::Point point)
{
    Vector place{};
    fiducials.getFiducialPt(point)->getFidPos(place[0], place[1], place[2]);
    return place;
}

// The head's own axes as the frame has them: to the nose, to the left, across both.
struct Axes
{
    Vector origin;
    std::array<Vector, 3> directions;
};

std::optional<Axes> axesOf(const CFiducial& fiducials)
{
    const Vector left = positionOf(fiducials, CFiducial::leftEar);
    const Vector right = positionOf(fiducials, CFiducial::rightEar);
    const Vector origin = sum({}, 0.5, sum(left, 1.0, right));
    const Vector nose = unit(sum(positionOf(fiducials, CFiducial::nasion), -1.0, origin));
    const Vector toLeft = unit(sum(left, -1.0, right));
    const Vector sideways = sum(toLeft, -product(toLeft, nose), nose);
    constexpr double leastSine = 1e-5;
    if (!(std::hypot(sideways[0], sideways[1], sideways[2]) > leastSine))
        return std::nullopt;
    const Vector y = unit(sideways);
    return Axes{origin, {nose, y, across(nose, y)}};
}

Matrix between(const Axes& from, const Axes& to)
{
    Matrix m{};
    for (std::size_t row = 0; row < 3; ++row) {
        m[4 * row + 3] = to.origin[row];
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                m[4 * row + column] += to.directions[axis][row] * from.directions[axis][column];
            m[4 * row + 3] -= m[4 * row + column] * from.origin[column];
        }
    }
    m[15] = 1.0;
    return m;
}

} // namespace

bool alignFrames(const CFiducial& from, const CFiducial& to, Matrix& forth, Matrix& back)
{
    const std::optional<Axes> fromAxes = axesOf(from);
    const std::optional<Axes> toAxes = axesOf(to);
    if (!fromAxes || !toAxes)
        return false;
    forth = between(*fromAxes, *toAxes);
    back = between(*toAxes, *fromAxes);
    return true;
}

} // namespace megset::ctf
