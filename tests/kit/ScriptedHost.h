#pragma once

#include "megset/platform/CUserHost.h"

#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace megset {

/// A host that answers from a script and records every call. It is the host of the process from construction to
/// destruction. A question or choice that nobody expected fails the running test and is answered No or cancelled;
/// answers that were never used fail it at destruction.
///
///     ScriptedHost host;
///     host.willAnswerYes("Would you like to delete the old triggers?");
///     host.willChooseFile("C:\\data\\run1.trl");
///     ...
///     EXPECT_THAT(host.messages(), ElementsAre("No Trials"));
class ScriptedHost : public CUserHost
{
public:
    struct Report
    {
        CString text;
        CString title;
    };

    ScriptedHost();
    ~ScriptedHost() override;

    /// The answer to the next question with just this text. Answers to other texts may come before and after.
    void willAnswerYes(const CString& question) { addAnswer(question, true); }
    void willAnswerNo(const CString& question) { addAnswer(question, false); }
    /// The answer to the next question that no text above fits. These are used in order.
    void willAnswerYes() { addAnswer(std::nullopt, true); }
    void willAnswerNo() { addAnswer(std::nullopt, false); }

    /// What the next file choice gives: the path as it is, under the kind of file on offer or a given one.
    void willChooseFile(const CString& path) { addChoice({{path, 0}}); }
    void willChooseFile(const CString& path, int filterIndex) { addChoice({{path, filterIndex}}); }
    void willCancelFile() { addChoice(std::nullopt); }

    /// What the next choice of flags gives, one value for each.
    void willChooseFlags(const std::vector<bool>& flags) { addFlags(flags); }
    void willCancelFlags() { addFlags(std::nullopt); }

    /// Every call in order, one text each:
    ///     message: <text>                          question: <text> -> yes | no
    ///     open file [<filter>] -> <path> | cancel  save file [<filter>] -> <path> | cancel
    ///     flags <title> [<label>=0|1, ...] -> 0|1 ... | cancel
    ///     progress begin <title> <from>..<to>      progress <title> <position>        progress end <title>
    ///     report <title>: <text>                   wait begin                         wait end
    ///     invalidate [erase]
    std::vector<std::string> calls() const;
    /// The texts of the message boxes, without the questions.
    std::vector<CString> messages() const;
    std::vector<CString> questions() const;
    std::vector<FileRequest> fileRequests() const;
    std::vector<FlagRequest> flagRequests() const;
    std::vector<Report> reports() const;
    /// The views that were asked to repaint.
    std::vector<CWnd*> invalidated() const;
    /// Wait cursors begun and not ended.
    int waitDepth() const;
    /// Progress bars begun and not ended.
    int openBars() const;

    /// Fails the running test when a message was shown.
    void expectNoMessages() const;
    /// Forgets what was recorded; answers stay.
    void clearRecord();

    int messageBox(const CString& text, unsigned type) override;
    std::optional<FileChoice> chooseFile(const FileRequest& request) override;
    std::optional<std::vector<bool>> chooseFlags(const FlagRequest& request) override;
    void beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to) override;
    void setProgress(int id, std::int64_t position) override;
    void endProgress(int id) override;
    int showReport(const CString& text, const CString& title) override;
    void beginWaitCursor() override;
    void endWaitCursor() override;
    void invalidate(CWnd& view, bool erase) override;

private:
    struct Answer
    {
        std::optional<CString> question;
        bool yes;
    };
    using Choice = std::optional<FileChoice>; // with index 0: as requested
    using Flags = std::optional<std::vector<bool>>;

    struct Record
    {
        std::vector<std::string> calls;
        std::vector<CString> messages;
        std::vector<CString> questions;
        std::vector<FileRequest> fileRequests;
        std::vector<FlagRequest> flagRequests;
        std::vector<Report> reports;
        std::vector<CWnd*> invalidated;
    };

    template <class Value>
    Value locked(const Value& value) const
    {
        const std::lock_guard lock(m_mutex);
        return value;
    }
    void addAnswer(const std::optional<CString>& question, bool yes);
    void addChoice(const Choice& choice);
    void addFlags(const Flags& flags);
    void note(const CString& line) { m_record.calls.push_back(line.toUtf8()); }
    bool answer(const CString& question);
    Choice nextChoice(const FileRequest& request);

    CUserHost* m_former;
    mutable std::mutex m_mutex; // guards all that follows
    std::deque<Answer> m_answers;
    std::deque<Choice> m_choices;
    std::deque<Flags> m_flags;
    Record m_record;
    std::map<int, CString> m_bars; // titles of the bars that are shown
    int m_waitDepth = 0;
};

} // namespace megset
