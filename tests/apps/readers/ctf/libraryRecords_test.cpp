#include "apps/readers/ctf/alignFrames.h"
#include "apps/readers/ctf/frames.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::libraryRecords_test {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;

class CtfLibraryRecords : public testing::Test
{
protected:
    Res4 header() const { return parseRes4(m_builder.res4(), "small.res4"); }
    Recording recording() const { return openCtf(m_builder.write(m_folder)); }

    CtfBuilder m_builder;
    TemporaryFolder m_folder;
};

void expectPlace(const CMEGSensor& sensor, int frame, int coil, const Vector& wanted)
{
    Vector place{};
    EXPECT_EQ(sensor.getSnsPos(frame, coil, place[0], place[1], place[2]), 1);
    EXPECT_THAT(place,
                ElementsAre(DoubleNear(wanted[0], 1e-9), DoubleNear(wanted[1], 1e-9), DoubleNear(wanted[2], 1e-9)));
}

void expectOrientation(const CMEGSensor& sensor, int frame, int coil, const Vector& wanted)
{
    Vector direction{};
    EXPECT_EQ(sensor.getSnsOrn(frame, coil, direction[0], direction[1], direction[2]), 1);
    EXPECT_THAT(direction,
                ElementsAre(DoubleNear(wanted[0], 1e-9), DoubleNear(wanted[1], 1e-9), DoubleNear(wanted[2], 1e-9)));
}

TEST(CtfFrames, HeadAxesBecomeLeftUpBackInMm)
{
    EXPECT_EQ(fromHead({10.0, 7.0, 3.0}, 10.0), (Vector{70.0, 30.0, -100.0}));
}

TEST(CtfFrames, TheStandardHeadHasItsEarsAtTheOriginOfTheDewar)
{
    const double eighth = 8.0 * std::sqrt(0.5);
    const Vector nasion = placeFromDewar({eighth, eighth, -27.0});
    EXPECT_THAT(nasion, ElementsAre(DoubleNear(0.0, 1e-9), DoubleNear(0.0, 1e-9), DoubleNear(-80.0, 1e-9)));
    const Vector leftEar = placeFromDewar({-eighth, eighth, -27.0});
    EXPECT_THAT(leftEar, ElementsAre(DoubleNear(80.0, 1e-9), DoubleNear(0.0, 1e-9), DoubleNear(0.0, 1e-9)));
}

TEST(CtfFrames, AlignedFramesTakeTheCoilsToEachOther)
{
    CFiducial from;
    from.getFiducialPt(CFiducial::nasion)->setFidPos(0.0, 0.0, -100.0);
    from.getFiducialPt(CFiducial::leftEar)->setFidPos(70.0, 0.0, 0.0);
    from.getFiducialPt(CFiducial::rightEar)->setFidPos(-70.0, 0.0, 0.0);
    CFiducial to; // turned by a quarter, moved by (1, 2, 3)
    to.getFiducialPt(CFiducial::nasion)->setFidPos(1.0, 102.0, 3.0);
    to.getFiducialPt(CFiducial::leftEar)->setFidPos(71.0, 2.0, 3.0);
    to.getFiducialPt(CFiducial::rightEar)->setFidPos(-69.0, 2.0, 3.0);
    std::array<double, 16> forth{};
    std::array<double, 16> back{};
    ASSERT_TRUE(alignFrames(from, to, forth, back));
    const std::array<double, 16> quarter{1, 0, 0, 1, 0, 0, -1, 2, 0, 1, 0, 3, 0, 0, 0, 1};
    const std::array<double, 16> inverse{1, 0, 0, -1, 0, 0, 1, -3, 0, -1, 0, 2, 0, 0, 0, 1};
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(forth[i], quarter[i], 1e-12) << i;
        EXPECT_NEAR(back[i], inverse[i], 1e-12) << i;
    }
}

TEST(CtfFrames, CoilsOnOneLineAlignNothing)
{
    CFiducial line;
    line.getFiducialPt(CFiducial::nasion)->setFidPos(30.0, 0.0, 0.0);
    line.getFiducialPt(CFiducial::leftEar)->setFidPos(70.0, 0.0, 0.0);
    line.getFiducialPt(CFiducial::rightEar)->setFidPos(-70.0, 0.0, 0.0);
    std::array<double, 16> forth{7.0};
    std::array<double, 16> back{};
    EXPECT_FALSE(alignFrames(line, line, forth, back));
    EXPECT_EQ(forth[0], 7.0);
    line.getFiducialPt(CFiducial::nasion)->setFidPos(0.0, 0.0, 0.0); // nor does a nasion between the ears
    EXPECT_FALSE(alignFrames(line, line, forth, back));
}

TEST_F(CtfLibraryRecords, ChannelTypesFollowTheKinds)
{
    const auto type = [](int sensorType) {
        Channel channel;
        channel.sensorType = sensorType;
        return channelType(channel);
    };
    EXPECT_EQ(type(0), 10);
    EXPECT_EQ(type(1), 11);
    EXPECT_EQ(type(2), 12);
    EXPECT_EQ(type(3), 13);
    EXPECT_EQ(type(4), 100);
    EXPECT_EQ(type(5), 100);
    EXPECT_EQ(type(8), 300);
    EXPECT_EQ(type(9), 302);
    EXPECT_EQ(type(21), 303);
    EXPECT_EQ(type(11), 600);
    EXPECT_EQ(type(20), 600);
    for (const int other : {10, 13, 17, 18, 28, 36})
        EXPECT_EQ(type(other), 400) << other;
}

TEST_F(CtfLibraryRecords, SensorsHaveTheGainsAndModesOfTheRecording)
{
    m_builder.channels[4].order = 3;
    m_builder.coefficients.push_back({"MLC12-1", "G3BR", {{"G11-1", 1.0}}});
    const std::vector<CMEGSensorzk> sensors = librarySensors(header());
    ASSERT_EQ(sensors.size(), 7U);
    const CMEGSensorzk& sensor = sensors[4];
    EXPECT_EQ(sensor.getSensorName(), "MLC12-1");
    EXPECT_EQ(sensor.getSensorTypeName(), "Gradiometer");
    EXPECT_EQ(sensor.m_nChannelType, 100);
    EXPECT_DOUBLE_EQ(sensor.getSnsGainCtf(), -0.1);
    EXPECT_DOUBLE_EQ(sensor.sensorGain(), -5e15);
    EXPECT_EQ(sensor.getGradOrderNo(), 3);
    EXPECT_TRUE(sensor.getRealIdealCoefMode());
    EXPECT_FALSE(sensor.getAdaptiveBalance());
    EXPECT_EQ(sensors[3].getGradOrderNo(), 0);
}

TEST_F(CtfLibraryRecords, AnOrderWithAdaptiveCoefficientsAloneIsAdaptive)
{
    m_builder.channels[4].order = 3;
    m_builder.coefficients.push_back({"MLC12-1", "G3AR", {{"G11-1", 1.0}}});
    EXPECT_TRUE(librarySensors(header())[4].getAdaptiveBalance());
    EXPECT_FALSE(librarySensors(header())[3].getAdaptiveBalance());
    m_builder.coefficients.push_back({"MLC12-1", "G3BR", {{"G11-1", 1.0}}});
    EXPECT_FALSE(librarySensors(header())[4].getAdaptiveBalance());
}

TEST_F(CtfLibraryRecords, CoilsAreInMmInBothFramesAndTheHeadIsAtWork)
{
    const std::vector<CMEGSensorzk> sensors = librarySensors(header());
    const CMEGSensorzk& sensor = sensors[4];
    ASSERT_EQ(sensor.getTotalCoils(), 2);
    expectPlace(sensor, coilFrameHead, 0, {18.0, 160.0, -69.0});
    expectPlace(sensor, coilFrameHead, 1, {22.0, 207.0, -83.0});
    expectPlace(sensor, coilFrameWork, 0, {18.0, 160.0, -69.0});
    const double half = std::sqrt(0.5);
    expectPlace(sensor, coilFrameDewar, 0, {10 * half * (5.5 - 3.9), 158.0, -10 * half * (5.5 + 3.9)});
    EXPECT_EQ(sensor.getCoil(0)->m_dCoilTurns, 2.0);
    EXPECT_NEAR(sensor.getCoil(0)->m_dCoilDiameter, 17.841241, 1e-6); // 2.5 cm^2, round
}

TEST_F(CtfLibraryRecords, DirectionsAreThoseOfPositiveSamples)
{
    const std::vector<CMEGSensorzk> sensors = librarySensors(header());
    expectOrientation(sensors[4], coilFrameHead, 0, {-0.08, -0.96, 0.28}); // a negative gain: as recorded
    expectOrientation(sensors[3], coilFrameHead, 0, {0.08, 0.96, -0.28});
    expectOrientation(sensors[3], coilFrameHead, 1, {-0.08, -0.96, 0.28});
    const double half = std::sqrt(0.5);
    expectOrientation(sensors[3], coilFrameDewar, 0, {-half * (-0.32 + 0.25), 0.91, half * (-0.25 - 0.32)});
}

TEST_F(CtfLibraryRecords, AHeadThatWasNotLocalisedLeavesTheDewarAtWork)
{
    for (CoilText& coil : m_builder.channels[3].coils)
        std::fill(std::begin(coil.head), std::end(coil.head), 0.0);
    const std::vector<CMEGSensorzk> sensors = librarySensors(header());
    EXPECT_EQ(sensors[3].getCoil(0)->m_dCoilHead[3], 0.0);
    const double half = std::sqrt(0.5);
    expectPlace(sensors[3], coilFrameWork, 0, {10 * half * (5.5 - 3.9), 158.0, -10 * half * (5.5 + 3.9)});
}

TEST_F(CtfLibraryRecords, ElectrodesHaveTheirPlaceInTheHead)
{
    const std::vector<CEEGelectrodezk> electrodes = libraryElectrodes(header());
    ASSERT_EQ(electrodes.size(), 1U);
    EXPECT_EQ(electrodes[0].m_strElectrodeName, "EEG001-1");
    EXPECT_EQ(electrodes[0].m_nChannelType, 302);
    EXPECT_EQ(electrodes[0].m_nElectrodeWord, 2);
    EXPECT_EQ(electrodes[0].m_nPosFound, 1);
    EXPECT_EQ(electrodes[0].m_dElectrodePos[0], 31.0);
    EXPECT_EQ(electrodes[0].m_dElectrodePos[1], 74.0);
    EXPECT_EQ(electrodes[0].m_dElectrodePos[2], 97.0);
    EXPECT_EQ(librarySensors(header())[5].m_dSnsGeom[0], 31.0);
}

TEST_F(CtfLibraryRecords, AnElectrodeWithoutPlaceSaysSo)
{
    m_builder.channels[5].coils.clear();
    EXPECT_EQ(libraryElectrodes(header())[0].m_nPosFound, 0);
}

TEST_F(CtfLibraryRecords, RecordingInformationHasCountsTextsAndFilters)
{
    m_builder.averages = 50;
    CMEGRecordInfo info;
    setRecordingInformation(recording().header, info);
    EXPECT_EQ(info.m_nRecTotalSample, 4);
    EXPECT_EQ(info.m_nRawTotalSample, 4);
    EXPECT_EQ(info.m_nRecPreTrigPts, 1);
    EXPECT_EQ(info.m_nRawPreTrigPts, 1);
    EXPECT_EQ(info.m_dRecSampleRate, 600.0);
    EXPECT_EQ(info.m_dRawSampleRate, 600.0);
    EXPECT_EQ(info.m_nResampleFactor, 1);
    EXPECT_EQ(info.m_nAverageCount, 50);
    EXPECT_EQ(info.m_strDbText[0], "s01");
    EXPECT_EQ(info.m_strDbText[1], "an operator");
    EXPECT_EQ(info.m_strDbText[3], "29-Apr-2013");
    EXPECT_EQ(info.m_strDbText[5], "a title");
    EXPECT_EQ(info.m_strDbText[6], "A small recording");
    ASSERT_EQ(info.m_aOnlineFilter.GetSize(), 2);
    EXPECT_EQ(info.m_aOnlineFilter.GetAt(1)->m_dFilterFreq, 50.0);
    EXPECT_EQ(info.m_aOnlineFilter.GetAt(1)->m_nFilterKind, 3);
    EXPECT_EQ(info.m_aOnlineFilter.GetAt(1)->m_filterParam, (std::vector<double>{1.5, 2.5}));
}

TEST_F(CtfLibraryRecords, CoefficientsNameTheChannels)
{
    const std::vector<CCoefficientDatazk> records = libraryCoefficients(header());
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[1].m_strCoefSensorName, "MLC12-1");
    EXPECT_EQ(records[1].m_nCoefType, CCoefficientData::getCoefficientType(1, true, false));
    EXPECT_EQ(records[1].m_nCoefCount, 2);
    EXPECT_EQ(records[1].m_aCoefRefName[1], "G11-1");
    EXPECT_EQ(records[1].m_aCoefValue[1], 2.0);
    EXPECT_EQ(records[1].m_aCoefRefName[2], "");
    EXPECT_EQ(records[1].m_aCoefValue[2], 0.0);
}

TEST_F(CtfLibraryRecords, AReferenceWhoseNameStandsInASensorsFindsItsOwnCoefficientsAlone)
{
    m_builder.channels[2].name = "P11-1";
    m_builder.channels[3].name = "MLP11-1";
    m_builder.coefficients = {{"MLP11-1", "G3BR", {{"P11-1", 0.5}}},
                              {"MLP11-1", "G1BR", {{"BG1-1", 0.5}}},
                              {"P11-1", "G1BR", {{"BG1-1", 0.25}}}};
    const std::vector<CMEGSensorzk> sensors = librarySensors(header());
    const std::vector<CCoefficientDatazk> records = libraryCoefficients(header());
    CCoefficientManagerzk manager;
    manager.addCoefficientsData(static_cast<int>(records.size()), records.data());
    const CString& reference = sensors[2].getSensorName();
    EXPECT_EQ(reference, " P11-1 ");
    EXPECT_EQ(manager.getSensorCoefRecord(reference, 3, true, false), nullptr);
    ASSERT_NE(manager.getSensorCoefRecord(reference, 1, true, false), nullptr);
    EXPECT_EQ(manager.getSensorCoefRecord(reference, 1, true, false)->m_aCoefValue[0], 0.25);
    EXPECT_EQ(sensors[3].getSensorName(), "MLP11-1");
    EXPECT_EQ(manager.getSensorCoefRecord("MLP11-1", 3, true, false)->m_aCoefRefName[0], "P11-1");
}

TEST_F(CtfLibraryRecords, HeadCoilsBecomeFiducialsOfBothFrames)
{
    HeadCoils coils;
    coils.measuredDewar = {Vector{5.0, 5.0, -27.0}, Vector{-5.0, 5.0, -27.0}, Vector{5.0, -5.0, -27.0}};
    coils.measuredHead = {Vector{7.0710678, 0.0, 0.0}, Vector{0.0, 7.0710678, 0.0}, Vector{0.0, -7.0710678, 0.0}};
    CHeadLocalizationzk localization;
    ASSERT_EQ(setHeadLocalization(coils, localization), 1);
    EXPECT_EQ(localization.m_nWorkCoordinate, 2);
    EXPECT_EQ(localization.m_fidHeadMsr.getTotalFound(), 3);
    EXPECT_EQ(localization.m_fidWorkMeg, localization.m_fidHeadMsr);
    double x = 10.0;
    double y = 20.0;
    double z = 30.0;
    localization.dewar2Head(x, y, z); // a head at its standard place
    EXPECT_NEAR(x, 10.0, 1e-6);
    EXPECT_NEAR(y, 20.0, 1e-6);
    EXPECT_NEAR(z, 30.0, 1e-6);
}

TEST_F(CtfLibraryRecords, HeadCoilsThatAreMissingChangeNothing)
{
    HeadCoils coils;
    coils.measuredHead = {Vector{7.0, 0.0, 0.0}, Vector{0.0, 7.0, 0.0}, Vector{0.0, -7.0, 0.0}};
    CHeadLocalizationzk localization;
    const CHeadLocalizationzk before = localization;
    EXPECT_EQ(setHeadLocalization(coils, localization), 0);
    coils.measuredDewar = {Vector{1.0, 0.0, 0.0}, Vector{2.0, 0.0, 0.0}, Vector{3.0, 0.0, 0.0}};
    EXPECT_EQ(setHeadLocalization(coils, localization), 0);
    EXPECT_EQ(localization, before);
}

TEST_F(CtfLibraryRecords, BadSegmentsAreOneMarkerOfTheSegments)
{
    Recording from = recording();
    from.badSegments = {{1, 0.0, 1.0 / 600.0}, {0, -10.0, 10.0}};
    CMarkerManagerzk segments;
    addBadSegments(from, segments);
    EXPECT_EQ(segments.m_strMgrInfo, "Bad_segment");
    ASSERT_EQ(segments.getTotalMarkers(), 1);
    const CMarkerDatazk* const marker = segments.getMarker(0, false);
    EXPECT_EQ(marker->m_nMarkID, 302);
    ASSERT_EQ(marker->getTotalTrgMrkPts(), 2);
    EXPECT_EQ(marker->getMarkPt(0)->m_nMarkPtTrial, 1);
    EXPECT_EQ(marker->getMarkPt(0)->m_nMarkPtBegin, 1); // one sample lies before the trigger
    EXPECT_EQ(marker->getMarkPt(0)->m_nMarkPtEnd, 2);
    EXPECT_DOUBLE_EQ(marker->getMarkPt(0)->m_dMarkPtEnd, 2.0 / 600.0 * 1000.0);
    EXPECT_EQ(marker->getMarkPt(1)->m_nMarkPtBegin, 0); // up to the ends of the trial
    EXPECT_EQ(marker->getMarkPt(1)->m_nMarkPtEnd, 3);
}

TEST_F(CtfLibraryRecords, NoBadSegmentsLeaveTheManagerAlone)
{
    CMarkerManagerzk segments;
    addBadSegments(recording(), segments);
    EXPECT_EQ(segments, CMarkerManagerzk());
}

TEST_F(CtfLibraryRecords, MarkersHaveTheSamplesOfTheirTimes)
{
    Recording from = recording();
    from.markers = {{"beep", "by hand", {{0, -1.0 / 600.0}, {1, 2.0 / 600.0}, {1, 0.5}, {0, -0.5}}}, {"none", "", {}}};
    CMarkerManagerzk markers;
    EXPECT_EQ(addMarkers(from.header, from.markers, markers), 2); // the last two lie outside their trials
    ASSERT_EQ(markers.getTotalMarkers(), 2);
    const CMarkerDatazk* const marker = markers.getMarker(0, false);
    EXPECT_EQ(marker->m_strMarkName, "beep");
    EXPECT_EQ(marker->m_strMarkInfo, "by hand");
    EXPECT_EQ(marker->m_nMarkGroupID, 1);
    EXPECT_EQ(marker->m_nMarkCount, 2);
    ASSERT_EQ(marker->getTotalTrgMrkPts(), 2);
    EXPECT_EQ(marker->getMarkPt(0)->m_nMarkPtBegin, 0);
    EXPECT_EQ(marker->getMarkPt(1)->m_nMarkPtTrial, 1);
    EXPECT_EQ(marker->getMarkPt(1)->m_nMarkPtBegin, 3);
    EXPECT_DOUBLE_EQ(marker->getMarkPt(1)->m_dMarkPtBegin, 2.0 / 600.0 * 1000.0);
    EXPECT_EQ(markers.getMarker(1, false)->m_nMarkID, 1);
}

TEST_F(CtfLibraryRecords, TimesBetweenSamplesAreOfTheNearestOne)
{
    Recording from = recording();
    from.markers = {{"beep", "", {{0, 1.6 / 600.0}, {0, -0.4 / 600.0}, {0, -0.6 / 600.0}}}};
    CMarkerManagerzk markers;
    EXPECT_EQ(addMarkers(from.header, from.markers, markers), 0);
    const CMarkerDatazk* const marker = markers.getMarker(0, false);
    ASSERT_EQ(marker->getTotalTrgMrkPts(), 3);
    EXPECT_EQ(marker->getMarkPt(0)->m_nMarkPtBegin, 3); // one sample lies before the trigger
    EXPECT_EQ(marker->getMarkPt(1)->m_nMarkPtBegin, 1);
    EXPECT_EQ(marker->getMarkPt(2)->m_nMarkPtBegin, 0);
}

} // namespace
} // namespace megset::ctf::libraryRecords_test
