#include "megset/processing/segmentRanges.h"

#include "megset/numeric/wrapping.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <queue>

namespace megset {
namespace {

// The ranges in the marker's order, from sample 0 to `last`.
std::vector<SampleSpan> rangesInOrder(const CMarkerData& marker, std::int64_t last)
{
    std::vector<SampleSpan> ranges;
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i) {
        const MarkTrigClass* point = marker.m_aMarkPts.GetAt(i);
        if (point == nullptr)
            continue;
        const std::int64_t begin = std::max<std::int64_t>(point->m_nMarkPtBegin, 0);
        const std::int64_t end = std::min(point->m_nMarkPtEnd, last);
        if (begin <= end)
            ranges.push_back({begin, end + 1});
    }
    return ranges;
}

bool beginsBefore(const SampleSpan& a, const SampleSpan& b)
{
    return a.begin < b.begin;
}

} // namespace

std::vector<SampleSpan> markedRanges(const CMarkerData& marker)
{
    std::vector<SampleSpan> marked = rangesInOrder(marker, std::numeric_limits<std::int64_t>::max() - 1);
    std::sort(marked.begin(), marked.end(), beginsBefore);
    std::vector<SampleSpan> ranges;
    for (const SampleSpan& range : marked) {
        if (!ranges.empty() && range.begin <= ranges.back().end)
            ranges.back().end = std::max(ranges.back().end, range.end);
        else
            ranges.push_back(range);
    }
    return ranges;
}

std::vector<SampleSpan> unmarkedRanges(const CMarkerData& marker, std::int64_t total)
{
    std::vector<SampleSpan> ranges;
    std::int64_t at = 0;
    for (const SampleSpan& marked : markedRanges(marker)) {
        if (marked.begin >= total)
            break;
        if (at < marked.begin)
            ranges.push_back({at, marked.begin});
        at = marked.end;
    }
    if (at < total)
        ranges.push_back({at, total});
    return ranges;
}

RemovedSamples countRemoved(const CMarkerData& marker, std::int64_t total, std::int64_t last)
{
    const std::vector<SampleSpan> ranges = rangesInOrder(marker, total - 1);
    std::vector<std::size_t> byBegin(ranges.size());
    for (std::size_t i = 0; i < byBegin.size(); ++i)
        byBegin[i] = i;
    std::stable_sort(byBegin.begin(), byBegin.end(),
                     [&](std::size_t a, std::size_t b) { return ranges[a].begin < ranges[b].begin; });
    // Ranges that have begun, the first in the marker's order on top; those that are over leave it when they get there.
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> begun;
    RemovedSamples removed;
    std::size_t next = 0;
    std::int64_t at = 0;
    for (;;) {
        while (next < byBegin.size() && ranges[byBegin[next]].begin <= at)
            begun.push(byBegin[next++]);
        while (!begun.empty() && ranges[begun.top()].end <= at)
            begun.pop();
        if (!begun.empty()) {
            const SampleSpan& range = ranges[begun.top()];
            const std::int64_t lastBefore = std::min(range.end - 1, last);
            if (range.begin < last && range.begin <= lastBefore)
                removed.beforeTrigger = numeric::wrapAdd(removed.beforeTrigger, lastBefore - range.begin + 1);
            removed.any = true;
            at = range.end;
        } else if (next < byBegin.size()) {
            at = ranges[byBegin[next]].begin;
        } else {
            return removed;
        }
    }
}

} // namespace megset
