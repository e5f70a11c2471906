// The ranges that the user selected to be moved out, and their blanking.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/arithmetic.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/processing/segmentRanges.h"

#include <algorithm>
#include <span>
#include <vector>

namespace megset {
namespace {

// Every range becomes 0, or with `hold` the sample before it, which is 0 before the first.
void blank(std::span<double> samples, const std::vector<SampleSpan>& ranges, bool hold)
{
    for (const SampleSpan& range : ranges) {
        if (range.begin >= std::ssize(samples))
            return;
        const auto begin = static_cast<std::size_t>(range.begin);
        const auto end = static_cast<std::size_t>(std::min(range.end, std::ssize(samples)));
        numeric::fill(samples.subspan(begin, end - begin), hold && begin > 0 ? samples[begin - 1] : 0.0);
    }
}

// Does that on all channels of a trial.
void blank(const CMDTrialzk& trial, const std::vector<SampleSpan>& ranges, bool hold)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.getChannel(i);
        if (channel == nullptr || channel->getDataWave() == nullptr)
            continue;
        const auto count = static_cast<std::size_t>(std::max<std::int64_t>(channel->getTotalSample(), 0));
        blank({channel->getDataWave(), count}, ranges, hold);
    }
}

} // namespace

int CMEGData2Process::segmentRemov4DcOffFilt(CMDTrialzk* trial)
{
    if (m_nSegmentCutState == 0)
        return 1;
    const CMarkerDatazk* marker = m_mkSelect4Move.getMarkerRoundIndx(-1, true);
    if (trial == nullptr || marker == nullptr || !trial->getAllChannelPt())
        return 0;
    blank(*trial, markedRanges(*marker), m_nSegmentCutNext != 0);
    return 1;
}

int CMEGData2Process::segmentRemove(int allTrials, int mode)
{
    if (mode == -1)
        mode = m_nSegmentCutNext;
    const CMarkerDatazk* marker = m_mkSelect4Move.getMarkerRoundIndx(-1, true);
    if (marker == nullptr)
        return 0;
    const std::vector<SampleSpan> ranges = markedRanges(*marker);
    const TrialWalk walk = walkOver(allTrials != 0);
    for (int i = walk.first; i < walk.end; ++i)
        if (const CMDTrialzk* trial = getTrialzk(i))
            blank(*trial, ranges, mode != 0);
    m_nSegmentCutState = 1;
    m_nSegmentCutNext = mode;
    return 1;
}

int CMEGData2Process::addSegment4Cut(std::int64_t begin, std::int64_t end)
{
    CMarkerDatazk* marker = m_mkSelect4Move.getMarkerRoundIndx(-1, true);
    if (marker == nullptr) {
        const int made = m_mkSelect4Move.addMarker(tryNew<CMarkerDatazk>());
        if (made < 0)
            return 0;
        marker = m_mkSelect4Move.getMarker(made, true);
    }
    if (marker->getTotalTrgMrkPts() > 0 && hasRateRisen(m_recordInfo.m_dRecSampleRate, *marker)) {
        if (AfxMessageBox("The sampling rate changed, would you like to remove all the old selection?!", MB_YESNO) !=
            IDYES)
            return 0;
        marker->cleanMarkedPts();
    }
    begin = begin == -1 ? m_nSelectStart : begin;
    end = end == -1 ? m_nSelectEnd : end;
    // The selection decides, not the end that was given: it is meant so.
    if (m_nSelectEnd >= m_recordInfo.m_nRecTotalSample)
        end = m_recordInfo.m_nRecTotalSample - 1;
    if (begin >= end)
        return 0;
    marker->m_dMarkSampleRate = m_recordInfo.m_dRecSampleRate;
    CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    return marker->addClassifyTrial(m_nCurrentTrial, trial->getCurntChnlIndx(), begin, end, getSampleRate(),
                                    getPreTrigMsc());
}

} // namespace megset
