#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace megset::ctf {

/// A recording that can't be read: one sentence that names the file and, where a place in it is at fault, the offset.
///
///     NAME.res4: the number of channels is -3 (byte 1292)
class CtfError : public std::runtime_error
{
public:
    CtfError(std::filesystem::path file, const std::string& fault)
        : std::runtime_error(file.string() + ": " + fault), m_file(std::move(file))
    {
    }
    CtfError(std::filesystem::path file, std::uint64_t offset, const std::string& fault)
        : std::runtime_error(file.string() + ": " + fault + " (byte " + std::to_string(offset) + ")"),
          m_file(std::move(file)), m_offset(offset)
    {
    }

    const std::filesystem::path& file() const { return m_file; }
    std::optional<std::uint64_t> offset() const { return m_offset; }

private:
    std::filesystem::path m_file;
    std::optional<std::uint64_t> m_offset;
};

} // namespace megset::ctf
