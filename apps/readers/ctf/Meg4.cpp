#include "apps/readers/ctf/Meg4.h"
#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/format.h"

#include <array>
#include <bit>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace megset::ctf {

namespace {

std::uint32_t swapBytes(std::uint32_t value)
{
    return (value << 24U) | ((value & 0xFF00U) << 8U) | ((value >> 8U) & 0xFF00U) | (value >> 24U);
}

void fromBigEndian(std::span<std::int32_t> block)
{
    if constexpr (std::endian::native == std::endian::little)
        for (std::int32_t& value : block)
            value = static_cast<std::int32_t>(swapBytes(static_cast<std::uint32_t>(value)));
}

std::string partName(const std::string& name, int part)
{
    return part == 0 ? name + ".meg4" : name + "." + std::to_string(part) + "_meg4";
}

bool isTag(std::string_view tag)
{
    return tag == format::meg4Tag41 || tag == format::meg4Tag42;
}

} // namespace

Meg4::Meg4(const std::filesystem::path& folder, const std::string& name, const Counts& counts) : m_counts(counts)
{
    const std::filesystem::path first = folder / partName(name, 0);
    if (!std::filesystem::is_regular_file(first))
        throw CtfError(folder, "this is no CTF dataset, it has no file " + first.filename().string());
    openPart(first);
    for (int part = 1;; ++part) {
        const std::filesystem::path file = folder / partName(name, part);
        if (!std::filesystem::is_regular_file(file))
            break;
        openPart(file);
    }
    countTrials();
}

std::size_t Meg4::trialSize() const
{
    return static_cast<std::size_t>(m_counts.channels) * static_cast<std::size_t>(m_counts.samples);
}

std::uint64_t Meg4::trialBytes() const
{
    return std::uint64_t{trialSize()} * sizeof(std::int32_t);
}

void Meg4::openPart(const std::filesystem::path& file)
{
    Part part;
    part.file = file;
    std::error_code error;
    part.size = std::filesystem::file_size(file, error);
    part.stream.open(file, std::ios::binary);
    if (error || !part.stream)
        throw CtfError(file, "the file can't be read");
    std::array<char, format::tagSize> tag{};
    part.stream.read(tag.data(), tag.size());
    if (!part.stream || !isTag(std::string_view(tag.data(), tag.size()).substr(0, tag.size() - 1)))
        throw CtfError(file, 0, "these are no CTF samples, the file does not begin with MEG41CP or MEG42CP");
    m_parts.push_back(std::move(part));
}

void Meg4::countTrials()
{
    if (hasOtherChannels())
        failForChannels();
    for (Part& part : m_parts) {
        const std::uint64_t whole = (part.size - format::tagSize) / trialBytes();
        if (whole > static_cast<std::uint64_t>(std::numeric_limits<int>::max() - m_trials))
            throw CtfError(part.file, "the file holds more trials than can be counted");
        part.firstTrial = m_trials;
        part.trials = static_cast<int>(whole);
        m_trials += part.trials;
        if ((part.size - format::tagSize) % trialBytes() != 0)
            warnOfCut(part);
    }
    if (m_trials == 0)
        throw CtfError(m_parts.front().file, m_parts.front().size,
                       "the file ends inside its first trial, which takes " + std::to_string(trialBytes()) + " bytes");
    if (m_trials != m_counts.trials)
        m_warnings.push_back("The .meg4 files hold " + std::to_string(m_trials) +
                             " whole trials where the .res4 file counts " + std::to_string(m_counts.trials) + ": " +
                             (m_trials < m_counts.trials ? "the others are missing." : "all of them are taken."));
}

// More bytes than counted, and no whole trials: the trials must be made otherwise than was counted.
bool Meg4::hasOtherChannels() const
{
    std::uint64_t bytes = 0;
    for (const Part& part : m_parts)
        bytes += part.size - format::tagSize;
    return bytes / trialBytes() >= static_cast<std::uint64_t>(m_counts.trials) && bytes % trialBytes() != 0;
}

void Meg4::failForChannels() const
{
    std::uint64_t bytes = 0;
    for (const Part& part : m_parts)
        bytes += part.size - format::tagSize;
    const std::uint64_t perChannel = static_cast<std::uint64_t>(m_counts.trials) *
                                     static_cast<std::uint64_t>(m_counts.samples) * sizeof(std::int32_t);
    std::string fault = "the channel counts disagree, the .res4 file counts " + std::to_string(m_counts.channels);
    if (bytes % perChannel == 0)
        fault += " channels and the samples are of " + std::to_string(bytes / perChannel);
    else
        fault += " channels and the samples make no whole trials of so many";
    throw CtfError(m_parts.front().file, m_parts.front().size, fault);
}

void Meg4::warnOfCut(const Part& part)
{
    m_warnings.push_back(part.file.string() + ": the file is cut inside trial " +
                         std::to_string(part.firstTrial + part.trials + 1) + " of " + std::to_string(m_counts.trials) +
                         ", which is left out (byte " + std::to_string(part.size) + ").");
}

void Meg4::readTrial(int trial, std::span<std::int32_t> block)
{
    if (block.size() != trialSize())
        throw std::invalid_argument("a block of another size than a trial");
    for (Part& part : m_parts) {
        if (trial < part.firstTrial || trial >= part.firstTrial + part.trials)
            continue;
        const std::uint64_t at = format::tagSize + static_cast<std::uint64_t>(trial - part.firstTrial) * trialBytes();
        part.stream.clear();
        part.stream.seekg(static_cast<std::streamoff>(at));
        part.stream.read(reinterpret_cast<char*>(block.data()), static_cast<std::streamsize>(trialBytes()));
        if (!part.stream)
            throw CtfError(part.file, at, "trial " + std::to_string(trial + 1) + " can't be read");
        fromBigEndian(block);
        return;
    }
    throw CtfError(m_parts.front().file, "there is no trial " + std::to_string(trial + 1));
}

} // namespace megset::ctf
