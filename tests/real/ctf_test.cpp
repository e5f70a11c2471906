// The real recording of a CTF system, held against what MNE-Python 1.3.0 reads from it.

#include "apps/readers/ctf/libraryRecords.h"

#include "tests/kit/npy.h"
#include "tests/kit/realData.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <fstream>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::ctf_test {
namespace {

using testing::IsEmpty;

class RealCtf : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto data = realDataFolder();
        if (!data)
            GTEST_SKIP() << noRealData;
        m_folder = *data / "ctf";
    }

    Recording open() const { return openCtf(m_folder / "testdata_ctf_short_discontinuous.ds"); }
    nlohmann::json expected() const
    {
        return nlohmann::json::parse(std::ifstream(m_folder / "expected" / "expected.json"));
    }

    std::filesystem::path m_folder;
};

std::string kindName(Kind kind)
{
    switch (kind) {
    case Kind::reference:
        return "ref_meg";
    case Kind::meg:
        return "mag"; // what MNE-Python names these gradiometers
    case Kind::eeg:
        return "eeg";
    case Kind::stimulus:
        return "stim";
    default:
        return "misc";
    }
}

// Of MNE-Python's unit in ours.
double perUnit(Kind kind)
{
    if (kind == Kind::reference || kind == Kind::meg)
        return 1e15;
    return kind == Kind::eeg ? 1e6 : 1.0;
}

TEST_F(RealCtf, HasTheExpectedChannelsInOrder)
{
    const Recording recording = open();
    const nlohmann::json channels = expected()["channels"];
    ASSERT_EQ(recording.header.channels.size(), channels.size());
    for (std::size_t i = 0; i < channels.size(); ++i) {
        EXPECT_EQ(recording.header.channels[i].name, channels[i]["name"]);
        EXPECT_EQ(kindName(recording.header.channels[i].kind()), channels[i]["type"]);
    }
}

TEST_F(RealCtf, HasTheExpectedRateAndTrials)
{
    const Recording recording = open();
    EXPECT_EQ(recording.header.sampleRate, expected()["sampling_rate_hz"]);
    EXPECT_EQ(recording.header.samples, expected()["samples_per_trial"]);
    EXPECT_EQ(recording.trials(), expected()["trials"]);
    EXPECT_EQ(recording.header.preTriggerPts, -2400); // the trials begin 2 s behind the trigger
    EXPECT_EQ(recording.header.averages, 0);
    EXPECT_EQ(recording.header.coefficients.size(), 1393U);
    EXPECT_THAT(recording.warnings, IsEmpty());
    EXPECT_THAT(recording.badChannels, IsEmpty());
    EXPECT_THAT(recording.badSegments, IsEmpty());
    EXPECT_THAT(recording.badTrials(), IsEmpty());
}

TEST_F(RealCtf, SamplesAgreeInTheUnitsOfTheLibrary)
{
    Recording recording = open();
    const NpyMatrix grade0 = readNpy(m_folder / "expected" / "grade0.npy");
    const auto samples = static_cast<std::size_t>(recording.header.samples);
    ASSERT_EQ(grade0.rows, recording.header.channels.size());
    ASSERT_EQ(grade0.columns, samples * static_cast<std::size_t>(recording.trials()));
    std::vector<std::int32_t> block(recording.data.trialSize());
    for (std::size_t trial = 0; trial < static_cast<std::size_t>(recording.trials()); ++trial) {
        recording.data.readTrial(static_cast<int>(trial), block);
        for (std::size_t c = 0; c < grade0.rows; ++c) {
            const Channel& channel = recording.header.channels[c];
            for (std::size_t i = 0; i < samples; ++i) {
                const double wanted = grade0.row(c)[trial * samples + i] * perUnit(channel.kind());
                const double value = block[c * samples + i] * channel.unitsPerInteger();
                ASSERT_LE(std::abs(value - wanted), 1e-9 * std::abs(wanted)) << channel.name << ", sample " << i;
            }
        }
    }
}

struct DewarPlace
{
    const char* name;
    Vector position;  // m, MNE-Python's device frame
    Vector direction; // where a positive field makes positive samples
};

// Ten sensors as MNE-Python has them: x to the right, y to the front, z up, the origin 19 cm below the dewar's.
constexpr std::array<DewarPlace, 10> dewarPlaces = {{
    {"BG1-4304",
     {0.06731656556895932, -0.06731656556895932, 0.19},
     {-0.7071067811865476, -0.7071067811865476, 6.153102855459935e-10}},
    {"BR1-4304",
     {-0.06731656556895932, 0.06731656556895932, 0.19},
     {-0.7071067811865476, -0.7071067811865476, 2.0510342851533115e-10}},
    {"G11-4304",
     {0.0951765727477093, -0.03945655839020935, 0.19},
     {-0.7071067811865476, -0.7071067811865476, 6.153102855459935e-10}},
    {"MLC11-4304",
     {-0.011172287142747456, 0.0668923015002474, 0.07800000000000001},
     {-0.04463296541727621, 0.4042803427871804, 0.9135454574535087}},
    {"MLF25-4304",
     {-0.0814891067842813, 0.08114545288862464, -0.01100000000000001},
     {-0.8740869125809249, 0.4845142871239846, 0.0348994960921196}},
    {"MRO53-4304",
     {0.0640638743755012, -0.10564175310927021, -0.066},
     {0.6155677075797579, -0.7878907353916178, 0.017452405824347025}},
    {"MRT31-4304",
     {0.08676200205158938, 0.07162991693419726, -0.04300000000000001},
     {0.9057556885254371, 0.4223608148312793, 0.03489949568216491}},
    {"MZC02-4304",
     {-0.000509116882454314, 0.013081475451951131, 0.0954},
     {-0.005496044269606745, 0.2248839045832604, 0.9743700646862944}},
    {"MZP01-4304",
     {-0.0006363961030678919, -0.10656099192481272, 0.048000000000000015},
     {4.3952036454797394e-10, -0.8571673011939069, 0.5150380740915707}},
    {"G23-4304",
     {0.06735192092513945, -0.06735192089089787, 0.18999999999192918},
     {-2.9006005029560193e-10, -2.9006005029560193e-10, -1.0}},
}};

const CMEGSensorzk& sensorNamed(const std::vector<CMEGSensorzk>& sensors, const CString& name)
{
    for (const CMEGSensorzk& sensor : sensors)
        if (sensor.getSensorName() == name)
            return sensor;
    throw std::runtime_error("no sensor " + name.toUtf8());
}

Vector positionOf(const CMEGSensorzk& sensor, int frame, int coil)
{
    Vector place{};
    EXPECT_EQ(sensor.getSnsPos(frame, coil, place[0], place[1], place[2]), 1);
    return place;
}

// Of a planar gradiometer MNE-Python gives the middle between its coils.
Vector placeOf(const CMEGSensorzk& sensor, int frame)
{
    Vector place = positionOf(sensor, frame, 0);
    if (sensor.getSensorName() == "G23-4304") {
        const Vector second = positionOf(sensor, frame, 1);
        for (std::size_t axis = 0; axis < 3; ++axis)
            place[axis] = (place[axis] + second[axis]) / 2.0;
    }
    return place;
}

Vector directionOf(const CMEGSensorzk& sensor, int frame)
{
    Vector direction{};
    EXPECT_EQ(sensor.getSnsNmlDir(frame, 0, direction[0], direction[1], direction[2]), 1);
    return direction;
}

void expectNear(const Vector& actual, const Vector& wanted, double tolerance, const std::string& what)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], wanted[axis], tolerance) << what << ", axis " << axis;
}

// Ours has x to the left, y up, z to the back, and its origin between the ears of the standard head: 8 cm lower.
Vector inLibraryDewar(const Vector& v, double unit, double lift)
{
    return {-unit * v[0], unit * v[2] + lift, -unit * v[1]};
}

TEST_F(RealCtf, PlacesAndDirectionsInTheDewarAgree)
{
    const std::vector<CMEGSensorzk> sensors = librarySensors(open().header);
    for (const DewarPlace& wanted : dewarPlaces) {
        const CMEGSensorzk& sensor = sensorNamed(sensors, wanted.name);
        expectNear(placeOf(sensor, coilFrameDewar), inLibraryDewar(wanted.position, 1000.0, 80.0), 1e-9, wanted.name);
        expectNear(directionOf(sensor, coilFrameDewar), inLibraryDewar(wanted.direction, 1.0, 0.0), 1e-9, wanted.name);
    }
}

// From MNE-Python's device frame to the head's, which it works out from the three coils; rows of x, y, z, move in m.
constexpr std::array<std::array<double, 4>, 3> deviceToHead = {{
    {0.0048277637125876335, 0.9907787943878974, -0.13540337251634277, 0.013329243786499266},
    {-0.9993606377400586, 0.009577224073782607, 0.034446952184829766, 0.00364729447170858},
    {0.03542609819495807, 0.13515049896431983, 0.9901915643936665, 0.07365712439212219},
}};

// The head frame has x to the nose, y to the left, z up.
Vector inLibraryHead(const Vector& v, double unit, bool moves)
{
    Vector head{};
    for (std::size_t row = 0; row < 3; ++row)
        head[row] = deviceToHead[row][0] * v[0] + deviceToHead[row][1] * v[1] + deviceToHead[row][2] * v[2] +
                    (moves ? deviceToHead[row][3] : 0.0);
    return {unit * head[1], unit * head[2], -unit * head[0]};
}

// The coils' places are given to a thousandth of a millimetre, so that no more can be asked at the far references.
TEST_F(RealCtf, PlacesAndDirectionsInTheHeadAgree)
{
    const std::vector<CMEGSensorzk> sensors = librarySensors(open().header);
    for (const DewarPlace& wanted : dewarPlaces) {
        const CMEGSensorzk& sensor = sensorNamed(sensors, wanted.name);
        for (const int frame : {int{coilFrameHead}, int{coilFrameWork}}) {
            expectNear(placeOf(sensor, frame), inLibraryHead(wanted.position, 1000.0, true), 0.01, wanted.name);
            expectNear(directionOf(sensor, frame), inLibraryHead(wanted.direction, 1.0, false), 1e-4, wanted.name);
        }
    }
}

TEST_F(RealCtf, GradiometersAreAxial)
{
    const Recording recording = open();
    const std::vector<CMEGSensorzk> sensors = librarySensors(recording.header);
    int gradiometers = 0;
    for (const CMEGSensorzk& sensor : sensors) {
        if (sensor.m_nChannelType != 100)
            continue;
        ++gradiometers;
        EXPECT_EQ(sensor.isAxialGrad(), 1) << sensor.getSensorName().toUtf8();
        EXPECT_NEAR(sensor.getCoilBaseLine(), 50.0, 1.0) << sensor.getSensorName().toUtf8();
        EXPECT_EQ(sensor.getGradOrderNo(), 0);
    }
    EXPECT_EQ(gradiometers, 273);
}

TEST_F(RealCtf, FiducialsTieDewarAndHeadTogether)
{
    const Recording recording = open();
    CHeadLocalizationzk localization;
    ASSERT_EQ(setHeadLocalization(recording.coils, localization), 1);
    for (const CMEGSensorzk& sensor : librarySensors(recording.header)) {
        if (sensor.m_nChannelType < 10 || sensor.m_nChannelType > 200)
            continue;
        Vector place = positionOf(sensor, coilFrameDewar, 0);
        localization.dewar2Head(place[0], place[1], place[2]);
        expectNear(place, positionOf(sensor, coilFrameHead, 0), 0.01, sensor.getSensorName().toUtf8());
    }
}

TEST_F(RealCtf, ElectrodesAreWhereTheyWereRecorded)
{
    const std::vector<CEEGelectrodezk> electrodes = libraryElectrodes(open().header);
    ASSERT_EQ(electrodes.size(), 8U);
    EXPECT_EQ(electrodes[0].m_strElectrodeName, "EEG057");
    Vector place{};
    electrodes[0].getElectrodePositionD(place[0], place[1], place[2]);
    expectNear(place, {31.4317, 73.5818, 96.6737}, 1e-9, "EEG057");
}

TEST_F(RealCtf, HasItsHeadCoils)
{
    const HeadCoils coils = open().coils;
    EXPECT_EQ(coils.standardDewar.nasion, (Vector{5.65685, 5.65685, -27.0}));
    EXPECT_EQ(coils.measuredDewar.leftEar, (Vector{-6.88573, 4.21237, -25.8999}));
    EXPECT_EQ(coils.measuredHead.rightEar, (Vector{-0.356369, -7.95147, 0.0}));
    EXPECT_TRUE(coils.measuredHead.isComplete());
}

} // namespace
} // namespace megset::ctf::ctf_test
