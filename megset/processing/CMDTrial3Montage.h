#pragma once
// Common-reference and individual-reference montages of a trial.

#include "megset/processing/CMDTrial2Process.h"

namespace megset {

class CMDTrial3Montage : public CMDTrial2Process
{
public:
    /// Ends the unit; the samples and the done-flag stay as they are.
    int cleanMontageCrInfo()
    {
        m_pMontageCr.reset();
        return 1;
    }
    /// Ends all units; the samples and the done-flag stay as they are.
    int cleanMontageIrInfo()
    {
        m_aMontageIr.RemoveAll();
        return 1;
    }
};

} // namespace megset
