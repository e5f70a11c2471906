#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CWnd.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset {
namespace {

using ::testing::ElementsAre;

TEST(Viewers, AreRegisteredWhenTheyAreInvalidated)
{
    const ScriptedHost host;
    CMEGDatazk data;
    CWnd view;
    EXPECT_EQ(data.viewerInvalidate(true, nullptr, false), 0);
    EXPECT_EQ(data.viewerInvalidate(true, &view, false), 1);
    EXPECT_EQ(data.viewerInvalidate(false, &view, false), 1);
    EXPECT_EQ(data.m_aViewer.GetSize(), 1);
    EXPECT_THAT(host.calls(), ElementsAre("invalidate erase", "invalidate"));
}

TEST(Viewers, OfADatasetAreInvalidatedWhereTheyAreVisible)
{
    class NoWindow : public CWnd
    {
        bool hasWindow() const override { return false; }
    };
    const ScriptedHost host;
    CMEGDatazk data;
    CWnd shown;
    CWnd hidden;
    NoWindow none;
    hidden.ShowWindow(false);
    for (CWnd* view : {&hidden, static_cast<CWnd*>(&none), &shown})
        data.m_aViewer.Add(view);
    data.m_aViewer.Add(nullptr);
    EXPECT_EQ(data.viewerInvalidate(true, nullptr, true), 4) << "the result is the list's length";
    EXPECT_THAT(host.invalidated(), ElementsAre(&shown));
    CWnd another;
    EXPECT_EQ(data.viewerInvalidate(true, &another, true), 5);
}

} // namespace
} // namespace megset
