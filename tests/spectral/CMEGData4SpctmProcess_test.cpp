// Reduction of the planes of a trial's channels to the sum planes, and the filters of channels.

#include "megset/spectral/CMEGData4SpctmProcess.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/spectral/plainSums.h"
#include "tests/spectral/spectralDataset.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData4SpctmProcess_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace plainLoops;

constexpr double infinity = std::numeric_limits<double>::infinity();

// Channels of MEG type with planes of one value in class 0.
struct OneValueEach : SpectralDataset
{
    explicit OneValueEach(const std::vector<double>& values) : SpectralDataset(std::vector<int>(values.size(), 100))
    {
        spectrum(0);
        for (std::size_t c = 0; c < values.size(); ++c)
            setPlanes(channel(static_cast<int>(c)), 0, 1, 1, {values[c]}, 1);
    }
    Sums computed(int nDataType = 0)
    {
        const CSumChnlSpctmDatazk* sums = data.computTrialSpctm(nullptr, false, false, false, false, 0, nDataType);
        EXPECT_NE(sums, nullptr);
        return sums != nullptr ? Sums(*sums) : Sums();
    }
    double plane(std::size_t p) { return computed().planes[p][0]; }
};

// ---- the formulas

TEST(SumPlanes, OfTwoChannelsOf2And4)
{
    OneValueEach set({2.0, 4.0});
    const Sums sums = set.computed();
    EXPECT_THAT(sums.planes, ElementsAre(PlaneValues{2.0}, PlaneValues{3.0}, PlaneValues{4.0}, PlaneValues{6.0},
                                         PlaneValues{0.0}, PlaneValues{std::sqrt(4.0 / 2.0)}));
    EXPECT_THAT(sums.statistics, ElementsAre(2.0, 3.0, 4.0, 6.0, 0.0, std::sqrt(20.0)));
    EXPECT_EQ(sums.channels, 2);
}

TEST(SumPlanes, OfTwoChannelsOfEachSignAreDividedByOne)
{
    OneValueEach set({-1.0, 3.0});
    EXPECT_EQ(set.plane(3), 3.0);
    EXPECT_EQ(set.plane(4), -1.0);
}

TEST(SumPlanes, OfOneChannelHoldItsValuesAndSquaresWithNoRootTaken)
{
    SpectralDataset set({100});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 1, 2, {-3.0, 4.0}, 1);
    const Sums sums(*set.data.computTrialSpctm(nullptr, true, false, true, true, 0, 0));
    EXPECT_THAT(sums.planes, ElementsAre(PlaneValues{-3.0, 4.0}, PlaneValues{-3.0, 4.0}, PlaneValues{-3.0, 4.0},
                                         PlaneValues{0.0, 4.0}, PlaneValues{-3.0, 0.0}, PlaneValues{9.0, 16.0}));
    EXPECT_THAT(sums.statistics, ElementsAre(-3.0, 0.5, 4.0, 2.0, -1.5, 12.5));
}

TEST(SumPlanes, TakeTheRootMeanSquareFromTheFirstChannelAlone)
{
    EXPECT_EQ(OneValueEach({3.0, 100.0, -100.0}).plane(5), std::sqrt(9.0 / 3.0));
    EXPECT_EQ(OneValueEach({0.0, 100.0}).plane(5), 0.0);
}

TEST(SumPlanes, DivideByHalfOfAnOddNumberToo)
{
    OneValueEach set({3.0, 3.0, -6.0});
    EXPECT_EQ(set.plane(3), 6.0 / 1.5);
    EXPECT_EQ(set.plane(4), -6.0 / 1.5);
}

TEST(SumPlanes, CountZeroAsNegative)
{
    OneValueEach set({0.0, -0.0});
    EXPECT_EQ(set.plane(3), 0.0);
    EXPECT_EQ(set.plane(4), 0.0);
}

TEST(SumPlanes, LetNoNumberAndInfinityThrough)
{
    OneValueEach nan({1.0, std::nan("")});
    EXPECT_TRUE(std::isnan(nan.plane(1)));
    EXPECT_EQ(nan.plane(0), 1.0);
    EXPECT_EQ(nan.plane(2), 1.0);
    EXPECT_TRUE(std::isnan(nan.plane(4)));
    OneValueEach infinite({1.0, infinity});
    EXPECT_EQ(infinite.plane(2), infinity);
    EXPECT_EQ(infinite.plane(3), infinity);
}

TEST(SumPlanes, MarkTheRangeAsValidAndTellTheirShape)
{
    SpectralDataset set({100, 100});
    set.spectrum(0);
    for (int c = 0; c < 2; ++c)
        setPlanes(set.channel(c), 0, 2, 3, {1, 2, 3, 4, 5, 6});
    const CSumChnlSpctmDatazk* sums = set.data.computTrialSpctm(&set.trial(), false, false, false, false, 0, 2);
    ASSERT_NE(sums, nullptr);
    EXPECT_EQ(sums, &set.spectrum(0).m_aSumChnlM);
    EXPECT_EQ(sums->m_nRangeValid, 1);
    EXPECT_EQ(sums->m_nTimePt, 2);
    EXPECT_EQ(sums->m_nFreqPt, 3);
    EXPECT_EQ(sums->m_dRangeMin, 21.0);
    EXPECT_EQ(sums->m_dRangeMax, 26.0);
}

TEST(SumPlanes, ComputedAgainAreTheSame)
{
    OneValueEach set({-1.0, 3.0, 7.0});
    const Sums once = set.computed();
    expectSameBits(set.computed(), once);
}

TEST(SumPlanes, OfRandomChannelsAgreeWithPlainLoops)
{
    constexpr std::int64_t times = 37;
    constexpr std::int64_t freqs = 29;
    for (const int count : {1, 2, 5, 19}) {
        SCOPED_TRACE(count);
        SpectralDataset set(std::vector<int>(static_cast<std::size_t>(count), 102));
        set.spectrum(2);
        std::vector<PlaneValues> planes;
        for (int c = 0; c < count; ++c) {
            planes.push_back(noisePlane(times, freqs, static_cast<unsigned>(10 * count + c)));
            setPlanes(set.channel(c), 2, times, freqs, planes.back(), 1);
        }
        const CSumChnlSpctmDatazk* sums = set.data.computTrialSpctm(nullptr, true, false, true, true, 2, 0);
        ASSERT_NE(sums, nullptr);
        expectSameBits(Sums(*sums), plainSums(planes, times * freqs));
    }
}

TEST(SumPlanes, OfUnequalPlanesTakeEachAtItsOwnIndices)
{
    const ScriptedHost host;
    const std::vector<PlaneValues> planes = {noisePlane(2, 3, 1), noisePlane(4, 2, 2), noisePlane(3, 5, 3)};
    SpectralDataset set({100, 100, 100});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 2, 3, planes[0], 1);
    setPlanes(set.channel(1), 0, 4, 2, planes[1], 1);
    setPlanes(set.channel(2), 0, 3, 5, planes[2], 1);
    for (int round = 0; round < 2; ++round) { // nothing of the first is left in the second
        const CSumChnlSpctmDatazk* sums = set.data.computTrialSpctm(nullptr, false, false, false, false, 0, 0);
        ASSERT_NE(sums, nullptr);
        EXPECT_EQ(sums->m_nTimePt, 4);
        EXPECT_EQ(sums->m_nFreqPt, 5);
        expectSameBits(Sums(*sums), plainSums(planes, 20));
    }
    const CString text = "Spectral time range (2 4) frequency range (2 5)";
    EXPECT_THAT(host.messages(), ElementsAre(text, text));
}

// ---- what is not computed

TEST(SumPlanes, AreNullWithoutTrialClassDataTypeOrPlane)
{
    const ScriptedHost host;
    CMEGDatazk empty;
    EXPECT_EQ(empty.computTrialSpctm(nullptr, false, false, false, false, 0, 0), nullptr);
    OneValueEach set({1.0});
    for (const int nClass : {-1, 1, 2, 3})
        EXPECT_EQ(set.data.computTrialSpctm(nullptr, false, false, false, false, nClass, 0), nullptr);
    for (const int nDataType : {-1, 1, 3, 4})
        EXPECT_EQ(set.data.computTrialSpctm(nullptr, false, false, false, false, 0, nDataType), nullptr);
    set.trial()._cleanSpctmTrlData();
    EXPECT_EQ(set.data.computTrialSpctm(nullptr, false, false, false, false, 0, 0), nullptr);
    EXPECT_EQ(set.trial().m_pSpctmTrialA, nullptr);
    host.expectNoMessages();
}

TEST(SumPlanes, AreNullWithoutAMessageWhenNoChannelQualifies)
{
    const ScriptedHost host;
    SpectralDataset set({100, 300});
    for (int nClass = 0; nClass < 3; ++nClass) {
        set.spectrum(nClass);
        EXPECT_EQ(set.data.computTrialSpctm(nullptr, false, false, false, false, nClass, 0), nullptr);
    }
    host.expectNoMessages();
}

TEST(SumPlanes, AreNullWithMegAndEegBothAskedFor)
{
    const ScriptedHost host;
    SpectralDataset set({100, 300});
    set.spectrum(0);
    for (int c = 0; c < 2; ++c)
        setPlanes(set.channel(c), 0, 1, 1, {1.0});
    EXPECT_EQ(set.data.computTrialSpctm(nullptr, true, true, false, false, 0, 0), nullptr);
    EXPECT_EQ(set.data.checkChnlSpctmInfo(nullptr, true, true, false, false, 0, 0, nullptr, nullptr), 0);
    host.expectNoMessages();
}

TEST(SumPlanes, WithoutMemoryAreNullAndTheSumObjectEmpty)
{
    const ScriptedHost host;
    OneValueEach set({1.0, 2.0});
    const std::int64_t tried = forEachAllocationFailure([&] {
        CSumChnlSpctmDatazk& sums = set.spectrum(0).m_aSumChnlR;
        sums.clean();
        const CSumChnlSpctmDatazk* computed = set.data.computTrialSpctm(nullptr, false, false, false, false, 0, 0);
        if (computed != nullptr)
            return;
        EXPECT_EQ(sums.m_nTimePt, 0);
        EXPECT_EQ(sums.m_nRangeValid, 0);
        EXPECT_EQ(sums.m_pSumMin, nullptr);
    });
    EXPECT_EQ(tried, 6);
    host.expectNoMessages();
}

// ---- filters

// Nine channels, each with a plane of its own power of two: 100, 103, 10 and 150 (of the MEG group), 300, 354, 355,
// 600, and a bad MEG channel that isn't shown.
class SumFilters : public ::testing::Test
{
protected:
    SumFilters() : set({100, 103, 10, 150, 300, 354, 355, 600, 101})
    {
        set.spectrum(0);
        for (int c = 0; c < 9; ++c)
            setPlanes(set.channel(c), 0, 1, 1, {std::ldexp(1.0, c)}, 1);
        set.data.setGoodChnl4Alltrials(8, 0);
        set.data.setShowChnl4Alltrials(8, 0);
        set.data.setGoodChnl4Alltrials(0, 0);
        set.data.setShowChnl4Alltrials(1, 0);
        set.data.setShowChnl4Alltrials(4, 0);
    }
    // Which channels went into the sum: every power of two is in it or not.
    int summed(bool meg, bool eeg, bool good, bool shown)
    {
        const CSumChnlSpctmDatazk* sums = set.data.computTrialSpctm(nullptr, meg, eeg, good, shown, 0, 0);
        if (sums == nullptr)
            return 0;
        return static_cast<int>(std::lround(sums->m_pSumMean[0] * static_cast<double>(sums->m_nChannels)));
    }
    int counted(bool meg, bool eeg, bool good, bool shown)
    {
        return set.data.checkChnlSpctmInfo(nullptr, meg, eeg, good, shown, 0, 0, nullptr, nullptr);
    }

    SpectralDataset set;
};

TEST_F(SumFilters, NotSetTakeEveryChannel)
{
    EXPECT_EQ(summed(false, false, false, false), 511);
    EXPECT_EQ(counted(false, false, false, false), 9);
}

TEST_F(SumFilters, ForMegTakeMeasuringChannelsButCountTheWholeGroup)
{
    EXPECT_EQ(summed(true, false, false, false), 1 + 2 + 256);
    EXPECT_EQ(counted(true, false, false, false), 5);
}

TEST_F(SumFilters, ForEegTakeTheEegGroup)
{
    EXPECT_EQ(summed(false, true, false, false), 16 + 32);
    EXPECT_EQ(counted(false, true, false, false), 2);
}

TEST_F(SumFilters, ForGoodAndShownTakeTheFlagsOfAllTrials)
{
    EXPECT_EQ(summed(false, false, true, false), 511 - 256 - 1);
    EXPECT_EQ(counted(false, false, true, false), 7);
    EXPECT_EQ(summed(false, false, false, true), 511 - 256 - 2 - 16);
    EXPECT_EQ(counted(false, false, false, true), 6);
}

TEST_F(SumFilters, TogetherAreAllRequired)
{
    EXPECT_EQ(summed(true, false, true, false), 2);
    EXPECT_EQ(summed(true, false, false, true), 1);
    EXPECT_EQ(summed(false, true, true, true), 32);
    EXPECT_EQ(summed(true, false, true, true), 0);
}

TEST_F(SumFilters, WithoutFlagsLeaveNoGoodOrShownChannel)
{
    set.data._cleanChnlParam();
    EXPECT_EQ(counted(false, false, true, false), 0);
    EXPECT_EQ(counted(false, false, false, true), 0);
    EXPECT_EQ(counted(false, false, false, false), 9);
}

TEST_F(SumFilters, ThatLeaveReferenceChannelsAloneGiveZeros)
{
    SpectralDataset references({10, 11});
    references.spectrum(0);
    for (int c = 0; c < 2; ++c)
        setPlanes(references.channel(c), 0, 2, 1, {5.0, 6.0}, 1);
    CSumChnlSpctmDatazk* sums = references.data.computTrialSpctm(nullptr, false, false, false, false, 0, 0);
    EXPECT_EQ(sums->m_dRangeMax, 6.0);
    sums = references.data.computTrialSpctm(nullptr, true, false, false, false, 0, 0);
    ASSERT_NE(sums, nullptr);
    EXPECT_EQ(sums->m_nRangeValid, 1);
    EXPECT_EQ(sums->m_nChannels, 0);
    EXPECT_THAT(Sums(*sums).statistics, ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
    for (const PlaneValues& plane : Sums(*sums).planes)
        EXPECT_EQ(plane, (PlaneValues{0.0, 0.0}));
}

TEST_F(SumFilters, PassOverEmptyPlaces)
{
    set.trial().m_ppChannel.set(7, nullptr);
    EXPECT_EQ(summed(false, false, false, false), 511 - 128);
    EXPECT_EQ(counted(false, false, false, false), 8);
}

// ---- counting

TEST(SpectrumInfo, GivesTheLargestSizeThroughPointersThatAreNotNull)
{
    const ScriptedHost host;
    OneValueEach set({1.0, 2.0});
    std::int64_t times = -9;
    std::int64_t freqs = -9;
    EXPECT_EQ(set.data.checkChnlSpctmInfo(&set.trial(), false, false, false, false, 0, 0, &times, nullptr), 2);
    EXPECT_EQ(set.data.checkChnlSpctmInfo(&set.trial(), false, false, false, false, 0, 0, nullptr, &freqs), 2);
    EXPECT_EQ(times, 1);
    EXPECT_EQ(freqs, 1);
    host.expectNoMessages();
}

TEST(SpectrumInfo, ShowsUnequalSizesWhenOneIsAskedForAndGoesOn)
{
    const ScriptedHost host;
    SpectralDataset set({100, 100});
    setPlanes(set.channel(0), 0, 2, 3, constant(2, 3, 1.0));
    setPlanes(set.channel(1), 0, 5, 3, constant(5, 3, 1.0));
    EXPECT_EQ(set.data.checkChnlSpctmInfo(nullptr, false, false, false, false, 0, 0, nullptr, nullptr), 2);
    EXPECT_THAT(host.messages(), IsEmpty());
    std::int64_t times = 0;
    EXPECT_EQ(set.data.checkChnlSpctmInfo(nullptr, false, false, false, false, 0, 0, &times, nullptr), 2);
    EXPECT_EQ(times, 5);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Spectral time range (2 5) frequency range (3 3)")));
}

TEST(SpectrumInfo, WritesNothingWhenNoChannelQualifies)
{
    SpectralDataset set({100});
    set.channel(0).getSpctmChnl(true, 0); // empty
    std::int64_t times = -9;
    std::int64_t freqs = -9;
    EXPECT_EQ(set.data.checkChnlSpctmInfo(nullptr, false, false, false, false, 0, 0, &times, &freqs), 0);
    EXPECT_EQ(times, -9);
    EXPECT_EQ(freqs, -9);
    EXPECT_EQ(CMEGDatazk().checkChnlSpctmInfo(nullptr, false, false, false, false, 0, 0, &times, &freqs), 0);
}

} // namespace
} // namespace megset::CMEGData4SpctmProcess_test
