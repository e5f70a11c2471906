#pragma once
// Optional objects in the records of channels and trials. Internal to persistence/.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"
#include "megset/platform/memory.h"

#include <memory>
#include <string_view>

namespace megset {

/// A guarded object that is made when it is loaded. Without memory for it `noMemory` is shown, where it is not empty,
/// and the result is 0; else it is what `exchange(object)` gives, 1 without an object.
template <class T, class Exchange>
int exchangeSlot(CArchive& ar, std::unique_ptr<T>& slot, std::string_view name, std::string_view noMemory,
                 Exchange exchange)
{
    if (!exchangeGuard(ar, slot != nullptr, name))
        return 1;
    if (ar.IsLoading())
        slot = tryNew<T>();
    if (slot != nullptr)
        return exchange(*slot);
    if (!noMemory.empty())
        AfxMessageBox(noMemory, MB_OK);
    return 0;
}

} // namespace megset
