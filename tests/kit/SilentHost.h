#pragma once
// A host that shows nothing and answers every question alike: nobody is there.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CUserHost.h"

#include <optional>

namespace megset {

class SilentHost : public CUserHost
{
public:
    explicit SilentHost(int answer = IDNO) : m_answer(answer) {}

    int messageBox(const CString&, unsigned type) override { return isQuestion(type) ? m_answer : IDOK; }
    std::optional<FileChoice> chooseFile(const FileRequest&) override { return std::nullopt; }
    void beginProgress(int, const CString&, std::int64_t, std::int64_t) override {}
    void setProgress(int, std::int64_t) override {}
    void endProgress(int) override {}
    int showReport(const CString&, const CString&) override { return 1; }
    void beginWaitCursor() override {}
    void endWaitCursor() override {}
    void invalidate(CWnd&, bool) override {}

private:
    int m_answer;
};

} // namespace megset
