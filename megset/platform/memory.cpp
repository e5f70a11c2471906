#include "megset/platform/memory.h"

#include "megset/platform/sanitizers.h"

namespace megset {

namespace {

constexpr bool addressSanitizer = MEGSET_ADDRESS_SANITIZER != 0;

/// Sanitizers end the program on sizes beyond their own limit, and fill shadow memory for the others.
constexpr std::size_t largestRequest =
    MEGSET_ANY_SANITIZER ? std::size_t{8} << 30 : static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());

/// Never destroyed: arrays may be freed by destructors that run after main.
SamplePool& samplePool() noexcept
{
    alignas(SamplePool) static std::byte storage[sizeof(SamplePool)];
    static auto* const pool = ::new (static_cast<void*>(storage)) SamplePool;
    return *pool;
}

/// Blocks of the pool are aligned, arrays of the heap seldom are as much: mostly the address tells without the pool.
bool mayBePooled(const double* samples) noexcept
{
    return !addressSanitizer && reinterpret_cast<std::uintptr_t>(samples) % SamplePool::granuleBytes == 0;
}

} // namespace

namespace detail {

constinit std::atomic<AllocationHook> allocationHook{nullptr};

bool allocationAllowed(std::size_t bytes) noexcept
{
    const AllocationHook hook = allocationHook.load(std::memory_order_acquire);
    return (hook == nullptr || hook(bytes)) && bytes <= largestRequest;
}

} // namespace detail

AllocationHook setAllocationHook(AllocationHook hook) noexcept
{
    return detail::allocationHook.exchange(hook, std::memory_order_acq_rel);
}

void SampleDelete::operator()(double* samples) const noexcept
{
    if (mayBePooled(samples) && samplePool().release(samples))
        return;
    std::default_delete<double[]>()(samples);
}

SampleArray tryNewSamples(std::int64_t n, bool zero) noexcept
{
    std::size_t bytes = 0;
    if (!detail::arrayBytes(n, sizeof(double), bytes) || !detail::allocationAllowed(bytes))
        return nullptr;
    const auto count = static_cast<std::size_t>(n);
    if (addressSanitizer || bytes < pooledSampleBytes)
        return SampleArray(zero ? new (std::nothrow) double[count]() : new (std::nothrow) double[count]);
    return SampleArray(static_cast<double*>(samplePool().allocate(bytes, zero)));
}

void releaseIdleSampleMemory() noexcept
{
    samplePool().releaseIdle();
}

SampleMemoryStatistics sampleMemoryStatistics() noexcept
{
    return samplePool().statistics();
}

} // namespace megset
