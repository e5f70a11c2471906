#pragma once
// The EEG side of the head's place: fiducials that come from a list of named points.

#include "megset/geometry/CMEGData1Localization01Meg.h"

namespace megset {

/// A named point, mm.
struct NamedPoint
{
    CString name;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// The dataset's layer for EEG fiducials, in mm.
class CMEGData1Localization02Eeg : public CMEGData1Localization01Meg
{
public:
    CFiducialzk* getFidWorkEeg() { return &m_fidWorkEeg; }
    /// Takes the working EEG fiducials from a list of NamedPoint*, null entries allowed: each from the first point
    /// whose name occurs in the fiducial's, case aside, so that a point without a name fits each. Three fiducials or
    /// more make the measured set as well. Gives the number found; those of fewer than three stay in the working set,
    /// too. 0 for null.
    int setEegFiducialPts(const CPtrArray* points);
    /// Sets one working EEG fiducial up, -1 all of them (see CFiducial). 0 for another number.
    int setupFiducialPtsEeg(int point) { return m_fidWorkEeg.setUpFiducialPoint(point); }
};

} // namespace megset
