#include "apps/phantom/Instrument.h"
#include "apps/phantom/helmet.h"
#include "apps/phantom/portable.h"

#include <string_view>

namespace megset::phantom {

namespace {

constexpr std::uint64_t makersSeed = 1987;
// Behind the name of each sensor of field stands the number of the system that it belongs to.
constexpr std::string_view systemNumber = "-0001";

constexpr double helmetRadius = 0.12; ///< of the inner coils
constexpr double baseline = 0.05;
constexpr Vector3 helmetCentre{0, 0, -0.22};
constexpr double referenceDistance = 0.095; ///< of the blocks of references from the axis
constexpr double referenceBaseline = 0.08;

constexpr double fieldQGain = 1048576;    // 2^20
constexpr double eegQGain = 2147483648.0; // 2^31
constexpr double imbalance = 0.015;       ///< largest, of a gradiometer's second coil

// The head looks down by 4 degrees and leans to its left by 2; its sphere is within the helmet, not quite in the
// middle.
HeadPlace placeOfHead(const Vector3& sphereCentre)
{
    const double cosine = cosineOfTurns(0.125);
    const Vector3 front{cosine, cosine, 0};
    const Vector3 left{-cosine, cosine, 0};
    const Vector3 up{0, 0, 1};
    constexpr double down = 4 / 360.0;
    constexpr double lean = 2 / 360.0;
    HeadPlace place;
    place.x = cosineOfTurns(down) * front - sineOfTurns(down) * up;
    const Vector3 upright = sineOfTurns(down) * front + cosineOfTurns(down) * up;
    place.y = cosineOfTurns(lean) * left - sineOfTurns(lean) * upright;
    place.z = cross(place.x, place.y);
    const Vector3 centre = helmetCentre + Vector3{0.002, -0.003, -0.004};
    place.origin = centre - place.directionToDewar(sphereCentre);
    return place;
}

Vector3 fromHelmet(const Vector3& direction)
{
    const double cosine = cosineOfTurns(0.125);
    return {cosine * (direction.x - direction.y), cosine * (direction.x + direction.y), direction.z};
}

/// The sign of a gain tells how a sensor is connected; makers leave it to chance.
double properGain(double size, RandomStream& maker)
{
    const double sign = maker.uniform() < 0.5 ? -1 : 1;
    return sign * size * (1 + 0.1 * (maker.uniform() - 0.5));
}

Channel stimulusLine()
{
    Channel channel;
    channel.name = "UPPT001";
    return channel;
}

Channel magnetometer(const std::string& name, const Coil& coil, RandomStream& maker)
{
    Channel channel;
    channel.name = name + std::string(systemNumber);
    channel.kind = ChannelKind::referenceMagnetometer;
    channel.coils = {coil};
    channel.properGain = properGain(1.2e8, maker);
    channel.qGain = fieldQGain;
    channel.coilArea = 2e-4;
    channel.noise = 10e-15;
    return channel;
}

/// Two coils against each other.
Channel twoCoils(ChannelKind kind, const std::string& name, const Coil& first, const Vector3& second)
{
    Channel channel;
    channel.name = name + std::string(systemNumber);
    channel.kind = kind;
    channel.coils = {first, {second, -first.direction}};
    channel.qGain = fieldQGain;
    return channel;
}

Channel referenceGradiometer(const std::string& name, const Vector3& block, const Vector3& along,
                             const Vector3& direction, RandomStream& maker)
{
    const Vector3 half = (referenceBaseline / 2) * along;
    Channel channel = twoCoils(ChannelKind::referenceGradiometer, name, {block + half, direction}, block - half);
    channel.properGain = properGain(6.4e9, maker);
    channel.coilArea = 9e-4;
    channel.noise = 3e-15;
    return channel;
}

Channel axialGradiometer(const HelmetPlace& place, RandomStream& maker)
{
    const Vector3 outward = fromHelmet(place.direction);
    Channel channel = twoCoils(ChannelKind::gradiometer, place.name, {helmetCentre + helmetRadius * outward, outward},
                               helmetCentre + (helmetRadius + baseline) * outward);
    channel.properGain = properGain(2.9e9, maker);
    channel.balance = 1 + imbalance * (2 * maker.uniform() - 1);
    channel.turns = 2;
    channel.coilArea = 2.5e-4;
    channel.noise = 5e-15;
    return channel;
}

Channel electrode(int number, const Vector3& position)
{
    Channel channel;
    channel.name = (number < 10 ? "EEG00" : "EEG0") + std::to_string(number);
    channel.kind = ChannelKind::eeg;
    channel.coils = {{position, {0, 0, 1}}};
    channel.qGain = eegQGain;
    channel.coilArea = 0.2e-4;
    channel.noise = 20e-9;
    return channel;
}

// Four blocks around the axis. Three of them measure the field, all of them its gradients: 1, 2, 3 are the axes of the
// dewar, the first number of a gradiometer being that of its baseline, the last that of the field.
void addReferences(std::vector<Channel>& channels, RandomStream& maker)
{
    struct Block
    {
        char letter;
        Vector3 position;
    };
    constexpr Block blocks[] = {{'G', {0, -referenceDistance, 0}},
                                {'P', {-referenceDistance, 0, 0}},
                                {'Q', {referenceDistance, 0, 0}},
                                {'R', {0, referenceDistance, 0}}};
    constexpr Vector3 axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (const Block& block : blocks)
        for (int axis = 0; block.letter != 'Q' && axis < 3; ++axis)
            channels.push_back(magnetometer(std::string("B") + block.letter + std::to_string(axis + 1),
                                            {block.position, axes[axis]}, maker));
    for (const Block& block : blocks)
        for (const char* pair : {"11", "12", "13", "22", "23"})
            channels.push_back(referenceGradiometer(std::string(1, block.letter) + pair, block.position,
                                                    axes[pair[0] - '1'], axes[pair[1] - '1'], maker));
}

void addGradiometers(std::vector<Channel>& channels, int count, RandomStream& maker)
{
    const std::vector<HelmetPlace> places = helmetPlaces();
    const int all = static_cast<int>(places.size());
    for (int i = 0, taken = 0; i < all; ++i) {
        // Every sensor is made, so that those which are left are the same as in the whole system.
        Channel channel = axialGradiometer(places[static_cast<std::size_t>(i)], maker);
        if ((i + 1) * count / all > taken) {
            channels.push_back(std::move(channel));
            ++taken;
        }
    }
}

// One electrode on the crown and three rings around it.
void addElectrodes(std::vector<Channel>& channels, const Vector3& centre, double radius)
{
    struct Ring
    {
        double polarDegrees;
        int electrodes;
    };
    constexpr Ring rings[] = {{0, 1}, {30, 6}, {60, 10}, {88, 15}};
    int number = 0;
    for (const Ring& ring : rings)
        for (int i = 0; i < ring.electrodes; ++i) {
            const double polar = ring.polarDegrees / 360;
            const double azimuth = static_cast<double>(i) / ring.electrodes;
            const double sine = sineOfTurns(polar);
            const Vector3 direction{sine * cosineOfTurns(azimuth), sine * sineOfTurns(azimuth), cosineOfTurns(polar)};
            channels.push_back(electrode(++number, centre + radius * direction));
        }
}

} // namespace

std::vector<int> Instrument::ofKind(ChannelKind kind) const
{
    std::vector<int> indices;
    for (std::size_t i = 0; i < channels.size(); ++i)
        if (channels[i].kind == kind)
            indices.push_back(static_cast<int>(i));
    return indices;
}

Instrument makeInstrument(int gradiometers)
{
    Instrument instrument;
    instrument.nasion = {0.1, 0, 0};
    instrument.leftEar = {0, 0.075, 0};
    instrument.rightEar = {0, -0.075, 0};
    instrument.sphereCentre = {0, 0, 0.05};
    instrument.sphereRadius = 0.09;
    instrument.head = placeOfHead(instrument.sphereCentre);
    RandomStream maker(makersSeed, 0);
    instrument.channels.push_back(stimulusLine());
    addReferences(instrument.channels, maker);
    addGradiometers(instrument.channels, gradiometers, maker);
    addElectrodes(instrument.channels, instrument.sphereCentre, instrument.sphereRadius);
    return instrument;
}

} // namespace megset::phantom
