#include "apps/phantom/SampleWriter.h"
#include "apps/readers/ctf/format.h"
#include "megset/platform/stopRequest.h"

#include <fstream>
#include <stdexcept>

namespace megset::phantom {

namespace {

namespace format = ctf::format;

constexpr std::size_t sampleSize = 4;

std::int64_t trialSize(const PhantomPlan& plan, std::size_t channels)
{
    return static_cast<std::int64_t>(sampleSize * channels) * plan.samples;
}

std::int64_t trialsOfFile(const PhantomPlan& plan, std::size_t channels, std::int64_t maxFileBytes)
{
    return (maxFileBytes - static_cast<std::int64_t>(format::tagSize)) / trialSize(plan, channels);
}

void writeBigEndian(std::ofstream& file, std::span<const std::int32_t> samples)
{
    std::string bytes(samples.size() * sampleSize, '\0');
    char* at = bytes.data();
    for (const std::int32_t sample : samples) {
        const auto bits = static_cast<std::uint32_t>(sample);
        *at++ = static_cast<char>(bits >> 24);
        *at++ = static_cast<char>(bits >> 16);
        *at++ = static_cast<char>(bits >> 8);
        *at++ = static_cast<char>(bits);
    }
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string fileTag()
{
    std::string tag(format::meg4Tag41);
    tag.resize(format::tagSize);
    return tag;
}

/// A new file with its tag.
std::ofstream sampleFile(const std::filesystem::path& path)
{
    std::ofstream file(path, std::ios::binary);
    const std::string tag = fileTag();
    file.write(tag.data(), static_cast<std::streamsize>(tag.size()));
    return file;
}

} // namespace

void checkTrialFits(const PhantomPlan& plan, std::size_t channels, std::int64_t maxFileBytes)
{
    if (trialsOfFile(plan, channels, maxFileBytes) < 1)
        throw std::invalid_argument("a trial of " + std::to_string(plan.samples) + " samples and " +
                                    std::to_string(channels) + " channels is larger than a file may be, " +
                                    std::to_string(maxFileBytes) + " bytes");
}

SampleWriter::SampleWriter(std::filesystem::path stem, const Instrument& instrument, const PhantomOptions& options)
    : m_stem(std::move(stem)), m_channels(instrument.channels.size()), m_maxFileBytes(options.maxFileBytes),
      m_simulator(instrument, options)
{
}

int SampleWriter::writeTrials(const PhantomPlan& plan)
{
    const std::int64_t perFile = trialsOfFile(plan, m_channels, m_maxFileBytes);
    int files = 0;
    std::filesystem::path path;
    std::ofstream file;
    for (int trial = 0; trial < plan.trials; ++trial) {
        endWhenAsked();
        if (trial % perFile == 0) {
            path = m_stem;
            path += files == 0 ? ".meg4" : "." + std::to_string(files) + "_meg4";
            file = sampleFile(path);
            ++files;
        }
        m_simulator.simulate(plan, trial, [&file](std::size_t, std::span<const std::int32_t> samples) {
            writeBigEndian(file, samples);
        });
        if (!file.flush())
            throw std::runtime_error(path.string() + " can't be written");
    }
    return files;
}

} // namespace megset::phantom
