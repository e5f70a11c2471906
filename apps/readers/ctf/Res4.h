#pragma once
// The .res4 file of a CTF recording: how it was recorded, its channels and sensors, and the coefficients of noise
// reduction. Plain data, in the units of the file (cm, V, Hz).

#include "apps/readers/ctf/format.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace megset::ctf {

using Vector = std::array<double, 3>; ///< x, y, z

/// A filter that was at work while recording.
struct Filter
{
    double frequency = 0.0; ///< Hz
    std::int32_t filterClass = 0;
    std::int32_t type = 0; ///< format::filterLowPass and its like
    std::vector<double> parameters;

    bool operator==(const Filter&) const = default;
};

/// Where a coil is in one frame: cm, and the direction as recorded.
struct CoilPlace
{
    Vector position{};
    Vector direction{};

    /// Whether the place was recorded. A coil that was not localised has zeros.
    bool isKnown() const { return direction != Vector{}; }
    bool operator==(const CoilPlace&) const = default;
};

struct Coil
{
    CoilPlace dewar; ///< in an electrode's record: the place in the head
    CoilPlace head;
    int turns = 0;
    double area = 0.0; ///< cm^2

    bool operator==(const Coil&) const = default;
};

/// What a channel records.
enum class Kind
{
    reference, ///< field, by a sensor that is far from the head
    meg,       ///< field at the head
    eeg,
    stimulus,
    other
};

/// One channel with its sensor record.
struct Channel
{
    std::string name;
    int sensorType = 0; ///< a format::SensorType, or another
    int runNumber = 0;
    std::int32_t coilShape = 0; ///< 0 round, 1 square
    double properGain = 0.0;
    double qGain = 0.0;
    double ioGain = 0.0;
    double ioOffset = 0.0;
    int gradientOrder = 0; ///< 0 to 3 for a channel of field
    std::int32_t stimulusPolarity = 0;
    std::vector<Coil> coils; ///< of references, sensors and electrodes; empty for the rest

    Kind kind() const;
    bool isField() const { return kind() == Kind::reference || kind() == Kind::meg; }
    /// Whether a gain was recorded. Bad channels have been marked by a gain of 0.
    bool hasGain() const;
    /// What one recorded integer stands for: femtotesla for a sensor of field, microvolts for an electrode, else the
    /// channel's own unit (volts, seconds, a code). A gain of 0 counts as 1. The input stage's gain counts for field
    /// alone: for electrodes, where it is within a percent of 1, other readers leave it out, and so does this one.
    double unitsPerInteger() const;

    bool operator==(const Channel&) const = default;
};

/// The share of one reference in a synthetic gradiometer. The channel is an index into Res4::channels.
struct Weight
{
    int channel = 0;
    double value = 0.0;

    bool operator==(const Weight&) const = default;
};

/// The coefficients of one sensor for one type of synthetic gradiometer.
struct Coefficients
{
    int channel = 0;
    std::uint32_t type = 0; ///< four characters such as "G3BR", the first one in the highest byte
    std::vector<Weight> weights;

    bool operator==(const Coefficients&) const = default;
};

/// A .res4 file. Texts are the bytes of the file.
struct Res4
{
    int version = 42; ///< 41 or 42
    std::string application;
    std::string dataOrigin;
    std::string dataDescription;
    std::string time;
    std::string date;
    std::string runName;
    std::string runTitle;
    std::string instruments;
    std::string collectDescriptor;
    std::string subjectId;
    std::string operatorName;
    std::string sensorFile;
    std::string runDescription;
    int averages = 0;               ///< 0 or 1 for a recording that is not averaged
    std::int32_t samples = 0;       ///< per channel and trial, at least 1
    double sampleRate = 0.0;        ///< Hz, above 0
    int trials = 0;                 ///< as counted here; the .meg4 files may hold others
    std::int32_t preTriggerPts = 0; ///< samples before the trigger; negative for a trial that begins after it
    std::int32_t primaryTrigger = 0;
    std::int32_t triggerPolarity = 0;
    int triggerMode = 0;
    std::vector<Filter> filters;
    std::vector<Channel> channels; ///< at least 1
    std::vector<Coefficients> coefficients;
    std::vector<std::string> warnings; ///< sentences about what was passed over

    bool operator==(const Res4&) const = default;
};

/// Reads a .res4 file. `file` is its name for messages. CtfError when it can't be read as a whole. What it takes of
/// memory is bounded by the size of the file.
Res4 parseRes4(std::span<const std::byte> bytes, const std::filesystem::path& file);

/// The bytes of a file; CtfError when it can't be read.
std::vector<std::byte> readBytes(const std::filesystem::path& file);

} // namespace megset::ctf
