#pragma once
// Big-endian numbers and texts out of a file in memory, with a check of every bound.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace megset::ctf {

/// Reads at offsets, which its caller keeps. Whatever lies outside the bytes is a CtfError: the file is cut.
class BigEndianReader
{
public:
    BigEndianReader(std::span<const std::byte> bytes, std::filesystem::path file);

    std::size_t size() const { return m_bytes.size(); }

    /// The bytes of something that `what` names, for the sentence of the error.
    std::span<const std::byte> bytes(std::size_t at, std::size_t count, std::string_view what) const;
    std::int16_t i16(std::size_t at, std::string_view what) const;
    std::int32_t i32(std::size_t at, std::string_view what) const;
    std::uint32_t u32(std::size_t at, std::string_view what) const;
    /// Any bits, infinite and not-a-number ones too.
    double f64(std::size_t at, std::string_view what) const;
    /// A number that is finite; another is an error.
    double finite(std::size_t at, std::string_view what) const;
    /// The text up to its first zero, at most `count` bytes. It lives as long as the bytes do.
    std::string_view text(std::size_t at, std::size_t count, std::string_view what) const;

    [[noreturn]] void fail(std::size_t at, const std::string& fault) const;

private:
    std::span<const std::byte> m_bytes;
    std::filesystem::path m_file;
};

} // namespace megset::ctf
