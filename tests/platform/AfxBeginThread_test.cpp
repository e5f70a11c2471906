#include "megset/platform/AfxBeginThread.h"

#include "megset/platform/CEvent.h"

#include <functional>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace megset::AfxBeginThread_test {
namespace {

TEST(WorkerThread, GivesItsResultTimeAndAgain)
{
    const auto worker = AfxBeginThread([] { return 42U; });
    ASSERT_NE(worker, nullptr);
    EXPECT_EQ(worker->wait(), 42U);
    EXPECT_EQ(worker->wait(), 42U);
}

TEST(WorkerThread, RunsOnAThreadOfItsOwn)
{
    std::thread::id id;
    AfxBeginThread([&] {
        id = std::this_thread::get_id();
        return 0U;
    })->wait();
    EXPECT_NE(id, std::this_thread::get_id());
}

TEST(WorkerThread, TakesAFunctionAndItsArgument)
{
    int number = 5;
    const auto worker = AfxBeginThread(
        [](void* argument) {
            auto& value = *static_cast<int*>(argument);
            value *= 2;
            return 7U;
        },
        &number);
    ASSERT_NE(worker, nullptr);
    EXPECT_EQ(worker->wait(), 7U);
    EXPECT_EQ(number, 10);
}

TEST(WorkerThread, RaisesTheExceptionThatLeftTheWorkOnce)
{
    const auto worker = AfxBeginThread([]() -> unsigned { throw std::runtime_error("no"); });
    EXPECT_THROW(worker->wait(), std::runtime_error);
    EXPECT_EQ(worker->wait(), 0U);
}

TEST(WorkerThread, AnExceptionThatNobodyAskedForIsDropped)
{
    EXPECT_NO_THROW(static_cast<void>(AfxBeginThread([]() -> unsigned { throw 1; })));
}

TEST(WorkerThread, TheHandlesEndWaitsForTheWork)
{
    CEvent mayEnd;
    bool done = false;
    {
        const auto worker = AfxBeginThread([&] {
            mayEnd.Lock();
            done = true;
            return 0U;
        });
        mayEnd.SetEvent();
    }
    EXPECT_TRUE(done);
}

TEST(WorkerThread, WorkThatIsNoFunctionRaisesWhereItIsWaitedFor)
{
    EXPECT_THROW(AfxBeginThread(std::function<unsigned()>())->wait(), std::bad_function_call);
    EXPECT_THROW(AfxBeginThread(nullptr, nullptr)->wait(), std::bad_function_call);
}

} // namespace
} // namespace megset::AfxBeginThread_test
