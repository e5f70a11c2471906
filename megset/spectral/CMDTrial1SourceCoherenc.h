#pragma once
// Volumetric source-coherence images of a trial.

#include "megset/spectral/CMDTrial1Source.h"

namespace megset {

class CMDTrial1SourceCoherenc : public CMDTrial1Source
{
public:
    int _cleanTriallSourceCoherencData()
    {
        m_pVolumeSrcCoh.reset();
        return 1;
    }
};

} // namespace megset
