#pragma once
// Wave-analysis results of one channel, by class.

#include "megset/spectral/CMDChannel1Spctm.h"

namespace megset {

/// With `bCreate` an empty object is made where there is none. Null without one or without memory.
class CMDChannel2WaveAnalyz : public CMDChannel1Spctm
{
public:
    /// By class: 0 active, 1 control, 2 result; null for another one.
    CChnlWaveAnalyzedResultzk* getWaveAnalyzeResult(int bCreate, int nClass);
    CChnlWaveAnalyzedResultzk* getWaveAnalyzeResultA(int bCreate);
    CChnlWaveAnalyzedResultzk* getWaveAnalyzeResultC(int bCreate);
    CChnlWaveAnalyzedResultzk* getWaveAnalyzeResultX(int bCreate);
};

} // namespace megset
