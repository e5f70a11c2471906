#pragma once
// Places of a CTF recording in the frames of the library, which are the same for dewar and head: x to the left, y up, z
// to the back, mm.

#include "apps/readers/ctf/Res4.h"

#include <cmath>

namespace megset::ctf {

/// A direction or place of the head frame, which has x to the nose, y to the left, z up. `unit` is 10 for a place in
/// cm, 1 for a direction.
inline Vector fromHead(const Vector& v, double unit)
{
    return {unit * v[1], unit * v[2], -unit * v[0]};
}

/// A direction of the dewar frame, of which x and y point between front, left and back, and z up.
inline Vector directionFromDewar(const Vector& v)
{
    const double half = std::sqrt(0.5);
    return {half * (v[1] - v[0]), v[2], -half * (v[0] + v[1])};
}

/// A place of the dewar frame, in cm. Its origin is 27 cm above the ears of the standard head, which these systems
/// localise against. The library's standard head has its ears at the origin, so that both frames agree for it.
inline Vector placeFromDewar(const Vector& v)
{
    constexpr double standardHeadBelow = 27.0;
    const Vector place = directionFromDewar({v[0], v[1], v[2] + standardHeadBelow});
    return {10.0 * place[0], 10.0 * place[1], 10.0 * place[2]};
}

} // namespace megset::ctf
