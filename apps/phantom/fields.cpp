#include "apps/phantom/fields.h"

namespace megset::phantom {

namespace {

constexpr double fourPi = 4 * 3.14159265358979323846;

} // namespace

Vector3 fieldOutsideSphere(const CurrentDipole& dipole, const Vector3& point)
{
    const Vector3 a = point - dipole.position;
    const double lengthA = length(a);
    const double r = length(point);
    const double aAlongR = dot(a, point);
    const double f = lengthA * (r * lengthA + r * r - dot(dipole.position, point));
    const Vector3 gradientF = (lengthA * lengthA / r + aAlongR / lengthA + 2 * lengthA + 2 * r) * point -
                              (lengthA + 2 * r + aAlongR / lengthA) * dipole.position;
    const Vector3 turn = cross(dipole.moment, dipole.position);
    return (magneticConstant / (fourPi * f * f)) * (f * turn - dot(turn, point) * gradientF);
}

double potentialOnSphere(const CurrentDipole& dipole, const Vector3& point, double conductivity)
{
    const Vector3 a = point - dipole.position;
    const double distance = length(a);
    const double radius = length(point);
    const double open = radius * radius - dot(point, dipole.position) + radius * distance;
    const Vector3 direct = (2 / (distance * distance * distance)) * a;
    const Vector3 boundary = (1 / (radius * open)) * (point + (radius / distance) * a);
    return dot(dipole.moment, direct + boundary) / (fourPi * conductivity);
}

Vector3 fieldOfMagnet(const Vector3& position, const Vector3& moment, const Vector3& point)
{
    const Vector3 way = point - position;
    const double distance = length(way);
    const Vector3 direction = (1 / distance) * way;
    return (magneticConstant / (fourPi * distance * distance * distance)) *
           (3 * dot(moment, direction) * direction - moment);
}

} // namespace megset::phantom
