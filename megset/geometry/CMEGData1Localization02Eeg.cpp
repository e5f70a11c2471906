#include "megset/geometry/CMEGData1Localization02Eeg.h"

namespace megset {
namespace {

CString lowered(CString text)
{
    return text.MakeLower();
}

// The first point whose name occurs in a fiducial's name, null when there is none.
const NamedPoint* pointFor(const CString& fiducial, const CPtrArray& points)
{
    const CString wanted = lowered(fiducial);
    for (int i = 0; i < points.GetSize(); ++i) {
        const auto* point = static_cast<const NamedPoint*>(points.GetAt(i));
        if (point != nullptr && wanted.Find(lowered(point->name)) >= 0)
            return point;
    }
    return nullptr;
}

} // namespace

int CMEGData1Localization02Eeg::setEegFiducialPts(const CPtrArray* points)
{
    if (points == nullptr)
        return 0;
    int found = 0;
    for (CFiduciaryPtzk& fiducial : m_fidWorkEeg.m_aFidPt) {
        const NamedPoint* point = pointFor(fiducial.m_strFidName, *points);
        if (point == nullptr)
            continue;
        fiducial.setFidPos(point->x, point->y, point->z);
        fiducial.m_nFidFound = 1;
        ++found;
    }
    constexpr int enough = 3; // a frame has three points
    if (found >= enough)
        m_fidEegMeasure = m_fidWorkEeg;
    return found;
}

} // namespace megset
