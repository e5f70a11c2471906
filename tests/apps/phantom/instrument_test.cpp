#include "apps/phantom/Instrument.h"
#include "apps/phantom/helmet.h"

#include <cmath>
#include <map>
#include <set>

#include <gtest/gtest.h>

namespace megset::phantom::instrument_test {

namespace {

const Channel& channelNamed(const Instrument& instrument, const std::string& name)
{
    for (const Channel& channel : instrument.channels)
        if (channel.name == name)
            return channel;
    throw std::out_of_range("no channel " + name);
}

TEST(Helmet, Has275PlacesWithTheNamesOfTheirRegions)
{
    const auto places = helmetPlaces();
    EXPECT_EQ(places.size(), 275U);
    std::map<std::string, int> regions;
    std::set<std::string> names;
    for (const HelmetPlace& place : places) {
        ++regions[place.name.substr(0, 3)];
        names.insert(place.name);
        EXPECT_NEAR(length(place.direction), 1, 1e-14);
    }
    EXPECT_EQ(names.size(), 275U);
    const std::map<std::string, int> expected = {{"MLC", 24}, {"MLF", 33}, {"MLO", 19}, {"MLP", 22}, {"MLT", 34},
                                                 {"MRC", 24}, {"MRF", 33}, {"MRO", 19}, {"MRP", 22}, {"MRT", 34},
                                                 {"MZC", 4},  {"MZF", 3},  {"MZO", 3},  {"MZP", 1}};
    EXPECT_EQ(regions, expected);
}

TEST(Helmet, IsTheSameOnBothSides)
{
    std::map<std::string, Vector3> places;
    for (const HelmetPlace& place : helmetPlaces())
        places[place.name] = place.direction;
    for (const auto& [name, direction] : places) {
        if (name[1] == 'Z') {
            EXPECT_EQ(direction.y, 0);
            continue;
        }
        EXPECT_EQ(direction.y > 0, name[1] == 'L') << name;
        std::string other = name;
        other[1] = name[1] == 'L' ? 'R' : 'L';
        EXPECT_EQ(places.at(other), (Vector3{direction.x, -direction.y, direction.z}));
    }
}

TEST(Instrument, HasItsKindsOfChannelsInTheOrderOfTheFile)
{
    const Instrument instrument = makeInstrument(275);
    EXPECT_EQ(instrument.channels.size(), 337U);
    EXPECT_EQ(instrument.ofKind(ChannelKind::stimulus), std::vector<int>{0});
    EXPECT_EQ(instrument.ofKind(ChannelKind::referenceMagnetometer).size(), 9U);
    EXPECT_EQ(instrument.ofKind(ChannelKind::referenceGradiometer).size(), 20U);
    EXPECT_EQ(instrument.ofKind(ChannelKind::gradiometer).front(), 30);
    EXPECT_EQ(instrument.ofKind(ChannelKind::gradiometer).size(), 275U);
    EXPECT_EQ(instrument.ofKind(ChannelKind::eeg).size(), 32U);
    EXPECT_EQ(instrument.channels.back().name, "EEG032");
    std::set<std::string> names;
    for (const Channel& channel : instrument.channels)
        names.insert(channel.name);
    EXPECT_EQ(names.size(), 337U);
}

TEST(Instrument, GradiometersAreAxialWithFiveCentimetres)
{
    const Instrument instrument = makeInstrument(275);
    for (const int index : instrument.ofKind(ChannelKind::gradiometer)) {
        const Channel& channel = instrument.channels[static_cast<std::size_t>(index)];
        ASSERT_EQ(channel.coils.size(), 2U);
        const Vector3 baseline = channel.coils[1].position - channel.coils[0].position;
        EXPECT_NEAR(length(baseline), 0.05, 1e-12);
        EXPECT_NEAR(dot(unit(baseline), channel.coils[0].direction), 1, 1e-12);
        EXPECT_EQ(channel.coils[1].direction, -channel.coils[0].direction);
        EXPECT_NEAR(channel.balance, 1, 0.015);
    }
}

TEST(Instrument, SensorsKeepADistanceFromOneAnotherAndFromTheHead)
{
    const Instrument instrument = makeInstrument(275);
    std::vector<Vector3> places;
    for (const int index : instrument.ofKind(ChannelKind::gradiometer))
        places.push_back(instrument.channels[static_cast<std::size_t>(index)].coils[0].position);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_GT(length(instrument.head.toHead(places[i]) - instrument.sphereCentre), instrument.sphereRadius + 0.02);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_GT(length(places[i] - places[j]), 0.01) << i << ' ' << j;
    }
}

TEST(Instrument, ReferencesMeasureWhatTheirNamesTell)
{
    const Instrument instrument = makeInstrument(1);
    EXPECT_EQ(channelNamed(instrument, "BG2-0001").coils[0].direction, (Vector3{0, 1, 0}));
    const Channel& q13 = channelNamed(instrument, "Q13-0001");
    EXPECT_NEAR(length(q13.coils[0].position - q13.coils[1].position - Vector3{0.08, 0, 0}), 0, 1e-15);
    EXPECT_EQ(q13.coils[0].direction, (Vector3{0, 0, 1}));
    EXPECT_EQ(q13.coils[1].direction, -q13.coils[0].direction);
    EXPECT_THROW(channelNamed(instrument, "BQ1-0001"), std::out_of_range);
}

TEST(Instrument, GainsHaveBothSigns)
{
    const Instrument instrument = makeInstrument(275);
    int negative = 0;
    for (const int index : instrument.ofKind(ChannelKind::gradiometer)) {
        const double gain = instrument.channels[static_cast<std::size_t>(index)].properGain;
        EXPECT_NEAR(std::abs(gain), 2.9e9, 0.15e9);
        negative += gain < 0 ? 1 : 0;
    }
    EXPECT_GT(negative, 100);
    EXPECT_LT(negative, 175);
}

TEST(Instrument, FewerGradiometersAreSpreadOverTheHelmetAndElseTheSame)
{
    const Instrument whole = makeInstrument(275);
    for (const int count : {1, 2, 7, 64, 274}) {
        const Instrument part = makeInstrument(count);
        EXPECT_EQ(part.channels.size(), static_cast<std::size_t>(62 + count));
        for (const Channel& channel : part.channels) {
            const Channel& same = channelNamed(whole, channel.name);
            EXPECT_EQ(channel.properGain, same.properGain);
            EXPECT_EQ(channel.balance, same.balance);
            for (std::size_t i = 0; i < channel.coils.size(); ++i)
                EXPECT_EQ(channel.coils[i].position, same.coils[i].position);
        }
    }
    int left = 0;
    const Instrument half = makeInstrument(100);
    for (const int index : half.ofKind(ChannelKind::gradiometer))
        left += half.channels[static_cast<std::size_t>(index)].name[1] == 'L' ? 1 : 0;
    EXPECT_NEAR(left, 48, 2);
}

TEST(Instrument, ElectrodesAreOnTheScalp)
{
    const Instrument instrument = makeInstrument(1);
    for (const int index : instrument.ofKind(ChannelKind::eeg)) {
        const Vector3& place = instrument.channels[static_cast<std::size_t>(index)].coils[0].position;
        EXPECT_NEAR(length(place - instrument.sphereCentre), instrument.sphereRadius, 1e-15);
        EXPECT_GT(place.z, instrument.sphereCentre.z);
    }
}

TEST(HeadPlace, GoesForthAndBack)
{
    const HeadPlace head = makeInstrument(1).head;
    EXPECT_NEAR(length(head.x), 1, 1e-15);
    EXPECT_NEAR(dot(head.x, head.y), 0, 1e-15);
    EXPECT_NEAR(length(cross(head.x, head.y) - head.z), 0, 1e-15);
    const Vector3 point{0.01, 0.02, 0.03};
    EXPECT_LT(length(head.toHead(head.toDewar(point)) - point), 1e-16);
    EXPECT_LT(length(head.directionToHead(head.directionToDewar(point)) - point), 1e-16);
    // The nose is in the direction (1, 1), the head far below the references.
    EXPECT_GT(head.x.x, 0.69);
    EXPECT_GT(head.x.y, 0.69);
    EXPECT_LT(head.origin.z, -0.25);
}

} // namespace

} // namespace megset::phantom::instrument_test
