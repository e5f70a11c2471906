// Boxes to tick, asked for one by one on a console.

#include "megset/platform/CConsoleHost.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CConsoleHostFlags_test {
namespace {

using Flags = std::optional<std::vector<bool>>;

// Two boxes, the first one ticked; what is typed is set before.
class ConsoleFlags : public ::testing::Test
{
protected:
    Flags choose(const std::string& typed, bool inIsTerminal = true, bool errIsTerminal = true)
    {
        in.str(typed);
        CConsoleHost host({in, out, err, inIsTerminal, errIsTerminal, [] { return 80; },
                           [] { return std::chrono::steady_clock::time_point(); }},
                          true);
        return host.chooseFlags({"Channel Selection", {{"MEG Channel", true}, {"Visible", false}}});
    }

    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(ConsoleFlags, AreAskedOneByOne)
{
    EXPECT_EQ(choose("n\ny\n"), Flags({false, true}));
    EXPECT_EQ(err.str(), "megset: Channel Selection\nmegset: MEG Channel? [Y/n] megset: Visible? [y/N] ");
    EXPECT_EQ(out.str(), "");
}

TEST_F(ConsoleFlags, StayAsTheyAreWithAnEmptyLine)
{
    EXPECT_EQ(choose("\n \n"), Flags({true, false}));
}

TEST_F(ConsoleFlags, TakeYesAndNoInAnyCase)
{
    EXPECT_EQ(choose(" YES \r\nNo\n"), Flags({true, false}));
    EXPECT_EQ(choose("No\nYes\n"), Flags({false, true}));
}

TEST_F(ConsoleFlags, AskAgainForAnythingElse)
{
    EXPECT_EQ(choose("maybe\nyep\nn\ny\n"), Flags({false, true}));
}

TEST_F(ConsoleFlags, AreCancelledByTheEndOfInput)
{
    EXPECT_EQ(choose("y\n"), std::nullopt);
    EXPECT_EQ(err.str(), "megset: Channel Selection\nmegset: MEG Channel? [Y/n] megset: Visible? [y/N] cancelled\n");
}

TEST_F(ConsoleFlags, AreCancelledWhereNobodyCanBeAsked)
{
    EXPECT_EQ(choose("y\ny\n", false, true), std::nullopt);
    EXPECT_EQ(choose("y\ny\n", true, false), std::nullopt);
    EXPECT_EQ(err.str(), "megset: Channel Selection: cancelled, there is nobody to ask\n"
                         "megset: Channel Selection: cancelled, there is nobody to ask\n");
}

} // namespace
} // namespace megset::CConsoleHostFlags_test
