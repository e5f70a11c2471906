#include "megset/records/results/CFreqDataChnl.h"

#include "tests/kit/recordContract.h"

namespace megset::CFreqDataChnl_test {
namespace {

CSumChnlFreqDatazk filledSum()
{
    CSumChnlFreqDatazk sum;
    sum.checkInit(2);
    sum.m_aSumMin = {1, 2};
    sum.m_aSumMean = {3, 4};
    sum.m_aSumMax = {5, 6};
    sum.m_aSumPositive = {7, 8};
    sum.m_aSumNegative = {9, 10};
    sum.m_aSumRms = {11, 12};
    sum.m_bRangeValid = 1;
    sum.m_nChannels = 13;
    sum.m_dMax = 14;
    sum.m_dMean = 15;
    sum.m_dMin = 16;
    sum.m_dPositive = 17;
    sum.m_dNegative = 18;
    sum.m_dRms = 19;
    return sum;
}

struct ChannelCase
{
    using Record = CFreqDataChnlzk;
    static constexpr std::string_view tag = "FREQDATACHNLZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFreqDataChnlzk";
    static Record filled()
    {
        CFreqDataChnlzk data;
        data.m_nDataBegin = 7;
        data.setFreqData(0, std::vector<double>{1, 2, 3});
        data.setFreqData(2, std::vector<double>{4, 5, 6});
        return data;
    }
};

struct SumCase
{
    using Record = CSumChnlFreqDatazk;
    static constexpr std::string_view tag = "SUMCHNLFREQDATAZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CSumChnlFreqDatazk";
    static Record filled() { return filledSum(); }
};

struct TrialCase
{
    using Record = CFreqDataTrialzk;
    static constexpr std::string_view tag = "FREQDATATRIALZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFreqDataTrialzk";
    static Record filled()
    {
        CFreqDataTrialzk trial;
        trial.m_dFreqBegin = 0.5;
        trial.m_dFreqStep = 0.25;
        trial.m_dSamplingRate = 600;
        trial.m_nSelectFreqBegin = 2;
        trial.m_nSelectFreqEnd = 3;
        for (int dataType = 0; dataType < 4; ++dataType) {
            *trial.getSumChnlFreqData(dataType) = filledSum();
            trial.getSumChnlFreqData(dataType)->m_nChannels = dataType + 1;
        }
        return trial;
    }
};

struct DatasetCase
{
    using Record = CFreqDatasetFacezk;
    static constexpr std::string_view tag = "FREQDATASETFACEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFreqDatasetFacezk";
    static Record filled()
    {
        CFreqDatasetFacezk face;
        face.m_strFaceName = "power";
        face.m_nCurrentClass = 1;
        face.m_nCurrentDataType = 2;
        face.m_dFreqLow = 3;
        face.m_dFreqHigh = 4;
        face.m_dShowMin = -5;
        face.m_dShowMax = 6;
        return face;
    }
};

using FreqRecords = ::testing::Types<ChannelCase, SumCase, TrialCase, DatasetCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(FreqData, RecordContract, FreqRecords);

TEST(FreqDataChnl, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("FREQDATACHNLZK").i32(20261121).i64(7).i64(3);
    expected.i64(3).doubles({1, 2, 3}).i64(0).i64(3).doubles({4, 5, 6}).i64(0);
    expectGolden(ChannelCase::filled(), expected);
}

TEST(FreqDataChnl, GivesArrayAndLengthOfADataType)
{
    CFreqDataChnlzk data = ChannelCase::filled();
    double* values = nullptr;
    std::int64_t points = -1;
    ASSERT_EQ(data.getFreqData(2, &values, &points), 1);
    EXPECT_EQ(points, 3);
    EXPECT_EQ(values[1], 5);
    values[1] = 50;
    EXPECT_EQ(data.m_aFreqData[2][1], 50);
    EXPECT_EQ(data.getFreqData(0, nullptr, nullptr), 1);
}

TEST(FreqDataChnl, GivesNullForAbsentAndOtherDataTypes)
{
    CFreqDataChnlzk data = ChannelCase::filled();
    for (const int dataType : {-1, 1, 4}) {
        double other = 0;
        double* values = &other;
        std::int64_t points = -1;
        EXPECT_EQ(data.getFreqData(dataType, &values, &points), 0);
        EXPECT_EQ(values, nullptr);
        EXPECT_EQ(points, 0);
    }
}

TEST(FreqDataChnl, AllDataTypesHaveOneLength)
{
    CFreqDataChnlzk data = ChannelCase::filled();
    EXPECT_EQ(data.setFreqData(1, std::vector<double>{1, 2}), 0);
    EXPECT_EQ(data.setFreqData(1, std::vector<double>{}), 0);
    EXPECT_EQ(data.setFreqData(4, std::vector<double>{1, 2, 3}), 0);
    EXPECT_EQ(data, ChannelCase::filled());
    CFreqDataChnlzk one;
    EXPECT_EQ(one.setFreqData(1, std::vector<double>{1, 2}), 1);
    EXPECT_EQ(one.setFreqData(1, std::vector<double>{1, 2, 3}), 1);
    EXPECT_EQ(one.m_nFreqPt, 3);
}

TEST(FreqDataChnl, HasDataWithPointsAndAnArray)
{
    CFreqDataChnlzk data;
    EXPECT_FALSE(data.hasFreqData());
    data.m_nFreqPt = 3;
    EXPECT_FALSE(data.hasFreqData());
    data = ChannelCase::filled();
    EXPECT_TRUE(data.hasFreqData());
    EXPECT_EQ(data.cleanAll(), 1);
    EXPECT_FALSE(data.hasFreqData());
    EXPECT_EQ(data.m_nFreqPt, 0);
}

TEST(FreqDataChnl, ArraysOfAnotherLengthAreRefused)
{
    CFreqDataChnlzk data = ChannelCase::filled();
    data.m_aFreqData[3] = {1};
    CFreqDataChnlzk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { data.serializezk(ar); })), 0);
}

ByteBuilder sumBytes(std::int32_t channels)
{
    ByteBuilder bytes;
    bytes.wide("SUMCHNLFREQDATAZK").i32(20261121).i64(2);
    bytes.i64(2).doubles({1, 2}).i64(2).doubles({3, 4}).i64(2).doubles({5, 6});
    bytes.i64(2).doubles({7, 8}).i64(2).doubles({9, 10}).i64(2).doubles({11, 12});
    return bytes.i32(1).i32(channels).doubles({14, 15, 16, 17, 18, 19});
}

TEST(SumChnlFreqData, IsWrittenFieldByField)
{
    expectGolden(filledSum(), sumBytes(13));
}

TEST(FreqDataTrial, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("FREQDATATRIALZK").i32(20261121).doubles({0.5, 0.25, 600}).i64(2).i64(3);
    expected.append(sumBytes(1)).append(sumBytes(2)).append(sumBytes(3)).append(sumBytes(4));
    expectGolden(TrialCase::filled(), expected);
}

TEST(FreqDatasetFace, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("FREQDATASETFACEZK").i32(20261121).wide("power").i32(1).i32(2).doubles({3, 4, -5, 6});
    expectGolden(DatasetCase::filled(), expected);
}

TEST(SumChnlFreqData, CheckInitSetsUpSixArraysOfZeros)
{
    CSumChnlFreqDatazk sum = filledSum();
    EXPECT_EQ(sum.checkInit(3), 1);
    EXPECT_EQ(sum.m_nFreqPt, 3);
    const std::vector<double> zeros(3);
    for (const std::vector<double>* array :
         {&sum.m_aSumMin, &sum.m_aSumMean, &sum.m_aSumMax, &sum.m_aSumPositive, &sum.m_aSumNegative, &sum.m_aSumRms})
        EXPECT_EQ(*array, zeros);
    EXPECT_EQ(sum.m_bRangeValid, 0);
    EXPECT_EQ(sum.m_dMax, 0);
}

TEST(SumChnlFreqData, CheckInitWithoutPointsEmptiesIt)
{
    for (const std::int64_t points : {std::int64_t{0}, std::int64_t{-1}, INT64_MAX}) {
        CSumChnlFreqDatazk sum = filledSum();
        EXPECT_EQ(sum.checkInit(points), 0);
        EXPECT_EQ(sum, CSumChnlFreqDatazk());
    }
}

TEST(SumChnlFreqData, ArraysOfAnotherLengthAreRefused)
{
    CSumChnlFreqDatazk sum = filledSum();
    sum.m_aSumRms.pop_back();
    CSumChnlFreqDatazk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { sum.serializezk(ar); })), 0);
}

TEST(FreqDataTrial, HasASumObjectPerDataType)
{
    CFreqDataTrialzk trial = TrialCase::filled();
    EXPECT_EQ(trial.getSumChnlFreqData(3), &trial.m_aSum[3]);
    EXPECT_EQ(trial.getSumChnlFreqData(4), nullptr);
    EXPECT_EQ(trial.getSumChnlFreqData(-1), nullptr);
    EXPECT_EQ(trial.getFreqHz(2), 1.0);
}

} // namespace
} // namespace megset::CFreqDataChnl_test
