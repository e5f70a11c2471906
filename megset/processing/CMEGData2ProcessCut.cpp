// The selected ranges cut out of the working samples, which get shorter. The raw samples stay whole.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/wrapping.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/processing/segmentRanges.h"

#include <algorithm>

namespace megset {
namespace {

// A dataset's count of samples may come from a file: a channel gets at most this many times its raw samples.
constexpr std::int64_t mostStretch = 4096;

// Gives a channel `count` samples: those of the kept ranges, one behind the other, and then zeros.
int cut(CMDChannelzk& channel, const std::vector<SampleSpan>& kept, std::int64_t count)
{
    SampleArray samples;
    if (count / mostStretch <= channel.getBkDataSample())
        samples = tryNewSamples(count, true);
    if (samples == nullptr) {
        AfxMessageBox("Not enough memory!", MB_OK);
        return 0;
    }
    const double* former = channel.getDataWave();
    const std::int64_t formerCount = former != nullptr ? channel.getTotalSample() : 0;
    double* to = samples.get();
    for (const SampleSpan& range : kept) {
        if (range.begin >= formerCount)
            break;
        to = std::copy(former + range.begin, former + std::min(range.end, formerCount), to);
    }
    channel._cleanTimeDataC(false); // the first sample becomes current
    channel.m_pDataWave = std::move(samples);
    channel.m_nTotalSample = count;
    return 1;
}

int cut(const CMDTrialzk& trial, const std::vector<SampleSpan>& kept, std::int64_t count)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (CMDChannelzk* channel = trial.getChannel(i); channel != nullptr && channel->getBkData() != nullptr)
            if (!cut(*channel, kept, count))
                return 0;
    return 1;
}

// Samples of those that lie before `end`.
std::int64_t countBefore(const std::vector<SampleSpan>& ranges, std::int64_t end)
{
    std::int64_t count = 0;
    end = std::max<std::int64_t>(end, 0);
    for (const SampleSpan& range : ranges)
        count += std::max<std::int64_t>(std::min(range.end, end) - range.begin, 0);
    return count;
}

void moveTriggers(const CMarkerManagerzk& triggers, std::int64_t samples)
{
    for (int i = 0; i < triggers.getTotalMarkers(); ++i) {
        const CMarkerDatazk* marker = triggers.m_aMarkers.GetAt(i);
        for (int k = 0; marker != nullptr && k < marker->getTotalTrgMrkPts(); ++k) {
            MarkTrigClass* point = marker->getMarkPt(k);
            if (point == nullptr)
                continue;
            point->m_nMarkPtBegin = numeric::wrapSubtract(point->m_nMarkPtBegin, samples);
            point->m_nMarkPtEnd = numeric::wrapSubtract(point->m_nMarkPtEnd, samples);
        }
    }
}

} // namespace

// Cuts them out of all trials or of the current one, and brings triggers and recording information along: they are the
// whole dataset's. A channel ends with one sample of 0, which is the one more that a re-sampled channel has. 1; 0
// without a marker, with nothing to remove, for ranges of a lower sampling rate ("The sampling rate changed, the cut
// range is invalidated!!??"), and without memory, with the channels before done.
int CMEGData2Process::segmentCut(int allTrials)
{
    CMEGRecordInfozkProzk& record = m_recordInfo;
    const CMarkerDatazk* marker = m_mkSelect4Move.getMarkerRoundIndx(-1, true);
    if (marker == nullptr)
        return 0;
    if (hasRateRisen(record.m_dRecSampleRate, *marker)) {
        AfxMessageBox("The sampling rate changed, the cut range is invalidated!!??", MB_OK);
        return 0;
    }
    if (record.m_nRecTotalSample < 1)
        return 0;
    const std::int64_t lastBefore = numeric::wrapSubtract(record.m_nRecPreTrigPts, 1);
    const RemovedSamples removed = countRemoved(*marker, record.m_nRecTotalSample, lastBefore);
    if (!removed.any)
        return 0;
    const std::vector<SampleSpan> kept = unmarkedRanges(*marker, record.m_nRecTotalSample);
    const std::int64_t count = countBefore(kept, record.m_nRecTotalSample) + 1;
    const TrialWalk walk = walkOver(allTrials != 0);
    for (int i = walk.first; i < walk.end; ++i)
        if (const CMDTrialzk* trial = getTrialzk(i); trial != nullptr && !cut(*trial, kept, count))
            return 0;
    moveTriggers(m_mkTrig, removed.beforeTrigger);
    record.m_nRecTotalSample = count;
    record.m_nRecPreTrigPts = countBefore(kept, lastBefore) + 1;
    return 1;
}

} // namespace megset
