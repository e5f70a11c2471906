#pragma once
// Channel-by-channel spectra of a trial.

#include "megset/spectral/CMDTrial7Coh01TimeData.h"

namespace megset {

/// The trial's layer for cross-spectra.
class CMDTrial7Coh02SpctmData : public CMDTrial7Coh01TimeData
{
public:
    ~CMDTrial7Coh02SpctmData() override;

    /// The cross-spectra; with `bCreate` an empty object is made where there is none. Null without one or without
    /// memory.
    CMEGSpctmCCDataFacezk* getTrlSpctmCCDataFace(int bCreate);
    /// Takes the cross-spectra over. Where there are others it asks "Would you like to delete the existing coherence
    /// data?!": with No nothing changes, pNew stays the caller's, and the result is 0. Null ends those that are there.
    int setCoherenceFacezkSpctm(CMEGSpctmCCDataFacezk* pNew);
    /// Ends the cross-spectra. Gives 1.
    int _cleanTrialCoherenceFacezkSpctm();
};

} // namespace megset
