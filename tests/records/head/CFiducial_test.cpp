#include "megset/records/head/CFiducial.h"

#include "megset/records/head/CSphere.h"

#include "tests/kit/recordContract.h"

namespace megset::CFiducial_test {
namespace {

struct FiduciaryPtCase
{
    using Record = CFiduciaryPtzk;
    static constexpr std::string_view tag = "FIDUCIARYPTZK";
    static constexpr std::string_view page = "head.md";
    static constexpr std::string_view name = "CFiduciaryPtzk";
    static Record filled()
    {
        Record point;
        point.m_strFidName = "nas";
        point.m_dFidPos = {1.0, 2.0, 3.0, 4.0};
        point.m_dFidSize = 6.0;
        point.m_nFidFound = 1;
        point.m_nFidShow = 0;
        return point;
    }
};

struct FiducialCase
{
    using Record = CFiducialzk;
    static constexpr std::string_view tag = "FIDUCIALZK";
    static constexpr std::string_view page = "head.md";
    static constexpr std::string_view name = "CFiducialzk";
    static Record filled()
    {
        Record fiducials;
        for (int i = 0; i < 6; ++i) {
            *fiducials.getFiducialPt(i) = FiduciaryPtCase::filled();
            fiducials.getFiducialPt(i)->m_dFidSize = 10.0 + i;
        }
        fiducials.m_nCurrentFid = 2;
        fiducials.m_nFidSetShow = 0;
        return fiducials;
    }
};

struct SphereCase
{
    using Record = CSpherezk;
    static constexpr std::string_view tag = "SPHEREZK";
    static constexpr std::string_view page = "head.md";
    static constexpr std::string_view name = "CSpherezk";
    static Record filled()
    {
        Record sphere;
        sphere.m_dSphereX = 1.0;
        sphere.m_dSphereY = 2.0;
        sphere.m_dSphereZ = 3.0;
        sphere.m_dSphereRadius = 90.0;
        sphere.m_nSphereID = 4;
        sphere.m_nSphereShow = 0;
        sphere.m_strSphereName = "scalp";
        return sphere;
    }
};

using FiducialTypes = ::testing::Types<FiduciaryPtCase, FiducialCase, SphereCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Fiducials, RecordContract, FiducialTypes);

TEST(CFiducial, PointWritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("FIDUCIARYPTZK").i32(20261121).wide("nas").doubles({1.0, 2.0, 3.0, 4.0}).f64(6.0).i32(1).i32(0);
    EXPECT_TRUE(sameBytes(recordBytes(FiduciaryPtCase::filled()), bytes));
}

TEST(CFiducial, SetWritesSixPointsAndTwoNumbers)
{
    const CFiducialzk fiducials = FiducialCase::filled();
    ByteBuilder bytes;
    bytes.wide("FIDUCIALZK").i32(20261121);
    for (const CFiduciaryPtzk& point : fiducials.m_aFidPt)
        bytes.raw(recordBytes(point));
    bytes.i32(2).i32(0);
    EXPECT_TRUE(sameBytes(recordBytes(fiducials), bytes));
}

TEST(CSphere, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("SPHEREZK").i32(20261121).doubles({1.0, 2.0, 3.0, 90.0}).i32(4).i32(0).wide("scalp");
    EXPECT_TRUE(sameBytes(recordBytes(SphereCase::filled()), bytes));
}

TEST(CFiducial, BrokenPointEndsTheSet)
{
    ScriptedHost host;
    ByteBuilder bytes;
    bytes.wide("FIDUCIALZK").i32(20261121).wide("FIDUCIARYPT").i32(20261121);
    CFiducialzk fiducials;
    EXPECT_EQ(loadRecord(fiducials, bytes.bytes()), 0);
    EXPECT_THAT(host.messages(), ::testing::ElementsAre("FIDUCIARYPTZK: The record is of another kind or corrupted!"));
}

TEST(CFiducial, PositionIsSetAndReadWithoutTheFourthNumber)
{
    CFiduciaryPtzk point;
    point.setFidPos(1.0, -2.0, 3.0);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    point.getFidPos(x, y, z);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, -2.0);
    EXPECT_EQ(z, 3.0);
    EXPECT_EQ(point.m_dFidPos[3], 1.0);
}

TEST(CFiducial, NewSetHasSixNamesAndNoPositions)
{
    const CFiducialzk fiducials;
    std::vector<std::string> names;
    for (const CFiduciaryPtzk& point : fiducials.m_aFidPt) {
        names.push_back(point.m_strFidName.toUtf8());
        EXPECT_EQ(point.m_dFidPos, (std::array<double, 4>{0.0, 0.0, 0.0, 1.0}));
    }
    EXPECT_THAT(names, ::testing::ElementsAre("Nasion (Nz)", "Left Ear (LPA, Left Preauricular)",
                                              "Right Ear (RPA, Right Preauricular)", "Inion (Iz)", "Vertex (Cz)",
                                              "Forehead (Fpz)"));
    EXPECT_EQ(fiducials.getTotalFound(), 0);
}

TEST(CFiducial, NamesHoldTheWordsOfCommonLists)
{
    const CFiducialzk fiducials;
    const std::vector<std::pair<int, CString>> words = {
        {CFiducial::nasion, "nasion"},
        {CFiducial::nasion, "nas"},
        {CFiducial::leftEar, "left"},
        {CFiducial::leftEar, "lpa"},
        {CFiducial::rightEar, "rpa"},
        {CFiducial::inion, "inion"},
        {CFiducial::leftEar, "left preauricular"},
        {CFiducial::vertex, "cz"},
        {CFiducial::forehead, "fpz"},
    };
    for (const auto& [number, word] : words) {
        for (int i = 0; i < CFiducial::pointCount; ++i) {
            CString name = fiducials.getFiducialPt(i)->m_strFidName;
            EXPECT_EQ(name.MakeLower().Find(word) >= 0, i == number) << word << " in " << name;
        }
    }
}

TEST(CFiducial, PointsOutsideTheSixAreNull)
{
    CFiducialzk fiducials;
    EXPECT_EQ(fiducials.getFiducialPt(-1), nullptr);
    EXPECT_EQ(fiducials.getFiducialPt(6), nullptr);
    EXPECT_EQ(fiducials.getFiducialPt(5), &fiducials.m_aFidPt[5]);
    EXPECT_EQ(std::as_const(fiducials).getFiducialPt(6), nullptr);
}

TEST(CFiducial, SettingAPointUpGivesItsStandardPlaceAndNoMeasurement)
{
    CFiducialzk fiducials = FiducialCase::filled();
    EXPECT_EQ(fiducials.getTotalFound(), 6);
    EXPECT_EQ(fiducials.setUpFiducialPoint(CFiducial::leftEar), 1);
    const CFiduciaryPtzk& left = *fiducials.getFiducialPt(1);
    EXPECT_EQ(left.m_dFidPos, (std::array<double, 4>{75.0, 0.0, 0.0, 4.0}));
    EXPECT_EQ(left.m_strFidName, CString("Left Ear (LPA, Left Preauricular)"));
    EXPECT_EQ(left.m_nFidFound, 0);
    EXPECT_EQ(fiducials.getTotalFound(), 5);
    EXPECT_EQ(fiducials.getFiducialPt(0)->m_strFidName, CString("nas"));
}

TEST(CFiducial, MinusOneSetsAllPointsUp)
{
    CFiducialzk fiducials = FiducialCase::filled();
    EXPECT_EQ(fiducials.setUpFiducialPoint(-1), 1);
    EXPECT_EQ(fiducials.getTotalFound(), 0);
    EXPECT_EQ(fiducials.getFiducialPt(CFiducial::nasion)->m_dFidPos[2], -100.0);
    EXPECT_EQ(fiducials.getFiducialPt(CFiducial::vertex)->m_dFidPos[1], 130.0);
    EXPECT_EQ(fiducials.setUpFiducialPoint(6), 0);
    EXPECT_EQ(fiducials.setUpFiducialPoint(-2), 0);
}

} // namespace
} // namespace megset::CFiducial_test
