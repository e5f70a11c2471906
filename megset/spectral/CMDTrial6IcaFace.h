#pragma once
// Independent components of a trial.

#include "megset/spectral/CMDTrial6Analysis.h"

namespace megset {

class CMDTrial6IcaFace : public CMDTrial6Analysis
{
public:
    int cleanIcaFace()
    {
        m_pFaceIca.reset();
        return 1;
    }
};

} // namespace megset
