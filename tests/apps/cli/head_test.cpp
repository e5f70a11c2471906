#include "apps/cli/dataset/workFrame.h"
#include "apps/cli/process/moveFrame.h"
#include "tests/apps/cli/SampleDataset.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::head_test {

namespace {

using testing::HasSubstr;

// The sensor of M1 stands at 1, 2, 3 in the dewar and at 4, 5, 6 in the head; the others have no place in either. The
// head frame is in use.
class Head : public testing::Test
{
protected:
    Head()
    {
        CHeadLocalizationzk& place = *sample.dataset().getHeadLocationDataset();
        place.m_nWorkCoordinate = 2;
        place.m_fidDewarStd.m_aFidPt[0].setFidPos(10.0, 0.0, 0.0);
        place.m_fidDewarMsr.m_aFidPt[0].setFidPos(20.0, 0.0, 0.0);
        place.m_fidHeadMsr.m_aFidPt[0].setFidPos(30.0, 0.0, 0.0);
        const double dewar[] = {1.0, 2.0, 3.0};
        const double head[] = {4.0, 5.0, 6.0};
        const double up[] = {0.0, 1.0, 0.0};
        for (int i = 0; i < 3; ++i)
            sensorOf(sample.dataset(), i).initSensorBasic(1, "M1", "", 3, nullptr, dewar, up, head, up);
        sample.store();
    }

    static CMEGSensorzk& sensorOf(CMEGDatazk& dataset, int trial)
    {
        return *dataset.getTrialzk(trial)->getChannel(1)->getMEGSensorzk();
    }
    static double xOf(CMEGDatazk& dataset, int trial)
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        sensorOf(dataset, trial).getSnsPos(-1, 0, x, y, z);
        return x;
    }
    std::string frameInInfo() const
    {
        const auto result = runMegset({"info", sample.path(), "--json"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return nlohmann::json::parse(result.output).at("frame");
    }

    SampleDataset sample;
};

TEST_F(Head, FramesHaveNames)
{
    EXPECT_EQ(frameName(0), "dewar");
    EXPECT_EQ(frameName(1), "dewar-measured");
    EXPECT_EQ(frameName(2), "head");
    EXPECT_EQ(frameName(3), "unknown");
    EXPECT_EQ(frameName(-1), "unknown");
}

TEST_F(Head, MovesTheSensorsOfAllTrialsAndTellsTheFrame)
{
    EXPECT_EQ(frameInInfo(), "head");
    const auto result = runMegset({"head", sample.path(), "--frame", "dewar", "--in-place"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "frame dewar: 1 sensors; 2 have no place there and stay where they are\n");
    EXPECT_EQ(frameInInfo(), "dewar");
    const auto changed = openDatasetToChange(sample.path());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(xOf(changed->dataset, i), 1.0) << i;
    EXPECT_EQ(changed->dataset.getFidWorkMeg()->m_aFidPt[0].m_dFidPos[0], 20.0) << "frame 0 takes the measured ones";
}

TEST_F(Head, ThereAndBackRestoresTheSensors)
{
    const CMEGSensorzk before = sensorOf(sample.dataset(), 0);
    setWorkFrame(sample.dataset(), "dewar-measured");
    EXPECT_FALSE(sensorOf(sample.dataset(), 0) == before);
    setWorkFrame(sample.dataset(), "head");
    EXPECT_TRUE(sensorOf(sample.dataset(), 0) == before);
}

TEST_F(Head, RefusesAnotherFrame)
{
    EXPECT_EQ(runMegset({"head", sample.path(), "--frame", "room", "--in-place"}).exitCode, 2);
    EXPECT_EQ(runMegset({"head", sample.path(), "--in-place"}).exitCode, 2);
}

} // namespace

} // namespace megset::cli::head_test
