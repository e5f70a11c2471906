#include "apps/readers/ctf/Res4.h"
#include "apps/readers/ctf/BigEndianReader.h"
#include "apps/readers/ctf/CtfError.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string_view>
#include <unordered_map>

namespace megset::ctf {

namespace {

// Beyond these a number can't be meant.
constexpr double maxSampleRate = 1e7; // Hz
constexpr double maxPlace = 1e4;      // cm

std::string inQuotes(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

std::string numbered(std::string_view what, std::size_t index, std::size_t count)
{
    return std::string(what) + " " + std::to_string(index + 1) + " of " + std::to_string(count);
}

class Res4Parser
{
public:
    Res4Parser(std::span<const std::byte> bytes, const std::filesystem::path& file) : m_reader(bytes, file) {}

    Res4 parse()
    {
        readTag();
        readTexts();
        readCounts();
        std::size_t at = readDescription();
        at = readFilters(at);
        at = readNames(at);
        at = readSensors(at);
        readCoefficients(at);
        return std::move(m_res4);
    }

private:
    void readTag();
    void readTexts();
    void readCounts();
    std::size_t readDescription();
    std::size_t readFilters(std::size_t at);
    std::size_t readFilter(std::size_t at, const std::string& what);
    std::size_t readNames(std::size_t at);
    std::size_t readSensors(std::size_t at);
    void readSensor(std::size_t at, Channel& channel) const;
    void checkGain(std::size_t at, const Channel& channel) const;
    void readCoils(std::size_t at, int count, Channel& channel) const;
    CoilPlace readPlace(std::size_t at, const std::string& what) const;
    double readPlaceNumber(std::size_t at, const std::string& what) const;
    void readCoefficients(std::size_t at);
    void readCoefficientRecord(std::size_t at, const std::string& what);
    const std::vector<int>& references(std::size_t at, std::size_t count, std::string_view sensor);

    std::string field(format::TextField where, std::string_view what) const
    {
        return std::string(m_reader.text(where.at, where.size, what));
    }
    std::int32_t positive(std::size_t at, std::int32_t value, std::string_view what) const
    {
        if (value < 1)
            m_reader.fail(at, std::string(what) + " is " + std::to_string(value));
        return value;
    }
    std::size_t count(std::size_t at, std::int32_t value, std::string_view what) const
    {
        if (value < 0)
            m_reader.fail(at, std::string(what) + " is " + std::to_string(value));
        return static_cast<std::size_t>(value);
    }

    BigEndianReader m_reader;
    Res4 m_res4;
    std::unordered_map<std::string_view, int> m_channelOf;
    // The references of the record before, as bytes and as channels: nearly all records of a type name the same.
    std::string_view m_formerNames;
    std::vector<int> m_formerChannels;
};

void Res4Parser::readTag()
{
    const std::string_view tag = m_reader.text(0, format::tagSize, "the tag");
    if (tag != format::res4Tag41 && tag != format::res4Tag42)
        m_reader.fail(0, "this is no CTF resource file, it does not begin with MEG41RS or MEG42RS");
    m_res4.version = tag == format::res4Tag41 ? 41 : 42;
}

void Res4Parser::readTexts()
{
    m_res4.application = field(format::application, "the head");
    m_res4.dataOrigin = field(format::dataOrigin, "the head");
    m_res4.dataDescription = field(format::dataDescription, "the head");
    m_res4.time = field(format::time, "the head");
    m_res4.date = field(format::date, "the head");
    // Some systems have them the other way round.
    if (m_res4.time.find('/') != std::string::npos && m_res4.date.find(':') != std::string::npos)
        std::swap(m_res4.time, m_res4.date);
    m_res4.runName = field(format::runName, "the head");
    m_res4.runTitle = field(format::runTitle, "the head");
    m_res4.instruments = field(format::instruments, "the head");
    m_res4.collectDescriptor = field(format::collectDescriptor, "the head");
    m_res4.subjectId = field(format::subjectId, "the head");
    m_res4.operatorName = field(format::operatorName, "the head");
    m_res4.sensorFile = field(format::sensorFile, "the head");
}

void Res4Parser::readCounts()
{
    m_res4.averages =
        static_cast<int>(count(format::averages, m_reader.i16(format::averages, "the head"), "the number of averages"));
    m_res4.samples = positive(format::samples, m_reader.i32(format::samples, "the head"), "the number of samples");
    positive(format::channels, m_reader.i16(format::channels, "the head"), "the number of channels");
    m_res4.sampleRate = m_reader.finite(format::sampleRate, "the sample rate");
    if (!(m_res4.sampleRate > 0.0 && m_res4.sampleRate <= maxSampleRate))
        m_reader.fail(format::sampleRate, "the sample rate is not above 0 Hz and up to 10 MHz");
    m_res4.trials = positive(format::trials, m_reader.i16(format::trials, "the head"), "the number of trials");
    m_res4.preTriggerPts = m_reader.i32(format::preTriggerPts, "the head");
    m_res4.primaryTrigger = m_reader.i32(format::primaryTrigger, "the head");
    m_res4.triggerPolarity = m_reader.i32(format::triggerPolarity, "the head");
    m_res4.triggerMode = m_reader.i16(format::triggerMode, "the head");
}

std::size_t Res4Parser::readDescription()
{
    const std::size_t size = count(format::descriptionSize, m_reader.i32(format::descriptionSize, "the head"),
                                   "the size of the run description");
    m_res4.runDescription = m_reader.text(format::description, size, "the run description");
    return format::description + size;
}

std::size_t Res4Parser::readFilters(std::size_t at)
{
    const std::size_t filters = count(at, m_reader.i16(at, "the number of filters"), "the number of filters");
    at += 2;
    for (std::size_t i = 0; i < filters; ++i)
        at = readFilter(at, numbered("filter", i, filters));
    return at;
}

std::size_t Res4Parser::readFilter(std::size_t at, const std::string& what)
{
    Filter filter;
    filter.frequency = m_reader.finite(at, "the frequency of " + what);
    filter.filterClass = m_reader.i32(at + 8, what);
    filter.type = m_reader.i32(at + 12, what);
    const std::size_t parameters = count(at + 16, m_reader.i16(at + 16, what), "the number of parameters of " + what);
    at += format::filterSize;
    m_reader.bytes(at, 8 * parameters, what);
    for (std::size_t i = 0; i < parameters; ++i)
        filter.parameters.push_back(m_reader.finite(at + 8 * i, "a parameter of " + what));
    m_res4.filters.push_back(std::move(filter));
    return at + 8 * parameters;
}

std::size_t Res4Parser::readNames(std::size_t at)
{
    const auto channels = static_cast<std::size_t>(m_reader.i16(format::channels, "the head"));
    m_reader.bytes(at, channels * format::channelNameSize, "the channel names");
    m_res4.channels.resize(channels);
    for (std::size_t i = 0; i < channels; ++i, at += format::channelNameSize) {
        const std::string_view name = m_reader.text(at, format::channelNameSize, "the channel names");
        const auto isControl = [](char unit) { return static_cast<unsigned char>(unit) < 0x20; };
        if (name.empty() || std::any_of(name.begin(), name.end(), isControl))
            m_reader.fail(at, numbered("channel", i, channels) +
                                  " has no name, the head counts other channels than the file holds");
        m_res4.channels[i].name = name;
        m_channelOf.try_emplace(name, static_cast<int>(i));
    }
    return at;
}

std::size_t Res4Parser::readSensors(std::size_t at)
{
    m_reader.bytes(at, m_res4.channels.size() * format::sensor::size, "the sensor records");
    for (Channel& channel : m_res4.channels) {
        readSensor(at, channel);
        at += format::sensor::size;
    }
    return at;
}

void Res4Parser::readSensor(std::size_t at, Channel& channel) const
{
    namespace sensor = format::sensor;
    const std::string what = "channel " + inQuotes(channel.name);
    channel.sensorType = m_reader.i16(at + sensor::type, what);
    if (channel.sensorType < 0 || channel.sensorType > format::maxSensorType)
        m_reader.fail(at, what + " has no sensor record here, the head counts other channels than the file holds");
    channel.runNumber = m_reader.i16(at + sensor::runNumber, what);
    channel.coilShape = m_reader.i32(at + sensor::coilShape, what);
    channel.properGain = m_reader.finite(at + sensor::properGain, "the proper gain of " + what);
    channel.qGain = m_reader.finite(at + sensor::qGain, "the Q gain of " + what);
    channel.ioGain = m_reader.finite(at + sensor::ioGain, "the IO gain of " + what);
    channel.ioOffset = m_reader.finite(at + sensor::ioOffset, "the IO offset of " + what);
    channel.gradientOrder = m_reader.i16(at + sensor::gradientOrder, what);
    channel.stimulusPolarity = m_reader.i32(at + sensor::stimulusPolarity, what);
    checkGain(at + sensor::properGain, channel);
    if (channel.isField() && (channel.gradientOrder < 0 || channel.gradientOrder > 3))
        m_reader.fail(at + sensor::gradientOrder, "the gradient order of " + what + " is " +
                                                      std::to_string(channel.gradientOrder) + ", not one of 0 to 3");
    const int coils = m_reader.i16(at + sensor::coils, what);
    if (coils < 0 || coils > sensor::maxCoils)
        m_reader.fail(at + sensor::coils,
                      what + " has " + std::to_string(coils) + " coils, and there is room for 0 to 8");
    if (channel.isField() || channel.kind() == Kind::eeg)
        readCoils(at, coils, channel);
}

// A gain of 0 marks a bad channel; others must give a scale that samples can have.
void Res4Parser::checkGain(std::size_t at, const Channel& channel) const
{
    const double scale = channel.unitsPerInteger();
    if (!std::isfinite(scale) || scale == 0.0)
        m_reader.fail(at, "the gains of channel " + inQuotes(channel.name) + " give no scale");
}

void Res4Parser::readCoils(std::size_t at, int count, Channel& channel) const
{
    const std::string what = "a coil of channel " + inQuotes(channel.name);
    channel.coils.resize(static_cast<std::size_t>(count));
    std::size_t dewar = at + format::sensor::dewarCoils;
    std::size_t head = at + format::sensor::headCoils;
    for (Coil& coil : channel.coils) {
        coil.dewar = readPlace(dewar, what);
        coil.head = readPlace(head, what);
        coil.turns = m_reader.i16(dewar + format::coil::turns, what);
        coil.area = readPlaceNumber(dewar + format::coil::area, what);
        dewar += format::coil::size;
        head += format::coil::size;
    }
}

CoilPlace Res4Parser::readPlace(std::size_t at, const std::string& what) const
{
    CoilPlace place;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        place.position[axis] = readPlaceNumber(at + format::coil::position + 8 * axis, what);
        place.direction[axis] = readPlaceNumber(at + format::coil::direction + 8 * axis, what);
    }
    return place;
}

double Res4Parser::readPlaceNumber(std::size_t at, const std::string& what) const
{
    const double number = m_reader.f64(at, what);
    if (!(std::abs(number) <= maxPlace)) // not-a-number included
        m_reader.fail(at, "the place of " + what + " is no place within 100 m");
    return number;
}

void Res4Parser::readCoefficients(std::size_t at)
{
    const std::string what = "the number of coefficient records";
    const std::size_t records = count(at, m_reader.i16(at, what), what);
    at += 2;
    m_reader.bytes(at, records * format::coefficients::size, "the coefficient records");
    m_res4.coefficients.reserve(records);
    std::size_t passedOver = 0;
    for (std::size_t i = 0; i < records; ++i, at += format::coefficients::size) {
        const std::size_t before = m_res4.coefficients.size();
        readCoefficientRecord(at, numbered("coefficient record", i, records));
        passedOver += before == m_res4.coefficients.size() ? 1 : 0;
    }
    if (passedOver > 0)
        m_res4.warnings.push_back("The .res4 file has coefficients of sensors that are not among the channels: " +
                                  std::to_string(passedOver) + " of " + std::to_string(records) +
                                  " records are passed over.");
}

void Res4Parser::readCoefficientRecord(std::size_t at, const std::string& what)
{
    namespace coefficients = format::coefficients;
    const std::string_view sensor = m_reader.text(at + coefficients::sensorName, format::channelNameSize, what);
    const int weights = m_reader.i16(at + coefficients::count, what);
    if (weights < 0 || weights > coefficients::maxCount)
        m_reader.fail(at + coefficients::count,
                      what + " has " + std::to_string(weights) + " coefficients, and there is room for 0 to 50");
    const auto channel = m_channelOf.find(sensor);
    if (channel == m_channelOf.end())
        return;
    Coefficients& record = m_res4.coefficients.emplace_back();
    record.channel = channel->second;
    record.type = m_reader.u32(at + coefficients::type, what);
    const auto size = static_cast<std::size_t>(weights);
    const std::vector<int>& channels = references(at + coefficients::names, size, sensor);
    record.weights.resize(size);
    for (std::size_t i = 0; i < size; ++i)
        record.weights[i] = {channels[i], m_reader.finite(at + coefficients::values + 8 * i, "a coefficient")};
}

// The channels that the references of a record are.
const std::vector<int>& Res4Parser::references(std::size_t at, std::size_t count, std::string_view sensor)
{
    constexpr std::size_t nameSize = format::coefficients::nameSize;
    const std::span<const std::byte> bytes = m_reader.bytes(at, count * nameSize, "the coefficient records");
    const std::string_view names(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (names == m_formerNames)
        return m_formerChannels;
    m_formerNames = {};
    m_formerChannels.clear();
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view name = m_reader.text(at + i * nameSize, nameSize, "the coefficient records");
        const auto found = m_channelOf.find(name);
        if (found == m_channelOf.end())
            m_reader.fail(at + i * nameSize, "a coefficient of " + inQuotes(sensor) + " names the reference " +
                                                 inQuotes(name) + ", which is not among the channels");
        m_formerChannels.push_back(found->second);
    }
    m_formerNames = names;
    return m_formerChannels;
}

} // namespace

Kind Channel::kind() const
{
    switch (sensorType) {
    case 0: // references of order 0 to 3
    case 1:
    case 2:
    case 3:
        return Kind::reference;
    case 4: // magnetometers, gradiometers of order 1 to 3
    case 5:
    case 6:
    case 7:
        return Kind::meg;
    case format::eegReference:
    case format::eeg:
    case format::eegBipolar:
        return Kind::eeg;
    case format::stimulus:
    case format::stimulusAnalog:
    case format::stimulusDigital:
        return Kind::stimulus;
    default:
        return Kind::other;
    }
}

bool Channel::hasGain() const
{
    return properGain != 0.0 && qGain != 0.0 && (!isField() || ioGain != 0.0);
}

double Channel::unitsPerInteger() const
{
    const auto given = [](double gain) { return gain != 0.0 ? gain : 1.0; };
    const double perUnit = given(properGain) * given(qGain);
    if (isField())
        return 1e15 / (perUnit * given(ioGain));
    return (kind() == Kind::eeg ? 1e6 : 1.0) / perUnit;
}

Res4 parseRes4(std::span<const std::byte> bytes, const std::filesystem::path& file)
{
    return Res4Parser(bytes, file).parse();
}

std::vector<std::byte> readBytes(const std::filesystem::path& file)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream)
        throw CtfError(file, "the file can't be read");
    std::vector<std::byte> bytes(size);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace megset::ctf
