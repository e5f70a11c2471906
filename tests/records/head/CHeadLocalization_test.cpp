#include "megset/records/head/CHeadLocalization.h"

#include "tests/kit/recordContract.h"

#include <cmath>
#include <limits>

namespace megset::CHeadLocalization_test {
namespace {

CFiducialzk fiducialsAt(double shift)
{
    CFiducialzk fiducials;
    for (int i = 0; i < CFiducial::pointCount; ++i)
        fiducials.getFiducialPt(i)->setFidPos(shift + i, shift, -shift);
    return fiducials;
}

struct HeadCase
{
    using Record = CHeadLocalizationzk;
    static constexpr std::string_view tag = "HEADLOCALIZATIONZK";
    static constexpr std::string_view page = "head.md";
    static constexpr std::string_view name = "CHeadLocalizationzk";
    static Record filled()
    {
        Record head;
        head.m_nWorkCoordinate = 2;
        head.m_fidDewarStd = fiducialsAt(1.0);
        head.m_fidDewarMsr = fiducialsAt(2.0);
        head.m_fidHeadMsr = fiducialsAt(3.0);
        head.m_fidWorkMeg = fiducialsAt(4.0);
        head.m_dDewar2Head.fill(0.5);
        head.m_dHead2Dewar.fill(0.25);
        return head;
    }
};

using HeadTypes = ::testing::Types<HeadCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Head, RecordContract, HeadTypes);

using Point = std::array<double, 3>;

Point toHead(const CHeadLocalization& head, Point p)
{
    head.dewar2Head(p[0], p[1], p[2]);
    return p;
}

Point toDewar(const CHeadLocalization& head, Point p)
{
    head.head2Dewar(p[0], p[1], p[2]);
    return p;
}

void expectNear(const Point& actual, const Point& expected)
{
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-10) << "coordinate " << i;
}

CHeadLocalizationzk measured(const Point& nasion, const Point& left, const Point& right)
{
    CHeadLocalizationzk head;
    head.m_fidDewarMsr.getFiducialPt(CFiducial::nasion)->setFidPos(nasion[0], nasion[1], nasion[2]);
    head.m_fidDewarMsr.getFiducialPt(CFiducial::leftEar)->setFidPos(left[0], left[1], left[2]);
    head.m_fidDewarMsr.getFiducialPt(CFiducial::rightEar)->setFidPos(right[0], right[1], right[2]);
    return head;
}

TEST(CHeadLocalization, WritesTheseBytes)
{
    const CHeadLocalizationzk head = HeadCase::filled();
    ByteBuilder bytes;
    bytes.wide("HEADLOCALIZATIONZK").i32(20261121).i32(2);
    bytes.raw(recordBytes(head.m_fidDewarStd)).raw(recordBytes(head.m_fidDewarMsr));
    bytes.raw(recordBytes(head.m_fidHeadMsr)).raw(recordBytes(head.m_fidWorkMeg));
    bytes.doubles(head.m_dDewar2Head).doubles(head.m_dHead2Dewar);
    EXPECT_TRUE(sameBytes(recordBytes(head), bytes));
}

TEST(CHeadLocalization, NewHeadIsTheStandardHeadInAFrameThatIsTheDewars)
{
    const CHeadLocalizationzk head;
    EXPECT_EQ(head.m_nWorkCoordinate, 0);
    EXPECT_EQ(head.m_fidDewarStd.getFiducialPt(CFiducial::leftEar)->m_dFidPos[0], 75.0);
    EXPECT_EQ(head.m_fidWorkMeg, head.m_fidDewarStd);
    EXPECT_EQ(head.m_fidDewarMsr.getTotalFound(), 0);
    EXPECT_EQ(toHead(head, {1.0, 2.0, 3.0}), (Point{1.0, 2.0, 3.0}));
    EXPECT_EQ(toDewar(head, {1.0, 2.0, 3.0}), (Point{1.0, 2.0, 3.0}));
}

TEST(CHeadLocalization, DefaultsComeBack)
{
    CHeadLocalizationzk head = HeadCase::filled();
    head.initDefaultHeadLocalParams();
    EXPECT_EQ(head, CHeadLocalizationzk());
}

TEST(CHeadLocalization, StandardHeadHasNoTransform)
{
    CHeadLocalizationzk head;
    EXPECT_EQ(head.computeDewar2Head(), 1);
    expectNear(toHead(head, {1.0, 2.0, 3.0}), {1.0, 2.0, 3.0});
}

// The head is moved by (10, 20, 30) and turned to its left by a right angle: its left ear is where its back was.
TEST(CHeadLocalization, MovedAndTurnedHeadIsUndone)
{
    CHeadLocalizationzk head = measured({-90.0, 20.0, 30.0}, {10.0, 20.0, -40.0}, {10.0, 20.0, 100.0});
    ASSERT_EQ(head.computeDewar2Head(), 1);
    expectNear(toHead(head, {10.0, 20.0, 30.0}), {0.0, 0.0, 0.0});
    expectNear(toHead(head, {10.0, 20.0, -40.0}), {70.0, 0.0, 0.0});
    expectNear(toHead(head, {-90.0, 20.0, 30.0}), {0.0, 0.0, -100.0});
    expectNear(toHead(head, {10.0, 150.0, 30.0}), {0.0, 130.0, 0.0});
    expectNear(toDewar(head, {70.0, 0.0, 0.0}), {10.0, 20.0, -40.0});
}

TEST(CHeadLocalization, NasionInFrontOfNoEarMiddleStillLiesAtHeightZero)
{
    CHeadLocalizationzk head = measured({7.0, -15.0, -88.0}, {70.0, 4.0, 9.0}, {-66.0, -3.0, 5.0});
    ASSERT_EQ(head.computeDewar2Head(), 1);
    const Point left = toHead(head, {70.0, 4.0, 9.0});
    const Point right = toHead(head, {-66.0, -3.0, 5.0});
    const Point nasion = toHead(head, {7.0, -15.0, -88.0});
    expectNear(left, {0.5 * std::sqrt(136.0 * 136.0 + 49.0 + 16.0), 0.0, 0.0});
    expectNear(right, {-left[0], 0.0, 0.0});
    EXPECT_NEAR(nasion[1], 0.0, 1e-10);
    EXPECT_LT(nasion[2], -80.0);
    // Distances stay, and the way back is the way there.
    EXPECT_NEAR(std::hypot(nasion[0] - left[0], nasion[1], nasion[2]), std::hypot(63.0, 19.0, 97.0), 1e-10);
    expectNear(toDewar(head, toHead(head, {12.0, -34.0, 56.0})), {12.0, -34.0, 56.0});
}

TEST(CHeadLocalization, AllMeasuredPointsComeAlongIntoTheHeadFrame)
{
    CHeadLocalizationzk head = measured({0.0, 0.0, -90.0}, {70.0, 0.0, 10.0}, {-70.0, 0.0, 10.0});
    head.m_fidDewarMsr.getFiducialPt(CFiducial::inion)->setFidPos(1.0, 2.0, 100.0);
    head.m_fidDewarMsr.getFiducialPt(CFiducial::inion)->m_nFidFound = 1;
    ASSERT_EQ(head.computeDewar2Head(), 1);
    const CFiduciaryPtzk& inion = *head.m_fidHeadMsr.getFiducialPt(CFiducial::inion);
    EXPECT_NEAR(inion.m_dFidPos[2], 90.0, 1e-10);
    EXPECT_EQ(inion.m_nFidFound, 1);
    EXPECT_EQ(head.m_fidDewarMsr.getFiducialPt(CFiducial::inion)->m_dFidPos[2], 100.0);
}

TEST(CHeadLocalization, DirectionsTurnAndDoNotMove)
{
    CHeadLocalizationzk head = measured({-90.0, 20.0, 30.0}, {10.0, 20.0, -40.0}, {10.0, 20.0, 100.0});
    ASSERT_EQ(head.computeDewar2Head(), 1);
    Point direction{0.0, 0.0, -1.0};
    head.dewar2HeadDir(direction[0], direction[1], direction[2]);
    expectNear(direction, {1.0, 0.0, 0.0});
    head.head2DewarDir(direction[0], direction[1], direction[2]);
    expectNear(direction, {0.0, 0.0, -1.0});
}

TEST(CHeadLocalization, PointsOnALineMakeNoFrame)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::array<Point, 3>> useless = {
        {{{0.0, 0.0, 0.0}, {70.0, 0.0, 0.0}, {-70.0, 0.0, 0.0}}},
        {{{30.0, 0.0, 0.0}, {70.0, 0.0, 0.0}, {-70.0, 0.0, 0.0}}},
        {{{0.0, 0.0, -90.0}, {5.0, 5.0, 5.0}, {5.0, 5.0, 5.0}}},
        {{{nan, 0.0, -90.0}, {70.0, 0.0, 0.0}, {-70.0, 0.0, 0.0}}},
        {{{0.0, 0.0, -90.0}, {1e308, 0.0, 0.0}, {-1e308, 0.0, 0.0}}},
    };
    for (const auto& [nasion, left, right] : useless) {
        CHeadLocalizationzk head = measured(nasion, left, right);
        EXPECT_EQ(head.computeDewar2Head(), 0);
        EXPECT_EQ(head.m_dDewar2Head, CHeadLocalizationzk().m_dDewar2Head);
        EXPECT_EQ(head.m_fidHeadMsr, CHeadLocalizationzk().m_fidHeadMsr);
    }
}

} // namespace
} // namespace megset::CHeadLocalization_test
