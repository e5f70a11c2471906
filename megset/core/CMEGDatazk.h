#pragma once
// The dataset that is made, and the 3D points last selected by the user, which all datasets share.

#include "megset/persistence/CMEGData9FileRecord.h"

namespace megset {

class CMEGDatazk : public CMEGData9FileRecord
{
public:
    /// Binds the recorded sensors to the channels of all trials, each of which is opened. A null entry shows "Finding
    /// recorded MEG sensor error!", and the walk goes on. 0 for null, without trials, or at a trial that can't be
    /// opened.
    int setRecordGeom2Trials(CPtrArray* sensors);

    // Process-wide, without a lock, in mm.
    static double m_dMsiSelectX;
    static double m_dMsiSelectY;
    static double m_dMsiSelectZ;
    static int m_nSelectSeegProbeID;
    static int m_nSelectSeegProbeContactID;
    static double m_dSelectSeegProbeContactX;
    static double m_dSelectSeegProbeContactY;
    static double m_dSelectSeegProbeContactZ;
};

} // namespace megset
