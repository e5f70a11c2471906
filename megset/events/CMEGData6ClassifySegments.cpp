// Marks by kind, and bad segments.
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/cut.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <iterator>

namespace megset {
namespace {

constexpr int badSegmentId = 302;

} // namespace

CMarkerManagerzk* CMEGData6Classify::getShowMarkLineManager(int type)
{
    CMarkerManagerzk* const managers[] = {&m_mkTrig,      &m_mkMarker,  &m_mkSegment,     &m_mkClass,
                                          &m_mkThreshold, &m_mkPattern, &m_mkSelect4Move, &m_mkAiMarkWave};
    if (type != -1)
        m_nShowMarkLineType = type;
    if (m_nShowMarkLineType >= 0 && m_nShowMarkLineType < static_cast<int>(std::size(managers)))
        return managers[m_nShowMarkLineType];
    AfxMessageBox("Wrong Mark Line type!?", MB_OK);
    return nullptr;
}

int CMEGData6Classify::getTRIGMRK_GRPID2MK_LINE_TYPE(int group) const
{
    constexpr int groups[] = {100, 1, 300, 200, 360, 366, 460}; // in the order of the line types
    const auto* const found = std::find(std::begin(groups), std::end(groups), group);
    if (found != std::end(groups))
        return static_cast<int>(found - std::begin(groups));
    AfxMessageBox("Wrong Trigger Mark Group ID!?", MB_OK);
    return -1;
}

int CMEGData6Classify::addTrialBadSegment(double beginMs, double endMs)
{
    MarkTrigClass point;
    point.m_nMarkPtTrial = m_nCurrentTrial;
    point.m_dMarkPtBegin = beginMs;
    point.m_dMarkPtEnd = endMs;
    point.m_nMarkPtBegin = numeric::cutToCount(beginMs * m_recordInfo.m_dRecSampleRate / 1000.0);
    point.m_nMarkPtEnd = numeric::cutToCount(endMs * m_recordInfo.m_dRecSampleRate / 1000.0);
    const std::int64_t factor = m_recordInfo.m_nResampleFactor;
    if (m_mkSegment.getTotalMarkers() > 0) {
        CMarkerDatazk* marker = m_mkSegment.getMarker(0, false);
        return marker != nullptr ? marker->addMarkPt(point, factor) : 0;
    }
    auto marker = tryNew<CMarkerDatazk>();
    if (marker == nullptr || !marker->addMarkPt(point, factor))
        return 0;
    marker->m_nMarkID = badSegmentId;
    m_mkSegment.m_aMarkers.Add(std::move(marker));
    m_mkSegment.m_strMgrInfo = "Bad_segment";
    return 1;
}

int CMEGData6Classify::addTrialBadSegment(int trial, double beginMs, double endMs)
{
    int index = trialIndex(trial);
    if (index < 0)
        index = m_nCurrentTrial = 0;
    const int opened = openTrial(std::min(index, std::max(m_nTotalTrial, 0) - 1));
    return opened ? addTrialBadSegment(beginMs, endMs) : opened;
}

} // namespace megset
