// Re-sampling of a dataset in place. It always starts from the raw samples, so it can be repeated and undone.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <limits>

namespace megset {
namespace {

// Runs `reSample(channel)` on every channel; 0 at the first that gives 0.
template <class Operation>
int forEachChannel(const CMDTrialzk& trial, Operation reSample)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (CMDChannelzk* channel = trial.getChannel(i); channel != nullptr && !reSample(*channel))
            return 0;
    return 1;
}

} // namespace

int CMEGData2Process::checkResampleFactor(std::int64_t factor) const
{
    // The bound is taken from the number of samples although the text tells of a rate: it is meant so.
    const std::int64_t half = m_recordInfo.m_nRawTotalSample / 2;
    if (factor < half)
        return 1;
    AfxMessageBox(
        CString::formatted("Re-sampling factor (%I64d) cannot be larger than half of the sampling rate (%I64d)", factor,
                           half),
        MB_OK);
    return 0;
}

std::int64_t CMEGData2Process::resampledCount(std::int64_t factor) const
{
    const std::int64_t runs = m_recordInfo.m_nRawTotalSample / std::max<std::int64_t>(factor, 1);
    // One more than the record will tell: it is meant so.
    return runs < std::numeric_limits<std::int64_t>::max() ? runs + 1 : runs;
}

int CMEGData2Process::reSampleData(bool average, std::int64_t factor, bool allTrials)
{
    factor = std::max<std::int64_t>(factor, 1);
    if (!checkResampleFactor(factor))
        return 0;
    const std::int64_t n = resampledCount(factor);
    const TrialWalk walk = walkOver(allTrials);
    for (int i = walk.first; i < walk.end; ++i) {
        CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr || !trial->getAllChannelPt())
            continue;
        if (!forEachChannel(*trial, [=](CMDChannelzk& c) { return c.reSampleBkData(average, factor, n); }))
            return 0;
        trial->m_bTrialResampled = average;
        trial->m_nTrialResampleStep = factor;
    }
    setResampleParameter(average, factor);
    return 1;
}

int CMEGData2Process::setResampleParameter(bool average, std::int64_t factor)
{
    if (factor < 1)
        return 1;
    for (int i = 0; i < m_mkTrig.getTotalMarkers(); ++i) {
        CMarkerDatazk* marker = m_mkTrig.getMarker(i, false);
        if (marker == nullptr)
            continue;
        if (marker->hasLostMarkPts()) {
            AfxMessageBox("The triggers have been modified and the re-sampling needs to restore original data!", MB_OK);
            if (!marker->reloadBkMarkPts())
                return 0;
        }
        marker->scaleMarkPts(factor);
    }
    CMEGRecordInfozkProzk& record = m_recordInfo;
    record.m_nRecTotalSample = record.m_nRawTotalSample / factor;
    record.m_bResampleAverage = average;
    record.m_nResampleFactor = factor;
    record.m_nRecPreTrigPts = record.m_nRawPreTrigPts / factor;
    record.m_dRecSampleRate = record.m_dRawSampleRate / static_cast<double>(factor);
    return 1;
}

int CMEGData2Process::reSampleTrl4DcOffFilt(CMDTrialzk* trial)
{
    if (trial == nullptr || !trial->getAllChannelPt())
        return 0;
    const std::int64_t step = trial->m_nTrialResampleStep;
    const CMEGRecordInfozkProzk& record = m_recordInfo;
    const CMDChannelzk* first = trial->m_ppChannel[0];
    const std::int64_t count = first != nullptr ? first->getTotalSample() : 0;
    if (step != record.m_nResampleFactor && count != record.m_nRecTotalSample)
        setResampleParameter(trial->m_bTrialResampled != 0, step);
    if (step <= 1)
        return forEachChannel(*trial,
                              [](CMDChannelzk& c) { return c.getBkData() == nullptr || c.reverseRawData() != 0; });
    const bool average = record.m_bResampleAverage != 0;
    const std::int64_t factor = std::max<std::int64_t>(record.m_nResampleFactor, 1);
    // Here the channel's own raw count counts, not the record's.
    return forEachChannel(
        *trial, [=](CMDChannelzk& c) { return c.reSampleBkData(average, factor, c.getBkDataSample() / factor + 1); });
}

int CMEGData2Process::prepareRawData4DcOffFiltDatset(CMDTrialzk* trial, int index)
{
    if (trial == nullptr) {
        trial = getTrialzk(index);
        if (trial == nullptr || trial->getTotalChannel() < 1)
            return 0;
    }
    return reSampleTrl4DcOffFilt(trial) && segmentRemov4DcOffFilt(trial) ? 1 : 0;
}

} // namespace megset
