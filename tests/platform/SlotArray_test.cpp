#include "megset/platform/SlotArray.h"

#include "tests/kit/FailingAllocator.h"

#include <cstdint>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace megset::SlotArray_test {
namespace {

// An object that tells how many of its kind live.
struct Counted
{
    explicit Counted(int number = 0) : m_number(number) { ++s_living; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --s_living; }

    int m_number;
    static inline int s_living = 0;
};

SlotArray<Counted> filled(int count)
{
    SlotArray<Counted> slots;
    EXPECT_EQ(slots.allocate(count), 1);
    for (int i = 0; i < count; ++i)
        slots.set(i, std::make_unique<Counted>(i));
    return slots;
}

class Slots : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(Counted::s_living, 0); }
};

TEST_F(Slots, AreAbsentAtFirst)
{
    const SlotArray<Counted> slots;
    EXPECT_FALSE(slots);
    EXPECT_TRUE(slots == nullptr);
    EXPECT_EQ(slots.size(), 0);
    EXPECT_EQ(slots[0], nullptr);
}

TEST_F(Slots, AreEmptyPlacesOnceAllocated)
{
    SlotArray<Counted> slots;
    EXPECT_EQ(slots.allocate(3), 1);
    EXPECT_TRUE(slots);
    EXPECT_TRUE(slots != nullptr);
    EXPECT_EQ(slots.size(), 3);
    for (int i = -1; i <= 3; ++i)
        EXPECT_EQ(slots[i], nullptr);
    EXPECT_EQ(slots.allocate(0), 1);
    EXPECT_TRUE(slots) << "an array of no places is there";
    EXPECT_EQ(slots.size(), 0);
}

TEST_F(Slots, OwnWhatIsSetAndEndWhatWasThere)
{
    auto slots = filled(2);
    Counted* object = slots.set(1, std::make_unique<Counted>(7));
    EXPECT_EQ(slots[1], object);
    EXPECT_EQ(slots[1]->m_number, 7);
    EXPECT_EQ(Counted::s_living, 2);
    EXPECT_EQ(slots.set(1, nullptr), nullptr);
    EXPECT_EQ(Counted::s_living, 1);
}

TEST_F(Slots, OutsideTheArraySetEndsTheObject)
{
    auto slots = filled(2);
    EXPECT_EQ(slots.set(2, std::make_unique<Counted>(7)), nullptr);
    EXPECT_EQ(slots.set(-1, std::make_unique<Counted>(7)), nullptr);
    EXPECT_EQ(slots.set(INT64_MAX, std::make_unique<Counted>(7)), nullptr);
    EXPECT_EQ(Counted::s_living, 2);
}

TEST_F(Slots, ReleaseLeavesAnEmptyPlace)
{
    auto slots = filled(2);
    const auto object = slots.release(0);
    EXPECT_EQ(object->m_number, 0);
    EXPECT_EQ(slots[0], nullptr);
    EXPECT_EQ(slots.size(), 2);
    EXPECT_EQ(slots.release(0), nullptr);
    EXPECT_EQ(slots.release(-1), nullptr);
    EXPECT_EQ(slots.release(2), nullptr);
}

TEST_F(Slots, RemoveMovesTheLaterOnesUp)
{
    auto slots = filled(4);
    slots.set(2, nullptr);
    slots.removeAt(1);
    EXPECT_EQ(slots.size(), 3);
    EXPECT_EQ(slots[0]->m_number, 0);
    EXPECT_EQ(slots[1], nullptr);
    EXPECT_EQ(slots[2]->m_number, 3);
    EXPECT_EQ(slots[3], nullptr);
    EXPECT_EQ(Counted::s_living, 2);
    slots.removeAt(2);
    slots.removeAt(2);
    slots.removeAt(-1);
    EXPECT_EQ(slots.size(), 2);
    EXPECT_EQ(Counted::s_living, 1);
}

TEST_F(Slots, ResizeKeepsTheObjectsAtTheirPlaces)
{
    auto slots = filled(3);
    const Counted* second = slots[1];
    EXPECT_EQ(slots.resize(5), 1);
    EXPECT_EQ(slots.size(), 5);
    EXPECT_EQ(slots[1], second);
    EXPECT_EQ(slots[4], nullptr);
    EXPECT_EQ(slots.resize(2), 1);
    EXPECT_EQ(slots[1], second);
    EXPECT_EQ(Counted::s_living, 2);
    SlotArray<Counted> absent;
    EXPECT_EQ(absent.resize(1), 1);
    EXPECT_EQ(absent.size(), 1);
}

TEST_F(Slots, ResetEndsAll)
{
    auto slots = filled(3);
    slots.reset();
    EXPECT_FALSE(slots);
    EXPECT_EQ(slots.size(), 0);
    EXPECT_EQ(Counted::s_living, 0);
}

TEST_F(Slots, WithoutMemoryAllocateLeavesNoArrayAndResizeLeavesAllAsItWas)
{
    auto slots = filled(3);
    {
        const FailingAllocator failAt(1);
        EXPECT_EQ(slots.resize(10), 0);
    }
    EXPECT_EQ(slots.size(), 3);
    EXPECT_EQ(slots[2]->m_number, 2);
    for (const std::int64_t count : {INT64_MAX, std::int64_t{1} << 61, std::int64_t{-1}})
        EXPECT_EQ(slots.resize(count), 0) << count;
    EXPECT_EQ(slots.size(), 3);

    const FailingAllocator failAt(1);
    EXPECT_EQ(slots.allocate(2), 0);
    EXPECT_FALSE(slots);
    EXPECT_EQ(slots.size(), 0);
    EXPECT_EQ(Counted::s_living, 0);
}

TEST_F(Slots, MovingLeavesAnAbsentArray)
{
    auto slots = filled(3);
    const SlotArray<Counted> taken = std::move(slots);
    EXPECT_EQ(taken.size(), 3);
    EXPECT_FALSE(slots);
    EXPECT_EQ(slots.size(), 0);
    EXPECT_EQ(slots[0], nullptr);
    EXPECT_EQ(slots.set(0, std::make_unique<Counted>(1)), nullptr);

    auto target = filled(2);
    auto source = filled(1);
    target = std::move(source);
    EXPECT_EQ(target.size(), 1);
    EXPECT_EQ(source.size(), 0);
    EXPECT_EQ(Counted::s_living, 4);
}

} // namespace
} // namespace megset::SlotArray_test
