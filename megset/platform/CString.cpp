#include "megset/platform/CString.h"

#include "megset/platform/unicode.h"

#include <algorithm>
#include <ostream>

namespace megset {
namespace {

int position(std::size_t found)
{
    return found == std::u16string::npos ? -1 : static_cast<int>(found);
}

} // namespace

CString::CString(const char* utf8) : CString(std::string_view(utf8 ? utf8 : "")) {}

CString::CString(std::string_view utf8) : m_text(utf8ToUtf16(utf8)) {}

CString::CString(char16_t unit, int repeat) : m_text(static_cast<std::size_t>(std::max(0, repeat)), unit) {}

char16_t CString::GetAt(int i) const
{
    return i >= 0 && i < GetLength() ? m_text[static_cast<std::size_t>(i)] : char16_t{0};
}

std::string CString::toUtf8() const
{
    return utf16ToUtf8(m_text);
}

int CString::Find(const CString& part, int from) const
{
    return from < 0 || from > GetLength() ? -1 : position(m_text.find(part.m_text, static_cast<std::size_t>(from)));
}

int CString::Find(char16_t unit, int from) const
{
    return from < 0 || from > GetLength() ? -1 : position(m_text.find(unit, static_cast<std::size_t>(from)));
}

int CString::ReverseFind(char16_t unit) const
{
    return position(m_text.rfind(unit));
}

CString CString::Left(int count) const
{
    return Mid(0, count);
}

CString CString::Right(int count) const
{
    const int length = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - length, length);
}

CString CString::Mid(int from, int count) const
{
    const int start = std::clamp(from, 0, GetLength());
    const int length = std::clamp(count, 0, GetLength() - start);
    return CString(m_text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length)));
}

int CString::Replace(const CString& from, const CString& to)
{
    if (from.IsEmpty())
        return 0;
    int count = 0;
    std::u16string out;
    std::size_t done = 0;
    for (std::size_t hit = m_text.find(from.m_text); hit != std::u16string::npos;
         hit = m_text.find(from.m_text, done)) {
        out.append(m_text, done, hit - done).append(to.m_text);
        done = hit + from.m_text.size();
        ++count;
    }
    if (count > 0)
        m_text = out.append(m_text, done);
    return count;
}

CString& CString::MakeLower()
{
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), toLower);
    return *this;
}

CString& CString::MakeUpper()
{
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), toUpper);
    return *this;
}

CString& CString::TrimLeft()
{
    m_text.erase(m_text.begin(), std::find_if_not(m_text.begin(), m_text.end(), isSpace));
    return *this;
}

CString& CString::TrimRight()
{
    m_text.erase(std::find_if_not(m_text.rbegin(), m_text.rend(), isSpace).base(), m_text.end());
    return *this;
}

int CString::Compare(const CString& other) const
{
    return m_text.compare(other.m_text);
}

int CString::CompareNoCase(const CString& other) const
{
    CString a = *this;
    CString b = other;
    return a.MakeLower().Compare(b.MakeLower());
}

std::ostream& operator<<(std::ostream& out, const CString& text)
{
    return out << text.toUtf8();
}

} // namespace megset
