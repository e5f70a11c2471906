#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace megset::phantom {

/// A record of fixed size whose fields are put at their offsets, numbers big-endian; all else is zero.
class BigEndianRecord
{
public:
    explicit BigEndianRecord(std::size_t size) : m_bytes(size, '\0') {}

    void i16(std::size_t at, std::int64_t value) { number(at, static_cast<std::uint64_t>(value), 2); }
    void i32(std::size_t at, std::int64_t value) { number(at, static_cast<std::uint64_t>(value), 4); }
    void f64(std::size_t at, double value);
    /// A text in a field of `size` bytes, cut so that a zero ends it.
    void text(std::size_t at, std::size_t size, std::string_view value);

    const std::string& bytes() const { return m_bytes; }

private:
    void number(std::size_t at, std::uint64_t value, int size);

    std::string m_bytes;
};

} // namespace megset::phantom
