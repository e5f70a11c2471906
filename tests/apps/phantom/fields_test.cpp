#include "apps/phantom/fields.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace megset::phantom::fields_test {

namespace {

using std::numbers::pi;

constexpr double radius = 0.09;
const CurrentDipole oblique{{0.012, 0.045, 0.021}, {13e-9, -21e-9, 30e-9}};
const std::vector<Vector3> outside = {{0.11, 0.02, 0.05}, {-0.07, 0.09, 0.04}, {0.01, -0.02, 0.13}, {0.0, 0.12, -0.03}};

double derivative(const std::function<double(double)>& function, double step)
{
    // Five points: the error goes with the fourth power of the step.
    return (8 * (function(step) - function(-step)) - (function(2 * step) - function(-2 * step))) / (12 * step);
}

Vector3 gradient(const std::function<double(const Vector3&)>& function, const Vector3& at)
{
    constexpr double step = 1e-4;
    return {derivative(
                [&](double s) {
                    return function(at + Vector3{s, 0, 0});
                },
                step),
            derivative(
                [&](double s) {
                    return function(at + Vector3{0, s, 0});
                },
                step),
            derivative(
                [&](double s) {
                    return function(at + Vector3{0, 0, s});
                },
                step)};
}

Vector3 surfacePoint(double cosine, double azimuth)
{
    const double sine = std::sqrt(1 - cosine * cosine);
    return radius * Vector3{sine * std::cos(azimuth), sine * std::sin(azimuth), cosine};
}

// The potential by its series of Legendre functions, for a dipole on the z axis in the plane of x and z.
double seriesPotential(double depth, double tangentialMoment, double radialMoment, double cosine, double azimuth)
{
    const double sine = std::sqrt(1 - cosine * cosine);
    double sum = 0;
    double power = 1;
    for (unsigned n = 1; n < 400; ++n) {
        const double associated = n * (std::legendre(n - 1, cosine) - cosine * std::legendre(n, cosine)) / sine;
        sum += (2.0 * n + 1) / n * power *
               (n * radialMoment * std::legendre(n, cosine) + tangentialMoment * std::cos(azimuth) * associated);
        power *= depth / radius;
    }
    return sum / (4 * pi * brainConductivity * radius * radius);
}

TEST(FieldOutsideSphere, ARadialDipoleGivesNone)
{
    const CurrentDipole radial{oblique.position, 1e-6 * oblique.position};
    const CurrentDipole tangential{oblique.position, cross({1e-6, 0, 0}, oblique.position)};
    for (const Vector3& point : outside) {
        EXPECT_LT(length(fieldOutsideSphere(radial, point)), 1e-25);
        EXPECT_GT(length(fieldOutsideSphere(tangential, point)), 1e-15);
    }
}

TEST(FieldOutsideSphere, ADipoleInTheCentreGivesNone)
{
    for (const Vector3& point : outside)
        EXPECT_EQ(length(fieldOutsideSphere({{0, 0, 0}, {1e-8, 2e-8, 3e-8}}, point)), 0);
}

TEST(FieldOutsideSphere, ItsRadialPartIsThatOfTheDipoleAlone)
{
    // The currents in the volume of a sphere add nothing to the radial field: the law of Biot and Savart says it.
    for (const Vector3& point : outside) {
        const Vector3 way = point - oblique.position;
        const double distance = length(way);
        const Vector3 direct = (1e-7 / (distance * distance * distance)) * cross(oblique.moment, way);
        const double expected = dot(direct, unit(point));
        EXPECT_NEAR(dot(fieldOutsideSphere(oblique, point), unit(point)), expected, 1e-9 * std::abs(expected));
    }
}

TEST(FieldOutsideSphere, IsTheGradientOfThePotentialThatItsRadialPartGives)
{
    // Outside there is no current, so B = -mu0 grad U, and U is the integral of the radial field from the point
    // outwards.
    const auto potential = [](const Vector3& point) {
        const Vector3 a = point - oblique.position;
        const double f = length(a) * (length(point) * length(a) + dot(point, point) - dot(oblique.position, point));
        return -dot(cross(oblique.moment, oblique.position), point) / (4 * pi * f);
    };
    for (const Vector3& point : outside) {
        // Simpson's rule along the ray, in t = |point| / distance from the centre.
        constexpr int steps = 2000;
        double integral = 0;
        for (int i = 1; i <= steps; ++i) {
            const double t = static_cast<double>(i) / steps;
            const Vector3 along = (1 / t) * point;
            const double radial = dot(fieldOutsideSphere(oblique, along), unit(point));
            integral += (i == steps ? 1 : i % 2 == 1 ? 4 : 2) * radial * length(point) / (t * t);
        }
        integral /= 3.0 * steps;
        EXPECT_NEAR(potential(point), integral / magneticConstant, 1e-7 * std::abs(potential(point)));

        const Vector3 expected = -magneticConstant * gradient(potential, point);
        const Vector3 field = fieldOutsideSphere(oblique, point);
        EXPECT_LT(length(field - expected), 1e-7 * length(field));
    }
}

TEST(FieldOutsideSphere, HasNoSources)
{
    for (const Vector3& point : outside) {
        const auto part = [](Vector3 axis) {
            return [axis](const Vector3& at) { return dot(fieldOutsideSphere(oblique, at), axis); };
        };
        const Vector3 x = gradient(part({1, 0, 0}), point);
        const Vector3 y = gradient(part({0, 1, 0}), point);
        const Vector3 z = gradient(part({0, 0, 1}), point);
        const double size = length(x) + length(y) + length(z);
        EXPECT_LT(std::abs(x.x + y.y + z.z), 1e-6 * size);
        EXPECT_LT(length(Vector3{z.y - y.z, x.z - z.x, y.x - x.y}), 1e-6 * size);
    }
}

TEST(PotentialOnSphere, OfACentralDipoleIsThreeTimesTheFreeOne)
{
    const Vector3 moment{0, 0, 2e-8};
    for (const double cosine : {-1.0, -0.4, 0.0, 0.7, 1.0}) {
        const double expected = 3 * moment.z * cosine / (4 * pi * brainConductivity * radius * radius);
        EXPECT_NEAR(potentialOnSphere({{0, 0, 0}, moment}, surfacePoint(cosine, 0.3)), expected, 1e-18);
    }
}

TEST(PotentialOnSphere, AgreesWithItsSeries)
{
    constexpr double depth = 0.06;
    const CurrentDipole dipole{{0, 0, depth}, {2e-8, 0, 3e-8}};
    for (const double cosine : {-0.9, -0.3, 0.2, 0.75, 0.97})
        for (const double azimuth : {0.0, 0.9, 2.5, 4.4}) {
            const double expected = seriesPotential(depth, dipole.moment.x, dipole.moment.z, cosine, azimuth);
            EXPECT_NEAR(potentialOnSphere(dipole, surfacePoint(cosine, azimuth)), expected,
                        1e-9 * std::abs(expected) + 1e-16);
        }
}

TEST(PotentialOnSphere, HasTheMeanZero)
{
    double sum = 0;
    double size = 0;
    constexpr int rows = 400;
    constexpr int columns = 64;
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < columns; ++j) {
            const double cosine = 2 * (i + 0.5) / rows - 1;
            const double value = potentialOnSphere(oblique, surfacePoint(cosine, 2 * pi * j / columns));
            sum += value;
            size += std::abs(value);
        }
    EXPECT_LT(std::abs(sum), 1e-4 * size);
}

TEST(PotentialOnSphere, FallsWithTheConductivity)
{
    const Vector3 point = surfacePoint(0.4, 1);
    EXPECT_DOUBLE_EQ(potentialOnSphere(oblique, point, 0.66), potentialOnSphere(oblique, point, 0.33) / 2);
}

TEST(FieldOfMagnet, IsTwiceAsStrongOnItsAxisAsBesideIt)
{
    const Vector3 place{1, 2, 3};
    const Vector3 moment{0, 0, 4};
    const Vector3 onAxis = fieldOfMagnet(place, moment, place + Vector3{0, 0, 2});
    const Vector3 beside = fieldOfMagnet(place, moment, place + Vector3{2, 0, 0});
    EXPECT_NEAR(onAxis.z, 1e-7 * 2 * 4 / 8, 1e-20);
    EXPECT_NEAR(beside.z, -1e-7 * 4 / 8, 1e-20);
    EXPECT_EQ(onAxis.x, 0);
    EXPECT_EQ(beside.x, 0);
}

} // namespace

} // namespace megset::phantom::fields_test
