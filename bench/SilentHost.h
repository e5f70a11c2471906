#pragma once
// A host for benchmarks that shows nothing and asks nobody.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CUserHost.h"

namespace megset {

/// Says nothing, and Yes.
class SilentHost : public CUserHost
{
public:
    int messageBox(const CString&, unsigned) override { return IDYES; }
    std::optional<FileChoice> chooseFile(const FileRequest&) override { return std::nullopt; }
    void beginProgress(int, const CString&, std::int64_t, std::int64_t) override {}
    void setProgress(int, std::int64_t) override {}
    void endProgress(int) override {}
    int showReport(const CString&, const CString&) override { return 1; }
    void beginWaitCursor() override {}
    void endWaitCursor() override {}
    void invalidate(CWnd&, bool) override {}
};

} // namespace megset
