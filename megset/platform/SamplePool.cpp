#include "megset/platform/SamplePool.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

#include "megset/platform/pages.h"

namespace megset {

namespace {

/// Up to whole units; 0 when that can't be counted.
std::size_t roundedUp(std::size_t bytes, std::size_t unit) noexcept
{
    if (bytes > std::numeric_limits<std::size_t>::max() - unit)
        return 0;
    return (bytes + unit - 1) / unit * unit;
}

/// Gives back the whole pages inside a block; the pages at its ends may be shared with a neighbour.
void discardInside(char* start, std::size_t bytes) noexcept
{
    const auto address = reinterpret_cast<std::uintptr_t>(start);
    const std::size_t before = roundedUp(address, pages::pageBytes) - address;
    if (bytes >= before + pages::pageBytes)
        pages::discard(start + before, (bytes - before) / pages::pageBytes * pages::pageBytes);
}

} // namespace

SamplePool::~SamplePool()
{
    for (const Region& region : m_regions)
        pages::unmap(region.start, region.bytes);
}

void* SamplePool::allocate(std::size_t bytes, bool zero) noexcept
{
    const std::size_t unit = bytes > largestInSlab ? pages::pageBytes : granuleBytes;
    const std::size_t rounded = roundedUp(std::max<std::size_t>(bytes, 1), unit);
    if (rounded == 0)
        return nullptr;
    void* address = nullptr;
    bool used = true;
    {
        const std::lock_guard lock(m_mutex);
        Block* block = takeIdle(rounded);
        if (block == nullptr) {
            makeRoomFor(rounded);
            block = makeBlock(rounded);
            used = false;
        }
        if (block == nullptr)
            return nullptr;
        address = block->address;
        ++block->region->liveBlocks;
        m_statistics.live += rounded;
        m_statistics.highWater = std::max(m_statistics.highWater, m_statistics.live);
    }
    if (zero && used) // new memory is zero already
        std::memset(address, 0, bytes);
    return address;
}

bool SamplePool::release(void* address) noexcept
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_blocks.find(address);
    if (found == m_blocks.end() || found->second.idle)
        return false;
    Block& block = found->second;
    --block.region->liveBlocks;
    m_statistics.live -= block.bytes;
    pushIdle(block);
    return true;
}

void SamplePool::releaseIdle() noexcept
{
    const std::lock_guard lock(m_mutex);
    shrinkIdleTo(0);
    m_statistics.highWater = m_statistics.live;
}

SampleMemoryStatistics SamplePool::statistics() const noexcept
{
    const std::lock_guard lock(m_mutex);
    return m_statistics;
}

SamplePool::Block* SamplePool::takeIdle(std::size_t bytes) noexcept
{
    const auto found = m_sizes.find(bytes);
    if (found == m_sizes.end() || found->second.firstIdle == nullptr)
        return nullptr;
    Block* block = found->second.firstIdle;
    unlinkIdle(*block);
    return block;
}

/// A new block; when the system has no more memory, idle memory is given up for it. Null on failure.
SamplePool::Block* SamplePool::makeBlock(std::size_t bytes) noexcept
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            if (Region* region = regionWithRoom(bytes))
                return recordBlock(*region, bytes);
        } catch (const std::bad_alloc&) {
        }
        shrinkIdleTo(0);
    }
    return nullptr;
}

SamplePool::Block* SamplePool::recordBlock(Region& region, std::size_t bytes)
{
    char* address = region.start + region.carved;
    if (region.blocks.size() == region.blocks.capacity()) // so that push_back can't fail below
        region.blocks.reserve(2 * region.blocks.size() + 1);
    SizeClass& size = m_sizes[bytes];
    Block& block = m_blocks.try_emplace(address).first->second;
    block.address = address;
    block.bytes = bytes;
    block.region = &region;
    region.blocks.push_back(&block);
    region.carved += bytes;
    ++size.blocks;
    return &block;
}

SamplePool::Region* SamplePool::regionWithRoom(std::size_t bytes)
{
    if (bytes > largestInSlab)
        return mapRegion(bytes);
    if (m_openSlab == nullptr || m_openSlab->bytes - m_openSlab->carved < bytes) {
        if (Region* slab = mapRegion(slabBytes))
            m_openSlab = slab;
        else
            return nullptr;
    }
    return m_openSlab;
}

SamplePool::Region* SamplePool::mapRegion(std::size_t bytes)
{
    m_regions.emplace_back();
    const auto region = std::prev(m_regions.end());
    region->start = static_cast<char*>(pages::map(bytes));
    if (region->start == nullptr) {
        m_regions.pop_back();
        return nullptr;
    }
    region->bytes = bytes;
    region->self = region;
    return &*region;
}

void SamplePool::pushIdle(Block& block) noexcept
{
    Block*& first = m_sizes.find(block.bytes)->second.firstIdle;
    block.idle = true;
    block.previousIdle = nullptr;
    block.nextIdle = first;
    if (first != nullptr)
        first->previousIdle = &block;
    first = &block;
    m_statistics.idle += block.bytes;
}

void SamplePool::unlinkIdle(Block& block) noexcept
{
    if (block.previousIdle != nullptr)
        block.previousIdle->nextIdle = block.nextIdle;
    else
        m_sizes.find(block.bytes)->second.firstIdle = block.nextIdle;
    if (block.nextIdle != nullptr)
        block.nextIdle->previousIdle = block.previousIdle;
    block.idle = false;
    m_statistics.idle -= block.bytes;
}

/// Drops an idle block from the books, its region's list excepted.
void SamplePool::forget(Block& block) noexcept
{
    unlinkIdle(block);
    const auto size = m_sizes.find(block.bytes);
    if (--size->second.blocks == 0)
        m_sizes.erase(size);
    m_blocks.erase(block.address);
}

void SamplePool::dropRegion(Region& region) noexcept
{
    for (Block* block : region.blocks)
        forget(*block);
    if (m_openSlab == &region)
        m_openSlab = nullptr;
    pages::unmap(region.start, region.bytes);
    m_regions.erase(region.self);
}

/// Keeps live and idle bytes together at or below the high-water mark that the request will leave.
void SamplePool::makeRoomFor(std::size_t bytes) noexcept
{
    const std::size_t live = m_statistics.live + bytes;
    shrinkIdleTo(std::max(m_statistics.highWater, live) - live);
}

void SamplePool::shrinkIdleTo(std::size_t bytes) noexcept
{
    if (m_statistics.idle <= bytes)
        return;
    dropUnusedRegions(bytes);
    discardIdleBlocks(bytes);
}

/// Regions without a live block go first: what comes back from the system then is whole huge pages again.
void SamplePool::dropUnusedRegions(std::size_t idleLimit) noexcept
{
    for (auto next = m_regions.begin(); next != m_regions.end() && m_statistics.idle > idleLimit;) {
        Region& region = *next++;
        if (region.liveBlocks == 0)
            dropRegion(region);
    }
}

/// The addresses stay reserved until the rest of their slab is free, too.
void SamplePool::discardIdleBlocks(std::size_t idleLimit) noexcept
{
    for (auto region = m_regions.begin(); region != m_regions.end() && m_statistics.idle > idleLimit; ++region) {
        const auto kept = std::partition(region->blocks.begin(), region->blocks.end(),
                                         [](const Block* block) { return !block->idle; });
        while (region->blocks.end() != kept && m_statistics.idle > idleLimit) {
            Block* block = region->blocks.back();
            region->blocks.pop_back();
            discardInside(block->address, block->bytes);
            forget(*block);
        }
    }
}

} // namespace megset
