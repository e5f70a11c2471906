// Files that are no .res4 files any more: one broken rule each, every prefix, every bit flip.

#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/Res4.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"
#include "tests/kit/brokenFiles.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::Res4_broken_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

// What is said of the file, and where it says the fault is.
void expectFault(std::span<const std::byte> bytes, std::size_t offset, const std::string& sentence)
{
    try {
        parseRes4(bytes, "small.res4");
        FAIL() << "read in spite of: " << sentence;
    } catch (const CtfError& error) {
        EXPECT_EQ(std::string(error.what()), "small.res4: " + sentence + " (byte " + std::to_string(offset) + ")");
        EXPECT_EQ(error.offset(), offset);
        EXPECT_EQ(error.file(), "small.res4");
    }
}

void expectFault(const CtfBuilder& builder, std::size_t offset, const std::string& sentence)
{
    expectFault(builder.res4(), offset, sentence);
}

// The small file with a number written over.
std::vector<std::byte> withNumber(const CtfBuilder& builder, std::size_t at, double number)
{
    std::vector<std::byte> bytes = builder.res4();
    const BigEndianBuilder field = BigEndianBuilder().f64(number);
    std::copy(field.bytes().begin(), field.bytes().end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    return bytes;
}

TEST(BrokenRes4, OtherTag)
{
    CtfBuilder builder;
    builder.tag = "MEG43RS";
    expectFault(builder, 0, "this is no CTF resource file, it does not begin with MEG41RS or MEG42RS");
}

TEST(BrokenRes4, EmptyFile)
{
    expectFault(std::vector<std::byte>(), 0, "the file is cut, it ends before the end of the tag");
}

TEST(BrokenRes4, CutInsideTheHead)
{
    const std::vector<std::byte> bytes = CtfBuilder().res4();
    expectFault(std::span(bytes).first(1000), 1000, "the file is cut, it ends before the end of the head");
}

TEST(BrokenRes4, CutInsideTheSensorRecords)
{
    const CtfBuilder builder;
    const std::size_t size = sensorAt(builder, 4) + 17;
    const std::vector<std::byte> bytes = builder.res4();
    expectFault(std::span(bytes).first(size), size, "the file is cut, it ends before the end of the sensor records");
}

TEST(BrokenRes4, CutInsideTheCoefficients)
{
    const CtfBuilder builder;
    const std::vector<std::byte> bytes = builder.res4();
    expectFault(std::span(bytes).first(bytes.size() - 1), bytes.size() - 1,
                "the file is cut, it ends before the end of the coefficient records");
}

TEST(BrokenRes4, NoSamples)
{
    CtfBuilder builder;
    builder.samples = 0;
    expectFault(builder, 1288, "the number of samples is 0");
}

TEST(BrokenRes4, NegativeChannels)
{
    CtfBuilder builder;
    builder.channelCount = -3;
    expectFault(builder, 1292, "the number of channels is -3");
}

TEST(BrokenRes4, NoTrials)
{
    CtfBuilder builder;
    builder.trials = 0;
    expectFault(builder, 1312, "the number of trials is 0");
}

TEST(BrokenRes4, NegativeAverages)
{
    CtfBuilder builder;
    builder.averages = -1;
    expectFault(builder, 776, "the number of averages is -1");
}

TEST(BrokenRes4, SampleRatesThatNoSystemHas)
{
    for (const double rate : {0.0, -600.0, 1e8, -5e-324}) {
        CtfBuilder builder;
        builder.rate = rate;
        expectFault(builder, 1296, "the sample rate is not above 0 Hz and up to 10 MHz");
    }
    for (const double rate : {notANumber, infinite}) {
        CtfBuilder builder;
        builder.rate = rate;
        expectFault(builder, 1296, "the sample rate is not a finite number");
    }
}

TEST(BrokenRes4, NegativeSizeOfTheDescription)
{
    CtfBuilder builder;
    builder.descriptionSize = -1;
    expectFault(builder, 1836, "the size of the run description is -1");
}

TEST(BrokenRes4, DescriptionBeyondTheFile)
{
    CtfBuilder builder;
    builder.descriptionSize = 0x7FFFFFFF;
    expectFault(builder, builder.res4().size(), "the file is cut, it ends before the end of the run description");
}

TEST(BrokenRes4, NegativeNumberOfFilters)
{
    CtfBuilder builder;
    builder.filterCount = -2;
    expectFault(builder, filtersAt(builder), "the number of filters is -2");
}

TEST(BrokenRes4, FilterOfNoFrequency)
{
    CtfBuilder builder;
    builder.filters[1].frequency = notANumber;
    expectFault(builder, filtersAt(builder) + 2 + 18, "the frequency of filter 2 of 2 is not a finite number");
}

TEST(BrokenRes4, FilterParameterThatIsNoNumber)
{
    CtfBuilder builder;
    builder.filters[1].parameters[1] = infinite;
    expectFault(builder, filtersAt(builder) + 2 + 18 + 18 + 8, "a parameter of filter 2 of 2 is not a finite number");
}

TEST(BrokenRes4, MoreChannelsCountedThanThereAre)
{
    CtfBuilder builder;
    builder.channelCount = 8;
    expectFault(builder, namesAt(builder) + static_cast<std::size_t>(7 * 32),
                "channel 8 of 8 has no name, the head counts other channels than the file holds");
}

TEST(BrokenRes4, FewerChannelsCountedThanThereAre)
{
    CtfBuilder builder;
    builder.channelCount = 6;
    expectFault(builder, namesAt(builder) + static_cast<std::size_t>(6 * 32),
                "channel \"STIM\" has no sensor record here, the head counts other channels than the file holds");
}

TEST(BrokenRes4, MoreChannelsCountedThanTheFileHasRoomFor)
{
    CtfBuilder builder;
    builder.channelCount = 32767;
    expectFault(builder, builder.res4().size(), "the file is cut, it ends before the end of the channel names");
}

TEST(BrokenRes4, GainsThatAreNoNumbers)
{
    const CtfBuilder builder;
    const std::size_t at = sensorAt(builder, 3);
    expectFault(withNumber(builder, at + 8, notANumber), at + 8,
                "the proper gain of channel \"MLC11-1\" is not a finite number");
    expectFault(withNumber(builder, at + 16, infinite), at + 16,
                "the Q gain of channel \"MLC11-1\" is not a finite number");
    expectFault(withNumber(builder, at + 24, -infinite), at + 24,
                "the IO gain of channel \"MLC11-1\" is not a finite number");
    expectFault(withNumber(builder, at + 32, notANumber), at + 32,
                "the IO offset of channel \"MLC11-1\" is not a finite number");
}

TEST(BrokenRes4, GainsThatGiveNoScale)
{
    const CtfBuilder builder;
    const std::size_t at = sensorAt(builder, 3) + 8;
    expectFault(withNumber(builder, at, 1e305), at, "the gains of channel \"MLC11-1\" give no scale");
    expectFault(withNumber(builder, at, 1e-310), at, "the gains of channel \"MLC11-1\" give no scale");
}

TEST(BrokenRes4, GradientOrderThatIsNone)
{
    for (const int order : {-1, 4}) {
        CtfBuilder builder;
        builder.channels[3].order = order;
        expectFault(builder, sensorAt(builder, 3) + 42,
                    "the gradient order of channel \"MLC11-1\" is " + std::to_string(order) + ", not one of 0 to 3");
    }
}

TEST(BrokenRes4, MoreCoilsThanARecordHas)
{
    for (const int coils : {-1, 9}) {
        CtfBuilder builder;
        builder.channels[3].coilCount = coils;
        expectFault(builder, sensorAt(builder, 3) + 40,
                    "channel \"MLC11-1\" has " + std::to_string(coils) + " coils, and there is room for 0 to 8");
    }
}

TEST(BrokenRes4, CoilInNoPlace)
{
    const CtfBuilder builder;
    const std::size_t dewar = sensorAt(builder, 3) + 48 + 80;
    const std::size_t head = dewar + 640;
    for (const std::size_t at : {dewar, dewar + 16, dewar + 32, dewar + 72, head, head + 48})
        for (const double number : {notANumber, -infinite, 1e5})
            expectFault(withNumber(builder, at, number), at,
                        "the place of a coil of channel \"MLC11-1\" is no place within 100 m");
}

TEST(BrokenRes4, PlacesOfChannelsWithoutSensorDoNotCount)
{
    CtfBuilder builder;
    builder.channels[6].coils = builder.channels[3].coils;
    builder.channels[6].coils[0].dewar[0] = notANumber;
    EXPECT_NO_THROW(parseRes4(builder.res4(), "small.res4"));
}

TEST(BrokenRes4, NegativeNumberOfCoefficientRecords)
{
    CtfBuilder builder;
    builder.coefficientCount = -1;
    expectFault(builder, coefficientsAt(builder), "the number of coefficient records is -1");
}

TEST(BrokenRes4, MoreCoefficientRecordsThanThereAre)
{
    CtfBuilder builder;
    builder.coefficientCount = 32767;
    expectFault(builder, builder.res4().size(), "the file is cut, it ends before the end of the coefficient records");
}

TEST(BrokenRes4, MoreCoefficientsThanARecordHas)
{
    for (const int count : {-1, 51}) {
        CtfBuilder builder;
        builder.coefficients[1].count = count;
        expectFault(builder, coefficientsAt(builder) + 2 + 1992 + 40,
                    "coefficient record 2 of 3 has " + std::to_string(count) +
                        " coefficients, and there is room for 0 to 50");
    }
}

TEST(BrokenRes4, CoefficientOfAReferenceThatIsNotThere)
{
    CtfBuilder builder;
    builder.coefficients[2].weights[0].first = "G12-1";
    expectFault(builder, coefficientsAt(builder) + 2 + static_cast<std::size_t>(2 * 1992) + 42,
                "a coefficient of \"MLC11-1\" names the reference \"G12-1\", which is not among the channels");
}

TEST(BrokenRes4, SecondReferenceThatIsNotThere)
{
    CtfBuilder builder;
    builder.coefficients[1].weights[1].first = "";
    expectFault(builder, coefficientsAt(builder) + 2 + 1992 + 42 + 31,
                "a coefficient of \"MLC12-1\" names the reference \"\", which is not among the channels");
}

TEST(BrokenRes4, CoefficientThatIsNoNumber)
{
    CtfBuilder builder;
    builder.coefficients[0].weights[1].second = notANumber;
    expectFault(builder, coefficientsAt(builder) + 2 + 42 + 1550 + 8, "a coefficient is not a finite number");
}

// Small enough to try all of it.
CtfBuilder tiny()
{
    CtfBuilder builder;
    builder.channels = {builder.channels[1], builder.channels[3]};
    builder.coefficients = {{"MLC11-1", "G1BR", {{"BG1-1", 0.25}}}};
    return builder;
}

TEST(BrokenRes4, EveryPrefixIsRefusedAsCut)
{
    const std::vector<std::byte> bytes = tiny().res4();
    ASSERT_NO_THROW(parseRes4(bytes, "small.res4"));
    forEachPrefix(bytes, [](std::span<const std::byte> prefix) {
        try {
            parseRes4(prefix, "small.res4");
            FAIL() << "read all the same";
        } catch (const CtfError& error) {
            EXPECT_EQ(error.offset(), prefix.size());
            EXPECT_THAT(error.what(), StartsWith("small.res4: the file is cut, it ends before the end of "));
        }
    });
}

TEST(BrokenRes4, EveryBitFlipIsReadOrRefused)
{
    constexpr std::size_t allBits = 1;
    std::size_t read = 0;
    std::size_t refused = 0;
    const auto load = [&](std::span<const std::byte> bytes) {
        try {
            const Res4 res4 = parseRes4(bytes, "small.res4");
            ++read;
            EXPECT_GE(res4.samples, 1);
            EXPECT_TRUE(res4.sampleRate > 0.0);
            for (const Channel& channel : res4.channels)
                EXPECT_TRUE(std::isfinite(channel.unitsPerInteger()) && channel.unitsPerInteger() != 0.0);
            for (const Coefficients& record : res4.coefficients)
                for (const Weight& weight : record.weights)
                    EXPECT_LT(static_cast<std::size_t>(weight.channel), res4.channels.size());
        } catch (const CtfError& error) {
            ++refused;
            EXPECT_THAT(error.what(), HasSubstr(" (byte "));
        }
    };
    forEachBitFlip(tiny().res4(), load, allBits);
    EXPECT_GT(read, 0U);
    EXPECT_GT(refused, 0U);
}

} // namespace
} // namespace megset::ctf::Res4_broken_test
