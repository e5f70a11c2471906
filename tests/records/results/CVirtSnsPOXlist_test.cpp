#include "megset/records/results/CVirtSnsPOXlist.h"

#include "tests/kit/recordContract.h"

#include <cmath>

namespace megset::CVirtSnsPOXlist_test {
namespace {

struct PoxCase
{
    using Record = CVirtSnsPOXlistzk;
    static constexpr std::string_view tag = "VIRTSNSPOXLISTZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CVirtSnsPOXlistzk";
    static Record filled()
    {
        CVirtSnsPOXlistzk list;
        list.m_nCurrentVirtSns = 1;
        list.m_aChannel = {4, 9};
        list.m_aVirtSns = {{"a", {1, 2, 3}, {0, 0, 1}, {0.5, -2}}, {"b", {4, 5, 6}, {0, 1, 0}, {}}};
        return list;
    }
};

using PoxRecords = ::testing::Types<PoxCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(VirtSnsPOX, RecordContract, PoxRecords);

TEST(VirtSnsPOXlist, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("VIRTSNSPOXLISTZK").i32(20261121).i64(1).i64(2).i32(4).i32(9).i32(2);
    expected.wide("a").doubles({1, 2, 3, 0, 0, 1}).i64(2).doubles({0.5, -2});
    expected.wide("b").doubles({4, 5, 6, 0, 1, 0}).i64(0);
    expectGolden(PoxCase::filled(), expected);
}

TEST(VirtSnsPOXlist, GivesSensorsByNumber)
{
    const CVirtSnsPOXlistzk list = PoxCase::filled();
    EXPECT_EQ(list.getTotalVirtSns(), 2);
    EXPECT_EQ(list.getVirtSns(0), &list.m_aVirtSns[0]);
    EXPECT_EQ(list.getVirtSns(-1), &list.m_aVirtSns[1]);
    EXPECT_EQ(list.getVirtSns(2), nullptr);
    EXPECT_EQ(list.getVirtSns(-2), nullptr);
}

TEST(VirtSnsPOXlist, VirtualValueIsTheWeightedSum)
{
    const CVirtSnsPOXlistzk list = PoxCase::filled();
    const std::vector<double> values{10, 3};
    EXPECT_EQ(list.virtualValue(0, values), -1.0); // 0.5 x 10 - 2 x 3
    EXPECT_TRUE(std::isnan(list.virtualValue(1, values)));
    EXPECT_TRUE(std::isnan(list.virtualValue(2, values)));
    EXPECT_TRUE(std::isnan(list.virtualValue(0, std::vector<double>{1})));
}

TEST(VirtSnsPOXlist, WeightsOfAnotherNumberAreRefused)
{
    CVirtSnsPOXlistzk list = PoxCase::filled();
    list.m_aVirtSns[1].m_aWeight = {1};
    CVirtSnsPOXlistzk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { list.serializezk(ar); })), 0);
}

} // namespace
} // namespace megset::CVirtSnsPOXlist_test
