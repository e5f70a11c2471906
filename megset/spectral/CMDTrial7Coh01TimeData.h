#pragma once
// Sensor coherence of a trial in time.

#include "megset/spectral/CMDTrial6VirtSns.h"

namespace megset {

class CMDTrial7Coh01TimeData : public CMDTrial6VirtSns
{
public:
    int _cleanTrialCoherenceFacezkTime()
    {
        m_pCohFaceTime.reset();
        return 1;
    }
};

} // namespace megset
