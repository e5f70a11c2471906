#include "megset/platform/CWnd.h"

#include "megset/platform/CUserHost.h"

namespace megset {

void CWnd::SetWindowText(const CString& text)
{
    const std::lock_guard lock(m_mutex);
    m_strText = text;
}

CString CWnd::GetWindowText() const
{
    const std::lock_guard lock(m_mutex);
    return m_strText;
}

void CWnd::Invalidate(bool erase)
{
    AfxGetHost().invalidate(*this, erase);
}

} // namespace megset
