#pragma once
// The re-sampling dialog with a window that takes note of what is done to it, and callbacks of an application.

#include "megset/platform/CDocument.h"
#include "megset/ui/CDlgReSamplingMEGData.h"

#include "tests/processing/resampledDataset.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace megset {

/// A window that records titles, buttons and repaints of its fields in order, and types what it is told on the next
/// reading of the fields.
class RecordingDialog : public CDlgReSamplingMEGData
{
public:
    explicit RecordingDialog(CMEGDatazk& data) { m_pDataset = &data; }
    ~RecordingDialog() override { waitForWorker(); }

    void SetWindowText(const CString& text) override
    {
        note("title: " + text.toUtf8());
        CWnd::SetWindowText(text);
    }
    void ShowWindow(bool show) override
    {
        note(show ? "open" : "close");
        CWnd::ShowWindow(show);
    }
    std::vector<std::string> calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    std::int64_t m_typedFactor = 0; ///< taken at the next reading, when not 0

protected:
    void readFields() override
    {
        note("read");
        if (m_typedFactor != 0)
            m_nFactor = m_typedFactor;
    }
    void showFields() override { note("show"); }
    void enableButtons(bool enable) override
    {
        note(enable ? "enable" : "disable");
        CDlgReSamplingMEGData::enableButtons(enable);
    }

private:
    void note(const std::string& call)
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(call);
    }

    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

/// The application behind the callbacks, which are plain functions: there is one at a time.
struct Application
{
    Application() { current = this; }
    ~Application() { current = nullptr; }

    static CDocument* createDocument()
    {
        if (!current->givesDocument)
            return nullptr;
        current->document.SetPathName(current->folder.path("Made.meg"));
        return &current->document;
    }
    static int attach(CPtrArray* datasets, CDocument* document)
    {
        ++current->attached;
        EXPECT_EQ(document, &current->document);
        EXPECT_EQ(datasets->GetSize(), 1);
        if (!current->accepts)
            return 0;
        current->made.reset(static_cast<CMEGDatazk*>(datasets->GetAt(0)));
        return 1;
    }

    TemporaryFolder folder;
    CDocument document;
    bool givesDocument = true;
    bool accepts = true;
    int attached = 0;
    std::unique_ptr<CMEGDatazk> made;
    inline static Application* current = nullptr;
};

} // namespace megset
