// A dataset's file may count any number of trials without having places for them. What walks over all trials is done
// with that at once.

#include "tests/persistence/datasetRecord.h"
#include "tests/persistence/informationFiles.h"

#include "tests/kit/ScriptedHost.h"

#include <chrono>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::countedTrials_test {

namespace {

class TrialsWithoutPlaces : public ::testing::Test
{
protected:
    void SetUp() override
    {
        datasetRecord::Parts parts;
        parts.trials.total = INT32_MAX;
        ASSERT_EQ(datasetRecord::load(data, datasetRecord::record(datasetRecord::newest, parts)), 1);
        ASSERT_EQ(data.getTotalTrial(), INT32_MAX);
        ASSERT_EQ(data.m_ppTrial, nullptr);
        m_begin = std::chrono::steady_clock::now();
    }
    // Two thousand million steps take longer.
    void TearDown() override { EXPECT_LT(std::chrono::steady_clock::now() - m_begin, std::chrono::seconds(1)); }

    ScriptedHost host;
    CMEGDatazk data;

private:
    std::chrono::steady_clock::time_point m_begin;
};

TEST_F(TrialsWithoutPlaces, HaveNoSensorsToBeMoved)
{
    EXPECT_EQ(data.setSnsFidDewar2work(-1, true), 1);
    host.expectNoMessages();
}

TEST_F(TrialsWithoutPlaces, TakeNoElectrodes)
{
    LoadingArchive archive(electrodeFile({electrodeEntry(302, 1)}));
    EXPECT_EQ(data.serializeElectrodeInfo(*archive, true), 1);
    host.expectNoMessages();
}

TEST_F(TrialsWithoutPlaces, TakeNoProbes)
{
    LoadingArchive archive(seegFile({1}));
    EXPECT_EQ(data.serializeSeegInfo(*archive, 1), 1);
    host.expectNoMessages();
}

TEST_F(TrialsWithoutPlaces, HaveNoChannelForASensor)
{
    EXPECT_EQ(data.initSensorBasic(0, 0, 100, true, "", "", 0, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

TEST_F(TrialsWithoutPlaces, HaveNoChannelToBeNamed)
{
    EXPECT_EQ(data.setChannelName("new", 0, -1, false), 0);
    EXPECT_EQ(data.setMEGSensorName("raw", "working", 0, -1, true), 0);
}

TEST_F(TrialsWithoutPlaces, HaveNoChannelForAnElectrode)
{
    const CEEGelectrodezk one = electrode(1);
    EXPECT_EQ(data.setEEG_electrodes(&one, -1, true), 1);
}

TEST_F(TrialsWithoutPlaces, HaveNoSamplesToBeReduced)
{
    data.setGradientNoiseReduction(1, true, false);
    data.setGradient2Non();
}

TEST_F(TrialsWithoutPlaces, HaveNoSpectrum)
{
    double least = 0.0;
    double most = 0.0;
    double mean = 0.0;
    data.getSpctmRangeDataset(&least, &most, &mean, 1, 0, 0);
    EXPECT_EQ(least, -1.0);
    EXPECT_EQ(most, 1.0);
    EXPECT_EQ(data.setAllTrialSpctmNAN2zero(0, 2), 1);
}

TEST_F(TrialsWithoutPlaces, HaveNoTriggerChannel)
{
    EXPECT_EQ(data.trigChannelDcoff(1), 1);
    host.expectNoMessages();
}

TEST(TrialsCountedBelowZero, AreNone)
{
    ScriptedHost host;
    CMEGDatazk data;
    datasetRecord::Parts parts;
    parts.trials.total = INT32_MIN;
    datasetRecord::load(data, datasetRecord::record(datasetRecord::newest, parts));
    ASSERT_EQ(data.m_nTotalTrial, INT32_MIN);
    EXPECT_EQ(data.addTrialBadSegment(3, 0.0, 1.0), 0);
    EXPECT_EQ(data.openTrial(-1), 0);
}

} // namespace

} // namespace megset::countedTrials_test
