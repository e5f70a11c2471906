#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CConsoleHost.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace megset::CUserHost_test {
namespace {

using ::testing::ElementsAre;

TEST(UserHost, TheConsoleIsTheDefault)
{
    CUserHost* const former = AfxSetHost(nullptr);
    EXPECT_EQ(former, nullptr);
    EXPECT_NE(dynamic_cast<CConsoleHost*>(&AfxGetHost()), nullptr);
    EXPECT_EQ(&AfxGetHost(), &AfxGetHost());
}

TEST(UserHost, SettingAHostGivesTheFormerOne)
{
    ScriptedHost first;
    EXPECT_EQ(&AfxGetHost(), &first);
    {
        ScriptedHost second;
        EXPECT_EQ(&AfxGetHost(), &second);
        EXPECT_EQ(AfxSetHost(&first), &second);
        EXPECT_EQ(AfxSetHost(&second), &first);
    }
    EXPECT_EQ(&AfxGetHost(), &first);
    EXPECT_EQ(AfxSetHost(nullptr), &first);
    EXPECT_EQ(AfxSetHost(&first), nullptr);
}

TEST(UserHost, AMessageBoxReachesTheHostAndGivesOk)
{
    ScriptedHost host;
    EXPECT_EQ(AfxMessageBox("There is no data!"), IDOK);
    EXPECT_EQ(AfxMessageBox("No Trials", MB_OK), 1);
    EXPECT_THAT(host.messages(), ElementsAre("There is no data!", "No Trials"));
}

TEST(UserHost, AQuestionGivesYesAsSixAndNoAsSeven)
{
    ScriptedHost host;
    host.willAnswerYes();
    host.willAnswerNo();
    EXPECT_EQ(AfxMessageBox("Continue?", MB_YESNO), 6);
    EXPECT_EQ(AfxMessageBox("Continue?", MB_YESNO), 7);
}

TEST(UserHost, IconBitsDoNotMakeAMessageAQuestion)
{
    ScriptedHost host;
    host.willAnswerYes();
    EXPECT_EQ(AfxMessageBox("Stop", 0x10), IDOK);
    EXPECT_EQ(AfxMessageBox("Continue?", MB_YESNO | 0x20), IDYES);
}

TEST(UserHost, MessagesOfSeveralThreadsAllArrive)
{
    ScriptedHost host;
    const auto talk = [] {
        for (int i = 0; i < 200; ++i)
            AfxMessageBox("text");
    };
    std::thread a(talk);
    std::thread b(talk);
    a.join();
    b.join();
    EXPECT_EQ(host.messages().size(), 400U);
}

} // namespace
} // namespace megset::CUserHost_test
