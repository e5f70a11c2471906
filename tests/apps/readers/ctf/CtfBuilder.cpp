#include "tests/apps/readers/ctf/CtfBuilder.h"

#include <bit>

namespace megset::ctf {

BigEndianBuilder& BigEndianBuilder::number(std::uint64_t value, int count)
{
    for (int i = count - 1; i >= 0; --i)
        m_bytes.push_back(static_cast<std::byte>((value >> (8 * i)) & 0xFFU));
    return *this;
}

BigEndianBuilder& BigEndianBuilder::f64(double value)
{
    return number(std::bit_cast<std::uint64_t>(value), 8);
}

BigEndianBuilder& BigEndianBuilder::text(std::string_view text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        m_bytes.push_back(i < text.size() ? static_cast<std::byte>(text[i]) : std::byte{0});
    return *this;
}

BigEndianBuilder& BigEndianBuilder::zeros(std::size_t count)
{
    return text({}, count);
}

BigEndianBuilder& BigEndianBuilder::raw(std::span<const std::byte> bytes)
{
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
}

namespace {

void addCoil(BigEndianBuilder& file, const double* place, int turns, double area)
{
    for (int i = 0; i < 3; ++i)
        file.f64(place[i]);
    file.f64(0.0);
    for (int i = 3; i < 6; ++i)
        file.f64(place[i]);
    file.f64(0.0).i16(turns).zeros(6).f64(area);
}

void addSensor(BigEndianBuilder& file, const ChannelText& channel)
{
    file.i16(channel.type).i16(3).i32(0);
    file.f64(channel.properGain).f64(channel.qGain).f64(channel.ioGain).f64(0.5);
    file.i16(channel.coilCount.value_or(static_cast<int>(channel.coils.size()))).i16(channel.order).i32(7);
    for (const CoilText& coil : channel.coils)
        addCoil(file, coil.dewar, coil.turns, coil.area);
    file.zeros(80 * (8 - channel.coils.size()));
    for (const CoilText& coil : channel.coils)
        addCoil(file, coil.head, 0, 0.0);
    file.zeros(80 * (8 - channel.coils.size()));
}

void addCoefficients(BigEndianBuilder& file, const CoefficientText& record)
{
    file.text(record.sensor, 32).text(record.type, 4).zeros(4);
    file.i16(record.count.value_or(static_cast<int>(record.weights.size())));
    for (const auto& [name, value] : record.weights)
        file.text(name, 31);
    file.zeros(31 * (50 - record.weights.size()));
    for (const auto& [name, value] : record.weights)
        file.f64(value);
    file.zeros(8 * (50 - record.weights.size()));
}

} // namespace

CtfBuilder::CtfBuilder()
{
    const CoilText reference{{0, -9.5, 0, 0, -1, 0}, {-7.9, -5.8, 25.5, -0.7, 0.7, -0.1}, 1, 2.0};
    const CoilText lower{{3.9, 5.5, -11.2, -0.25, -0.32, -0.91}, {6.9, 1.8, 16.0, -0.28, -0.08, -0.96}, 2, 2.5};
    const CoilText upper{{5.2, 7.1, -6.6, 0.25, 0.32, 0.91}, {8.3, 2.2, 20.7, 0.28, 0.08, 0.96}, 2, 2.5};
    const CoilText electrode{{-9.7, 3.1, 7.4, 0, 0, 1}, {-9.7, 3.1, 7.4, 0, 0, 1}, 1, 0.2};
    channels = {
        {"STIM", 11, 1.0, 1.0, 1.0, 0},
        {"BG1-1", 0, -1e8, 1e6, 1.0, 0, {reference}},
        {"G11-1", 1, 2e8, 1e6, 1.0, 0, {reference, reference}},
        {"MLC11-1", 5, 4e9, 1e6, 1.0, 0, {lower, upper}},
        {"MLC12-1", 5, -5e9, 1e6, 2.0, 0, {lower, upper}},
        {"EEG001-1", 9, 1.0, 2e9, 1.01, 0, {electrode}},
        {"UADC001-1", 18, 1.0, 1e8, 1.0, 0},
    };
    coefficients = {
        {"MLC11-1", "G1BR", {{"BG1-1", 0.25}, {"G11-1", -0.5}}},
        {"MLC12-1", "G1BR", {{"BG1-1", 0.125}, {"G11-1", 2.0}}},
        {"MLC11-1", "G3BR", {{"G11-1", 0.75}}},
    };
    filters = {{300.0, 1, 1, {}}, {50.0, 1, 3, {1.5, 2.5}}};
}

std::vector<std::byte> CtfBuilder::res4() const
{
    BigEndianBuilder file;
    file.text(tag, 8);
    file.text("an application", 256).text("an origin", 256).text("what was recorded", 256);
    file.i16(averages).text(time, 255).text(date, 255);
    file.i32(samples).i16(channelCount.value_or(static_cast<int>(channels.size()))).zeros(2);
    file.f64(rate).f64(static_cast<double>(samples) / rate * trials);
    file.i16(trials).zeros(2).i32(preTrigger).i16(trials).i16(0).i32(1);
    file.i32(0x101).i32(0x102).zeros(4).i16(2).zeros(2); // triggers
    file.i32(0).zeros(4).i32(0).i32(0);
    file.text("a run", 32).text("a title", 256).text("instruments", 32).text("a collection", 32);
    file.text("s01", 32).text("an operator", 32).text("a.sens", 56).zeros(4);
    file.i32(descriptionSize.value_or(static_cast<std::int64_t>(description.size()))).zeros(4);
    file.text(description, description.size());
    file.i16(filterCount.value_or(static_cast<int>(filters.size())));
    for (const FilterText& filter : filters) {
        file.f64(filter.frequency).i32(filter.filterClass).i32(filter.type);
        file.i16(static_cast<int>(filter.parameters.size()));
        for (const double parameter : filter.parameters)
            file.f64(parameter);
    }
    for (const ChannelText& channel : channels)
        file.text(channel.name, 32);
    for (const ChannelText& channel : channels)
        addSensor(file, channel);
    file.i16(coefficientCount.value_or(static_cast<int>(coefficients.size())));
    for (const CoefficientText& record : coefficients)
        addCoefficients(file, record);
    return file.bytes();
}

std::vector<std::byte> CtfBuilder::meg4(int first, int last, std::string_view megTag) const
{
    BigEndianBuilder file;
    file.text(megTag, 8);
    for (int trial = first; trial < last; ++trial)
        for (int channel = 0; channel < static_cast<int>(channels.size()); ++channel)
            for (int sample = 0; sample < samples; ++sample)
                file.i32(sampleAt(trial, channel, sample));
    return file.bytes();
}

std::filesystem::path CtfBuilder::write(const TemporaryFolder& folder) const
{
    folder.makeFolder("small.ds");
    folder.write("small.ds\\small.res4", res4());
    folder.write("small.ds\\small.meg4", meg4(0, trials));
    return folder.native("small.ds");
}

std::size_t filtersAt(const CtfBuilder& builder)
{
    return 1844 + builder.description.size();
}

std::size_t namesAt(const CtfBuilder& builder)
{
    std::size_t at = filtersAt(builder) + 2;
    for (const FilterText& filter : builder.filters)
        at += 18 + 8 * filter.parameters.size();
    return at;
}

std::size_t sensorAt(const CtfBuilder& builder, std::size_t channel)
{
    return namesAt(builder) + 32 * builder.channels.size() + 1328 * channel;
}

std::size_t coefficientsAt(const CtfBuilder& builder)
{
    return sensorAt(builder, builder.channels.size());
}

} // namespace megset::ctf
