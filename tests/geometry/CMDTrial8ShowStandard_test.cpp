// The map of sensors pulled outward by their depth, and stretching a map.

#include "tests/geometry/sensorTrial.h"
#include "tests/kit/ScriptedHost.h"

#include <algorithm>
#include <cfloat>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial8ShowStandard_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString noMeg = "No MEG sensor!?, Continue?";
const CString noEeg = "No EEG channel!?, Continue?";

class StandardMap : public SensorTrial
{
};

TEST_F(StandardMap, ATrialOfOneChannelOrNoneGivesZeroFromEveryProjectionAndNoMessage)
{
    const int use[] = {1};
    for (const int channels : {0, 1}) {
        if (channels == 1)
            make({{100, {1.0, 2.0, 3.0}}});
        EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 0);
        EXPECT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true), 0);
        EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dpro(1, use), 0);
        EXPECT_EQ(trial.projectEegMeasureSns3Dto2Dpro(1, use), 0);
        EXPECT_EQ(trial.projectMegCart3DCoilTo2DPlanVsm(), 0);
        EXPECT_EQ(trial.projectEegCart3DCoilTo2DPlanVsm(), 0);
    }
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_FALSE(trial.isEegElectrod2dPlaneDone());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(StandardMap, PlanesAreNotDoneAtFirst)
{
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_FALSE(trial.isEegElectrod2dPlaneDone());
    trial.m_nMegPlaneDone = -2;
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_FALSE(trial.isEegElectrod2dPlaneDone());
}

// Every sensor at the height 50: d is 2, so that the map is the layout at half its size.
TEST_F(StandardMap, SensorsAtOneHeightGiveTheirLayoutAtHalfSize)
{
    make({{100, {-60.0, 50.0, -20.0}}, {101, {40.0, 50.0, 0.0}}, {600, {}}, {103, {0.0, 50.0, 80.0}}});
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_THAT(megPlaces(trial),
                ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(50.0, 10.0), PlanePlace(), PlanePlace(30.0, 50.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 50.0, 0.0, 50.0, 1.0));
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_FALSE(trial.isEegElectrod2dPlaneDone());
}

// Centre 0, 0. The apex at 100 goes to half its distance, one at 25 is divided by 1.25, one at 0 stays.
TEST_F(StandardMap, LowerSensorsArePulledOutward)
{
    make({{100, {-50.0, 0.0, -30.0}}, {100, {50.0, 25.0, 30.0}}, {100, {30.0, 100.0, 10.0}}});
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(90.0, 54.0), PlanePlace(65.0, 35.0)));
}

TEST_F(StandardMap, TwiceTheScaleGivesHalfThePlane)
{
    const std::vector<ChannelAt> channels = {{100, {-60.0, 50.0, -20.0}}, {100, {40.0, 90.0, 0.0}}};
    make(channels);
    ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    CMDTrialzk half;
    makeSensors(half, channels);
    ASSERT_EQ(half.projectMegMeasureSns3Dto2Dstd(2.0, true), 1);
    EXPECT_EQ(half.m_megContour.m_dPlaneXmax, trial.m_megContour.m_dPlaneXmax / 2.0);
    EXPECT_EQ(half.m_megContour.m_dPlaneYmax, trial.m_megContour.m_dPlaneYmax / 2.0);
    EXPECT_EQ(half.getChannel(1)->m_dSns2dX, trial.getChannel(1)->m_dSns2dX / 2.0);
    EXPECT_EQ(half.m_megContour.m_dPlaneScale, 2.0);
    EXPECT_EQ(trial.m_megContour.m_dPlaneScale, 1.0);
}

// The lowest sensor is at -20, so that heights are y - 20: 80 at most. The one at 10 has d = -10 / 80 + 1 = 0.875, the
// one at -20 has 0.5: both lie further out than in space, and nothing limits them.
TEST_F(StandardMap, ASensorBelowTheCountedHeightLandsFurtherOutThanItIs)
{
    make({{100, {70.0, 10.0, 0.0}}, {100, {-70.0, -20.0, 0.0}}, {100, {0.0, 100.0, 0.0}}});
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(220.0, 0.0), PlanePlace(0.0, 0.0), PlanePlace(140.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 220.0, 0.0, 0.0, 1.0));
}

TEST_F(StandardMap, SensorsOnTheGroundStayWhereTheyAre)
{
    make({{100, {-7.0, 0.0, 1.0}}, {100, {7.0, 0.0, 3.0}}});
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(14.0, 2.0)));
}

TEST_F(StandardMap, WithoutRefreshTheStoredExtentsAreTheCentre)
{
    make({{100, {10.0, 50.0, 0.0}}, {100, {20.0, 100.0, 0.0}}});
    trial.m_megContour.m_dXmin = 5.0;
    trial.m_megContour.m_dXmax = 15.0; // centre 10
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, false), 1);
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(5.0, 0.0)));
    EXPECT_EQ(trial.m_megContour.m_dXmax, 15.0);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_EQ(trial.m_megContour.m_dXmax, 20.0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(StandardMap, AMeasureChannelWithoutSensorIsShiftedAndDividedFromWhereItIs)
{
    make({{100, {-60.0, 50.0, -20.0}}, {100, {40.0, 50.0, 60.0}}, {100, {}, false}, {11, {500.0, 50.0, 0.0}}});
    trial.getChannel(2)->m_dSns2dX = 5.0;
    trial.getChannel(2)->m_dSns2dY = 300.0;
    trial.getChannel(3)->m_dSns2dX = 9.0;
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(2.0, true), 1);
    // u is -25 and 25, v -20 and 20
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(25.0, 20.0), PlanePlace(15.0, 160.0),
                                              PlanePlace(9.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 25.0, 0.0, 160.0, 2.0));
}

TEST_F(StandardMap, WithNothingToRefreshNoEndsIt)
{
    make({{302, {}}, {600, {}}});
    trial.m_megContour.m_dXmax = 3.0;
    host.willAnswerNo(noMeg);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 0);
    EXPECT_THAT(host.questions(), ElementsAre(noMeg));
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.m_megContour.m_dXmax, 0.0); // refreshed all the same
}

TEST_F(StandardMap, WithNothingThatTookPartTheQuestionComesAgain)
{
    make({{100, {}, false}, {600, {}}});
    trial.getChannel(0)->m_dSns2dX = 4.0;
    host.willAnswerYes(noMeg);
    host.willAnswerNo(noMeg);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(2.0, true), 0);
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.getChannel(0)->m_dSns2dX, 4.0);
    host.willAnswerYes(noMeg);
    host.willAnswerYes(noMeg);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(2.0, true), 1);
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.getChannel(0)->m_dSns2dX, 2.0);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(2.0, 2.0, 0.0, 0.0, 2.0));
    EXPECT_EQ(host.questions().size(), 4U);
}

TEST_F(StandardMap, WithoutRefreshTheQuestionComesOnce)
{
    make({{600, {}}, {600, {}}});
    host.willAnswerYes(noMeg);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, false), 1);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 1.0));
    host.willAnswerNo(noEeg);
    EXPECT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, false), 0);
    EXPECT_THAT(host.questions(), ElementsAre(noMeg, noEeg));
}

// A channel of type 303 is a measure channel without an electrode that counts.
TEST_F(StandardMap, ElectrodesHaveTheirOwnPlaceAndPlane)
{
    make(
        {{302, {-60.0, 50.0, -20.0}}, {302, {40.0, 50.0, 60.0}}, {303, {900.0, 900.0, 900.0}}, {100, {1.0, 2.0, 3.0}}});
    trial.getChannel(2)->m_dElct2dX = 5.0;
    EXPECT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true), 1);
    EXPECT_THAT(eegPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(50.0, 40.0), PlanePlace(30.0, 20.0),
                                              PlanePlace(0.0, 0.0)));
    EXPECT_THAT(planeOf(trial.m_eegContour), ElementsAre(0.0, 50.0, 0.0, 40.0, 1.0));
    EXPECT_TRUE(trial.isEegElectrod2dPlaneDone());
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(trial.getChannel(0)->m_dSns2dX, 0.0);
}

TEST_F(StandardMap, WithoutElectrodesItAsksInItsOwnWords)
{
    make({{100, {}}, {303, {}}});
    host.willAnswerNo(noEeg);
    EXPECT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true), 0);
    host.willAnswerYes(noEeg);
    host.willAnswerYes(noEeg);
    EXPECT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true), 1);
    EXPECT_TRUE(trial.isEegElectrod2dPlaneDone());
}

TEST_F(StandardMap, AnEmptyPlaceIsPassedOver)
{
    make({{100, {-60.0, 50.0, 0.0}}, {100, {0.0, 50.0, 0.0}}, {100, {40.0, 50.0, 0.0}}});
    trial.m_ppChannel.release(1);
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_EQ(trial.getChannel(2)->m_dSns2dX, 50.0);
}

TEST_F(StandardMap, AScaleOfZeroOrPlacesThatAreNoNumbersDoNoHarm)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    make({{100, {nan, nan, nan}}, {100, {40.0, 50.0, HUGE_VAL}}, {100, {1.0, 1.0, 1.0}}});
    EXPECT_EQ(trial.projectMegMeasureSns3Dto2Dstd(0.0, true), 1);
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
}

// The same in plain loops over lists of its own.
struct Reference
{
    std::vector<PlanePlace> places;
    std::vector<double> plane;
};

Reference referenceMap(const std::vector<ChannelAt>& channels, bool meg, double scale)
{
    std::vector<std::size_t> taking;
    std::vector<std::size_t> measure;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const int type = channels[i].type;
        if (meg ? type == 100 || type == 103 : type == 302 || type == 303)
            measure.push_back(i);
        if (channels[i].hasSensor && (meg ? type == 100 || type == 103 : type == 302))
            taking.push_back(i);
    }
    double low[3] = {DBL_MAX, DBL_MAX, DBL_MAX};
    double high[3] = {-DBL_MAX, -DBL_MAX, -DBL_MAX};
    for (const std::size_t i : taking) {
        const double at[3] = {channels[i].place.x, channels[i].place.y, channels[i].place.z};
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], at[k]);
            high[k] = std::max(high[k], at[k]);
        }
    }
    const double cx = (low[0] + high[0]) * 0.5;
    const double cz = (low[2] + high[2]) * 0.5;
    const double s = low[1] < 0.0 ? -low[1] : 0.0;
    double hmax = 2.2250738585072014e-308;
    for (const std::size_t i : taking)
        hmax = std::max(hmax, channels[i].place.y - s);
    std::vector<PlanePlace> places(channels.size());
    double umin = DBL_MAX;
    double vmin = DBL_MAX;
    for (const std::size_t i : taking) {
        const double d = (channels[i].place.y - s) / hmax + 1.0;
        places[i] = {(channels[i].place.x - cx) / d, (channels[i].place.z - cz) / d};
        umin = std::min(umin, places[i].first);
        vmin = std::min(vmin, places[i].second);
    }
    double bounds[4] = {DBL_MAX, -DBL_MAX, DBL_MAX, -DBL_MAX};
    for (const std::size_t i : measure) {
        places[i].first -= umin;
        places[i].first /= scale;
        places[i].second -= vmin;
        places[i].second /= scale;
        bounds[0] = std::min(bounds[0], places[i].first);
        bounds[1] = std::max(bounds[1], places[i].first);
        bounds[2] = std::min(bounds[2], places[i].second);
        bounds[3] = std::max(bounds[3], places[i].second);
    }
    return {places, {bounds[0], bounds[1], bounds[2], bounds[3], scale}};
}

TEST(StandardMapOfRandomSensors, IsThatOfPlainLoopsToTheBit)
{
    const ScriptedHost host;
    int compared = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::vector<ChannelAt> channels = randomChannels(seed);
        channels.push_back({100, {12.0, 60.0, -8.0}}); // so that nothing is asked
        channels.push_back({302, {-5.0, 70.0, 9.0}});
        CMDTrialzk trial;
        makeSensors(trial, channels);
        const double scale = 0.5 + seed * 0.1;
        ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dstd(scale, true), 1);
        ASSERT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(scale, true), 1);
        const Reference meg = referenceMap(channels, true, scale);
        const Reference eeg = referenceMap(channels, false, scale);
        EXPECT_EQ(megPlaces(trial), meg.places) << seed;
        EXPECT_EQ(planeOf(trial.m_megContour), meg.plane) << seed;
        EXPECT_EQ(eegPlaces(trial), eeg.places) << seed;
        EXPECT_EQ(planeOf(trial.m_eegContour), eeg.plane) << seed;
        ++compared;
    }
    EXPECT_EQ(compared, 60);
}

class StretchedMap : public StandardMap
{
};

TEST_F(StretchedMap, GoesByTheLongerSideAndKeepsTheFactorAlone)
{
    make({{100, {-60.0, 50.0, -20.0}}, {100, {40.0, 50.0, 60.0}}, {302, {}}, {11, {}}});
    ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dstd(0.5, true), 1); // 100 x 80
    trial.getChannel(2)->m_dSns2dX = trial.getChannel(3)->m_dSns2dX = 7.0;
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(300.0), 1);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 300.0, 0.0, 240.0, 3.0));
    EXPECT_THAT(megPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(300.0, 240.0), PlanePlace(7.0, 0.0),
                                              PlanePlace(7.0, 0.0)));
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(150.0), 1);
    EXPECT_EQ(trial.m_megContour.m_dPlaneScale, 0.5);
}

TEST_F(StretchedMap, HeightDecidesWhereItIsTheLongerSide)
{
    make({{100, {0.0, 50.0, -100.0}}, {100, {10.0, 50.0, 100.0}}});
    ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1); // 5 x 100
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(50.0), 1);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 2.5, 0.0, 50.0, 0.5));
}

TEST_F(StretchedMap, OfElectrodesIsTheSameOnTheirPlaces)
{
    make({{302, {-60.0, 50.0, -20.0}}, {302, {40.0, 50.0, 60.0}}, {100, {}}});
    ASSERT_EQ(trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true), 1); // 50 x 40
    trial.getChannel(2)->m_dElct2dX = 7.0;
    EXPECT_EQ(trial.scanEegMeasureSns2Dsz(25.0), 1);
    EXPECT_THAT(planeOf(trial.m_eegContour), ElementsAre(0.0, 25.0, 0.0, 20.0, 0.5));
    EXPECT_THAT(eegPlaces(trial), ElementsAre(PlanePlace(0.0, 0.0), PlanePlace(25.0, 20.0), PlanePlace(7.0, 0.0)));
}

TEST_F(StretchedMap, NeedsAPlaneThatIsDone)
{
    make({{100, {}}, {302, {}}});
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(100.0), 0);
    EXPECT_EQ(trial.scanEegMeasureSns2Dsz(100.0), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Please compute sensor 2D position first!"),
                                             CString("Please compute EEG electrode 2D position first!")));
}

TEST_F(StretchedMap, OfASinglePointGivesZero)
{
    make({{100, {5.0, 5.0, 5.0}}, {600, {}}});
    ASSERT_EQ(trial.projectMegMeasureSns3Dto2Dstd(1.0, true), 1);
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(100.0), 0);
    EXPECT_EQ(trial.m_megContour.m_dPlaneScale, 1.0);
    trial.m_nEegPlaneDone = 1;
    EXPECT_EQ(trial.scanEegMeasureSns2Dsz(100.0), 0);
    trial.m_megContour.m_dPlaneXmax = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(trial.scanMegMeasureSns2Dsz(100.0), 0);
    host.expectNoMessages();
}

} // namespace
} // namespace megset::CMDTrial8ShowStandard_test
