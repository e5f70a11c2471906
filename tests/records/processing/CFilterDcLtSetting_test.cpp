#include "megset/records/processing/CFilterDcLtSetting.h"

#include "tests/kit/recordContract.h"

namespace megset::CFilterDcLtSetting_test {
namespace {

struct FilterCase
{
    using Record = CFilterDcLtSettingzk;
    static constexpr std::string_view tag = "FILTERDCLTZK";
    static constexpr std::string_view page = "processing.md";
    static constexpr std::string_view name = "CFilterDcLtSettingzk";
    static Record filled()
    {
        Record setting;
        setting.m_bFiltLowPass = 1;
        setting.m_bFiltHighPass = 2;
        setting.m_bFiltBand = 3;
        setting.m_dFiltLowPassHz = 40.0;
        setting.m_dFiltHighPassHz = 0.5;
        setting.m_dFiltBandLowHz = 8.0;
        setting.m_dFiltBandHighHz = 12.0;
        setting.m_nFiltOrder = 6;
        setting.m_bFiltZeroPhase = 0;
        setting.m_bFiltNotch = 1;
        setting.m_dFiltNotchHz = 60.0;
        setting.m_dFiltNotchWidth = 1.0;
        setting.m_bDcOffset = 1;
        setting.m_bLinearTrend = 1;
        setting.m_nDcLtRange = 2;
        setting.m_nDcLtBegin = 100;
        setting.m_nDcLtEnd = 200;
        return setting;
    }
};

using FilterTypes = ::testing::Types<FilterCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Filter, RecordContract, FilterTypes);

TEST(CFilterDcLtSetting, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("FILTERDCLTZK").i32(20261121).i32(1).i32(2).i32(3).doubles({40.0, 0.5, 8.0, 12.0});
    bytes.i32(6).i32(0).i32(1).f64(60.0).f64(1.0).i32(1).i32(1).i32(2).i64(100).i64(200);
    EXPECT_TRUE(sameBytes(recordBytes(FilterCase::filled()), bytes));
}

TEST(CFilterDcLtSetting, NewSettingHasEverythingOff)
{
    const CFilterDcLtSettingzk setting;
    EXPECT_EQ(setting.m_bFiltLowPass, 0);
    EXPECT_EQ(setting.m_bFiltHighPass, 0);
    EXPECT_EQ(setting.m_bFiltBand, 0);
    EXPECT_EQ(setting.m_bFiltNotch, 0);
    EXPECT_EQ(setting.m_bDcOffset, 0);
    EXPECT_EQ(setting.m_bLinearTrend, 0);
}

} // namespace
} // namespace megset::CFilterDcLtSetting_test
