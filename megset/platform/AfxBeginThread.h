#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <thread>

namespace megset {

/// A worker thread. The handle's end waits for the worker's, so that no worker outlives what it works on.
class CWinThread
{
public:
    explicit CWinThread(std::function<unsigned()> work);
    CWinThread(const CWinThread&) = delete;
    CWinThread& operator=(const CWinThread&) = delete;
    ~CWinThread();

    /// Waits for the worker, and gives its result. An exception that left the worker is raised here, once.
    unsigned wait();

private:
    void run(const std::function<unsigned()>& work) noexcept;

    unsigned m_nResult = 0;
    std::exception_ptr m_pFault;
    std::thread m_thread; // last: it works on the members above
};

/// Runs `work` on a thread of its own. Null when no thread can be had.
[[nodiscard]] std::unique_ptr<CWinThread> AfxBeginThread(std::function<unsigned()> work);
/// The same with an argument that is handed through.
[[nodiscard]] std::unique_ptr<CWinThread> AfxBeginThread(unsigned (*work)(void*), void* argument);

} // namespace megset
