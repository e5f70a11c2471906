#include "apps/phantom/BigEndianRecord.h"

#include <bit>

namespace megset::phantom {

void BigEndianRecord::number(std::size_t at, std::uint64_t value, int size)
{
    for (int i = size - 1; i >= 0; --i) {
        m_bytes.at(at + static_cast<std::size_t>(i)) = static_cast<char>(value & 0xFF);
        value >>= 8;
    }
}

void BigEndianRecord::f64(std::size_t at, double value)
{
    number(at, std::bit_cast<std::uint64_t>(value), 8);
}

void BigEndianRecord::text(std::size_t at, std::size_t size, std::string_view value)
{
    m_bytes.replace(at, value.substr(0, size - 1).size(), value.substr(0, size - 1));
}

} // namespace megset::phantom
