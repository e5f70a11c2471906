#include "megset/platform/AfxMessageBox.h"

#include "megset/platform/CUserHost.h"

namespace megset {

int AfxMessageBox(const CString& text, unsigned type)
{
    return AfxGetHost().messageBox(text, type);
}

int fail(const CString& text)
{
    AfxMessageBox(text, MB_OK);
    return 0;
}

} // namespace megset
