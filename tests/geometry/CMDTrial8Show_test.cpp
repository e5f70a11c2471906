// The maps of chosen sensors and along the head, radii, and places of coils.

#include "megset/records/sensors/flattenPoint.h"

#include "tests/geometry/sensorTrial.h"
#include "tests/kit/ScriptedHost.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial8Show_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SensorMaps : public SensorTrial
{
};

class ChosenMap : public SensorMaps
{
protected:
    void setCentre(double x, double z)
    {
        trial.m_megContour.m_dXmin = trial.m_megContour.m_dXmax = x;
        trial.m_megContour.m_dZmin = trial.m_megContour.m_dZmax = z;
    }
    const CString question = "Limit contcour map size to 300 mm?";
};

TEST_F(ChosenMap, NeedsOneNumberForEachChannel)
{
    make({{100, {}}, {302, {}}});
    const int use[] = {1, 1, 1};
    for (const int count : {1, 3, 0, -1}) {
        EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(count, use), 0);
        EXPECT_EQ(trial.projectEegMeasureSns3Dto2Dpro(count, use), 0);
    }
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(2, nullptr), 0);
    EXPECT_EQ(host.messages().size(), 9U);
    EXPECT_THAT(host.messages(), Each(CString("Bad channel setting error!")));
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_FALSE(trial.isEegElectrod2dPlaneDone());
}

// Twice the greatest height is 100, so that d is 1.5 at the apex, 1.25 at half its height and 1 on the ground.
TEST_F(ChosenMap, PullsHalfAsMuchAndIsNotDivided)
{
    make({{100, {-60.0, 50.0, 0.0}}, {100, {50.0, 25.0, 30.0}}, {100, {20.0, 0.0, -10.0}}});
    const int use[] = {1, 7, -1};
    trial.m_megContour.m_dPlaneScale = 9.0;
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(3, use), 1);
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 10.0), PlanePlace(80.0, 34.0), PlanePlace(60.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 80.0, 0.0, 34.0, 1.0));
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ChosenMap, TakesTheExtentsAsTheyAre)
{
    make({{100, {10.0, 0.0, 0.0}}, {100, {20.0, 0.0, 5.0}}});
    setCentre(10.0, 0.0);
    trial.m_megContour.m_dYmin = -30.0; // heights -30: nothing is above the ground
    const int use[] = {1, 1};
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(2, use), 1);
    // The greatest height stays the smallest number there is, so that places shrink to nothing.
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(0.0, 0.0)));
    EXPECT_EQ(trial.m_megContour.m_dXmax, 10.0);
}

TEST_F(ChosenMap, LeavesTheOthersAlone)
{
    make({{100, {-30.0, 50.0, 0.0}}, {100, {900.0, 900.0, 900.0}}, {100, {30.0, 50.0, 0.0}}, {100, {}, false}});
    trial.getChannel(1)->m_dSns2dX = 77.0;
    trial.getChannel(3)->m_dSns2dX = 66.0;
    const int use[] = {1, 0, 1, 1};
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(4, use), 1);
    EXPECT_THAT(megPlaces(trial),
                ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(77.0, 0.0), PlanePlace(40.0, 0.0), PlanePlace(66.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 40.0, 0.0, 0.0, 1.0));
}

TEST_F(ChosenMap, YesToTheLimitAsksNoMore)
{
    make({{100, {-500.0, 0.0, 0.0}}, {100, {0.0, 0.0, 401.0}}, {100, {450.0, 0.0, -700.0}}, {100, {400.0, 0.0, 0.0}}});
    const int use[] = {1, 1, 1, 1};
    host.willAnswerYes(question);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(4, use), 1);
    EXPECT_THAT(host.questions(), ElementsAre(question));
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 400.0), PlanePlace(400.0, 800.0), PlanePlace(800.0, 0.0),
                                              PlanePlace(800.0, 400.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 800.0, 0.0, 800.0, 1.0));
}

TEST_F(ChosenMap, NoToTheLimitAsksForTheNextAndLimitsAllTheSame)
{
    make({{100, {-500.0, 0.0, 0.0}}, {100, {0.0, 0.0, 401.0}}, {100, {450.0, 0.0, -700.0}}, {100, {400.0, 0.0, 0.0}}});
    const int use[] = {1, 1, 1, 1};
    host.willAnswerNo(question);
    host.willAnswerYes(question);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(4, use), 1);
    EXPECT_THAT(host.questions(), ElementsAre(question, question));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 800.0, 0.0, 800.0, 1.0));
    for (int i = 0; i < 3; ++i)
        host.willAnswerNo(question);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(4, use), 1);
    EXPECT_EQ(host.questions().size(), 5U);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 800.0, 0.0, 800.0, 1.0));
}

TEST_F(ChosenMap, WithNoneChosenItIsEmptyAndDone)
{
    make({{100, {5.0, 5.0, 5.0}}, {302, {}}});
    trial.m_megContour.m_dPlaneXmax = 9.0;
    const int use[] = {0, 0};
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(2, use), 1);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 1.0));
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ChosenMap, OfElectrodesIsTheSameOnTheirPlaces)
{
    make({{302, {-60.0, 50.0, 0.0}}, {302, {30.0, 0.0, 20.0}}, {303, {1.0, 1.0, 1.0}}, {100, {1.0, 1.0, 1.0}}});
    const int use[] = {1, 1, 1, 1};
    EXPECT_EQ(trial.projectEegMeasureSns3Dto2Dpro(4, use), 1);
    EXPECT_THAT(eegPlaces(trial),
                ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(70.0, 20.0), PlanePlace(), PlanePlace()));
    EXPECT_THAT(planeOf(trial.m_eegContour), ElementsAre(0.0, 70.0, 0.0, 20.0, 1.0));
    EXPECT_TRUE(trial.isEegElectrod2dPlaneDone());
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
}

TEST(ChosenMapOfRandomSensors, IsThatOfPlainLoopsToTheBit)
{
    ScriptedHost host;
    for (unsigned seed = 100; seed < 140; ++seed) {
        const std::vector<ChannelAt> channels = randomChannels(seed);
        CMDTrialzk trial;
        makeSensors(trial, channels);
        std::vector<int> use;
        for (std::size_t i = 0; i < channels.size(); ++i)
            use.push_back(static_cast<int>((i * 7 + seed) % 3));
        trial.m_megContour.m_dXmin = -30.0;
        trial.m_megContour.m_dXmax = 40.0;
        trial.m_megContour.m_dZmin = -80.0;
        trial.m_megContour.m_dZmax = 10.0;
        std::vector<std::size_t> chosen;
        double hmax = 2.2250738585072014e-308;
        for (std::size_t i = 0; i < channels.size(); ++i) {
            if (use[i] == 0 || !channels[i].hasSensor || (channels[i].type != 100 && channels[i].type != 103))
                continue;
            chosen.push_back(i);
            hmax = std::max(hmax, channels[i].place.y);
        }
        std::vector<PlanePlace> places(channels.size());
        double umin = 1e9;
        double vmin = 1e9;
        bool isLimited = false;
        for (const std::size_t i : chosen) {
            const double d = channels[i].place.y / (2.0 * hmax) + 1.0;
            const double u = (channels[i].place.x - 5.0) / d;
            const double v = (channels[i].place.z + 35.0) / d;
            isLimited = isLimited || std::fabs(u) > 400.0 || std::fabs(v) > 400.0;
            places[i] = {std::min(std::max(u, -400.0), 400.0), std::min(std::max(v, -400.0), 400.0)};
            umin = std::min(umin, places[i].first);
            vmin = std::min(vmin, places[i].second);
        }
        for (const std::size_t i : chosen)
            places[i] = {places[i].first - umin, places[i].second - vmin};
        if (isLimited)
            host.willAnswerYes("Limit contcour map size to 300 mm?");
        ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dpro(static_cast<int>(use.size()), use.data()), 1);
        EXPECT_EQ(megPlaces(trial), places) << seed;
    }
}

PlanePlace flat(const Place& place)
{
    PlanePlace result;
    flattenPoint(place.x, place.z, place.y, result.first, result.second);
    return result;
}

class HeadMap : public SensorMaps
{
};

// Points on a sphere of 100 mm: a quarter of the circle from the apex is 50 pi, an eighth 25 pi.
TEST_F(HeadMap, GoesByTheArcFromTheApex)
{
    const double r = 100.0 * std::sqrt(0.5);
    make({{100, {0.0, 100.0, 0.0}}, {100, {100.0, 0.0, 0.0}}, {100, {0.0, r, -r}}, {11, {100.0, 0.0, 0.0}}});
    trial.getChannel(3)->m_dSns2dX = 3.0;
    trial.m_megContour.m_dPlaneScale = 7.0;
    EXPECT_EQ(trial.projectMegCart3DCoilTo2DPlanVsm(), 1);
    const std::vector<PlanePlace> places = megPlaces(trial);
    const double pi = std::acos(-1.0);
    EXPECT_EQ(places[0].first, 0.0);
    EXPECT_NEAR(places[0].second, 25.0 * pi, 1e-10);
    EXPECT_NEAR(places[1].first, 50.0 * pi, 1e-10);
    EXPECT_NEAR(places[1].second, 25.0 * pi, 1e-10);
    EXPECT_NEAR(places[2].first, 0.0, 1e-10);
    EXPECT_EQ(places[2].second, 0.0);
    EXPECT_EQ(places[3].first, 3.0);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, places[1].first, 0.0, places[0].second, 1.0));
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
}

TEST_F(HeadMap, ShiftsMegMeasureChannelsWithoutSensorToo)
{
    const Place a = {-30.0, 80.0, -10.0};
    const Place b = {50.0, 60.0, 20.0};
    make({{100, a}, {100, b}, {103, {}, false}});
    trial.getChannel(2)->m_dSns2dX = 1000.0;
    EXPECT_EQ(trial.projectMegCart3DCoilTo2DPlanVsm(), 1);
    const double u = std::min(flat(a).first, flat(b).first);
    const double v = std::min(flat(a).second, flat(b).second);
    EXPECT_THAT(megPlaces(trial),
                ElementsAre(PlanePlace(flat(a).first - u, flat(a).second - v),
                            PlanePlace(flat(b).first - u, flat(b).second - v), PlanePlace(1000.0 - u, 0.0 - v)));
    EXPECT_EQ(trial.m_megContour.m_dPlaneXmax, 1000.0 - u);
}

TEST_F(HeadMap, OfElectrodesLeavesThemAsTheyAreAndShiftsTheMegChannels)
{
    const Place a = {-30.0, 80.0, -10.0};
    const Place b = {50.0, 60.0, 20.0};
    make({{302, a}, {302, b}, {100, {7.0, 7.0, 7.0}}, {103, {}, false}, {303, b}});
    trial.getChannel(2)->m_dElct2dX = 100.0;
    trial.getChannel(3)->m_dElct2dY = 200.0;
    trial.getChannel(4)->m_dElct2dX = 5.0;
    EXPECT_EQ(trial.projectEegCart3DCoilTo2DPlanVsm(), 1);
    const double u = flat(a).first;
    const double v = flat(a).second;
    EXPECT_THAT(eegPlaces(trial), ElementsAre(flat(a), flat(b), PlanePlace(100.0 - u, 0.0 - v),
                                              PlanePlace(0.0 - u, 200.0 - v), PlanePlace(5.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_eegContour), ElementsAre(0.0 - u, 100.0 - u, 0.0 - v, 200.0 - v, 1.0));
    EXPECT_TRUE(trial.isEegElectrod2dPlaneDone());
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.getChannel(2)->m_dSns2dX, 0.0);
}

TEST_F(HeadMap, OfElectrodesHasBoundsOfZeroWithoutMegChannels)
{
    make({{302, {-30.0, 80.0, -10.0}}, {302, {50.0, 60.0, 20.0}}, {11, {1.0, 1.0, 1.0}}});
    trial.m_eegContour.m_dPlaneXmax = 4.0;
    EXPECT_EQ(trial.projectEegCart3DCoilTo2DPlanVsm(), 1);
    EXPECT_THAT(planeOf(trial.m_eegContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 1.0));
}

TEST_F(HeadMap, WithNothingThatTakesPartIsDoneWithoutAQuestion)
{
    make({{600, {}}, {600, {}}});
    EXPECT_EQ(trial.projectMegCart3DCoilTo2DPlanVsm(), 1);
    EXPECT_EQ(trial.projectEegCart3DCoilTo2DPlanVsm(), 1);
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_TRUE(trial.isEegElectrod2dPlaneDone());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(SensorMaps, TheRadiusIsHalfTheLargestSide)
{
    make({{100, {-10.0, 0.0, 0.0}}, {100, {20.0, 50.0, 5.0}}, {302, {0.0, 0.0, -80.0}}, {302, {1.0, 2.0, 100.0}}});
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(false), 0.0);
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(true), 25.0);
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(false), 25.0);
    EXPECT_EQ(trial.getRadiusElectrodeMaxEeg(false), 0.0);
    EXPECT_EQ(trial.getRadiusElectrodeMaxEeg(true), 90.0);
    trial.m_megContour.m_dXmax = 90.0;
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(false), 50.0);
}

TEST_F(SensorMaps, TheRadiusIsMinusOneWhereNothingIsFoundToRefresh)
{
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(true), -1.0);
    EXPECT_EQ(trial.getRadiusElectrodeMaxEeg(true), -1.0);
    make({{303, {}}, {11, {}}});
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(true), -1.0);
    EXPECT_EQ(trial.getRadiusElectrodeMaxEeg(true), -1.0);
    EXPECT_EQ(trial.getRadius1stCoilMaxMeg(false), 0.0);
}

class CoilPlaces : public SensorMaps
{
protected:
    CoilPlaces()
    {
        make({{100, {1.0, 2.0, 3.0}}, {11, {4.0, 5.0, 6.0}}, {302, {7.0, 8.0, 9.0}}, {100, {}, false}});
        trial.getChannel(0)->getMEGSensorzk()->setSnsOrn(-1, 0, 0.0, 0.0, 2.0);
    }
    int locate(int chan, bool measureOnly, int coil)
    {
        pos.fill(9.0);
        dir.fill(9.0);
        return trial.getChnlLoci_PhycVirt(chan, measureOnly, coil, pos.data(), dir.data());
    }
    std::array<double, 3> pos{};
    std::array<double, 3> dir{};
};

TEST_F(CoilPlaces, OfAMegChannel)
{
    EXPECT_EQ(locate(0, true, 0), 1);
    EXPECT_THAT(pos, ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(dir, ElementsAre(0.0, 0.0, 1.0));
    EXPECT_EQ(locate(1, false, 0), 1);
    EXPECT_THAT(pos, ElementsAre(4.0, 5.0, 6.0));
    EXPECT_THAT(dir, Each(0.0));
}

TEST_F(CoilPlaces, WithoutADirectionToFill)
{
    pos.fill(9.0);
    EXPECT_EQ(trial.getChnlLoci_PhycVirt(0, false, 0, pos.data(), nullptr), 1);
    EXPECT_THAT(pos, ElementsAre(1.0, 2.0, 3.0));
    EXPECT_EQ(trial.getChnlLoci_PhycVirt(2, false, 0, pos.data(), nullptr), 0);
    EXPECT_THAT(pos, Each(0.0));
}

TEST_F(CoilPlaces, AReferenceIsNoMeasureChannelAndClearsThePosition)
{
    EXPECT_EQ(locate(1, true, 0), 0);
    EXPECT_THAT(pos, Each(0.0));
    EXPECT_THAT(dir, Each(0.0));
}

TEST_F(CoilPlaces, AnotherChannelOrNoSuchCoilGivesZeroAndClears)
{
    const std::array<std::pair<int, int>, 6> all = {{{2, 0}, {3, 0}, {4, 0}, {INT_MAX, 0}, {0, 1}, {0, -1}}};
    for (const auto& [chan, coil] : all) {
        EXPECT_EQ(locate(chan, false, coil), 0) << chan;
        EXPECT_THAT(pos, Each(0.0));
        EXPECT_THAT(dir, Each(0.0));
    }
}

TEST_F(CoilPlaces, ANegativeChannelOrNoPositionGivesZeroAndTouchesNothing)
{
    for (const int chan : {-1, -2, INT_MIN}) {
        EXPECT_EQ(locate(chan, false, 0), 0);
        EXPECT_THAT(pos, Each(9.0));
        EXPECT_THAT(dir, Each(9.0));
    }
    EXPECT_EQ(trial.getChnlLoci_PhycVirt(0, false, 0, nullptr, dir.data()), 0);
    EXPECT_THAT(dir, Each(9.0));
}

} // namespace
} // namespace megset::CMDTrial8Show_test
