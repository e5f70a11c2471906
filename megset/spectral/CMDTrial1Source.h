#pragma once
// Volumetric source images of a trial.

#include "megset/core/CMDTrial0SensorInfo.h"

namespace megset {

class CMDTrial1Source : public CMDTrial0SensorInfo
{
public:
    int _cleanTriallSourceData()
    {
        m_pVolumeSrc.reset();
        return 1;
    }
};

} // namespace megset
