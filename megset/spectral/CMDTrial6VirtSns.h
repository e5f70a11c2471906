#pragma once
// Virtual channels of a trial: waves, spectra, source coherence.

#include "megset/geometry/CMDTrial6SeegIeeg.h"

namespace megset {

class CMDTrial6VirtSns : public CMDTrial6SeegIeeg
{
public:
    int cleanFaceSrcCoh()
    {
        m_pSrcCohFace.reset();
        return 1;
    }
    int cleanFaceVirtSpctm()
    {
        m_pVirtSpctm.reset();
        return 1;
    }
    int cleanFaceVirtWave()
    {
        m_pkgVirtWave.cleanFaceVirtSnsWav();
        return 1;
    }
};

} // namespace megset
