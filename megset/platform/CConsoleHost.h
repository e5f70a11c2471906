#pragma once

#include "megset/platform/CUserHost.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

namespace megset {

/// What a console host reads, writes and knows of its surroundings.
struct ConsoleStreams
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inIsTerminal = false;
    bool errIsTerminal = false;
    std::function<int()> width;                                   ///< columns of the terminal
    std::function<std::chrono::steady_clock::time_point()> clock; ///< paces the progress bar

    /// The standard streams of the process.
    static ConsoleStreams standard();
};

/// The host of programs without windows. Messages, questions and progress go to the error stream, reports to the
/// output stream. Questions and choices are asked when input and error stream are terminals; otherwise a question
/// gets the set answer, No unless told, and a choice of a file or of flags is cancelled. Wait cursor and repaint have
/// no effect. Control characters in texts are shown escaped.
class CConsoleHost : public CUserHost
{
public:
    CConsoleHost();
    explicit CConsoleHost(ConsoleStreams streams, bool answerYes = false);

    /// The answer to questions that are not asked.
    void setAnswer(bool yes);
    /// With false nothing is asked, even on a terminal.
    void setAsking(bool asking);

    int messageBox(const CString& text, unsigned type) override;
    std::optional<FileChoice> chooseFile(const FileRequest& request) override;
    std::optional<std::vector<bool>> chooseFlags(const FlagRequest& request) override;
    void beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to) override;
    void setProgress(int id, std::int64_t position) override;
    void endProgress(int id) override;
    int showReport(const CString& text, const CString& title) override;
    void beginWaitCursor() override {}
    void endWaitCursor() override {}
    void invalidate(CWnd&, bool) override {}

private:
    struct Bar
    {
        int id;
        CString title;
        std::int64_t from;
        std::int64_t to;
        std::int64_t position;
    };

    bool mayAsk() const { return m_asking && m_streams.inIsTerminal && m_streams.errIsTerminal; }
    void show(const std::string& text);
    void showLine(const CString& text);
    std::optional<std::string> readLine();
    bool askYesNo(const CString& text);
    std::optional<bool> askFlag(const FlagRequest::Flag& flag);
    std::optional<std::string> askPath(const FileRequest& request);
    bool isAccepted(const FileRequest& request, const std::string& path);

    std::vector<Bar>::iterator findBar(int id);
    void drawWhenDue();
    void draw(const Bar& bar);
    void wipeBar();

    std::mutex m_mutex; // guards all that follows, and keeps the texts of several threads apart
    ConsoleStreams m_streams;
    bool m_answerYes;
    bool m_asking = true;
    std::vector<Bar> m_bars; // as begun; the last one is shown
    bool m_barIsShown = false;
    std::optional<std::chrono::steady_clock::time_point> m_lastDraw;
};

} // namespace megset
