#pragma once
// Arrays of pointers: CPtrArray refers to objects of others, CTypedPtrArray<T> owns its objects.

#include "megset/platform/CException.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace megset {

/// Pointers to objects that somebody else owns. An index outside the array raises the invalid-argument exception.
class CPtrArray
{
public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    int size() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }
    void* GetAt(int i) const { return m_items[checked(i)]; }
    void* operator[](int i) const { return GetAt(i); }
    void SetAt(int i, void* item) { m_items[checked(i)] = item; }
    /// Appends, and gives the new item's index.
    int Add(void* item)
    {
        m_items.push_back(item);
        return GetSize() - 1;
    }
    void RemoveAt(int i) { m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(checked(i))); }
    void RemoveAll() { m_items.clear(); }

    bool operator==(const CPtrArray&) const = default;

private:
    std::size_t checked(int i) const
    {
        if (i < 0 || i >= GetSize())
            AfxThrowInvalidArgException();
        return static_cast<std::size_t>(i);
    }

    std::vector<void*> m_items;
};

/// Objects that the array owns, null entries allowed. It copies deeply and compares by value.
/// An index outside the array raises the invalid-argument exception.
template <class T>
class CTypedPtrArray
{
public:
    CTypedPtrArray() = default;
    CTypedPtrArray(const CTypedPtrArray& other) { append(other); }
    CTypedPtrArray(CTypedPtrArray&&) noexcept = default;
    CTypedPtrArray& operator=(CTypedPtrArray&&) noexcept = default;
    CTypedPtrArray& operator=(const CTypedPtrArray& other)
    {
        if (this != &other)
            *this = CTypedPtrArray(other);
        return *this;
    }
    ~CTypedPtrArray() = default;

    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    int size() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }
    T* GetAt(int i) const { return m_items[checked(i)].get(); }
    T* operator[](int i) const { return GetAt(i); }

    /// Appends and takes over the object, and gives its index.
    int Add(std::unique_ptr<T> item)
    {
        m_items.push_back(std::move(item));
        return GetSize() - 1;
    }
    int Add(T* item) { return Add(std::unique_ptr<T>(item)); }
    /// Appends a copy.
    int addCopy(const T& item) { return Add(std::make_unique<T>(item)); }
    void SetAt(int i, std::unique_ptr<T> item) { m_items[checked(i)] = std::move(item); }
    void InsertAt(int i, std::unique_ptr<T> item)
    {
        const std::size_t at = i == GetSize() ? m_items.size() : checked(i);
        m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(at), std::move(item));
    }
    /// Takes the object out of its place, which stays as a null entry.
    std::unique_ptr<T> release(int i) { return std::move(m_items[checked(i)]); }
    void RemoveAt(int i) { m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(checked(i))); }
    void RemoveAll() { m_items.clear(); }

    /// The pointers as a list that owns nothing, for operations that take one.
    CPtrArray pointers() const
    {
        CPtrArray list;
        for (const auto& item : m_items)
            list.Add(item.get());
        return list;
    }

    bool operator==(const CTypedPtrArray& other) const
    {
        if (GetSize() != other.GetSize())
            return false;
        for (int i = 0; i < GetSize(); ++i) {
            const T* a = GetAt(i);
            const T* b = other.GetAt(i);
            if ((a == nullptr) != (b == nullptr) || (a != nullptr && !(*a == *b)))
                return false;
        }
        return true;
    }

private:
    void append(const CTypedPtrArray& other)
    {
        for (const auto& item : other.m_items)
            m_items.push_back(item ? std::make_unique<T>(*item) : nullptr);
    }
    std::size_t checked(int i) const
    {
        if (i < 0 || i >= GetSize())
            AfxThrowInvalidArgException();
        return static_cast<std::size_t>(i);
    }

    std::vector<std::unique_ptr<T>> m_items;
};

} // namespace megset
