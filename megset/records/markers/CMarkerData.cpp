#include "megset/records/markers/CMarkerData.h"

#include "megset/platform/memory.h"
#include "megset/records/ownedList.h"
#include "megset/records/recordFormat.h"

#include <algorithm>
#include <limits>
#include <new>

namespace megset {
namespace {

// The product, or the limit that it would pass: sample numbers of a broken file may be of any size.
std::int64_t limitedProduct(std::int64_t number, std::int64_t factor)
{
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    if (number > largest / factor)
        return largest;
    if (number < -(largest / factor))
        return -largest;
    return number * factor;
}

template <class Change>
MarkWindow changed(const MarkWindow& window, Change change)
{
    return {change(window.m_nPreSamples), change(window.m_nPostSamples), change(window.m_nShiftSamples),
            change(window.m_nGapSamples)};
}

void multiply(MarkTrigClass& point, std::int64_t factor)
{
    point.m_nMarkPtBegin = limitedProduct(point.m_nMarkPtBegin, factor);
    point.m_nMarkPtEnd = limitedProduct(point.m_nMarkPtEnd, factor);
}

// A deep copy with the samples times `factor`. False without memory, with `copy` as it was.
bool tryCopy(CTypedPtrArray<MarkTrigClass>& copy, const CTypedPtrArray<MarkTrigClass>& points, std::int64_t factor)
{
    try {
        CTypedPtrArray<MarkTrigClass> made;
        for (int i = 0; i < points.GetSize(); ++i) {
            const MarkTrigClass* point = points.GetAt(i);
            auto one = point != nullptr ? tryNew<MarkTrigClass>(*point) : nullptr;
            if (point != nullptr && one == nullptr)
                return false;
            if (one != nullptr)
                multiply(*one, factor);
            made.Add(std::move(one));
        }
        copy = std::move(made);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// An occurrence has no tag of its own: there may be very many of them.
int exchangePoints(CArchive& ar, CTypedPtrArray<MarkTrigClass>& points)
{
    return exchangeOwnedList(ar, points, [&ar](MarkTrigClass& point) {
        point.exchange(ar);
        return 1;
    });
}

} // namespace

void MarkTrigClass::exchange(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMarkPtWord, m_strMarkPtName, m_nMarkPtTrial, m_nMarkPtChannel, m_dMarkPtBegin, m_dMarkPtEnd,
                    m_nMarkPtBegin, m_nMarkPtEnd, m_nMarkPtValueB, m_nMarkPtValueE);
}

MarkTrigClass* CMarkerData::getMarkPt(int index) const
{
    const int i = index == -1 ? m_aMarkPts.GetSize() - 1 : index;
    return i >= 0 && i < m_aMarkPts.GetSize() ? m_aMarkPts.GetAt(i) : nullptr;
}

int CMarkerData::addMarkPt(const MarkTrigClass& point, std::int64_t factor)
{
    auto used = tryNew<MarkTrigClass>(point);
    auto backup = tryNew<MarkTrigClass>(point);
    if (used == nullptr || backup == nullptr)
        return 0;
    multiply(*backup, std::max<std::int64_t>(factor, 1));
    // The lists are parallel: behind occurrences without a backup there is no place for this one's.
    if (m_aMarkPts.GetSize() == m_aMarkPtsBk.GetSize())
        m_aMarkPtsBk.Add(std::move(backup));
    m_aMarkPts.Add(std::move(used));
    return 1;
}

int CMarkerData::addClassifyTrial(int trial, int channel, std::int64_t begin, std::int64_t end, double rate,
                                  double preTrigMs)
{
    if (!(rate > 0.0))
        return 0;
    MarkTrigClass point;
    point.m_nMarkPtTrial = trial;
    point.m_nMarkPtChannel = channel;
    point.m_nMarkPtBegin = begin;
    point.m_nMarkPtEnd = end;
    point.m_dMarkPtBegin = static_cast<double>(begin) / rate * 1000.0 - preTrigMs;
    point.m_dMarkPtEnd = static_cast<double>(end) / rate * 1000.0 - preTrigMs;
    if (!addMarkPt(point))
        return 0;
    countOccurrence();
    return 1;
}

int CMarkerData::cleanMarkedPts()
{
    const int former = m_aMarkPts.GetSize();
    m_aMarkPts.RemoveAll();
    m_aMarkPtsBk.RemoveAll();
    m_nMarkCount = 0;
    return former;
}

int CMarkerData::backupMarkPts(std::int64_t factor)
{
    const std::int64_t used = std::max<std::int64_t>(factor, 1);
    if (!tryCopy(m_aMarkPtsBk, m_aMarkPts, used))
        return 0;
    m_markWindowBk = changed(m_markWindow, [used](std::int64_t samples) { return limitedProduct(samples, used); });
    return 1;
}

int CMarkerData::reloadBkMarkPts()
{
    return tryCopy(m_aMarkPts, m_aMarkPtsBk, 1) ? 1 : 0;
}

int CMarkerData::scaleMarkPts(std::int64_t factor)
{
    if (factor < 1)
        return 1;
    m_markWindow = changed(m_markWindowBk, [factor](std::int64_t samples) { return samples / factor; });
    const int both = std::min(m_aMarkPts.GetSize(), m_aMarkPtsBk.GetSize());
    for (int i = 0; i < both; ++i) {
        MarkTrigClass* used = m_aMarkPts.GetAt(i);
        const MarkTrigClass* backup = m_aMarkPtsBk.GetAt(i);
        if (used == nullptr || backup == nullptr)
            continue;
        used->m_nMarkPtBegin = backup->m_nMarkPtBegin / factor;
        used->m_nMarkPtEnd = backup->m_nMarkPtEnd / factor;
    }
    return 1;
}

const FormatVersion<CMarkerData09File> CMarkerData09File::s_versions[] = {
    {20261121, &CMarkerData09File::serialize_20261121},
};

int CMarkerData09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MARKERDATAZK", s_versions);
}

int CMarkerData09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMarkGroupID, m_nMarkID, m_nMarkValue, m_nMarkValueBk, m_nMarkCount, m_strMarkName,
                    m_strMarkInfo, m_strMarkTrialName, m_nMarkChannel, m_nMarkPtKind, m_dMarkSampleRate, m_nMarkShow,
                    m_nMarkColor);
    EXCHANGE_FIELDS(ar, m_markWindow.m_nPreSamples, m_markWindow.m_nPostSamples, m_markWindow.m_nShiftSamples,
                    m_markWindow.m_nGapSamples);
    EXCHANGE_FIELDS(ar, m_markWindowBk.m_nPreSamples, m_markWindowBk.m_nPostSamples, m_markWindowBk.m_nShiftSamples,
                    m_markWindowBk.m_nGapSamples);
    return exchangePoints(ar, m_aMarkPts) && exchangePoints(ar, m_aMarkPtsBk);
}

} // namespace megset
