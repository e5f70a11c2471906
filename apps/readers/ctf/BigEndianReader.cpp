#include "apps/readers/ctf/BigEndianReader.h"
#include "apps/readers/ctf/CtfError.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace megset::ctf {

namespace {

template <class Number>
Number bigEndian(std::span<const std::byte> bytes)
{
    Number number = 0;
    for (const std::byte byte : bytes)
        number = static_cast<Number>((number << 8U) | std::to_integer<Number>(byte));
    return number;
}

} // namespace

BigEndianReader::BigEndianReader(std::span<const std::byte> bytes, std::filesystem::path file)
    : m_bytes(bytes), m_file(std::move(file))
{
}

void BigEndianReader::fail(std::size_t at, const std::string& fault) const
{
    throw CtfError(m_file, at, fault);
}

std::span<const std::byte> BigEndianReader::bytes(std::size_t at, std::size_t count, std::string_view what) const
{
    if (at > m_bytes.size() || count > m_bytes.size() - at)
        fail(m_bytes.size(), "the file is cut, it ends before the end of " + std::string(what));
    return m_bytes.subspan(at, count);
}

std::int16_t BigEndianReader::i16(std::size_t at, std::string_view what) const
{
    return static_cast<std::int16_t>(bigEndian<std::uint16_t>(bytes(at, 2, what)));
}

std::int32_t BigEndianReader::i32(std::size_t at, std::string_view what) const
{
    return static_cast<std::int32_t>(u32(at, what));
}

std::uint32_t BigEndianReader::u32(std::size_t at, std::string_view what) const
{
    return bigEndian<std::uint32_t>(bytes(at, 4, what));
}

double BigEndianReader::f64(std::size_t at, std::string_view what) const
{
    return std::bit_cast<double>(bigEndian<std::uint64_t>(bytes(at, 8, what)));
}

double BigEndianReader::finite(std::size_t at, std::string_view what) const
{
    const double number = f64(at, what);
    if (!std::isfinite(number))
        fail(at, std::string(what) + " is not a finite number");
    return number;
}

std::string_view BigEndianReader::text(std::size_t at, std::size_t count, std::string_view what) const
{
    const std::span<const std::byte> field = bytes(at, count, what);
    const auto end = std::find(field.begin(), field.end(), std::byte{0});
    return {reinterpret_cast<const char*>(field.data()), static_cast<std::size_t>(end - field.begin())};
}

} // namespace megset::ctf
