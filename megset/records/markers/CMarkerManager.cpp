#include "megset/records/markers/CMarkerManager.h"

#include "megset/platform/memory.h"
#include "megset/records/ownedList.h"
#include "megset/records/recordFormat.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace megset {
namespace {

constexpr int triggerGroup = 100;
constexpr std::int64_t scannedKind = 1;

struct Occurrence
{
    const CMarkerData* marker;
    const MarkTrigClass* point;
    int repetition; // from 1
};

void addOccurrences(std::vector<Occurrence>& found, const CMarkerData& marker, int firstTrial, int lastTrial)
{
    for (int i = 0; i < marker.m_aMarkPts.GetSize(); ++i) {
        const MarkTrigClass* point = marker.m_aMarkPts.GetAt(i);
        if (point != nullptr && point->m_nMarkPtTrial >= firstTrial && point->m_nMarkPtTrial <= lastTrial)
            found.push_back({&marker, point, i + 1});
    }
}

// Those of some trials, trial by trial, and in each of them by sample; of equal ones the first marker's first.
std::vector<Occurrence> occurrencesOf(const CMarkerManager& manager, int firstTrial, int lastTrial)
{
    std::vector<Occurrence> found;
    for (int i = 0; i < manager.m_aMarkers.GetSize(); ++i)
        if (const CMarkerData* marker = manager.m_aMarkers.GetAt(i))
            addOccurrences(found, *marker, firstTrial, lastTrial);
    std::stable_sort(found.begin(), found.end(), [](const Occurrence& a, const Occurrence& b) {
        const int trialA = a.point->m_nMarkPtTrial;
        const int trialB = b.point->m_nMarkPtTrial;
        return trialA != trialB ? trialA < trialB : a.point->m_nMarkPtBegin < b.point->m_nMarkPtBegin;
    });
    return found;
}

// Runs `tell(trial, its occurrences)` for trials 0 to `trials` - 1; gives the number of occurrences.
template <class Tell>
std::int64_t tellTrials(const CMarkerManager& manager, int trials, Tell tell)
{
    const std::vector<Occurrence> found = occurrencesOf(manager, 0, trials - 1);
    auto begin = found.begin();
    for (int trial = 0; trial < trials; ++trial) {
        const auto end = std::find_if(begin, found.end(),
                                      [trial](const Occurrence& one) { return one.point->m_nMarkPtTrial != trial; });
        tell(trial, std::span<const Occurrence>(begin, end));
        begin = end;
    }
    return std::ssize(found);
}

// Samples of a broken file may lie further apart than the type reaches: the difference then wraps.
std::int64_t samplesBetween(const MarkTrigClass& from, const MarkTrigClass& to)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(to.m_nMarkPtBegin) -
                                     static_cast<std::uint64_t>(from.m_nMarkPtBegin));
}

CString nameByValue(const TrigScanParam& param, std::int64_t value)
{
    return param.m_strTrigPrefix + CString(std::to_string(value)); // a scan names very many
}

void tellStd(CString& text, int trial, std::span<const Occurrence> found)
{
    text.AppendFormat("%d  ", trial);
    for (const Occurrence& one : found) {
        const MarkTrigClass& sync = *found.front().point;
        text.AppendFormat("%s %.3f %I64d %d ", one.marker->m_strMarkName,
                          one.point->m_dMarkPtBegin - sync.m_dMarkPtBegin, samplesBetween(sync, *one.point),
                          one.repetition);
    }
    text.AppendFormat(" %I64d \n", std::ssize(found));
}

void tellPro(CString& text, int trial, std::span<const Occurrence> found)
{
    text.AppendFormat("Trial %d: %I64d triggers\n", trial, std::ssize(found));
    for (const Occurrence& one : found)
        text.AppendFormat("  %s: value %I64d, channel %d, %.3f ms, sample %I64d\n", one.marker->m_strMarkName,
                          one.marker->m_nMarkValue, one.point->m_nMarkPtChannel, one.point->m_dMarkPtBegin,
                          one.point->m_nMarkPtBegin);
}

} // namespace

CMarkerDatazk* CMarkerManager::getMarker(int index, bool select)
{
    const int i = index == -1 ? getTotalMarkers() - 1 : index;
    if (i < 0 || i >= getTotalMarkers())
        return nullptr;
    if (select)
        m_nCurrentMarker = i;
    return m_aMarkers.GetAt(i);
}

CMarkerDatazk* CMarkerManager::getMarkerRoundIndx(int index, bool select)
{
    const int last = getTotalMarkers() - 1;
    return getMarker(index == -1 ? last : std::clamp(index, 0, std::max(last, 0)), select);
}

int CMarkerManager::addMarker(std::unique_ptr<CMarkerDatazk> marker)
{
    return marker != nullptr ? m_aMarkers.Add(std::move(marker)) : -1;
}

int CMarkerManager::cleanMarks()
{
    const int former = getTotalMarkers();
    m_aMarkers.RemoveAll();
    m_nCurrentMarker = -1;
    return former;
}

int CMarkerManager::addTrigger(std::int64_t value, std::int64_t count, std::int64_t sample, std::int64_t total)
{
    auto marker = tryNew<CMarkerDatazk>();
    if (marker == nullptr)
        return 0;
    marker->m_nMarkValue = value;
    marker->m_nMarkValueBk = value;
    marker->m_nMarkCount = count;
    marker->m_strMarkName = nameByValue(m_trigScanParam, value);
    marker->m_markWindow.m_nPreSamples = std::max<std::int64_t>(sample, 0);
    marker->m_markWindow.m_nPostSamples =
        total > marker->m_markWindow.m_nPreSamples ? total - marker->m_markWindow.m_nPreSamples : 0;
    addMarker(std::move(marker));
    return 1;
}

CMarkerDatazk* CMarkerManager::findMatchMarkerData(const CMarkerData* marker) const
{
    if (marker == nullptr)
        return nullptr;
    for (int i = 0; i < m_aMarkers.GetSize(); ++i) {
        CMarkerDatazk* known = m_aMarkers.GetAt(i);
        if (known != nullptr && known->m_nMarkValue == marker->m_nMarkValue &&
            known->m_nMarkChannel == marker->m_nMarkChannel)
            return known;
    }
    return nullptr;
}

int CMarkerManager::setupTrgClsMks(CMarkerData* marker, const TrigScanParam* param)
{
    if (param != nullptr)
        m_trigScanParam = TrigScanParam(*param);
    if (marker != nullptr && marker->m_strMarkName.IsEmpty())
        marker->m_strMarkName = nameByValue(m_trigScanParam, marker->m_nMarkValue);
    return setupTrgClsMks1(marker);
}

int CMarkerManager::setupTrgClsMks1(CMarkerData* marker)
{
    if (marker == nullptr)
        return 0;
    if (marker->m_nMarkGroupID == 0)
        marker->m_nMarkGroupID = triggerGroup;
    if (marker->m_nMarkPtKind == 0)
        marker->m_nMarkPtKind = scannedKind;
    return marker->backupMarkPts();
}

CString CMarkerManager::getTrialAllTrigInfoStd(int trial, std::int64_t& count) const
{
    const std::vector<Occurrence> found = occurrencesOf(*this, trial, trial);
    count = std::ssize(found);
    CString text;
    tellStd(text, trial, found);
    return text;
}

CString CMarkerManager::getTrialAllTrigInfoPro(int trial, std::int64_t& count) const
{
    const std::vector<Occurrence> found = occurrencesOf(*this, trial, trial);
    count = std::ssize(found);
    CString text;
    tellPro(text, trial, found);
    return text;
}

CString CMarkerManager::getAllTrigInfoStd(int trials, std::int64_t& total, std::int64_t& most) const
{
    CString text;
    most = 0;
    total = tellTrials(*this, trials, [&](int trial, std::span<const Occurrence> found) {
        most = std::max<std::int64_t>(most, std::ssize(found));
        tellStd(text, trial, found);
    });
    return text;
}

CString CMarkerManager::getAllTrigInfoPro(int trials, std::int64_t& total) const
{
    CString text;
    total =
        tellTrials(*this, trials, [&](int trial, std::span<const Occurrence> found) { tellPro(text, trial, found); });
    return text;
}

const FormatVersion<CMarkerManager09File> CMarkerManager09File::s_versions[] = {
    {20261121, &CMarkerManager09File::serialize_20261121},
};

int CMarkerManager09File::serializeMLM(CArchive& ar)
{
    return serializeRecord(ar, *this, "MARKERMANAGERZK", s_versions);
}

int CMarkerManager09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strMgrInfo, m_trigScanParam.m_nTrigScanMode, m_trigScanParam.m_dTrigThreshold,
                    m_trigScanParam.m_strTrigPrefix, m_nCurrentMarker);
    return exchangeOwnedList(ar, m_aMarkers, [&ar](CMarkerDatazk& marker) { return marker.serializezk(ar); });
}

} // namespace megset
