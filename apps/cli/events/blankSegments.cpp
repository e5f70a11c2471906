#include "apps/cli/events/blankSegments.h"

#include "apps/cli/events/markList.h"
#include "apps/cli/process/forEachTrial.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace megset::cli {

namespace {

// The dataset's selection of ranges and what it knows of their removal, brought back at the end.
class KeptSelection
{
public:
    explicit KeptSelection(CMEGDatazk& dataset)
        : m_dataset(dataset), m_former(*dataset.getMkManagerSelect4Move()), m_state(dataset.m_nSegmentCutState),
          m_next(dataset.m_nSegmentCutNext)
    {
    }
    KeptSelection(const KeptSelection&) = delete;
    KeptSelection& operator=(const KeptSelection&) = delete;
    ~KeptSelection()
    {
        *m_dataset.getMkManagerSelect4Move() = std::move(m_former);
        m_dataset.m_nSegmentCutState = m_state;
        m_dataset.m_nSegmentCutNext = m_next;
    }

private:
    CMEGDatazk& m_dataset;
    CMarkerManagerzk m_former;
    int m_state;
    int m_next;
};

void select(CMEGDatazk& dataset, const std::vector<SampleRange>& ranges)
{
    auto marker = std::make_unique<CMarkerDatazk>();
    for (const SampleRange& range : ranges) {
        MarkTrigClass point;
        point.m_nMarkPtBegin = range.from;
        point.m_nMarkPtEnd = range.to;
        if (!marker->addMarkPt(point))
            throw std::runtime_error("there is not enough memory");
    }
    dataset.getMkManagerSelect4Move()->cleanMarks();
    dataset.getMkManagerSelect4Move()->addMarker(std::move(marker));
}

std::int64_t longestChannel(const CMDTrialzk& trial)
{
    std::int64_t most = 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i))
            most = std::max(most, channel->getTotalSample());
    return most;
}

// Brings the ranges into the trial and into ascending order; those without a sample in it go.
void limit(std::vector<SampleRange>& ranges, std::int64_t samples)
{
    for (SampleRange& range : ranges)
        range = {std::max<std::int64_t>(range.from, 0), std::min(range.to, samples - 1)};
    std::erase_if(ranges, [](const SampleRange& range) { return range.to < range.from; });
    std::ranges::sort(ranges, {}, &SampleRange::from);
}

std::int64_t countCovered(const std::vector<SampleRange>& ranges)
{
    std::int64_t count = 0;
    std::int64_t next = 0; // the first sample that isn't counted
    for (const SampleRange& range : ranges) {
        count += std::max<std::int64_t>(range.to + 1 - std::max(range.from, next), 0);
        next = std::max(next, range.to + 1);
    }
    return count;
}

} // namespace

Blanked blankSegments(OpenDataset& open, const std::vector<int>& trials, bool hold)
{
    CMEGDatazk& dataset = open.dataset;
    std::map<int, std::vector<SampleRange>> segments;
    Blanked blanked;
    for (const MarkRow& mark : listMarks(dataset, {{"segment"}, std::nullopt, {}}).marks) {
        if (std::ranges::binary_search(trials, mark.trial))
            segments[mark.trial].push_back(mark.samples);
        else if (mark.trial < 0 || mark.trial >= dataset.getTotalTrial())
            ++blanked.outside;
    }
    std::vector<int> blankedTrials;
    for (const auto& [trial, ranges] : segments)
        blankedTrials.push_back(trial);
    const KeptSelection kept(dataset);
    forTrials(open, "Blanking", blankedTrials, [&](CMDTrialzk& trial, int index) {
        std::vector<SampleRange>& ranges = segments[index];
        const auto told = std::ssize(ranges);
        limit(ranges, longestChannel(trial));
        blanked.outside += static_cast<int>(told - std::ssize(ranges));
        if (ranges.empty())
            return;
        select(dataset, ranges);
        dataset.segmentRemove(0, hold ? 1 : 0);
        blanked.segments += static_cast<int>(ranges.size());
        blanked.samples += countCovered(ranges);
        ++blanked.trials;
    });
    return blanked;
}

} // namespace megset::cli
