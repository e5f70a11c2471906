#pragma once
// The formatting behind CString::Format: printf's format strings, type-safe arguments, no locale.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace megset {

class CString;

/// One argument of CString::Format. Integers remember their width, so that "%u" and "%x" of a negative value
/// show the bits that the value has. A null pointer is an empty text. Texts are referred to, not copied.
class FormatArgument
{
public:
    template <std::integral T>
    FormatArgument(T value) : m_value(static_cast<std::int64_t>(value)), m_bits(sizeof(T) * 8)
    {
    }
    template <class T>
    requires std::is_enum_v<T> FormatArgument(T value) : FormatArgument(static_cast<std::underlying_type_t<T>>(value))
    {
    }
    template <std::floating_point T>
    FormatArgument(T value) : m_value(static_cast<double>(value))
    {
    }
    FormatArgument(const CString& text);
    FormatArgument(std::u16string_view text) : m_value(text) {}
    FormatArgument(const std::u16string& text) : m_value(std::u16string_view(text)) {}
    FormatArgument(const char16_t* text) : m_value(std::u16string_view(text ? text : u"")) {}
    FormatArgument(std::string_view utf8) : m_value(utf8) {}
    FormatArgument(const std::string& utf8) : m_value(std::string_view(utf8)) {}
    FormatArgument(const char* utf8) : m_value(std::string_view(utf8 ? utf8 : "")) {}

    /// The value as a signed or unsigned integer of the argument's own width; a double is cut towards zero.
    /// `wide` keeps an unsigned 32-bit value above 2^31 positive.
    std::int64_t asSigned(bool wide = false) const;
    std::uint64_t asUnsigned() const;
    double asDouble() const;
    bool isText() const { return m_value.index() >= 2; }
    bool isDouble() const { return m_value.index() == 1; }
    /// The text of a text argument; empty for a number.
    std::u16string text() const;

private:
    std::variant<std::int64_t, double, std::u16string_view, std::string_view> m_value;
    std::size_t m_bits = 64;
};

/// The text that `format` makes of `arguments`: conversions d i u x X o c s f F e E g G and %%, flags "-+ 0" and, for
/// x, X and o, "#", width and precision (also as *; at most 4096 and 1100), and length marks. Every argument knows its
/// type, so a length mark matters in one place: "%d" of an unsigned 32-bit value shows it as signed, "%I64d" and "%lld"
/// don't. A number of the other kind is converted (a double is cut towards zero for d), "%s" shows a number, and a text
/// shows as a text whatever its conversion. A missing argument shows nothing. A character that is no conversion stands
/// for itself, without the percent sign; a percent sign with no character behind it stays.
std::u16string formatText(std::u16string_view format, std::span<const FormatArgument> arguments);

} // namespace megset
