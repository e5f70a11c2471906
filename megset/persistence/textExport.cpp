#include "megset/persistence/textExport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace megset {
namespace {

constexpr std::size_t unitsPerPiece = std::size_t{64} << 10U;
constexpr int decimals = 6;
// Sign, digits before the point, point, decimals.
constexpr std::size_t longestNumber = 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + decimals;

} // namespace

void writeText(CFile& file, const CString& text)
{
    LongTextWriter writer(file);
    writer.put(text.view());
    writer.finish();
}

LongTextWriter::LongTextWriter(CFile& file) : m_file(file), m_units(unitsPerPiece) {}

void LongTextWriter::put(std::u16string_view text)
{
    while (!text.empty()) {
        makeRoom(1);
        const std::size_t count = std::min(text.size(), m_units.size() - m_at);
        std::copy_n(text.data(), count, m_units.data() + m_at);
        m_at += count;
        text.remove_prefix(count);
    }
}

// Formatted without a locale; a number that is none shows its sign, as CString::Format does.
void LongTextWriter::putSample(double value)
{
    std::array<char, longestNumber> digits;
    const char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals).ptr;
    makeRoom(digits.size() + 1);
    for (const char* at = digits.data(); at != end; ++at)
        m_units[m_at++] = static_cast<char16_t>(*at);
    m_units[m_at++] = u' ';
}

void LongTextWriter::finish()
{
    makeRoom(1);
    m_units[m_at++] = u'\0';
    drain();
}

void LongTextWriter::makeRoom(std::size_t units)
{
    if (m_units.size() - m_at < units)
        drain();
}

void LongTextWriter::drain()
{
    const auto bytes = static_cast<unsigned>(m_at * sizeof(char16_t));
    m_at = 0;
    m_file.Write(m_units.data(), bytes);
}

} // namespace megset
