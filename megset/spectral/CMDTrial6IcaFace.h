#pragma once
// Independent components of a trial.

#include "megset/spectral/CMDTrial6Analysis.h"

namespace megset {

/// The trial's layer for independent components.
class CMDTrial6IcaFace : public CMDTrial6Analysis
{
public:
    /// The components; with `bCreate` an empty object is made where there is none. Null without one or without memory.
    CFaceIcazk* getFaceIca(int bCreate);
    /// Ends the components. Gives 1.
    int cleanIcaFace();
};

} // namespace megset
