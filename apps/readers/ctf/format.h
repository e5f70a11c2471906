#pragma once
// The files of a CTF recording, a folder NAME.ds: what stands where. Numbers are big-endian, texts end at their first
// zero, lengths are in cm. Readers and writers share these constants.
//
//   NAME.res4        the head below, run description, filters, channel names, sensor records, coefficient records
//   NAME.meg4        a tag, then the trials: for each the channels one behind another, 32-bit integers
//   NAME.1_meg4 ...  continuations of NAME.meg4, each with its tag and whole trials, once a file would pass 2 GB
//   NAME.hc          places of the head coils, text

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace megset::ctf::format {

/// A field of the head: its offset, and for a text its size.
struct TextField
{
    std::size_t at;
    std::size_t size;
};

inline constexpr std::size_t tagSize = 8; ///< with the closing zero
inline constexpr std::string_view res4Tag41 = "MEG41RS";
inline constexpr std::string_view res4Tag42 = "MEG42RS";
inline constexpr std::string_view meg4Tag41 = "MEG41CP";
inline constexpr std::string_view meg4Tag42 = "MEG42CP";

inline constexpr TextField application{8, 256};
inline constexpr TextField dataOrigin{264, 256};
inline constexpr TextField dataDescription{520, 256};
inline constexpr std::size_t averages = 776; ///< i16
inline constexpr TextField time{778, 255};
inline constexpr TextField date{1033, 255};
inline constexpr std::size_t samples = 1288;       ///< i32, per channel and trial
inline constexpr std::size_t channels = 1292;      ///< i16
inline constexpr std::size_t sampleRate = 1296;    ///< f64, Hz
inline constexpr std::size_t epochTime = 1304;     ///< f64, s of all trials together
inline constexpr std::size_t trials = 1312;        ///< i16
inline constexpr std::size_t preTriggerPts = 1316; ///< i32, may be negative
inline constexpr std::size_t trialsDone = 1320;    ///< i16
inline constexpr std::size_t trialsDisplay = 1322; ///< i16
inline constexpr std::size_t saveTrials = 1324;    ///< i32, flag
/// i32 each in a MEG41RS file; the sensor records' stimulus polarity has taken their place in MEG42RS files.
inline constexpr std::size_t primaryTrigger = 1328;
inline constexpr std::size_t triggerPolarity = 1332;
inline constexpr std::size_t triggerMode = 1340; ///< i16
inline constexpr TextField runName{1360, 32};
inline constexpr TextField runTitle{1392, 256};
inline constexpr TextField instruments{1648, 32};
inline constexpr TextField collectDescriptor{1680, 32};
inline constexpr TextField subjectId{1712, 32};
inline constexpr TextField operatorName{1744, 32};
inline constexpr TextField sensorFile{1776, 56};
inline constexpr std::size_t descriptionSize = 1836; ///< i32, bytes of the run description
inline constexpr std::size_t description = 1844;     ///< where it begins, and the head ends

/// A filter is f64 frequency, i32 class, i32 type, i16 number of parameters, and these as f64; an i16 counts them.
inline constexpr std::size_t filterSize = 18;
inline constexpr std::int32_t filterLowPass = 1;
inline constexpr std::int32_t filterHighPass = 2;
inline constexpr std::int32_t filterNotch = 3;

inline constexpr std::size_t channelNameSize = 32;

/// A sensor record, offsets in it. Eight coils in the frame of the dewar and eight in that of the head end it.
namespace sensor {
inline constexpr std::size_t type = 0;              ///< i16, a SensorType
inline constexpr std::size_t runNumber = 2;         ///< i16
inline constexpr std::size_t coilShape = 4;         ///< i32: 0 round, 1 square
inline constexpr std::size_t properGain = 8;        ///< f64, V/T for a sensor of field
inline constexpr std::size_t qGain = 16;            ///< f64, integers per V
inline constexpr std::size_t ioGain = 24;           ///< f64
inline constexpr std::size_t ioOffset = 32;         ///< f64
inline constexpr std::size_t coils = 40;            ///< i16
inline constexpr std::size_t gradientOrder = 42;    ///< i16
inline constexpr std::size_t stimulusPolarity = 44; ///< i32, MEG42RS
inline constexpr std::size_t dewarCoils = 48;
inline constexpr int maxCoils = 8;
} // namespace sensor

/// A coil: four f64 of position and four of direction (the fourth unused), i16 turns, six bytes unused, f64 area.
namespace coil {
inline constexpr std::size_t position = 0;
inline constexpr std::size_t direction = 32;
inline constexpr std::size_t turns = 64;
inline constexpr std::size_t area = 72; ///< cm^2
inline constexpr std::size_t size = 80;
} // namespace coil

namespace sensor {
inline constexpr std::size_t headCoils = dewarCoils + maxCoils * coil::size;
inline constexpr std::size_t size = headCoils + maxCoils * coil::size;
} // namespace sensor

/// A coefficient record, offsets in it; an i16 counts the records.
namespace coefficients {
inline constexpr std::size_t sensorName = 0; ///< 32 bytes
inline constexpr std::size_t type = 32;      ///< four characters such as G3BR; four bytes unused follow
inline constexpr std::size_t count = 40;     ///< i16
inline constexpr std::size_t names = 42;     ///< of the references
inline constexpr std::size_t nameSize = 31;
inline constexpr int maxCount = 50;
inline constexpr std::size_t values = names + maxCount * nameSize; ///< f64
inline constexpr std::size_t size = values + maxCount * 8;
} // namespace coefficients

static_assert(sensor::size == 1328 && coefficients::size == 1992);

/// Types of sensors, as far as their kind has a name here; there are others.
enum SensorType : std::int16_t
{
    referenceMagnetometer = 0,
    referenceGradiometer1 = 1,
    referenceGradiometer3 = 3,
    magnetometer = 4,
    gradiometer1 = 5,
    gradiometer3 = 7,
    eegReference = 8,
    eeg = 9,
    adcCurrent = 10,
    stimulus = 11,
    headCoil = 13,
    dac = 14,
    systemClock = 17,
    adcVoltage = 18,
    stimulusAnalog = 19,
    stimulusDigital = 20,
    eegBipolar = 21
};
/// A number beyond it is no sensor type.
inline constexpr int maxSensorType = 255;

} // namespace megset::ctf::format
