#pragma once
// Arrays and optional objects in an archive: the forms that every format is made of.

#include "megset/platform/CArchive.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/memory.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

namespace megset {

/// The int in front of something optional: 1 or 0 when storing; any value but 0 means presence when loading.
inline bool exchangeGuard(CArchive& ar, bool present, std::string_view name = "present")
{
    return ar.exchangeInt(present ? 1 : 0, name) != 0;
}

/// What became of a block.
enum class BlockResult
{
    absent,   ///< no block is there, and the array is null
    complete, ///< all bytes were written, or read
    partial,  ///< the file ended inside the block; what was not read is zero
    empty,    ///< the file ended before the block; all is zero
    noMemory  ///< the array could not be made, or the file is too short by far to hold it; the array is null
};

/// Bytes of a guarded block: the low 32 bits of the count times the element size, in 32 bits, as the format has it. An
/// array of 2^32 bytes or more doesn't fit this form.
inline std::uint32_t guardedBlockBytes(std::int64_t count, std::size_t elementBytes)
{
    return static_cast<std::uint32_t>(count) * static_cast<std::uint32_t>(elementBytes);
}

/// A guarded block: an int that says whether the array exists, and its elements as one block. `count` stands elsewhere
/// in the record, before the guard. `allocate(count)` makes an array, or null; where guardedBlockBytes is less than
/// what the elements take, it must be zeroed. `array` is a unique_ptr to an array.
template <class Array, std::invocable<std::int64_t> Allocate>
BlockResult exchangeGuardedBlock(CArchive& ar, Array& array, std::int64_t count, Allocate allocate,
                                 std::string_view name = {})
{
    using Element = typename Array::element_type;
    const std::uint32_t bytes = guardedBlockBytes(count, sizeof(Element));
    if (ar.IsStoring()) {
        if (!exchangeGuard(ar, array != nullptr))
            return BlockResult::absent;
        ar.exchangeBlock(array.get(), bytes, name, archiveTypeName<Element>());
        return BlockResult::complete;
    }
    array.reset();
    if (!exchangeGuard(ar, false))
        return BlockResult::absent;
    const bool possible = count >= 0 && static_cast<std::uint64_t>(count) <= UINT64_MAX / sizeof(Element) &&
                          ar.mayHold(static_cast<std::uint64_t>(count) * sizeof(Element));
    if (possible)
        array = allocate(count);
    if (array == nullptr)
        return BlockResult::noMemory;
    const std::uint32_t done = ar.exchangeBlock(array.get(), bytes, name, archiveTypeName<Element>());
    return done == bytes ? BlockResult::complete : done == 0 ? BlockResult::empty : BlockResult::partial;
}

/// Whether the block of an array covers all of its elements, so that none of them needs a value before it is read.
inline bool blockCoversArray(std::int64_t count, std::size_t elementBytes)
{
    return guardedBlockBytes(count, elementBytes) == static_cast<std::uint64_t>(count) * elementBytes;
}

/// The same for an array of numbers from tryNewArray.
template <class Element>
BlockResult exchangeGuardedBlock(CArchive& ar, std::unique_ptr<Element[]>& array, std::int64_t count,
                                 std::string_view name = {})
{
    const auto allocate = [](std::int64_t n) {
        return blockCoversArray(n, sizeof(Element)) ? tryNewArray<Element>(n) : tryNewZeroArray<Element>(n);
    };
    return exchangeGuardedBlock(ar, array, count, allocate, name);
}

/// The same for samples from tryNewSamples.
inline BlockResult exchangeGuardedBlock(CArchive& ar, SampleArray& array, std::int64_t count,
                                        std::string_view name = {})
{
    const auto allocate = [](std::int64_t n) { return tryNewSamples(n, !blockCoversArray(n, sizeof(double))); };
    return exchangeGuardedBlock(ar, array, count, allocate, name);
}

/// A guarded record: an int that says whether the object exists, and the object's own fields, by `serialize(object)`,
/// which returns int. Loading ends the object that was there and makes a new one when the file has one. Gives what
/// `serialize` gave, 1 without an object, 0 when the object could not be made.
template <class T, class Serialize>
int exchangeGuarded(CArchive& ar, std::unique_ptr<T>& object, Serialize serialize, std::string_view name = {})
{
    const bool present = exchangeGuard(ar, object != nullptr, name.empty() ? std::string_view("present") : name);
    if (ar.IsLoading())
        object = present ? tryNew<T>() : nullptr;
    if (!present)
        return 1;
    return object != nullptr ? serialize(*object) : 0;
}

/// A counted list of values: an int with the count, then the elements one after another, by `exchangeElement(element)`.
/// The list grows as the elements come, so that a count that the file can't hold ends at the end of the file.
template <class T, std::invocable<T&> ExchangeElement>
void exchangeList(CArchive& ar, std::vector<T>& list, ExchangeElement exchangeElement, std::string_view name = "count")
{
    const std::int32_t count = ar.exchangeInt(static_cast<std::int32_t>(list.size()), name);
    if (ar.IsStoring()) {
        for (T& element : list)
            exchangeElement(element);
        return;
    }
    list.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        T element{};
        exchangeElement(element);
        list.push_back(std::move(element));
    }
}

/// A counted list of numbers or strings.
template <class T>
void exchangeList(CArchive& ar, std::vector<T>& list, std::string_view name = "count")
{
    exchangeList(
        ar, list, [&ar](T& element) { ar.exchange(element); }, name);
}

/// A counted list of owned objects: the count as `Count`, then for each an int 1 and the object, or an int 0 for a null
/// entry, by `serialize(object)`, which returns int. A null entry is dropped when reading. Loading appends.
/// Gives 0 when an object can't be made or when `serialize` gives 0 while loading; what was read until then stays.
template <std::integral Count, class T, class Serialize>
int exchangePointers(CArchive& ar, CTypedPtrArray<T>& list, Serialize serialize, std::string_view name = "count")
{
    auto count = static_cast<Count>(list.GetSize());
    ar.exchangeNamed(name, count);
    for (Count i = 0; i < count; ++i) {
        T* object = ar.IsStoring() ? list.GetAt(static_cast<int>(i)) : nullptr;
        if (!exchangeGuard(ar, object != nullptr))
            continue;
        if (ar.IsStoring()) {
            serialize(*object);
            continue;
        }
        auto loaded = tryNew<T>();
        if (!loaded || !serialize(*loaded))
            return 0;
        list.Add(std::move(loaded));
    }
    return 1;
}

} // namespace megset
