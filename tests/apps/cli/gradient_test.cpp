#include "apps/cli/process/gradientOrder.h"
#include "tests/apps/cli/SampleDataset.h"

#include <climits>
#include <filesystem>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::gradient_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

CCoefficientDatazk record(const char* sensor, int order, std::vector<std::pair<const char*, double>> weights)
{
    CCoefficientDatazk record;
    record.m_strCoefSensorName = sensor;
    record.m_nCoefType = CCoefficientData::getCoefficientType(order, true, false);
    record.m_nCoefCount = static_cast<std::int32_t>(weights.size());
    for (std::size_t k = 0; k < weights.size(); ++k) {
        record.m_aCoefRefName[k] = weights[k].first;
        record.m_aCoefValue[k] = weights[k].second;
    }
    return record;
}

// The channels R1-77, M1-77, M2-77 and, in the place of E1, the reference R2-77, with coefficients of order 1 for R2,
// M1 and M2, and of order 3 for M1 alone.
class Gradient : public testing::Test
{
protected:
    Gradient()
    {
        for (int i = 0; i < 3; ++i) {
            CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
            trial.getChannel(3)->m_strChannelName = "R2-77";
            trial.getChannel(3)->setChannelType(11);
            for (int c = 0; c < 4; ++c) {
                CMDChannelzk& channel = *trial.getChannel(c);
                CMEGSensorzk& sensor = *channel.ensureMEGSensor();
                sensor.initSensorInfo(c, channel.getChannelType(), 0, 0, 1.0, 1.0, 1.0, 0.0);
                sensor.m_strSensorName = channel.m_strChannelName;
                sensor.setRealIdealCoefMode(true);
            }
        }
        const CCoefficientDatazk records[] = {
            record("R2-77", 1, {{"R1-77", 0.5}}), record("M1-77", 1, {{"R1-77", 2.0}, {"R2-77", 3.0}}),
            record("M2-77", 1, {{"R2-77", 1.0}}), record("M1-77", 3, {{"R1-77", 1.0}})};
        sample.dataset().getMEGRecordInfozk()->getSensorCoefficientzk()->addCoefficientsData(4, records);
        sample.store();
    }

    double at(int trial, int channel, int i)
    {
        return sample.dataset().getTrialzk(trial)->getChannel(channel)->getDataWave()[i];
    }
    std::vector<double> samplesOfTrial1()
    {
        std::vector<double> values;
        for (int c = 0; c < 4; ++c)
            values.push_back(at(1, c, 4));
        return values;
    }
    std::vector<int> orders()
    {
        std::vector<int> values;
        for (int c = 0; c < 4; ++c)
            values.push_back(sample.dataset().getTrialzk(1)->getChannel(c)->getMEGSensorzk()->getGradOrderNo());
        return values;
    }
    GradientResult bringTo(int order)
    {
        sample.dataset().getTrialzk(1);
        return setGradientOrder(sample.dataset(), {order, false, false});
    }

    SampleDataset sample;
};

TEST_F(Gradient, ChannelsGetTheOrderAndOthersTellThatTheyHaveNot)
{
    const GradientResult result = bringTo(3);
    EXPECT_EQ(result.reduced, 1);
    EXPECT_EQ(result.unreduced, 1);
    EXPECT_THAT(samplesOfTrial1(), ElementsAre(1004, 1104 - 1004, 1204, 1304));
    EXPECT_THAT(orders(), ElementsAre(0, 3, 0, 0));
}

// M1 and M2 stand before R2 and see it as recorded.
TEST_F(Gradient, ReferencesWithCoefficientsAreReducedToo)
{
    EXPECT_EQ(bringTo(1).reduced, 3);
    EXPECT_THAT(samplesOfTrial1(), ElementsAre(1004, 1104 - 2 * 1004 - 3 * 1304, 1204 - 1304, 1304 - 502));
}

TEST_F(Gradient, SameOrderTwiceGivesTheSameSamples)
{
    bringTo(1);
    const auto once = samplesOfTrial1();
    bringTo(1);
    EXPECT_EQ(samplesOfTrial1(), once);
}

TEST_F(Gradient, WayOverOtherOrdersAndBackToNoneGivesTheRecordedSamples)
{
    const auto recorded = samplesOfTrial1();
    for (const int order : {1, 3, 1, 0, 0, 3, 0}) {
        bringTo(order);
        EXPECT_EQ(orders()[1], order);
    }
    EXPECT_EQ(samplesOfTrial1(), recorded); // whole numbers: no rounding
    EXPECT_THAT(orders(), ElementsAre(0, 0, 0, 0));
}

// Counts that a broken file may tell; a record has room for 50 references.
TEST_F(Gradient, RecordsThatTellOfMoreReferencesThanTheyHaveAreTakenBackToo)
{
    const auto recorded = samplesOfTrial1();
    auto& records = *sample.dataset().getMEGRecordInfozk()->getSensorCoefficientzk()->getCoefficientsData();
    for (int i = 0; i < records.GetSize(); ++i)
        records[i]->m_nCoefCount = INT_MAX;
    EXPECT_EQ(bringTo(1).reduced, 3);
    bringTo(0);
    EXPECT_EQ(samplesOfTrial1(), recorded);
    bringTo(1);
    const auto reduced = samplesOfTrial1();
    for (int i = 0; i < records.GetSize(); ++i)
        records[i]->m_nCoefCount = -1;
    bringTo(0);
    EXPECT_EQ(samplesOfTrial1(), reduced); // nothing is known to add
}

TEST_F(Gradient, ChannelsThatAnnounceSamplesWithoutThemAreLeftAlone)
{
    bringTo(1);
    sample.dataset().getTrialzk(1)->getChannel(0)->m_pDataWave.reset();
    bringTo(0);
    EXPECT_EQ(at(1, 3, 4), 1304 - 502);
    sample.dataset().getTrialzk(1)->getChannel(3)->m_pDataWave.reset();
    EXPECT_NO_THROW(bringTo(0));
}

TEST_F(Gradient, OrderWithoutAnyCoefficientsIsRefusedWithNothingChanged)
{
    const auto recorded = samplesOfTrial1();
    EXPECT_THROW(bringTo(2), std::runtime_error);
    EXPECT_EQ(samplesOfTrial1(), recorded);
}

TEST_F(Gradient, ChannelThatCanNotBeTakenBackIsNamedAndNothingChanges)
{
    bringTo(1);
    const auto reduced = samplesOfTrial1();
    sample.dataset().getMEGRecordInfozk()->getSensorCoefficientzk()->m_aCoefRecord.RemoveAt(1);
    try {
        bringTo(3);
        FAIL() << "order 3 has no coefficients to take M1 back from order 1";
    } catch (const std::runtime_error& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("channel M1-77 stands at order 1"));
    }
    EXPECT_EQ(samplesOfTrial1(), reduced);
}

TEST_F(Gradient, CommandWritesANewDatasetAndLeavesTheOldOne)
{
    const auto before = sample.folder().read("runTrial1.trl");
    const std::string out = sample.folder().native("clean.meg").string();
    const auto result = runMegset({"gradient", sample.path(), "--order", "3", "--out", out});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "order 3: 1 channel; 1 MEG channel has no coefficients for it and is at order 0\n");
    EXPECT_EQ(sample.folder().read("runTrial1.trl"), before);
    ReadingNotes notes;
    const auto clean = openDatasetToLook(out, notes);
    for (int i = 0; i < 3; ++i) {
        CMDTrialzk& trial = *clean->dataset.getTrialzk(i);
        EXPECT_EQ(trial.getChannel(1)->getDataWave()[4], 100.0);
        EXPECT_EQ(trial.getChannel(1)->getBkData()[4], 1000.0 * i + 104.0);
        EXPECT_EQ(trial.getChannel(1)->getMEGSensorzk()->getGradOrderNo(), 3);
    }
    EXPECT_EQ(runMegset({"check", out}).exitCode, 0);
}

TEST_F(Gradient, RestoreInPlaceBringsTheRecordedSamplesBack)
{
    const auto recorded = samplesOfTrial1();
    sample.store();
    ASSERT_EQ(runMegset({"gradient", sample.path(), "--order", "1", "--in-place"}).exitCode, 0);
    const auto result = runMegset({"restore", sample.path(), "--in-place"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "3 trials as recorded\n");
    ReadingNotes notes;
    const auto restored = openDatasetToLook(sample.path(), notes);
    const CMDTrialzk& trial = *restored->dataset.getTrialzk(1);
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(trial.getChannel(c)->getDataWave()[4], recorded[static_cast<std::size_t>(c)]);
        EXPECT_EQ(trial.getChannel(c)->getMEGSensorzk()->getGradOrderNo(), 0);
    }
}

TEST_F(Gradient, FailureLeavesNoHalfMadeDataset)
{
    std::filesystem::remove(sample.trialFile(2));
    const auto names = sample.folder().names();
    const auto result =
        runMegset({"gradient", sample.path(), "--order", "3", "--out", sample.folder().native("clean.meg").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("runTrial2.trl"));
    EXPECT_EQ(sample.folder().names(), names);
}

TEST_F(Gradient, RefusedOrderLeavesNoHalfMadeDataset)
{
    const auto names = sample.folder().names();
    const auto result =
        runMegset({"gradient", sample.path(), "--order", "2", "--out", sample.folder().native("clean.meg").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("trial 0 of 3: the dataset has no coefficients for order 2"));
    EXPECT_EQ(sample.folder().names(), names);
}

TEST_F(Gradient, TargetThatExistsIsRefused)
{
    const auto result = runMegset({"gradient", sample.path(), "--order", "3", "--out", sample.path()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("run.meg: exists already"));
}

TEST_F(Gradient, WithoutATargetAndATerminalItIsSaidWhatIsMissing)
{
    const auto result = runMegset({"gradient", sample.path(), "--order", "3"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              "megset: " + sample.path() + ": say where the changed dataset goes, --out NEW.meg or --in-place\n");
}

TEST_F(Gradient, WrongOrderAndContradictingOptionsAreWrongUsage)
{
    EXPECT_EQ(runMegset({"gradient", sample.path(), "--order", "4", "--in-place"}).exitCode, 2);
    EXPECT_EQ(runMegset({"gradient", sample.path(), "--in-place"}).exitCode, 2);
    EXPECT_EQ(runMegset({"gradient", sample.path(), "--order", "1", "--in-place", "--out", "x.meg"}).exitCode, 2);
    EXPECT_EQ(runMegset({"gradient", sample.path(), "--order", "1", "--in-place", "--yes", "--no"}).exitCode, 2);
}

TEST_F(Gradient, SessionNameStaysInTheNewDataset)
{
    sample.dataset().setSessionName("Subject 7");
    sample.store();
    const std::string out = sample.folder().native("clean.meg").string();
    ASSERT_EQ(runMegset({"gradient", sample.path(), "--order", "3", "--out", out}).exitCode, 0);
    ReadingNotes notes;
    EXPECT_EQ(openDatasetToLook(out, notes)->dataset.getSessionName(), "Subject 7");
}

} // namespace

} // namespace megset::cli::gradient_test
