#include "megset/platform/pages.h"

#include <cstdint>
#include <limits>

#include <sys/mman.h>

namespace megset::pages {

namespace {

void* mapAnywhere(std::size_t bytes) noexcept
{
    void* start = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return start == MAP_FAILED ? nullptr : start;
}

std::size_t distanceToHugePage(const void* start) noexcept
{
    const auto past = static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(start) % hugePageBytes);
    return past == 0 ? 0 : hugePageBytes - past;
}

} // namespace

void* map(std::size_t bytes) noexcept
{
    if (bytes == 0 || bytes > std::numeric_limits<std::size_t>::max() - hugePageBytes)
        return nullptr;
    auto* start = static_cast<char*>(mapAnywhere(bytes + hugePageBytes));
    if (start == nullptr)
        return nullptr;
    const std::size_t before = distanceToHugePage(start);
    unmap(start, before);
    unmap(start + before + bytes, hugePageBytes - before);
#ifdef MADV_HUGEPAGE
    ::madvise(start + before, bytes, MADV_HUGEPAGE); // a wish; without it the memory is slower, not wrong
#endif
    return start + before;
}

void unmap(void* start, std::size_t bytes) noexcept
{
    if (bytes != 0)
        ::munmap(start, bytes);
}

void discard(void* start, std::size_t bytes) noexcept
{
    ::madvise(start, bytes, MADV_DONTNEED);
}

} // namespace megset::pages
