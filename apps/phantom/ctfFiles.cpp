#include "apps/phantom/ctfFiles.h"
#include "apps/phantom/BigEndianRecord.h"
#include "apps/phantom/Sources.h"
#include "apps/readers/ctf/format.h"

#include <charconv>
#include <map>
#include <stdexcept>

namespace megset::phantom {

namespace {

namespace format = ctf::format;

constexpr double centimetresOfMetre = 100;
constexpr std::string_view runDescription = "Simulated recording: a dipole in a sphere answers stimuli.";
constexpr std::string_view datasetName = "phantom.ds";

format::SensorType sensorType(ChannelKind kind)
{
    switch (kind) {
    case ChannelKind::stimulus:
        return format::stimulus;
    case ChannelKind::referenceMagnetometer:
        return format::referenceMagnetometer;
    case ChannelKind::referenceGradiometer:
        return format::referenceGradiometer1;
    case ChannelKind::gradiometer:
        return format::gradiometer1;
    case ChannelKind::eeg:
        return format::eeg;
    }
    throw std::logic_error("a kind of channel without a sensor type");
}

void put(BigEndianRecord& record, format::TextField field, std::string_view text)
{
    record.text(field.at, field.size, text);
}

std::string head(const PhantomPlan& plan, std::size_t channels, double rate)
{
    BigEndianRecord record(format::description);
    record.text(0, format::tagSize, format::res4Tag42);
    put(record, format::application, "megset phantom");
    put(record, format::dataOrigin, "simulation");
    put(record, format::dataDescription, "Phantom");
    put(record, format::time, "12:00");
    put(record, format::date, "01-Jan-2000");
    record.i32(format::samples, plan.samples);
    record.i16(format::channels, static_cast<std::int64_t>(channels));
    record.f64(format::sampleRate, rate);
    record.f64(format::epochTime, static_cast<double>(plan.samples) * plan.trials / rate);
    record.i16(format::trials, plan.trials);
    record.i32(format::preTriggerPts, plan.preTriggerSamples);
    record.i16(format::trialsDone, plan.trials);
    record.i32(format::saveTrials, 1);
    put(record, format::runName, "phantom");
    put(record, format::runTitle, "Simulated recording");
    put(record, format::subjectId, "phantom");
    record.i32(format::descriptionSize, static_cast<std::int64_t>(runDescription.size() + 1));
    return record.bytes();
}

void putVector(BigEndianRecord& record, std::size_t at, const Vector3& vector)
{
    record.f64(at, vector.x);
    record.f64(at + 8, vector.y);
    record.f64(at + 16, vector.z);
}

void putCoil(BigEndianRecord& record, std::size_t at, const Channel& channel, const Vector3& position,
             const Vector3& direction)
{
    putVector(record, at + format::coil::position, centimetresOfMetre * position);
    putVector(record, at + format::coil::direction, direction);
    record.i16(at + format::coil::turns, channel.turns);
    record.f64(at + format::coil::area, channel.coilArea * centimetresOfMetre * centimetresOfMetre);
}

std::string sensorRecord(const Channel& channel, const HeadPlace& headPlace)
{
    BigEndianRecord record(format::sensor::size);
    record.i16(format::sensor::type, sensorType(channel.kind));
    record.f64(format::sensor::properGain, channel.properGain);
    record.f64(format::sensor::qGain, channel.qGain);
    record.f64(format::sensor::ioGain, 1);
    record.i16(format::sensor::coils, static_cast<std::int64_t>(channel.coils.size()));
    for (std::size_t i = 0; i < channel.coils.size(); ++i) {
        const Coil& coil = channel.coils[i];
        const std::size_t dewarCoil = format::sensor::dewarCoils + i * format::coil::size;
        const std::size_t headCoil = format::sensor::headCoils + i * format::coil::size;
        if (channel.isField()) {
            // With a positive gain, the field that counts as positive runs against the noted direction.
            const Vector3 noted = channel.properGain > 0 ? -coil.direction : coil.direction;
            putCoil(record, dewarCoil, channel, coil.position, noted);
            putCoil(record, headCoil, channel, headPlace.toHead(coil.position), headPlace.directionToHead(noted));
        } else {
            // An electrode stands in the frame of the head in both places.
            putCoil(record, dewarCoil, channel, coil.position, coil.direction);
            putCoil(record, headCoil, channel, coil.position, coil.direction);
        }
    }
    return record.bytes();
}

std::string coefficientRecord(const Instrument& instrument, const CoefficientTable& table, std::size_t row)
{
    const auto nameOf = [&](int index) { return instrument.channels[static_cast<std::size_t>(index)].name; };
    BigEndianRecord record(format::coefficients::size);
    record.text(format::coefficients::sensorName, format::channelNameSize, nameOf(table.gradiometers[row]));
    // Four characters without a zero.
    record.text(format::coefficients::type, table.type.size() + 1, table.type);
    record.i16(format::coefficients::count, static_cast<std::int64_t>(table.references.size()));
    for (std::size_t i = 0; i < table.references.size(); ++i) {
        record.text(format::coefficients::names + i * format::coefficients::nameSize, format::coefficients::nameSize,
                    nameOf(table.references[i]));
        record.f64(format::coefficients::values + i * sizeof(double), table.stored(instrument, row, i));
    }
    return record.bytes();
}

std::string count16(std::size_t count)
{
    BigEndianRecord record(2);
    record.i16(0, static_cast<std::int64_t>(count));
    return record.bytes();
}

/// A number with so many digits behind the point, whatever the locale.
std::string fixed(double value, int digits)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, digits);
    return {buffer, end.ptr};
}

/// The shortest text that reads back as the same number.
std::string shortest(double value)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, end.ptr};
}

std::string coilLines(std::string_view kind, std::string_view coil, std::string_view frame, const Vector3& place)
{
    std::string lines =
        std::string(kind) + ' ' + std::string(coil) + " coil position relative to " + std::string(frame) + " (cm):\n";
    lines += "\tx = " + fixed(centimetresOfMetre * place.x, 6) + '\n';
    lines += "\ty = " + fixed(centimetresOfMetre * place.y, 6) + '\n';
    lines += "\tz = " + fixed(centimetresOfMetre * place.z, 6) + '\n';
    return lines;
}

std::string classHead(std::string_view listName, std::size_t count)
{
    return "PATH OF DATASET:\n" + std::string(datasetName) + "\n\n\nNUMBER OF " + std::string(listName) + ":\n" +
           std::to_string(count) + "\n\n\n";
}

std::string classEntry(std::string_view name, std::string_view colour, std::size_t id)
{
    return "CLASSGROUPID:\n3\nNAME:\n" + std::string(name) + "\nCOMMENT:\n\nCOLOR:\n" + std::string(colour) +
           "\nEDITABLE:\nYes\nCLASSID:\n" + std::to_string(id) + "\n";
}

std::string vectorJson(const Vector3& vector)
{
    return "[" + shortest(vector.x) + ", " + shortest(vector.y) + ", " + shortest(vector.z) + "]";
}

} // namespace

std::string res4File(const Instrument& instrument, const PhantomPlan& plan, double rate,
                     const std::vector<CoefficientTable>& tables)
{
    std::string file = head(plan, instrument.channels.size(), rate);
    file += runDescription;
    file += '\0';
    file += count16(0); // filters
    for (const Channel& channel : instrument.channels) {
        BigEndianRecord name(format::channelNameSize);
        name.text(0, format::channelNameSize, channel.name);
        file += name.bytes();
    }
    for (const Channel& channel : instrument.channels)
        file += sensorRecord(channel, instrument.head);
    std::size_t records = 0;
    for (const CoefficientTable& table : tables)
        records += table.gradiometers.size();
    file += count16(records);
    for (const CoefficientTable& table : tables)
        for (std::size_t row = 0; row < table.gradiometers.size(); ++row)
            file += coefficientRecord(instrument, table, row);
    return file;
}

std::string headCoilFile(const Instrument& instrument)
{
    struct HeadCoil
    {
        std::string_view name;
        Vector3 place;    ///< in the frame of the head
        Vector3 standard; ///< in the frame of the dewar, where a well-placed head has it
    };
    const HeadCoil coils[] = {{"nasion", instrument.nasion, {0.0565685, 0.0565685, -0.27}},
                              {"left ear", instrument.leftEar, {-0.0565685, 0.0565685, -0.27}},
                              {"right ear", instrument.rightEar, {0.0565685, -0.0565685, -0.27}}};
    std::string file;
    for (const HeadCoil& coil : coils)
        file += coilLines("standard", coil.name, "dewar", coil.standard);
    for (const HeadCoil& coil : coils)
        file += coilLines("measured", coil.name, "dewar", instrument.head.toDewar(coil.place));
    for (const HeadCoil& coil : coils)
        file += coilLines("measured", coil.name, "head", coil.place);
    return file;
}

std::string classFile()
{
    return classHead("CLASSES", 1) + classEntry("BAD", "Red", 1) +
           "NUMBER OF TRIALS:\n0\nLIST OF TRIALS:\nTRIAL NUMBER\n\n\n";
}

std::string markerFile(const PhantomPlan& plan, double rate)
{
    std::map<int, std::vector<Stimulus>> stimuliOfCode;
    for (const Stimulus& stimulus : plan.stimuli)
        stimuliOfCode[stimulus.code].push_back(stimulus);
    std::string file = classHead("MARKERS", stimuliOfCode.size());
    std::size_t id = 0;
    for (const auto& [code, stimuli] : stimuliOfCode) {
        file += classEntry("stimulus " + std::to_string(code), "blue", ++id);
        file += "NUMBER OF SAMPLES:\n" + std::to_string(stimuli.size()) +
                "\nLIST OF SAMPLES:\nTRIAL NUMBER\t\tTIME FROM SYNC POINT (in seconds)\n";
        for (const Stimulus& stimulus : stimuli) {
            const double seconds = (stimulus.sample - plan.preTriggerSamples) / rate;
            file += "                  +" + std::to_string(stimulus.trial) + "\t\t\t\t     " +
                    (seconds < 0 ? "" : "+") + fixed(seconds, 9) + '\n';
        }
        file += "\n\n";
    }
    return file;
}

std::string truthFile(const Instrument& instrument, const PhantomPlan& plan, const PhantomOptions& options)
{
    const CurrentDipole dipole = evokedDipole(instrument);
    std::string file = "{\n";
    file += "  \"seed\": " + std::to_string(options.seed) + ",\n";
    file += "  \"rate\": " + shortest(options.rate) + ",\n";
    file += "  \"trials\": " + std::to_string(plan.trials) + ",\n";
    file += "  \"samplesPerTrial\": " + std::to_string(plan.samples) + ",\n";
    file += "  \"preTriggerSamples\": " + std::to_string(plan.preTriggerSamples) + ",\n";
    file += "  \"stimulusChannel\": \"" + instrument.channels.front().name + "\",\n";
    file += "  \"pulseSamples\": " + std::to_string(options.pulseSamples) + ",\n";
    file += "  \"evokedDipole\": {\"frame\": \"head\", \"positionM\": " + vectorJson(dipole.position) +
            ", \"momentAm\": " + vectorJson(dipole.moment) +
            ", \"sphereCentreM\": " + vectorJson(instrument.sphereCentre) +
            ", \"peakS\": 0.1, \"scale\": " + shortest(options.evokedScale) + "},\n";
    file += "  \"stimuli\": [";
    const char* separator = "\n";
    for (const Stimulus& stimulus : plan.stimuli) {
        file += separator;
        file += "    {\"trial\": " + std::to_string(stimulus.trial) +
                ", \"sample\": " + std::to_string(stimulus.sample) + ", \"code\": " + std::to_string(stimulus.code) +
                "}";
        separator = ",\n";
    }
    file += "\n  ]\n}\n";
    return file;
}

} // namespace megset::phantom
