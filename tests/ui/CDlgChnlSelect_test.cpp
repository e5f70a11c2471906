#include "megset/ui/CDlgChnlSelect.h"

#include "megset/platform/AfxMessageBox.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CDlgChnlSelect_test {
namespace {

using ::testing::ElementsAre;

void expectFlags(const CDlgChnlSelect& dialog, int meg, int eeg, int good, int visible)
{
    EXPECT_EQ(dialog.m_nMEGChannel, meg);
    EXPECT_EQ(dialog.m_nEEGChannel, eeg);
    EXPECT_EQ(dialog.m_nGoodChannel, good);
    EXPECT_EQ(dialog.m_nVisible, visible);
}

TEST(ChannelSelection, ShowsMegAndEegSetAtFirst)
{
    ScriptedHost host;
    host.willCancelFlags();
    CDlgChnlSelect dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    expectFlags(dialog, 1, 1, 0, 0);
    EXPECT_THAT(host.calls(), ElementsAre("flags Channel Selection [MEG Channel=1, EEG Channel=1, Good Channel=0, "
                                          "Visible=0] -> cancel"));
}

TEST(ChannelSelection, TakesWhatTheUserSets)
{
    ScriptedHost host;
    host.willChooseFlags({false, true, true, false});
    host.willChooseFlags({true, false, false, true});
    CDlgChnlSelect dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    expectFlags(dialog, 0, 1, 1, 0);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    expectFlags(dialog, 1, 0, 0, 1);
    EXPECT_EQ(host.calls()[1], "flags Channel Selection [MEG Channel=0, EEG Channel=1, Good Channel=1, Visible=0] -> "
                               "1 0 0 1");
}

TEST(ChannelSelection, IsCancelledByAnAnswerToOtherBoxes)
{
    ScriptedHost host;
    host.willChooseFlags({false, false});
    CDlgChnlSelect dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    expectFlags(dialog, 1, 1, 0, 0);
}

} // namespace
} // namespace megset::CDlgChnlSelect_test
