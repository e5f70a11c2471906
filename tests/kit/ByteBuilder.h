#pragma once
// Records written byte by byte, without an archive, to say what a file must look like.

#include "megset/platform/CString.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// Appends fields in the encoding of the files: little-endian, without padding.
///
///     const auto file = ByteBuilder().wide("MEGCHANNELZK").i32(20200801).f64(1.5).bytes();
class ByteBuilder
{
public:
    /// The steps of a string's length. A length may stand in a wider step than it needs; only readers meet that.
    enum class Length
    {
        byBits8,
        byBits16,
        byBits32,
        byBits64,
        shortest
    };

    ByteBuilder& i8(std::int8_t value) { return number(static_cast<std::uint8_t>(value), 1); }
    ByteBuilder& u8(std::uint8_t value) { return number(value, 1); }
    ByteBuilder& i16(std::int16_t value) { return number(static_cast<std::uint16_t>(value), 2); }
    ByteBuilder& u16(std::uint16_t value) { return number(value, 2); }
    ByteBuilder& i32(std::int32_t value) { return number(static_cast<std::uint32_t>(value), 4); }
    ByteBuilder& u32(std::uint32_t value) { return number(value, 4); }
    ByteBuilder& i64(std::int64_t value) { return number(static_cast<std::uint64_t>(value), 8); }
    ByteBuilder& u64(std::uint64_t value) { return number(value, 8); }
    ByteBuilder& f32(float value);
    ByteBuilder& f64(double value);

    /// A wide string, as the files of today have it: marker, length in code units, code units.
    ByteBuilder& wide(const CString& text, Length length = Length::shortest);
    /// A narrow string, as old files have it: length in bytes, bytes.
    ByteBuilder& narrow(std::string_view text, Length length = Length::shortest);
    /// The three bytes that begin a wide string, and a length alone.
    ByteBuilder& wideMarker() { return u8(0xFF).u16(0xFFFE); }
    ByteBuilder& length(std::uint64_t value, Length length = Length::shortest);

    ByteBuilder& raw(std::initializer_list<unsigned> bytes);
    ByteBuilder& raw(std::span<const std::byte> bytes);
    ByteBuilder& zeros(std::size_t count) { return raw(std::vector<std::byte>(count)); }
    /// A block: the numbers one after another, with nothing in front.
    ByteBuilder& doubles(std::span<const double> values);
    ByteBuilder& doubles(std::initializer_list<double> values)
    {
        return doubles(std::span(values.begin(), values.size()));
    }
    ByteBuilder& append(const ByteBuilder& other) { return raw(other.m_bytes); }

    const std::vector<std::byte>& bytes() const { return m_bytes; }
    std::size_t size() const { return m_bytes.size(); }

private:
    ByteBuilder& number(std::uint64_t value, int count);

    std::vector<std::byte> m_bytes;
};

/// Whether two files are equal; the failure shows both as hex lines around the first difference.
///
///     EXPECT_TRUE(sameBytes(file.content(), expected.bytes()));
::testing::AssertionResult sameBytes(std::span<const std::byte> actual, std::span<const std::byte> expected);
inline ::testing::AssertionResult sameBytes(std::span<const std::byte> actual, const ByteBuilder& expected)
{
    return sameBytes(actual, expected.bytes());
}

} // namespace megset
