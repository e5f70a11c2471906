#pragma once

#include "megset/platform/CString.h"

#include <atomic>
#include <mutex>

namespace megset {

/// A view or window as the library sees it. It draws nothing: a repaint is asked of the host, and a program with real
/// windows derives its own. Any thread may call it.
class CWnd
{
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd() = default;

    /// True when a window stands behind this object. Without one it can't be visible.
    virtual bool hasWindow() const { return true; }
    virtual bool IsWindowVisible() const { return hasWindow() && m_bVisible; }
    virtual void ShowWindow(bool show) { m_bVisible = show; }

    virtual void SetWindowText(const CString& text);
    virtual CString GetWindowText() const;

    /// Asks the host to repaint the whole view.
    void Invalidate(bool erase = true);

private:
    std::atomic<bool> m_bVisible{true};
    mutable std::mutex m_mutex; // guards the text
    CString m_strText;
};

} // namespace megset
