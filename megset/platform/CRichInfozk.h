#pragma once

#include "megset/platform/CString.h"

namespace megset {

/// The window that shows a report. It has no state: every call shows a text of its own.
class CRichInfozk
{
public:
    /// Shows the text under the title: 1 when shown, else 0.
    int showRichInfo(CString text, CString title);
    int showRichInfo02(CString text, CString title);

    bool operator==(const CRichInfozk&) const = default;
};

} // namespace megset
