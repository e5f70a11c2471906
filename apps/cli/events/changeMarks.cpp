#include "apps/cli/events/changeMarks.h"

#include "apps/cli/dataset/trialSelection.h"
#include "megset/numeric/cut.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr int markerGroup = 1;

// Where a place is in each of the trials, with the trial told in what goes wrong.
void forEachPlace(const OpenDataset& open, const MarkPlaces& at, const std::vector<int>& trials,
                  const std::function<void(int, const SampleRange&)>& take)
{
    for (const int trial : trials) {
        try {
            const TrialTimes times = timesOfTrial(open, trial);
            for (const std::string& place : at.places)
                take(trial, parsePlace(place, times));
        } catch (const std::runtime_error& fault) {
            throw std::runtime_error("trial " + std::to_string(trial) + ": " + fault.what());
        }
    }
}

std::vector<int> trialsToAddTo(const OpenDataset& open, const MarkPlaces& at)
{
    if (!at.trials.empty())
        return at.trials;
    return selectTrials(open.dataset, {std::to_string(std::max(open.dataset.m_nCurrentTrial, 0))});
}

MarkList emptyListOf(CMEGDatazk& dataset)
{
    MarkList list;
    const CMEGRecordInfozkProzk& recording = dataset.m_recordInfo;
    list.times = {recording.m_nRecTotalSample, recording.m_dRecSampleRate, recording.m_nRecPreTrigPts};
    return list;
}

CMarkerDatazk& handMarker(CMEGDatazk& dataset, const std::string& name)
{
    CMarkerManagerzk& manager = *dataset.getMarkerManager();
    for (const MarkerRow& row : listMarkers(dataset, {"mark"}))
        if (row.name == name)
            return *row.marker;
    auto made = std::make_unique<CMarkerDatazk>();
    made->m_nMarkGroupID = markerGroup;
    made->m_nMarkID = manager.getTotalMarkers();
    made->m_strMarkName = CString(name);
    made->m_dMarkSampleRate = dataset.m_recordInfo.m_dRecSampleRate;
    return *manager.getMarker(manager.addMarker(std::move(made)), false);
}

std::string shownRange(const SampleRange& range)
{
    return std::to_string(range.from) + " to " + std::to_string(range.to);
}

void refuseOverlap(const std::vector<SampleRange>& known, const SampleRange& made)
{
    for (const SampleRange& range : known)
        if (range.from <= made.to && made.from <= range.to)
            throw std::runtime_error("the segment of samples " + shownRange(made) +
                                     " overlaps the bad segment of samples " + shownRange(range));
}

// The time from the trial's first sample that the library cuts to just this sample again.
double cutTime(std::int64_t sample, double rate)
{
    double ms = static_cast<double>(sample) / rate * 1000.0;
    while (numeric::cutToCount(ms * rate / 1000.0) < sample)
        ms = std::nextafter(ms, std::numeric_limits<double>::infinity());
    return ms;
}

// The library adds bad segments to the current trial; which one that is doesn't matter to it otherwise.
void addBadSegment(CMEGDatazk& dataset, int trial, const SampleRange& range)
{
    const double rate = dataset.m_recordInfo.m_dRecSampleRate;
    const int former = dataset.m_nCurrentTrial;
    dataset.m_nCurrentTrial = trial;
    const int done = dataset.addTrialBadSegment(cutTime(range.from, rate), cutTime(range.to, rate));
    dataset.m_nCurrentTrial = former;
    if (!done)
        throw std::runtime_error("the bad segment can't be added");
}

// The newest occurrence of the marker.
void noteNewest(MarkList& list, const CMEGDatazk& dataset, std::size_t marker)
{
    const CMarkerDatazk& of = *list.markers[marker].marker;
    const int newest = of.getTotalTrgMrkPts() - 1;
    const MarkTrigClass& point = *of.m_aMarkPts.GetAt(newest);
    list.marks.push_back(
        {marker, newest, point.m_nMarkPtTrial, point.m_nMarkPtChannel, samplesOfMark(dataset, of, newest)});
}

// Keeps the occurrences that are not dropped, each with its backup.
void dropOccurrences(CMarkerDatazk& marker, const std::set<int>& dropped)
{
    const auto keep = [&dropped](CTypedPtrArray<MarkTrigClass>& points) {
        CTypedPtrArray<MarkTrigClass> kept;
        for (int i = 0; i < points.GetSize(); ++i)
            if (!dropped.contains(i))
                kept.Add(points.release(i));
        points = std::move(kept);
    };
    keep(marker.m_aMarkPts);
    keep(marker.m_aMarkPtsBk);
    // Of bad segments none are counted.
    marker.m_nMarkCount = std::max<std::int64_t>(marker.m_nMarkCount - std::ssize(dropped), 0);
}

// Whether there is an occurrence in one of its places.
bool hasMarks(const CMarkerDatazk& marker)
{
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i)
        if (marker.m_aMarkPts.GetAt(i) != nullptr)
            return true;
    return false;
}

void refuseSeveralLists(const std::vector<MarkerRow>& markers, const std::string& name)
{
    std::string lists;
    std::set<std::string> told;
    for (const MarkerRow& row : markers)
        if (told.insert(row.list).second)
            lists += (lists.empty() ? "" : ", ") + row.list;
    if (told.size() > 1)
        throw std::runtime_error("the name " + name + " is in several lists: " + lists + "; say which one by --of");
}

void keepMarksAt(const OpenDataset& open, MarkList& list, const MarkPlaces& at)
{
    std::set<int> trials;
    for (const MarkRow& mark : list.marks)
        if (mark.trial >= 0 && mark.trial < open.dataset.m_aTrialFilePath.GetSize())
            trials.insert(mark.trial);
    std::map<int, std::vector<SampleRange>> places;
    forEachPlace(open, at, {trials.begin(), trials.end()},
                 [&](int trial, const SampleRange& range) { places[trial].push_back(range); });
    std::erase_if(list.marks, [&](const MarkRow& mark) {
        return std::ranges::none_of(places[mark.trial], [&](const SampleRange& range) {
            return mark.samples.from <= range.to && range.from <= mark.samples.to;
        });
    });
}

} // namespace

MarkList addHandMarks(OpenDataset& open, const std::string& name, const MarkPlaces& at)
{
    CMEGDatazk& dataset = open.dataset;
    const std::vector<int> trials = trialsToAddTo(open, at);
    CMarkerDatazk& marker = handMarker(dataset, name);
    MarkList list = emptyListOf(dataset);
    list.markers.push_back({"mark", name, marker.m_nMarkValue, false, &marker, 0});
    forEachPlace(open, at, trials, [&](int trial, const SampleRange& range) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = trial;
        point.m_nMarkPtBegin = range.from;
        point.m_nMarkPtEnd = range.to;
        point.m_dMarkPtBegin = list.times.msOf(range.from);
        point.m_dMarkPtEnd = list.times.msOf(range.to);
        if (!marker.addMarkPt(point, dataset.m_recordInfo.m_nResampleFactor))
            throw std::runtime_error("there is not enough memory");
        ++marker.m_nMarkCount;
        noteNewest(list, dataset, 0);
    });
    sortMarks(list.marks);
    return list;
}

MarkList addBadSegments(OpenDataset& open, const MarkPlaces& at)
{
    CMEGDatazk& dataset = open.dataset;
    std::map<int, std::vector<SampleRange>> known;
    for (const MarkRow& mark : listMarks(dataset, {{"segment"}, std::nullopt, {}}).marks)
        known[mark.trial].push_back(mark.samples);
    MarkList list = emptyListOf(dataset);
    forEachPlace(open, at, trialsToAddTo(open, at), [&](int trial, const SampleRange& range) {
        refuseOverlap(known[trial], range);
        known[trial].push_back(range);
        addBadSegment(dataset, trial, range);
        if (list.markers.empty())
            list.markers.push_back(listMarkers(dataset, {"segment"}).front());
        noteNewest(list, dataset, 0);
    });
    sortMarks(list.marks);
    return list;
}

MarkList removeMarks(OpenDataset& open, const std::vector<std::string>& lists, const std::string& name,
                     const MarkPlaces& at)
{
    CMEGDatazk& dataset = open.dataset;
    MarkList list = listMarks(dataset, {lists, name, at.trials});
    refuseSeveralLists(list.markers, name);
    if (!at.places.empty())
        keepMarksAt(open, list, at);
    std::vector<std::set<int>> dropped(list.markers.size());
    for (const MarkRow& mark : list.marks)
        dropped[mark.marker].insert(mark.occurrence);
    if (list.marks.empty() && (!at.trials.empty() || !at.places.empty()))
        throw std::runtime_error("the marker " + name + " has no marks there");
    CMarkerManagerzk& manager = *managerOfList(dataset, list.markers.front().list);
    for (std::size_t m = list.markers.size(); m-- > 0;) { // from the last: the places of the others stay
        dropOccurrences(*list.markers[m].marker, dropped[m]);
        if (hasMarks(*list.markers[m].marker))
            continue;
        manager.m_aMarkers.RemoveAt(list.markers[m].place);
        manager.m_nCurrentMarker = std::min(manager.m_nCurrentMarker, manager.getTotalMarkers() - 1);
    }
    return list;
}

} // namespace megset::cli
