#pragma once
// Fields of dipoles, in closed form. SI units throughout.

#include "apps/phantom/Vector3.h"

namespace megset::phantom {

inline constexpr double magneticConstant = 4e-7 * 3.14159265358979323846; ///< T m / A
inline constexpr double brainConductivity = 0.33;                         ///< S / m

/// A current dipole: place in m, moment in A m.
struct CurrentDipole
{
    Vector3 position;
    Vector3 moment;
};

/// The magnetic field, in T, of a current dipole in a conducting sphere around the origin, at a point outside of the
/// sphere: J. Sarvas, Phys. Med. Biol. 32 (1987) 11-22, equation 25. Radius and conductivity of the sphere don't enter.
Vector3 fieldOutsideSphere(const CurrentDipole& dipole, const Vector3& point);

/// The potential, in V, of a current dipole in a homogeneous sphere around the origin, at a point of its surface,
/// against the mean over the surface: the gradient, by the place of the source, of Neumann's function of the sphere.
/// The point's distance from the origin is taken as the sphere's radius.
double potentialOnSphere(const CurrentDipole& dipole, const Vector3& point, double conductivity = brainConductivity);

/// The field, in T, of a magnetic dipole in free space; place in m, moment in A m^2.
Vector3 fieldOfMagnet(const Vector3& position, const Vector3& moment, const Vector3& point);

} // namespace megset::phantom
