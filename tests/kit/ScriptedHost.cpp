#include "tests/kit/ScriptedHost.h"

#include "megset/platform/AfxMessageBox.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace megset {

ScriptedHost::ScriptedHost() : m_former(AfxSetHost(this)) {}

ScriptedHost::~ScriptedHost()
{
    AfxSetHost(m_former);
    for (const Answer& unused : m_answers)
        ADD_FAILURE() << "Never asked: " << unused.question.value_or("(any question)") << " -> "
                      << (unused.yes ? "yes" : "no");
    for (const Choice& unused : m_choices)
        ADD_FAILURE() << "File choice never asked for: " << (unused ? unused->path : "cancel");
    if (!m_flags.empty())
        ADD_FAILURE() << m_flags.size() << " choices of flags never asked for";
}

void ScriptedHost::addAnswer(const std::optional<CString>& question, bool yes)
{
    const std::lock_guard lock(m_mutex);
    m_answers.push_back({question, yes});
}

void ScriptedHost::addChoice(const Choice& choice)
{
    const std::lock_guard lock(m_mutex);
    m_choices.push_back(choice);
}

void ScriptedHost::addFlags(const Flags& flags)
{
    const std::lock_guard lock(m_mutex);
    m_flags.push_back(flags);
}

std::vector<std::string> ScriptedHost::calls() const
{
    return locked(m_record.calls);
}

std::vector<CString> ScriptedHost::messages() const
{
    return locked(m_record.messages);
}

std::vector<CString> ScriptedHost::questions() const
{
    return locked(m_record.questions);
}

std::vector<FileRequest> ScriptedHost::fileRequests() const
{
    return locked(m_record.fileRequests);
}

std::vector<FlagRequest> ScriptedHost::flagRequests() const
{
    return locked(m_record.flagRequests);
}

std::vector<ScriptedHost::Report> ScriptedHost::reports() const
{
    return locked(m_record.reports);
}

std::vector<CWnd*> ScriptedHost::invalidated() const
{
    return locked(m_record.invalidated);
}

int ScriptedHost::waitDepth() const
{
    return locked(m_waitDepth);
}

int ScriptedHost::openBars() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_bars.size());
}

void ScriptedHost::expectNoMessages() const
{
    for (const CString& text : messages())
        ADD_FAILURE() << "Message that nobody expected: " << text;
}

void ScriptedHost::clearRecord()
{
    const std::lock_guard lock(m_mutex);
    m_record = Record();
}

int ScriptedHost::messageBox(const CString& text, unsigned type)
{
    const std::lock_guard lock(m_mutex);
    if (isQuestion(type)) {
        const bool yes = answer(text);
        m_record.questions.push_back(text);
        note("question: " + text + (yes ? " -> yes" : " -> no"));
        return yes ? IDYES : IDNO;
    }
    m_record.messages.push_back(text);
    note("message: " + text);
    return IDOK;
}

// The first answer to this very text, else the first one to any.
bool ScriptedHost::answer(const CString& question)
{
    auto found = std::find_if(m_answers.begin(), m_answers.end(),
                              [&](const Answer& each) { return each.question && *each.question == question; });
    if (found == m_answers.end())
        found = std::find_if(m_answers.begin(), m_answers.end(), [](const Answer& each) { return !each.question; });
    if (found == m_answers.end()) {
        ADD_FAILURE() << "Question that nobody expected: " << question;
        return false;
    }
    const bool yes = found->yes;
    m_answers.erase(found);
    return yes;
}

std::optional<FileChoice> ScriptedHost::chooseFile(const FileRequest& request)
{
    const std::lock_guard lock(m_mutex);
    const Choice choice = nextChoice(request);
    m_record.fileRequests.push_back(request);
    note((request.open ? "open file [" : "save file [") + request.filter + "] -> " +
         (choice ? choice->path : "cancel"));
    return choice;
}

std::optional<std::vector<bool>> ScriptedHost::chooseFlags(const FlagRequest& request)
{
    const std::lock_guard lock(m_mutex);
    Flags choice;
    if (m_flags.empty()) {
        ADD_FAILURE() << "Choice of flags that nobody expected: " << request.title;
    } else {
        choice = m_flags.front();
        m_flags.pop_front();
    }
    m_record.flagRequests.push_back(request);
    CString boxes;
    for (const FlagRequest::Flag& flag : request.flags)
        boxes += (boxes.IsEmpty() ? "" : ", ") + flag.label + (flag.set ? "=1" : "=0");
    CString reply = choice ? "" : " cancel";
    for (std::size_t i = 0; choice && i < choice->size(); ++i)
        reply += (*choice)[i] ? " 1" : " 0";
    note("flags " + request.title + " [" + boxes + "] ->" + reply);
    return choice;
}

ScriptedHost::Choice ScriptedHost::nextChoice(const FileRequest& request)
{
    if (m_choices.empty()) {
        ADD_FAILURE() << "File choice that nobody expected: " << (request.open ? "open " : "save ") << request.filter;
        return std::nullopt;
    }
    Choice choice = m_choices.front();
    m_choices.pop_front();
    if (choice && choice->filterIndex == 0)
        choice->filterIndex = request.filterIndex;
    return choice;
}

void ScriptedHost::beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to)
{
    const std::lock_guard lock(m_mutex);
    m_bars[id] = title;
    note(CString::formatted("progress begin %s %I64d..%I64d", title, from, to));
}

void ScriptedHost::setProgress(int id, std::int64_t position)
{
    const std::lock_guard lock(m_mutex);
    note(CString::formatted("progress %s %I64d", m_bars[id], position));
}

void ScriptedHost::endProgress(int id)
{
    const std::lock_guard lock(m_mutex);
    note("progress end " + m_bars[id]);
    m_bars.erase(id);
}

int ScriptedHost::showReport(const CString& text, const CString& title)
{
    const std::lock_guard lock(m_mutex);
    m_record.reports.push_back({text, title});
    note("report " + title + ": " + text);
    return 1;
}

void ScriptedHost::beginWaitCursor()
{
    const std::lock_guard lock(m_mutex);
    ++m_waitDepth;
    note("wait begin");
}

void ScriptedHost::endWaitCursor()
{
    const std::lock_guard lock(m_mutex);
    --m_waitDepth;
    note("wait end");
}

void ScriptedHost::invalidate(CWnd& view, bool erase)
{
    const std::lock_guard lock(m_mutex);
    m_record.invalidated.push_back(&view);
    note(erase ? "invalidate erase" : "invalidate");
}

} // namespace megset
