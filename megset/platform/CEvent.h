#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace megset {

/// A signal between threads. An automatic event lets one waiting thread through and is then unset again.
class CEvent
{
public:
    explicit CEvent(bool initiallySet = false, bool manualReset = false) : m_bSet(initiallySet), m_bManual(manualReset)
    {
    }

    /// They set and unset it, and give 1.
    int SetEvent();
    int ResetEvent();
    /// Waits until the event is set.
    void Lock();
    /// Waits for at most `time`; false when that ran out.
    bool Lock(std::chrono::milliseconds time);

private:
    void pass();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bSet;
    bool m_bManual;
};

} // namespace megset
