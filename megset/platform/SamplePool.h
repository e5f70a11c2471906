// Keeps freed sample arrays for the next trial of the same shape, on huge pages.
#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace megset {

/// Bytes of sample memory, every array rounded up to the pool's granule.
struct SampleMemoryStatistics
{
    std::size_t live = 0;      ///< handed out
    std::size_t idle = 0;      ///< freed and kept for reuse
    std::size_t highWater = 0; ///< most that was live at once since the last `releaseIdle`
};

/// Blocks carved from slabs or, when large, mapped alone. A freed block stays idle until a request of the same rounded
/// size takes it. Live and idle bytes together never exceed the high-water mark of the live ones: a
/// request that would exceed it makes the pool give idle memory back first. Safe to use from several threads.
class SamplePool
{
public:
    static constexpr std::size_t granuleBytes = 512; ///< every block's size and address is a multiple of it
    static constexpr std::size_t slabBytes = std::size_t{16} << 20;
    static constexpr std::size_t largestInSlab = slabBytes / 4;

    SamplePool() = default;
    ~SamplePool(); ///< Unmaps everything; no block may be in use any more.
    SamplePool(const SamplePool&) = delete;
    SamplePool& operator=(const SamplePool&) = delete;

    /// A block of at least `bytes`; all zero when `zero` is set. Null on failure.
    void* allocate(std::size_t bytes, bool zero) noexcept;

    /// Takes a block back. False, and nothing done, when the address is not a live block of this pool.
    bool release(void* address) noexcept;

    /// Gives all idle memory back to the system and lowers the high-water mark to what is live.
    void releaseIdle() noexcept;

    SampleMemoryStatistics statistics() const noexcept;

private:
    struct Block;

    /// One mapping: a slab that blocks are carved from front to back, or the place of a single large block.
    struct Region
    {
        char* start = nullptr;
        std::size_t bytes = 0;
        std::size_t carved = 0; ///< bytes handed out so far; a block that was given back leaves a hole
        std::size_t liveBlocks = 0;
        std::vector<Block*> blocks; ///< live and idle
        std::list<Region>::iterator self;
    };

    struct Block
    {
        char* address = nullptr;
        std::size_t bytes = 0;
        Region* region = nullptr;
        bool idle = false;
        Block* previousIdle = nullptr; ///< neighbours in the list of idle blocks of the same size
        Block* nextIdle = nullptr;
    };

    /// All blocks of one size. Made with the first of them, so that freeing a block needs no memory.
    struct SizeClass
    {
        Block* firstIdle = nullptr;
        std::size_t blocks = 0;
    };

    Block* takeIdle(std::size_t bytes) noexcept;
    Block* makeBlock(std::size_t bytes) noexcept;
    Block* recordBlock(Region& region, std::size_t bytes);
    Region* regionWithRoom(std::size_t bytes);
    Region* mapRegion(std::size_t bytes);
    void pushIdle(Block& block) noexcept;
    void unlinkIdle(Block& block) noexcept;
    void forget(Block& block) noexcept;
    void dropRegion(Region& region) noexcept;
    void makeRoomFor(std::size_t bytes) noexcept;
    void shrinkIdleTo(std::size_t bytes) noexcept;
    void dropUnusedRegions(std::size_t idleLimit) noexcept;
    void discardIdleBlocks(std::size_t idleLimit) noexcept;

    mutable std::mutex m_mutex;
    std::list<Region> m_regions;
    std::unordered_map<const void*, Block> m_blocks;
    std::map<std::size_t, SizeClass> m_sizes;
    Region* m_openSlab = nullptr;
    SampleMemoryStatistics m_statistics;
};

} // namespace megset
