#pragma once
// Conversions between the encodings that the library meets: UTF-16 inside, UTF-8 outside, single bytes in old files.

#include <string>
#include <string_view>

namespace megset {

/// UTF-16 of UTF-8 text. Bytes that are not UTF-8 become U+FFFD, one each.
std::u16string utf8ToUtf16(std::string_view text);

/// UTF-8 of UTF-16 text. Surrogates that stand alone become U+FFFD.
std::string utf16ToUtf8(std::u16string_view text);

/// UTF-16 of the narrow strings of old files: UTF-8 where the bytes are UTF-8, Windows-1252 for each byte that is not.
std::u16string narrowToUtf16(std::string_view text);

/// UTF-16 of a file name. Bytes that are not UTF-8, and backslashes, become single low surrogates (0xDC00 + byte),
/// so that every file name has a library form and utf16ToFileName gives the same bytes back.
std::u16string fileNameToUtf16(std::string_view bytes);

/// The bytes of a file name; the reverse of fileNameToUtf16. A surrogate that stands alone and is none of those above
/// becomes U+FFFD, so that no text of a file can smuggle in a slash or a zero.
std::string utf16ToFileName(std::u16string_view text);

/// Lower case of one code unit, the same in any locale: ASCII, Latin-1, Latin Extended-A, Greek without
/// accents, Cyrillic of Russian and its neighbours. Every other unit stays.
char16_t toLower(char16_t unit);
/// Upper case, for the same letters.
char16_t toUpper(char16_t unit);

/// Whether it is the first half of a character outside the first plane.
constexpr bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800U && unit <= 0xDBFFU;
}
/// Whether it is the second half of one.
constexpr bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00U && unit <= 0xDFFFU;
}

/// Blank, tabulator, line ends and the other spaces of Unicode.
bool isSpace(char16_t unit);

} // namespace megset
