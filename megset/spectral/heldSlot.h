#pragma once
// What the layers that hold results of other analyses do with their slots: make on demand, and replace on the user's
// word. Internal to spectral/.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/memory.h"

#include <memory>

namespace megset {

/// The object of a slot. With `create` an empty slot gets a new one first. Null for an empty slot and without memory.
template <class T>
T* heldObject(std::unique_ptr<T>& slot, bool create)
{
    if (create && slot == nullptr)
        slot = tryNew<T>();
    return slot.get();
}

/// The same; a creation that fails shows a message.
template <class T>
T* heldObject(std::unique_ptr<T>& slot, bool create, const CString& failure)
{
    T* object = heldObject(slot, create);
    if (create && object == nullptr)
        AfxMessageBox(failure, MB_OK);
    return object;
}

/// Puts `made` into the slot, which owns it then; null empties the slot. An occupied slot asks first: with No nothing
/// changes, `made` stays the caller's, and the result is 0. The object that the slot already holds gives 1 at once.
template <class T>
int replaceHeld(std::unique_ptr<T>& slot, T* made, const CString& question)
{
    if (slot.get() == made)
        return 1;
    if (slot != nullptr && AfxMessageBox(question, MB_YESNO) != IDYES)
        return 0;
    slot.reset(made);
    return 1;
}

} // namespace megset
