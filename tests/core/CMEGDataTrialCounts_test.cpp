// How many trials of a dataset were recorded and how many computed.
#include "megset/core/CMEGData.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <filesystem>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGDataTrialCounts_test {
namespace {

using ::testing::ElementsAre;

class CountedTrials : public ::testing::Test
{
protected:
    // Places 1, 3 and 4 are virtual.
    CountedTrials()
    {
        for (const int place : {1, 3, 4}) {
            auto trial = makeTrial(place, 1, 2);
            trial->m_nVirtualTrial = 1;
            filed.writeTrial(place, *trial);
        }
        filed.data.m_nRealTrial = 7;
        filed.data.m_nVirtualTrial = 1;
    }
    int count(int mode) { return filed.data.getTrialRecordVirtual(real, virt, mode); }

    FiledDataset filed{5, 1, 2};
    int real = -9;
    int virt = -9;
};

TEST_F(CountedTrials, AreThoseStoredWithTheRealOnesCorrected)
{
    EXPECT_EQ(count(0), 5);
    EXPECT_EQ(real, 4);
    EXPECT_EQ(virt, 1);
    filed.data.m_nRealTrial = 3;
    filed.data.m_nVirtualTrial = 2;
    EXPECT_EQ(count(0), 5);
    EXPECT_EQ(real, 3);
    EXPECT_EQ(virt, 2);
    EXPECT_EQ(filed.trialsInMemory(), 0);
}

TEST_F(CountedTrials, StoredInAFileAsAnyNumbersStayWithinInt)
{
    constexpr int most = std::numeric_limits<int>::max();
    filed.data.m_nRealTrial = most;
    filed.data.m_nVirtualTrial = most;
    EXPECT_EQ(count(0), 5);
    EXPECT_EQ(virt, most);
    EXPECT_EQ(real, 5 - most);
    filed.data.m_nVirtualTrial = std::numeric_limits<int>::min();
    EXPECT_EQ(count(0), 5);
    EXPECT_EQ(real, std::numeric_limits<int>::min() + 5); // what doesn't fit wraps around
}

TEST_F(CountedTrials, AreTheVirtualOnesAtTheEnd)
{
    EXPECT_EQ(count(1), 5);
    EXPECT_EQ(virt, 2);
    EXPECT_EQ(real, 3);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 2); // the first real one from the end ends the walk
}

TEST_F(CountedTrials, AreAllOfBothKinds)
{
    EXPECT_EQ(count(2), 5);
    EXPECT_EQ(virt, 3);
    EXPECT_EQ(real, 2);
}

TEST_F(CountedTrials, AreNotStored)
{
    count(2);
    EXPECT_EQ(filed.data.m_nRealTrial, 7);
    EXPECT_EQ(filed.data.m_nVirtualTrial, 1);
}

TEST_F(CountedTrials, AreNoneInAnotherMode)
{
    EXPECT_EQ(count(3), 0);
    EXPECT_EQ(real, 0);
    EXPECT_EQ(virt, 0);
    EXPECT_EQ(count(-1), 0);
}

TEST_F(CountedTrials, AreNoneForOtherNumbersOfPathsOrWithoutTheArray)
{
    const ScriptedHost host;
    filed.data.m_ppTrial.reset();
    EXPECT_EQ(count(0), 0);
    host.expectNoMessages();
    filed.data.m_aTrialFilePath.RemoveAt(0);
    EXPECT_EQ(count(0), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!"));
    EXPECT_EQ(real, 0);
    EXPECT_EQ(virt, 0);
}

TEST_F(CountedTrials, TellOfATrialThatCannotBeOpened)
{
    for (const int mode : {1, 2}) {
        ScriptedHost host;
        std::filesystem::remove(filed.folder.native(FiledDataset::name(4)));
        host.willAnswerNo();
        EXPECT_EQ(count(mode), 0) << mode;
        EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed ", "Open trial for checking error!")) << mode;
    }
}

} // namespace
} // namespace megset::CMEGDataTrialCounts_test
