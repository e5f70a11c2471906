#pragma once
// The person who is shown what a reader has to say, but isn't there: everything is recorded, and no is the answer.

#include "megset/platform/CUserHost.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace megset::cli {

/// A message, and where in the file the reader was: the sections, and the offset of the field read last.
struct ReaderMessage
{
    std::string text;
    std::string section;
    std::uint64_t offset = 0;
};

/// Is the host of the process for its lifetime. What is recorded is asked for when no other thread is at work.
class MessageRecorder : public CUserHost
{
public:
    /// `place` tells where the reader is, in a message without text.
    explicit MessageRecorder(std::function<ReaderMessage()> place);
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;
    ~MessageRecorder() override;

    /// The first messages, up to 100, and how many came in all: a broken file may raise one with every few bytes.
    const std::vector<ReaderMessage>& messages() const { return m_messages; }
    std::uint64_t count() const { return m_count; }

    int messageBox(const CString& text, unsigned type) override;
    std::optional<FileChoice> chooseFile(const FileRequest& request) override;
    int showReport(const CString& text, const CString& title) override;
    void beginProgress(int, const CString&, std::int64_t, std::int64_t) override {}
    void setProgress(int, std::int64_t) override {}
    void endProgress(int) override {}
    void trialFileIsWritten(const CString& path) override;
    void beginWaitCursor() override {}
    void endWaitCursor() override {}
    void invalidate(CWnd&, bool) override {}

private:
    void record(const CString& text);

    std::mutex m_mutex; // messages may come from several threads
    std::function<ReaderMessage()> m_place;
    std::vector<ReaderMessage> m_messages;
    std::uint64_t m_count = 0;
    CUserHost* m_pFormer;
};

} // namespace megset::cli
