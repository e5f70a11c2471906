#include "megset/platform/CConsoleHost.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/FileFilter.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminal.h"
#include "megset/platform/terminalText.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace megset {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds drawInterval{100};
constexpr const char* prefix = "megset: ";

// A message as it is shown: behind the prefix, its further lines indented, so that no text looks like a message of
// its own.
CString withPrefix(const CString& text)
{
    CString shown = showControlCharacters(text);
    while (shown.Right(1) == "\n")
        shown = shown.Left(shown.GetLength() - 1);
    shown.Replace("\n", "\n" + CString(u' ', CString(prefix).GetLength()));
    return prefix + shown;
}

CString quoted(const std::string& native)
{
    return "\"" + CString(native) + "\"";
}

CString labelsOf(const CString& filter)
{
    CString labels;
    for (const FileFilter& kind : parseFileFilters(filter))
        labels += (labels.IsEmpty() ? "" : ", ") + kind.label;
    return labels;
}

CString describe(const FileRequest& request)
{
    CString text = request.open ? "Open file" : "Save file";
    const CString labels = labelsOf(request.filter);
    if (!labels.IsEmpty())
        text += ": " + labels;
    if (!request.fileName.IsEmpty())
        text += ". Suggested name: " + quoted(toNative(request.fileName).string());
    return text;
}

// The path with the default extension, for a name without one. A file that is there may also be opened under the name
// as it is, and a folder gets no extension.
fs::path withDefaultExtension(const fs::path& path, const FileRequest& request)
{
    std::error_code error;
    const bool isWhole = request.open ? fs::exists(path, error) : fs::is_directory(path, error);
    if (request.defaultExtension.IsEmpty() || path.has_extension() || !path.has_filename() || isWhole)
        return path;
    return path.string() + "." + request.defaultExtension.toUtf8();
}

double fractionDone(std::int64_t from, std::int64_t to, std::int64_t position)
{
    const double range = static_cast<double>(to) - static_cast<double>(from);
    const double done = static_cast<double>(position) - static_cast<double>(from);
    return range > 0 ? std::clamp(done / range, 0.0, 1.0) : 1.0;
}

// " [######......]  50%"; without the brackets where there is little room.
CString gauge(double fraction, int room)
{
    const int length = room >= 60 ? 30 : room >= 30 ? 10 : 0;
    CString percent = CString::formatted(" %3d%%", static_cast<int>(fraction * 100 + 1e-9));
    if (length == 0)
        return percent;
    const int full = static_cast<int>(fraction * length + 1e-9);
    return " [" + CString(u'#', full) + CString(u'.', length - full) + "]" + percent;
}

CString barLine(const CString& title, double fraction, int width)
{
    const int room = std::max(width - 1, 5); // the last column stays free: some terminals wrap there
    const CString tail = gauge(fraction, room);
    CString oneLine = showControlCharacters(title);
    oneLine.Replace("\n", " ");
    oneLine.Replace("\t", " ");
    return cutToColumns(oneLine, room - tail.GetLength()) + tail;
}

} // namespace

ConsoleStreams ConsoleStreams::standard()
{
    return {std::cin,
            std::cout,
            std::cerr,
            isTerminal(0),
            isTerminal(2),
            [] { return terminalWidth(2); },
            [] { return std::chrono::steady_clock::now(); }};
}

CConsoleHost::CConsoleHost() : CConsoleHost(ConsoleStreams::standard()) {}

CConsoleHost::CConsoleHost(ConsoleStreams streams, bool answerYes)
    : m_streams(std::move(streams)), m_answerYes(answerYes)
{
}

void CConsoleHost::setAnswer(bool yes)
{
    const std::lock_guard lock(m_mutex);
    m_answerYes = yes;
}

void CConsoleHost::setAsking(bool asking)
{
    const std::lock_guard lock(m_mutex);
    m_asking = asking;
}

int CConsoleHost::messageBox(const CString& text, unsigned type)
{
    const std::lock_guard lock(m_mutex);
    if (isQuestion(type))
        return askYesNo(text) ? IDYES : IDNO;
    showLine(text);
    return IDOK;
}

std::optional<FileChoice> CConsoleHost::chooseFile(const FileRequest& request)
{
    const std::lock_guard lock(m_mutex);
    if (!mayAsk()) {
        showLine(describe(request) + ": cancelled, there is nobody to ask");
        return std::nullopt;
    }
    showLine(describe(request));
    while (const auto typed = askPath(request)) {
        const fs::path path = withDefaultExtension(*typed, request);
        if (!isAccepted(request, path.string()))
            continue;
        std::error_code error;
        const fs::path full = fs::absolute(path, error);
        return FileChoice{fromNative(error ? path : full), request.filterIndex};
    }
    return std::nullopt;
}

// Flag by flag; the end of input cancels.
std::optional<std::vector<bool>> CConsoleHost::chooseFlags(const FlagRequest& request)
{
    const std::lock_guard lock(m_mutex);
    if (!mayAsk()) {
        showLine(request.title + ": cancelled, there is nobody to ask");
        return std::nullopt;
    }
    showLine(request.title);
    std::vector<bool> set;
    for (const FlagRequest::Flag& flag : request.flags) {
        const auto reply = askFlag(flag);
        if (!reply)
            return std::nullopt;
        set.push_back(*reply);
    }
    return set;
}

int CConsoleHost::showReport(const CString& text, const CString& title)
{
    const std::lock_guard lock(m_mutex);
    wipeBar();
    m_streams.out << showControlCharacters(title) << '\n' << showControlCharacters(text) << '\n' << std::flush;
    return m_streams.out.good() ? 1 : 0;
}

void CConsoleHost::show(const std::string& text)
{
    wipeBar();
    m_streams.err << text << std::flush;
}

void CConsoleHost::showLine(const CString& text)
{
    show(withPrefix(text).toUtf8() + '\n');
}

// One line of input; nothing at its end. On a terminal the end of input does not last, so each line tries anew.
std::optional<std::string> CConsoleHost::readLine()
{
    m_streams.in.clear();
    std::string line;
    if (!std::getline(m_streams.in, line))
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

bool CConsoleHost::askYesNo(const CString& text)
{
    const std::string question = withPrefix(text).toUtf8() + " [y/N] ";
    if (!mayAsk()) {
        show(question + (m_answerYes ? "yes\n" : "no\n"));
        return m_answerYes;
    }
    for (;;) {
        show(question);
        const auto line = readLine();
        if (!line)
            show("no\n");
        const CString reply = CString(line.value_or("")).Trim().MakeLower();
        if (reply == "y" || reply == "yes")
            return true;
        if (reply.IsEmpty() || reply == "n" || reply == "no")
            return false;
    }
}

// An empty line keeps the flag as it is; nothing at the end of input.
std::optional<bool> CConsoleHost::askFlag(const FlagRequest::Flag& flag)
{
    for (;;) {
        show(withPrefix(flag.label).toUtf8() + (flag.set ? "? [Y/n] " : "? [y/N] "));
        const auto line = readLine();
        if (!line) {
            show("cancelled\n");
            return std::nullopt;
        }
        const CString reply = CString(*line).Trim().MakeLower();
        if (reply.IsEmpty())
            return flag.set;
        if (reply == "y" || reply == "yes" || reply == "n" || reply == "no")
            return reply.Left(1) == "y";
    }
}

// The path as typed; nothing for an empty line and for the end of input.
std::optional<std::string> CConsoleHost::askPath(const FileRequest& request)
{
    show(withPrefix(request.open ? "File to open (empty: cancel):" : "File to save to (empty: cancel):").toUtf8() +
         ' ');
    auto line = readLine();
    if (!line)
        show("\n");
    if (!line || CString(*line).Trim().IsEmpty())
        return std::nullopt;
    return line;
}

// Whether the request allows this file. If not, the user has been told why.
bool CConsoleHost::isAccepted(const FileRequest& request, const std::string& path)
{
    std::error_code error;
    const fs::path folder = fs::path(path).parent_path();
    if (request.pathMustExist && !folder.empty() && !fs::is_directory(folder, error))
        showLine("There is no folder " + quoted(folder.string()));
    else if (!fs::path(path).has_filename() || fs::is_directory(path, error))
        showLine(quoted(path) + " is a folder");
    else if (request.fileMustExist && !fs::exists(path, error))
        showLine("There is no file " + quoted(path));
    else
        return !request.confirmOverwrite || !fs::exists(path, error) ||
               askYesNo(quoted(path) + " exists. Overwrite it?");
    return false;
}

void CConsoleHost::beginProgress(int id, const CString& title, std::int64_t from, std::int64_t to)
{
    const std::lock_guard lock(m_mutex);
    if (!m_streams.errIsTerminal)
        return;
    m_bars.push_back({id, title, from, to, from});
    drawWhenDue();
}

void CConsoleHost::setProgress(int id, std::int64_t position)
{
    const std::lock_guard lock(m_mutex);
    const auto bar = findBar(id);
    if (bar == m_bars.end())
        return;
    bar->position = position;
    drawWhenDue();
}

void CConsoleHost::endProgress(int id)
{
    const std::lock_guard lock(m_mutex);
    const auto bar = findBar(id);
    if (bar == m_bars.end())
        return;
    draw(*bar);
    m_streams.err << '\n' << std::flush;
    m_barIsShown = false;
    m_bars.erase(bar);
}

std::vector<CConsoleHost::Bar>::iterator CConsoleHost::findBar(int id)
{
    return std::find_if(m_bars.begin(), m_bars.end(), [id](const Bar& bar) { return bar.id == id; });
}

void CConsoleHost::drawWhenDue()
{
    const auto now = m_streams.clock();
    if (m_lastDraw && now - *m_lastDraw < drawInterval)
        return;
    m_lastDraw = now;
    draw(m_bars.back());
}

void CConsoleHost::draw(const Bar& bar)
{
    wipeBar();
    const double fraction = fractionDone(bar.from, bar.to, bar.position);
    m_streams.err << barLine(bar.title, fraction, m_streams.width()) << std::flush;
    m_barIsShown = true;
}

// Overwrites the bar with blanks, so that other text can take its line.
void CConsoleHost::wipeBar()
{
    if (!m_barIsShown)
        return;
    const int width = std::max(m_streams.width() - 1, 0);
    m_streams.err << '\r' << std::string(static_cast<std::size_t>(width), ' ') << '\r';
    m_barIsShown = false;
}

} // namespace megset
