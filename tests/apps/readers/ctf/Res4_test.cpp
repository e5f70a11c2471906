#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/Res4.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::Res4_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Res4 parse(std::span<const std::byte> bytes)
{
    return parseRes4(bytes, "small.res4");
}

Res4 parse(const CtfBuilder& builder)
{
    return parse(builder.res4());
}

TEST(Res4, HasTheGeneralResources)
{
    const Res4 res4 = parse(CtfBuilder());
    EXPECT_EQ(res4.version, 42);
    EXPECT_EQ(res4.application, "an application");
    EXPECT_EQ(res4.dataOrigin, "an origin");
    EXPECT_EQ(res4.dataDescription, "what was recorded");
    EXPECT_EQ(res4.time, "09:36");
    EXPECT_EQ(res4.date, "29-Apr-2013");
    EXPECT_EQ(res4.runName, "a run");
    EXPECT_EQ(res4.runTitle, "a title");
    EXPECT_EQ(res4.instruments, "instruments");
    EXPECT_EQ(res4.collectDescriptor, "a collection");
    EXPECT_EQ(res4.subjectId, "s01");
    EXPECT_EQ(res4.operatorName, "an operator");
    EXPECT_EQ(res4.sensorFile, "a.sens");
    EXPECT_EQ(res4.runDescription, "A small recording");
    EXPECT_EQ(res4.samples, 4);
    EXPECT_EQ(res4.sampleRate, 600.0);
    EXPECT_EQ(res4.trials, 2);
    EXPECT_EQ(res4.preTriggerPts, 1);
    EXPECT_EQ(res4.averages, 0);
    EXPECT_EQ(res4.primaryTrigger, 0x101);
    EXPECT_EQ(res4.triggerPolarity, 0x102);
    EXPECT_EQ(res4.triggerMode, 2);
    EXPECT_THAT(res4.warnings, IsEmpty());
}

TEST(Res4, ReadsTheOlderVersionAlike)
{
    CtfBuilder builder;
    Res4 newer = parse(builder);
    builder.tag = "MEG41RS";
    const Res4 older = parse(builder);
    EXPECT_EQ(older.version, 41);
    newer.version = 41;
    EXPECT_EQ(older, newer);
}

TEST(Res4, HasTheFiltersWithTheirParameters)
{
    const Res4 res4 = parse(CtfBuilder());
    EXPECT_THAT(res4.filters, ElementsAre(Filter{300.0, 1, 1, {}}, Filter{50.0, 1, 3, {1.5, 2.5}}));
}

TEST(Res4, TakesARecordingWithoutFiltersCoefficientsAndDescription)
{
    CtfBuilder builder;
    builder.description.clear();
    builder.filters.clear();
    builder.coefficients.clear();
    const Res4 res4 = parse(builder);
    EXPECT_THAT(res4.filters, IsEmpty());
    EXPECT_THAT(res4.coefficients, IsEmpty());
    EXPECT_EQ(res4.channels.size(), 7U);
}

TEST(Res4, HasTheChannelsWithTheirSensors)
{
    const Res4 res4 = parse(CtfBuilder());
    ASSERT_EQ(res4.channels.size(), 7U);
    const Channel& channel = res4.channels[3];
    EXPECT_EQ(channel.name, "MLC11-1");
    EXPECT_EQ(channel.sensorType, 5);
    EXPECT_EQ(channel.runNumber, 3);
    EXPECT_EQ(channel.properGain, 4e9);
    EXPECT_EQ(channel.qGain, 1e6);
    EXPECT_EQ(channel.ioGain, 1.0);
    EXPECT_EQ(channel.ioOffset, 0.5);
    EXPECT_EQ(channel.stimulusPolarity, 7);
    ASSERT_EQ(channel.coils.size(), 2U);
    EXPECT_EQ(channel.coils[0].dewar, (CoilPlace{{3.9, 5.5, -11.2}, {-0.25, -0.32, -0.91}}));
    EXPECT_EQ(channel.coils[1].head, (CoilPlace{{8.3, 2.2, 20.7}, {0.28, 0.08, 0.96}}));
    EXPECT_EQ(channel.coils[1].turns, 2);
    EXPECT_EQ(channel.coils[1].area, 2.5);
}

TEST(Res4, KeepsTheGradientOrderOfEachChannel)
{
    CtfBuilder builder;
    builder.channels[3].order = 3;
    builder.channels[4].order = 1;
    const Res4 res4 = parse(builder);
    EXPECT_EQ(res4.channels[2].gradientOrder, 0);
    EXPECT_EQ(res4.channels[3].gradientOrder, 3);
    EXPECT_EQ(res4.channels[4].gradientOrder, 1);
}

TEST(Res4, TellsTheKindsOfChannelsByTheirSensorType)
{
    const auto kind = [](int type) {
        Channel channel;
        channel.sensorType = type;
        return channel.kind();
    };
    for (const int type : {0, 1, 2, 3})
        EXPECT_EQ(kind(type), Kind::reference) << type;
    for (const int type : {4, 5, 6, 7})
        EXPECT_EQ(kind(type), Kind::meg) << type;
    for (const int type : {8, 9, 21})
        EXPECT_EQ(kind(type), Kind::eeg) << type;
    for (const int type : {11, 19, 20})
        EXPECT_EQ(kind(type), Kind::stimulus) << type;
    for (const int type : {10, 12, 13, 14, 17, 18, 22, 28, 29, 36})
        EXPECT_EQ(kind(type), Kind::other) << type;
}

TEST(Res4, ScalesIntoFemtoteslaMicrovoltsOrTheChannelsUnit)
{
    const Res4 res4 = parse(CtfBuilder());
    EXPECT_DOUBLE_EQ(res4.channels[0].unitsPerInteger(), 1.0);
    EXPECT_DOUBLE_EQ(res4.channels[1].unitsPerInteger(), -10.0);
    EXPECT_DOUBLE_EQ(res4.channels[3].unitsPerInteger(), 0.25);
    EXPECT_DOUBLE_EQ(res4.channels[4].unitsPerInteger(), -0.1); // the IO gain of 2 counts
    EXPECT_DOUBLE_EQ(res4.channels[5].unitsPerInteger(), 5e-4); // an electrode's does not
    EXPECT_DOUBLE_EQ(res4.channels[6].unitsPerInteger(), 1e-8);
}

TEST(Res4, CountsAGainOfZeroAsOneAndTellsOfIt)
{
    CtfBuilder builder;
    builder.channels[3].properGain = 0.0;
    const Res4 res4 = parse(builder);
    EXPECT_FALSE(res4.channels[3].hasGain());
    EXPECT_TRUE(res4.channels[4].hasGain());
    EXPECT_DOUBLE_EQ(res4.channels[3].unitsPerInteger(), 1e9);
}

TEST(Res4, ResolvesTheReferencesOfTheCoefficients)
{
    const Res4 res4 = parse(CtfBuilder());
    EXPECT_THAT(res4.coefficients, ElementsAre(Coefficients{3, 0x47314252, {{1, 0.25}, {2, -0.5}}},
                                               Coefficients{4, 0x47314252, {{1, 0.125}, {2, 2.0}}},
                                               Coefficients{3, 0x47334252, {{2, 0.75}}}));
}

TEST(Res4, PassesOverCoefficientsOfSensorsThatAreNotThere)
{
    CtfBuilder builder;
    builder.coefficients[1].sensor = "MLC13-1";
    const Res4 res4 = parse(builder);
    EXPECT_EQ(res4.coefficients.size(), 2U);
    EXPECT_THAT(res4.warnings, ElementsAre(HasSubstr("1 of 3 records are passed over")));
}

TEST(Res4, ExchangesDateAndTimeThatStandTheOtherWayRound)
{
    CtfBuilder builder;
    builder.time = "29/04/2013";
    builder.date = "09:36";
    const Res4 res4 = parse(builder);
    EXPECT_EQ(res4.time, "09:36");
    EXPECT_EQ(res4.date, "29/04/2013");
}

TEST(Res4, CutsANameAtItsFirstZero)
{
    CtfBuilder builder;
    builder.channels[6].name = std::string("UADC\0junk", 9);
    EXPECT_EQ(parse(builder).channels[6].name, "UADC");
}

TEST(Res4, ReadsRecordingsOf64To306Channels)
{
    for (const int sensors : {64, 151, 275, 306}) {
        CtfBuilder builder;
        for (int i = 0; i < sensors; ++i) {
            ChannelText channel = builder.channels[3];
            channel.name = "M" + std::to_string(i) + "-1";
            builder.channels.push_back(channel);
            builder.coefficients.push_back({channel.name, "G2BR", {{"BG1-1", 0.5}}});
        }
        const Res4 res4 = parse(builder);
        EXPECT_EQ(res4.channels.size(), 7U + static_cast<std::size_t>(sensors));
        EXPECT_EQ(res4.coefficients.size(), 3U + static_cast<std::size_t>(sensors));
    }
}

} // namespace
} // namespace megset::ctf::Res4_test
