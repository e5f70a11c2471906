// A dataset that counts more trials than it names files for takes no memory for them.

#include "apps/cli/process/forEachTrial.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/persistence/datasetRecord.h"

#include <chrono>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::countedTrials_test {

namespace {

// A dataset of one file, with no place for any trial.
class TrialsThatAreCountedOnly : public testing::Test
{
protected:
    TrialsThatAreCountedOnly()
    {
        datasetRecord::Parts parts;
        parts.trials.total = INT32_MAX;
        parts.trials.paths = {sample.dataset().m_aTrialFilePath.GetAt(0)};
        sample.folder().write("many.meg", datasetRecord::record(datasetRecord::newest, parts).bytes());
    }
    std::string path() const { return sample.folder().native("many.meg").string(); }

    SampleDataset sample{1};
};

TEST_F(TrialsThatAreCountedOnly, HavePlacesForTheFilesAlone)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(path(), notes);
    EXPECT_EQ(open->dataset.getTotalTrial(), INT32_MAX);
    EXPECT_EQ(open->dataset.m_ppTrial.size(), 1);
    EXPECT_NE(open->dataset.getCurrentTrialPt(), nullptr);
}

TEST_F(TrialsThatAreCountedOnly, AreNotListedBeforeTheFirstOneIsOpened)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto open = openDatasetToChange(path());
    try {
        forEachTrial(*open, "walk", [](CMDTrialzk&) {});
        ADD_FAILURE() << "walked";
    } catch (const std::runtime_error& fault) {
        EXPECT_STREQ(fault.what(), "trial 0 of 2147483647: it can't be opened");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST_F(TrialsThatAreCountedOnly, AreToldByTheCheck)
{
    const auto result = runMegset({"check", path()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, testing::HasSubstr("the dataset counts 2147483647 trials and names 1 file"));
}

} // namespace

} // namespace megset::cli::countedTrials_test
