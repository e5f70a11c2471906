// Who a channel is: type numbers, kinds, names, and its sensor or electrode.

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <array>
#include <climits>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace megset::CMDChannel0SensorInfo_test {

namespace {

template <class Record>
Record& giveGeometry(CMDChannelzk& channel, int geomType)
{
    auto record = std::make_unique<Record>();
    Record& geometry = *record;
    channel.m_pGeomHw = std::move(record);
    channel.m_nGeomType = geomType;
    return geometry;
}

struct Kind
{
    std::string name;
    std::function<int(const CMDChannelzk&)> test;
    std::vector<std::pair<int, int>> ranges; // first and last type of the kind
};

const std::vector<Kind>& kinds()
{
    static const std::vector<Kind> table = {
        {"isMEGChannel", &CMDChannelzk::isMEGChannel, {{10, 200}}},
        {"isMEGMeasureChannel", &CMDChannelzk::isMEGMeasureChannel, {{100, 103}}},
        {"isMEGReferenceChannel", &CMDChannelzk::isMEGReferenceChannel, {{10, 13}}},
        {"isMKGChannel", &CMDChannelzk::isMKGChannel, {{120, 140}}},
        {"isMKGMeasureChannel", &CMDChannelzk::isMKGMeasureChannel, {{120, 120}}},
        {"isMKGReferenceChannel", &CMDChannelzk::isMKGReferenceChannel, {{140, 140}}},
        {"isEEGChannel", &CMDChannelzk::isEEGChannel, {{300, 354}}},
        {"isEEGMeasureChannel", &CMDChannelzk::isEEGMeasureChannel, {{302, 302}, {303, 303}}},
        {"isEEGReferenceChannel", &CMDChannelzk::isEEGReferenceChannel, {{300, 300}}},
        {"isEKGChannel", &CMDChannelzk::isEKGChannel, {{330, 330}}},
        {"isIeegChannel", &CMDChannelzk::isIeegChannel, {{340, 340}}},
        {"isSeegChannel", &CMDChannelzk::isSeegChannel, {{350, 350}}},
        {"isTriggerChannel", &CMDChannelzk::isTriggerChannel, {{600, 600}}},
        {"isMEG_EEG_Channel", &CMDChannelzk::isMEG_EEG_Channel, {{10, 200}, {300, 354}}},
        {"isMXG_EXG_Channel", &CMDChannelzk::isMXG_EXG_Channel, {{9, 209}, {299, 309}}},
    };
    return table;
}

std::set<int> typesOf(const Kind& kind)
{
    std::set<int> types;
    for (const auto& [first, last] : kind.ranges)
        for (int type = first; type <= last; ++type)
            types.insert(type);
    return types;
}

TEST(ChannelKind, EveryTypeFromMinusOneToThousandIsOfTheKindsOfItsRow)
{
    CMDChannelzk channel;
    for (const Kind& kind : kinds()) {
        const std::set<int> types = typesOf(kind);
        for (int type = -1; type <= 1000; ++type) {
            channel.m_nChannelType = type;
            ASSERT_EQ(kind.test(channel), types.contains(type) ? 1 : 0) << kind.name << " of type " << type;
        }
    }
}

TEST(ChannelKind, TypesFarOutsideAreOfNoKind)
{
    CMDChannelzk channel;
    for (const int type : {INT_MIN, INT_MIN + 100, -200, -10, 4000, INT_MAX}) {
        channel.m_nChannelType = type;
        for (const Kind& kind : kinds())
            EXPECT_EQ(kind.test(channel), 0) << kind.name << " of type " << type;
    }
}

TEST(ChannelKind, EveryChannelPassesAsQuaternionChannel)
{
    CMDChannelzk channel;
    for (const int type : {-1, 0, 100, 302, 600, 904}) {
        channel.m_nChannelType = type;
        EXPECT_EQ(channel.isNeuromagQuaternionChnl(), 1);
    }
}

TEST(ChannelKind, ANewChannelIsOfNoKindAndHasNoSensor)
{
    const CMDChannelzk channel;
    for (const Kind& kind : kinds())
        EXPECT_EQ(kind.test(channel), 0) << kind.name;
    EXPECT_EQ(channel.getMEGSensorzk(), nullptr);
    EXPECT_EQ(channel.getEegElectrode(0), nullptr);
    EXPECT_EQ(channel.getEegElectrode(1), nullptr);
    EXPECT_EQ(channel.getMEGCoilzk(0), nullptr);
}

TEST(ChannelKind, ANewChannelHasTheDefaultsOfItsIdentity)
{
    const CMDChannelzk channel;
    EXPECT_EQ(channel.getChannelTypeName(), CString("None"));
    EXPECT_EQ(channel.getChannelType(), -1);
    EXPECT_EQ(channel.getGeomType(), 0);
    EXPECT_EQ(channel.m_pGeomHw, nullptr);
    EXPECT_EQ(channel.m_nMegBalMode, 0);
    EXPECT_EQ(channel.m_nMegChnlNumBal, 0);
    EXPECT_EQ(channel.getMegBalInf(), nullptr);
    EXPECT_EQ(channel.m_nSnsGainApplied, 0);
    EXPECT_EQ(channel.m_nChnlParamD, 0);
    EXPECT_EQ(channel.m_nChnlParamE, 1);
    EXPECT_EQ(channel.m_nChnlParamF, 1);
    EXPECT_EQ(channel.m_nChnlParamG, 0);
    EXPECT_EQ(channel.m_nMegListID, -1);
    EXPECT_EQ(channel.m_nEegListID, -1);
    EXPECT_EQ(channel.m_nChnlRangeState, -1);
    EXPECT_EQ(channel.m_dPhysicalMax, 0.0);
    EXPECT_TRUE(channel.m_strChannelName.IsEmpty());
    EXPECT_TRUE(channel.m_strChannelNameRaw.IsEmpty());
    EXPECT_EQ(channel.m_pShowShrink, nullptr);
    EXPECT_EQ(channel.m_pWorkEvent, nullptr);
}

TEST(ChannelTypeConversion, NineTypesHaveARowAndAllOthersRowTen)
{
    const std::set<std::pair<int, int>> rows = {{300, 0}, {301, 1}, {302, 2}, {303, 3}, {310, 4},
                                                {320, 5}, {330, 6}, {340, 7}, {350, 8}};
    for (int type = -1; type <= 1000; ++type) {
        int expected = 10;
        for (const auto& [known, row] : rows)
            expected = known == type ? row : expected;
        ASSERT_EQ(CMDChannelzk::chnlType2eegType(type), expected) << type;
    }
    EXPECT_EQ(CMDChannelzk::chnlType2eegType(354), 10);
}

TEST(ChannelTypeConversion, NineRowsHaveATypeAndAllOthersType354)
{
    const std::array types = {300, 301, 302, 303, 310, 320, 330, 340, 350};
    for (int row = -3; row <= 20; ++row) {
        const bool known = row >= 0 && row < 9;
        EXPECT_EQ(CMDChannelzk::eegType2ChnlType(row), known ? types.at(static_cast<std::size_t>(row)) : 354) << row;
    }
    EXPECT_EQ(CMDChannelzk::eegType2ChnlType(INT_MIN), 354);
    EXPECT_EQ(CMDChannelzk::eegType2ChnlType(INT_MAX), 354);
}

TEST(ChannelTypeConversion, EightTypesAreDrawnUnlessSomebodySaysOtherwise)
{
    const std::set<int> drawn = {100, 101, 102, 103, 300, 302, 303, 600};
    for (int type = -1; type <= 1000; ++type)
        ASSERT_EQ(CMDChannelzk::getShow4SensorType01(type), drawn.contains(type)) << type;
}

TEST(ChannelType, TypesUpTo4000AreStored)
{
    CMDChannelzk channel;
    for (const int type : {0, 10, 302, 904, 4000}) {
        EXPECT_EQ(channel.setChannelType(type), 1);
        EXPECT_EQ(channel.getChannelType(), type);
    }
}

TEST(ChannelType, TypesAbove4000AndNegativeOnesChangeNothing)
{
    CMDChannelzk channel;
    channel.setChannelType(302);
    for (const int type : {4001, INT_MAX, -1, -2, INT_MIN}) {
        EXPECT_EQ(channel.setChannelType(type), 0);
        EXPECT_EQ(channel.getChannelType(), 302);
    }
}

TEST(ChannelType, GeometryTypesOneToFourAreStoredAndOthersChangeNothing)
{
    CMDChannelzk channel;
    for (int type = 1; type <= 4; ++type) {
        EXPECT_EQ(channel.setGeomType(type), 1);
        EXPECT_EQ(channel.getGeomType(), type);
    }
    for (const int type : {0, 5, -1, 6, INT_MAX, INT_MIN}) {
        EXPECT_EQ(channel.setGeomType(type), 0);
        EXPECT_EQ(channel.getGeomType(), 4);
    }
}

TEST(ChannelName, TypeNameIsFreeText)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.setChannelTypeName("any text"), 1);
    EXPECT_EQ(channel.getChannelTypeName(), CString("any text"));
}

TEST(ChannelName, SensorTypeNameIsTheWorkingName)
{
    CMDChannelzk channel;
    channel.setChannelTypeName("Gradiometer");
    channel.setChannelName("raw", true);
    channel.setChannelName("MLA1", false);
    EXPECT_EQ(channel.getSensorTypeName(), CString("MLA1"));
}

TEST(ChannelName, RawAndWorkingNameAreSetApart)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.setChannelName("as recorded", true), 1);
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("as recorded"));
    EXPECT_TRUE(channel.m_strChannelName.IsEmpty());
    EXPECT_EQ(channel.setChannelName("working", false), 1);
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("as recorded"));
    EXPECT_EQ(channel.m_strChannelName, CString("working"));
}

TEST(ChannelName, EveryOccurrenceIsReplacedAndCounted)
{
    CMDChannelzk channel;
    channel.setChannelName("EEG-A-REF", true);
    channel.setChannelName("a-b-c", false);
    EXPECT_EQ(channel.replaceDataChannlName("-", "__", false), 2);
    EXPECT_EQ(channel.m_strChannelName, CString("a__b__c"));
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("EEG-A-REF"));
    EXPECT_EQ(channel.replaceDataChannlName("nowhere", "x", false), 0);
    EXPECT_EQ(channel.replaceDataChannlName("", "x", false), 0);
    EXPECT_EQ(channel.m_strChannelName, CString("a__b__c"));
}

TEST(ChannelName, ReplacementFromRawBeginsAtTheRawName)
{
    CMDChannelzk channel;
    channel.setChannelName("EEG-A-REF", true);
    channel.setChannelName("other", false);
    EXPECT_EQ(channel.replaceDataChannlName("-REF", "", true), 1);
    EXPECT_EQ(channel.m_strChannelName, CString("EEG-A"));
    EXPECT_EQ(channel.replaceDataChannlName("nowhere", "", true), 0);
    EXPECT_EQ(channel.m_strChannelName, CString("EEG-A-REF"));
}

TEST(ChannelSensor, OnlyGeometryTypeOneGivesTheSensor)
{
    CMDChannelzk channel;
    CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    EXPECT_EQ(channel.getMEGSensorzk(), &sensor);
    for (const int type : {0, 2, 3, 4, 5}) {
        channel.m_nGeomType = type;
        EXPECT_EQ(channel.getMEGSensorzk(), nullptr);
    }
}

TEST(ChannelSensor, AGeometryTypeThatItsObjectIsNotOfGivesNothing)
{
    CMDChannelzk channel;
    giveGeometry<CEEGelectrodezk>(channel, 2);
    channel.setChannelType(302);
    channel.setGeomType(1);
    EXPECT_EQ(channel.getMEGSensorzk(), nullptr);
    EXPECT_EQ(channel.getEegElectrode(0), nullptr);
    giveGeometry<CMEGSensorzk>(channel, 1);
    channel.setGeomType(2);
    EXPECT_EQ(channel.getEegElectrode(1), nullptr);
    channel.initData(3, true);
    channel.setGeomType(4);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0);
}

TEST(ChannelSensor, GainIsNotAppliedThroughAnObjectOfAnotherClass)
{
    CMDChannelzk channel;
    channel.initData(3, true);
    giveGeometry<CMisceSnsrzk>(channel, 4);
    channel.setGeomType(1);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0);
    EXPECT_EQ(channel.m_nSnsGainApplied, 0);
}

TEST(ChannelSensor, CoilsComeFromTheSensorAndAreNullPastItsEnd)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.getMEGCoilzk(0), nullptr);
    CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    sensor.m_pSnsCoils.m_aCoils.resize(2);
    EXPECT_EQ(channel.getMEGCoilzk(0), sensor.getCoil(0));
    EXPECT_EQ(channel.getMEGCoilzk(1), sensor.getCoil(1));
    EXPECT_NE(channel.getMEGCoilzk(0), nullptr);
    EXPECT_EQ(channel.getMEGCoilzk(2), nullptr);
    EXPECT_EQ(channel.getMEGCoilzk(-1), nullptr);
}

TEST(ChannelSensor, AnElectrodeIsGivenForEegTypesAndStrictlyForType302Alone)
{
    CMDChannelzk channel;
    CEEGelectrodezk& electrode = giveGeometry<CEEGelectrodezk>(channel, 2);
    for (int type = -1; type <= 1000; ++type) {
        channel.m_nChannelType = type;
        ASSERT_EQ(channel.getEegElectrode(0), type >= 300 && type <= 354 ? &electrode : nullptr) << type;
        ASSERT_EQ(channel.getEegElectrode(1), type == 302 ? &electrode : nullptr) << type;
    }
}

TEST(ChannelSensor, PositionAtWorkIsThatOfTheFirstCoilWhateverCoilIsAskedFor)
{
    CMDChannelzk channel;
    double x = 7.0;
    double y = 8.0;
    double z = 9.0;
    EXPECT_EQ(channel.getSnsCoilWkCpyXYZ(0, x, y, z), 0);
    CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    sensor.m_pSnsCoils.m_aCoils.resize(2);
    sensor.setSnsPos(-1, 0, 1.0, 2.0, 3.0);
    sensor.setSnsPos(-1, 1, 4.0, 5.0, 6.0);
    for (const int coil : {0, 1, -1, 99}) {
        EXPECT_EQ(channel.getSnsCoilWkCpyXYZ(coil, x, y, z), 1);
        EXPECT_EQ(x, 1.0);
        EXPECT_EQ(y, 2.0);
        EXPECT_EQ(z, 3.0);
    }
}

TEST(ChannelSensor, InitSensorBasicMakesASensorOnceAndSetsItUp)
{
    CMDChannelzk channel;
    int turns[] = {5};
    double position[] = {1.0, 2.0, 3.0};
    double direction[] = {0.0, 0.0, 1.0};
    EXPECT_EQ(channel.initSensorBasic(77, 101, "S1", "axial", 3, turns, position, direction, nullptr, nullptr), 1);
    EXPECT_EQ(channel.getChannelType(), 101);
    EXPECT_EQ(channel.getGeomType(), 1);
    CMEGSensorzk* sensor = channel.getMEGSensorzk();
    ASSERT_NE(sensor, nullptr);
    CMEGSensorzk expected;
    expected.initSensorBasic(77, "S1", "axial", 3, turns, position, direction, nullptr, nullptr);
    EXPECT_EQ(*sensor, expected);
    EXPECT_EQ(channel.initSensorBasic(78, 102, "S2", "axial", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(channel.getMEGSensorzk(), sensor);
    EXPECT_EQ(channel.getChannelType(), 102);
    EXPECT_EQ(sensor->m_nSnsWordC, 78);
    EXPECT_EQ(sensor->m_strSensorName, CString("S2"));
}

TEST(ChannelSensor, InitSensorBasicPassesOnThatTheSensorRefusedTheArrays)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.initSensorBasic(1, 101, "S", "T", -1, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(channel.getChannelType(), 101);
    EXPECT_NE(channel.getMEGSensorzk(), nullptr);
}

TEST(ChannelSensor, InitSensorBasicMakesASensorInPlaceOfAnotherGeometry)
{
    CMDChannelzk channel;
    giveGeometry<CEEGelectrodezk>(channel, 2);
    EXPECT_EQ(channel.initSensorBasic(1, 101, "S", "T", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(channel.getGeomType(), 1);
    EXPECT_NE(channel.getMEGSensorzk(), nullptr);
}

TEST(ChannelSensor, InitSensorBasicWithoutMemoryIsSilentAndLeavesTheGeometry)
{
    const ScriptedHost host;
    CMDChannelzk channel;
    const CEEGelectrodezk& electrode = giveGeometry<CEEGelectrodezk>(channel, 2);
    const FailingAllocator none(1);
    EXPECT_EQ(channel.initSensorBasic(1, 101, "S", "T", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(channel.getChannelType(), 101);
    EXPECT_EQ(channel.getGeomType(), 2);
    EXPECT_EQ(channel.m_pGeomHw.get(), &electrode);
    host.expectNoMessages();
}

TEST(ChannelSensor, InitSensorInfoMakesANewSensorForAMegType)
{
    CMDChannelzk channel;
    giveGeometry<CMEGSensorzk>(channel, 1).m_strSensorName = "old";
    EXPECT_EQ(channel.initSensorInfo(4, 100, 1, 2, 1.5, 2.5, 3.5, 4.5), 1);
    ASSERT_NE(channel.getMEGSensorzk(), nullptr);
    CMEGSensorzk expected;
    expected.initSensorInfo(4, 100, 1, 2, 1.5, 2.5, 3.5, 4.5);
    EXPECT_EQ(*channel.getMEGSensorzk(), expected);
    EXPECT_EQ(channel.getChannelType(), 100);
    EXPECT_EQ(channel.getGeomType(), 1);
}

TEST(ChannelSensor, InitSensorInfoOfAnotherTypeUsesTheSensorThatIsThere)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.initSensorInfo(4, 302, 1, 2, 1.5, 2.5, 3.5, 4.5), 0);
    EXPECT_EQ(channel.getChannelType(), 302);
    EXPECT_EQ(channel.m_pGeomHw, nullptr);
    CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    sensor.m_strSensorName = "stays";
    EXPECT_EQ(channel.initSensorInfo(4, 600, 1, 2, 1.5, 2.5, 3.5, 4.5), 1);
    EXPECT_EQ(channel.getMEGSensorzk(), &sensor);
    EXPECT_EQ(sensor.m_strSensorName, CString("stays"));
    EXPECT_EQ(sensor.m_nSnsWordA, 4);
}

TEST(ChannelSensor, InitSensorInfoWithoutMemoryGivesZeroAndLeavesTheOldSensor)
{
    const ScriptedHost host;
    CMDChannelzk channel;
    const CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    const FailingAllocator none(1);
    EXPECT_EQ(channel.initSensorInfo(4, 101, 1, 2, 1.5, 2.5, 3.5, 4.5), 0);
    EXPECT_EQ(channel.getMEGSensorzk(), &sensor);
    EXPECT_EQ(channel.getChannelType(), 101);
    host.expectNoMessages();
}

TEST(ChannelSensor, NoiseReductionIsConfirmedForTheSensorsOwnOrderAlone)
{
    CMDChannelzk channel;
    const CCoefficientDatazk data;
    EXPECT_EQ(channel.setGradientNoiseReduction(0, &data), 0);
    CMEGSensorzk& sensor = giveGeometry<CMEGSensorzk>(channel, 1);
    for (int stored = 0; stored <= 3; ++stored) {
        sensor.setGradOrderNo(stored);
        for (const int order : {INT_MIN, -1, 0, 1, 2, 3, 4, INT_MAX}) {
            EXPECT_EQ(channel.setGradientNoiseReduction(order, &data), order == stored ? 1 : 0);
            EXPECT_EQ(channel.setGradientNoiseReduction(order, nullptr), 0);
        }
        EXPECT_EQ(sensor.getGradOrderNo(), stored);
    }
    sensor.m_nGradOrderNo = 4;
    EXPECT_EQ(channel.setGradientNoiseReduction(4, &data), 0);
}

} // namespace

} // namespace megset::CMDChannel0SensorInfo_test
