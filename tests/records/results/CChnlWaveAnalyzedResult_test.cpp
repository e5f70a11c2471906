#include "megset/records/results/CChnlWaveAnalyzedResult.h"

#include "tests/kit/recordContract.h"

namespace megset::CChnlWaveAnalyzedResult_test {
namespace {

CWadXzk filledWad(int kind, std::vector<double> values)
{
    CWadXzk wad;
    wad.m_nKind = kind;
    wad.m_strName = "envelope";
    wad.m_nDataBegin = 7;
    wad.m_nStep = 8;
    wad.m_aValue = std::move(values);
    return wad;
}

struct WadCase
{
    using Record = CWadXzk;
    static constexpr std::string_view tag = "WADXZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CWadXzk";
    static Record filled() { return filledWad(3, {1.5, 2.5}); }
};

struct ChannelCase
{
    using Record = CChnlWaveAnalyzedResultzk;
    static constexpr std::string_view tag = "CHNLWAVEANALYZEDRESULTZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CChnlWaveAnalyzedResultzk";
    static Record filled()
    {
        CChnlWaveAnalyzedResultzk result;
        for (const CWadXzk& wad : {filledWad(3, {1, 2}), filledWad(4, {1, 2, 3}), filledWad(3, {5})})
            result.addWadX(&wad);
        return result;
    }
};

struct TrialCase
{
    using Record = CTrlWaveAnalyzedResultzk;
    static constexpr std::string_view tag = "TRLWAVEANALYZEDRESULTZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CTrlWaveAnalyzedResultzk";
    static Record filled()
    {
        CTrlWaveAnalyzedResultzk result;
        result.m_nCurrentKind = 1;
        result.m_nCurrentClass = 2;
        result.m_nSelectBegin = 3;
        result.m_nSelectEnd = 4;
        result.m_nBaselineBegin = 5;
        result.m_nBaselineEnd = 6;
        result.setSummary({1, 0, 10, 100, -1, 0.5, 2, 1.5});
        result.setSummary({1, 1, 11, 101, -2, 0.25, 3, 2.5});
        return result;
    }
};

struct DatasetCase
{
    using Record = CFaceWaveAnalyzedResultzk;
    static constexpr std::string_view tag = "FACEWAVEANALYZEDRESULTZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceWaveAnalyzedResultzk";
    static Record filled()
    {
        CFaceWaveAnalyzedResultzk face;
        face.m_nCurrentKind = 1;
        face.m_nCurrentClass = 2;
        face.m_bShow = 1;
        face.m_dShowMin = -3;
        face.m_dShowMax = 4;
        face.setAnalysis({1, "kurtosis", "", 70, 250, 50, 25});
        face.setAnalysis({2, "envelope", "fT", 8, 12, 0, 1});
        return face;
    }
};

using WaveRecords = ::testing::Types<WadCase, ChannelCase, TrialCase, DatasetCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(WaveAnalyzed, RecordContract, WaveRecords);

TEST(ChnlWaveAnalyzedResult, IsWrittenFieldByField)
{
    CChnlWaveAnalyzedResultzk result;
    const CWadXzk wad = WadCase::filled();
    result.addWadX(&wad);
    ByteBuilder expected;
    expected.wide("CHNLWAVEANALYZEDRESULTZK").i32(20261121).i32(1).i32(1);
    expected.wide("WADXZK").i32(20261121).i32(3).wide("envelope").i64(7).i64(8).i64(2).doubles({1.5, 2.5});
    expectGolden(result, expected);
}

TEST(ChnlWaveAnalyzedResult, GivesTheResultsOfAKindInTheirOrder)
{
    CChnlWaveAnalyzedResultzk result = ChannelCase::filled();
    result.m_aWad.InsertAt(0, nullptr);
    EXPECT_EQ(result.getWadX(3, 0), result.m_aWad[1]);
    EXPECT_EQ(result.getWadX(3, 1), result.m_aWad[3]);
    EXPECT_EQ(result.getWadX(4, 0), result.m_aWad[2]);
    EXPECT_EQ(result.getWadX(3, 2), nullptr);
    EXPECT_EQ(result.getWadX(3, -1), nullptr);
    EXPECT_EQ(result.getWadX(5, 0), nullptr);
}

TEST(ChnlWaveAnalyzedResult, MaxSampleIsThatOfTheKind)
{
    const CChnlWaveAnalyzedResultzk result = ChannelCase::filled();
    EXPECT_EQ(result.getMaxSample(3), 2);
    EXPECT_EQ(result.getMaxSample(4), 3);
    EXPECT_EQ(result.getMaxSample(5), 0);
}

TEST(ChnlWaveAnalyzedResult, AddsCopiesAndCleansThem)
{
    CChnlWaveAnalyzedResultzk result;
    EXPECT_EQ(result.addWadX(nullptr), 0);
    CWadXzk wad = WadCase::filled();
    EXPECT_EQ(result.addWadX(&wad), 1);
    wad.m_aValue.clear();
    EXPECT_EQ(*result.getWadX(3, 0), WadCase::filled());
    EXPECT_EQ(result.cleanAll(), 1);
    EXPECT_EQ(result, CChnlWaveAnalyzedResultzk());
}

TEST(TrlWaveAnalyzedResult, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("TRLWAVEANALYZEDRESULTZK").i32(20261121).i32(1).i32(2).i64(3).i64(4).i64(5).i64(6).i32(2);
    expected.i32(1).i32(0).i32(10).i64(100).doubles({-1, 0.5, 2, 1.5});
    expected.i32(1).i32(1).i32(11).i64(101).doubles({-2, 0.25, 3, 2.5});
    expectGolden(TrialCase::filled(), expected);
}

TEST(TrlWaveAnalyzedResult, SummaryReplacesTheOneOfItsKindAndClass)
{
    CTrlWaveAnalyzedResultzk result = TrialCase::filled();
    EXPECT_EQ(result.setSummary({1, 1, 99, 0, 0, 0, 0, 0}), 1);
    EXPECT_EQ(result.m_aSummary.size(), 2U);
    ASSERT_NE(result.getSummary(1, 1), nullptr);
    EXPECT_EQ(result.getSummary(1, 1)->m_nChannels, 99);
    EXPECT_EQ(result.getSummary(1, 0)->m_nChannels, 10);
    EXPECT_EQ(result.getSummary(1, 2), nullptr);
    EXPECT_EQ(result.getSummary(2, 0), nullptr);
}

TEST(FaceWaveAnalyzedResult, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("FACEWAVEANALYZEDRESULTZK").i32(20261121).i32(1).i32(2).i32(1).f64(-3).f64(4).i32(2);
    expected.i32(1).wide("kurtosis").wide("").doubles({70, 250, 50, 25});
    expected.i32(2).wide("envelope").wide("fT").doubles({8, 12, 0, 1});
    expectGolden(DatasetCase::filled(), expected);
}

TEST(FaceWaveAnalyzedResult, AnalysisReplacesTheOneOfItsKind)
{
    CFaceWaveAnalyzedResultzk face = DatasetCase::filled();
    EXPECT_EQ(face.setAnalysis({2, "other", "", 0, 0, 0, 0}), 1);
    EXPECT_EQ(face.m_aAnalysis.size(), 2U);
    EXPECT_EQ(face.getAnalysis(2)->m_strName, "other");
    EXPECT_EQ(face.getAnalysis(3), nullptr);
}

} // namespace
} // namespace megset::CChnlWaveAnalyzedResult_test
