// Synthetic gradiometers: which channels change, by what, and what their sensors then say.

#include "tests/core/filedDataset.h"
#include "tests/core/gradientTrials.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::gradientNoiseReduction_test {
namespace {

using gradient::fill;
using gradient::samples;
using numeric::randomSamples;
using numeric::sameSamples;
using ::testing::ElementsAre;

class NoiseReduction : public ::testing::Test
{
protected:
    void make(const std::vector<gradient::Channel>& channels, const std::vector<gradient::Record>& records,
              int trials = 1)
    {
        fill(data, trials, channels, records);
    }
    CMDChannelzk& at(int channel, int trial = 0) { return *data.getMDTrial(trial)->getChannel(channel); }
    CMEGSensorzk& sensor(int channel, int trial = 0) { return *at(channel, trial).getMEGSensorzk(); }
    ~NoiseReduction() override { host.expectNoMessages(); }

    ScriptedHost host;
    CMEGDatazk data;
};

/// One gradiometer of gain 2 and two references of gains 4 and 0.5, with records of order 1 and 3.
struct TwoReferences : NoiseReduction
{
    TwoReferences()
    {
        make({{"M1", 100, 2.0, {100.0, 200.0}}, {"R1", 10, 4.0, {1.0, 2.0}}, {"R2", 11, 0.5, {8.0, 16.0}}},
             {{"M1", "G1BR", {{"R1", 3.0}}},
              {"M1", "G3BR", {{"R1", 1.0}, {"R2", 2.0}}},
              {"M1", "G3OI", {{"R1", 10.0}}},
              {"M1", "G0AR", {{"R2", 4.0}}},
              {"M1", "G2AI", {{"R2", 8.0}}}},
             2);
    }
};

TEST_F(TwoReferences, TheWeightedReferencesAreTakenFromTheSamples)
{
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    // w = 4 * 1 / 2 = 2 and 0.5 * 2 / 2 = 0.5; s = 1 * 2 + 8 * 0.5 = 6, then 12.
    EXPECT_THAT(samples(at(0)), ElementsAre(94.0, 188.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(1.0, 2.0));
    EXPECT_THAT(samples(at(2)), ElementsAre(8.0, 16.0));
}

TEST_F(TwoReferences, TheSensorsTellTheMode)
{
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(sensor(0).getGradOrderNo(), 3);
    EXPECT_TRUE(sensor(0).getRealIdealCoefMode());
    EXPECT_FALSE(sensor(0).getAdaptiveBalance());
    EXPECT_EQ(sensor(1).getGradOrderNo(), 0); // has no record
    EXPECT_EQ(data.setGradientNoiseReduction(2, false, true), 1);
    EXPECT_EQ(sensor(0).getGradOrderNo(), 2);
    EXPECT_FALSE(sensor(0).getRealIdealCoefMode());
    EXPECT_TRUE(sensor(0).getAdaptiveBalance());
}

TEST_F(TwoReferences, EveryModeHasItsOwnCoefficients)
{
    const auto after = [this](int order, bool real, bool adaptive) {
        EXPECT_EQ(data.setGradientNoiseReduction(order, real, adaptive), 1);
        return samples(at(0))[0];
    };
    EXPECT_EQ(after(1, true, false), 100.0 - 6.0);
    EXPECT_EQ(after(3, true, false), 100.0 - 6.0);
    EXPECT_EQ(after(3, false, false), 100.0 - 20.0);
    EXPECT_EQ(after(0, true, true), 100.0 - 8.0); // the one order 0 with a record
    EXPECT_EQ(after(2, false, true), 100.0 - 16.0);
}

TEST_F(TwoReferences, AnOrderOutsideZeroToThreeGivesZeroAndLeavesDataAndModes)
{
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    const auto before = samples(*data.getMDTrial(0));
    for (const int order : {4, -1, 5, 256, INT_MAX, INT_MIN}) {
        EXPECT_EQ(data.setGradientNoiseReduction(order, true, false), 0) << order;
        EXPECT_EQ(samples(*data.getMDTrial(0)), before) << order; // not even back at order 0
        EXPECT_EQ(sensor(0).getGradOrderNo(), 3) << order;
    }
}

TEST_F(TwoReferences, OrderZeroRealTakesTheDataBackAndTheSensorsKeepTheirOldOrder)
{
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(data.setGradientNoiseReduction(0, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(100.0, 200.0));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 3);
}

TEST_F(TwoReferences, WithoutARecordOfTheModeALaterCallAddsTheOldSumOnceMore)
{
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(data.setGradientNoiseReduction(2, true, false), 1); // there is no G2BR
    EXPECT_THAT(samples(at(0)), ElementsAre(100.0, 200.0));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 3);
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(106.0, 212.0));
}

TEST_F(TwoReferences, SetGradient2NonTwiceAddsTheSumTwice)
{
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(100.0, 200.0));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 3);
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(106.0, 212.0));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 3);
}

TEST_F(TwoReferences, SetGradient2NonLeavesDataThatAreAtOrderZero)
{
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(100.0, 200.0));
}

TEST_F(TwoReferences, RawSamplesStayAsTheyAre)
{
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_THAT(backup(at(0)), ElementsAre(100.0, 200.0));
    ASSERT_EQ(data.setGradient2Non(), 1);
    ASSERT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(backup(at(0)), ElementsAre(100.0, 200.0));
}

TEST_F(TwoReferences, EveryTrialInMemoryChanges)
{
    at(0, 1).getDataWave()[0] = 50.0;
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_THAT(samples(at(0, 0)), ElementsAre(94.0, 188.0));
    EXPECT_THAT(samples(at(0, 1)), ElementsAre(44.0, 188.0));
    EXPECT_EQ(sensor(0, 1).getGradOrderNo(), 3);
}

TEST_F(TwoReferences, ATrialThatIsNotInMemoryIsPassedOver)
{
    data.m_ppTrial.release(0);
    ASSERT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_THAT(samples(at(0, 1)), ElementsAre(94.0, 188.0));
}

// Two trials of a gradiometer and a reference, in their files.
struct FiledPair : FiledDataset
{
    FiledPair() : FiledDataset(2, 0, 0)
    {
        for (const int t : {0, 1}) {
            CMDTrialzk trial;
            fill(trial, {{"M1", 100, 1.0, {5.0}}, {"R1", 10, 1.0, {2.0}}});
            writeTrial(t, trial);
        }
    }
};

TEST(NoiseReductionOnDisk, ATrialOnDiskKeepsItsDataAndModeWhileTheOneInMemoryChanges)
{
    const ScriptedHost host;
    FiledPair filed;
    const CCoefficientDatazk record = gradient::recordOf({"M1", "G1BR", {{"R1", 1.0}}});
    filed.data.m_recordInfo.m_coefficients.addCoefficientsData(1, &record);
    ASSERT_NE(filed.data.getTrialzk(0), nullptr);
    EXPECT_EQ(filed.data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_THAT(samples(*filed.data.getMDTrial(0)->getChannel(0)), ElementsAre(3.0));
    CMDTrialzk* other = filed.data.getTrialzk(1);
    ASSERT_NE(other, nullptr);
    EXPECT_THAT(samples(*other->getChannel(0)), ElementsAre(5.0));
    EXPECT_EQ(other->getChannel(0)->getMEGSensorzk()->getGradOrderNo(), 0);
}

TEST(NoiseReductionOnDisk, ModesComeBackFromTheFileSoThatTheRightSumGoesBack)
{
    const ScriptedHost host;
    FiledPair filed;
    const std::vector<CCoefficientDatazk> records = {gradient::recordOf({"M1", "G1BR", {{"R1", 1.0}}}),
                                                     gradient::recordOf({"M1", "G2AI", {{"R1", 2.0}}})};
    filed.data.m_recordInfo.m_coefficients.addCoefficientsData(2, records.data());
    ASSERT_NE(filed.data.getTrialzk(0), nullptr);
    ASSERT_EQ(filed.data.setGradientNoiseReduction(2, false, true), 1);
    ASSERT_NE(filed.data.getTrialzk(1), nullptr); // writes the first one
    const CMDTrialzk* reloaded = filed.data.getTrialzk(0);
    ASSERT_NE(reloaded, nullptr);
    EXPECT_THAT(samples(*reloaded->getChannel(0)), ElementsAre(1.0));
    EXPECT_EQ(filed.data.setGradient2Non(), 1);
    EXPECT_THAT(samples(*reloaded->getChannel(0)), ElementsAre(5.0));
}

TEST_F(NoiseReduction, ARecordOfNoReferencesSetsTheModeAndChangesNoSample)
{
    make({{"M1", 100, 1.0, {-0.0, 3.0}}}, {{"M1", "G2BR", {}}});
    EXPECT_EQ(data.setGradientNoiseReduction(2, true, false), 1);
    EXPECT_TRUE(sameSamples(samples(at(0)), std::vector<double>{-0.0, 3.0}));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 2);
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_TRUE(sameSamples(samples(at(0)), std::vector<double>{-0.0, 3.0}));
}

TEST_F(NoiseReduction, CountsThatNoRecordCanHaveAreBroughtIntoIt)
{
    make({{"M1", 100, 1.0, {10.0}}, {"R1", 10, 1.0, {1.0}}}, {{"M1", "G1BR", {{"R1", 2.0}}}});
    CCoefficientDatazk& record = *data.m_recordInfo.m_coefficients.m_aCoefRecord[0];
    record.m_nCoefCount = INT_MAX; // 49 further names, empty: no channel stands in them
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(8.0));
    record.m_nCoefCount = -7;
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(8.0));
}

TEST_F(NoiseReduction, FiftyReferencesAreAllUsed)
{
    std::vector<gradient::Channel> channels = {{"M", 100, 1.0, {0.0}}};
    gradient::Record record{"M", "G3BR", {}};
    for (int k = 10; k < 60; ++k) {
        channels.push_back({"R" + std::to_string(k), 10, 1.0, {1.0}});
        record.terms.emplace_back("R" + std::to_string(k), 1.0);
    }
    make(channels, {record});
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-50.0));
}

TEST_F(NoiseReduction, TheFirstRecordWhoseNameHoldsTheSensorsIsTaken)
{
    make({{"M1", 100, 1.0, {0.0}}, {"R1", 10, 1.0, {1.0}}}, {{"XM2-7", "G1BR", {{"R1", 1.0}}},
                                                             {"XM1-7", "G2BR", {{"R1", 2.0}}},
                                                             {"XM1-7", "G1BR", {{"R1", 4.0}}},
                                                             {"M1", "G1BR", {{"R1", 8.0}}}});
    auto& records = data.m_recordInfo.m_coefficients.m_aCoefRecord;
    records.InsertAt(0, nullptr);
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-4.0));
}

TEST_F(NoiseReduction, SensorsOfNamesOfAnyLengthFindTheFirstRecordThatHoldsThem)
{
    make({{"M1", 100, 1.0, {0.0}},
          {"M12", 100, 1.0, {0.0}},
          {"M123-9", 100, 1.0, {0.0}},
          {"none", 100, 1.0, {0.0}},
          {"R1", 10, 1.0, {1.0}}},
         {{"M123", "G1BR", {{"R1", 1.0}}}, {"M12", "G1BR", {{"R1", 2.0}}}, {"M1", "G1BR", {{"R1", 4.0}}}});
    sensor(3).m_strSensorName = ""; // every name holds it
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-1.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(-1.0));
    EXPECT_THAT(samples(at(2)), ElementsAre(0.0)); // longer than any
    EXPECT_THAT(samples(at(3)), ElementsAre(-1.0));
}

// More lengths, and more characters, than texts are noted for.
TEST_F(NoiseReduction, NamesOfManyLengthsFindTheFirstRecordThatHoldsThem)
{
    make({{"M", 100, 1.0, {0.0}},
          {"M1", 100, 1.0, {0.0}},
          {"M12", 100, 1.0, {0.0}},
          {"M123", 100, 1.0, {0.0}},
          {"M1234", 100, 1.0, {0.0}},
          {"M12345", 100, 1.0, {0.0}},
          {"R1", 10, 1.0, {1.0}}},
         {{"M1234", "G1BR", {{"R1", 1.0}}}, {"M123456", "G1BR", {{"R1", 2.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    for (int i = 0; i < 5; ++i)
        EXPECT_THAT(samples(at(i)), ElementsAre(-1.0)) << i;
    EXPECT_THAT(samples(at(5)), ElementsAre(-2.0));
}

TEST_F(NoiseReduction, LongNamesOfRecordsAreSearchedAsWell)
{
    make({{"M1", 100, 1.0, {0.0}}, {"M2", 100, 1.0, {0.0}}, {"R1", 10, 1.0, {1.0}}},
         {{std::string(70'000, 'x') + "M1", "G1BR", {{"R1", 1.0}}},
          {"M1", "G1BR", {{"R1", 2.0}}},
          {"M2", "G1BR", {{"R1", 4.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-1.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(-4.0));
}

TEST_F(NoiseReduction, TheSensorsNameCountsAndNotTheChannels)
{
    make({{"M1", 100, 1.0, {0.0}, "SENS"}, {"R1", 10, 1.0, {1.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}}}, {"SENS", "G1BR", {{"R1", 2.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-2.0));
}

TEST_F(NoiseReduction, AShortChannelNameInsideTheReferencesNameWinsWhereItComesFirst)
{
    make({{"M1", 100, 1.0, {0.0, 0.0}}, {"R1", 10, 2.0, {1.0, 1.0}}, {"R12", 10, 8.0, {10.0, 10.0}}},
         {{"M1", "G1BR", {{"R12-4304", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-2.0, -2.0));
}

TEST_F(NoiseReduction, SamplesComeFromTheFirstNameAndTheGainFromTheFirstThatHasASensor)
{
    make({{"M1", 100, 1.0, {0.0}}, {"R", 10, 0.0, {3.0}}, {"R1", 10, 5.0, {100.0}}}, {{"M1", "G1BR", {{"R1", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-15.0));
}

TEST_F(NoiseReduction, AReferenceWithoutSensorChannelOrSamplesAddsNothing)
{
    make({{"M1", 100, 1.0, {7.0}}, {"R1", 10, 0.0, {3.0}}, {"R2", 10, 1.0, {}}, {"R3", 10, 1.0, {1.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}, {"R2", 1.0}, {"nobody", 1.0}, {"R3", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(6.0));
    EXPECT_EQ(sensor(0).getGradOrderNo(), 1);
}

TEST_F(NoiseReduction, AReferenceThatEndsEarlyAddsNothingFromThereOn)
{
    make({{"M1", 100, 1.0, {0.0, 0.0, 0.0}}, {"R1", 10, 1.0, {1.0}}, {"R2", 10, 1.0, {10.0, 10.0, 10.0, 10.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}, {"R2", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-11.0, -10.0, -10.0));
}

TEST_F(NoiseReduction, AChannelWithoutSamplesGetsTheModeAlone)
{
    make({{"M1", 100, 1.0, {}}, {"R1", 10, 1.0, {1.0}}}, {{"M1", "G1BR", {{"R1", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_EQ(at(0).getDataWave(), nullptr);
    EXPECT_EQ(sensor(0).getGradOrderNo(), 1);
}

TEST_F(NoiseReduction, AReferenceWithARecordIsReducedToo)
{
    make({{"M1", 100, 1.0, {0.0}}, {"R1", 10, 1.0, {3.0}}, {"R2", 10, 1.0, {2.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}}}, {"R1", "G1BR", {{"R2", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-3.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(1.0));
    EXPECT_EQ(sensor(1).getGradOrderNo(), 1);
    // It is no measure channel, and is not taken back.
    EXPECT_EQ(data.setGradient2Non(), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(-2.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(1.0));
}

TEST_F(NoiseReduction, LaterChannelsSeeReferencesThatHaveChanged)
{
    make({{"R1", 10, 1.0, {3.0}}, {"M1", 100, 1.0, {0.0}}, {"R2", 10, 1.0, {2.0}}},
         {{"M1", "G1BR", {{"R1", 1.0}}}, {"R1", "G1BR", {{"R2", 1.0}}}});
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(1.0));
    EXPECT_THAT(samples(at(1)), ElementsAre(-1.0));
}

TEST_F(NoiseReduction, OnlyMeasureChannelsGoBack)
{
    for (const int type : {100, 101, 102, 103, 99, 104, 10, 13, 120, 300}) {
        make({{"M1", type, 1.0, {10.0}}, {"R1", 10, 1.0, {1.0}}}, {{"M1", "G1BR", {{"R1", 1.0}}}});
        sensor(0).setGradOrderNo(1);
        EXPECT_EQ(data.setGradient2Non(), 1);
        EXPECT_THAT(samples(at(0)), ElementsAre(type >= 100 && type <= 103 ? 11.0 : 10.0)) << type;
    }
}

TEST_F(NoiseReduction, ChannelsWithoutSensorOrThatAreNotThereArePassedOver)
{
    make({{"M1", 100, 0.0, {10.0}}, {"M2", 100, 1.0, {10.0}}, {"M3", 100, 1.0, {10.0}}, {"R1", 10, 1.0, {1.0}}},
         {{"M1M2M3", "G1BR", {{"R1", 1.0}}}});
    data.getMDTrial(0)->m_ppChannel.release(1);
    EXPECT_EQ(data.setGradientNoiseReduction(1, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(10.0));
    EXPECT_THAT(samples(at(2)), ElementsAre(9.0));
}

TEST_F(NoiseReduction, WithoutTrialsChannelsOrCoefficientsNothingHappens)
{
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_EQ(data.setGradient2Non(), 1);
    make({{"M1", 100, 1.0, {10.0}}}, {});
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
    EXPECT_THAT(samples(at(0)), ElementsAre(10.0));
    data.getMDTrial(0)->_cleanTrialChannels();
    EXPECT_EQ(data.setGradientNoiseReduction(3, true, false), 1);
}

} // namespace
} // namespace megset::gradientNoiseReduction_test
