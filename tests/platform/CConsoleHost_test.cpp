#include "megset/platform/CConsoleHost.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CProgresszk.h"
#include "megset/platform/paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace megset::CConsoleHost_test {
namespace {

using namespace std::chrono_literals;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

// A console in memory. What is typed there is set before; the screen does not show it.
class ConsoleHostTest : public ::testing::Test
{
protected:
    CConsoleHost& console(bool inIsTerminal, bool errIsTerminal, bool answerYes = false)
    {
        ConsoleStreams streams{
            in, out, err, inIsTerminal, errIsTerminal, [this] { return width; }, [this] { return now; }};
        m_host = std::make_unique<CConsoleHost>(std::move(streams), answerYes);
        return *m_host;
    }
    CConsoleHost& terminal(const std::string& typed = "")
    {
        in.str(typed);
        return console(true, true);
    }

    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    int width = 80;
    std::chrono::steady_clock::time_point now{};
    std::unique_ptr<CConsoleHost> m_host;
};

class ConsoleMessages : public ConsoleHostTest
{
};

TEST_F(ConsoleMessages, GoToTheErrorStreamOneLineEach)
{
    CConsoleHost& host = console(false, false);
    EXPECT_EQ(host.messageBox("File path and trial error!", MB_OK), IDOK);
    EXPECT_EQ(host.messageBox("Find file:C:\\a.trl error \n", MB_OK), IDOK);
    EXPECT_EQ(err.str(), "megset: File path and trial error!\nmegset: Find file:C:\\a.trl error \n");
    EXPECT_EQ(out.str(), "");
}

TEST_F(ConsoleMessages, CannotSendEscapeSequences)
{
    console(true, true).messageBox("name \x1b]0;owned\a\r", MB_OK);
    EXPECT_EQ(err.str(), "megset: name \\x1b]0;owned\\x07\\x0d\n");
}

TEST_F(ConsoleMessages, FurtherLinesAreIndentedSoThatNoneLooksLikeAMessage)
{
    console(false, false).messageBox("a\nmegset: b", MB_OK);
    EXPECT_EQ(err.str(), "megset: a\n        megset: b\n");
}

TEST_F(ConsoleMessages, AreWrittenInUtf8)
{
    console(false, false).messageBox(std::u16string_view(u"\u6e2c\u5b9a"), MB_OK);
    EXPECT_EQ(err.str(), "megset: \xe6\xb8\xac\xe5\xae\x9a\n");
}

class ConsoleQuestions : public ConsoleHostTest
{
};

TEST_F(ConsoleQuestions, AreAskedOnATerminal)
{
    EXPECT_EQ(terminal("y\n").messageBox("Continue?", MB_YESNO), IDYES);
    EXPECT_EQ(err.str(), "megset: Continue? [y/N] ");
}

TEST_F(ConsoleQuestions, TakeYesAndNoInAnyCase)
{
    CConsoleHost& host = terminal("YES\n y \r\nn\nNo\n");
    EXPECT_EQ(host.messageBox("1", MB_YESNO), IDYES);
    EXPECT_EQ(host.messageBox("2", MB_YESNO), IDYES);
    EXPECT_EQ(host.messageBox("3", MB_YESNO), IDNO);
    EXPECT_EQ(host.messageBox("4", MB_YESNO), IDNO);
}

TEST_F(ConsoleQuestions, AnEmptyLineIsNo)
{
    EXPECT_EQ(terminal("\n").messageBox("Continue?", MB_YESNO), IDNO);
}

TEST_F(ConsoleQuestions, TheEndOfInputIsNoAndIsShown)
{
    EXPECT_EQ(terminal().messageBox("Continue?", MB_YESNO), IDNO);
    EXPECT_EQ(err.str(), "megset: Continue? [y/N] no\n");
}

TEST_F(ConsoleQuestions, AnythingElseIsAskedAgain)
{
    EXPECT_EQ(terminal("maybe\nyes\n").messageBox("Continue?", MB_YESNO), IDYES);
    EXPECT_EQ(err.str(), "megset: Continue? [y/N] megset: Continue? [y/N] ");
}

TEST_F(ConsoleQuestions, WithoutATerminalTheAnswerIsNoUnlessSet)
{
    CConsoleHost& host = console(false, true);
    EXPECT_EQ(host.messageBox("Continue?", MB_YESNO), IDNO);
    host.setAnswer(true);
    EXPECT_EQ(host.messageBox("Continue?", MB_YESNO), IDYES);
    EXPECT_EQ(err.str(), "megset: Continue? [y/N] no\nmegset: Continue? [y/N] yes\n");
    EXPECT_EQ(console(false, false, true).messageBox("Continue?", MB_YESNO), IDYES);
}

TEST_F(ConsoleQuestions, AreNotAskedWhereTheyCannotBeSeen)
{
    in.str("y\n");
    EXPECT_EQ(console(true, false).messageBox("Continue?", MB_YESNO), IDNO);
}

TEST_F(ConsoleQuestions, AreNotAskedWhenToldNotTo)
{
    CConsoleHost& host = terminal("n\n");
    host.setAsking(false);
    host.setAnswer(true);
    EXPECT_EQ(host.messageBox("Continue?", MB_YESNO), IDYES);
    host.setAsking(true);
    EXPECT_EQ(host.messageBox("Continue?", MB_YESNO), IDNO);
}

class ConsoleReports : public ConsoleHostTest
{
};

TEST_F(ConsoleReports, GoToTheOutputStreamUnderTheirTitle)
{
    EXPECT_EQ(console(false, false).showReport("\nname\x1b[1m\nrate", "MEG Data Information"), 1);
    EXPECT_EQ(out.str(), "MEG Data Information\n\nname\\x1b[1m\nrate\n");
    EXPECT_EQ(err.str(), "");
}

TEST_F(ConsoleReports, GiveZeroWhenTheOutputFails)
{
    out.setstate(std::ios::badbit);
    EXPECT_EQ(console(false, false).showReport("a", "b"), 0);
}

// File choices use a folder of their own: a file "here.trl" and a folder "inner".
class ConsoleFileChoices : public ConsoleHostTest
{
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "megset_console_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        std::filesystem::create_directory(folder / "inner");
        std::ofstream(folder / "here.trl") << "x";
    }
    void TearDown() override
    {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }

    std::string native(const std::string& name) const { return (folder / name).string(); }
    CString library(const std::string& name) const { return fromNative(folder / name); }
    FileRequest opening() const
    {
        FileRequest request;
        request.filter = "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||";
        request.filterIndex = 2;
        request.fileMustExist = request.pathMustExist = true;
        return request;
    }
    FileRequest saving() const
    {
        FileRequest request;
        request.open = false;
        request.filter = "MEG trial files (*.trl)|*.trl||";
        request.fileName = "run1";
        request.confirmOverwrite = true;
        return request;
    }

    std::filesystem::path folder;
};

TEST_F(ConsoleFileChoices, TakeAPathTypedOnATerminal)
{
    const auto choice = terminal(native("here.trl") + "\n").chooseFile(opening());
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, library("here.trl"));
    EXPECT_EQ(choice->filterIndex, 2);
    EXPECT_EQ(err.str(), "megset: Open file: MEG trial files (*.trl), All Files (*.*)\n"
                         "megset: File to open (empty: cancel): ");
}

TEST_F(ConsoleFileChoices, AFileThatMustExistIsAskedForAgain)
{
    const auto choice = terminal(native("none.trl") + "\n" + native("no/x.trl") + "\n" + native("here.trl") + "\n")
                            .chooseFile(opening());
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, library("here.trl"));
    EXPECT_THAT(err.str(), HasSubstr("megset: There is no file \"" + native("none.trl") + "\"\n"));
    EXPECT_THAT(err.str(), HasSubstr("megset: There is no folder \"" + native("no") + "\"\n"));
}

TEST_F(ConsoleFileChoices, AFolderIsNoFile)
{
    for (const FileRequest& request : {opening(), saving()}) {
        err.str("");
        EXPECT_FALSE(terminal(native("inner") + "\n" + native("inner") + "/\n").chooseFile(request));
        EXPECT_THAT(err.str(), HasSubstr("megset: \"" + native("inner") + "\" is a folder\n"));
        EXPECT_THAT(err.str(), HasSubstr("megset: \"" + native("inner") + "/\" is a folder\n"));
    }
}

TEST_F(ConsoleFileChoices, AnEmptyLineAndTheEndOfInputCancel)
{
    EXPECT_FALSE(terminal("\n").chooseFile(opening()));
    EXPECT_FALSE(terminal("  \n").chooseFile(opening()));
    EXPECT_FALSE(terminal("").chooseFile(opening()));
    EXPECT_THAT(err.str(), EndsWith("(empty: cancel): \n"));
}

TEST_F(ConsoleFileChoices, AnOverwriteIsAsked)
{
    const std::string here = native("here.trl") + "\n";
    const auto overwritten = terminal(here + "y\n").chooseFile(saving());
    ASSERT_TRUE(overwritten);
    EXPECT_EQ(overwritten->path, library("here.trl"));
    EXPECT_THAT(err.str(), HasSubstr("Save file: MEG trial files (*.trl). Suggested name: \"run1\"\n"));
    EXPECT_THAT(err.str(), HasSubstr("megset: \"" + native("here.trl") + "\" exists. Overwrite it? [y/N] "));

    const auto other = terminal(here + "n\n" + native("new.trl") + "\n").chooseFile(saving());
    ASSERT_TRUE(other);
    EXPECT_EQ(other->path, library("new.trl"));
}

TEST_F(ConsoleFileChoices, WithoutThePromptAFileIsOverwrittenUnasked)
{
    FileRequest request = saving();
    request.confirmOverwrite = false;
    EXPECT_TRUE(terminal(native("here.trl") + "\n").chooseFile(request));
    EXPECT_THAT(err.str(), Not(HasSubstr("Overwrite")));
}

TEST_F(ConsoleFileChoices, TheDefaultExtensionCompletesAName)
{
    FileRequest request = saving();
    request.defaultExtension = "trl";
    EXPECT_EQ(terminal(native("new") + "\n").chooseFile(request)->path, library("new.trl"));
    EXPECT_EQ(terminal(native("new.txt") + "\n").chooseFile(request)->path, library("new.txt"));
    EXPECT_EQ(terminal(native("here") + "\ny\n").chooseFile(request)->path, library("here.trl"));
    EXPECT_THAT(err.str(), HasSubstr("here.trl\" exists. Overwrite it?"));
}

TEST_F(ConsoleFileChoices, AFileToOpenMayBeNamedWithoutItsExtension)
{
    FileRequest request = opening();
    request.defaultExtension = "trl";
    EXPECT_EQ(terminal(native("here") + "\n").chooseFile(request)->path, library("here.trl"));
    std::ofstream(folder / "bare") << "x";
    EXPECT_EQ(terminal(native("bare") + "\n").chooseFile(request)->path, library("bare"));
}

TEST_F(ConsoleFileChoices, ARelativePathBecomesAFullOne)
{
    FileRequest request = saving();
    request.confirmOverwrite = false;
    const auto choice = terminal("new.trl\n").chooseFile(request);
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, currentDirectory() + "\\new.trl");
}

TEST_F(ConsoleFileChoices, AnyFileNameComesThrough)
{
    for (const std::string name : {"\xe6\xb8\xac.trl", "back\\slash.trl", "not\xff utf8.trl"}) {
        std::ofstream(folder / name) << "x";
        const auto choice = terminal(native(name) + "\n").chooseFile(opening());
        ASSERT_TRUE(choice) << name;
        EXPECT_EQ(toNative(choice->path).string(), native(name));
    }
}

TEST_F(ConsoleFileChoices, WithoutATerminalAreCancelledAndSayWhatWasAsked)
{
    in.str(native("here.trl") + "\n");
    EXPECT_FALSE(console(false, true).chooseFile(opening()));
    EXPECT_EQ(err.str(), "megset: Open file: MEG trial files (*.trl), All Files (*.*): cancelled, there is nobody to "
                         "ask\n");
}

TEST_F(ConsoleFileChoices, ServeTheFileDialog)
{
    AfxSetHost(&terminal(native("here.trl") + "\n"));
    CFileDialog dialog(true, "", "", OFN_FILEMUSTEXIST, opening().filter);
    const int result = dialog.DoModal();
    AfxSetHost(nullptr);
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(dialog.GetPathName(), library("here.trl"));
    EXPECT_EQ(dialog.GetFileTitle(), "here");
}

class ConsoleProgress : public ConsoleHostTest
{
protected:
    // What the screen shows at the end: a carriage return goes back to the line's start, text overwrites.
    std::vector<std::string> screen() const
    {
        std::vector<std::string> lines(1);
        std::size_t column = 0;
        for (const char c : err.str()) {
            if (c == '\n') {
                lines.emplace_back();
                column = 0;
            } else if (c == '\r') {
                column = 0;
            } else {
                lines.back().resize(std::max(lines.back().size(), column + 1), ' ');
                lines.back()[column++] = c;
            }
        }
        for (std::string& line : lines)
            line.erase(line.find_last_not_of(' ') + 1);
        return lines;
    }
    int draws() const
    {
        const std::string text = err.str();
        return static_cast<int>(std::count(text.begin(), text.end(), '%'));
    }
};

TEST_F(ConsoleProgress, ShowsTitleBarAndPercent)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 4);
    EXPECT_EQ(screen().back(), "Reading [..............................]   0%");
    now += 1s;
    host.setProgress(1, 2);
    EXPECT_EQ(screen().back(), "Reading [###############...............]  50%");
}

TEST_F(ConsoleProgress, IsDrawnAtMostTenTimesASecond)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 1000);
    for (int i = 0; i <= 1000; ++i) { // one second in steps of a millisecond
        host.setProgress(1, i);
        now += 1ms;
    }
    EXPECT_EQ(draws(), 11) << "at 0, 100, ... 1000 ms";
}

TEST_F(ConsoleProgress, AlwaysDrawsTheFinalStateAndEndsTheLine)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 4);
    host.setProgress(1, 4);
    host.endProgress(1);
    EXPECT_EQ(screen().size(), 2U);
    EXPECT_EQ(screen().front(), "Reading [##############################] 100%");
    EXPECT_EQ(screen().back(), "");
}

TEST_F(ConsoleProgress, AnAbandonedBarDoesNotClaimTheEnd)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 1000);
    host.setProgress(1, 999);
    host.endProgress(1);
    EXPECT_THAT(screen().front(), EndsWith("  99%"));
}

TEST_F(ConsoleProgress, AnEmptyRangeIsDoneFromTheStart)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 0);
    EXPECT_THAT(screen().back(), EndsWith("100%"));
}

TEST_F(ConsoleProgress, WithoutATerminalShowsNothing)
{
    CConsoleHost& host = console(true, false);
    host.beginProgress(1, "Reading", 0, 4);
    host.setProgress(1, 4);
    host.endProgress(1);
    EXPECT_EQ(err.str(), "");
}

TEST_F(ConsoleProgress, AMessageTakesTheBarsLineAndTheBarComesBackBelow)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "Reading", 0, 4);
    host.messageBox("Set sensor error", MB_OK);
    EXPECT_EQ(screen(), (std::vector<std::string>{"megset: Set sensor error", ""}));
    now += 1s;
    host.setProgress(1, 1);
    EXPECT_EQ(screen().front(), "megset: Set sensor error");
    EXPECT_THAT(screen().back(), EndsWith("25%"));
}

TEST_F(ConsoleProgress, ShowsTheInnermostBar)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "outer", 0, 2);
    now += 1s;
    host.beginProgress(2, "inner", 0, 2);
    EXPECT_THAT(screen().back(), ::testing::StartsWith("inner"));
    now += 1s;
    host.setProgress(1, 1);
    EXPECT_THAT(screen().back(), ::testing::StartsWith("inner"));
    host.endProgress(2);
    now += 1s;
    host.setProgress(1, 2);
    EXPECT_THAT(screen().front(), ::testing::StartsWith("inner"));
    EXPECT_EQ(screen().back(), "outer [##############################] 100%");
}

TEST_F(ConsoleProgress, NeverFillsTheLastColumn)
{
    CConsoleHost& host = terminal();
    for (width = 0; width <= 100; ++width) {
        err.str("");
        host.beginProgress(1, CString(u'\u6e2c', 60), 0, 4);
        host.setProgress(1, 4);
        host.endProgress(1);
        CString line = err.str();
        line = line.Mid(line.ReverseFind(u'\r') + 1); // the last drawing of the line
        line.Replace("\n", "");
        int columns = 0;
        for (const char16_t unit : line.view())
            columns += unit >= 0x1100 ? 2 : 1;
        EXPECT_LE(columns, std::max(width - 1, 5)) << line;
        EXPECT_EQ(line.Right(4), "100%");
    }
}

TEST_F(ConsoleProgress, ATitleOfAFileCannotBreakTheLine)
{
    CConsoleHost& host = terminal();
    host.beginProgress(1, "a\nb\x1b[2J\tc", 0, 4);
    EXPECT_THAT(screen().back(), ::testing::StartsWith("a b\\x1b[2J c ["));
    EXPECT_EQ(screen().size(), 1U);
}

TEST_F(ConsoleProgress, UnknownBarsAreIgnored)
{
    CConsoleHost& host = terminal();
    host.setProgress(7, 1);
    host.endProgress(7);
    EXPECT_EQ(err.str(), "");
}

TEST_F(ConsoleProgress, ServesTheProgressClass)
{
    AfxSetHost(&terminal());
    {
        CProgresszk bar("Reading", 0, 2);
        bar.step();
    }
    AfxSetHost(nullptr);
    EXPECT_EQ(screen().front(), "Reading [###############...............]  50%");
}

} // namespace
} // namespace megset::CConsoleHost_test
