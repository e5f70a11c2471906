#pragma once

#include "megset/platform/memory.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace megset {

/// An array of owned objects that may be absent as a whole and may have empty places: trials of which most are on disk,
/// channels of a trial. Looking outside it gives null.
template <class T>
class SlotArray
{
public:
    SlotArray() = default;
    SlotArray(SlotArray&& other) noexcept : m_slots(std::move(other.m_slots)), m_count(std::exchange(other.m_count, 0))
    {
    }
    SlotArray& operator=(SlotArray&& other) noexcept
    {
        m_slots = std::move(other.m_slots);
        m_count = std::exchange(other.m_count, 0);
        return *this;
    }
    ~SlotArray() = default;

    /// Makes `count` empty places in place of what was there; 0 with the array absent when there is no memory.
    int allocate(std::int64_t count)
    {
        reset();
        m_slots = tryNewZeroArray<std::unique_ptr<T>>(count);
        m_count = m_slots ? count : 0;
        return m_slots ? 1 : 0;
    }
    /// Makes `count` places that take over the objects at the same places; 0 with nothing changed when there is no
    /// memory. Objects behind `count` go.
    int resize(std::int64_t count)
    {
        SlotArray other;
        if (!other.allocate(count))
            return 0;
        for (std::int64_t i = 0; i < count && i < m_count; ++i)
            other.m_slots[static_cast<std::size_t>(i)] = std::move(m_slots[static_cast<std::size_t>(i)]);
        *this = std::move(other);
        return 1;
    }
    /// Removes one place with its object; the later ones move up. Nothing happens outside the array.
    void removeAt(std::int64_t i)
    {
        if (!has(i))
            return;
        for (; i + 1 < m_count; ++i)
            m_slots[static_cast<std::size_t>(i)] = std::move(m_slots[static_cast<std::size_t>(i) + 1]);
        m_slots[static_cast<std::size_t>(--m_count)].reset();
    }
    /// Ends all objects and the array.
    void reset()
    {
        m_slots.reset();
        m_count = 0;
    }

    explicit operator bool() const { return m_slots != nullptr; }
    bool operator==(std::nullptr_t) const { return m_slots == nullptr; }
    /// Places, filled or not; 0 for an absent array.
    std::int64_t size() const { return m_count; }
    T* operator[](std::int64_t i) const { return has(i) ? m_slots[static_cast<std::size_t>(i)].get() : nullptr; }

    /// Puts an object into its place and ends the one that was there; the object goes when there is no such place.
    T* set(std::int64_t i, std::unique_ptr<T> object)
    {
        if (!has(i))
            return nullptr;
        m_slots[static_cast<std::size_t>(i)] = std::move(object);
        return (*this)[i];
    }
    /// Takes an object out of its place, which is empty then.
    std::unique_ptr<T> release(std::int64_t i)
    {
        return has(i) ? std::move(m_slots[static_cast<std::size_t>(i)]) : nullptr;
    }

private:
    bool has(std::int64_t i) const { return i >= 0 && i < m_count; }

    std::unique_ptr<std::unique_ptr<T>[]> m_slots;
    std::int64_t m_count = 0;
};

} // namespace megset
