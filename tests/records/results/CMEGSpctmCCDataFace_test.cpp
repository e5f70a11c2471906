#include "megset/records/results/CMEGSpctmCCDataFace.h"

#include "tests/kit/recordContract.h"
#include "tests/records/results/filledAxes.h"

#include <cmath>

namespace megset::CMEGSpctmCCDataFace_test {
namespace {

CMEGSpctmCCTrlDatazk filledData()
{
    CMEGSpctmCCTrlDatazk data;
    data.setSize({7, 8}, 1, 2);
    data.m_nDataBegin = 100;
    data.m_nEdgePt = 12;
    data.m_nTimeStep = 13;
    data.m_dFreqBegin = 4.5;
    data.m_dFreqLinearStep = 0.5;
    data.m_nSelectTimeBegin = 1;
    data.m_nSelectTimeEnd = 14;
    data.m_nSelectFreqBegin = 2;
    data.m_nSelectFreqEnd = 15;
    data.initPlanes(0);
    data.initPlanes(2);
    for (std::size_t i = 0; i < 8; ++i) {
        data.m_aPlane[0][i] = static_cast<double>(i) + 1;
        data.m_aPlane[2][i] = static_cast<double>(i) - 0.5;
    }
    return data;
}

struct DataCase
{
    using Record = CMEGSpctmCCTrlDatazk;
    static constexpr std::string_view tag = "MEGSPCTMCCTRLDATAZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CMEGSpctmCCTrlDatazk";
    static Record filled() { return filledData(); }
};

// The contract's name for the face's serializer.
struct Face : CMEGSpctmCCDataFacezk
{
    int serializezk(CArchive& ar) { return serializeSpctmFace(ar); }
    bool operator==(const Face&) const = default;
};

struct FaceCase
{
    using Record = Face;
    static constexpr std::string_view tag = "MEGSPCTMCCDATAFACEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CMEGSpctmCCDataFacezk";
    static Record filled()
    {
        Face face;
        *face.getCCSpctmTrlData4Class(0, true) = filledData();
        *face.getCCSpctmTrlData4Class(2, true) = filledData();
        return face;
    }
};

using SpctmCCRecords = ::testing::Types<DataCase, FaceCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(SpctmCC, RecordContract, SpctmCCRecords);

// Two channels, one time point, two frequencies; planes 0 and 2 alone.
CMEGSpctmCCTrlDatazk dataOfDistinctFields(std::int32_t firstChannel)
{
    CMEGSpctmCCTrlDatazk data = filledData();
    fillAxes(data);
    data.m_aChannel[0] = firstChannel;
    return data;
}

ByteBuilder dataBytes(std::int32_t firstChannel)
{
    ByteBuilder bytes;
    bytes.wide("MEGSPCTMCCTRLDATAZK").i32(20261121).append(axesBytes(1, 2)).i64(2).i32(firstChannel).i32(8);
    bytes.i64(8).doubles({1, 2, 3, 4, 5, 6, 7, 8}).i64(0);
    return bytes.i64(8).doubles({-0.5, 0.5, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5}).i64(0);
}

TEST(SpctmCCTrlData, IsWrittenFieldByField)
{
    expectGolden(dataOfDistinctFields(7), dataBytes(7));
}

TEST(SpctmCCTrlData, IsWrittenPlaneByPlane)
{
    CMEGSpctmCCTrlDatazk data;
    data.setSize({7}, 1, 1);
    fillAxes(data);
    for (int plane = 0; plane < 4; ++plane) {
        data.initPlanes(plane);
        data.setValue(plane, 0, 0, 0, 0, plane + 1.5);
    }
    ByteBuilder expected;
    expected.wide("MEGSPCTMCCTRLDATAZK").i32(20261121).append(axesBytes(1, 1)).i64(1).i32(7);
    expected.i64(1).f64(1.5).i64(1).f64(2.5).i64(1).f64(3.5).i64(1).f64(4.5);
    expectGolden(data, expected);
}

TEST(SpctmCCDataFace, IsWrittenClassByClass)
{
    Face face;
    ByteBuilder expected;
    expected.wide("MEGSPCTMCCDATAFACEZK").i32(20261121);
    for (const int dataClass : {0, 1, 2}) {
        *face.getCCSpctmTrlData4Class(dataClass, true) = dataOfDistinctFields(20 + dataClass);
        expected.i32(1).append(dataBytes(20 + dataClass));
    }
    expectGolden(face, expected);
}

TEST(SpctmCCDataFace, AClassThatIsAbsentIsItsPresenceWordAlone)
{
    Face face;
    *face.getCCSpctmTrlData4Class(1, true) = dataOfDistinctFields(21);
    ByteBuilder expected;
    expected.wide("MEGSPCTMCCDATAFACEZK").i32(20261121).i32(0).i32(1).append(dataBytes(21)).i32(0);
    expectGolden(face, expected);
}

TEST(SpctmCCTrlData, ValuesStandByChannelPairTimeAndFrequency)
{
    CMEGSpctmCCTrlDatazk data = filledData();
    EXPECT_EQ(data.getValue(0, 0, 0, 0, 1), 2);
    EXPECT_EQ(data.getValue(0, 0, 1, 0, 0), 3);
    EXPECT_EQ(data.getValue(0, 1, 0, 0, 0), 5);
    EXPECT_EQ(data.getValue(2, 1, 1, 0, 1), 6.5);
    EXPECT_EQ(data.setValue(2, 1, 1, 0, 1, 9), 1);
    EXPECT_EQ(data.getValue(2, 1, 1, 0, 1), 9);
}

TEST(SpctmCCTrlData, OutsideAndWithoutPlanesThereIsNoValue)
{
    CMEGSpctmCCTrlDatazk data = filledData();
    EXPECT_TRUE(std::isnan(data.getValue(1, 0, 0, 0, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(4, 0, 0, 0, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(-1, 0, 0, 0, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(0, 2, 0, 0, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(0, 0, 0, 1, 0)));
    EXPECT_EQ(data.setValue(1, 0, 0, 0, 0, 1), 0);
    EXPECT_EQ(data.setValue(5, 0, 0, 0, 0, 1), 0);
    EXPECT_EQ(data.initPlanes(4), 0);
    EXPECT_EQ(data, filledData());
}

TEST(SpctmCCTrlData, SizeThatCannotBeMakesItEmpty)
{
    CMEGSpctmCCTrlDatazk data = filledData();
    EXPECT_EQ(data.setSize({1, 2}, INT64_MAX, 3), 0);
    EXPECT_EQ(data, CMEGSpctmCCTrlDatazk());
    EXPECT_EQ(data.setSize({1}, -1, 3), 0);
}

TEST(SpctmCCTrlData, PlanesOfAnotherSizeAreRefused)
{
    CMEGSpctmCCTrlDatazk data = filledData();
    data.m_aPlane[2].push_back(1);
    CMEGSpctmCCTrlDatazk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { data.serializezk(ar); })), 0);
    EXPECT_TRUE(std::isnan(loaded.getValue(0, 0, 0, 0, 0)));
}

TEST(SpctmCCDataFace, HasASlotPerClass)
{
    CMEGSpctmCCDataFacezk face;
    for (int nClass = 0; nClass < 3; ++nClass) {
        EXPECT_EQ(face.getCCSpctmTrlData4Class(nClass), nullptr);
        CMEGSpctmCCTrlDatazk* made = face.getCCSpctmTrlData4Class(nClass, true);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(face.getCCSpctmTrlData4Class(nClass, true), made);
        EXPECT_EQ(std::as_const(face).getCCSpctmTrlData4Class(nClass), made);
    }
    for (const int nClass : {-1, 3}) {
        EXPECT_EQ(face.getCCSpctmTrlData4Class(nClass, true), nullptr);
        EXPECT_EQ(std::as_const(face).getCCSpctmTrlData4Class(nClass), nullptr);
    }
    EXPECT_EQ(face.cleanAll(), 1);
    EXPECT_EQ(face, CMEGSpctmCCDataFacezk());
}

TEST(SpctmCCDataFace, TimePointIsASampleOfTheClass)
{
    const Face face = FaceCase::filled();
    EXPECT_EQ(face.getSpctmTimePt(0, 0, 0), 112);
    EXPECT_EQ(face.getSpctmTimePt(5, 2, 3), 112);
    EXPECT_EQ(face.getSpctmTimePt(0, 1, 0), -1);
    EXPECT_EQ(face.getSpctmTimePt(0, 3, 0), -1);
}

} // namespace
} // namespace megset::CMEGSpctmCCDataFace_test
