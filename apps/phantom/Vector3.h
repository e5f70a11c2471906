#pragma once

#include <cmath>

namespace megset::phantom {

/// A point or a direction.
struct Vector3
{
    double x = 0;
    double y = 0;
    double z = 0;

    friend Vector3 operator+(const Vector3& a, const Vector3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vector3 operator-(const Vector3& a, const Vector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Vector3 operator-(const Vector3& a) { return {-a.x, -a.y, -a.z}; }
    friend Vector3 operator*(double factor, const Vector3& a) { return {factor * a.x, factor * a.y, factor * a.z}; }
    friend bool operator==(const Vector3&, const Vector3&) = default;
};

inline double dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 cross(const Vector3& a, const Vector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vector3& a)
{
    return std::sqrt(dot(a, a));
}

inline Vector3 unit(const Vector3& a)
{
    return (1 / length(a)) * a;
}

} // namespace megset::phantom
