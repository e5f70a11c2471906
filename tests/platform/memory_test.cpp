#include "megset/platform/memory.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "megset/platform/pages.h"
#include "megset/platform/sanitizers.h"
#include "tests/kit/FailingAllocator.h"

namespace megset::memory_test {

namespace {

constexpr std::int64_t manySamples = 100'000; // enough for the pool
constexpr std::size_t blockBytes = std::size_t{113} * pages::pageBytes;

struct Thrower
{
    explicit Thrower(bool memory)
    {
        if (memory)
            throw std::bad_alloc();
        throw std::runtime_error("not for lack of memory");
    }
};

struct FailingElement
{
    FailingElement() { throw std::bad_alloc(); }
};

bool isZero(const void* block, std::size_t bytes)
{
    const auto* first = static_cast<const char*>(block);
    return std::all_of(first, first + bytes, [](char c) { return c == 0; });
}

/// Takes `count` blocks and writes into each.
std::vector<void*> takeBlocks(SamplePool& pool, std::size_t count, std::size_t bytes)
{
    std::vector<void*> blocks;
    for (std::size_t k = 0; k < count; ++k) {
        blocks.push_back(pool.allocate(bytes, false));
        if (blocks.back() != nullptr)
            std::memset(blocks.back(), 0x55, bytes);
    }
    return blocks;
}

void releaseBlocks(SamplePool& pool, const std::vector<void*>& blocks)
{
    for (void* block : blocks)
        EXPECT_TRUE(pool.release(block));
}

void expectBound(const SamplePool& pool)
{
    const SampleMemoryStatistics s = pool.statistics();
    EXPECT_LE(s.live + s.idle, s.highWater);
}

} // namespace

TEST(PlatformMemory, ArraysHaveTheirElements)
{
    const auto x = tryNewZeroArray<int>(5);
    ASSERT_NE(x, nullptr);
    EXPECT_TRUE(std::all_of(x.get(), x.get() + 5, [](int v) { return v == 0; }));
    const auto names = tryNewArray<std::string>(3);
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(names[2], "");
    EXPECT_NE(tryNewArray<double>(0), nullptr);
}

TEST(PlatformMemory, SizesThatCanNotBeFail)
{
    for (const std::int64_t n :
         {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(), std::int64_t{1} << 60, std::int64_t{1} << 61,
          (std::int64_t{1} << 61) + 1, std::int64_t{1} << 62, std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(tryNewArray<double>(n), nullptr) << n;
        EXPECT_EQ(tryNewZeroArray<double>(n), nullptr) << n;
        EXPECT_EQ(tryNewSamples(n, true), nullptr) << n;
        EXPECT_EQ(tryNewSamples(n, false), nullptr) << n;
    }
    EXPECT_EQ(tryNewArray<char>(-1), nullptr);
    EXPECT_EQ(tryNewArray<char>(std::numeric_limits<std::int64_t>::max()), nullptr);
}

TEST(PlatformMemory, LackOfMemoryInAConstructorGivesNull)
{
    EXPECT_EQ(tryNew<Thrower>(true), nullptr);
    EXPECT_EQ(tryNewArray<FailingElement>(3), nullptr);
    EXPECT_THROW(tryNew<Thrower>(false), std::runtime_error);
}

TEST(PlatformMemory, OneObjectTakesItsArguments)
{
    const auto text = tryNew<std::string>(std::size_t{3}, 'x');
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(*text, "xxx");
}

TEST(PlatformMemory, SamplesAreZeroWhenAskedForEvenInReusedMemory)
{
    for (int round = 0; round < 3; ++round) {
        for (const std::int64_t n : {std::int64_t{1}, std::int64_t{100}, manySamples, std::int64_t{3'000'000}}) {
            SampleArray x = tryNewSamples(n, true);
            ASSERT_NE(x, nullptr);
            EXPECT_TRUE(isZero(x.get(), static_cast<std::size_t>(n) * sizeof(double))) << n;
            std::fill_n(x.get(), n, 1.5);
        }
    }
}

TEST(PlatformMemory, AnEmptySampleArrayIsNotNull)
{
    EXPECT_NE(tryNewSamples(0, true), nullptr);
    EXPECT_NE(tryNewSamples(0, false), nullptr);
}

TEST(PlatformMemory, SampleArraysAdoptPlainArrays)
{
    static_assert(std::is_empty_v<SampleDelete>);
    static_assert(sizeof(SampleArray) == sizeof(double*));
    for (const std::size_t n : {std::size_t{3}, std::size_t{manySamples}, std::size_t{10'000'000}}) {
        SampleArray adopted;
        adopted.reset(new double[n]);
        adopted[n - 1] = 1.0;
        adopted = std::make_unique<double[]>(n);
        adopted[n - 1] = 2.0;
        adopted = tryNewSamples(static_cast<std::int64_t>(n), false);
        ASSERT_NE(adopted, nullptr);
        adopted[n - 1] = 3.0;
    }
}

TEST(PlatformMemory, FreedSamplesAreReusedAndGivenBack)
{
    if (MEGSET_ADDRESS_SANITIZER)
        GTEST_SKIP() << "the address sanitizer does without the pool";
    releaseIdleSampleMemory();
    const SampleMemoryStatistics before = sampleMemoryStatistics();
    EXPECT_EQ(before.idle, 0U);
    SampleArray x = tryNewSamples(manySamples, false);
    const double* address = x.get();
    const SampleMemoryStatistics held = sampleMemoryStatistics();
    EXPECT_GE(held.live - before.live, static_cast<std::size_t>(manySamples) * sizeof(double));
    x.reset();
    EXPECT_EQ(sampleMemoryStatistics().idle, held.live - before.live);
    x = tryNewSamples(manySamples - 1, false); // the same size after rounding
    EXPECT_EQ(x.get(), address);
    x.reset();
    releaseIdleSampleMemory();
    EXPECT_EQ(sampleMemoryStatistics().idle, 0U);
    EXPECT_EQ(sampleMemoryStatistics().highWater, before.live);
}

TEST(PlatformMemory, EveryFunctionAsksTheHook)
{
    const FailingAllocator failAll(1, FailingAllocator::Failing::FromThenOn);
    EXPECT_EQ(tryNew<int>(1), nullptr);
    EXPECT_EQ(tryNewArray<int>(1), nullptr);
    EXPECT_EQ(tryNewZeroArray<int>(1), nullptr);
    EXPECT_EQ(tryNewSamples(1, true), nullptr);
    EXPECT_EQ(tryNewSamples(manySamples, true), nullptr);
    EXPECT_EQ(failAll.calls(), 5);
    EXPECT_EQ(failAll.failures(), 5);
}

TEST(FailingAllocatorKit, FailsTheNthCallOnce)
{
    const FailingAllocator failAt(2);
    EXPECT_NE(tryNew<int>(1), nullptr);
    EXPECT_EQ(tryNew<int>(1), nullptr);
    EXPECT_NE(tryNew<int>(1), nullptr);
    EXPECT_EQ(failAt.calls(), 3);
    EXPECT_EQ(failAt.failures(), 1);
}

TEST(FailingAllocatorKit, ZeroOnlyCounts)
{
    const FailingAllocator counter(0, FailingAllocator::Failing::FromThenOn);
    EXPECT_NE(tryNew<int>(1), nullptr);
    EXPECT_EQ(counter.calls(), 1);
    EXPECT_EQ(counter.failures(), 0);
}

TEST(FailingAllocatorKit, TheOuterOneGoesOnAfterTheInnerOne)
{
    const FailingAllocator outer(2);
    EXPECT_NE(tryNew<int>(1), nullptr);
    {
        const FailingAllocator inner(1);
        EXPECT_EQ(tryNew<int>(1), nullptr);
    }
    EXPECT_EQ(tryNew<int>(1), nullptr);
    EXPECT_EQ(outer.failures(), 1);
}

TEST(FailingAllocatorKit, NothingFailsAfterItsEnd)
{
    {
        const FailingAllocator failAll(1, FailingAllocator::Failing::FromThenOn);
    }
    EXPECT_NE(tryNew<int>(1), nullptr);
}

TEST(FailingAllocatorKit, EachAllocationFailsOnce)
{
    std::vector<int> done;
    const std::int64_t tried = forEachAllocationFailure([&] {
        int made = 0;
        for (int k = 0; k < 3; ++k)
            made += tryNew<int>(k) != nullptr ? 1 : 0;
        done.push_back(made);
    });
    EXPECT_EQ(tried, 3);
    EXPECT_EQ(done, (std::vector<int>{2, 2, 2, 3}));
}

TEST(PlatformSamplePool, BlocksAreAlignedAndDoNotOverlap)
{
    SamplePool pool;
    std::vector<char*> starts;
    for (std::size_t k = 0; k < 100; ++k) {
        auto* block = static_cast<char*>(pool.allocate(blockBytes, true));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % SamplePool::granuleBytes, 0U);
        EXPECT_TRUE(isZero(block, blockBytes));
        std::memset(block, 1, blockBytes);
        starts.push_back(block);
    }
    std::sort(starts.begin(), starts.end());
    for (std::size_t k = 1; k < starts.size(); ++k)
        EXPECT_GE(starts[k] - starts[k - 1], static_cast<std::ptrdiff_t>(blockBytes));
    EXPECT_EQ(pool.statistics().live, 100 * blockBytes);
}

TEST(PlatformSamplePool, LargeBlocksBeginAtHugePages)
{
    SamplePool pool;
    const void* block = pool.allocate(40'000'000, false);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % pages::hugePageBytes, 0U);
}

TEST(PlatformSamplePool, TheNextTrialOfTheSameShapeGetsTheSameMemory)
{
    SamplePool pool;
    std::vector<void*> first = takeBlocks(pool, 80, blockBytes);
    releaseBlocks(pool, first);
    EXPECT_EQ(pool.statistics().live, 0U);
    EXPECT_EQ(pool.statistics().idle, 80 * blockBytes);
    std::vector<void*> second = takeBlocks(pool, 80, blockBytes);
    std::sort(first.begin(), first.end());
    std::sort(second.begin(), second.end());
    EXPECT_EQ(first, second);
    EXPECT_EQ(pool.statistics().idle, 0U);
    EXPECT_EQ(pool.statistics().highWater, 80 * blockBytes);
}

TEST(PlatformSamplePool, LiveAndIdleNeverExceedTheHighWaterMark)
{
    SamplePool pool;
    std::vector<std::pair<void*, std::size_t>> held;
    std::minstd_rand random(3);
    for (int step = 0; step < 3000; ++step) {
        if (held.size() < 40 && random() % 2 == 0) {
            const std::size_t bytes = (1 + random() % 12) * 50'000;
            void* block = pool.allocate(bytes, true);
            ASSERT_NE(block, nullptr);
            EXPECT_TRUE(isZero(block, bytes));
            std::memset(block, static_cast<int>(bytes % 251) + 1, bytes);
            held.emplace_back(block, bytes);
        } else if (!held.empty()) {
            std::swap(held[random() % held.size()], held.back());
            const auto [block, bytes] = held.back();
            const auto* content = static_cast<const unsigned char*>(block);
            EXPECT_TRUE(std::all_of(content, content + bytes, [b = bytes % 251 + 1](unsigned c) { return c == b; }));
            EXPECT_TRUE(pool.release(block));
            held.pop_back();
        }
        expectBound(pool);
    }
    for (const auto& [block, bytes] : held)
        EXPECT_TRUE(pool.release(block));
    EXPECT_EQ(pool.statistics().live, 0U);
}

TEST(PlatformSamplePool, AnotherShapeTakesThePlaceOfIdleMemory)
{
    SamplePool pool;
    releaseBlocks(pool, takeBlocks(pool, 80, blockBytes));
    const std::vector<void*> other = takeBlocks(pool, 40, 2 * blockBytes);
    EXPECT_EQ(pool.statistics().live, 80 * blockBytes);
    EXPECT_EQ(pool.statistics().idle, 0U);
    EXPECT_EQ(pool.statistics().highWater, 80 * blockBytes);
    releaseBlocks(pool, other);
}

TEST(PlatformSamplePool, IdleBlocksBesideLiveOnesAreGivenBackToo)
{
    SamplePool pool;
    const std::vector<void*> blocks = takeBlocks(pool, 60, blockBytes);
    for (std::size_t k = 0; k < blocks.size(); k += 2)
        EXPECT_TRUE(pool.release(blocks[k]));
    pool.releaseIdle();
    EXPECT_EQ(pool.statistics().idle, 0U);
    EXPECT_EQ(pool.statistics().highWater, 30 * blockBytes);
    for (std::size_t k = 1; k < blocks.size(); k += 2) {
        EXPECT_EQ(static_cast<const char*>(blocks[k])[blockBytes - 1], 0x55);
        EXPECT_TRUE(pool.release(blocks[k]));
    }
    pool.releaseIdle();
    EXPECT_EQ(pool.statistics().highWater, 0U);
    const std::vector<void*> again = takeBlocks(pool, 60, blockBytes);
    EXPECT_EQ(pool.statistics().live, 60 * blockBytes);
    releaseBlocks(pool, again);
}

TEST(PlatformSamplePool, ForeignAndIdleAddressesAreRefused)
{
    SamplePool pool;
    SamplePool otherPool;
    std::vector<double> foreign(10);
    EXPECT_FALSE(pool.release(foreign.data()));
    EXPECT_FALSE(pool.release(nullptr));
    void* block = pool.allocate(blockBytes, false);
    EXPECT_FALSE(otherPool.release(block));
    EXPECT_FALSE(pool.release(static_cast<char*>(block) + pages::pageBytes));
    EXPECT_TRUE(pool.release(block));
    EXPECT_FALSE(pool.release(block));
    EXPECT_EQ(pool.statistics().idle, blockBytes);
}

TEST(PlatformSamplePool, ARequestThatTheSystemRefusesFails)
{
    SamplePool pool;
    releaseBlocks(pool, takeBlocks(pool, 3, blockBytes));
    EXPECT_EQ(pool.allocate(std::numeric_limits<std::size_t>::max(), false), nullptr);
    EXPECT_EQ(pool.allocate(std::numeric_limits<std::size_t>::max() / 2, true), nullptr);
    EXPECT_EQ(pool.statistics().live, 0U);
    EXPECT_NE(pool.allocate(blockBytes, false), nullptr);
}

TEST(PlatformSamplePool, SeveralThreadsMayUseIt)
{
    SamplePool pool;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t) {
        threads.emplace_back([&pool, t] {
            for (std::size_t round = 0; round < 300; ++round) {
                const std::size_t bytes = (1 + (round + t) % 3) * blockBytes;
                auto* block = static_cast<unsigned*>(pool.allocate(bytes, false));
                ASSERT_NE(block, nullptr);
                block[0] = t;
                block[bytes / sizeof(unsigned) - 1] = t;
                std::this_thread::yield();
                ASSERT_EQ(block[0] + block[bytes / sizeof(unsigned) - 1], 2 * t);
                ASSERT_TRUE(pool.release(block));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(pool.statistics().live, 0U);
    expectBound(pool);
}

} // namespace megset::memory_test
