// The views of a dataset, which repaint when its samples change.
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CWnd.h"

namespace megset {
namespace {

// The place of a view, -1 where it isn't registered.
int placeOf(const CPtrArray& views, const CWnd* view)
{
    for (int i = 0; i < views.GetSize(); ++i)
        if (views.GetAt(i) == view)
            return i;
    return -1;
}

} // namespace

int CMEGData8Show::viewerAdd(CWnd* view)
{
    if (view == nullptr || placeOf(m_aViewer, view) >= 0)
        return 0;
    return m_aViewer.Add(view) + 1;
}

int CMEGData8Show::viewerRemove(CWnd* view, bool all)
{
    if (all) {
        m_aViewer.RemoveAll();
        return 0;
    }
    const int place = placeOf(m_aViewer, view);
    if (place < 0)
        return -1;
    m_aViewer.RemoveAt(place);
    return m_aViewer.GetSize();
}

int CMEGData8Show::viewerInvalidate(bool erase, CWnd* view, bool all)
{
    viewerAdd(view);
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
