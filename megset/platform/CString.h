#pragma once
// The string of the library: UTF-16 code units, as the files store them.

#include "megset/platform/stringFormat.h"

#include <array>
#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

namespace megset {

/// A text of UTF-16 code units. Narrow arguments are UTF-8. Positions and lengths count code units.
class CString
{
public:
    CString() = default;
    CString(const char* utf8);
    CString(std::string_view utf8);
    CString(const std::string& utf8) : CString(std::string_view(utf8)) {}
    CString(const char16_t* text) : m_text(text ? text : u"") {}
    CString(std::u16string_view text) : m_text(text) {}
    CString(std::u16string text) : m_text(std::move(text)) {}
    CString(char16_t unit, int repeat);

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    /// The code unit at `i`, 0 outside the text.
    char16_t GetAt(int i) const;
    char16_t operator[](int i) const { return GetAt(i); }
    const char16_t* GetString() const { return m_text.c_str(); }
    std::u16string_view view() const { return m_text; }
    std::string toUtf8() const;

    /// Position of the first `part` at or behind `from`, -1 if there is none.
    int Find(const CString& part, int from = 0) const;
    int Find(char16_t unit, int from = 0) const;
    int ReverseFind(char16_t unit) const;
    /// The first, last or middle code units; counts and positions outside the text are brought into it.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int from, int count) const;
    CString Mid(int from) const { return Mid(from, GetLength()); }

    /// Replaces every `from`, and gives the number of replacements.
    int Replace(const CString& from, const CString& to);
    CString& MakeLower();
    CString& MakeUpper();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim() { return TrimLeft().TrimRight(); }

    /// Negative, 0 or positive by code units; CompareNoCase without regard to case, in any locale.
    int Compare(const CString& other) const;
    int CompareNoCase(const CString& other) const;

    /// Sets the text by a printf format string (see formatText). AppendFormat adds to the text.
    template <class... Arguments>
    void Format(const CString& format, const Arguments&... arguments)
    {
        m_text = formatted(format, arguments...).m_text;
    }
    template <class... Arguments>
    void AppendFormat(const CString& format, const Arguments&... arguments)
    {
        m_text += formatted(format, arguments...).m_text;
    }
    /// The formatted text as a value of its own.
    template <class... Arguments>
    static CString formatted(const CString& format, const Arguments&... arguments)
    {
        const std::array<FormatArgument, sizeof...(Arguments)> list{FormatArgument(arguments)...};
        return CString(formatText(format.view(), list));
    }

    CString& operator+=(const CString& other)
    {
        m_text += other.m_text;
        return *this;
    }
    CString& operator+=(char16_t unit)
    {
        m_text += unit;
        return *this;
    }
    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_text + b.m_text); }
    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b)
    {
        return a.m_text.compare(b.m_text) <=> 0;
    }
    friend std::ostream& operator<<(std::ostream& out, const CString& text);

private:
    std::u16string m_text;
};

} // namespace megset
