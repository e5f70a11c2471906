#include "apps/phantom/PhantomOptions.h"

#include <functional>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::phantom::options_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string refusal(const std::function<void(PhantomOptions&)>& change)
{
    PhantomOptions options;
    change(options);
    try {
        planPhantom(options);
    } catch (const std::invalid_argument& fault) {
        return fault.what();
    }
    return "";
}

TEST(PhantomOptions, DefaultIsTenTrialsOfASecondWithAStimulusEach)
{
    const PhantomPlan plan = planPhantom({});
    EXPECT_EQ(plan.trials, 10);
    EXPECT_EQ(plan.samples, 1200);
    EXPECT_EQ(plan.preTriggerSamples, 240);
    ASSERT_EQ(plan.stimuli.size(), 10U);
    EXPECT_EQ(plan.stimuli[0], (Stimulus{0, 240, 1}));
    EXPECT_EQ(plan.stimuli[9], (Stimulus{9, 240, 1}));
}

TEST(PhantomOptions, StimuliOfATrialComeAtTheIntervalAsLongAsAPulseFits)
{
    PhantomOptions options;
    options.trials = 2;
    options.rate = 1000;
    options.preTriggerSeconds = 0.1;
    options.stimulusIntervalSeconds = 0.4;
    options.pulseSamples = 99;
    options.codes = {5, 250, 1};
    const PhantomPlan plan = planPhantom(options);
    EXPECT_THAT(plan.stimuli, ElementsAre(Stimulus{0, 100, 5}, Stimulus{0, 500, 250}, Stimulus{0, 900, 1},
                                          Stimulus{1, 100, 5}, Stimulus{1, 500, 250}, Stimulus{1, 900, 1}));
    EXPECT_THAT(plan.stimuliOf(1), ElementsAre(Stimulus{1, 100, 5}, Stimulus{1, 500, 250}, Stimulus{1, 900, 1}));
    EXPECT_THAT(plan.stimuliOf(2), ElementsAre());
    options.pulseSamples = 100; // the third would have no sample behind it
    EXPECT_EQ(planPhantom(options).stimuli.size(), 4U);
}

TEST(PhantomOptions, AContinuousRecordingHasOneTrialWithTheStimuliWhereTheyWere)
{
    PhantomOptions options;
    options.trials = 3;
    options.continuous = true;
    options.codes = {1, 2};
    const PhantomPlan plan = planPhantom(options);
    EXPECT_EQ(plan.trials, 1);
    EXPECT_EQ(plan.samples, 3600);
    EXPECT_EQ(plan.preTriggerSamples, 0);
    EXPECT_THAT(plan.stimuli, ElementsAre(Stimulus{0, 240, 1}, Stimulus{0, 1440, 2}, Stimulus{0, 2640, 1}));
}

TEST(PhantomOptions, OutOfRangeAreRefusedByName)
{
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_THAT(refusal([](auto& o) { o.trials = 0; }), HasSubstr("trials"));
    EXPECT_THAT(refusal([](auto& o) { o.trials = 32768; }), HasSubstr("trials"));
    for (const double rate : {0.0, -1.0, 99.9, 100001.0, notANumber, infinite})
        EXPECT_THAT(refusal([=](auto& o) { o.rate = rate; }), HasSubstr("sampling rate"));
    for (const double seconds : {0.0, -1.0, 1e6, notANumber, infinite})
        EXPECT_THAT(refusal([=](auto& o) { o.seconds = seconds; }), HasSubstr("1e9 samples"));
    for (const int channels : {0, -1, 276})
        EXPECT_THAT(refusal([=](auto& o) { o.channels = channels; }), HasSubstr("gradiometers"));
    for (const double scale : {-1.0, notANumber, infinite}) {
        EXPECT_THAT(refusal([=](auto& o) { o.evokedScale = scale; }), HasSubstr("strength"));
        EXPECT_THAT(refusal([=](auto& o) { o.alphaScale = scale; }), HasSubstr("strength"));
        EXPECT_THAT(refusal([=](auto& o) { o.noiseScale = scale; }), HasSubstr("strength"));
        EXPECT_THAT(refusal([=](auto& o) { o.interferenceScale = scale; }), HasSubstr("strength"));
    }
    EXPECT_THAT(refusal([](auto& o) { o.codes = {}; }), HasSubstr("at least one stimulus code"));
    for (const int code : {0, -1, 256})
        EXPECT_THAT(refusal([=](auto& o) { o.codes = {1, code}; }), HasSubstr("1 to 255"));
    EXPECT_THAT(refusal([](auto& o) { o.pulseSamples = 0; }), HasSubstr("pulse"));
    for (const double before : {-0.1, 1.1, notANumber})
        EXPECT_THAT(refusal([=](auto& o) { o.preTriggerSeconds = before; }), HasSubstr("within the trial"));
    for (const double interval : {-0.1, 1e9, notANumber})
        EXPECT_THAT(refusal([=](auto& o) { o.stimulusIntervalSeconds = interval; }), HasSubstr("between stimuli"));
}

TEST(PhantomOptions, ATrialTakesTheWholePulseAndASampleMore)
{
    const auto fits = [](int pulse) {
        return refusal([=](auto& o) {
            o.seconds = 0.1;
            o.preTriggerSeconds = 0.05;
            o.pulseSamples = pulse;
        });
    };
    EXPECT_EQ(fits(59), "");
    EXPECT_THAT(fits(60), HasSubstr("whole pulse"));
    EXPECT_THAT(fits(std::numeric_limits<int>::max()), HasSubstr("whole pulse"));
}

TEST(PhantomOptions, PulsesDoNotTouch)
{
    const auto apart = [](int pulse) {
        return refusal([=](auto& o) {
            o.stimulusIntervalSeconds = 0.1;
            o.pulseSamples = pulse;
        });
    };
    EXPECT_EQ(apart(119), "");
    EXPECT_THAT(apart(120), HasSubstr("longer than a pulse"));
}

TEST(PhantomOptions, ATrialOfLessThanHalfASampleIsNone)
{
    EXPECT_THAT(refusal([](auto& o) {
                    o.seconds = 0.0004;
                    o.preTriggerSeconds = 0;
                }),
                HasSubstr("1 to 1e9 samples"));
}

TEST(PhantomOptions, SizesAreBounded)
{
    EXPECT_THAT(refusal([](auto& o) {
                    o.trials = 32767;
                    o.seconds = 1000;
                    o.continuous = true;
                }),
                HasSubstr("continuous recording"));
    EXPECT_THAT(refusal([](auto& o) {
                    o.seconds = 100000;
                    o.stimulusIntervalSeconds = 0.01;
                }),
                HasSubstr("1000000 stimuli"));
}

} // namespace

} // namespace megset::phantom::options_test
