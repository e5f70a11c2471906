#include "megset/records/display/CContourMap2DInfo.h"

#include "tests/kit/recordContract.h"

namespace megset::CContourMap2DInfo_test {
namespace {

struct ContourCase
{
    using Record = CContourMap2DInfozk;
    static constexpr std::string_view tag = "CONTOURMAP2DINFOZK";
    static constexpr std::string_view page = "display.md";
    static constexpr std::string_view name = "CContourMap2DInfozk";
    static Record filled()
    {
        Record info;
        info.m_dXmin = 1.0;
        info.m_dXmax = 2.0;
        info.m_dYmin = 3.0;
        info.m_dYmax = 4.0;
        info.m_dZmin = 5.0;
        info.m_dZmax = 6.0;
        info.m_dPlaneXmin = 7.0;
        info.m_dPlaneXmax = 8.0;
        info.m_dPlaneYmin = 9.0;
        info.m_dPlaneYmax = 10.0;
        info.m_dPlaneScale = 11.0;
        return info;
    }
};

using ContourTypes = ::testing::Types<ContourCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Contour, RecordContract, ContourTypes);

const auto elevenDoubles = ByteBuilder().doubles({1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0});

TEST(CContourMap2DInfo, WritesTheseBytes)
{
    const auto bytes = ByteBuilder().wide("CONTOURMAP2DINFOZK").i32(20261121).append(elevenDoubles);
    EXPECT_TRUE(sameBytes(recordBytes(ContourCase::filled()), bytes));
}

TEST(CContourMap2DInfo, ExtentsAreElevenDoublesAndNothingElse)
{
    CContourMap2DInfozk info = ContourCase::filled();
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { info.exchangeExtents(ar); }), elevenDoubles));
    CContourMap2DInfozk loaded;
    LoadingArchive archive(elevenDoubles);
    loaded.exchangeExtents(*archive);
    EXPECT_EQ(loaded, info);
}

TEST(CContourMap2DInfo, LoadingLeavesTheTwelfthWord)
{
    CContourMap2DInfozk info;
    info.m_nContourWord = 77;
    ASSERT_EQ(loadRecord(info, recordBytes(ContourCase::filled())), 1);
    EXPECT_EQ(info.m_nContourWord, 77);
    info.m_nContourWord = 0;
    EXPECT_EQ(info, ContourCase::filled());
}

} // namespace
} // namespace megset::CContourMap2DInfo_test
