#include "megset/spectral/CMEGData3Spctm.h"

#include "tests/spectral/spectralDataset.h"

#include <limits>

#include <gtest/gtest.h>

namespace megset::CMEGData3SpctmLatency_test {
namespace {

// A trial at 1000 Hz, 100 samples before the trigger. Time point i of class 1 stands for sample 5 i + 200, of the
// cross-spectrum's class 2 for sample 4 i + 500.
class SpectrumLatency : public ::testing::Test
{
protected:
    SpectrumLatency() : set({100, 100}), data(set.data)
    {
        data.m_recordInfo.m_dRecSampleRate = 1000.0;
        data.m_recordInfo.m_nRecPreTrigPts = 100;
        CSpctmTrialzk& spectrum = set.spectrum(1);
        spectrum.m_nTimePt = 200;
        spectrum.m_nFreqPt = 3;
        spectrum.m_nTimeStep = 5;
        spectrum.m_nEdgePt = 150;
        spectrum.m_nDataBegin = 50;
        CMEGSpctmCCTrlDatazk& cross = *face.getCCSpctmTrlData4Class(2, true);
        cross.m_nTimePt = 50;
        cross.m_nTimeStep = 4;
        cross.m_nDataBegin = 500;
    }

    struct Latencies
    {
        int result = -9;
        double begin = -9.0;
        double end = -9.0;
        bool operator==(const Latencies&) const = default;
    };
    Latencies selected(std::int64_t begin, std::int64_t end, int nClass = 1)
    {
        set.spectrum(1).m_nSelectTimeBegin = begin;
        set.spectrum(1).m_nSelectTimeEnd = end;
        Latencies l;
        l.result = data.getTrialSpctmSelectTime2LatencyMsec(l.begin, l.end, nClass, 0);
        return l;
    }
    Latencies given(std::int64_t begin, std::int64_t end, int nClass = 1)
    {
        Latencies l;
        l.result = data.getTrialSpctmGivenTime2LatencyMsec(begin, end, l.begin, l.end, nClass, 0);
        return l;
    }
    Latencies crossSelected(std::int64_t begin, std::int64_t end, int nClass = 2)
    {
        face.getCCSpctmTrlData4Class(2, false)->m_nSelectTimeBegin = begin;
        face.getCCSpctmTrlData4Class(2, false)->m_nSelectTimeEnd = end;
        Latencies l;
        l.result = data.getTrialSpctmCCDSelectTime2LatencyMsec(l.begin, l.end, &face, nClass, 0);
        return l;
    }

    SpectralDataset set;
    CMEGDatazk& data;
    CMEGSpctmCCDataFacezk face;
};

TEST_F(SpectrumLatency, OfSample600WithAPreTriggerOf100Is500)
{
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(80, 1, 0), 500.0);
}

TEST_F(SpectrumLatency, TakesTimePointsOutsideAsTheEnds)
{
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(-3, 1, 0), 100.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(1000, 1, 0), 1095.0);
}

TEST_F(SpectrumLatency, OfAMissingClassIsThatOfSampleMinusOne)
{
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(80, 0, 0), -101.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(80, 3, 0), -101.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmCCDTimePt(80, 1, 0, &face), -101.0);
}

TEST_F(SpectrumLatency, IsMinusOneWithoutTrialsOrChannels)
{
    CMEGDatazk empty;
    EXPECT_EQ(empty.getLatencyMs4SpctmTimePt(0, 1, 0), -1.0);
    EXPECT_EQ(empty.getLatencyMs4SpctmCCDTimePt(0, 2, 0, &face), -1.0);
    set.trial()._cleanTrialChannels();
    EXPECT_EQ(data.getLatencyMs4SpctmTimePt(0, 1, 0), -1.0);
    EXPECT_EQ(data.getLatencyMs4SpctmCCDTimePt(0, 2, 0, &face), -1.0);
    EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 1000.0);
}

TEST_F(SpectrumLatency, StoresTheLimitsOfRateAndPreTrigger)
{
    for (const double rate : {0.0, -5.0, 1e-16}) {
        data.m_recordInfo.m_dRecSampleRate = rate;
        data.m_recordInfo.m_nRecPreTrigPts = -7;
        EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmTimePt(0, 1, 0), 200.0 / 1e-15 * 1000.0);
        EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 1e-15);
        EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 0);
    }
    data.m_recordInfo.m_dRecSampleRate = 1e-15;
    data.getLatencyMs4SpctmTimePt(0, 1, 0);
    EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 1e-15);
}

TEST_F(SpectrumLatency, OfACrossSpectrumTakesItsOwnTimePoints)
{
    EXPECT_DOUBLE_EQ(data.getLatencyMs4SpctmCCDTimePt(25, 2, 3, &face), 500.0);
    EXPECT_EQ(data.getLatencyMs4SpctmCCDTimePt(25, 2, 3, nullptr), -1.0);
}

TEST_F(SpectrumLatency, OfASelectionGivesBothEnds)
{
    EXPECT_EQ(selected(2, 6), (Latencies{2, data.getLatencyMs4SpctmTimePt(2, 1, 0), 130.0}));
    EXPECT_DOUBLE_EQ(selected(2, 6).begin, 110.0);
    EXPECT_DOUBLE_EQ(given(2, 6).begin, 110.0);
    EXPECT_DOUBLE_EQ(given(2, 6).end, 130.0);
    EXPECT_EQ(given(6, 2).result, 2);
    EXPECT_DOUBLE_EQ(given(6, 2).begin, 130.0);
    EXPECT_DOUBLE_EQ(crossSelected(25, 26).begin, 500.0);
    EXPECT_DOUBLE_EQ(crossSelected(25, 26).end, 504.0);
    EXPECT_EQ(crossSelected(25, 26).result, 2);
}

TEST_F(SpectrumLatency, OfASelectionOfOnePointGivesItAndTheNext)
{
    EXPECT_EQ(selected(2, 2).result, 1);
    EXPECT_DOUBLE_EQ(selected(2, 2).begin, 110.0);
    EXPECT_DOUBLE_EQ(selected(2, 2).end, 115.0);
    EXPECT_EQ(given(2, 2), selected(2, 2));
    EXPECT_EQ(crossSelected(25, 25).result, 1);
    EXPECT_DOUBLE_EQ(crossSelected(25, 25).end, 504.0);
    constexpr auto last = std::numeric_limits<std::int64_t>::max();
    EXPECT_DOUBLE_EQ(given(last, last).end, 1095.0);
}

TEST_F(SpectrumLatency, LeavesTheSelectionAsItIs)
{
    selected(-5, 900);
    EXPECT_EQ(set.spectrum(1).m_nSelectTimeBegin, -5);
    EXPECT_EQ(set.spectrum(1).m_nSelectTimeEnd, 900);
}

TEST_F(SpectrumLatency, OfASelectionIsZeroWithoutTheClass)
{
    const Latencies none{0, 0.0, 0.0};
    EXPECT_EQ(selected(2, 6, 0), none);
    EXPECT_EQ(selected(2, 6, 3), none);
    EXPECT_EQ(given(2, 6, 0), none);
    EXPECT_EQ(crossSelected(2, 6, 0), none);
    EXPECT_EQ(crossSelected(2, 6, 3), none);
    Latencies l;
    l.result = data.getTrialSpctmCCDSelectTime2LatencyMsec(l.begin, l.end, nullptr, 2, 0);
    EXPECT_EQ(l, none);
}

TEST_F(SpectrumLatency, OfASelectionIsZeroWithoutATrial)
{
    CMEGDatazk empty;
    double begin = -9.0;
    double end = -9.0;
    EXPECT_EQ(empty.getTrialSpctmSelectTime2LatencyMsec(begin, end, 1, 0), 0);
    EXPECT_EQ(begin, 0.0);
    EXPECT_EQ(end, 0.0);
    EXPECT_EQ(empty.getTrialSpctmGivenTime2LatencyMsec(0, 1, begin, end, 1, 0), 0);
    EXPECT_EQ(empty.getTrialSpctmCCDSelectTime2LatencyMsec(begin, end, &face, 2, 0), 0);
}

// ---- range over the trials

struct Range
{
    Range(CMEGDatazk& data, int bCompute, int nClass, int nDataType)
        : result(data.getSpctmRangeDataset(&min, &max, &mean, bCompute, nClass, nDataType))
    {
    }
    double min = -9.0;
    double max = -9.0;
    double mean = -9.0;
    int result;
};

TEST(RangeOfDataset, IsThatOfTheOnlyTrialInMemory)
{
    SpectralDataset set({100});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 1, 2, {4.0, 8.0});
    const Range range(set.data, 1, 0, 0);
    EXPECT_EQ(range.result, 1);
    EXPECT_EQ(range.min, 4.0);
    EXPECT_EQ(range.max, 8.0);
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
    set.trial().getSpctmRangeAllChann(&min, &max, &mean, 1, 0, 0);
    EXPECT_EQ(range.mean, mean);
}

TEST(RangeOfDataset, TakesTheExtremesAndTheMeanOfTheMeansOfTrialsInMemory)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(3, 1, 4), 1);
    const PlaneValues planes[] = {{4.0, 8.0}, {-2.0, 6.0}, {10.0, 11.0}};
    double sum = 0.0;
    for (int t = 0; t < 3; ++t) {
        data.getMDTrial(t)->getSpctmTrial(true, 0);
        setPlanes(*data.getMDTrial(t)->getChannel(0), 0, 1, 2, planes[t]);
        double min = 0.0;
        double max = 0.0;
        double mean = 0.0;
        data.getMDTrial(t)->getSpctmRangeAllChann(&min, &max, &mean, 1, 0, 0);
        sum += mean;
    }
    const Range range(data, 1, 0, 0);
    EXPECT_EQ(range.result, 1);
    EXPECT_EQ(range.min, -2.0);
    EXPECT_EQ(range.max, 11.0);
    EXPECT_EQ(range.mean, sum / 3.0);
}

TEST(RangeOfDataset, BeginsWithTheFirstTrialAndNotWithThePreset)
{
    for (const double sign : {-1.0, 1.0}) {
        CMEGDatazk data;
        ASSERT_EQ(data.initMEGData(2, 1, 4), 1);
        for (int t = 0; t < 2; ++t) {
            data.getMDTrial(t)->getSpctmTrial(true, 0);
            setPlanes(*data.getMDTrial(t)->getChannel(0), 0, 1, 2, {sign * (4.0 + t), sign * (8.0 + t)});
        }
        const Range range(data, 1, 0, 0);
        EXPECT_EQ(range.min, sign < 0.0 ? -9.0 : 4.0);
        EXPECT_EQ(range.max, sign < 0.0 ? -4.0 : 9.0);
    }
}

TEST(RangeOfDataset, IsOfTheClassAndDataTypeAndTakesKeptRangesUnlessComputed)
{
    SpectralDataset set({100});
    set.spectrum(1);
    setPlanes(set.channel(0), 1, 1, 2, {4.0, 8.0}); // the magnitudes are 20 more
    EXPECT_EQ(Range(set.data, 1, 1, 2).min, 24.0);
    EXPECT_EQ(Range(set.data, 1, 1, 2).max, 28.0);
    EXPECT_EQ(Range(set.data, 1, 0, 2).max, 1.0); // without that class
    set.channel(0).getSpctmChnl(false, 1)->scaleSpctm(10.0, 2);
    EXPECT_EQ(Range(set.data, 0, 1, 2).max, 28.0);
    EXPECT_EQ(Range(set.data, 1, 1, 2).max, 280.0);
}

TEST(RangeOfDataset, OpensNoTrial)
{
    SpectralFiles set(3, 1);
    set.data.getTrialzk(1);
    set.data.getCurrentTrialPt()->getSpctmTrial(true, 0);
    const Range range(set.data, 1, 0, 0);
    EXPECT_EQ(range.min, 100.0);
    EXPECT_EQ(range.max, 105.0);
    EXPECT_EQ(set.data.m_nCurrentTrial, 1);
}

TEST(RangeOfDataset, CountsATrialThatFails)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(2, 1, 4), 1);
    data.getMDTrial(0)->getSpctmTrial(true, 0);
    setPlanes(*data.getMDTrial(0)->getChannel(0), 0, 1, 2, {4.0, 4.0});
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
    data.getMDTrial(0)->getSpctmRangeAllChann(&min, &max, &mean, 1, 0, 0);
    const Range range(data, 1, 0, 0); // trial 1 has no such class: -1, 1 and 0
    EXPECT_EQ(range.min, -1.0);
    EXPECT_EQ(range.max, 4.0);
    EXPECT_EQ(range.mean, mean / 2.0);
}

TEST(RangeOfDataset, OfNoTrialInMemoryIsThePreset)
{
    CMEGDatazk data;
    const Range range(data, 1, 0, 0);
    EXPECT_EQ(range.result, 1);
    EXPECT_EQ(range.min, -1.0);
    EXPECT_EQ(range.max, 1.0);
    EXPECT_EQ(range.mean, 0.0);
}

TEST(RangeOfDataset, SkipsNullPointers)
{
    SpectralDataset set({100});
    EXPECT_EQ(set.data.getSpctmRangeDataset(nullptr, nullptr, nullptr, 1, 0, 0), 1);
}

} // namespace
} // namespace megset::CMEGData3SpctmLatency_test
