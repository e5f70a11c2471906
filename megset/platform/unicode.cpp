#include "megset/platform/unicode.h"

#include <array>
#include <cstddef>

namespace megset {
namespace {

constexpr char16_t replacement = 0xFFFD;
constexpr char16_t escapedBackslash = 0xDC00 + u'\\';

// 0x80 to 0x9F of Windows-1252; the five free places keep their own number, as that system does.
constexpr std::array<char16_t, 32> windows1252High = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                      0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned byteAt(std::string_view text, std::size_t i)
{
    return static_cast<unsigned char>(text[i]);
}

bool isContinuation(std::string_view text, std::size_t i)
{
    return i < text.size() && (byteAt(text, i) & 0xC0U) == 0x80U;
}

struct Decoded
{
    char32_t point = 0;
    std::size_t length = 0; // 0: no UTF-8 starts here
};

// One code point of well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
Decoded decodeUtf8(std::string_view text, std::size_t i)
{
    const unsigned first = byteAt(text, i);
    if (first < 0x80U)
        return {first, 1};
    const std::size_t length = first >= 0xF0U ? 4U : first >= 0xE0U ? 3U : 2U;
    if (first < 0xC2U || first > 0xF4U)
        return {};
    char32_t point = first & (0x7FU >> length);
    for (std::size_t k = 1; k < length; ++k) {
        if (!isContinuation(text, i + k))
            return {};
        point = (point << 6U) | (byteAt(text, i + k) & 0x3FU);
    }
    const bool overlong = (length == 3 && point < 0x800U) || (length == 4 && point < 0x10000U);
    const bool surrogate = point >= 0xD800U && point <= 0xDFFFU;
    if (overlong || surrogate || point > 0x10FFFFU)
        return {};
    return {point, length};
}

void appendUtf16(std::u16string& out, char32_t point)
{
    if (point < 0x10000U) {
        out.push_back(static_cast<char16_t>(point));
        return;
    }
    const char32_t rest = point - 0x10000U;
    out.push_back(static_cast<char16_t>(0xD800U + (rest >> 10U)));
    out.push_back(static_cast<char16_t>(0xDC00U + (rest & 0x3FFU)));
}

void appendUtf8(std::string& out, char32_t point)
{
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (point < 0x80U) {
        put(point);
    } else if (point < 0x800U) {
        put(0xC0U | (point >> 6U));
        put(0x80U | (point & 0x3FU));
    } else if (point < 0x10000U) {
        put(0xE0U | (point >> 12U));
        put(0x80U | ((point >> 6U) & 0x3FU));
        put(0x80U | (point & 0x3FU));
    } else {
        put(0xF0U | (point >> 18U));
        put(0x80U | ((point >> 12U) & 0x3FU));
        put(0x80U | ((point >> 6U) & 0x3FU));
        put(0x80U | (point & 0x3FU));
    }
}

// UTF-16 of UTF-8, where `other` gives the code unit that stands for a byte outside it.
template <class Other>
std::u16string decode(std::string_view text, Other other)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Decoded next = decodeUtf8(text, i);
        if (next.length == 0)
            out.push_back(other(byteAt(text, i)));
        else
            appendUtf16(out, next.point);
        i += next.length == 0 ? 1 : next.length;
    }
    return out;
}

// UTF-8 of UTF-16, where `lone(out, unit)` writes a surrogate that stands alone.
template <class Lone>
std::string encode(std::u16string_view text, Lone lone)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            appendUtf8(out, 0x10000U + ((static_cast<char32_t>(unit) - 0xD800U) << 10U) + (text[i + 1] - 0xDC00U));
            ++i;
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            lone(out, unit);
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}

char16_t windows1252(unsigned byte)
{
    return byte >= 0x80U && byte < 0xA0U ? windows1252High[byte - 0x80U] : static_cast<char16_t>(byte);
}

char16_t shifted(char16_t unit, int by)
{
    return static_cast<char16_t>(unit + by);
}

// Latin Extended-A goes in pairs of upper and lower case; which of the two is even changes along the block.
bool isExtendedPairWithEvenUpper(char16_t unit)
{
    return (unit >= 0x100U && unit <= 0x137U && unit != 0x130U && unit != 0x131U) || (unit >= 0x14AU && unit <= 0x177U);
}
bool isExtendedPairWithOddUpper(char16_t unit)
{
    return (unit >= 0x139U && unit <= 0x148U) || (unit >= 0x179U && unit <= 0x17EU);
}

} // namespace

std::u16string utf8ToUtf16(std::string_view text)
{
    return decode(text, [](unsigned) { return replacement; });
}

std::string utf16ToUtf8(std::u16string_view text)
{
    return encode(text, [](std::string& out, char16_t) { appendUtf8(out, replacement); });
}

std::u16string narrowToUtf16(std::string_view text)
{
    return decode(text, windows1252);
}

std::u16string fileNameToUtf16(std::string_view bytes)
{
    std::u16string out = decode(bytes, [](unsigned byte) { return static_cast<char16_t>(0xDC00U + byte); });
    for (char16_t& unit : out)
        if (unit == u'\\')
            unit = escapedBackslash;
    return out;
}

std::string utf16ToFileName(std::u16string_view text)
{
    return encode(text, [](std::string& out, char16_t unit) {
        const bool byte = (unit >= 0xDC80U && unit <= 0xDCFFU) || unit == escapedBackslash;
        if (byte)
            out.push_back(static_cast<char>(static_cast<unsigned char>(unit & 0xFFU)));
        else
            appendUtf8(out, replacement);
    });
}

char16_t toLower(char16_t unit)
{
    const bool latin1 = unit >= 0xC0U && unit <= 0xDEU && unit != 0xD7U;
    const bool greek = unit >= 0x391U && unit <= 0x3ABU && unit != 0x3A2U;
    if ((unit >= u'A' && unit <= u'Z') || latin1 || greek || (unit >= 0x410U && unit <= 0x42FU))
        return shifted(unit, 32);
    if (unit >= 0x400U && unit <= 0x40FU)
        return shifted(unit, 80);
    if (isExtendedPairWithEvenUpper(unit))
        return static_cast<char16_t>(unit | 1U);
    if (isExtendedPairWithOddUpper(unit))
        return shifted(unit, static_cast<int>(unit & 1U));
    return unit == 0x178U ? char16_t{0xFFU} : unit;
}

char16_t toUpper(char16_t unit)
{
    const bool latin1 = unit >= 0xE0U && unit <= 0xFEU && unit != 0xF7U;
    const bool greek = unit >= 0x3B1U && unit <= 0x3CBU && unit != 0x3C2U;
    if ((unit >= u'a' && unit <= u'z') || latin1 || greek || (unit >= 0x430U && unit <= 0x44FU))
        return shifted(unit, -32);
    if (unit >= 0x450U && unit <= 0x45FU)
        return shifted(unit, -80);
    if (isExtendedPairWithEvenUpper(unit))
        return static_cast<char16_t>(unit & ~1U);
    if (isExtendedPairWithOddUpper(unit))
        return shifted(unit, static_cast<int>(unit & 1U) - 1);
    return unit == 0xFFU ? char16_t{0x178U} : unit;
}

bool isSpace(char16_t unit)
{
    return unit == u' ' || (unit >= 0x09U && unit <= 0x0DU) || unit == 0x85U || unit == 0xA0U || unit == 0x1680U ||
           (unit >= 0x2000U && unit <= 0x200AU) || unit == 0x2028U || unit == 0x2029U || unit == 0x202FU ||
           unit == 0x205FU || unit == 0x3000U;
}

} // namespace megset
