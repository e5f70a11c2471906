// Trials that a failed save leaves in memory: they are newer than their files.
#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::residentTrials_test {
namespace {

using ::testing::Contains;

// Three trials in memory with other samples than their files, of which the first one's is gone.
class ResidentTrials : public ::testing::Test
{
protected:
    ResidentTrials()
    {
        for (int i = 0; i < 3; ++i)
            data.m_ppTrial.set(i, makeTrial(i + 5, 2, 5));
        std::filesystem::remove(filed.folder.native(FiledDataset::name(0)));
        host.willAnswerNo();
    }
    std::vector<double> samplesAt(int trial) { return wave(*data.getMDTrial(trial)->getChannel(0)); }

    ScriptedHost host;
    FiledDataset filed{3, 2, 5};
    CMEGDatazk& data = filed.data;
};

TEST_F(ResidentTrials, AreTakenAsTheyAreAndNotReadOverFromTheirFiles)
{
    EXPECT_EQ(data.openTrial(2), 1);
    EXPECT_THAT(host.messages(), Contains("Save trial data error!"));
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    EXPECT_EQ(samplesAt(2), channelValues(7, 0, 5));
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(wave(*filed.readTrial(1)->getChannel(0)), channelValues(6, 0, 5));
    EXPECT_EQ(wave(*filed.readTrial(2)->getChannel(0)), channelValues(7, 0, 5));
}

TEST_F(ResidentTrials, StayWhenTheOneThatCouldNotBeSavedIsOpenedAgain)
{
    data.m_nCurrentTrial = 1;
    host.willAnswerNo(); // its file is not found for reading either
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(samplesAt(1), channelValues(6, 0, 5));
    EXPECT_EQ(samplesAt(2), channelValues(7, 0, 5));
    EXPECT_EQ(data.openTrial(1), 1);
}

TEST_F(ResidentTrials, AreTakenAsTheyAreByTheOpeningOfAnAcquisitionToo)
{
    EXPECT_EQ(data.openTrialRecord(2, ""), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    EXPECT_EQ(samplesAt(2), channelValues(7, 0, 5));
}

} // namespace
} // namespace megset::residentTrials_test
