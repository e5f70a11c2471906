#include "megset/records/electric/CEEGelectrode.h"
#include "megset/records/magnetic/CBscMagSns.h"
#include "megset/records/sensors/flattenPoint.h"

#include <cmath>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

namespace megset::flattenPoint_test {
namespace {

using std::numbers::pi;

std::pair<double, double> flattened(double a, double b, double c)
{
    double u = 99.0;
    double v = 99.0;
    flattenPoint(a, b, c, u, v);
    return {u, v};
}

void expectNear(std::pair<double, double> actual, double u, double v)
{
    EXPECT_NEAR(actual.first, u, 1e-12);
    EXPECT_NEAR(actual.second, v, 1e-12);
}

TEST(FlattenPoint, TheThirdAxisGoesToTheOrigin)
{
    const std::pair<double, double> origin(0.0, 0.0);
    EXPECT_EQ(flattened(0, 0, 100), origin);
    EXPECT_EQ(flattened(0, 0, -100), origin);
    EXPECT_EQ(flattened(0, 0, 0), origin);
}

TEST(FlattenPoint, ThePlaneOfTheEquatorKeepsItsDirectionAtAQuarterArc)
{
    expectNear(flattened(10, 0, 0), 5 * pi, 0);
    expectNear(flattened(0, -10, 0), 0, -5 * pi);
    expectNear(flattened(3, 4, 0), 3 * pi / 2, 4 * pi / 2);
}

TEST(FlattenPoint, DistanceFromTheOriginIsTheArc)
{
    // 45 degrees from the axis on a sphere of radius sqrt(2), and 135 degrees.
    expectNear(flattened(1, 0, 1), std::sqrt(2.0) * pi / 4, 0);
    expectNear(flattened(0, 1, -1), 0, std::sqrt(2.0) * 3 * pi / 4);
}

TEST(FlattenPoint, EqualStepsOfAngleAreEqualStepsOnThePlane)
{
    for (int degrees = 1; degrees < 180; degrees += 7) {
        const double theta = degrees * pi / 180;
        expectNear(flattened(80 * std::sin(theta), 0, 80 * std::cos(theta)), 80 * theta, 0);
    }
}

TEST(FlattenPoint, CoilsAndElectrodesAreFlattenedAlike)
{
    double u = 0.0;
    double v = 0.0;
    CBscMagSns::flatten3Dto2D(3, 4, 5, u, v);
    EXPECT_EQ(std::make_pair(u, v), flattened(3, 4, 5));
    u = v = 0.0;
    CEEGelectrode::flatten3Dto2D(3, 4, 5, u, v);
    EXPECT_EQ(std::make_pair(u, v), flattened(3, 4, 5));
}

} // namespace
} // namespace megset::flattenPoint_test
