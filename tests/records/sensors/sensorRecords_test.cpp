// The contract of every sensor record, and the bytes of each, field by field.

#include "megset/records/records.h"

#include "tests/kit/recordContract.h"

#include <numeric>

namespace megset::sensorRecords_test {
namespace {

using ::testing::ElementsAre;

// first, first + 1, first + 2 ...
template <std::size_t n>
std::array<double, n> ramp(double first)
{
    std::array<double, n> values{};
    std::iota(values.begin(), values.end(), first);
    return values;
}

template <class Coil>
void fillCoil(Coil& coil, double first)
{
    coil.m_strCoilName = "MLC11-1";
    coil.m_dCoilHead = ramp<16>(first);
    coil.m_dCoilDewar = ramp<16>(first + 20.0);
    coil.m_dCoilWork = ramp<16>(first + 40.0);
    coil.m_dCoilDiameter = 20.0;
    coil.m_dCoilTurns = -2.0;
    coil.m_dCoilMatrix = ramp<72>(first + 60.0);
    coil.m_nCoilPoints = 18;
    coil.m_nCoilShape = 1;
}

template <class Coil>
Coil filledCoil(double first)
{
    Coil coil;
    fillCoil(coil, first);
    return coil;
}

CMagVaporzk filledCell(double first)
{
    auto cell = filledCoil<CMagVaporzk>(first);
    cell.m_nVaporAxes = 2;
    cell.m_nVaporMode = 1;
    cell.m_dVaporMatrix = ramp<72>(first + 200.0);
    cell.m_nVaporPoints = 7;
    return cell;
}

template <class Sensor>
Sensor withGains()
{
    Sensor sensor;
    sensor.m_strGrdName = "grd";
    sensor.m_dProperGain = -5e8;
    sensor.m_dQGain = 1048576.0;
    sensor.m_dIOGain = 0.5;
    sensor.m_dIOOffset = 12.0;
    sensor.m_bRealIdealCoefMode = true;
    sensor.m_bAdaptiveBalance = true;
    return sensor;
}

struct CoilCase
{
    using Record = CBscMagSnszk;
    static constexpr std::string_view tag = "BSCMAGSNSZK";
    static constexpr std::string_view page = "sensors.md";
    static constexpr std::string_view name = "CBscMagSnszk";
    static Record filled() { return filledCoil<CBscMagSnszk>(1.0); }
};

struct MagCoilCase : CoilCase
{
    using Record = CMagCoilzk;
    static constexpr std::string_view name = "CMagCoilzk";
    static Record filled() { return filledCoil<CMagCoilzk>(1.0); }
};

struct VaporCase : CoilCase
{
    using Record = CMagVaporzk;
    static constexpr std::string_view tag = "MAGVAPORZK";
    static constexpr std::string_view name = "CMagVaporzk";
    static Record filled() { return filledCell(1.0); }
};

struct SquidCase : CoilCase
{
    using Record = CMegSquidzk;
    static constexpr std::string_view tag = "MEGSQUIDZK";
    static constexpr std::string_view name = "CMegSquidzk";
    static Record filled()
    {
        auto squid = withGains<CMegSquidzk>();
        squid.m_aCoils = {filledCoil<CMagCoilzk>(1.0), CMagCoilzk()};
        return squid;
    }
};

struct OpmCase : CoilCase
{
    using Record = CMegOpmzk;
    static constexpr std::string_view tag = "MEGOPMZK";
    static constexpr std::string_view name = "CMegOpmzk";
    static Record filled()
    {
        auto opm = withGains<CMegOpmzk>();
        opm.m_aCells = {CMagVaporzk(), filledCell(5.0)};
        return opm;
    }
};

struct MegSensorCase : CoilCase
{
    using Record = CMEGSensorzk;
    static constexpr std::string_view tag = "MEGSENSORZK";
    static constexpr std::string_view name = "CMEGSensorzk";
    static Record filled()
    {
        Record sensor;
        sensor.m_nGeomValue = 101;
        sensor.m_nSnsValueA = 102;
        sensor.m_strSensorName = "MLC11";
        sensor.m_strSensorTypeName = "axial";
        sensor.m_strSensorCoilTypeName = "round";
        sensor.m_nSnsWordA = 103;
        sensor.m_nChannelType = 100;
        sensor.m_nGradOrderNo = 3;
        sensor.m_nSnsWordB = 104;
        sensor.m_pSnsCoils = SquidCase::filled();
        sensor.m_dSnsGeom = ramp<12>(300.0);
        sensor.m_nSnsWordC = 105;
        sensor.m_nSnsWordD = 106;
        sensor.m_nSnsValueB = 107;
        sensor.m_dSnsGeomWork = ramp<12>(400.0);
        return sensor;
    }
};

struct ElectrodeCase : CoilCase
{
    using Record = CEEGelectrodezk;
    static constexpr std::string_view tag = "EEGELECTRODEZK";
    static constexpr std::string_view name = "CEEGelectrodezk";
    static Record filled()
    {
        Record electrode;
        electrode.m_nGeomValue = 9;
        electrode.m_strElectrodeLabel = "E1";
        electrode.m_strElectrodeName = "CZ";
        electrode.m_strElectrodeStd = "CZ1";
        electrode.m_dElectrodePos = {1, 2, 3, 4};
        electrode.m_dElectrodeDir = {5, 6, 7, 8};
        electrode.m_dImpedance = 4.5;
        electrode.m_nElectrodeID = 11;
        electrode.m_nChannelType = 301;
        electrode.m_nElectrodeWord = 1;
        electrode.m_nNameSet = 1;
        electrode.m_nPosFound = 2;
        electrode.m_nSeegProbeID = 3;
        electrode.m_nSeegContactID = 4;
        return electrode;
    }
};

struct StimCase : CoilCase
{
    using Record = CStimTrigzk;
    static constexpr std::string_view tag = "STIMTRIGZK";
    static constexpr std::string_view name = "CStimTrigzk";
    static Record filled()
    {
        Record trigger;
        trigger.m_nGeomValue = 9;
        trigger.m_strTrigName = "UPPT001";
        trigger.m_strTrigTypeName = "digital";
        trigger.m_nTrigID = 2;
        trigger.m_nChannelType = 601;
        trigger.m_nTrigMode = 1;
        trigger.m_aTrigBegin = {100, std::int64_t{1} << 40};
        trigger.m_nTrigCurrent = 1;
        trigger.m_strTrigCode = "left";
        trigger.m_nTrigValue = 16;
        trigger.m_nTrigMask = 255;
        trigger.m_nTrigMinSamples = 3;
        trigger.m_strTrigNote = "note";
        trigger.m_aTrigLevel = {0.5, 2.5};
        return trigger;
    }
};

struct MisceCase : CoilCase
{
    using Record = CMisceSnsrzk;
    static constexpr std::string_view tag = "MISCESNSRZK";
    static constexpr std::string_view name = "CMisceSnsrzk";
    static Record filled()
    {
        Record sensor;
        sensor.m_nGeomValue = 9;
        sensor.m_strSnsName = "HADC001";
        sensor.m_strSnsTypeName = "adc";
        return sensor;
    }
};

struct AcceleratorCase : CoilCase
{
    using Record = CSensorAcceleratorzk;
    static constexpr std::string_view tag = "SENSORACCELERATORZK";
    static constexpr std::string_view name = "CSensorAcceleratorzk";
    static Record filled()
    {
        Record sensor;
        sensor.m_nGeomValue = 9;
        sensor.m_nAccelID = 3;
        sensor.m_nAccelAxis = 2;
        sensor.m_strAccelName = "ACC";
        sensor.m_strAccelTypeName = "mems";
        return sensor;
    }
};

struct AnalogCase : CoilCase
{
    using Record = CSensorAnalogzk;
    static constexpr std::string_view tag = "SENSORANALOGZK";
    static constexpr std::string_view name = "CSensorAnalogzk";
    static Record filled()
    {
        Record sensor;
        sensor.m_nGeomValue = 9;
        sensor.m_dAnalogScale = 0.25;
        sensor.m_strAnalogName = "AI0";
        sensor.m_strAnalogUnit = "mV";
        return sensor;
    }
};

} // namespace

using MagneticRecords = ::testing::Types<CoilCase, MagCoilCase, VaporCase, SquidCase, OpmCase, MegSensorCase>;
using ElectricRecords = ::testing::Types<ElectrodeCase, StimCase, MisceCase, AcceleratorCase, AnalogCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Magnetic, RecordContract, MagneticRecords);
INSTANTIATE_TYPED_TEST_SUITE_P(Electric, RecordContract, ElectricRecords);

namespace {

template <std::size_t n>
ByteBuilder& addRamp(ByteBuilder& bytes, double first)
{
    return bytes.doubles(ramp<n>(first));
}

ByteBuilder coilFields(double first)
{
    ByteBuilder bytes;
    bytes.wide("MLC11-1");
    addRamp<16>(bytes, first);
    addRamp<16>(bytes, first + 20.0);
    addRamp<16>(bytes, first + 40.0);
    bytes.f64(20.0).f64(-2.0).i32(1);
    addRamp<72>(bytes, first + 60.0);
    return bytes.i32(18).i32(1);
}

ByteBuilder coilBytes(double first)
{
    return ByteBuilder().wide("BSCMAGSNSZK").i32(20261121).append(coilFields(first));
}

// A coil as it is made: no name, no places, one winding, no points.
ByteBuilder newCoilFields()
{
    return ByteBuilder().wide("").zeros(3 * 16 * 8).f64(0.0).f64(1.0).i32(0).i32(0).i32(0);
}

ByteBuilder newCoilBytes()
{
    return ByteBuilder().wide("BSCMAGSNSZK").i32(20261121).append(newCoilFields());
}

ByteBuilder cellBytes(double first)
{
    ByteBuilder bytes;
    bytes.wide("MAGVAPORZK").i32(20261121).append(coilFields(first)).i32(2).i32(1).i32(1);
    return addRamp<72>(bytes, first + 200.0).i32(7);
}

ByteBuilder gainBytes()
{
    return ByteBuilder().wide("grd").f64(-5e8).f64(1048576.0).f64(0.5).f64(12.0).i32(1).i32(1);
}

ByteBuilder squidBytes()
{
    return ByteBuilder()
        .wide("MEGSQUIDZK")
        .i32(20261121)
        .append(gainBytes())
        .i32(2)
        .append(coilBytes(1.0))
        .append(newCoilBytes());
}

TEST(SensorRecordBytes, OfACoil)
{
    EXPECT_TRUE(sameBytes(recordBytes(CoilCase::filled()), coilBytes(1.0)));
    EXPECT_TRUE(sameBytes(recordBytes(CBscMagSnszk()), newCoilBytes()));
}

TEST(SensorRecordBytes, OfAVapourCell)
{
    EXPECT_TRUE(sameBytes(recordBytes(VaporCase::filled()), cellBytes(1.0)));
}

TEST(SensorRecordBytes, OfASquidSensor)
{
    EXPECT_TRUE(sameBytes(recordBytes(SquidCase::filled()), squidBytes()));
}

TEST(SensorRecordBytes, OfAnOpticallyPumpedSensor)
{
    ByteBuilder newCell;
    newCell.wide("MAGVAPORZK").i32(20261121).append(newCoilFields()).i32(1).i32(0).i32(0).i32(0);
    ByteBuilder expected;
    expected.wide("MEGOPMZK").i32(20261121).append(gainBytes()).i32(2).append(newCell).append(cellBytes(5.0));
    expectGolden(OpmCase::filled(), expected);
}

TEST(SensorRecordBytes, OfAMegSensor)
{
    ByteBuilder expected;
    expected.wide("MEGSENSORZK").i32(20261121).i64(101).i64(102).wide("MLC11").wide("axial").wide("round");
    expected.i32(103).i32(100).i32(3).i32(104).append(squidBytes());
    addRamp<12>(expected, 300.0).i32(105).i32(106).i64(107);
    addRamp<12>(expected, 400.0);
    expectGolden(MegSensorCase::filled(), expected);
}

TEST(SensorRecordBytes, OfAnElectrode)
{
    ByteBuilder expected;
    expected.wide("EEGELECTRODEZK").i32(20261121).i64(9).wide("E1").wide("CZ").wide("CZ1");
    expected.doubles({1, 2, 3, 4, 5, 6, 7, 8, 4.5}).i32(11).i32(301).i32(1).i32(1).i32(2).i32(3).i32(4);
    expectGolden(ElectrodeCase::filled(), expected);
}

TEST(SensorRecordBytes, OfATriggerInput)
{
    ByteBuilder expected;
    expected.wide("STIMTRIGZK").i32(20261121).i64(9).wide("UPPT001").wide("digital").i32(2).i32(601).i32(1);
    expected.i32(2).i64(100).i64(std::int64_t{1} << 40).i32(1).wide("left").i32(16).i32(255).i32(3).wide("note");
    expected.i32(2).f64(0.5).f64(2.5);
    expectGolden(StimCase::filled(), expected);
}

TEST(SensorRecordBytes, OfTheOtherInputs)
{
    EXPECT_TRUE(sameBytes(recordBytes(MisceCase::filled()),
                          ByteBuilder().wide("MISCESNSRZK").i32(20261121).i64(9).wide("HADC001").wide("adc")));
    EXPECT_TRUE(sameBytes(
        recordBytes(AcceleratorCase::filled()),
        ByteBuilder().wide("SENSORACCELERATORZK").i32(20261121).i64(9).i32(3).i32(2).wide("ACC").wide("mems")));
    EXPECT_TRUE(sameBytes(recordBytes(AnalogCase::filled()),
                          ByteBuilder().wide("SENSORANALOGZK").i32(20261121).i64(9).f64(0.25).wide("AI0").wide("mV")));
}

TEST(SensorRecordBytes, MorePointsThanThereIsRoomForAreRefused)
{
    for (const int points : {-1, 19}) {
        CBscMagSnszk coil;
        CBscMagSnszk broken = CoilCase::filled();
        broken.m_nCoilPoints = points;
        const std::vector<std::byte> bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(broken.serializezk(ar), 0); });
        EXPECT_EQ(loadRecord(coil, bytes), 0);
        CMagVaporzk cell;
        cell.m_nVaporPoints = points;
        storedBytes([&](CArchive& ar) { EXPECT_EQ(cell.serializezk(ar), 0); });
    }
}

TEST(SensorRecordBytes, ABadCoilRefusesTheWholeSensor)
{
    const ScriptedHost host;
    ByteBuilder bytes;
    bytes.wide("MEGSQUIDZK").i32(20261121).append(gainBytes()).i32(2).append(coilBytes(1.0)).wide("MAGVAPORZK");
    CMegSquidzk squid;
    EXPECT_EQ(loadRecord(squid, bytes.zeros(2000).bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre("BSCMAGSNSZK: The record is of another kind or corrupted!"));
}

TEST(SensorRecordBytes, ACountThatTheFileCannotHoldEndsWithTheFile)
{
    const ScriptedHost host;
    const ByteBuilder head = ByteBuilder().wide("MEGSQUIDZK").i32(20261121).append(gainBytes());
    CMegSquidzk squid;
    EXPECT_THROW(loadRecord(squid, ByteBuilder(head).i32(0x7FFFFFFF).append(coilBytes(1.0)).bytes()),
                 CArchiveException);
    EXPECT_EQ(squid.m_aCoils.size(), 2U);
    EXPECT_EQ(loadRecord(squid, ByteBuilder(head).i32(-1).bytes()), 1);
    EXPECT_TRUE(squid.m_aCoils.empty());
}

TEST(GeometryObject, IsDestroyedThroughItsBase)
{
    const std::unique_ptr<CGeomzk> geometry = std::make_unique<CMEGSensorzk>(MegSensorCase::filled());
    EXPECT_EQ(geometry->m_nGeomValue, 101);
    EXPECT_NE(dynamic_cast<CMEGSensor*>(geometry.get()), nullptr);
}

} // namespace
} // namespace megset::sensorRecords_test
