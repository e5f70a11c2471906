#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CWnd.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData8ShowViewers_test {
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

TEST(Viewers, AddedTwiceStandOnce)
{
    CMEGDatazk data;
    CWnd first;
    CWnd second;
    EXPECT_EQ(data.viewerAdd(&first), 1);
    EXPECT_EQ(data.viewerAdd(&first), 0);
    EXPECT_EQ(data.m_aViewer.GetSize(), 1);
    EXPECT_EQ(data.viewerAdd(&second), 2);
    EXPECT_EQ(data.viewerAdd(nullptr), 0);
    EXPECT_EQ(data.m_aViewer.GetSize(), 2);
}

TEST(Viewers, AreRemovedOneByOneOrAllAtOnce)
{
    CMEGDatazk data;
    CWnd views[3];
    for (CWnd& view : views)
        data.viewerAdd(&view);
    EXPECT_EQ(data.viewerRemove(&views[1], false), 2);
    EXPECT_EQ(data.viewerRemove(&views[1], false), -1);
    EXPECT_EQ(data.viewerRemove(nullptr, false), -1);
    EXPECT_EQ(data.m_aViewer.GetAt(0), &views[0]);
    EXPECT_EQ(data.m_aViewer.GetAt(1), &views[2]);
    EXPECT_EQ(data.viewerRemove(&views[1], true), 0);
    EXPECT_EQ(data.m_aViewer.GetSize(), 0);
    EXPECT_EQ(data.viewerRemove(nullptr, true), 0);
}

TEST(Viewers, ThatWereRemovedAreNotInvalidated)
{
    const ScriptedHost host;
    CMEGDatazk data;
    CWnd stays;
    CWnd goes;
    data.viewerAdd(&goes);
    data.viewerAdd(&stays);
    data.viewerRemove(&goes, false);
    EXPECT_EQ(data.viewerInvalidate(false, nullptr, true), 1);
    EXPECT_THAT(host.invalidated(), ElementsAre(&stays));
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
} // namespace megset::CMEGData8ShowViewers_test
