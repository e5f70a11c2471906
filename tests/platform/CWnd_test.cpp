#include "megset/platform/CWnd.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CWnd_test {
namespace {

class ViewWithoutWindow : public CWnd
{
public:
    bool hasWindow() const override { return false; }
};

TEST(ViewWindow, InvalidateAsksTheHostForARepaint)
{
    ScriptedHost host;
    CWnd a;
    CWnd b;
    a.Invalidate();
    b.Invalidate(false);
    EXPECT_THAT(host.invalidated(), ::testing::ElementsAre(&a, &b));
    EXPECT_THAT(host.calls(), ::testing::ElementsAre("invalidate erase", "invalidate"));
}

TEST(ViewWindow, HasATextThatStartsEmpty)
{
    CWnd view;
    EXPECT_EQ(view.GetWindowText(), "");
    view.SetWindowText("Re-sampling MEG data...");
    EXPECT_EQ(view.GetWindowText(), "Re-sampling MEG data...");
}

TEST(ViewWindow, IsVisibleUntilHidden)
{
    CWnd view;
    EXPECT_TRUE(view.hasWindow());
    EXPECT_TRUE(view.IsWindowVisible());
    view.ShowWindow(false);
    EXPECT_FALSE(view.IsWindowVisible());
    EXPECT_TRUE(view.hasWindow());
    view.ShowWindow(true);
    EXPECT_TRUE(view.IsWindowVisible());
}

TEST(ViewWindow, WithoutWindowIsNotVisible)
{
    ViewWithoutWindow view;
    view.ShowWindow(true);
    EXPECT_FALSE(view.IsWindowVisible());
}

} // namespace
} // namespace megset::CWnd_test
