#include "megset/platform/CEvent.h"

#include "megset/platform/AfxBeginThread.h"

#include <atomic>
#include <chrono>

#include <gtest/gtest.h>

namespace megset::CEvent_test {
namespace {

using namespace std::chrono_literals;

TEST(EventBetweenThreads, IsUnsetAndAutomaticUnlessTold)
{
    CEvent event;
    EXPECT_FALSE(event.Lock(0ms));
    EXPECT_EQ(event.SetEvent(), 1);
    EXPECT_TRUE(event.Lock(0ms));
    EXPECT_FALSE(event.Lock(0ms)) << "the first wait has unset it";
}

TEST(EventBetweenThreads, MayBeSetFromItsStart)
{
    CEvent event(true);
    event.Lock();
    EXPECT_FALSE(event.Lock(0ms));
}

TEST(EventBetweenThreads, AManualOneStaysSetUntilItIsReset)
{
    CEvent event(false, true);
    event.SetEvent();
    event.Lock();
    EXPECT_TRUE(event.Lock(0ms));
    EXPECT_EQ(event.ResetEvent(), 1);
    EXPECT_FALSE(event.Lock(0ms));
}

TEST(EventBetweenThreads, SetTwiceLetsOneThroughOnly)
{
    CEvent event;
    event.SetEvent();
    event.SetEvent();
    EXPECT_TRUE(event.Lock(0ms));
    EXPECT_FALSE(event.Lock(0ms));
}

TEST(EventBetweenThreads, WakesAThreadThatWaits)
{
    CEvent event;
    CEvent answered;
    const auto worker = AfxBeginThread([&] {
        event.Lock();
        answered.SetEvent();
        return 0U;
    });
    ASSERT_NE(worker, nullptr);
    event.SetEvent();
    EXPECT_TRUE(answered.Lock(60s));
}

TEST(EventBetweenThreads, AManualOneWakesAllThatWait)
{
    CEvent event(false, true);
    std::atomic<int> woken = 0;
    {
        const auto wait = [&] {
            event.Lock();
            ++woken;
            return 0U;
        };
        const auto first = AfxBeginThread(wait);
        const auto second = AfxBeginThread(wait);
        event.SetEvent();
    }
    EXPECT_EQ(woken, 2);
}

TEST(EventBetweenThreads, AnAutomaticOneWakesAsManyAsItIsSet)
{
    CEvent event;
    CEvent passed;
    const auto wait = [&] {
        event.Lock();
        passed.SetEvent();
        return 0U;
    };
    const auto first = AfxBeginThread(wait);
    const auto second = AfxBeginThread(wait);
    event.SetEvent();
    EXPECT_TRUE(passed.Lock(60s));
    EXPECT_FALSE(passed.Lock(20ms)) << "the other still waits";
    event.SetEvent();
    EXPECT_TRUE(passed.Lock(60s));
}

} // namespace
} // namespace megset::CEvent_test
