#include "tests/kit/ByteBuilder.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <string>

namespace megset {
namespace {

ByteBuilder::Length shortestFor(std::uint64_t value)
{
    if (value < 0xFF)
        return ByteBuilder::Length::byBits8;
    if (value < 0xFFFE)
        return ByteBuilder::Length::byBits16;
    return value < 0xFFFFFFFF ? ByteBuilder::Length::byBits32 : ByteBuilder::Length::byBits64;
}

// Sixteen bytes as hex, with those that are not there as blanks.
std::string hexLine(std::span<const std::byte> bytes, std::size_t from)
{
    std::string line;
    for (std::size_t i = from; i < from + 16; ++i) {
        char text[4] = "   ";
        if (i < bytes.size())
            std::snprintf(text, sizeof text, "%02x ", std::to_integer<unsigned>(bytes[i]));
        line += text;
    }
    return line;
}

} // namespace

ByteBuilder& ByteBuilder::number(std::uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
        m_bytes.push_back(static_cast<std::byte>((value >> (8 * i)) & 0xFFU));
    return *this;
}

ByteBuilder& ByteBuilder::f32(float value)
{
    return u32(std::bit_cast<std::uint32_t>(value));
}

ByteBuilder& ByteBuilder::f64(double value)
{
    return u64(std::bit_cast<std::uint64_t>(value));
}

ByteBuilder& ByteBuilder::length(std::uint64_t value, Length length)
{
    switch (length == Length::shortest ? shortestFor(value) : length) {
    case Length::byBits8:
        return number(value, 1);
    case Length::byBits16:
        return u8(0xFF).number(value, 2);
    case Length::byBits32:
        return u8(0xFF).u16(0xFFFF).number(value, 4);
    default:
        return u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).number(value, 8);
    }
}

ByteBuilder& ByteBuilder::wide(const CString& text, Length length)
{
    wideMarker().length(text.view().size(), length);
    for (const char16_t unit : text.view())
        u16(unit);
    return *this;
}

ByteBuilder& ByteBuilder::narrow(std::string_view text, Length length)
{
    return this->length(text.size(), length).raw(std::as_bytes(std::span(text)));
}

ByteBuilder& ByteBuilder::raw(std::initializer_list<unsigned> bytes)
{
    for (const unsigned byte : bytes)
        u8(static_cast<std::uint8_t>(byte));
    return *this;
}

ByteBuilder& ByteBuilder::raw(std::span<const std::byte> bytes)
{
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
}

ByteBuilder& ByteBuilder::doubles(std::span<const double> values)
{
    for (const double value : values)
        f64(value);
    return *this;
}

::testing::AssertionResult sameBytes(std::span<const std::byte> actual, std::span<const std::byte> expected)
{
    const auto [a, e] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    if (a == actual.end() && e == expected.end())
        return ::testing::AssertionSuccess();
    const auto at = static_cast<std::size_t>(a - actual.begin());
    auto result = ::testing::AssertionFailure();
    result << actual.size() << " bytes where " << expected.size() << " are expected; first difference at " << at;
    const std::size_t firstLine = at < 32 ? 0 : at / 16 * 16 - 32;
    for (std::size_t line = firstLine; line < firstLine + 96; line += 16)
        result << "\n" << line << "\t" << hexLine(actual, line) << "| expected " << hexLine(expected, line);
    return result;
}

} // namespace megset
