#include "megset/platform/CProgresszk.h"

#include "megset/platform/CConsoleHost.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace megset::CProgresszk_test {
namespace {

using ::testing::ElementsAre;

// A host whose bars can't be shown, or fail later.
class BrokenHost : public ScriptedHost
{
public:
    void beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to) override
    {
        if (failsAtBegin)
            throw std::runtime_error("no bar");
        ScriptedHost::beginProgress(id, title, from, to);
    }
    void setProgress(int, std::int64_t) override { throw std::runtime_error("no position"); }
    void endProgress(int) override
    {
        ++ends;
        throw std::runtime_error("no end");
    }

    bool failsAtBegin = false;
    int ends = 0;
};

TEST(ProgressBar, BeginsAtItsConstructionAndEndsAtItsDestruction)
{
    ScriptedHost host;
    {
        CProgresszk bar("Checking triggers...", 0, 2);
        EXPECT_EQ(host.openBars(), 1);
        bar.setPos(0);
        bar.step();
    }
    EXPECT_EQ(host.openBars(), 0);
    EXPECT_THAT(host.calls(), ElementsAre("progress begin Checking triggers... 0..2", "progress Checking triggers... 0",
                                          "progress Checking triggers... 1", "progress end Checking triggers..."));
}

TEST(ProgressBar, BringsPositionsIntoItsRange)
{
    ScriptedHost host;
    CProgresszk bar("b", 5, 7);
    EXPECT_EQ(bar.getPos(), 5);
    bar.setPos(4);
    EXPECT_EQ(bar.getPos(), 5);
    bar.setPos(9);
    EXPECT_EQ(bar.getPos(), 7);
    bar.step();
    EXPECT_EQ(bar.getPos(), 7);
}

TEST(ProgressBar, StepsToTheEndOfTheLargestRange)
{
    ScriptedHost host;
    constexpr auto last = std::numeric_limits<std::int64_t>::max();
    CProgresszk bar("b", std::numeric_limits<std::int64_t>::min(), last);
    bar.setPos(last - 1);
    bar.step();
    bar.step();
    EXPECT_EQ(bar.getPos(), last);
}

TEST(ProgressBar, ARangeThatRunsBackwardsIsEmpty)
{
    ScriptedHost host;
    CProgresszk bar("b", 3, 1);
    bar.setPos(2);
    EXPECT_EQ(bar.getPos(), 3);
    EXPECT_EQ(host.calls().front(), "progress begin b 3..3");
}

TEST(ProgressBar, NestedBarsAreToldApart)
{
    ScriptedHost host;
    {
        CProgresszk outer("outer", 0, 2);
        CProgresszk inner("inner", 0, 2);
        outer.setPos(1);
        inner.setPos(2);
    }
    EXPECT_THAT(host.calls(), ElementsAre("progress begin outer 0..2", "progress begin inner 0..2", "progress outer 1",
                                          "progress inner 2", "progress end inner", "progress end outer"));
}

TEST(ProgressBar, GoesOnWithoutAHostThatFails)
{
    BrokenHost host;
    {
        CProgresszk bar("b", 0, 3);
        EXPECT_NO_THROW(bar.setPos(2));
        EXPECT_EQ(bar.getPos(), 2);
    }
    EXPECT_EQ(host.ends, 1);
}

TEST(ProgressBar, DoesNotEndWhatTheHostDidNotBegin)
{
    BrokenHost host;
    host.failsAtBegin = true;
    {
        CProgresszk bar("b", 0, 3);
        bar.step();
        EXPECT_EQ(bar.getPos(), 1);
    }
    EXPECT_EQ(host.ends, 0);
}

TEST(ProgressBar, StaysWithTheHostThatBeganIt)
{
    ScriptedHost first;
    CProgresszk bar("b", 0, 3);
    ScriptedHost second;
    bar.setPos(1);
    EXPECT_EQ(first.calls().back(), "progress b 1");
    EXPECT_TRUE(second.calls().empty());
}

} // namespace
} // namespace megset::CProgresszk_test
