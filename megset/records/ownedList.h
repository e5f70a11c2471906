#pragma once
// Lists of owned records in a record's file, with their null entries.

#include "megset/platform/archiveLists.h"

#include <memory>

namespace megset {

/// A counted list of owned objects: an int with the count, then for each entry an int 1 and the object, by
/// `serialize(object)`, which returns int, or an int 0 for a null entry. Unlike exchangePointers it keeps null entries,
/// which count in the records, and replaces the list when loading. The list grows as the entries come. Gives 0 when an
/// object can't be made, or when `serialize` gives 0.
template <class T, class Serialize>
int exchangeOwnedList(CArchive& ar, CTypedPtrArray<T>& list, Serialize serialize)
{
    const std::int32_t count = ar.exchangeInt(list.GetSize(), "count");
    if (ar.IsLoading())
        list.RemoveAll();
    for (std::int32_t i = 0; i < count; ++i) {
        std::unique_ptr<T> loaded;
        const bool present = exchangeGuard(ar, ar.IsStoring() && list.GetAt(i) != nullptr);
        if (present && ar.IsLoading()) {
            loaded = tryNew<T>();
            if (loaded == nullptr)
                return 0;
        }
        if (present && !serialize(ar.IsLoading() ? *loaded : *list.GetAt(i)))
            return 0;
        if (ar.IsLoading())
            list.Add(std::move(loaded));
    }
    return 1;
}

} // namespace megset
