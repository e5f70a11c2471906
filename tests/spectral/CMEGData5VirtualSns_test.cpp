#include "megset/spectral/CMEGData5VirtualSns.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace megset::CMEGData5VirtualSns_test {
namespace {

TEST(VirtualSensorLists, AreMadeOnDemandOneForSpectraAndOneForWaves)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getVirtSnsPOXlist4Spctm(0), nullptr);
    EXPECT_EQ(data.getVirtSnsPOXlist4Wave(0), nullptr);
    CVirtSnsPOXlistzk* spectra = data.getVirtSnsPOXlist4Spctm(1);
    ASSERT_NE(spectra, nullptr);
    EXPECT_EQ(data.getVirtSnsPOXlist4Wave(0), nullptr);
    CVirtSnsPOXlistzk* waves = data.getVirtSnsPOXlist4Wave(1);
    ASSERT_NE(waves, nullptr);
    EXPECT_NE(spectra, waves);
    EXPECT_EQ(data.m_pVirtSnsPOXlist4Spctm.get(), spectra);
    EXPECT_EQ(data.m_pVirtSnsPOXlist4Wave.get(), waves);
    EXPECT_EQ(data.getVirtSnsPOXlist4Spctm(1), spectra);
    EXPECT_EQ(data.getVirtSnsPOXlist4Wave(0), waves);
}

TEST(VirtualSensorLists, AreNullWithoutMemoryAndWithoutAMessage)
{
    const ScriptedHost host;
    CMEGDatazk data;
    {
        const FailingAllocator fails(1, FailingAllocator::Failing::FromThenOn);
        EXPECT_EQ(data.getVirtSnsPOXlist4Spctm(1), nullptr);
        EXPECT_EQ(data.getVirtSnsPOXlist4Wave(1), nullptr);
    }
    host.expectNoMessages();
}

// A trial at 1000 Hz, 100 samples before the trigger, with one virtual spectrum: point i stands for sample 5 i + 200.
class VirtualLatency : public ::testing::Test
{
protected:
    VirtualLatency()
    {
        data.initMEGData(1, 2, 10);
        data.m_recordInfo.m_dRecSampleRate = 1000.0;
        data.m_recordInfo.m_nRecPreTrigPts = 100;
        CFaceVirtChnlSpctmzk& spectra = face();
        spectra.m_nTimePt = 50;
        spectra.m_nFreqPt = 4;
        spectra.m_nDataBegin = 150;
        spectra.m_nEdgePt = 50;
        spectra.m_nTimeStep = 5;
        const CVirtChnlSpctmzk one;
        spectra.addVirtChnlSpctm(&one);
    }
    CFaceVirtChnlSpctmzk& face() { return *data.getCurrentTrialPt()->getFaceVirtChnlSpctmzk(1); }
    void select(std::int64_t begin, std::int64_t end)
    {
        face().m_nSelectTimeBegin = begin;
        face().m_nSelectTimeEnd = end;
    }
    void expectSelection(int result, double begin, double end)
    {
        double b = -9.0;
        double e = -9.0;
        EXPECT_EQ(data.getVirtSpctmSelectTime2LatencyMsec(b, e), result);
        EXPECT_DOUBLE_EQ(b, begin);
        EXPECT_DOUBLE_EQ(e, end);
    }

    CMEGDatazk data;
};

TEST_F(VirtualLatency, OfATimePointIsThatOfItsSample)
{
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(0), 100.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(10), 150.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(-5), 100.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(1000), 345.0);
}

TEST_F(VirtualLatency, StoresTheLimitsOfRateAndPreTrigger)
{
    data.m_recordInfo.m_dRecSampleRate = 0.0;
    data.m_recordInfo.m_nRecPreTrigPts = -5;
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(0), 200.0 / 1e-15 * 1000.0);
    EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 1e-15);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 0);
}

TEST_F(VirtualLatency, OfASelectionGivesBothEnds)
{
    select(2, 6);
    expectSelection(2, 110.0, 130.0);
    select(6, 2);
    expectSelection(2, 130.0, 110.0);
}

TEST_F(VirtualLatency, OfASelectionOfOnePointGivesItAndTheNext)
{
    select(2, 2);
    expectSelection(1, 110.0, 115.0);
    select(49, 49); // there is no next one
    expectSelection(1, 345.0, 345.0);
    select(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max());
    expectSelection(1, 345.0, 345.0);
}

TEST_F(VirtualLatency, IsMinusOneWithoutSpectraOrTrial)
{
    data.getCurrentTrialPt()->cleanFaceVirtSpctm();
    EXPECT_EQ(data.getLatencyMs4VirtSpctmTimePt(0), -1.0);
    expectSelection(0, 0.0, 0.0);
    data._cleanDatasetTrials();
    EXPECT_EQ(data.getLatencyMs4VirtSpctmTimePt(0), -1.0);
    expectSelection(0, 0.0, 0.0);
}

TEST_F(VirtualLatency, OfASelectionNeedsACurrentSpectrum)
{
    select(2, 6);
    face().m_nCurrentChannel = 7;
    expectSelection(0, 0.0, 0.0);
    EXPECT_DOUBLE_EQ(data.getLatencyMs4VirtSpctmTimePt(0), 100.0);
}

} // namespace
} // namespace megset::CMEGData5VirtualSns_test
