#pragma once
// CTF files written field by field, with the numbers of the format's description instead of the reader's constants.

#include "tests/kit/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace megset::ctf {

/// Appends fields in the encoding of CTF files: big-endian, texts filled up with zeros.
class BigEndianBuilder
{
public:
    BigEndianBuilder& i16(int value) { return number(static_cast<std::uint64_t>(value), 2); }
    BigEndianBuilder& i32(std::int64_t value) { return number(static_cast<std::uint64_t>(value), 4); }
    BigEndianBuilder& f64(double value);
    BigEndianBuilder& text(std::string_view text, std::size_t size);
    BigEndianBuilder& zeros(std::size_t count);
    BigEndianBuilder& raw(std::span<const std::byte> bytes);

    const std::vector<std::byte>& bytes() const { return m_bytes; }
    std::size_t size() const { return m_bytes.size(); }

private:
    BigEndianBuilder& number(std::uint64_t value, int count);

    std::vector<std::byte> m_bytes;
};

/// A coil of a channel: position and direction in the dewar, position and direction in the head.
struct CoilText
{
    double dewar[6] = {};
    double head[6] = {};
    int turns = 1;
    double area = 1.0;
};

struct ChannelText
{
    std::string name;
    int type = 5;
    double properGain = 1.0;
    double qGain = 1.0;
    double ioGain = 1.0;
    int order = 0;
    std::vector<CoilText> coils = {};
    std::optional<int> coilCount = {}; ///< written instead of the number of coils
};

struct CoefficientText
{
    std::string sensor;
    std::string type;
    std::vector<std::pair<std::string, double>> weights;
    std::optional<int> count = {}; ///< written instead of the number of weights
};

struct FilterText
{
    double frequency;
    int filterClass;
    int type;
    std::vector<double> parameters;
};

/// A small recording: a stimulus line, two references, two gradiometers, an electrode, a voltage.
struct CtfBuilder
{
    CtfBuilder();

    std::vector<std::byte> res4() const;
    /// Trials `first` up to `last`; the sample of a channel at an index is sampleAt().
    std::vector<std::byte> meg4(int first, int last, std::string_view tag = "MEG41CP") const;
    static std::int32_t sampleAt(int trial, int channel, int sample)
    {
        return 1000000 * (trial + 1) + 1000 * channel - 10 * sample;
    }
    /// Writes small.res4 and small.meg4 into the folder small.ds, and gives its path.
    std::filesystem::path write(const TemporaryFolder& folder) const;

    std::string tag = "MEG42RS";
    int averages = 0;
    std::string time = "09:36";
    std::string date = "29-Apr-2013";
    std::int64_t samples = 4;
    std::optional<int> channelCount; ///< written instead of the number of channels
    double rate = 600.0;
    int trials = 2;
    int preTrigger = 1;
    std::string description = "A small recording";
    std::optional<std::int64_t> descriptionSize; ///< written instead of the description's size
    std::vector<FilterText> filters;
    std::optional<int> filterCount;
    std::vector<ChannelText> channels;
    std::vector<CoefficientText> coefficients;
    std::optional<int> coefficientCount;
};

/// Where a thing of CtfBuilder begins in its .res4 file.
std::size_t filtersAt(const CtfBuilder& builder);
std::size_t namesAt(const CtfBuilder& builder);
std::size_t sensorAt(const CtfBuilder& builder, std::size_t channel);
std::size_t coefficientsAt(const CtfBuilder& builder);

} // namespace megset::ctf
