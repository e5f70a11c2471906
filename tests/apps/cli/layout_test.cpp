#include "apps/cli/layout/SensorMap.h"
#include "tests/apps/cli/SampleDataset.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::layout_test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

// Four sensors on one level, 60 mm to the left, right, front and back of the head's middle.
std::unique_ptr<CMDTrialzk> crossOfSensors()
{
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(4);
    const char* names[] = {"left-1", "right-1", "front-1", "back-1"};
    const double places[][3] = {{60, 50, 0}, {-60, 50, 0}, {0, 50, -60}, {0, 50, 60}};
    for (int i = 0; i < 4; ++i) {
        CMDChannelzk& channel = *trial->getChannel(i);
        channel.m_strChannelName = names[i];
        channel.setChannelType(100);
        channel.ensureMEGSensor()->setSnsPos(-1, 0, places[i][0], places[i][1], places[i][2]);
    }
    return trial;
}

TEST(SensorMap, LeftIsLeftAndTheNoseIsUp)
{
    const auto maps = makeSensorMaps(*crossOfSensors());
    ASSERT_THAT(maps, SizeIs(1));
    const auto& points = maps[0].points;
    ASSERT_THAT(points, SizeIs(4));
    EXPECT_EQ(points[0].name, "left");
    EXPECT_LT(points[0].x, points[1].x);
    EXPECT_LT(points[2].y, points[3].y);
    EXPECT_DOUBLE_EQ(points[0].x, 0.0);
    EXPECT_DOUBLE_EQ(points[1].x, maps[0].width);
    EXPECT_DOUBLE_EQ(points[2].y, 0.0);
    EXPECT_DOUBLE_EQ(points[3].y, maps[0].height);
    EXPECT_DOUBLE_EQ(points[2].x, maps[0].width / 2);
}

TEST(SensorMap, TrialWithoutSensorsHasNone)
{
    CMDTrialzk trial;
    EXPECT_THAT(makeSensorMaps(trial), IsEmpty());
    trial.allocateChannels(3);
    EXPECT_THAT(makeSensorMaps(trial), IsEmpty());
}

TEST(SensorMap, PictureHasACircleAndANameForEachSensor)
{
    std::ostringstream out;
    auto maps = makeSensorMaps(*crossOfSensors());
    maps[0].points[0].name = "<a&b>";
    writeSvg(maps, out);
    EXPECT_THAT(out.str(), StartsWith("<svg xmlns="));
    EXPECT_THAT(out.str(), HasSubstr(">&lt;a&amp;b></text>"));
    EXPECT_THAT(out.str(), HasSubstr(">right</text>"));
    EXPECT_THAT(out.str(), Not(HasSubstr("nan")));
}

TEST(Layout, CommandDrawsThePicture)
{
    const SampleDataset sample;
    const std::string svg = sample.folder().native("map.svg").string();
    const auto result = runMegset({"layout", sample.path(), "--svg", svg});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, svg + ": 2 MEG sensors\n");
    EXPECT_TRUE(sample.folder().has("map.svg"));
    EXPECT_EQ(runMegset({"layout", sample.path(), "--svg", svg}).exitCode, 1) << "the picture exists";
}

} // namespace

} // namespace megset::cli::layout_test
