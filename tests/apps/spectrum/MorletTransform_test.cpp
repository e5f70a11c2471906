#include "apps/spectrum/FrequencyAxis.h"
#include "apps/spectrum/MorletTransform.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::spectrum::MorletTransform_test {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::SizeIs;

struct Planes
{
    std::vector<double> real;
    std::vector<double> imaginary;
};

Planes transform(const std::vector<double>& samples, double rate, const std::vector<double>& hz, double cycles,
                 const TimeAxis& axis = {})
{
    MorletTransform morlet(samples.size(), rate, hz, cycles);
    const std::size_t size = axis.points(samples.size()) * hz.size();
    Planes planes = {std::vector<double>(size), std::vector<double>(size)};
    morlet.transform(samples, axis, planes.real, planes.imaginary);
    return planes;
}

// The convolution as it is defined, without a transform.
std::complex<double> reference(const std::vector<double>& samples, double rate, double hz, double cycles,
                               std::size_t at)
{
    const double s = cycles / (2.0 * std::numbers::pi * hz);
    const auto half = static_cast<std::ptrdiff_t>(5.0 * s * rate);
    std::complex<double> sum = 0.0;
    double weight = 0.0;
    for (std::ptrdiff_t k = -half; k <= half; ++k) {
        const double t = static_cast<double>(k) / rate;
        const double envelope = std::exp(-t * t / (2.0 * s * s));
        weight += envelope;
        const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(at) - k;
        if (i >= 0 && i < static_cast<std::ptrdiff_t>(samples.size()))
            sum += samples[static_cast<std::size_t>(i)] * envelope *
                   (std::polar(1.0, 2.0 * std::numbers::pi * hz * t) - std::exp(-cycles * cycles / 2.0));
    }
    return 2.0 * sum / weight;
}

TEST(MorletTransform, AgreesWithTheConvolutionOfRandomSamples)
{
    std::mt19937 random(7);
    std::normal_distribution<double> normal(0.0, 100.0);
    std::vector<double> samples(251);
    for (double& value : samples)
        value = normal(random);
    const std::vector<double> hz = {3.0, 10.0, 31.7, 90.0};
    for (const double cycles : {3.0, 7.0}) {
        const Planes planes = transform(samples, 200.0, hz, cycles);
        for (std::size_t t = 0; t < samples.size(); ++t)
            for (std::size_t f = 0; f < hz.size(); ++f) {
                const auto wanted = reference(samples, 200.0, hz[f], cycles, t);
                ASSERT_NEAR(planes.real[t * hz.size() + f], wanted.real(), 1e-9) << t << ' ' << hz[f];
                ASSERT_NEAR(planes.imaginary[t * hz.size() + f], wanted.imag(), 1e-9) << t << ' ' << hz[f];
            }
    }
}

TEST(MorletTransform, WaveGivesItsAmplitudeAndPhase)
{
    constexpr double rate = 600.0;
    constexpr double amplitude = 42.0;
    constexpr double phase = 0.7;
    std::vector<double> samples(1200);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = amplitude * std::cos(2.0 * std::numbers::pi * 20.0 * static_cast<double>(i) / rate + phase);
    const Planes planes = transform(samples, rate, {20.0}, 7.0);
    const std::complex<double> middle(planes.real[600], planes.imaginary[600]);
    EXPECT_NEAR(std::abs(middle), amplitude, 1e-4 * amplitude);
    EXPECT_NEAR(std::arg(middle), phase, 1e-4); // 600 samples are 20 whole waves
}

TEST(MorletTransform, ConstantGivesNothingAwayFromTheEnds)
{
    const Planes planes = transform(std::vector<double>(1200, 1000.0), 600.0, {20.0}, 3.0);
    EXPECT_NEAR(std::hypot(planes.real[600], planes.imaginary[600]), 0.0, 0.01);
}

TEST(MorletTransform, EdgeAndStepChooseThePoints)
{
    std::vector<double> samples(100);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<double>(i * i % 17);
    const Planes all = transform(samples, 100.0, {10.0, 20.0}, 5.0);
    const TimeAxis axis = {10, 7};
    EXPECT_EQ(axis.points(100), 12U); // 10, 17, ... 87
    const Planes some = transform(samples, 100.0, {10.0, 20.0}, 5.0, axis);
    for (std::size_t t = 0; t < 12; ++t)
        EXPECT_EQ(some.real[2 * t + 1], all.real[2 * (10 + 7 * t) + 1]);
    EXPECT_EQ((TimeAxis{50, 1}).points(100), 0U);
    EXPECT_EQ((TimeAxis{49, 5}).points(100), 1U);
}

TEST(MorletTransform, WhatCanNotBeTransformedIsRefused)
{
    EXPECT_THROW(MorletTransform(10, 100.0, {50.0}, 7.0), std::invalid_argument);
    EXPECT_THROW(MorletTransform(10, 100.0, {0.0}, 7.0), std::invalid_argument);
    EXPECT_THROW(MorletTransform(10, 100.0, {10.0}, 0.0), std::invalid_argument);
    EXPECT_THROW(MorletTransform(10, 100.0, {1e-12}, 7.0), std::invalid_argument);
    EXPECT_THROW(MorletTransform(10, 100.0, {5e-324}, 7.0), std::invalid_argument);
    EXPECT_THROW(MorletTransform(10, 100.0, {10.0}, 1e300), std::invalid_argument);
    EXPECT_THROW(MorletTransform(std::size_t{1} << 26U, 100.0, {10.0}, 7.0), std::invalid_argument);
}

// A long recording at many frequencies: their wavelets would not fit in memory together.
TEST(MorletTransform, WaveletsThatAreNotKeptGiveTheSame)
{
    std::vector<double> samples(100'000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<double>(i * i % 17);
    const TimeAxis axis = {1000, 20'000};
    std::vector<double> hz;
    for (int i = 0; i < 170; ++i)
        hz.push_back(100.0 + i);
    const Planes many = transform(samples, 1000.0, hz, 5.0, axis);
    const Planes few = transform(samples, 1000.0, {hz.front(), hz.back()}, 5.0, axis);
    ASSERT_EQ(axis.points(samples.size()), 5U);
    for (std::size_t t = 0; t < 5; ++t) {
        EXPECT_EQ(many.real[hz.size() * t], few.real[2 * t]);
        EXPECT_EQ(many.imaginary[hz.size() * (t + 1) - 1], few.imaginary[2 * t + 1]);
    }
}

TEST(FrequencyAxis, LinearStepsReachTheEnd)
{
    EXPECT_THAT(linearAxis("1:2:0.25").hz, ElementsAre(1, 1.25, 1.5, 1.75, 2));
    EXPECT_THAT(linearAxis("0.1:1:0.1").hz, SizeIs(10));
    EXPECT_FALSE(linearAxis("1:1:5").isPower);
    EXPECT_THAT(linearAxis("1:1:5").hz, ElementsAre(1));
}

TEST(FrequencyAxis, OctavesAreDividedEvenly)
{
    const FrequencyAxis axis = octaveAxis("2:16:2");
    EXPECT_TRUE(axis.isPower);
    EXPECT_DOUBLE_EQ(axis.step, std::sqrt(2.0));
    EXPECT_THAT(axis.hz, ElementsAre(2, DoubleNear(2.8284271, 1e-6), 4, DoubleNear(5.6568542, 1e-6), 8,
                                     DoubleNear(11.3137085, 1e-6), 16));
}

TEST(FrequencyAxis, OtherTextsAreRefused)
{
    for (const char* text : {"", "1", "1:2", "1:2:x", "1:2:3:4", "0:2:1", "3:2:1", "1:2:0", "1:2:-1", "nan:2:1",
                             "1:1000000:0.001", "1 :2:1"})
        EXPECT_THROW(linearAxis(text), std::invalid_argument) << text;
}

} // namespace

} // namespace megset::spectrum::MorletTransform_test
