// Blanking of the ranges that the user selected to be moved out.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/arithmetic.h"

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

namespace megset {
namespace {

// Samples begin to end - 1.
struct Range
{
    std::int64_t begin;
    std::int64_t end;
};

// The marked ranges in ascending order, with those that overlap or touch made one.
std::vector<Range> rangesOf(const CMarkerData& marker)
{
    std::vector<Range> marked;
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i) {
        const MarkTrigClass* point = marker.getMarkPt(i);
        if (point == nullptr || point->m_nMarkPtEnd < std::max<std::int64_t>(point->m_nMarkPtBegin, 0))
            continue;
        const std::int64_t last = std::min(point->m_nMarkPtEnd, std::numeric_limits<std::int64_t>::max() - 1);
        marked.push_back({std::max<std::int64_t>(point->m_nMarkPtBegin, 0), last + 1});
    }
    std::sort(marked.begin(), marked.end(), [](const Range& a, const Range& b) { return a.begin < b.begin; });
    std::vector<Range> ranges;
    for (const Range& range : marked) {
        if (!ranges.empty() && range.begin <= ranges.back().end)
            ranges.back().end = std::max(ranges.back().end, range.end);
        else
            ranges.push_back(range);
    }
    return ranges;
}

// Every range becomes 0, or with `hold` the sample before it, which is 0 before the first.
void blank(std::span<double> samples, const std::vector<Range>& ranges, bool hold)
{
    for (const Range& range : ranges) {
        if (range.begin >= std::ssize(samples))
            return;
        const auto begin = static_cast<std::size_t>(range.begin);
        const auto end = static_cast<std::size_t>(std::min(range.end, std::ssize(samples)));
        numeric::fill(samples.subspan(begin, end - begin), hold && begin > 0 ? samples[begin - 1] : 0.0);
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
    const std::vector<Range> ranges = rangesOf(*marker);
    for (int i = 0; i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->getChannel(i);
        if (channel == nullptr || channel->getDataWave() == nullptr)
            continue;
        const auto count = static_cast<std::size_t>(std::max<std::int64_t>(channel->getTotalSample(), 0));
        blank({channel->getDataWave(), count}, ranges, m_nSegmentCutNext != 0);
    }
    return 1;
}

} // namespace megset
