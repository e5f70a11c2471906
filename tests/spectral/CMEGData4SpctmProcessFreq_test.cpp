// Reduction of the frequency data of a trial's channels.

#include "megset/spectral/CMEGData4SpctmProcess.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/spectral/plainSums.h"
#include "tests/spectral/spectralDataset.h"

#include <cmath>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData4SpctmProcessFreq_test {
namespace {

using ::testing::ElementsAre;

void setFreqData(CMDChannelzk& channel, int nClass, int nDataType, const PlaneValues& values)
{
    auto* data = static_cast<CFreqDataChnlzk*>(channel.getFreqChnl(true, nClass));
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->setFreqData(nDataType, values), 1);
}

const CSumChnlFreqDatazk* computed(SpectralDataset& set, int nClass, int nDataType, bool meg = false, bool eeg = false)
{
    return static_cast<const CSumChnlFreqDatazk*>(
        set.data.computTrialFreqData(nullptr, meg, eeg, false, false, nClass, nDataType));
}

TEST(SumFreqData, OfTwoChannelsFollowTheFormulasOfTheSumPlanes)
{
    SpectralDataset set({100, 100});
    setFreqData(set.channel(0), 1, 2, {2.0, -1.0});
    setFreqData(set.channel(1), 1, 2, {4.0, 3.0});
    const CSumChnlFreqDatazk* sums = computed(set, 1, 2);
    ASSERT_NE(sums, nullptr);
    EXPECT_EQ(sums, &set.trial().m_pFreqDataTrialC->m_aSum[2]);
    EXPECT_EQ(sums->m_nFreqPt, 2);
    EXPECT_THAT(sums->m_aSumMin, ElementsAre(2.0, -1.0));
    EXPECT_THAT(sums->m_aSumMean, ElementsAre(3.0, 1.0));
    EXPECT_THAT(sums->m_aSumMax, ElementsAre(4.0, 3.0));
    EXPECT_THAT(sums->m_aSumPositive, ElementsAre(6.0, 3.0));
    EXPECT_THAT(sums->m_aSumNegative, ElementsAre(0.0, -1.0));
    EXPECT_THAT(sums->m_aSumRms, ElementsAre(std::sqrt(4.0 / 2.0), std::sqrt(1.0 / 2.0)));
    EXPECT_EQ(sums->m_bRangeValid, 1);
    EXPECT_EQ(sums->m_nChannels, 2);
    EXPECT_EQ(sums->m_dMax, 4.0);
    EXPECT_EQ(sums->m_dMean, 2.0);
    EXPECT_EQ(sums->m_dMin, -1.0);
    EXPECT_EQ(sums->m_dPositive, 1.0 + 3.5);
    EXPECT_EQ(sums->m_dNegative, -0.5);
    EXPECT_EQ(sums->m_dRms, std::sqrt(2.5 + 12.5));
}

TEST(SumFreqData, OfRandomChannelsAgreeWithPlainLoops)
{
    constexpr std::int64_t points = 133;
    for (const int count : {1, 2, 5, 19}) {
        SCOPED_TRACE(count);
        SpectralDataset set(std::vector<int>(static_cast<std::size_t>(count), 100));
        std::vector<PlaneValues> channels;
        for (int c = 0; c < count; ++c) {
            channels.push_back(noisePlane(1, points, static_cast<unsigned>(50 * count + c)));
            setFreqData(set.channel(c), 2, 1, channels.back());
        }
        const CSumChnlFreqDatazk* sums = computed(set, 2, 1, true);
        ASSERT_NE(sums, nullptr);
        plainLoops::expectSameBits(plainLoops::Sums(*sums), plainLoops::plainSums(channels, points));
    }
}

TEST(SumFreqData, OfOneChannelHaveNoRootTaken)
{
    SpectralDataset set({100});
    setFreqData(set.channel(0), 0, 0, {3.0, -4.0});
    const CSumChnlFreqDatazk* sums = computed(set, 0, 0);
    ASSERT_NE(sums, nullptr);
    EXPECT_THAT(sums->m_aSumRms, ElementsAre(9.0, 16.0));
    EXPECT_EQ(sums->m_dRms, 12.5);
}

TEST(SumFreqData, MakeTheTrialsObjectAlsoWhenNoChannelQualifies)
{
    const ScriptedHost host;
    SpectralDataset set({100});
    EXPECT_EQ(computed(set, 2, 0), nullptr);
    EXPECT_NE(set.trial().m_pFreqDataTrialX, nullptr);
    EXPECT_EQ(set.trial().m_pFreqDataTrialA, nullptr);
    host.expectNoMessages();
}

TEST(SumFreqData, AreNullWithoutTrialClassOrDataType)
{
    SpectralDataset set({100});
    setFreqData(set.channel(0), 0, 0, {3.0});
    EXPECT_EQ(computed(set, 3, 0), nullptr);
    EXPECT_EQ(computed(set, -1, 0), nullptr);
    EXPECT_EQ(computed(set, 0, 1), nullptr);
    EXPECT_EQ(computed(set, 0, 4), nullptr);
    EXPECT_EQ(CMEGDatazk().computTrialFreqData(nullptr, false, false, false, false, 0, 0), nullptr);
}

TEST(SumFreqData, PassTheSameFilters)
{
    SpectralDataset set({100, 10, 300});
    for (int c = 0; c < 3; ++c)
        setFreqData(set.channel(c), 0, 0, {static_cast<double>(c + 1)});
    EXPECT_EQ(computed(set, 0, 0, true)->m_dMean, 1.0);
    EXPECT_EQ(computed(set, 0, 0, false, true)->m_dMean, 3.0);
    EXPECT_EQ(computed(set, 0, 0)->m_dMean, 2.0);
    EXPECT_EQ(computed(set, 0, 0, true, true), nullptr);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, true, false, false, false, 0, 0, nullptr), 2);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, true, false, false, 0, 0, nullptr), 1);
    set.data.setGoodChnl4Alltrials(0, 0);
    set.data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, true, false, 0, 0, nullptr), 2);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, true, true, 0, 0, nullptr), 1);
}

TEST(SumFreqData, TellGoodAndShownChannelsApart)
{
    SpectralDataset set({100, 100, 100});
    for (int c = 0; c < 3; ++c)
        setFreqData(set.channel(c), 0, 0, {std::pow(10.0, c)});
    set.data.setShowChnl4Alltrials(0, 0);
    set.data.setGoodChnl4Alltrials(1, 0);
    set.data.setGoodChnl4Alltrials(2, 0);
    const auto mean = [&](bool good, bool shown) {
        const auto* sums = static_cast<const CSumChnlFreqDatazk*>(
            set.data.computTrialFreqData(nullptr, false, false, good, shown, 0, 0));
        return sums != nullptr ? sums->m_dMean : -9.0;
    };
    EXPECT_EQ(mean(true, false), 1.0);
    EXPECT_EQ(mean(false, true), 55.0);
    EXPECT_EQ(mean(true, true), -9.0);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, true, false, 0, 0, nullptr), 1);
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, false, true, 0, 0, nullptr), 2);
    set.data.computTrialFreqDataAllClassDataType(nullptr, false, false, false, true);
    EXPECT_EQ(set.trial().m_pFreqDataTrialA->m_aSum[0].m_dMean, 55.0);
}

TEST(SumFreqData, AreOfTheTrialThatIsNamed)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(2, 1, 4), 1);
    CMDTrialzk& other = *data.getMDTrial(1);
    setFreqData(*other.getChannel(0), 0, 0, {3.0});
    EXPECT_EQ(data.computTrialFreqData(nullptr, false, false, false, false, 0, 0), nullptr);
    EXPECT_EQ(data.checkChnlFreqDataInfo(&other, false, false, false, false, 0, 0, nullptr), 1);
    EXPECT_NE(data.computTrialFreqData(&other, false, false, false, false, 0, 0), nullptr);
    EXPECT_EQ(data.computTrialFreqDataAllClassDataType(&other, false, false, false, false),
              &other.m_pFreqDataTrialA->m_aSum[0]);
}

TEST(SumFreqData, OfUnequalLengthsShowTheMessageAndTakeTheLongest)
{
    const ScriptedHost host;
    SpectralDataset set({100, 100});
    setFreqData(set.channel(0), 0, 0, {1.0, 2.0});
    setFreqData(set.channel(1), 0, 0, {3.0, 4.0, 8.0});
    for (int round = 0; round < 2; ++round) {
        const CSumChnlFreqDatazk* sums = computed(set, 0, 0);
        ASSERT_NE(sums, nullptr);
        EXPECT_THAT(sums->m_aSumMean, ElementsAre(2.0, 3.0, 4.0));
        EXPECT_EQ(sums->m_dMean, (1.5 + 5.0) / 2.0);
    }
    const CString text = "  frequency range (2 3)";
    EXPECT_THAT(host.messages(), ElementsAre(text, text));
}

TEST(SumFreqData, AreCountedWithoutAMessageWhenTheLengthIsNotAskedFor)
{
    const ScriptedHost host;
    SpectralDataset set({100, 100});
    setFreqData(set.channel(0), 0, 0, {1.0, 2.0});
    setFreqData(set.channel(1), 0, 0, {3.0});
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, false, false, 0, 0, nullptr), 2);
    host.expectNoMessages();
    std::int64_t points = -9;
    EXPECT_EQ(set.data.checkChnlFreqDataInfo(nullptr, false, false, false, false, 1, 0, &points), 0);
    EXPECT_EQ(points, -9);
    EXPECT_EQ(CMEGDatazk().checkChnlFreqDataInfo(nullptr, false, false, false, false, 0, 0, &points), 0);
}

TEST(SumFreqData, WithoutMemoryForTheTrialsObjectShowItsMessage)
{
    const ScriptedHost host;
    SpectralDataset set({100});
    setFreqData(set.channel(0), 0, 0, {1.0});
    const FailingAllocator fails(1);
    EXPECT_EQ(computed(set, 0, 0), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Initializing trial frequency data error!")));
}

TEST(SumFreqData, OfAllClassesAndDataTypesGiveTheLastResult)
{
    SpectralDataset set({100});
    setFreqData(set.channel(0), 0, 3, {1.0});
    setFreqData(set.channel(0), 1, 1, {2.0});
    void* last = set.data.computTrialFreqDataAllClassDataType(nullptr, true, false, true, true);
    EXPECT_EQ(last, &set.trial().m_pFreqDataTrialC->m_aSum[1]);
    EXPECT_EQ(set.trial().m_pFreqDataTrialA->m_aSum[3].m_dMean, 1.0);
    EXPECT_EQ(set.data.computTrialFreqDataAllClassDataType(nullptr, false, true, true, true), nullptr);
}

} // namespace
} // namespace megset::CMEGData4SpctmProcessFreq_test
