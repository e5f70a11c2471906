#include "tests/kit/ScriptedHost.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CProgresszk.h"
#include "megset/platform/CRichInfozk.h"
#include "megset/platform/CWaitCursor.h"
#include "megset/platform/CWnd.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>

namespace megset::ScriptedHost_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ScriptedHostKit, RecordsEveryCallInOrder)
{
    ScriptedHost host;
    CWnd view;
    host.willAnswerYes("Continue?");
    host.willChooseFile("C:\\a.trl");
    host.willCancelFile();
    {
        const CWaitCursor wait;
        CProgresszk bar("Reading...", 0, 10);
        bar.setPos(3);
    }
    AfxMessageBox("No Trials");
    AfxMessageBox("Continue?", MB_YESNO);
    CFileDialog(true, "", "", 0, "Trials|*.trl||").DoModal();
    CFileDialog(false, "", "", 0, "Trials|*.trl||").DoModal();
    CRichInfozk().showRichInfo("body", "head");
    view.Invalidate();
    view.Invalidate(false);
    EXPECT_THAT(host.calls(),
                ElementsAre("wait begin", "progress begin Reading... 0..10", "progress Reading... 3",
                            "progress end Reading...", "wait end", "message: No Trials", "question: Continue? -> yes",
                            "open file [Trials|*.trl||] -> C:\\a.trl", "save file [Trials|*.trl||] -> cancel",
                            "report head: body", "invalidate erase", "invalidate"));
    EXPECT_THAT(host.messages(), ElementsAre("No Trials"));
    EXPECT_THAT(host.questions(), ElementsAre("Continue?"));
    EXPECT_THAT(host.invalidated(), ElementsAre(&view, &view));
}

TEST(ScriptedHostKit, AnAnswerToATextGoesBeforeAnAnswerToAnyText)
{
    ScriptedHost host;
    host.willAnswerNo();
    host.willAnswerYes("B");
    host.willAnswerNo("B");
    EXPECT_EQ(AfxMessageBox("B", MB_YESNO), IDYES);
    EXPECT_EQ(AfxMessageBox("A", MB_YESNO), IDNO);
    EXPECT_EQ(AfxMessageBox("B", MB_YESNO), IDNO);
}

TEST(ScriptedHostKit, AnUnexpectedQuestionFailsTheTestAndIsAnsweredNo)
{
    ScriptedHost host;
    int given = 0;
    EXPECT_NONFATAL_FAILURE(given = AfxMessageBox("Really?", MB_YESNO), "Question that nobody expected: Really?");
    EXPECT_EQ(given, IDNO);
    EXPECT_THAT(host.calls(), ElementsAre("question: Really? -> no"));
}

TEST(ScriptedHostKit, AnAnswerToAnotherTextIsNoAnswer)
{
    ScriptedHost host;
    host.willAnswerYes("A");
    int given = 0;
    EXPECT_NONFATAL_FAILURE(given = AfxMessageBox("B", MB_YESNO), "Question that nobody expected: B");
    EXPECT_EQ(given, IDNO);
    EXPECT_EQ(AfxMessageBox("A", MB_YESNO), IDYES);
}

TEST(ScriptedHostKit, AnUnexpectedFileChoiceFailsTheTestAndIsCancelled)
{
    ScriptedHost host;
    int given = 0;
    EXPECT_NONFATAL_FAILURE(given = CFileDialog(true, "", "", 0, "T|*.trl||").DoModal(),
                            "File choice that nobody expected: open T|*.trl||");
    EXPECT_EQ(given, IDCANCEL);
}

TEST(ScriptedHostKit, AnAnswerNeverUsedFailsTheTestAtTheEnd)
{
    auto host = std::make_unique<ScriptedHost>();
    host->willAnswerYes("Continue?");
    EXPECT_NONFATAL_FAILURE(host.reset(), "Never asked: Continue? -> yes");

    host = std::make_unique<ScriptedHost>();
    host->willChooseFile("C:\\a.trl");
    EXPECT_NONFATAL_FAILURE(host.reset(), "File choice never asked for: C:\\a.trl");
}

TEST(ScriptedHostKit, ExpectingNoMessagesFailsOnAMessage)
{
    ScriptedHost host;
    host.expectNoMessages();
    AfxMessageBox("No Trials");
    EXPECT_NONFATAL_FAILURE(host.expectNoMessages(), "Message that nobody expected: No Trials");
}

TEST(ScriptedHostKit, ClearingForgetsTheRecordAndKeepsTheAnswers)
{
    ScriptedHost host;
    host.willAnswerYes();
    AfxMessageBox("No Trials");
    host.clearRecord();
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_THAT(host.messages(), IsEmpty());
    EXPECT_EQ(AfxMessageBox("Continue?", MB_YESNO), IDYES);
}

} // namespace
} // namespace megset::ScriptedHost_test
