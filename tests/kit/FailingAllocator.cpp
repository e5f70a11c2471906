#include "tests/kit/FailingAllocator.h"

#include "tests/kit/tried.h"

#include <mutex>

namespace megset {

namespace {

std::mutex g_mutex;

} // namespace

FailingAllocator::State& FailingAllocator::current() noexcept
{
    static State state;
    return state;
}

FailingAllocator::FailingAllocator(std::int64_t n, Failing failing) noexcept
{
    const std::lock_guard lock(g_mutex);
    m_outer = current();
    current() = State{n, failing, 0, 0};
    m_outerHook = setAllocationHook(&FailingAllocator::mayAllocate);
}

FailingAllocator::~FailingAllocator()
{
    const std::lock_guard lock(g_mutex);
    setAllocationHook(m_outerHook);
    countTried(Tried::allocationFailure, current().failures > 0 ? 1 : 0);
    current() = m_outer;
}

std::int64_t FailingAllocator::calls() const noexcept
{
    const std::lock_guard lock(g_mutex);
    return current().calls;
}

std::int64_t FailingAllocator::failures() const noexcept
{
    const std::lock_guard lock(g_mutex);
    return current().failures;
}

bool FailingAllocator::mayAllocate(std::size_t) noexcept
{
    const std::lock_guard lock(g_mutex);
    State& state = current();
    ++state.calls;
    const bool later = state.failing == Failing::FromThenOn && state.failAt > 0 && state.calls > state.failAt;
    const bool fails = later || state.calls == state.failAt;
    state.failures += fails ? 1 : 0;
    return !fails;
}

} // namespace megset
