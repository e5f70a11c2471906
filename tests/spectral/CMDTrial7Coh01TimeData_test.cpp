#include "megset/spectral/CMDTrial7Coh01TimeData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace megset::CMDTrial7Coh01TimeData_test {
namespace {

struct Statistics
{
    double min = -99.0;
    double mean = -99.0;
    double max = -99.0;
    double rms = -99.0;

    bool operator==(const Statistics&) const = default;
};

const Statistics untouched;

// Four channels named "MLC11", "MLC12", "mlc13" and "", and pairs over planes of 2 x 2, with the selection at 1, 1.
class CoherenceStatistics : public ::testing::Test
{
protected:
    CoherenceStatistics()
    {
        trial.allocateChannels(4);
        const char* names[] = {"MLC11", "MLC12", "mlc13", ""};
        for (int i = 0; i < 4; ++i)
            trial.getChannel(i)->m_strChannelName = names[i];
    }

    // Values at the selection; -9 elsewhere.
    void fill(const std::vector<int>& channels, const std::vector<double>& values)
    {
        CSnsCohDatazk data;
        ASSERT_EQ(data.setSize(2, 2, std::ssize(values)), 1);
        data.m_aValue.assign(data.m_aValue.size(), -9.0);
        data.m_nSelectTimeBegin = data.m_nSelectFreqBegin = 1;
        for (std::size_t k = 0; k < values.size(); ++k) {
            data.m_aPair[k].m_nChannel = channels[k];
            data.setValue(1, 1, static_cast<std::int64_t>(k), values[k]);
        }
        trial.getCoherenceFacezkTime(true)->addCoherenceData(&data);
    }
    Statistics ofAll(int iData, int expected = 1)
    {
        Statistics s;
        EXPECT_EQ(trial.getCohMeasurementResults(iData, s.min, s.mean, s.max, s.rms, true), expected);
        return s;
    }
    Statistics ofNamed(int iData, const CString& name, int expected = 1)
    {
        Statistics s;
        EXPECT_EQ(trial.getCohMeasurementResultsSN(iData, name, s.min, s.mean, s.max, s.rms, true), expected);
        return s;
    }

    CMDTrialzk trial;
};

TEST_F(CoherenceStatistics, AreOverThePairsAtTheSelection)
{
    fill({0, 1, 2, 3}, {3.0, -1.0, 4.0, 2.0});
    EXPECT_EQ(ofAll(0), (Statistics{-1.0, 2.0, 4.0, std::sqrt(30.0 / 4.0)}));
}

TEST_F(CoherenceStatistics, StartFromTheFirstValue)
{
    fill({0, 1}, {5.0, 7.0});
    EXPECT_EQ(ofAll(0).min, 5.0);
    fill({0, 1}, {-5.0, -7.0});
    EXPECT_EQ(ofAll(1).max, -5.0);
}

TEST_F(CoherenceStatistics, TakeTheCurrentAnalysisForMinusOne)
{
    fill({0}, {1.0});
    fill({0}, {2.0});
    trial.m_pCohFaceTime->m_nCurrentData = 1;
    EXPECT_EQ(ofAll(-1).mean, 2.0);
    EXPECT_EQ(ofNamed(-1, "MLC").mean, 2.0);
}

TEST_F(CoherenceStatistics, LeaveTheOutputsAsTheyAreWithoutFaceOrData)
{
    EXPECT_EQ(ofAll(0, 0), untouched);
    EXPECT_EQ(ofNamed(0, "", 0), untouched);
    fill({0}, {1.0});
    EXPECT_EQ(ofAll(1, 0), untouched);
    EXPECT_EQ(ofNamed(1, "", 0), untouched);
}

TEST_F(CoherenceStatistics, OfNoPairsAreNoNumbers)
{
    fill({}, {});
    const Statistics s = ofAll(0);
    EXPECT_EQ(s.min, 0.0);
    EXPECT_TRUE(std::isnan(s.mean));
    EXPECT_EQ(s.max, 0.0);
    EXPECT_TRUE(std::isnan(s.rms));
}

TEST_F(CoherenceStatistics, AsTextHaveMinimumMeanMaximumAndRootMeanSquare)
{
    fill({0, 1}, {1.0, 7.0});
    EXPECT_EQ(trial.getCohMeasurementResults(0), "1.000000      4.000000      7.000000    5.000000 ");
}

TEST_F(CoherenceStatistics, AsTextAreNoneWithoutFaceOrData)
{
    EXPECT_EQ(trial.getCohMeasurementResults(0), "None");
    fill({0}, {1.0});
    EXPECT_EQ(trial.getCohMeasurementResults(1), "None");
}

TEST_F(CoherenceStatistics, OfNamedChannelsCountTheirPairsAlone)
{
    fill({0, 1, 2, 3}, {3.0, -1.0, 4.0, 2.0});
    EXPECT_EQ(ofNamed(0, "MLC1"), (Statistics{-1.0, 1.0, 3.0, std::sqrt(10.0 / 2.0)}));
    EXPECT_EQ(ofNamed(0, "C12"), (Statistics{-1.0, -1.0, -1.0, 1.0}));
}

TEST_F(CoherenceStatistics, OfNamedChannelsKnowTheCase)
{
    fill({0, 2}, {3.0, 4.0});
    EXPECT_EQ(ofNamed(0, "mlc").mean, 4.0);
    EXPECT_EQ(ofNamed(0, "MLC").mean, 3.0);
}

TEST_F(CoherenceStatistics, WithAnEmptyNameCountEveryPair)
{
    fill({0, 3, -1, 99}, {3.0, -1.0, 4.0, 2.0});
    EXPECT_EQ(ofNamed(0, ""), ofAll(0));
}

TEST_F(CoherenceStatistics, OfNoMatchingPairAreZeroAndNoNumber)
{
    fill({0, 3, -1, 99}, {3.0, -1.0, 4.0, 2.0});
    const Statistics s = ofNamed(0, "Unknown");
    EXPECT_EQ(s.min, 0.0);
    EXPECT_TRUE(std::isnan(s.mean));
    EXPECT_EQ(s.max, 0.0);
    EXPECT_TRUE(std::isnan(s.rms));
}

TEST_F(CoherenceStatistics, OfNamedChannelsNeedAChannelArray)
{
    fill({0}, {1.0});
    trial._cleanTrialChannels();
    EXPECT_EQ(ofNamed(0, "", 0), untouched);
    EXPECT_EQ(ofAll(0).mean, 1.0);
}

TEST_F(CoherenceStatistics, AgreeWithAPlainLoopOverRandomPairs)
{
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.2, 3.0);
    for (int round = 0; round < 20; ++round) {
        std::vector<int> channels;
        std::vector<double> values;
        for (int k = 0; k <= round * 7; ++k) {
            channels.push_back(static_cast<int>(random() % 4));
            values.push_back(noise(random));
        }
        fill(channels, values);
        double min = 0.0;
        double max = 0.0;
        double sum = 0.0;
        double squares = 0.0;
        int n = 0;
        for (std::size_t k = 0; k < values.size(); ++k)
            if (channels[k] < 2) {
                min = n == 0 || values[k] < min ? values[k] : min;
                max = n == 0 || values[k] > max ? values[k] : max;
                sum += values[k];
                squares += values[k] * values[k];
                ++n;
            }
        const Statistics s = ofNamed(round, "MLC");
        EXPECT_EQ(s.min, min);
        EXPECT_EQ(s.max, max);
        if (n > 0) {
            EXPECT_EQ(s.mean, sum / n);
            EXPECT_EQ(s.rms, std::sqrt(squares / n));
        } else {
            EXPECT_TRUE(std::isnan(s.mean));
        }
    }
}

} // namespace
} // namespace megset::CMDTrial7Coh01TimeData_test
