#include "megset/platform/stopRequest.h"

#include "megset/platform/CFile.h"
#include "tests/kit/TemporaryFolder.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <gtest/gtest.h>

namespace megset::posix_stopRequest_test {

namespace {

constexpr unsigned toWrite = CFile::modeCreate | CFile::modeWrite;

// What holds in a process that was asked to end; it must not be this one, whose other tests want to write.
[[noreturn]] void writeAfterARequest(const CString& path)
{
    CFile begun(path + "a", toWrite);
    begun.Write("x", 1);
    const StopSignals signals;
    std::raise(SIGTERM);
    std::raise(SIGTERM); // some send it twice at once
    int faults = isStopRequested() && stopSignal() == SIGTERM ? 0 : 1;
    CFile made;
    faults += made.Open(path + "b", toWrite) ? 2 : 0;
    try {
        begun.Write("y", 1);
        faults += 4;
    } catch (const CFileException&) {
    }
    try {
        endWhenAsked();
        faults += 8;
    } catch (const std::runtime_error&) {
    }
    CFile read;
    faults += read.Open(path + "a", CFile::modeRead) && read.GetLength() == 1 ? 0 : 16;
    std::_Exit(faults);
}

TEST(StopRequest, FromThenOnNothingIsWritten)
{
    const TemporaryFolder folder;
    EXPECT_EXIT(writeAfterARequest(folder.path()), testing::ExitedWithCode(0), "");
    EXPECT_FALSE(folder.has("b"));
}

TEST(StopRequest, SignalEndsTheProcessWhereNobodyWaitsForIt)
{
    EXPECT_EXIT(
        {
            {
                const StopSignals signals;
                const StopSignals nested;
            }
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(StopRequest, IgnoredSignalStaysIgnored)
{
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            const StopSignals signals;
            std::raise(SIGHUP);
            std::_Exit(isStopRequested() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(StopRequest, EndBySignalIsSeenAsTheSignal)
{
    EXPECT_EXIT(
        {
            const StopSignals signals;
            endBySignal(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

} // namespace

} // namespace megset::posix_stopRequest_test
