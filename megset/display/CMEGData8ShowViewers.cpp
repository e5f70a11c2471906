// The views of a dataset, which repaint when its samples change.
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CWnd.h"

namespace megset {
namespace {

bool isIn(const CPtrArray& views, const CWnd* view)
{
    for (int i = 0; i < views.GetSize(); ++i)
        if (views.GetAt(i) == view)
            return true;
    return false;
}

} // namespace

int CMEGData8Show::viewerInvalidate(bool erase, CWnd* view, bool all)
{
    if (view != nullptr && !isIn(m_aViewer, view))
        m_aViewer.Add(view);
    if (!all) {
        if (view == nullptr)
            return 0;
        view->Invalidate(erase);
        return 1;
    }
    for (int i = 0; i < m_aViewer.GetSize(); ++i) {
        auto* each = static_cast<CWnd*>(m_aViewer.GetAt(i));
        if (each != nullptr && each->IsWindowVisible())
            each->Invalidate(erase);
    }
    return m_aViewer.GetSize();
}

} // namespace megset
