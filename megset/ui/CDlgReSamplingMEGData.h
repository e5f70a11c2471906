// The re-sampling dialog without its window: fields, texts and what the controls do. A program's window derives from it
// and brings the hooks.
#pragma once

#include "megset/platform/AfxBeginThread.h"
#include "megset/platform/CPtrArray.h"
#include "megset/platform/CWnd.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

namespace megset {

class CDocument;
class CMEGDatazk;

/// Operations give 1, and 0 where they did not do what they are for; 0 for a dialog without a dataset.
///
/// Re-sampling in place runs on a worker thread, without a lock: nobody may touch the dataset or end it, and nobody may
/// end the dialog's window without waitForWorker(), before the title tells the end. There is one such run at a time.
class CDlgReSamplingMEGData : public CWnd
{
public:
    using CreateDocument = CDocument* (*)();
    /// Takes over the datasets of the list, which are then the document's; with a result of 0 they end.
    using AttachDatasets = int (*)(CPtrArray* datasets, CDocument* document);

    CDlgReSamplingMEGData();
    /// Waits for the worker.
    ~CDlgReSamplingMEGData() override;

    /// The dialog that was shown or used last; null when that one is gone.
    static CDlgReSamplingMEGData* latest() { return s_pLatest; }
    /// Shows the dialog of `slot` for a dataset, and makes it at first use. The parent is stored when it is not null.
    /// 1; 0 for null, without trials ("There is no data!") and without memory.
    static int show(std::unique_ptr<CDlgReSamplingMEGData>& slot, CMEGDatazk* data, CWnd* parent,
                    CreateDocument createDocument, AttachDatasets attachDatasets);

    // Texts of the controls

    static constexpr std::string_view allTrialsLabel = "All Trials";
    static constexpr std::string_view averageLabel = "Averaging Sample (low-pass filter)";
    static constexpr std::string_view makeNewDatasetLabel = "Make a New Dataset";
    static constexpr std::string_view factorLabel = "Re-sampling Ratio";
    static constexpr std::string_view analysisLabel = "Analysis Frequency";
    static constexpr std::string_view preTriggerLabel = "Pre-Trigger Points";
    static constexpr std::string_view setNewLabel = "Set New";
    static constexpr std::string_view loadOldLabel = "Load Old";
    static constexpr std::string_view updateLabel = "Update";
    static constexpr std::string_view applyLabel = "Apply";
    static constexpr std::string_view exitLabel = "Exit";
    /// A reminder; choosing does nothing.
    static constexpr std::array<std::string_view, 10> analysisFrequencies = {
        "Delta:1-4 Hz",        "Theta:4-8 Hz",     "Alpha:8-12 Hz",          "Beta: 13-30Hz",    "Low-gamma: 30-60Hz",
        "High-gamma: 60-90Hz", "Ripple: 80-250Hz", "Fast Ripple: 250-600Hz", "HFOs: 600-1000Hz", "VHFOs:1000-3000Hz"};
    static constexpr int analysisSelected = 2;
    /// The list drops down as wide as this text.
    static constexpr std::string_view analysisWidest = "Fast Ripple: 250-600Hz";

    // What the controls do

    /// When the window is made: takes the pre-trigger points from what was recorded, and gives them to the dataset.
    int open();
    /// "Update": the fields from the dataset.
    int update();
    /// The ratio was typed: new rate and texts follow when it differs and is above 0.
    int changeFactor(std::int64_t factor);
    /// The new rate was typed: the ratio follows when it differs and is above 0, the texts when that is 1 or more.
    int changeNewRate(double rate);
    void changePreTrigPts(std::int64_t points) { m_nPreTrigPts = points; }
    /// "Set New": the pre-trigger points go to the dataset; "Set Pre-trigger sample permanently? " asks whether to what
    /// was recorded, too. 0 for points outside the trial, with "Pre-Trigger points (%I64d) should be smaller than
    /// sample
    /// (%I64d)" or "Pre-Trigger points (%I64d) should be larger than 0", shown just so.
    int setNewPreTrigPts();
    /// "Load Old": the pre-trigger points of the recording, limited to the trial, become the dataset's. 0 where there
    /// is no trial to limit them to; the field is 0 then.
    int loadOldPreTrigPts();
    /// "Apply": writes averaging and ratio to the dataset, whatever comes of them, and re-samples in place on a worker
    /// thread or, with Make a New Dataset, makes a new dataset. 0 at once while a worker runs.
    int apply();
    /// "Exit": stores the fields and closes.
    void exit();

    /// Waits for the worker. An exception that ended it is raised here.
    void waitForWorker();
    /// Waits for the worker, whatever ended it. Owners call it before they end the dialog: its hooks are virtual, and
    /// no longer the window's once the destructor has begun.
    void endWorker() noexcept { m_pWorker.reset(); }
    /// Whether Apply and Exit can be pressed. Any thread may ask.
    bool areButtonsEnabled() const { return m_bButtonsEnabled; }

    // The fields

    CMEGDatazk* m_pDataset = nullptr; ///< not owned
    bool m_bAllTrials = true;
    bool m_bAverage = false;
    std::int64_t m_nFactor = 1;
    CWnd* m_pParent = nullptr; ///< not owned
    CString m_strSampleRate;   ///< "SR:..."
    CString m_strSize;         ///< "Size:..."
    double m_dNewRate = 1.0;   ///< Hz
    CString m_strNewRateLabel = "New Sampling Rate (must < Recording SR)";
    std::int64_t m_nPreTrigPts = 0;
    bool m_bMakeNewDataset = true;
    CreateDocument m_createDocument = nullptr;
    AttachDatasets m_attachDatasets = nullptr;
    CPtrArray m_aNewDataset; ///< filled while the callback runs

protected:
    // Hooks of a window

    /// Takes what the controls hold into the fields.
    virtual void readFields() {}
    /// Shows the fields in the controls.
    virtual void showFields() {}
    /// Also called on the worker thread.
    virtual void enableButtons(bool enable) { m_bButtonsEnabled = enable; }
    virtual void bringToFront() {}

private:
    class Working;
    struct Settings
    {
        bool average = false;
        std::int64_t factor = 1;
        bool allTrials = true;
    };

    void makeLatest();
    void showRates(std::int64_t factor, double newRate);
    int applyInPlace();
    int applyToNewDataset();
    int makeNewDataset();
    void attachNewDataset(std::unique_ptr<CMEGDatazk> made, CDocument* document);
    void reSample(CMEGDatazk& data);
    static unsigned work(void* data);

    static std::atomic<CDlgReSamplingMEGData*> s_pLatest; ///< where the worker finds its dialog
    static std::atomic<bool> s_bWorking;

    std::atomic<bool> m_bButtonsEnabled{true};
    Settings m_applied; ///< the worker's: fields may be edited while it runs
    std::unique_ptr<CWinThread> m_pWorker;
};

} // namespace megset
