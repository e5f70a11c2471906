#pragma once

#include "apps/phantom/Vector3.h"

#include <string>
#include <vector>

namespace megset::phantom {

/// A rotation and a shift, from the frame of the head to that of the dewar. Both in m.
///
/// Head: origin between the ears, x to the nasion, y to the left ear, z up. Dewar: origin amid the references, z up,
/// the nasion of a well-placed head in the direction (1, 1).
struct HeadPlace
{
    Vector3 x; ///< axes of the head, seen from the dewar
    Vector3 y;
    Vector3 z;
    Vector3 origin;

    Vector3 directionToDewar(const Vector3& head) const { return head.x * x + head.y * y + head.z * z; }
    Vector3 toDewar(const Vector3& head) const { return origin + directionToDewar(head); }
    Vector3 directionToHead(const Vector3& dewar) const { return {dot(dewar, x), dot(dewar, y), dot(dewar, z)}; }
    Vector3 toHead(const Vector3& dewar) const { return directionToHead(dewar - origin); }
};

enum class ChannelKind
{
    stimulus,
    referenceMagnetometer,
    referenceGradiometer,
    gradiometer,
    eeg
};

/// A coil in the frame of the dewar: place in m, and the direction of the field that counts as positive.
struct Coil
{
    Vector3 position;
    Vector3 direction;
};

struct Channel
{
    std::string name;
    ChannelKind kind = ChannelKind::stimulus;
    /// None for a stimulus line. An electrode is a coil at its place in the frame of the head, with the field upwards.
    std::vector<Coil> coils;
    /// How much the second coil catches against the first: 1 but for what its maker could not help.
    double balance = 1;
    double properGain = 1; ///< of a sensor of field: negative where the coils are connected as they are noted
    double qGain = 1;
    int turns = 1;
    double coilArea = 0; ///< m^2
    double noise = 0;    ///< T or V in the square root of a Hz

    /// Integers of the file to one unit (T, V or code).
    double gain() const { return properGain * qGain; }
    bool isField() const { return kind != ChannelKind::stimulus && kind != ChannelKind::eeg; }
};

/// A system of 275 axial gradiometers of 5 cm on a helmet, 29 references, 32 electrodes and a stimulus line, and the
/// head in it. The same for every seed.
struct Instrument
{
    HeadPlace head;
    Vector3 nasion; ///< coils of the head, in its own frame
    Vector3 leftEar;
    Vector3 rightEar;
    Vector3 sphereCentre; ///< of the conducting sphere, in the frame of the head
    double sphereRadius = 0;
    std::vector<Channel> channels; ///< in the order of the file

    /// Indices of the channels of a kind.
    std::vector<int> ofKind(ChannelKind kind) const;
};

/// The system with `gradiometers` of its 275, spread evenly over the helmet.
Instrument makeInstrument(int gradiometers);

} // namespace megset::phantom
