#pragma once

#include "megset/platform/CException.h"

#include <cstddef>
#include <vector>

namespace megset {

/// A list of texts. An index outside the list raises the invalid-argument exception.
class CStringArray
{
public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }
    const CString& GetAt(int i) const { return m_items[checked(i)]; }
    CString& ElementAt(int i) { return m_items[checked(i)]; }
    const CString& operator[](int i) const { return GetAt(i); }
    CString& operator[](int i) { return ElementAt(i); }
    void SetAt(int i, const CString& text) { m_items[checked(i)] = text; }
    /// Appends, and gives the new text's index.
    int Add(const CString& text)
    {
        m_items.push_back(text);
        return GetSize() - 1;
    }
    void RemoveAt(int i) { m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(checked(i))); }
    void RemoveAll() { m_items.clear(); }

    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }
    bool operator==(const CStringArray&) const = default;

private:
    std::size_t checked(int i) const
    {
        if (i < 0 || i >= GetSize())
            AfxThrowInvalidArgException();
        return static_cast<std::size_t>(i);
    }

    std::vector<CString> m_items;
};

} // namespace megset
