#pragma once
// Channel-by-channel spectra of a trial.

#include "megset/spectral/CMDTrial7Coh01TimeData.h"

namespace megset {

class CMDTrial7Coh02SpctmData : public CMDTrial7Coh01TimeData
{
public:
    int _cleanTrialCoherenceFacezkSpctm()
    {
        m_pSpctmCCFace.reset();
        return 1;
    }
};

} // namespace megset
