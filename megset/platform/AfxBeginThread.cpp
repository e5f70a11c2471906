#include "megset/platform/AfxBeginThread.h"

#include <system_error>
#include <utility>

namespace megset {

CWinThread::CWinThread(std::function<unsigned()> work) : m_thread([this, task = std::move(work)] { run(task); }) {}

CWinThread::~CWinThread()
{
    if (m_thread.joinable())
        m_thread.join();
}

unsigned CWinThread::wait()
{
    if (m_thread.joinable())
        m_thread.join();
    if (m_pFault)
        std::rethrow_exception(std::exchange(m_pFault, nullptr));
    return m_nResult;
}

void CWinThread::run(const std::function<unsigned()>& work) noexcept
{
    try {
        m_nResult = work();
    } catch (...) {
        m_pFault = std::current_exception();
    }
}

std::unique_ptr<CWinThread> AfxBeginThread(std::function<unsigned()> work)
{
    try {
        return std::make_unique<CWinThread>(std::move(work));
    } catch (const std::system_error&) {
        return nullptr;
    }
}

std::unique_ptr<CWinThread> AfxBeginThread(unsigned (*work)(void*), void* argument)
{
    return AfxBeginThread(work == nullptr ? std::function<unsigned()>()
                                          : std::function<unsigned()>([work, argument] { return work(argument); }));
}

} // namespace megset
