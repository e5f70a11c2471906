#include "megset/platform/stopRequest.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include <signal.h>
#include <time.h>

namespace megset {
namespace {

constexpr std::array<int, 3> asking = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> caught{0};
std::atomic<std::int64_t> caughtAt{0}; // ms
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<std::int64_t>::is_always_lock_free,
              "a handler sets them");

int living = 0;
std::array<struct sigaction, asking.size()> former;

std::int64_t millisecondsNow()
{
    struct timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

// Some callers send a signal to the program and to its group: it comes twice at once, and is meant once.
extern "C" void megsetCatchSignal(int signal)
{
    constexpr std::int64_t patience = 500;
    const std::int64_t now = millisecondsNow();
    if (caught.exchange(signal) == 0)
        caughtAt.store(now);
    else if (now - caughtAt.load() > patience)
        endBySignal(signal); // when the handler is left
}

} // namespace

bool isStopRequested()
{
    return caught.load(std::memory_order_relaxed) != 0;
}

void endWhenAsked()
{
    if (isStopRequested())
        throw std::runtime_error("the program was asked to end");
}

int stopSignal()
{
    return caught.load();
}

StopSignals::StopSignals()
{
    if (living++ > 0)
        return;
    struct sigaction catching = {};
    catching.sa_handler = megsetCatchSignal;
    catching.sa_flags = 0; // without a restart: a question that waits for its answer is cut short, too
    sigemptyset(&catching.sa_mask);
    for (std::size_t i = 0; i < asking.size(); ++i)
        if (::sigaction(asking[i], nullptr, &former[i]) == 0 && former[i].sa_handler != SIG_IGN)
            ::sigaction(asking[i], &catching, nullptr);
}

StopSignals::~StopSignals()
{
    if (--living > 0)
        return;
    for (std::size_t i = 0; i < asking.size(); ++i)
        ::sigaction(asking[i], &former[i], nullptr);
}

void endBySignal(int signal)
{
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

} // namespace megset
