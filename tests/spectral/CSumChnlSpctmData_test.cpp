#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/spectra.h"

namespace megset::CSumChnlSpctmData_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

constexpr std::int32_t newest = 20131220;

std::vector<SampleArray*> planesOf(CSumChnlSpctmDatazk& sums)
{
    return {&sums.m_pSumMin,      &sums.m_pSumMean,     &sums.m_pSumMax,
            &sums.m_pSumPositive, &sums.m_pSumNegative, &sums.m_pSumRms};
}

void fillStatistics(CSumChnlSpctmDatazk& sums)
{
    sums.m_nRangeValid = 1;
    sums.m_nChannels = 12;
    sums.m_dRangeMin = 1.5;
    sums.m_dRangeMean = 2.5;
    sums.m_dRangeMax = 3.5;
    sums.m_dRangePositive = 4.5;
    sums.m_dRangeNegative = 5.5;
    sums.m_dRangeRms = 6.5;
    sums.m_dAbsMax = 7.5;
    sums.m_dAbsMean = 8.5;
    sums.m_dAbsMin = 9.5;
    sums.m_dReserved3 = 10.5;
    sums.m_dReserved2 = 11.5;
    sums.m_dReserved1 = 12.5;
}

void fill(CSumChnlSpctmDatazk& sums)
{
    ASSERT_EQ(sums.checkInit(1, 2), 1);
    double value = 0.0;
    for (SampleArray* plane : planesOf(sums)) {
        (*plane)[0] = ++value;
        (*plane)[1] = ++value;
    }
    fillStatistics(sums);
}

ByteBuilder statistics()
{
    return ByteBuilder().i32(1).i64(12).doubles({1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5, 10.5, 11.5, 12.5});
}

ByteBuilder beginning(std::int32_t version, std::int64_t nTimePt = 1, std::int64_t nFreqPt = 2)
{
    return ByteBuilder().wide("SUMCHNLZK").i32(version).i64(nTimePt).i64(nFreqPt);
}

ByteBuilder planes()
{
    ByteBuilder bytes;
    for (int plane = 0; plane < 6; ++plane)
        bytes.i32(1).doubles({2.0 * plane + 1, 2.0 * plane + 2});
    return bytes;
}

ByteBuilder filledBytes()
{
    return beginning(newest).append(planes()).append(statistics());
}

// The oldest form, which never loads: planes of guarded rows, and fewer statistics.
ByteBuilder oldestBytes()
{
    ByteBuilder bytes = beginning(20120423);
    for (int plane = 0; plane < 5; ++plane)
        bytes.i32(1).i32(plane % 2).append(plane % 2 != 0 ? ByteBuilder().doubles({1, 2}) : ByteBuilder());
    return bytes.i32(0).i32(1).i64(12).doubles({1, 2, 3, 4, 5, 6, 7, 8, 9});
}

TEST(SumChannel, StartsEmpty)
{
    CSumChnlSpctmDatazk sums;
    EXPECT_TRUE(sameBytes(spectrumBytes(sums), beginning(newest, 0, 0).zeros(6 * 4 + 4 + 8 + 12 * 8)));
}

TEST(SumChannel, CheckInitMakesSixPlanesOfZeros)
{
    CSumChnlSpctmDatazk sums;
    ASSERT_EQ(sums.checkInit(3, 2), 1);
    EXPECT_EQ(sums.m_nTimePt, 3);
    EXPECT_EQ(sums.m_nFreqPt, 2);
    for (const SampleArray* plane : planesOf(sums)) {
        ASSERT_NE(*plane, nullptr);
        EXPECT_THAT(valuesOf(*plane, 6), Each(0.0));
    }
}

TEST(SumChannel, CheckInitOfTheSameShapeKeepsContentAndMakesWhatIsMissing)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    sums.m_pSumMax.reset();
    ASSERT_EQ(sums.checkInit(1, 2), 1);
    EXPECT_THAT(valuesOf(sums.m_pSumMin, 2), ElementsAre(1, 2));
    EXPECT_THAT(valuesOf(sums.m_pSumMax, 2), ElementsAre(0, 0));
    EXPECT_EQ(sums.m_nChannels, 12);
}

TEST(SumChannel, CheckInitOfAnotherShapeClearsAll)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    ASSERT_EQ(sums.checkInit(2, 1), 1);
    EXPECT_THAT(valuesOf(sums.m_pSumMin, 2), ElementsAre(0, 0));
    EXPECT_EQ(sums.m_nChannels, 0);
}

TEST(SumChannel, CheckInitWithoutShapeGivesZeroAndClearsAnotherShape)
{
    for (const auto& [nTimePt, nFreqPt] : {std::pair<std::int64_t, std::int64_t>{0, 5}, {5, 0}, {-1, 2}}) {
        CSumChnlSpctmDatazk sums;
        fill(sums);
        EXPECT_EQ(sums.checkInit(nTimePt, nFreqPt), 0);
        EXPECT_EQ(sums.m_nTimePt, 0);
        EXPECT_EQ(sums.m_pSumMin, nullptr);
    }
    CSumChnlSpctmDatazk sums;
    sums.m_nFreqPt = 5;
    sums.m_nChannels = 3;
    EXPECT_EQ(sums.checkInit(0, 5), 0);
    EXPECT_EQ(sums.m_nChannels, 3);
}

TEST(SumChannel, CheckInitThatFailsLeavesNothing)
{
    const ScriptedHost host;
    const auto tried = forEachAllocationFailure([] {
        CSumChnlSpctmDatazk sums;
        if (sums.checkInit(3, 2) == 1)
            return;
        EXPECT_EQ(sums.m_nTimePt, 0);
        for (const SampleArray* plane : planesOf(sums))
            EXPECT_EQ(*plane, nullptr);
    });
    EXPECT_EQ(tried, 6);
    CSumChnlSpctmDatazk sums;
    EXPECT_EQ(sums.checkInit(INT64_MAX, INT64_MAX), 0);
    EXPECT_EQ(sums.m_nTimePt, 0);
    host.expectNoMessages();
}

TEST(SumChannel, CleanKeepsTheAbsoluteValuesAlone)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    EXPECT_EQ(sums.clean(), 1);
    EXPECT_TRUE(sameBytes(spectrumBytes(sums),
                          beginning(newest, 0, 0).zeros(6 * 4 + 4 + 8 + 6 * 8).doubles({7.5, 8.5, 9.5}).zeros(3 * 8)));
}

TEST(SumChannelFile, BytesArePlanesAndStatistics)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    EXPECT_TRUE(sameBytes(spectrumBytes(sums), filledBytes()));
}

TEST(SumChannelFile, ComesBackEqualOverAFilledOne)
{
    CSumChnlSpctmDatazk sums;
    ASSERT_EQ(sums.checkInit(4, 4), 1);
    expectLoaded(sums, filledBytes());
    EXPECT_THAT(valuesOf(sums.m_pSumRms, 2), ElementsAre(11, 12));
    EXPECT_EQ(sums.m_dReserved1, 12.5);
    EXPECT_TRUE(sameBytes(spectrumBytes(sums), filledBytes()));
}

TEST(SumChannelFile, AbsentPlanesStayNull)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    sums.m_pSumMean.reset();
    CSumChnlSpctmDatazk again;
    ASSERT_EQ(loadSpectrum(again, spectrumBytes(sums)), 1);
    EXPECT_EQ(again.m_pSumMean, nullptr);
    EXPECT_THAT(valuesOf(again.m_pSumMax, 2), ElementsAre(5, 6));
}

TEST(SumChannelFile, PlanesWithoutShapeAreWrittenAsAbsent)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    sums.m_nFreqPt = 0;
    EXPECT_TRUE(sameBytes(spectrumBytes(sums), beginning(newest, 1, 0).zeros(6 * 4).append(statistics())));
}

TEST(SumChannelFile, TagAndVersionAreChecked)
{
    expectTagAndVersionChecked<CSumChnlSpctmDatazk>("SUMCHNLZK", filledBytes().bytes(), newest,
                                                    "The opened file is not trial data or corrupted!",
                                                    "Wrong trial sum-channel spectrum!!?");
}

TEST(SumChannelFile, PlanesValueByValueAreReadAndDropped)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    expectLoaded(sums, beginning(20120725).append(planes()).append(statistics()));
    EXPECT_EQ(sums.m_nTimePt, 1);
    EXPECT_EQ(sums.m_nFreqPt, 2);
    for (const SampleArray* plane : planesOf(sums))
        EXPECT_EQ(*plane, nullptr);
    EXPECT_EQ(sums.m_nRangeValid, 1);
    EXPECT_EQ(sums.m_dRangeRms, 6.5);
    EXPECT_EQ(sums.m_dReserved1, 12.5);
}

TEST(SumChannelFile, TheOldestVersionIsNotSupported)
{
    expectRefusedSpectrum<CSumChnlSpctmDatazk>(oldestBytes(), {"Old file format is not supported!"});
}

TEST(SumChannelFile, ImpossibleShapesAreRefusedWithoutAMessage)
{
    const FailingAllocator counting(0);
    for (const std::int64_t n : {std::int64_t{-1}, std::int64_t{INT32_MAX}, INT64_MAX})
        for (const std::int32_t version : {20120725, newest}) {
            expectRefusedSpectrum<CSumChnlSpctmDatazk>(beginning(version, n, 1).i32(1).zeros(64), {});
            expectRefusedSpectrum<CSumChnlSpctmDatazk>(beginning(version, 1, n).zeros(20).i32(1).zeros(64), {});
        }
    expectRefusedSpectrum<CSumChnlSpctmDatazk>(beginning(20120423, 1, INT64_MAX).i32(1).i32(1).zeros(64), {});
    EXPECT_EQ(counting.calls(), 0);
}

TEST(SumChannelFile, EveryAllocationMayFailWithoutAMessage)
{
    for (const ByteBuilder& bytes : {filledBytes(), beginning(20120725).append(planes()).append(statistics())}) {
        const auto tried = forEachAllocationFailure([&] {
            const ScriptedHost host;
            CSumChnlSpctmDatazk sums;
            loadSpectrum(sums, bytes);
            host.expectNoMessages();
            const FailingAllocator noFailure(0);
            expectStillWhole(sums);
        });
        EXPECT_EQ(tried, 6);
    }
}

TEST(SumChannelFile, PrefixesAndBitFlipsDoNoHarm)
{
    for (const ByteBuilder& bytes :
         {filledBytes(), beginning(20120725).append(planes()).append(statistics()), oldestBytes()}) {
        expectPrefixesHarmless<CSumChnlSpctmDatazk>(bytes.bytes(), 0);
        expectBitFlipsHarmless<CSumChnlSpctmDatazk>(bytes.bytes());
    }
}

TEST(SumChannelFile, PageShowsTheFieldsInTheirOrder)
{
    CSumChnlSpctmDatazk sums;
    fill(sums);
    expectPageFollowed(sums, "CSumChnlSpctmDatazk");
}

} // namespace
} // namespace megset::CSumChnlSpctmData_test
