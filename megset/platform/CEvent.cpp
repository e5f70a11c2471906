#include "megset/platform/CEvent.h"

namespace megset {

int CEvent::SetEvent()
{
    const std::lock_guard guard(m_mutex);
    m_bSet = true;
    m_changed.notify_all();
    return 1;
}

int CEvent::ResetEvent()
{
    const std::lock_guard guard(m_mutex);
    m_bSet = false;
    return 1;
}

void CEvent::Lock()
{
    std::unique_lock guard(m_mutex);
    m_changed.wait(guard, [this] { return m_bSet; });
    pass();
}

bool CEvent::Lock(std::chrono::milliseconds time)
{
    std::unique_lock guard(m_mutex);
    if (!m_changed.wait_for(guard, time, [this] { return m_bSet; }))
        return false;
    pass();
    return true;
}

void CEvent::pass()
{
    m_bSet = m_bManual;
}

} // namespace megset
