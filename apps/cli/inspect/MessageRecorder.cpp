#include "apps/cli/inspect/MessageRecorder.h"

#include "megset/platform/AfxMessageBox.h"

#include <utility>

namespace megset::cli {

namespace {

constexpr std::size_t mostMessages = 100;

} // namespace

MessageRecorder::MessageRecorder(std::function<ReaderMessage()> place)
    : m_place(std::move(place)), m_pFormer(AfxSetHost(this))
{
}

MessageRecorder::~MessageRecorder()
{
    AfxSetHost(m_pFormer);
}

int MessageRecorder::messageBox(const CString& text, unsigned type)
{
    record(text);
    return isQuestion(type) ? IDNO : IDOK;
}

std::optional<FileChoice> MessageRecorder::chooseFile(const FileRequest& request)
{
    record("Which file instead of " + request.fileName + "?");
    return std::nullopt;
}

int MessageRecorder::showReport(const CString& text, const CString& title)
{
    record(title + ": " + text);
    return 1;
}

// Not a word to anybody: who keeps files goes on keeping them.
void MessageRecorder::trialFileIsWritten(const CString& path)
{
    if (m_pFormer != nullptr)
        m_pFormer->trialFileIsWritten(path);
}

void MessageRecorder::record(const CString& text)
{
    const std::lock_guard lock(m_mutex);
    ++m_count;
    if (m_messages.size() >= mostMessages)
        return;
    ReaderMessage message = m_place();
    message.text = text.toUtf8();
    m_messages.push_back(std::move(message));
}

} // namespace megset::cli
