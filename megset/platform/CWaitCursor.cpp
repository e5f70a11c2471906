#include "megset/platform/CWaitCursor.h"

#include "megset/platform/CUserHost.h"

namespace megset {

CWaitCursor::CWaitCursor() noexcept
{
    try {
        CUserHost& host = AfxGetHost();
        host.beginWaitCursor();
        m_pHost = &host;
    } catch (...) {
        // Work goes on without the cursor.
    }
}

CWaitCursor::~CWaitCursor()
{
    if (m_pHost == nullptr)
        return;
    try {
        m_pHost->endWaitCursor();
    } catch (...) {
        // A destructor has nobody to tell.
    }
}

} // namespace megset
