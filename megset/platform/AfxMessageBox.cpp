#include "megset/platform/AfxMessageBox.h"

#include "megset/platform/CUserHost.h"

namespace megset {

int AfxMessageBox(const CString& text, unsigned type)
{
    return AfxGetHost().messageBox(text, type);
}

} // namespace megset
