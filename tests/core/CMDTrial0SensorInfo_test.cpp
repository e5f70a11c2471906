// Sensors of a trial's channels: look-up by name, positions, extents, names.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/kit/ScriptedHost.h"

#include <array>
#include <climits>
#include <cmath>
#include <random>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial0SensorInfo_test {

namespace {

using ::testing::ElementsAre;

using Triple = std::array<double, 3>;
using Six = std::array<double, 6>;

class TrialSensors : public ::testing::Test
{
protected:
    void makeChannels(int n) { ASSERT_EQ(trial.allocateChannels(n), 1); }
    CMDChannelzk& at(int i) { return *trial.getChannel(i); }

    CMEGSensorzk& giveSensor(int i, int type, const Triple& position = {})
    {
        at(i)._initGeomHw(1);
        at(i).setChannelType(type);
        CMEGSensorzk& sensor = *at(i).getMEGSensorzk();
        sensor.setSnsPos(-1, 0, position[0], position[1], position[2]);
        return sensor;
    }
    CEEGelectrodezk& giveElectrode(int i, int type, const Triple& position = {})
    {
        at(i)._initGeomHw(2);
        at(i).setChannelType(type);
        auto& electrode = dynamic_cast<CEEGelectrodezk&>(*at(i).m_pGeomHw);
        electrode.setElectrodePositionD(position[0], position[1], position[2]);
        return electrode;
    }
    void name(int i, const CString& text) { at(i).setChannelName(text, false); }

    static Six extents(const CContourMap2DInfozk& contour)
    {
        return {contour.m_dXmin, contour.m_dXmax, contour.m_dYmin, contour.m_dYmax, contour.m_dZmin, contour.m_dZmax};
    }
    static void markExtents(CContourMap2DInfozk& contour)
    {
        contour.m_dXmin = 1.0;
        contour.m_dXmax = 2.0;
        contour.m_dYmin = 3.0;
        contour.m_dYmax = 5.0;
        contour.m_dZmin = 7.0;
        contour.m_dZmax = 11.0;
    }
    static constexpr Six marked = {1.0, 2.0, 3.0, 5.0, 7.0, 11.0};

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(TrialSensors, TheFirstChannelWhoseNameStandsInTheTextIsFound)
{
    makeChannels(4);
    name(0, "MLA12");
    name(1, "MLA1");
    name(2, "MLA");
    name(3, "C3");
    EXPECT_EQ(trial.getChannelID4Name("MLA1-4503"), 1);
    EXPECT_EQ(trial.findChannel4SensorName("MLA1-4503"), 1);
    EXPECT_EQ(trial.getChannelPt4Name("MLA1-4503"), &at(1));
    EXPECT_EQ(trial.getChannelID4Name("MLA12-4503"), 0);
    EXPECT_EQ(trial.getChannelID4Name("MLA"), 2);
    EXPECT_EQ(trial.getChannelID4Name("EEG C3"), 3);
}

TEST_F(TrialSensors, ANameThatContainsTheTextIsNotFound)
{
    makeChannels(2);
    name(0, "MLA1-4503");
    name(1, "MLA1 ref");
    EXPECT_EQ(trial.getChannelID4Name("MLA1"), -1);
    EXPECT_EQ(trial.findChannel4SensorName("MLA1"), -1);
    EXPECT_EQ(trial.getChannelPt4Name("MLA1"), nullptr);
    // The other look-ups ask the opposite.
    EXPECT_EQ(trial.setCurrentChannel2Name("MLA1"), 0);
}

TEST_F(TrialSensors, LookUpMindsCaseAndTakesTheWorkingName)
{
    makeChannels(2);
    name(0, "mla1");
    at(1).setChannelName("MLA1", true);
    name(1, "X");
    EXPECT_EQ(trial.getChannelID4Name("MLA1"), -1);
    EXPECT_EQ(trial.getChannelID4Name("mla1"), 0);
}

TEST_F(TrialSensors, AChannelWithoutANamePassesAtOnce)
{
    makeChannels(3);
    name(0, "A");
    name(2, "B");
    EXPECT_EQ(trial.getChannelID4Name("B"), 1);
    EXPECT_EQ(trial.getChannelPt4Name(""), &at(1));
}

TEST_F(TrialSensors, LookUpPassesOverEmptyPlacesAndMissesInAnEmptyTrial)
{
    EXPECT_EQ(trial.getChannelID4Name("A"), -1);
    EXPECT_EQ(trial.getChannelPt4Name("A"), nullptr);
    EXPECT_EQ(trial.getReferenceSensorGain("A"), 0.0);
    makeChannels(2);
    trial.m_ppChannel.release(0);
    name(1, "A");
    EXPECT_EQ(trial.getChannelID4Name("A"), 1);
}

TEST_F(TrialSensors, GradientOrderByNameIsAlwaysMinusOne)
{
    EXPECT_EQ(trial.findSensorGradOrderNo("A"), -1);
    makeChannels(1);
    giveSensor(0, 100).setGradOrderNo(3);
    name(0, "A");
    EXPECT_EQ(trial.findSensorGradOrderNo("A"), -1);
    EXPECT_EQ(trial.findSensorGradOrderNo("B"), -1);
}

TEST_F(TrialSensors, ReferenceGainIsThatOfTheFirstNamedChannelWithASensor)
{
    makeChannels(4);
    name(0, "G1");
    CMEGSensorzk& other = giveSensor(1, 10);
    other.m_pSnsCoils.m_dProperGain = 5.0;
    name(1, "P2");
    CMEGSensorzk& sensor = giveSensor(2, 10);
    sensor.m_pSnsCoils.m_dProperGain = 3.0;
    sensor.m_pSnsCoils.m_dQGain = 7.0;
    name(2, "G1");
    giveSensor(3, 10).m_pSnsCoils.m_dProperGain = 11.0;
    name(3, "G1");
    EXPECT_EQ(trial.getReferenceSensorGain("G1-4503"), sensor.sensorGain());
    EXPECT_EQ(trial.getReferenceSensorGain("G1-4503"), 21.0);
    EXPECT_EQ(trial.getReferenceSensorGain("Q"), 0.0);
    EXPECT_EQ(trial.getReferenceSensorGain("G"), 0.0);
}

TEST_F(TrialSensors, PositionIsThatOfTheSensorAndZeroWithoutOne)
{
    makeChannels(3);
    giveSensor(0, 100, {1.0, 2.0, 3.0});
    giveElectrode(1, 302, {4.0, 5.0, 6.0});
    double x = 9.0;
    double y = 9.0;
    double z = 9.0;
    EXPECT_EQ(trial.getChannelPos(0, x, y, z), 1);
    EXPECT_THAT((Triple{x, y, z}), ElementsAre(1.0, 2.0, 3.0));
    EXPECT_EQ(trial.getChannelPos(1, x, y, z), 1);
    EXPECT_THAT((Triple{x, y, z}), ElementsAre(0.0, 0.0, 0.0));
    trial.setCurrentChannel(0);
    EXPECT_EQ(trial.getChannelPos(-1, x, y, z), 1);
    EXPECT_EQ(z, 3.0);
    for (const int index : {3, -2, INT_MAX, INT_MIN}) {
        x = y = z = 9.0;
        EXPECT_EQ(trial.getChannelPos(index, x, y, z), 0);
        EXPECT_THAT((Triple{x, y, z}), ElementsAre(0.0, 0.0, 0.0));
    }
}

TEST_F(TrialSensors, PositionAndDirectionOfAMegSensor)
{
    makeChannels(2);
    giveSensor(1, 101, {1.0, 2.0, 3.0}).setSnsOrn(-1, 0, 0.0, 3.0, 4.0);
    Triple p{9.0, 9.0, 9.0};
    Triple d{9.0, 9.0, 9.0};
    EXPECT_EQ(trial.getChannelPsnDir(p[0], p[1], p[2], d[0], d[1], d[2], 1), 1);
    EXPECT_THAT(p, ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(d, ElementsAre(0.0, 0.6, 0.8)); // of length 1
}

TEST_F(TrialSensors, AnElectrodeHasAPositionAndADirectionOfZeros)
{
    makeChannels(2);
    giveElectrode(0, 310, {4.0, 5.0, 6.0}).m_dElectrodeDir = {1.0, 1.0, 1.0, 1.0};
    Triple p{9.0, 9.0, 9.0};
    Triple d{9.0, 9.0, 9.0};
    EXPECT_EQ(trial.getChannelPsnDir(p[0], p[1], p[2], d[0], d[1], d[2], 0), 1);
    EXPECT_THAT(p, ElementsAre(4.0, 5.0, 6.0));
    EXPECT_THAT(d, ElementsAre(0.0, 0.0, 0.0));
    trial.setCurrentChannel(0);
    EXPECT_EQ(trial.getChannelPsnDir(p[0], p[1], p[2], d[0], d[1], d[2], -1), 1);
}

TEST_F(TrialSensors, OtherChannelsHaveNeitherPositionNorDirection)
{
    makeChannels(4);
    giveSensor(1, 600, {1.0, 1.0, 1.0}); // neither of the two is reached through a trigger channel
    giveElectrode(2, 600, {1.0, 1.0, 1.0});
    at(3)._initGeomHw(4);
    for (const int index : {0, 1, 2, 3, 4, -2, INT_MAX}) {
        Triple p{9.0, 9.0, 9.0};
        Triple d{9.0, 9.0, 9.0};
        EXPECT_EQ(trial.getChannelPsnDir(p[0], p[1], p[2], d[0], d[1], d[2], index), 0) << index;
        EXPECT_THAT(p, ElementsAre(0.0, 0.0, 0.0));
        EXPECT_THAT(d, ElementsAre(0.0, 0.0, 0.0));
    }
}

TEST_F(TrialSensors, SensorAndKindByIndex)
{
    makeChannels(3);
    const CMEGSensorzk& sensor = giveSensor(0, 100);
    giveElectrode(1, 354);
    EXPECT_EQ(trial.getMEGTrialSensorzk(0), &sensor);
    EXPECT_EQ(trial.getMEGTrialSensorzk(1), nullptr);
    EXPECT_EQ(trial.isMEGChannel(0), 1);
    EXPECT_EQ(trial.isEEGChannel(0), 0);
    EXPECT_EQ(trial.isMEGChannel(1), 0);
    EXPECT_EQ(trial.isEEGChannel(1), 1);
    trial.setCurrentChannel(1);
    EXPECT_EQ(trial.isEEGChannel(-1), 1);
    for (const int index : {3, -2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(trial.getMEGTrialSensorzk(index), nullptr);
        EXPECT_EQ(trial.isMEGChannel(index), 0);
        EXPECT_EQ(trial.isEEGChannel(index), 0);
    }
}

TEST_F(TrialSensors, MegExtentsAreThoseOfMeasureChannelsWithASensor)
{
    makeChannels(6);
    giveSensor(0, 100, {1.0, -2.0, 30.0});
    giveSensor(1, 103, {-4.0, 5.0, 20.0});
    giveSensor(2, 10, {100.0, 100.0, 100.0});    // reference
    giveSensor(3, 120, {-100.0, 100.0, -100.0}); // MKG
    at(4).setChannelType(101);                   // without a sensor
    giveElectrode(5, 302, {500.0, 500.0, 500.0});
    EXPECT_EQ(trial.getMeasureMegCoilADimension(), 2);
    EXPECT_THAT(extents(trial.m_megContour), ElementsAre(-4.0, 1.0, -2.0, 5.0, 20.0, 30.0));
    EXPECT_THAT(extents(trial.m_eegContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
}

TEST_F(TrialSensors, MegExtentsAreThoseOfAPlainLoop)
{
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> value(50.0, 150.0); // zero must not stand in the extents
    makeChannels(100);
    Six expected{1e9, -1e9, 1e9, -1e9, 1e9, -1e9};
    for (int i = 0; i < 100; ++i) {
        const Triple position{value(generator), value(generator), -value(generator)};
        giveSensor(i, 100 + i % 4, position);
        for (std::size_t k = 0; k < 3; ++k) {
            expected[2 * k] = std::min(expected[2 * k], position[k]);
            expected[2 * k + 1] = std::max(expected[2 * k + 1], position[k]);
        }
    }
    EXPECT_EQ(trial.getMeasureMegCoilADimension(), 100);
    EXPECT_EQ(extents(trial.m_megContour), expected);
}

TEST_F(TrialSensors, EegExtentsLeaveBipolarAndOtherChannelsOut)
{
    makeChannels(5);
    giveElectrode(0, 302, {1.0, 2.0, 3.0});
    giveElectrode(1, 302, {-1.0, 4.0, 9.0});
    giveElectrode(2, 303, {99.0, 99.0, 99.0});
    giveElectrode(3, 310, {-99.0, 99.0, 99.0});
    giveSensor(4, 100, {77.0, 77.0, 77.0});
    EXPECT_EQ(trial.getMeasureEegElctDimension(), 2);
    EXPECT_THAT(extents(trial.m_eegContour), ElementsAre(-1.0, 1.0, 2.0, 4.0, 3.0, 9.0));
    EXPECT_THAT(extents(trial.m_megContour), ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
}

TEST_F(TrialSensors, ExtentsBecomeZeroWhereNoChannelIsUsed)
{
    makeChannels(2);
    markExtents(trial.m_megContour);
    markExtents(trial.m_eegContour);
    EXPECT_EQ(trial.getMeasureMegCoilADimension(), 0);
    EXPECT_EQ(trial.getMeasureEegElctDimension(), 0);
    EXPECT_THAT(extents(trial.m_megContour), ::testing::Each(0.0));
    EXPECT_THAT(extents(trial.m_eegContour), ::testing::Each(0.0));
}

TEST_F(TrialSensors, ATrialOfOneChannelOrNoneLeavesTheExtents)
{
    markExtents(trial.m_megContour);
    markExtents(trial.m_eegContour);
    for (const int channels : {0, 1}) {
        if (channels == 1) {
            makeChannels(1);
            giveSensor(0, 100, {50.0, 50.0, 50.0});
        }
        EXPECT_EQ(trial.getMeasureMegCoilADimension(), 0);
        EXPECT_EQ(trial.getMeasureEegElctDimension(), 0);
        EXPECT_EQ(extents(trial.m_megContour), marked);
        EXPECT_EQ(extents(trial.m_eegContour), marked);
    }
}

TEST_F(TrialSensors, OneUsedChannelGivesExtentsOfItsPoint)
{
    makeChannels(3);
    trial.m_ppChannel.release(0);
    giveSensor(2, 101, {5.0, 6.0, 7.0});
    EXPECT_EQ(trial.getMeasureMegCoilADimension(), 1);
    EXPECT_THAT(extents(trial.m_megContour), ElementsAre(5.0, 5.0, 6.0, 6.0, 7.0, 7.0));
}

TEST_F(TrialSensors, MegCentreAndSizeComeFromRefreshedExtents)
{
    makeChannels(2);
    markExtents(trial.m_megContour);
    giveSensor(0, 100, {-10.0, 0.0, 30.0});
    giveSensor(1, 101, {20.0, 7.0, 50.0});
    Triple c{};
    Triple d{};
    EXPECT_EQ(trial.getMeasureMegSnsrCntDmn(c[0], c[1], c[2], d[0], d[1], d[2]), 1);
    EXPECT_THAT(c, ElementsAre(5.0, 3.5, 40.0));
    EXPECT_THAT(d, ElementsAre(30.0, 7.0, 20.0));
}

TEST_F(TrialSensors, MegCentreOfATrialOfOneChannelIsThatOfTheExtentsAsTheyWere)
{
    makeChannels(1);
    markExtents(trial.m_megContour);
    Triple c{};
    Triple d{};
    EXPECT_EQ(trial.getMeasureMegSnsrCntDmn(c[0], c[1], c[2], d[0], d[1], d[2]), 1);
    EXPECT_THAT(c, ElementsAre(1.5, 4.0, 9.0));
    EXPECT_THAT(d, ElementsAre(1.0, 2.0, 4.0));
}

class EegArraySize : public TrialSensors
{
protected:
    // Two electrodes whose largest distance along an axis is `size`.
    int measure(double size)
    {
        makeChannels(2);
        giveElectrode(0, 302, {0.0, 0.0, 0.0});
        giveElectrode(1, 302, {size / 2.0, size, size / 4.0});
        return trial.getMeasureEegElctCntDmn(c[0], c[1], c[2], d[0], d[1], d[2]);
    }

    Triple c{9.0, 9.0, 9.0};
    Triple d{9.0, 9.0, 9.0};
};

TEST_F(EegArraySize, UsualSizesAndBothLimitsAskNothing)
{
    for (const double size : {1.0, 1.5, 180.0, 210.0})
        EXPECT_EQ(measure(size), 1) << size;
    EXPECT_TRUE(host.questions().empty());
    EXPECT_THAT(c, ElementsAre(52.5, 105.0, 26.25));
    EXPECT_THAT(d, ElementsAre(105.0, 210.0, 52.5));
}

TEST_F(EegArraySize, SizesOutsideAskAndTheAnswerIsTheResult)
{
    const CString small = "Electrode array size may be out of range in typical EEG 0.999999 (1-210 mm)! Continue?";
    const CString large = "Electrode array size may be out of range in typical EEG 210.000001 (1-210 mm)! Continue?";
    host.willAnswerYes(small);
    EXPECT_EQ(measure(0.999999), 1);
    host.willAnswerNo(small);
    EXPECT_EQ(measure(0.999999), 0);
    host.willAnswerYes(large);
    EXPECT_EQ(measure(210.000001), 1);
    host.willAnswerNo(large);
    EXPECT_EQ(measure(210.000001), 0);
    EXPECT_THAT(host.questions(), ElementsAre(small, small, large, large));
}

TEST_F(EegArraySize, TheNearestNumbersOutsideTheLimitsAsk)
{
    host.willAnswerYes();
    host.willAnswerYes();
    EXPECT_EQ(measure(std::nextafter(1.0, 0.0)), 1);
    EXPECT_EQ(measure(std::nextafter(210.0, 300.0)), 1);
    EXPECT_EQ(host.questions().size(), 2U);
}

TEST_F(EegArraySize, ResultsAreGivenAlsoWhereTheAnswerIsNo)
{
    host.willAnswerNo();
    EXPECT_EQ(measure(400.0), 0);
    EXPECT_THAT(c, ElementsAre(100.0, 200.0, 50.0));
    EXPECT_THAT(d, ElementsAre(200.0, 400.0, 100.0));
}

TEST_F(EegArraySize, ATrialWithoutElectrodesHasSizeZeroAndAsks)
{
    makeChannels(2);
    host.willAnswerNo("Electrode array size may be out of range in typical EEG 0.000000 (1-210 mm)! Continue?");
    EXPECT_EQ(trial.getMeasureEegElctCntDmn(c[0], c[1], c[2], d[0], d[1], d[2]), 0);
    EXPECT_THAT(d, ElementsAre(0.0, 0.0, 0.0));
}

TEST_F(TrialSensors, NamesAreReplacedInOneChannel)
{
    makeChannels(2);
    name(0, "a-b-c");
    name(1, "a-b-c");
    at(1).setChannelName("r-s", true);
    EXPECT_EQ(trial.replaceDataChannlName("-", "+", 0, false), 2);
    EXPECT_EQ(at(0).m_strChannelName, CString("a+b+c"));
    EXPECT_EQ(at(1).m_strChannelName, CString("a-b-c"));
    trial.setCurrentChannel(1);
    EXPECT_EQ(trial.replaceDataChannlName("-", "+", -1, true), 1);
    EXPECT_EQ(at(1).m_strChannelName, CString("r+s"));
    EXPECT_EQ(trial.replaceDataChannlName("none", "+", 0, false), 0);
    for (const int index : {2, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(trial.replaceDataChannlName("-", "+", index, false), -1);
}

TEST_F(TrialSensors, BothNamesAreSetInOneChannel)
{
    makeChannels(2);
    EXPECT_EQ(trial.setMEGSensorName("raw", "working", 1), 1);
    EXPECT_EQ(at(1).m_strChannelNameRaw, CString("raw"));
    EXPECT_EQ(at(1).m_strChannelName, CString("working"));
    EXPECT_TRUE(at(0).m_strChannelName.IsEmpty());
    EXPECT_EQ(trial.setMEGSensorName("r", "w", -1), 1);
    EXPECT_EQ(at(0).m_strChannelName, CString("w"));
    for (const int index : {2, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(trial.setMEGSensorName("r", "w", index), 0);
}

} // namespace

} // namespace megset::CMDTrial0SensorInfo_test
