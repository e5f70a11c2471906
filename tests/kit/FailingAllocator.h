// Makes the allocations of platform/memory fail on demand.
#pragma once

#include <cstdint>

#include <gtest/gtest.h>

#include "megset/platform/memory.h"

namespace megset {

/// While it lives, the n-th allocation from its construction on (counted from 1) fails: tryNew, tryNewArray,
/// tryNewSamples and their kin. n = 0 fails none and only counts. The one made last counts; at its end the one before
/// goes on.
class FailingAllocator
{
public:
    enum class Failing
    {
        Once,
        FromThenOn
    };

    explicit FailingAllocator(std::int64_t n, Failing failing = Failing::Once) noexcept;
    ~FailingAllocator();
    FailingAllocator(const FailingAllocator&) = delete;
    FailingAllocator& operator=(const FailingAllocator&) = delete;

    std::int64_t calls() const noexcept;    ///< allocations asked for so far
    std::int64_t failures() const noexcept; ///< of these, made to fail

private:
    struct State
    {
        std::int64_t failAt = 0;
        Failing failing = Failing::Once;
        std::int64_t calls = 0;
        std::int64_t failures = 0;
    };

    static bool mayAllocate(std::size_t bytes) noexcept;
    static State& current() noexcept;

    State m_outer;
    AllocationHook m_outerHook;
};

/// Runs `body` with its 1st, 2nd, ... allocation failing, alone or with all that follow, until a run goes through
/// without a failure. Returns how many failures were tried.
template <class Body>
std::int64_t forEachAllocationFailure(Body&& body, FailingAllocator::Failing failing = FailingAllocator::Failing::Once)
{
    constexpr std::int64_t tooMany = 1'000'000;
    for (std::int64_t n = 1; n <= tooMany; ++n) {
        SCOPED_TRACE(::testing::Message() << "allocation " << n << " fails");
        const FailingAllocator failAt(n, failing);
        body();
        if (failAt.failures() == 0)
            return n - 1;
    }
    ADD_FAILURE() << "no run without a failing allocation";
    return tooMany;
}

} // namespace megset
