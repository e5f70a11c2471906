#include "megset/records/results/CFaceVirtChnlSpctm.h"

#include "tests/kit/recordContract.h"
#include "tests/records/results/filledAxes.h"

#include <cmath>

namespace megset::CFaceVirtChnlSpctm_test {
namespace {

CVirtChnlSpctmzk filledSpctm()
{
    CVirtChnlSpctmzk spctm;
    spctm.m_strChannelName = "V1";
    spctm.m_bShow = 0;
    spctm.m_dPosition = {1, 2, 3};
    spctm.m_dDirection = {0, 1, 0};
    spctm.m_aPlane[1] = {1, 2, 3, 4};
    spctm.m_aPlane[3] = {5, 6, 7, 8};
    return spctm;
}

struct SpctmCase
{
    using Record = CVirtChnlSpctmzk;
    static constexpr std::string_view tag = "VIRTCHNLSPCTMZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CVirtChnlSpctmzk";
    static Record filled() { return filledSpctm(); }
};

// The contract's name for the face's serializer.
struct Face : CFaceVirtChnlSpctmzk
{
    int serializezk(CArchive& ar) { return serializeSpctmC(ar); }
    bool operator==(const Face&) const = default;
};

struct FaceCase
{
    using Record = Face;
    static constexpr std::string_view tag = "FACEVIRTCHNLSPCTMZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceVirtChnlSpctmzk";
    static Record filled()
    {
        Face face;
        face.m_nTimePt = 2;
        face.m_nFreqPt = 2;
        face.m_nDataBegin = 100;
        face.m_nEdgePt = 5;
        face.m_nTimeStep = 10;
        face.m_dFreqBegin = 4.5;
        face.m_dFreqLinearStep = 0.5;
        face.m_nSelectTimeBegin = 1;
        face.m_nSelectTimeEnd = 2;
        face.m_nSelectFreqBegin = 3;
        face.m_nSelectFreqEnd = 4;
        face.m_nCurrentChannel = 1;
        const CVirtChnlSpctmzk spctm = filledSpctm();
        face.addVirtChnlSpctm(&spctm);
        face.addVirtChnlSpctm(&spctm);
        return face;
    }
};

using VirtSpctmRecords = ::testing::Types<SpctmCase, FaceCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(VirtSpctm, RecordContract, VirtSpctmRecords);

CVirtChnlSpctmzk namedSpctm(const char* name, std::int32_t show)
{
    CVirtChnlSpctmzk spctm = filledSpctm();
    spctm.m_strChannelName = name;
    spctm.m_bShow = show;
    spctm.m_dDirection = {0.25, 0.5, 0.75};
    return spctm;
}

ByteBuilder spctmBytes(const char* name, std::int32_t show)
{
    ByteBuilder bytes;
    bytes.wide("VIRTCHNLSPCTMZK").i32(20261121).wide(name).i32(show).doubles({1, 2, 3, 0.25, 0.5, 0.75});
    return bytes.i64(0).i64(4).doubles({1, 2, 3, 4}).i64(0).i64(4).doubles({5, 6, 7, 8});
}

TEST(VirtChnlSpctm, IsWrittenFieldByField)
{
    expectGolden(namedSpctm("V1", 5), spctmBytes("V1", 5));
}

TEST(VirtChnlSpctm, IsWrittenPlaneByPlane)
{
    CVirtChnlSpctmzk spctm;
    spctm.m_aPlane = {std::vector<double>{1.5}, {2.5}, {3.5}, {4.5}};
    ByteBuilder expected;
    expected.wide("VIRTCHNLSPCTMZK").i32(20261121).wide("").i32(1).zeros(6 * sizeof(double));
    expected.i64(1).f64(1.5).i64(1).f64(2.5).i64(1).f64(3.5).i64(1).f64(4.5);
    expectGolden(spctm, expected);
}

TEST(FaceVirtChnlSpctm, IsWrittenFieldByField)
{
    Face face;
    face.m_nTimePt = 1;
    face.m_nFreqPt = 4;
    fillAxes(face);
    face.m_nCurrentChannel = 2;
    ByteBuilder expected;
    expected.wide("FACEVIRTCHNLSPCTMZK").i32(20261121).append(axesBytes(1, 4)).i64(2).i32(3);
    for (const char* name : {"V1", "V2", "V3"}) {
        const CVirtChnlSpctmzk spctm = namedSpctm(name, 1);
        ASSERT_GE(face.addVirtChnlSpctm(&spctm), 0);
        expected.i32(1).append(spctmBytes(name, 1));
    }
    expectGolden(face, expected);
}

TEST(VirtChnlSpctm, ValuesStandByTimeAndFrequency)
{
    const CVirtChnlSpctmzk spctm = filledSpctm();
    EXPECT_EQ(spctm.getValue(1, 0, 1, 2), 2);
    EXPECT_EQ(spctm.getValue(3, 1, 0, 2), 7);
    EXPECT_TRUE(std::isnan(spctm.getValue(0, 0, 0, 2)));
    EXPECT_TRUE(std::isnan(spctm.getValue(4, 0, 0, 2)));
    EXPECT_TRUE(std::isnan(spctm.getValue(1, 2, 0, 2)));
    EXPECT_TRUE(std::isnan(spctm.getValue(1, 0, 2, 2)));
    EXPECT_TRUE(std::isnan(spctm.getValue(1, -1, 0, 2)));
    EXPECT_TRUE(std::isnan(spctm.getValue(1, INT64_MAX, 0, INT64_MAX)));
    EXPECT_TRUE(std::isnan(spctm.getValue(1, 0, 0, 0)));
}

TEST(FaceVirtChnlSpctm, GivesSpectraByNumber)
{
    const Face face = FaceCase::filled();
    EXPECT_EQ(face.getTotalVirtChnl(), 2);
    EXPECT_EQ(*face.getVirtChnlSpctm(0), filledSpctm());
    EXPECT_EQ(face.getVirtChnlSpctm(-1), face.getVirtChnlSpctm(1));
    EXPECT_EQ(face.getVirtChnlSpctm(2), nullptr);
    EXPECT_EQ(face.getVirtChnlSpctm(INT64_MIN), nullptr);
    EXPECT_EQ(CFaceVirtChnlSpctmzk().getVirtChnlSpctm(-1), nullptr);
}

TEST(FaceVirtChnlSpctm, TimePointIsASampleNumber)
{
    EXPECT_EQ(FaceCase::filled().getSpctmTimePt(1), 115);
    EXPECT_EQ(FaceCase::filled().getSpctmTimePt(2), 115);
}

TEST(FaceVirtChnlSpctm, PlanesOfAnotherSizeAreNotAdded)
{
    Face face = FaceCase::filled();
    CVirtChnlSpctmzk spctm = filledSpctm();
    spctm.m_aPlane[1].pop_back();
    EXPECT_EQ(face.addVirtChnlSpctm(&spctm), -1);
    EXPECT_EQ(face.addVirtChnlSpctm(nullptr), -1);
    EXPECT_EQ(face.getTotalVirtChnl(), 2);
}

TEST(FaceVirtChnlSpctm, PlanesOfAnotherSizeAreRefused)
{
    Face face = FaceCase::filled();
    face.m_aVirtSpctm[1]->m_aPlane[0] = {1};
    Face loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { face.serializeSpctmC(ar); })), 0);
}

} // namespace
} // namespace megset::CFaceVirtChnlSpctm_test
