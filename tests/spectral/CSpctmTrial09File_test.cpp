#include "megset/spectral/CSpctmTrial09File.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/spectra.h"

namespace megset::CSpctmTrial09File_test {
namespace {

using ::testing::ElementsAre;

constexpr std::int32_t newest = 20150707;

ByteBuilder beginning(std::int32_t version)
{
    return ByteBuilder().wide("SPCTMTRIALZK").i32(version);
}

// The fields up to the selection, each with a value of its own.
ByteBuilder axesAndSelection()
{
    return ByteBuilder()
        .i32(2)
        .i32(3)
        .i32(1)
        .i64(5)
        .i64(6)
        .i64(7)
        .i64(8)
        .i64(9)
        .i64(10)
        .i64(11)
        .i64(12)
        .f64(13.5)
        .f64(14.5)
        .i32(15)
        .f64(16.5)
        .f64(17.5)
        .f64(18.5)
        .f64(19.5)
        .i64(20)
        .i64(21)
        .i32(22)
        .i32(23)
        .i32(24)
        .i64(25)
        .i64(26)
        .i64(27)
        .i64(28);
}

ByteBuilder basic()
{
    return axesAndSelection().i32(29).i32(30).i32(31).i64(32).i32(33).i32(34).i32(35).i64(36).i32(37).i32(38);
}

// A sum channel with one plane and one statistic.
ByteBuilder sums(double value)
{
    return ByteBuilder()
        .wide("SUMCHNLZK")
        .i32(20131220)
        .i64(1)
        .i64(1)
        .i32(1)
        .f64(value)
        .zeros(5 * 4)
        .i32(1)
        .i64(4)
        .zeros(12 * 8);
}

ByteBuilder filledBytes()
{
    return beginning(newest).append(basic()).append(sums(1)).append(sums(2)).append(sums(3)).wide("Re").wide("Im").wide(
        "Mag");
}

void fill(CSpctmTrialzk& trial)
{
    trial.m_nSpctmCmptType = 2;
    trial.m_nSpctmRix1 = 3;
    trial.m_nAccumSpctm = 1;
    trial.m_nTimePt = 5;
    trial.m_nFreqPt = 6;
    trial.m_nDataLength = 7;
    trial.m_nDataBegin = 8;
    trial.m_nDataEnd = 9;
    trial.m_nEdgePt = 10;
    trial.m_nEdgePt2 = 11;
    trial.m_nTimeStep = 12;
    trial.m_dFreqBegin = 13.5;
    trial.m_dFreqEnd = 14.5;
    trial.m_nFreqPowerStep = 15;
    trial.m_dFreqLinearStep = 16.5;
    trial.m_dFreqPowerStep = 17.5;
    trial.m_dSpctmParam = 18.5;
    trial.m_dSamplingRate = 19.5;
    trial.m_nSpctmRix2 = 20;
    trial.m_nSpctmParam1 = 21;
    trial.m_nSpctmParam2 = 22;
    trial.m_nSpctmResultType = 23;
    trial.m_nSpctmNormState = 24;
    trial.m_nSelectTimeBegin = 25;
    trial.m_nSelectTimeEnd = 26;
    trial.m_nSelectFreqBegin = 27;
    trial.m_nSelectFreqEnd = 28;
    trial.m_nSpctmRix3 = 29;
    trial.m_nSpctmRix4 = 30;
    trial.m_nSpctmRix5 = 31;
    trial.m_nSpctmParam3 = 32;
    trial.m_nSpctmParam4 = 33;
    trial.m_nSpctmParam5 = 34;
    trial.m_nSpctmParam6 = 35;
    trial.m_nSpctmParam7 = 36;
    trial.m_nSpctmParam8 = 37;
    trial.m_nSpctmParam9 = 38;
    trial.m_nSpctmParam10 = 39;
    trial.m_strLabelR = "Re";
    trial.m_strLabelI = "Im";
    trial.m_strLabelM = "Mag";
    trial.m_strLabelA = "Ang";
    for (int type = 0; type < 4; ++type) {
        CSumChnlSpctmDatazk& sum = *trial.getSumChnlSpctmData(type);
        sum.m_nTimePt = sum.m_nFreqPt = 1;
        sum.m_pSumMin = planeOf({1.0 + type});
        sum.m_nRangeValid = 1;
        sum.m_nChannels = 4;
    }
}

// The fields of the two oldest versions; T is 5, and F stands there twice.
ByteBuilder oldBasic()
{
    return ByteBuilder()
        .i32(1)
        .i32(2)
        .i32(3)
        .i32(4)
        .i64(5)
        .i64(6)
        .i64(7)
        .i64(8)
        .i64(9)
        .i64(10)
        .i64(11)
        .i64(12)
        .i64(13)
        .i64(14)
        .f64(15.5)
        .f64(16.5)
        .f64(17.5)
        .i64(18)
        .f64(19.5)
        .f64(20.5)
        .f64(21.5)
        .i32(22)
        .i32(23)
        .i64(24);
}

TEST(TrialSpectrumFile, BytesAreAxesSumsAndLabels)
{
    CSpctmTrialzk trial;
    fill(trial);
    EXPECT_EQ(basic().size(), 236U);
    EXPECT_TRUE(sameBytes(spectrumBytes(trial), filledBytes()));
}

TEST(TrialSpectrumFile, ComesBackEqual)
{
    CSpctmTrialzk trial;
    expectLoaded(trial, filledBytes());
    EXPECT_TRUE(sameBytes(spectrumBytes(trial), filledBytes()));
    EXPECT_EQ(trial.m_nSpctmParam9, 38);
    EXPECT_THAT(valuesOf(trial.m_aSumChnlM.m_pSumMin, 1), ElementsAre(3));
    EXPECT_EQ(trial.m_aSumChnlA.m_pSumMin, nullptr);
    EXPECT_EQ(trial.m_aSumChnlA.m_nTimePt, 0);
}

TEST(TrialSpectrumFile, NewTrialHasTheSameBytesEveryTime)
{
    CSpctmTrialzk trial;
    CSpctmTrialzk other;
    EXPECT_TRUE(sameBytes(spectrumBytes(trial), spectrumBytes(other)));
}

TEST(TrialSpectrumFile, LoadingKeepsThePhaseLabelAndItsStatistics)
{
    CSpctmTrialzk trial;
    fill(trial);
    trial.m_aSumChnlA.m_pSumRms = planeOf({7});
    expectLoaded(trial, filledBytes());
    EXPECT_EQ(trial.m_strLabelA, CString("Ang"));
    EXPECT_EQ(trial.m_nSpctmParam10, 39);
    EXPECT_EQ(trial.m_aSumChnlA.m_nChannels, 4);
    EXPECT_EQ(trial.m_aSumChnlA.m_pSumMin, nullptr); // cleaned, as all first three planes
    EXPECT_THAT(valuesOf(trial.m_aSumChnlA.m_pSumRms, 1), ElementsAre(7));
}

TEST(TrialSpectrumFile, TagAndVersionAreChecked)
{
    expectTagAndVersionChecked<CSpctmTrialzk>("SPCTMTRIALZK", filledBytes().bytes(), newest,
                                              "The opened file is not trial data or corrupted!",
                                              "Wrong trial spectral file format!!?");
}

TEST(TrialSpectrumFile, TheVersionThatStandsReadyIsNotAcceptedYet)
{
    expectRefusedSpectrum<CSpctmTrialzk>(beginning(20190609).append(basic()), {"Wrong trial spectral file format!!?"});
}

TEST(TrialSpectrumFile, VersionWithoutLabelsKeepsThem)
{
    CSpctmTrialzk trial;
    expectLoaded(trial, beginning(20120423).append(basic()).append(sums(1)).append(sums(2)).append(sums(3)));
    EXPECT_EQ(trial.m_strLabelR, CString("Real"));
    EXPECT_EQ(trial.m_nSpctmParam9, 38);
    EXPECT_THAT(valuesOf(trial.m_aSumChnlI.m_pSumMin, 1), ElementsAre(2));
}

TEST(TrialSpectrumFile, TheThreeOldestVersionsAreNotSupported)
{
    for (const ByteBuilder& bytes :
         {beginning(20090726).append(oldBasic()).append(sums(1)),
          beginning(20111112).append(oldBasic()).append(sums(1)), beginning(20111206).append(basic()).append(sums(1))})
        expectRefusedSpectrum<CSpctmTrialzk>(bytes, {"Old file format is not supported!"});
}

TEST(TrialSpectrumFile, FieldsOfTheOldestVersionAreReadBeforeItIsRefused)
{
    const ScriptedHost host;
    CSpctmTrialzk trial;
    LoadingArchive archive(beginning(20090726).append(oldBasic()));
    EXPECT_EQ(trial.serializeTrlSpctmZk(*archive), 0);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_EQ(trial.m_nSpctmCmptType, 1);
    EXPECT_EQ(trial.m_nSpctmResultType, 2);
    EXPECT_EQ(trial.m_nSpctmNormState, 3);
    EXPECT_EQ(trial.m_nSpctmRix1, 4);
    EXPECT_EQ(trial.m_nTimePt, 5);
    EXPECT_EQ(trial.m_nSelectTimeBegin, 7);
    EXPECT_EQ(trial.m_nSelectFreqEnd, 10);
    EXPECT_EQ(trial.m_nDataLength, 11);
    EXPECT_EQ(trial.m_nDataEnd, 13);
    EXPECT_EQ(trial.m_nTimeStep, 14);
    EXPECT_EQ(trial.m_dFreqBegin, 15.5);
    EXPECT_EQ(trial.m_dFreqLinearStep, 17.5);
    EXPECT_EQ(trial.m_nFreqPt, 18); // the second time
    EXPECT_EQ(trial.m_dSpctmParam, 19.5);
    EXPECT_EQ(trial.m_dSamplingRate, 20.5);
    EXPECT_EQ(trial.m_dFreqPowerStep, 21.5);
    EXPECT_EQ(trial.m_nFreqPowerStep, 22);
    EXPECT_EQ(trial.m_nSpctmParam2, 23);
    EXPECT_EQ(trial.m_nSpctmRix2, 24);
}

TEST(TrialSpectrumFile, AnOldSumChannelEndsTheLoad)
{
    ByteBuilder oldSums = ByteBuilder().wide("SUMCHNLZK").i32(20120423).zeros(16 + 6 * 4 + 4 + 8 + 9 * 8);
    expectRefusedSpectrum<CSpctmTrialzk>(beginning(20120423).append(basic()).append(oldSums),
                                         {"Old file format is not supported!"});
    expectRefusedSpectrum<CSpctmTrialzk>(beginning(newest).append(basic()).append(sums(1)).wide("Re"),
                                         {"The opened file is not trial data or corrupted!"});
}

TEST(TrialSpectrumFile, WhatAFailedLoadBroughtStays)
{
    const ScriptedHost host;
    CSpctmTrialzk trial;
    const FailingAllocator failing(2);
    EXPECT_EQ(loadSpectrum(trial, filledBytes()), 0);
    EXPECT_EQ(trial.m_nSpctmParam9, 38);
    EXPECT_THAT(valuesOf(trial.m_aSumChnlR.m_pSumMin, 1), ElementsAre(1));
    EXPECT_EQ(trial.m_strLabelR, CString("Real"));
    host.expectNoMessages();
}

TEST(TrialSpectrumFile, EveryAllocationMayFail)
{
    const auto tried = forEachAllocationFailure([] {
        const ScriptedHost host;
        CSpctmTrialzk trial;
        loadSpectrum(trial, filledBytes());
        const FailingAllocator noFailure(0);
        expectStillWhole(trial);
    });
    EXPECT_EQ(tried, 3);
}

TEST(TrialSpectrumFile, TheLayoutThatStandsReadyHasAllLabelsAndSums)
{
    const ByteBuilder expected = axesAndSelection()
                                     .i64(32)
                                     .i32(33)
                                     .i32(34)
                                     .i32(35)
                                     .i64(36)
                                     .i32(37)
                                     .i32(38)
                                     .i32(29)
                                     .i32(30)
                                     .i32(31)
                                     .i32(39)
                                     .wide("Re")
                                     .wide("Im")
                                     .wide("Mag")
                                     .wide("Ang")
                                     .append(sums(1))
                                     .append(sums(2))
                                     .append(sums(3))
                                     .append(sums(4));
    CSpctmTrialzk trial;
    fill(trial);
    EXPECT_TRUE(
        sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(trial.serializeTrlSpctm20190609(ar), 1); }), expected));
    CSpctmTrialzk again;
    LoadingArchive archive(expected);
    EXPECT_EQ(again.serializeTrlSpctm20190609(*archive), 1);
    EXPECT_EQ(again.m_nSpctmParam10, 39);
    EXPECT_EQ(again.m_strLabelA, CString("Ang"));
    EXPECT_THAT(valuesOf(again.m_aSumChnlA.m_pSumMin, 1), ElementsAre(4));
}

TEST(TrialSpectrumFile, PrefixesAndBitFlipsDoNoHarm)
{
    expectPrefixesHarmless<CSpctmTrialzk>(filledBytes().bytes(), 0);
    expectBitFlipsHarmless<CSpctmTrialzk>(filledBytes().bytes());
    expectPrefixesHarmless<CSpctmTrialzk>(beginning(20090726).append(oldBasic()).bytes(), 0);
}

TEST(TrialSpectrumFile, PageShowsTheFieldsInTheirOrder)
{
    CSpctmTrialzk trial;
    fill(trial);
    expectPageFollowed(trial, "CSpctmTrialzk");
}

} // namespace
} // namespace megset::CSpctmTrial09File_test
