#include "megset/records/magnetic/CMEGSensor.h"

#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

namespace megset::CMEGSensor_test {
namespace {

using Triple = std::array<double, 3>;

constexpr Triple zero{};

using Getter = int (CMEGSensor::*)(int, int, double&, double&, double&) const;

Triple asked(const CMEGSensor& sensor, Getter get, int set, int coil)
{
    Triple at{9, 9, 9};
    (sensor.*get)(set, coil, at[0], at[1], at[2]);
    return at;
}

Triple pos(const CMEGSensor& sensor, int set = -1, int coil = 0)
{
    return asked(sensor, &CMEGSensor::getSnsPos, set, coil);
}

Triple orn(const CMEGSensor& sensor, int set = -1, int coil = 0)
{
    return asked(sensor, &CMEGSensor::getSnsOrn, set, coil);
}

Triple normal(const CMEGSensor& sensor, int set = -1, int coil = 0)
{
    return asked(sensor, &CMEGSensor::getSnsNmlDir, set, coil);
}

Triple coilPos(const CBscMagSns& coil)
{
    Triple at{9, 9, 9};
    coil.getCoilPositionD(at[0], at[1], at[2]);
    return at;
}

Triple coilNormal(const CBscMagSns& coil)
{
    Triple at{9, 9, 9};
    coil.getNmlDirXYZ(at[0], at[1], at[2]);
    return at;
}

// Two coils, 50 mm apart along the normal in both frames; the head frame is moved by 100 mm in x.
CMEGSensorzk gradiometer()
{
    const int turns[] = {1, -1};
    const double dewarPos[] = {0, 0, 10, 0, 0, 60};
    const double dewarDir[] = {0, 0, 1, 0, 0, 1};
    const double headPos[] = {100, 0, 10, 100, 0, 60};
    const double headDir[] = {0, 0, 2, 0, 0, 2};
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.initSensorBasic(5, "MLC11", "axial", 6, turns, dewarPos, dewarDir, headPos, headDir), 1);
    return sensor;
}

TEST(MegSensor, BeginsWithoutTypeCoilsOrModes)
{
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.m_nChannelType, -1);
    EXPECT_EQ(sensor.getGradOrderNo(), 0);
    EXPECT_FALSE(sensor.getRealIdealCoefMode());
    EXPECT_FALSE(sensor.getAdaptiveBalance());
    EXPECT_EQ(sensor.getTotalCoils(), 0);
    EXPECT_EQ(sensor.getCoil(0), nullptr);
    EXPECT_EQ(sensor.getCoilBaseLine(), 0.0);
    EXPECT_EQ(sensor.isAxialGrad(), 0);
    EXPECT_EQ(pos(sensor), zero);
    EXPECT_EQ(normal(sensor), zero);
}

TEST(MegSensor, TextsAreTheFields)
{
    CMEGSensorzk sensor;
    sensor.m_strSensorName = "a";
    sensor.m_strSensorTypeName = "b";
    sensor.m_strSensorCoilTypeName = "c";
    EXPECT_EQ(sensor.getSensorName(), CString("a"));
    EXPECT_EQ(sensor.getSensorTypeName(), CString("b"));
    EXPECT_EQ(sensor.getSensorCoilTypeName(), CString("c"));
}

TEST(MegSensorPlace, TheFirstCoilIsMadeAndFollows)
{
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.setSnsPos(-1, 0, 1, 2, 3), 1);
    EXPECT_EQ(sensor.setSnsOrn(-1, 0, 0, 3, 4), 1);
    ASSERT_EQ(sensor.getTotalCoils(), 1);
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    EXPECT_EQ(orn(sensor), (Triple{0, 3, 4}));
    EXPECT_EQ(normal(sensor), (Triple{0, 0.6, 0.8}));
    EXPECT_EQ(coilPos(*sensor.getCoil(0)), (Triple{1, 2, 3}));
    EXPECT_EQ(coilNormal(*sensor.getCoil(0)), (Triple{0, 0.6, 0.8}));
    EXPECT_EQ(sensor.m_dSnsGeomWork, (CMEGSensor::Geometry{1, 2, 3, 1, 0, 3, 4, 0, 0, 0, 0, 0}));
    EXPECT_EQ(sensor.setSnsPos(-1, 0, 4, 5, 6), 1);
    EXPECT_EQ(sensor.getTotalCoils(), 1);
    EXPECT_EQ(coilPos(*sensor.getCoil(0)), (Triple{4, 5, 6}));
}

TEST(MegSensorPlace, UnknownSetsAndCoilsGiveZero)
{
    CMEGSensorzk sensor = gradiometer();
    double x = 1.0;
    double y = 1.0;
    double z = 1.0;
    for (const auto& [set, coil] : {std::pair(-2, 0), std::pair(2, 0), std::pair(-1, 2), std::pair(-1, -1)}) {
        EXPECT_EQ(sensor.getSnsPos(set, coil, x, y, z), 0);
        EXPECT_EQ((Triple{x, y, z}), zero);
        EXPECT_EQ(sensor.getSnsOrn(set, coil, x, y, z), 0);
        EXPECT_EQ(sensor.getSnsNmlDir(set, coil, x, y, z), 0);
        EXPECT_EQ(sensor.setSnsPos(set, coil, 7, 7, 7), 0);
        EXPECT_EQ(sensor.setSnsOrn(set, coil, 7, 7, 7), 0);
    }
    EXPECT_TRUE(sensor == gradiometer());
    CMEGSensorzk empty;
    EXPECT_EQ(empty.getSnsPos(3, 0, x, y, z), 0);
    EXPECT_EQ(empty.setSnsPos(3, 0, 1, 2, 3), 0);
    EXPECT_EQ(empty.setSnsPos(-1, 1, 1, 2, 3), 0);
    EXPECT_TRUE(empty == CMEGSensorzk());
}

TEST(MegSensorPlace, SetsAreDewarHeadAndWork)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(pos(sensor, 0, 1), (Triple{0, 0, 60}));
    EXPECT_EQ(pos(sensor, 1, 1), (Triple{100, 0, 60}));
    EXPECT_EQ(sensor.setSnsPos(-1, 1, 7, 8, 9), 1);
    EXPECT_EQ(pos(sensor, -1, 1), (Triple{7, 8, 9}));
    EXPECT_EQ(pos(sensor, -1, 0), (Triple{100, 0, 10}));
    EXPECT_EQ(pos(sensor, 1, 1), (Triple{100, 0, 60}));
    EXPECT_EQ(sensor.setSnsPos(1, 0, 5, 5, 5), 1);
    EXPECT_EQ(sensor.m_dSnsGeom[0], 5.0);
    EXPECT_EQ(pos(sensor), (Triple{100, 0, 10}));
}

TEST(MegSensorPlace, SwitchesMoveAllCoilsBetweenFrames)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.setCoilsDewar2work(), 1);
    EXPECT_EQ(pos(sensor), (Triple{0, 0, 10}));
    EXPECT_EQ(coilPos(*sensor.getCoil(1)), (Triple{0, 0, 60}));
    EXPECT_EQ(sensor.m_dSnsGeomWork[2], 10.0);
    EXPECT_EQ(sensor.setCoilsHead2work(), 1);
    EXPECT_EQ(pos(sensor), (Triple{100, 0, 10}));
    EXPECT_EQ(coilPos(*sensor.getCoil(1)), (Triple{100, 0, 60}));
    EXPECT_EQ(orn(sensor), (Triple{0, 0, 2}));
}

TEST(MegSensorPlace, ACoilThatHasNoPlaceInAFrameStaysWhereItIs)
{
    CMEGSensorzk sensor;
    sensor.setSnsPos(-1, 0, 1, 2, 3);
    EXPECT_EQ(sensor.setCoilsHead2work(), 1);
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    EXPECT_EQ(sensor.setCoilsDewar2work(), 1);
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    // The head's origin is a place too, once it is given.
    sensor.setSnsPos(1, 0, 0, 0, 0);
    sensor.setCoilsHead2work();
    EXPECT_EQ(pos(sensor), zero);
}

TEST(MegSensorPlace, WithoutCoilsTheRecordedGeometryStands)
{
    CMEGSensorzk sensor;
    sensor.m_dSnsGeom = {1, 2, 3, 1, 0, 0, 1, 0, 0, 0, 0, 0};
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    EXPECT_EQ(normal(sensor), (Triple{0, 0, 1}));
    sensor.m_dSnsGeomWork[0] = 8;
    EXPECT_EQ(pos(sensor), (Triple{8, 0, 0}));
    EXPECT_EQ(pos(sensor, 1), (Triple{1, 2, 3}));
    EXPECT_EQ(sensor.setCoilsHead2work(), 1);
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    EXPECT_EQ(sensor.getCoil(0), nullptr);
}

TEST(MegSensorPlace, ACoilThatIsMadeKeepsWhatWasKnown)
{
    CMEGSensorzk sensor;
    sensor.m_dSnsGeom = {1, 2, 3, 0, 0, 0, 1, 0, 0, 0, 0, 0};
    sensor.setSnsPos(-1, 0, 4, 5, 6);
    EXPECT_EQ(pos(sensor), (Triple{4, 5, 6}));
    EXPECT_EQ(normal(sensor), (Triple{0, 0, 1}));
    sensor.setCoilsHead2work();
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
}

TEST(MegSensorCoils, OutsideTheListThereIsNone)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.getTotalCoils(), 2);
    EXPECT_NE(sensor.getCoil(1), nullptr);
    EXPECT_EQ(sensor.getCoil(2), nullptr);
    EXPECT_EQ(sensor.getCoil(-1), nullptr);
    EXPECT_EQ(std::as_const(sensor).getCoil(0), sensor.getCoil(0));
}

TEST(MegSensorCoils, CopiesHaveTheirOwn)
{
    CMEGSensorzk sensor = gradiometer();
    CMEGSensorzk copy = sensor;
    copy.getCoil(0)->setCoilPositionD(1, 1, 1);
    EXPECT_EQ(coilPos(*sensor.getCoil(0)), (Triple{100, 0, 10}));
    EXPECT_FALSE(copy == sensor);
}

TEST(MegSensorCoils, BaseLineIsTheDistanceOfTheFirstTwo)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.getCoilBaseLine(), 50.0);
    sensor.setSnsPos(-1, 1, 103, 4, 10);
    EXPECT_EQ(sensor.getCoilBaseLine(), 5.0);
}

TEST(MegSensorCoils, AxialMeansDisplacedAlongTheNormal)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.isAxialGrad(), 1);
    sensor.setSnsPos(-1, 1, 100, 0, -40); // to the other side
    EXPECT_EQ(sensor.isAxialGrad(), 1);
    sensor.setSnsPos(-1, 1, 103, 0, 15); // 31 degrees off
    EXPECT_EQ(sensor.isAxialGrad(), 1);
    sensor.setSnsPos(-1, 1, 117, 0, 10); // planar
    EXPECT_EQ(sensor.isAxialGrad(), 0);
    sensor.setSnsPos(-1, 1, 100, 0, 10); // the same place
    EXPECT_EQ(sensor.isAxialGrad(), 0);
    sensor.setSnsPos(-1, 1, 100, 0, 60);
    sensor.setSnsOrn(-1, 0, 0, 0, 0); // no normal
    EXPECT_EQ(sensor.isAxialGrad(), 0);
}

TEST(MegSensorCoils, PlacesOfACoilAreKnownByFrame)
{
    CBscMagSnszk coil;
    EXPECT_EQ(coil.getPlace(-1), &coil.m_dCoilWork);
    EXPECT_EQ(coil.getPlace(0), &coil.m_dCoilDewar);
    EXPECT_EQ(coil.getPlace(1), &coil.m_dCoilHead);
    EXPECT_EQ(coil.getPlace(2), nullptr);
    EXPECT_EQ(coil.setPlace2work(2), 0);
    EXPECT_EQ(coil.setPlace2work(coilFrameHead), 0);
    coil.m_dCoilHead = {1, 2, 3, 1, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(coil.setPlace2work(coilFrameHead), 1);
    EXPECT_EQ(coilPos(coil), (Triple{1, 2, 3}));
    EXPECT_EQ(coilNormal(coil), (Triple{0, 0, 1}));
}

TEST(MegSensorModes, OrdersZeroToThreeAreKept)
{
    CMEGSensorzk sensor;
    for (const int order : {1, 2, 3, 0, 3}) {
        EXPECT_EQ(sensor.setGradOrderNo(order), 1);
        EXPECT_EQ(sensor.getGradOrderNo(), order);
    }
    EXPECT_EQ(sensor.setGradOrderNo(4), 0);
    EXPECT_EQ(sensor.setGradOrderNo(-1), 0);
    EXPECT_EQ(sensor.getGradOrderNo(), 3);
}

TEST(MegSensorModes, CoefficientModesAreKept)
{
    CMEGSensorzk sensor;
    sensor.setRealIdealCoefMode(true);
    EXPECT_TRUE(sensor.getRealIdealCoefMode());
    EXPECT_FALSE(sensor.getAdaptiveBalance());
    sensor.setAdaptiveBalance(true);
    sensor.setRealIdealCoefMode(false);
    EXPECT_FALSE(sensor.getRealIdealCoefMode());
    EXPECT_TRUE(sensor.getAdaptiveBalance());
}

TEST(MegSensorGain, IntegersTimesTheGainAreFemtotesla)
{
    CMEGSensorzk sensor;
    sensor.initSensorInfo(7, 100, 0, 3, 5e8, 1048576.0, 2.0, 0.0);
    // 2^21 * 5e8 integers are one tesla.
    EXPECT_DOUBLE_EQ(5e8 * 2097152.0 * sensor.getSnsGainCtf(), 1e15);
    EXPECT_DOUBLE_EQ(sensor.getSnsGainCtf(), 0.95367431640625);
    EXPECT_EQ(sensor.sensorGain(), 5e8 * 1048576.0);
}

TEST(MegSensorGain, TheSignOfAGainStays)
{
    CMEGSensorzk sensor;
    sensor.initSensorInfo(7, 100, 0, 3, -5e8, 1048576.0, 2.0, 0.0);
    EXPECT_DOUBLE_EQ(sensor.getSnsGainCtf(), -0.95367431640625);
    EXPECT_LT(sensor.sensorGain(), 0.0);
}

TEST(MegSensorGain, WithoutRecordedGainsSamplesStayAsTheyAre)
{
    const CMEGSensorzk sensor;
    EXPECT_EQ(sensor.getSnsGainCtf(), 1.0);
    EXPECT_EQ(sensor.sensorGain(), 1.0);
}

TEST(MegSensorGain, AGainThatWasNotRecordedCountsAsOne)
{
    CMEGSensorzk sensor;
    sensor.initSensorInfo(7, 100, 0, 3, 4e9, 0.0, 0.0, 0.0);
    EXPECT_EQ(sensor.sensorGain(), 4e9);
    EXPECT_EQ(sensor.getSnsGainCtf(), 1e15 / 4e9);
}

TEST(MegSensorSetUp, BasicTakesNamesAndCoils)
{
    const CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.getSensorName(), CString("MLC11"));
    EXPECT_EQ(sensor.getSensorTypeName(), CString("axial"));
    EXPECT_EQ(sensor.m_nSnsWordC, 5);
    EXPECT_EQ(sensor.getCoil(0)->m_dCoilTurns, 1.0);
    EXPECT_EQ(sensor.getCoil(1)->m_dCoilTurns, -1.0);
    EXPECT_EQ(pos(sensor), (Triple{100, 0, 10}));
    EXPECT_EQ(orn(sensor, 0, 1), (Triple{0, 0, 1}));
    EXPECT_EQ(sensor.m_dSnsGeom, (CMEGSensor::Geometry{100, 0, 10, 1, 0, 0, 2, 0, 0, 0, 0, 0}));
}

TEST(MegSensorSetUp, BasicTakesTheDewarPlaceWhereTheHeadHasNone)
{
    const double at[] = {1, 2, 3};
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.initSensorBasic(0, "", "", 3, nullptr, at, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(pos(sensor), (Triple{1, 2, 3}));
    EXPECT_EQ(sensor.getCoil(0)->m_dCoilTurns, 1.0);
    EXPECT_EQ(sensor.m_dSnsGeom, CMEGSensor::Geometry{});
}

TEST(MegSensorSetUp, BasicReadsWholeTriplesOnly)
{
    const double at[] = {1, 2, 3, 4, 5};
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.initSensorBasic(0, "", "", 5, nullptr, at, at, at, at), 1);
    EXPECT_EQ(sensor.getTotalCoils(), 1);
    EXPECT_EQ(sensor.initSensorBasic(0, "", "", 2, nullptr, at, at, at, at), 1);
    EXPECT_EQ(sensor.getTotalCoils(), 0);
}

TEST(MegSensorSetUp, BasicTakesEightCoilsAndNoMore)
{
    const std::array<double, 27> at{};
    CMEGSensorzk sensor;
    EXPECT_EQ(sensor.initSensorBasic(0, "A", "", 24, nullptr, at.data(), nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(sensor.getTotalCoils(), 8);
    const CMEGSensorzk before = sensor;
    EXPECT_EQ(sensor.initSensorBasic(1, "B", "", 27, nullptr, at.data(), nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(sensor.initSensorBasic(1, "B", "", -3, nullptr, at.data(), nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(sensor == before);
}

TEST(MegSensorSetUp, BasicKeepsGainsAndModes)
{
    CMEGSensorzk sensor;
    sensor.initSensorInfo(7, 100, 1, 2, 2.0, 3.0, 4.0, 5.0);
    sensor.setAdaptiveBalance(true);
    sensor.initSensorBasic(0, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(sensor.sensorGain(), 6.0);
    EXPECT_TRUE(sensor.getAdaptiveBalance());
    EXPECT_EQ(sensor.getGradOrderNo(), 2);
}

TEST(MegSensorSetUp, InfoTakesNumberTypeShapeOrderAndGains)
{
    CMEGSensorzk sensor = gradiometer();
    EXPECT_EQ(sensor.initSensorInfo(7, 101, 1, 2, 2.0, 3.0, 4.0, 5.0), 1);
    EXPECT_EQ(sensor.m_nSnsWordA, 7);
    EXPECT_EQ(sensor.m_nChannelType, 101);
    EXPECT_EQ(sensor.m_nSnsWordB, 1);
    EXPECT_EQ(sensor.getCoil(1)->m_nCoilShape, 1);
    EXPECT_EQ(sensor.getGradOrderNo(), 2);
    EXPECT_EQ(sensor.m_pSnsCoils.m_dProperGain, 2.0);
    EXPECT_EQ(sensor.m_pSnsCoils.m_dQGain, 3.0);
    EXPECT_EQ(sensor.m_pSnsCoils.m_dIOGain, 4.0);
    EXPECT_EQ(sensor.m_pSnsCoils.m_dIOOffset, 5.0);
    EXPECT_EQ(sensor.initSensorInfo(7, 101, 1, 9, 2.0, 3.0, 4.0, 5.0), 1);
    EXPECT_EQ(sensor.getGradOrderNo(), 0);
}

} // namespace
} // namespace megset::CMEGSensor_test
