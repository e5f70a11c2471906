#include "megset/ui/CDlgReSamplingMEGData.h"

#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/cut.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CWaitCursor.h"
#include "megset/platform/memory.h"
#include "megset/processing/resampledCopy.h"

#include <algorithm>

namespace megset {
namespace {

// A rejected ratio stays in the dataset; where it is divided by, one below 1 counts as 1.
std::int64_t divisorOf(std::int64_t factor)
{
    return std::max<std::int64_t>(factor, 1);
}

} // namespace

std::atomic<CDlgReSamplingMEGData*> CDlgReSamplingMEGData::s_pLatest{nullptr};
std::atomic<bool> CDlgReSamplingMEGData::s_bWorking{false};

/// Work is under way: Apply and Exit are disabled and the wait cursor is shown.
class CDlgReSamplingMEGData::Working
{
public:
    explicit Working(CDlgReSamplingMEGData& dialog) : m_dialog(dialog) { m_dialog.enableButtons(false); }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;
    ~Working() { m_dialog.enableButtons(true); }

private:
    CWaitCursor m_cursor;
    CDlgReSamplingMEGData& m_dialog;
};

CDlgReSamplingMEGData::CDlgReSamplingMEGData()
{
    CWnd::SetWindowText("Re-sampling All Data");
    CWnd::ShowWindow(false);
    makeLatest();
}

CDlgReSamplingMEGData::~CDlgReSamplingMEGData()
{
    m_pWorker.reset();
    CDlgReSamplingMEGData* self = this;
    s_pLatest.compare_exchange_strong(self, nullptr);
}

// While a worker runs, its dialog stays where it looks for it.
void CDlgReSamplingMEGData::makeLatest()
{
    if (!s_bWorking)
        s_pLatest = this;
}

int CDlgReSamplingMEGData::show(std::unique_ptr<CDlgReSamplingMEGData>& slot, CMEGDatazk* data, CWnd* parent,
                                CreateDocument createDocument, AttachDatasets attachDatasets)
{
    if (data == nullptr)
        return 0;
    if (data->m_nTotalTrial < 1) {
        AfxMessageBox("There is no data!", MB_OK);
        return 0;
    }
    const bool isNew = slot == nullptr;
    if (isNew)
        slot = tryNew<CDlgReSamplingMEGData>();
    if (slot == nullptr)
        return 0;
    CDlgReSamplingMEGData& dialog = *slot;
    dialog.makeLatest();
    dialog.m_createDocument = createDocument;
    dialog.m_attachDatasets = attachDatasets;
    dialog.m_pDataset = data;
    if (parent != nullptr)
        dialog.m_pParent = parent;
    if (isNew)
        dialog.open();
    dialog.ShowWindow(true);
    dialog.update();
    dialog.bringToFront();
    return 1;
}

int CDlgReSamplingMEGData::open()
{
    if (m_pDataset == nullptr)
        return 0;
    CMEGRecordInfozkProzk& record = m_pDataset->m_recordInfo;
    const std::int64_t last = std::max<std::int64_t>(record.m_nRecTotalSample, 0) - 1;
    m_nPreTrigPts = std::max<std::int64_t>(std::min(record.m_nRawPreTrigPts, last), 0);
    record.m_nRecPreTrigPts = m_nPreTrigPts;
    return 1;
}

// The texts on size and rates before and after.
void CDlgReSamplingMEGData::showRates(std::int64_t factor, double newRate)
{
    const CMEGRecordInfozkProzk& record = m_pDataset->m_recordInfo;
    m_strSize = CString::formatted("Size:%I64d->%I64d", record.m_nRawTotalSample, m_pDataset->resampledCount(factor));
    m_strSampleRate = CString::formatted("SR:%08f->%08f", record.m_dRawSampleRate, newRate);
}

int CDlgReSamplingMEGData::update()
{
    if (m_pDataset == nullptr)
        return 0;
    const CMEGRecordInfozkProzk& record = m_pDataset->m_recordInfo;
    m_bAverage = record.m_bResampleAverage != 0;
    m_nFactor = record.m_nResampleFactor;
    m_dNewRate = record.m_dRecSampleRate;
    m_strNewRateLabel = CString::formatted("New SR(<%0.1f", record.m_dRawSampleRate);
    showRates(m_nFactor, record.m_dRawSampleRate / static_cast<double>(divisorOf(m_nFactor)));
    m_nPreTrigPts = record.m_nRawPreTrigPts;
    showFields();
    return 1;
}

int CDlgReSamplingMEGData::changeFactor(std::int64_t factor)
{
    const bool acts = m_pDataset != nullptr && factor != m_nFactor && factor > 0;
    m_nFactor = factor;
    if (!acts)
        return 0;
    m_dNewRate = m_pDataset->m_recordInfo.m_dRawSampleRate / static_cast<double>(factor);
    showRates(factor, m_dNewRate);
    showFields();
    return 1;
}

int CDlgReSamplingMEGData::changeNewRate(double rate)
{
    const bool acts = m_pDataset != nullptr && rate != m_dNewRate && rate > 0.0;
    m_dNewRate = rate;
    if (!acts)
        return 0;
    const double ratio = m_pDataset->m_recordInfo.m_dRawSampleRate / rate;
    m_nFactor = ratio > 0.0 ? numeric::cutToCount(ratio) : 0;
    if (m_nFactor >= 1)
        showRates(m_nFactor, rate);
    showFields();
    return m_nFactor >= 1 ? 1 : 0;
}

int CDlgReSamplingMEGData::setNewPreTrigPts()
{
    if (m_pDataset == nullptr)
        return 0;
    CMEGRecordInfozkProzk& record = m_pDataset->m_recordInfo;
    // The texts are shown letter by letter, and the number goes to the kind of box: it is meant so.
    const auto kind = static_cast<unsigned>(m_nPreTrigPts);
    if (m_nPreTrigPts >= record.m_nRecTotalSample) {
        AfxMessageBox("Pre-Trigger points (%I64d) should be smaller than sample (%I64d)", kind);
        return 0;
    }
    if (m_nPreTrigPts < 0) {
        AfxMessageBox("Pre-Trigger points (%I64d) should be larger than 0", kind);
        return 0;
    }
    record.m_nRecPreTrigPts = m_nPreTrigPts;
    if (AfxMessageBox("Set Pre-trigger sample permanently? ", MB_YESNO) == IDYES)
        record.m_nRawPreTrigPts = m_nPreTrigPts;
    return 1;
}

int CDlgReSamplingMEGData::loadOldPreTrigPts()
{
    if (m_pDataset == nullptr)
        return 0;
    readFields();
    CMEGRecordInfozkProzk& record = m_pDataset->m_recordInfo;
    m_nPreTrigPts = std::min(record.m_nRawPreTrigPts, std::max<std::int64_t>(record.m_nRecTotalSample, 0) - 1);
    if (m_nPreTrigPts < 0) {
        m_nPreTrigPts = 0; // the dataset keeps its number, and the screen the old one: it is meant so
        return 0;
    }
    record.m_nRecPreTrigPts = m_nPreTrigPts;
    showFields();
    return 1;
}

void CDlgReSamplingMEGData::exit()
{
    readFields();
    ShowWindow(false);
}

int CDlgReSamplingMEGData::apply()
{
    if (m_pDataset == nullptr || s_bWorking)
        return 0;
    readFields();
    // Before anything is checked: a rejected ratio stays in the dataset, as it is meant.
    m_pDataset->m_recordInfo.m_bResampleAverage = m_bAverage;
    m_pDataset->m_recordInfo.m_nResampleFactor = m_nFactor;
    return m_bMakeNewDataset ? applyToNewDataset() : applyInPlace();
}

// ---- in place

int CDlgReSamplingMEGData::applyInPlace()
{
    m_applied = {m_bAverage, m_nFactor, m_bAllTrials};
    makeLatest();
    if (s_bWorking.exchange(true))
        return 0;
    SetWindowText("Preparing for Re-sampling MEG data...");
    m_pWorker = AfxBeginThread(&CDlgReSamplingMEGData::work, m_pDataset);
    if (m_pWorker == nullptr) // no thread to be had: the caller's does it
        work(m_pDataset);
    return 1;
}

unsigned CDlgReSamplingMEGData::work(void* data)
{
    struct End
    {
        ~End() { s_bWorking = false; }
    };
    const End end;
    s_pLatest.load()->reSample(*static_cast<CMEGDatazk*>(data));
    return 0;
}

void CDlgReSamplingMEGData::reSample(CMEGDatazk& data)
{
    const Working working(*this);
    SetWindowText("Re-sampling MEG data...");
    data.reSampleData(m_applied.average, m_applied.factor, m_applied.allTrials);
    data.m_bViewRedraw = 1;
    data.viewerInvalidate(true, nullptr, true);
    SetWindowText("Re-sampling MEG data has been done!");
}

void CDlgReSamplingMEGData::waitForWorker()
{
    if (m_pWorker != nullptr)
        m_pWorker->wait();
}

// ---- to a new dataset

int CDlgReSamplingMEGData::applyToNewDataset()
{
    int done = 0;
    {
        const Working working(*this);
        SetWindowText("Re-sampling to a New MEG dataset...");
        done = makeNewDataset();
        SetWindowText("Re-sampling to a New MEG dataset has been done!");
    }
    ShowWindow(false);
    return done;
}

int CDlgReSamplingMEGData::makeNewDataset()
{
    m_nFactor = std::max<std::int64_t>(m_nFactor, 1);
    if (!checkResampledCopy(*m_pDataset, m_nFactor) || m_createDocument == nullptr || m_attachDatasets == nullptr)
        return 0;
    CDocument* document = m_createDocument();
    if (document == nullptr)
        return 0;
    auto made = tryNew<CMEGDatazk>();
    if (made == nullptr) {
        AfxMessageBox("Not enough memory!", MB_OK);
        return 0;
    }
    // Without a place for its files there is nothing to make.
    if (!made->setDocument(document, true) ||
        !copyResampled(*m_pDataset, *made, {m_bAllTrials, m_bAverage, m_nFactor, m_dNewRate}))
        return 0;
    attachNewDataset(std::move(made), document);
    return 1;
}

void CDlgReSamplingMEGData::attachNewDataset(std::unique_ptr<CMEGDatazk> made, CDocument* document)
{
    m_aNewDataset.RemoveAll();
    m_aNewDataset.Add(made.get());
    static_cast<void>(made.release()); // the callback's, or ended here
    if (!m_attachDatasets(&m_aNewDataset, document))
        for (int i = 0; i < m_aNewDataset.GetSize(); ++i)
            delete static_cast<CMEGDatazk*>(m_aNewDataset.GetAt(i));
    m_aNewDataset.RemoveAll();
    SetWindowText("New Resampled dataset has been created successfully!");
}

} // namespace megset
