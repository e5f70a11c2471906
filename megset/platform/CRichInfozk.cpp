#include "megset/platform/CRichInfozk.h"

#include "megset/platform/CUserHost.h"

namespace megset {

int CRichInfozk::showRichInfo(CString text, CString title)
{
    return AfxGetHost().showReport(text, title);
}

int CRichInfozk::showRichInfo02(CString text, CString title)
{
    return showRichInfo(text, title);
}

} // namespace megset
