#include "megset/records/results/CGroupMeegCxcFace.h"

#include "tests/kit/recordContract.h"

#include <cmath>

namespace megset::CGroupMeegCxcFace_test {
namespace {

struct GroupCase
{
    using Record = CGroupMeegCxcFacezk;
    static constexpr std::string_view tag = "GROUPMEEGCXCFACEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CGroupMeegCxcFacezk";
    static Record filled()
    {
        CGroupMeegCxcFacezk group;
        group.setSize({10, 11}, {20}, -2, 3);
        group.m_nDataBegin = 5;
        group.m_nDataEnd = 6;
        group.m_aValue = {0.5, -0.75, 0.25, 0.125, -0.5, 0.5};
        return group;
    }
};

using GroupRecords = ::testing::Types<GroupCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(GroupMeegCxc, RecordContract, GroupRecords);

TEST(GroupMeegCxcFace, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("GROUPMEEGCXCFACEZK").i32(20261121).i64(2).i32(10).i32(11).i64(1).i32(20);
    expected.i64(-2).i64(3).i64(5).i64(6).i64(6).doubles({0.5, -0.75, 0.25, 0.125, -0.5, 0.5});
    expectGolden(GroupCase::filled(), expected);
}

TEST(GroupMeegCxcFace, ValuesStandByChannelPairAndLag)
{
    CGroupMeegCxcFacezk group = GroupCase::filled();
    EXPECT_EQ(group.getValue(0, 0, 1), -0.75);
    EXPECT_EQ(group.getValue(1, 0, 0), 0.125);
    EXPECT_EQ(group.setValue(1, 0, 2, 1), 1);
    EXPECT_EQ(group.getValue(1, 0, 2), 1);
    EXPECT_TRUE(std::isnan(group.getValue(0, 1, 0)));
    EXPECT_TRUE(std::isnan(group.getValue(2, 0, 0)));
    EXPECT_EQ(group.setValue(0, 0, 3, 1), 0);
}

TEST(GroupMeegCxcFace, PeakLagIsThatOfTheLargestMagnitude)
{
    const CGroupMeegCxcFacezk group = GroupCase::filled();
    std::int64_t lag = 0;
    double value = 0;
    EXPECT_EQ(group.getPeakLag(0, 0, lag, value), 1);
    EXPECT_EQ(lag, -1);
    EXPECT_EQ(value, -0.75);
    EXPECT_EQ(group.getPeakLag(1, 0, lag, value), 1);
    EXPECT_EQ(lag, -1);
    EXPECT_EQ(value, -0.5);
    EXPECT_EQ(group.getPeakLag(0, 1, lag, value), 0);
    EXPECT_EQ(CGroupMeegCxcFacezk().getPeakLag(0, 0, lag, value), 0);
}

TEST(GroupMeegCxcFace, SizeThatCannotBeMakesItEmpty)
{
    CGroupMeegCxcFacezk group = GroupCase::filled();
    EXPECT_EQ(group.setSize({1, 2}, {3}, 0, INT64_MAX), 0);
    EXPECT_EQ(group, CGroupMeegCxcFacezk());
}

TEST(GroupMeegCxcFace, ValuesThatDoNotFitTheGroupsAreRefused)
{
    CGroupMeegCxcFacezk group = GroupCase::filled();
    group.m_aGroupB.push_back(21);
    CGroupMeegCxcFacezk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { group.serializezk(ar); })), 0);
}

} // namespace
} // namespace megset::CGroupMeegCxcFace_test
