#include "apps/cli/process/montage.h"
#include "tests/apps/cli/SampleCommand.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::montage_test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

std::vector<MontageLine> parse(const std::string& text)
{
    std::istringstream in(text);
    return readMontage(in);
}

std::string faultOf(const std::string& text)
{
    try {
        parse(text);
    } catch (const MontageFault& fault) {
        return fault.what();
    }
    return "";
}

TEST(MontageFile, LineNamesATargetAndItsReference)
{
    const auto lines = parse("# ears\n\n  C3 = A1-2  # left\nC4=A2");
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0].target.channel, "C3");
    ASSERT_THAT(lines[0].terms, SizeIs(1));
    EXPECT_EQ(lines[0].terms[0].channel, "A1-2");
    EXPECT_EQ(lines[0].terms[0].weight, 1.0);
    EXPECT_EQ(lines[0].divisor, 0.0);
    EXPECT_EQ(lines[1].terms[0].channel, "A2");
}

TEST(MontageFile, WeightsSumAndDivisorAreRead)
{
    const auto lines = parse("Cz = 2*A1 + -0.5 * A2 + A+3 / 1.5");
    ASSERT_THAT(lines[0].terms, SizeIs(3));
    EXPECT_EQ(lines[0].terms[0].weight, 2.0);
    EXPECT_EQ(lines[0].terms[1].weight, -0.5);
    EXPECT_EQ(lines[0].terms[1].channel, "A2");
    EXPECT_EQ(lines[0].terms[2].channel, "A+3");
    EXPECT_EQ(lines[0].divisor, 1.5);
}

TEST(MontageFile, FaultTellsLineAndColumn)
{
    EXPECT_EQ(faultOf("C3 = A1\n  C4 A2\n"), "line 2, column 3: there is no \"=\"");
    EXPECT_EQ(faultOf("C3 = x*A1"), "line 1, column 6: \"x\" is no number");
    EXPECT_EQ(faultOf("C3 = A1 + "), "line 1, column 10: a channel is missing");
    EXPECT_EQ(faultOf("= A1"), "line 1, column 1: a channel is missing");
    EXPECT_EQ(faultOf("C3 = A1 / 0"), "line 1, column 11: the divisor is not above 0");
    EXPECT_EQ(faultOf("C3 = nan*A1"), "line 1, column 6: \"nan\" is no number");
    EXPECT_EQ(faultOf("# nothing\n"), "line 1, column 1: the file holds no montage");
}

// The EEG channels A, B and C of 4 samples each, and the MEG channel M.
class Montage : public testing::Test
{
protected:
    Montage()
    {
        trial.allocateChannels(4);
        const double samples[4][4] = {{1, 2, 3, 4}, {10, 20, 30, 40}, {4, 8, 15, 16}, {7, 7, 7, 7}};
        const char* names[] = {"A", "B", "C", "M"};
        for (int i = 0; i < 4; ++i) {
            trial.getChannel(i)->m_strChannelName = names[i];
            trial.getChannel(i)->setChannelType(i < 3 ? 302 : 100);
            trial.getChannel(i)->addData(4, samples[i]);
        }
    }

    std::vector<double> samplesOf(int channel) const
    {
        const double* const data = trial.getChannel(channel)->getDataWave();
        return {data, data + 4};
    }

    CMDTrialzk trial;
};

TEST_F(Montage, AverageIsTakenFromAllEegChannels)
{
    EXPECT_EQ(applyCommonReference(trial, {}), 3);
    EXPECT_THAT(samplesOf(0), ElementsAre(1 - 15.0 / 3, 2 - 30.0 / 3, 3 - 48.0 / 3, 4 - 60.0 / 3));
    EXPECT_THAT(samplesOf(2), ElementsAre(4 - 15.0 / 3, 8 - 30.0 / 3, 15 - 48.0 / 3, 16 - 60.0 / 3));
    EXPECT_THAT(samplesOf(3), ElementsAre(7, 7, 7, 7));
    EXPECT_EQ(trial.m_bMontageCrDone, 1);
}

// The library alone would make A 0 first, and leave B and C as they are.
TEST_F(Montage, SingleReferenceInTheListIsTakenFromAllOfIt)
{
    applyCommonReference(trial, {{"A"}, 0.0, {}});
    EXPECT_THAT(samplesOf(0), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(samplesOf(1), ElementsAre(9, 18, 27, 36));
    EXPECT_THAT(samplesOf(2), ElementsAre(3, 6, 12, 12));
}

TEST_F(Montage, WeightsDivisorAndChannelsAreObeyed)
{
    EXPECT_EQ(applyCommonReference(trial, {{"A=2", "C"}, 2.0, {"B"}}), 1);
    EXPECT_THAT(samplesOf(1), ElementsAre(10 - 3, 20 - 6, 30 - 10.5, 40 - 12));
    EXPECT_THAT(samplesOf(0), ElementsAre(1, 2, 3, 4));
}

TEST_F(Montage, LinesReferEachTargetFromItsRecordedSamples)
{
    trial.getChannel(0)->getDataWave()[0] = -100; // was worked on
    EXPECT_EQ(applyMontageLines(trial, parse("A = B\nB = 2*A + C / 2")), 2);
    EXPECT_THAT(samplesOf(0), ElementsAre(1 - 10, 2 - 20, 3 - 30, 4 - 40));
    EXPECT_THAT(samplesOf(1), ElementsAre(10 - 3, 20 - 6, 30 - 10.5, 40 - 12));
    EXPECT_EQ(trial.m_bMontageIrDone, 1);
}

TEST_F(Montage, SecondMontageIsRefusedUntilRestored)
{
    applyCommonReference(trial, {});
    const auto once = samplesOf(0);
    EXPECT_THROW(applyCommonReference(trial, {}), std::runtime_error);
    EXPECT_THROW(applyMontageLines(trial, parse("A = B")), std::runtime_error);
    EXPECT_EQ(samplesOf(0), once);
}

TEST_F(Montage, UnknownChannelInAFileIsToldWithItsPlaceAndNothingChanges)
{
    try {
        applyMontageLines(trial, parse("A = B\nB = D"));
        FAIL() << "there is no channel D";
    } catch (const MontageFault& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("line 2, column 5: there is no channel D; the nearest names are A, B, C"));
    }
    EXPECT_THAT(samplesOf(0), ElementsAre(1, 2, 3, 4));
}

TEST_F(Montage, TargetWithTwoLinesIsRefused)
{
    EXPECT_THROW(applyMontageLines(trial, parse("A = B\nA = C")), MontageFault);
}

TEST_F(Montage, ReferenceWithoutSamplesIsRefused)
{
    trial.getChannel(1)->_cleanTimeDataC(true);
    EXPECT_THROW(applyCommonReference(trial, {{"B"}, 0.0, {}}), std::runtime_error);
    EXPECT_THAT(samplesOf(0), ElementsAre(1, 2, 3, 4));
}

TEST_F(Montage, WhatWasDoneIsDescribed)
{
    applyCommonReference(trial, {{"A=2", "C"}, 2.0, {"B"}});
    EXPECT_THAT(describeProcessing(trial), Contains("1 channels less 2.000000*A + C / 2.000000"));
}

class MontageCommand : public SampleCommand
{
protected:
    MontageCommand() : SampleCommand("montage")
    {
        for (int i = 0; i < 3; ++i)
            sample.dataset().getTrialzk(i)->getChannel(5)->setChannelType(302); // a second EEG channel, X1
        sample.store();
    }

    double at(int trial, int channel, int i)
    {
        return trialInFile(sample.path(), trial)->getChannel(channel)->getDataWave()[i];
    }
};

TEST_F(MontageCommand, AverageIsAppliedToAllTrialsShownAndTakenBack)
{
    const auto result = run({"--average", "--in-place"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "2 channels re-referenced\n");
    EXPECT_EQ(at(0, 3, 0), -100.0);
    EXPECT_EQ(at(2, 5, 7), 100.0);
    EXPECT_THAT(run({"--show"}).output, HasSubstr("2 channels less E1 + X1 / 2"));
    EXPECT_EQ(runMegset({"restore", sample.path(), "--in-place"}).exitCode, 0);
    EXPECT_EQ(at(2, 5, 7), 2507.0);
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(MontageCommand, FileIsAppliedAndItsFaultsAreTold)
{
    const std::string file = sample.folder().native("m.txt").string();
    sample.folder().write("m.txt", "E1 = X1\n");
    EXPECT_EQ(run({"--bipolar", file, "--in-place"}).exitCode, 0);
    EXPECT_EQ(at(1, 3, 0), -200.0);
    sample.folder().write("m.txt", "E1 X1\n");
    const auto result = run({"--bipolar", file, "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("m.txt: line 1, column 1: there is no \"=\""));
}

TEST_F(MontageCommand, OneKindIsAsked)
{
    EXPECT_EQ(run({"--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--average", "--reference", "E1", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--average", "--divisor", "2", "--in-place"}).exitCode, 2);
}

} // namespace

} // namespace megset::cli::montage_test
