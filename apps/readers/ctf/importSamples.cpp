#include "apps/readers/ctf/importSamples.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxBeginThread.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace megset::ctf {

namespace {

// The same dataset of one trial, which is read from its file, for a thread of its own. Null when it can't be made.
std::unique_ptr<CMEGDatazk> copyOf(const CMEGDatazk& dataset)
{
    auto copy = tryNew<CMEGDatazk>();
    if (copy == nullptr || !copy->m_ppTrial.allocate(1))
        return nullptr;
    copy->m_nTotalTrial = 1;
    copy->m_aTrialFilePath = dataset.m_aTrialFilePath;
    copy->setDocument(dataset.m_pDocument, false);
    copy->m_strDatasetPath = dataset.m_strDatasetPath;
    copy->setMEGRecordInfozk(&dataset.m_recordInfo);
    return copy->openTrial(0) ? std::move(copy) : nullptr;
}

class SampleImport
{
public:
    SampleImport(Recording& recording, CMEGDatazk& dataset)
        : m_recording(recording), m_dataset(dataset), m_badTrials(recording.badTrials()),
          m_paths(static_cast<std::size_t>(recording.trials()))
    {
    }

    void run(int threads);

private:
    // Ends its thread before its dataset.
    struct Helper
    {
        std::unique_ptr<CMEGDatazk> dataset;
        std::unique_ptr<CWinThread> thread;
    };

    std::vector<Helper> startHelpers(int count);
    void takeTrials(CMEGDatazk& dataset, std::vector<std::int32_t>& block);
    void fillTrial(CMEGDatazk& dataset, int index, std::vector<std::int32_t>& block);
    void makeTrial(CMDTrialzk& trial, int index) const;
    void finishTrial(CMDTrialzk& trial, bool isGood) const;
    void writeTrial(CMDTrialzk& trial, int index);
    void installTrials();

    int totalChannels() const { return static_cast<int>(m_recording.header.channels.size()); }
    [[noreturn]] void fail(const std::string& fault) const { throw CtfError(m_recording.folder, fault); }
    [[noreturn]] void fail(int trial, const std::string& fault) const
    {
        fail("trial " + std::to_string(trial + 1) + " could not be " + fault);
    }

    Recording& m_recording;
    CMEGDatazk& m_dataset;
    const std::vector<int> m_badTrials;
    std::vector<CString> m_paths; // of the files that were written, by trial
    std::atomic<int> m_next{0};   // for whoever comes
    std::mutex m_reading;         // the recording's files have one position each
};

void SampleImport::run(int threads)
{
    std::vector<std::int32_t> block(m_recording.data.trialSize());
    std::vector<Helper> helpers = startHelpers(threads - 1);
    takeTrials(m_dataset, block);
    for (Helper& helper : helpers)
        helper.thread->wait();
    installTrials();
}

// As many as can be had. Their trials are read before the first one is written to the file that they come from.
std::vector<SampleImport::Helper> SampleImport::startHelpers(int count)
{
    std::vector<Helper> helpers;
    for (int i = 0; i < count; ++i) {
        Helper helper{copyOf(m_dataset), nullptr};
        if (helper.dataset == nullptr)
            break;
        helpers.push_back(std::move(helper));
    }
    for (Helper& helper : helpers) {
        helper.thread = AfxBeginThread([this, &own = *helper.dataset] {
            std::vector<std::int32_t> block(m_recording.data.trialSize());
            takeTrials(own, block);
            return 0U;
        });
    }
    std::erase_if(helpers, [](const Helper& helper) { return helper.thread == nullptr; });
    return helpers;
}

// A fault leaves no trial for the others either.
void SampleImport::takeTrials(CMEGDatazk& dataset, std::vector<std::int32_t>& block)
{
    try {
        for (int index = m_next++; index < m_recording.trials(); index = m_next++) {
            fillTrial(dataset, index, block);
            writeTrial(*dataset.getMDTrial(0), index);
        }
    } catch (...) {
        m_next = m_recording.trials();
        throw;
    }
}

void SampleImport::fillTrial(CMEGDatazk& dataset, int index, std::vector<std::int32_t>& block)
{
    {
        const std::lock_guard lock(m_reading);
        m_recording.data.readTrial(index, block);
    }
    CMDTrialzk* const trial = dataset.getTrialzk(0);
    if (trial == nullptr)
        fail(index, "imported");
    makeTrial(*trial, index);
    if (!dataset.importCtfDataT(0, totalChannels(), m_recording.header.samples, block.data()))
        fail(index, "imported");
    finishTrial(*trial, !std::ranges::binary_search(m_badTrials, index));
}

// Makes a trial of the recording another one, whose samples come next.
void SampleImport::makeTrial(CMDTrialzk& trial, int index) const
{
    trial.m_nTrialIndex = index;
    trial.m_strTrialName = CString::formatted("ImportTrial%d", index);
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (CMDChannelzk* const channel = trial.m_ppChannel[i])
            channel->m_nSnsGainApplied = 0;
}

// What the library's import leaves: the scale of channels that are no MEG sensors, and what is told of each channel.
void SampleImport::finishTrial(CMDTrialzk& trial, bool isGood) const
{
    for (int i = 0; i < totalChannels(); ++i) {
        const Channel& from = m_recording.header.channels[static_cast<std::size_t>(i)];
        CMDChannelzk* const channel = trial.m_ppChannel[i];
        if (channel == nullptr)
            continue;
        if (channel->getTotalSample() != m_recording.header.samples)
            fail("there is no memory for the samples of channel \"" + from.name + "\"");
        finishChannel(from, *channel);
    }
    trial.m_headLocalization = m_dataset.m_headLocalization;
    trial.setTrialGood(isGood);
}

// Under the name that the library gives to the file of an imported trial.
void SampleImport::writeTrial(CMDTrialzk& trial, int index)
{
    CString path =
        CString::formatted("%s%s_%s.trl", m_dataset.m_strTrialFolder, m_dataset.m_strSessionName, trial.m_strTrialName);
    if (!trial.saveTrialData(path, m_dataset.m_pDocument, m_dataset.m_strDatasetPath, true))
        fail(index, "saved");
    m_paths[static_cast<std::size_t>(index)] = trial.m_strTrialFilePath;
}

// The trials are in their files.
void SampleImport::installTrials()
{
    const int count = m_recording.trials();
    m_dataset._cleanDatasetTrials();
    m_dataset.m_aTrialFilePath.RemoveAll();
    if (!m_dataset.m_ppTrial.allocate(count))
        fail("there is no memory for the list of trials");
    for (const CString& path : m_paths)
        m_dataset.m_aTrialFilePath.Add(path);
    m_dataset.m_nTotalTrial = m_dataset.m_nRealTrial = count;
    m_dataset.m_nCurrentTrial = count - 1;
}

} // namespace

int importThreads(const Recording& recording)
{
    constexpr std::uint64_t mostThreads = 4; // they share one disk
    constexpr std::uint64_t mostBytes = std::uint64_t{256} << 20U;
    constexpr std::uint64_t bytesPerSample = 2 * sizeof(double) + sizeof(std::int32_t);
    const std::uint64_t processors = std::max(std::thread::hardware_concurrency(), 1U);
    const auto trials = static_cast<std::uint64_t>(recording.trials());
    const std::uint64_t held = mostBytes / (std::uint64_t{recording.data.trialSize()} * bytesPerSample);
    return static_cast<int>(std::max<std::uint64_t>(std::min({mostThreads, processors, trials, held}), 1));
}

void importSamples(Recording& recording, CMEGDatazk& dataset, int threads)
{
    SampleImport(recording, dataset).run(threads);
}

} // namespace megset::ctf
