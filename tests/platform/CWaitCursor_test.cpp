#include "megset/platform/CWaitCursor.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace megset::CWaitCursor_test {
namespace {

class NoCursorHost : public ScriptedHost
{
public:
    void beginWaitCursor() override { throw std::runtime_error("no cursor"); }
    void endWaitCursor() override { ++ends; }

    int ends = 0;
};

TEST(WaitCursor, NestsAndEndsWithItsScope)
{
    ScriptedHost host;
    {
        const CWaitCursor outer;
        {
            const CWaitCursor inner;
            EXPECT_EQ(host.waitDepth(), 2);
        }
        EXPECT_EQ(host.waitDepth(), 1);
    }
    EXPECT_EQ(host.waitDepth(), 0);
    EXPECT_THAT(host.calls(), ::testing::ElementsAre("wait begin", "wait begin", "wait end", "wait end"));
}

TEST(WaitCursor, EndsWhenAnExceptionPasses)
{
    ScriptedHost host;
    EXPECT_THROW(
        {
            const CWaitCursor wait;
            throw std::runtime_error("fault");
        },
        std::runtime_error);
    EXPECT_EQ(host.waitDepth(), 0);
}

TEST(WaitCursor, AHostThatCannotBeginIsNotAskedToEnd)
{
    NoCursorHost host;
    EXPECT_NO_THROW(CWaitCursor());
    EXPECT_EQ(host.ends, 0);
}

} // namespace
} // namespace megset::CWaitCursor_test
