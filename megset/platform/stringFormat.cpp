#include "megset/platform/stringFormat.h"

#include "megset/numeric/cut.h"
#include "megset/platform/CString.h"
#include "megset/platform/unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace megset {
namespace {

// More digits than any double has before or behind the point; longer fields are cut so that no text can ask for memory.
constexpr int maxWidth = 4096;
constexpr int maxPrecision = 1100;

struct Conversion
{
    bool left = false, plus = false, blank = false, zero = false, alternative = false;
    bool wide = false; // marked as 64 bits
    int width = 0;
    int precision = -1; // -1: none given
    char16_t letter = 0;
};

bool isOneOf(char16_t unit, std::u16string_view set)
{
    return set.find(unit) != std::u16string_view::npos;
}

class Formatter
{
public:
    Formatter(std::u16string_view format, std::span<const FormatArgument> arguments)
        : m_format(format), m_arguments(arguments)
    {
    }

    std::u16string run()
    {
        while (m_at < m_format.size()) {
            const std::size_t percent = std::min(m_format.find(u'%', m_at), m_format.size());
            m_out.append(m_format.substr(m_at, percent - m_at));
            m_at = percent;
            if (m_at < m_format.size())
                convert();
        }
        return std::move(m_out);
    }

private:
    // m_at stands at a percent sign.
    void convert()
    {
        ++m_at;
        const Conversion conversion = readConversion();
        if (conversion.letter == 0)
            m_out.push_back(u'%'); // the format ends in the middle of a conversion
        else if (!isOneOf(conversion.letter, u"diuxXocCsSfFeEgG"))
            m_out.push_back(conversion.letter);
        else if (m_nextArgument < m_arguments.size())
            put(conversion, m_arguments[m_nextArgument++]);
    }

    Conversion readConversion()
    {
        Conversion result;
        for (; isOneOf(peek(), u"-+ 0#"); ++m_at) {
            result.left |= peek() == u'-';
            result.plus |= peek() == u'+';
            result.blank |= peek() == u' ';
            result.zero |= peek() == u'0';
            result.alternative |= peek() == u'#';
        }
        result.width = readNumber(maxWidth);
        if (result.width < 0) {
            result.left = true;
            result.width = std::min(-result.width, maxWidth);
        }
        if (peek() == u'.') {
            ++m_at;
            result.precision = std::max(-1, readNumber(maxPrecision));
        }
        result.wide = readLengthMark();
        result.letter = peek();
        if (result.letter != 0)
            ++m_at;
        return result;
    }

    char16_t peek() const { return m_at < m_format.size() ? m_format[m_at] : char16_t{0}; }

    int readNumber(int limit)
    {
        if (peek() == u'*') {
            ++m_at;
            if (m_nextArgument >= m_arguments.size())
                return 0;
            return static_cast<int>(std::clamp<std::int64_t>(m_arguments[m_nextArgument++].asSigned(), -limit, limit));
        }
        int number = 0;
        for (; peek() >= u'0' && peek() <= u'9'; ++m_at)
            number = std::min(limit, number * 10 + (peek() - u'0'));
        return number;
    }

    // True for the marks of 64 bits.
    bool readLengthMark()
    {
        const std::u16string_view rest = m_format.substr(m_at);
        if (rest.starts_with(u"I64") || rest.starts_with(u"I32"))
            m_at += 3;
        else
            while (isOneOf(peek(), u"hlLwzjt"))
                ++m_at;
        return rest.starts_with(u"I64") || rest.starts_with(u"ll");
    }

    void put(const Conversion& conversion, const FormatArgument& argument)
    {
        const char16_t letter = conversion.letter;
        if (argument.isText())
            putText(conversion, argument.text());
        else if (isOneOf(letter, u"cC"))
            putText(conversion, std::u16string(1, static_cast<char16_t>(argument.asUnsigned())));
        else if (isOneOf(letter, u"fFeEgG"))
            putDouble(conversion, argument.asDouble());
        else if (isOneOf(letter, u"sS") && argument.isDouble())
            putDouble(conversion, argument.asDouble());
        else if (isOneOf(letter, u"uxXo"))
            putUnsigned(conversion, argument.asUnsigned());
        else
            putSigned(conversion, argument.asSigned(conversion.wide || isOneOf(letter, u"sS")));
    }

    void putText(const Conversion& conversion, std::u16string text)
    {
        if (conversion.precision >= 0 && isOneOf(conversion.letter, u"sS"))
            text.resize(std::min(text.size(), static_cast<std::size_t>(conversion.precision)));
        pad(conversion, u"", text, false);
    }

    void putSigned(const Conversion& conversion, std::int64_t value)
    {
        const auto magnitude =
            value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
        putDigits(conversion, sign(conversion, value < 0), magnitude, 10);
    }

    void putUnsigned(const Conversion& conversion, std::uint64_t value)
    {
        const bool hex = isOneOf(conversion.letter, u"xX");
        const bool prefixed = hex && conversion.alternative && value != 0;
        const std::u16string_view prefix = !prefixed ? u"" : conversion.letter == u'x' ? u"0x" : u"0X";
        putDigits(conversion, prefix, value, hex ? 16 : conversion.letter == u'o' ? 8 : 10);
    }

    void putDigits(const Conversion& conversion, std::u16string_view prefix, std::uint64_t value, int base)
    {
        std::array<char, 66> buffer;
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, base).ptr;
        std::u16string digits(buffer.data(), end);
        if (conversion.precision == 0 && value == 0)
            digits.clear();
        if (conversion.precision > static_cast<int>(digits.size()))
            digits.insert(0, static_cast<std::size_t>(conversion.precision) - digits.size(), u'0');
        if (conversion.letter == u'o' && conversion.alternative && !digits.starts_with(u'0'))
            digits.insert(0, 1, u'0');
        if (conversion.letter == u'X')
            std::transform(digits.begin(), digits.end(), digits.begin(), toUpper);
        pad(conversion, prefix, digits, conversion.zero && conversion.precision < 0);
    }

    void putDouble(const Conversion& conversion, double value)
    {
        const char16_t lower = toLower(conversion.letter);
        const auto style = lower == u'e'   ? std::chars_format::scientific
                           : lower == u'f' ? std::chars_format::fixed
                                           : std::chars_format::general;
        std::array<char, 1 + 310 + 1 + maxPrecision + 8> buffer;
        const int precision = conversion.precision < 0 ? 6 : conversion.precision;
        const auto end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value), style, precision).ptr;
        std::u16string digits(buffer.data(), end);
        if (conversion.letter != lower)
            std::transform(digits.begin(), digits.end(), digits.begin(), toUpper);
        pad(conversion, sign(conversion, std::signbit(value)), digits, conversion.zero && std::isfinite(value));
    }

    static std::u16string_view sign(const Conversion& conversion, bool negative)
    {
        return negative ? u"-" : conversion.plus ? u"+" : conversion.blank ? u" " : u"";
    }

    void pad(const Conversion& conversion, std::u16string_view prefix, std::u16string_view body, bool zeros)
    {
        const std::size_t length = prefix.size() + body.size();
        const auto width = static_cast<std::size_t>(conversion.width);
        const std::size_t missing = width > length ? width - length : 0;
        if (!conversion.left && !zeros)
            m_out.append(missing, u' ');
        m_out.append(prefix);
        if (!conversion.left && zeros)
            m_out.append(missing, u'0');
        m_out.append(body);
        if (conversion.left)
            m_out.append(missing, u' ');
    }

    std::u16string_view m_format;
    std::span<const FormatArgument> m_arguments;
    std::size_t m_at = 0;
    std::size_t m_nextArgument = 0;
    std::u16string m_out;
};

} // namespace

FormatArgument::FormatArgument(const CString& text) : m_value(text.view()) {}

std::int64_t FormatArgument::asSigned(bool wide) const
{
    if (isDouble())
        return numeric::cutToCount(std::get<double>(m_value));
    if (isText())
        return 0;
    // Every narrower type fits; only an unsigned int in "%d" is folded, as printf does.
    const std::int64_t value = std::get<std::int64_t>(m_value);
    return m_bits == 32 && !wide ? static_cast<std::int32_t>(value) : value;
}

std::uint64_t FormatArgument::asUnsigned() const
{
    const auto value = static_cast<std::uint64_t>(isDouble() ? asSigned() : isText() ? 0 : std::get<0>(m_value));
    return m_bits >= 64 ? value : value & ((std::uint64_t{1} << m_bits) - 1);
}

double FormatArgument::asDouble() const
{
    return isDouble() ? std::get<double>(m_value) : isText() ? 0.0 : static_cast<double>(std::get<0>(m_value));
}

std::u16string FormatArgument::text() const
{
    if (const auto* wide = std::get_if<std::u16string_view>(&m_value))
        return std::u16string(*wide);
    if (const auto* narrow = std::get_if<std::string_view>(&m_value))
        return utf8ToUtf16(*narrow);
    return {};
}

std::u16string formatText(std::u16string_view format, std::span<const FormatArgument> arguments)
{
    return Formatter(format, arguments).run();
}

} // namespace megset
