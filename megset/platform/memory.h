// Memory that may be refused: every function here gives null on failure and never throws std::bad_alloc.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "megset/platform/SamplePool.h"

namespace megset {

/// Asked before every allocation of this header; false makes it fail. May be called from several threads.
using AllocationHook = bool (*)(std::size_t bytes) noexcept;

/// Sets the hook (null: none) and returns the one before. For tests.
AllocationHook setAllocationHook(AllocationHook hook) noexcept;

namespace detail {

extern std::atomic<AllocationHook> allocationHook;

/// Whether the hook and the size limits let a request pass.
bool allocationAllowed(std::size_t bytes) noexcept;

/// Bytes of n elements; false when n is negative or the size does not fit.
inline bool arrayBytes(std::int64_t n, std::size_t elementBytes, std::size_t& bytes) noexcept
{
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max());
    if (n < 0 || static_cast<std::uint64_t>(n) > largest / elementBytes)
        return false;
    bytes = static_cast<std::size_t>(n) * elementBytes;
    return true;
}

} // namespace detail

/// An array of n default-initialised elements: numbers have no defined value. Null when n is negative, the byte size
/// does not fit, or there is no memory.
template <class T>
std::unique_ptr<T[]> tryNewArray(std::int64_t n)
{
    std::size_t bytes = 0;
    if (!detail::arrayBytes(n, sizeof(T), bytes) || !detail::allocationAllowed(bytes))
        return nullptr;
    try {
        return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<std::size_t>(n)]);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// As `tryNewArray`, with value-initialised elements: numbers are zero.
template <class T>
std::unique_ptr<T[]> tryNewZeroArray(std::int64_t n)
{
    std::size_t bytes = 0;
    if (!detail::arrayBytes(n, sizeof(T), bytes) || !detail::allocationAllowed(bytes))
        return nullptr;
    try {
        return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<std::size_t>(n)]());
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// One object. Null when there is no memory for it or its constructor throws std::bad_alloc; other exceptions pass.
template <class T, class... Arguments>
std::unique_ptr<T> tryNew(Arguments&&... arguments)
{
    if (!detail::allocationAllowed(sizeof(T)))
        return nullptr;
    try {
        return std::unique_ptr<T>(new (std::nothrow) T(std::forward<Arguments>(arguments)...));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// Frees sample arrays, whether they come from `tryNewSamples` or from a plain `new double[n]` that was adopted.
struct SampleDelete
{
    constexpr SampleDelete() noexcept = default;
    constexpr SampleDelete(std::default_delete<double[]>) noexcept {} // lets std::unique_ptr<double[]> convert
    void operator()(double* samples) const noexcept;
};

/// An owned array of samples.
using SampleArray = std::unique_ptr<double[], SampleDelete>;

/// Arrays of at least this many bytes come from the pool of sample memory.
inline constexpr std::size_t pooledSampleBytes = std::size_t{8} << 10;

/// An array of n samples, all zero when `zero` is set and otherwise of no defined value. Null as for `tryNewArray`.
SampleArray tryNewSamples(std::int64_t n, bool zero) noexcept;

/// Gives idle sample memory back to the system; call when a dataset is closed.
void releaseIdleSampleMemory() noexcept;

/// What the pool of sample memory holds. All zero in builds with the address sanitizer, which do without the pool.
SampleMemoryStatistics sampleMemoryStatistics() noexcept;

} // namespace megset
