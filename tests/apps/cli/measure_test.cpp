#include "apps/cli/measure/measureChannels.h"
#include "tests/apps/cli/SampleCommand.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::measure_test {

namespace {

using testing::HasSubstr;
using testing::SizeIs;

class Measure : public SampleCommand
{
protected:
    Measure() : SampleCommand("measure") {}
};

TEST_F(Measure, JsonTellsEachChannelOfTheRange)
{
    const auto result = run({"--trial", "1", "--samples", "3:6", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json.at("trial"), 1);
    EXPECT_EQ(json.at("samples"), nlohmann::json({3, 6}));
    EXPECT_EQ(json.at("ms"), nlohmann::json({-10.0, 5.0})); // 200 Hz, 5 samples before the trigger
    ASSERT_THAT(json.at("channels"), SizeIs(2));
    const auto& channel = json.at("channels")[1];
    EXPECT_EQ(channel.at("name"), "M2-77");
    EXPECT_EQ(channel.at("samples"), 4);
    EXPECT_EQ(channel.at("min"), 1203.0);
    EXPECT_EQ(channel.at("mean"), 1204.5);
    EXPECT_EQ(channel.at("max"), 1206.0);
    double square = 0.0;
    for (const double value : {1203.0, 1204.0, 1205.0, 1206.0})
        square += value * value;
    EXPECT_NEAR(channel.at("rms").get<double>(), std::sqrt(square / 4), 1e-9);
}

TEST_F(Measure, TimesStandForTheNearestSamples)
{
    const auto json = nlohmann::json::parse(run({"--ms", "-24:11", "--channels", "S1", "--json"}).output);
    EXPECT_EQ(json.at("samples"), nlohmann::json({0, 7}));
    EXPECT_EQ(json.at("trial"), 2);
}

// Of a single sample the root mean square is its square, as the library has it.
TEST_F(Measure, TextIsATable)
{
    const auto result = run({"--kind", "trigger", "--samples", "0:0", "--trial", "0"});
    EXPECT_THAT(result.output, HasSubstr("trial 0, samples 0 to 0, -25 to -25 ms\n"));
    EXPECT_THAT(result.output,
                HasSubstr("S1                                  400         400         400      160000           0\n"));
}

TEST_F(Measure, FaultsAreTold)
{
    EXPECT_THAT(run({"--trial", "3"}).errors, HasSubstr("there is no trial 3"));
    EXPECT_THAT(run({"--ms", "0:1000"}).errors, HasSubstr("the time 1000 ms is outside the trial"));
    EXPECT_THAT(run({"--ms", "10:0"}).errors, HasSubstr("ends before it begins"));
    EXPECT_THAT(run({"--ms", "x"}).errors, HasSubstr("not of the form A:B"));
    EXPECT_THAT(run({"--channels", "Q"}).errors, HasSubstr("there is no channel Q"));
    EXPECT_EQ(run({"--ms", "0:1", "--samples", "0:1"}).exitCode, 2);
}

} // namespace

} // namespace megset::cli::measure_test
