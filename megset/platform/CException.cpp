#include "megset/platform/CException.h"

#include <algorithm>

namespace megset {

bool CException::GetErrorMessage(char16_t* buffer, unsigned size) const
{
    if (buffer == nullptr || size == 0)
        return false;
    const CString message = GetErrorMessage();
    std::u16string_view cut = message.view().substr(0, size - 1);
    const bool splitsPair = cut.size() < message.view().size() && !cut.empty() && (cut.back() & 0xFC00U) == 0xD800U;
    if (splitsPair)
        cut.remove_suffix(1);
    *std::copy(cut.begin(), cut.end(), buffer) = 0;
    return true;
}

void AfxThrowInvalidArgException()
{
    throw CInvalidArgException();
}

} // namespace megset
