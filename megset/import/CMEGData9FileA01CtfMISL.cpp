#include "megset/import/CMEGData9FileA01CtfMISL.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CProgresszk.h"

namespace megset {

/// What importTrialChannels is given; null pointers are empty lists.
struct CMEGData9FileA01CtfMISL::Geometry
{
    const CPtrArray* sensors;
    const CPtrArray* electrodes;
    const CStringArray* sensorNames;
    const CStringArray* channelNames;

    int totalSensors() const { return sensors != nullptr ? sensors->GetSize() : 0; }
    int totalElectrodes() const { return electrodes != nullptr ? electrodes->GetSize() : 0; }
    bool hasNames(int i) const
    {
        return sensorNames != nullptr && i < sensorNames->GetSize() && channelNames != nullptr &&
               i < channelNames->GetSize();
    }
    /// Binds the sensors to the first channels, up to one that can't be.
    void bindSensors(CMDTrialzk& trial) const;
    void bindElectrodes(CMDTrialzk& trial) const;
};

namespace {

/// A trial's samples in a caller's block: channel c begins at c * stride.
struct SampleBlock
{
    int channels;
    std::int64_t samples;
    std::int64_t stride;
    const std::int32_t* data;

    const std::int32_t* row(std::int64_t c) const { return data != nullptr ? data + c * stride : nullptr; }
};

// Samples, then gain, then scale, all of a channel while it is in cache: to the bit what one after the other over the
// whole trial gives. What a channel gives is not looked at.
void takeSamples(const CMDTrialzk& trial, const SampleBlock& block, double scale)
{
    for (int c = 0; c < trial.getTotalChannel(); ++c) {
        CMDChannelzk* channel = trial.m_ppChannel[c];
        if (channel == nullptr)
            continue;
        if (c < block.channels)
            channel->addDataL(block.samples, block.row(c));
        channel->applyMEGSnsrGainDir2Data(false);
        if (scale != 0.0)
            channel->scaleWaveData(scale, 1);
    }
}

} // namespace

// ---- geometry

void CMEGData9FileA01CtfMISL::Geometry::bindSensors(CMDTrialzk& trial) const
{
    for (int i = 0; i < totalSensors(); ++i) {
        const auto* sensor = static_cast<const CMEGSensorzk*>(sensors->GetAt(i));
        if (sensor == nullptr) {
            AfxMessageBox("Finding recorded MEG sensor error!", MB_OK);
            continue;
        }
        if (!hasNames(i) || !trial.setMEGSensorParameter(sensor, i) ||
            !trial.setMEGSensorName(sensorNames->GetAt(i), channelNames->GetAt(i), i)) {
            AfxMessageBox("Set sensor error", MB_OK);
            return;
        }
    }
}

void CMEGData9FileA01CtfMISL::Geometry::bindElectrodes(CMDTrialzk& trial) const
{
    for (int i = 0; i < totalElectrodes(); ++i)
        if (const auto* electrode = static_cast<const CEEGelectrodezk*>(electrodes->GetAt(i)))
            trial.setEEG_electrodes(electrode);
}

std::unique_ptr<CMDTrialzk> CMEGData9FileA01CtfMISL::makeImportTrial(int index, int nChannel,
                                                                     const Geometry& geometry) const
{
    auto trial = tryNew<CMDTrialzk>();
    if (trial == nullptr || !trial->allocateChannels(nChannel)) {
        AfxMessageBox("Not enough memory?", MB_OK);
        return nullptr;
    }
    geometry.bindSensors(*trial);
    geometry.bindElectrodes(*trial);
    trial->m_nVirtualTrial = 0;
    trial->m_nTrialKind = 1;
    trial->m_nTrialIndex = index;
    trial->m_strTrialName = CString::formatted("ImportTrial%d", index);
    return trial;
}

// Writes the files of all trials; none stays in memory.
int CMEGData9FileA01CtfMISL::importTrialFiles(int nTrial, int nChannel, const Geometry& geometry)
{
    CProgresszk progress("Importing and checking trial and channel parameters ...", 0, nTrial);
    for (int i = 0; i < nTrial; ++i) {
        progress.setPos(i);
        const std::unique_ptr<CMDTrialzk> trial = makeImportTrial(i, nChannel, geometry);
        if (trial == nullptr)
            return 0;
        CString path = freePathOfNewDataset(
            CString::formatted("%s%s_%s", m_strTrialFolder, m_strSessionName, trial->m_strTrialName));
        if (trial->saveTrialData(path, m_pDocument, m_strDatasetPath, true))
            m_aTrialFilePath.Add(trial->m_strTrialFilePath);
    }
    return 1;
}

int CMEGData9FileA01CtfMISL::importTrialChannels(int nTrial, int nChannel, const CPtrArray* sensors,
                                                 const CPtrArray* electrodes, const CStringArray* sensorNames,
                                                 const CStringArray* channelNames, CDocument* doc)
{
    _cleanDatasetTrials();
    if (nTrial < 1 || nChannel < 1 || !setDocument(doc, true))
        return 0;
    m_aTrialFilePath.RemoveAll();
    removeUnsavedPlaces();
    SlotArray<CMDTrialzk> slots;
    if (!slots.allocate(nTrial))
        return fail("Not enough memory?!");
    if (!importTrialFiles(nTrial, nChannel, {sensors, electrodes, sensorNames, channelNames}))
        return 0;
    m_ppTrial = std::move(slots);
    m_nTotalTrial = nTrial;
    m_nRealTrial = nTrial;
    m_nVirtualTrial = 0;
    if (const CMDTrialzk* first = getTrialzk(0)) {
        checkInitChnlParam(first);
        setShowMEGMeasureChannel();
    }
    return 1;
}

int CMEGData9FileA01CtfMISL::initSensorBasic(int geometryCode, int channel, int type, bool show, const CString& name,
                                             const CString& name2, int nItem, int* pTurns, double* pDewarPos,
                                             double* pDewarDir, double* pHeadPos, double* pHeadDir)
{
    for (int i = 0; i < placedTrials(); ++i) {
        const CMDTrialzk* trial = getMDTrial(i);
        if (trial == nullptr)
            continue;
        checkInitChnlParam(trial);
        setShowChnl4Alltrials(channel, show);
        if (CMDChannelzk* target = trial->m_ppChannel[channel])
            target->initSensorBasic(geometryCode, type, name, name2, nItem, pTurns, pDewarPos, pDewarDir, pHeadPos,
                                    pHeadDir);
    }
    return 1;
}

// ---- samples

// The trial with its channels; null with a message.
const CMDTrialzk* CMEGData9FileA01CtfMISL::openForImport(int trial)
{
    const CMDTrialzk* opened = getTrialzk(trial);
    if (opened == nullptr)
        AfxMessageBox("Open trial data error?", MB_OK);
    else if (!opened->getAllChannelPt())
        AfxMessageBox("Channels have not been initialized!?", MB_OK);
    return opened != nullptr && opened->getAllChannelPt() ? opened : nullptr;
}

int CMEGData9FileA01CtfMISL::importCtfDataC(int trial, int channel, std::int64_t nSample, const std::int32_t* data)
{
    const CMDTrialzk* opened = openForImport(trial);
    CMDChannelzk* target = opened != nullptr ? opened->m_ppChannel[channel] : nullptr;
    if (target == nullptr || !target->addDataL(nSample, data))
        return 0;
    target->applyMEGSnsrGainDir2Data(false);
    return 1;
}

int CMEGData9FileA01CtfMISL::importCtfDataT(int trial, int nChannel, std::int64_t nSample, const std::int32_t* data)
{
    const CMDTrialzk* opened = openForImport(trial);
    if (opened == nullptr)
        return 0;
    const int averages = m_recordInfo.m_nAverageCount;
    takeSamples(*opened, {nChannel, nSample, nSample, data}, averages >= 2 ? 2.0 / averages : 0.0);
    return 1;
}

int CMEGData9FileA01CtfMISL::importCtfDataTsplit(int block, int nTrialPerBlock, int nChannel,
                                                 std::int64_t channelStride, std::int64_t nSample,
                                                 const std::int32_t* data)
{
    const std::int64_t first = static_cast<std::int64_t>(block) * nTrialPerBlock;
    for (std::int64_t k = 0; k < nTrialPerBlock; ++k) {
        const bool isTrial = first + k >= 0 && first + k < m_nTotalTrial;
        const int index = isTrial ? static_cast<int>(first + k) : m_nTotalTrial; // -1 would be the current trial
        const CMDTrialzk* opened = openForImport(index);
        if (opened == nullptr)
            return 0;
        const std::int32_t* const begin = data != nullptr ? data + k * nSample : nullptr;
        takeSamples(*opened, {nChannel, nSample, channelStride, begin}, 0.0);
    }
    return 1;
}

} // namespace megset
