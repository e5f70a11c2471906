#pragma once
// Spectra of a trial and of its channels, by class. Needs the channels' spectrum slots.

#include "megset/processing/CMDTrial3Montage.h"

namespace megset {

class CMDTrial4Spctm : public CMDTrial3Montage
{
public:
    /// Ends the spectra of all classes on every channel. 0 with no channels.
    int _cleanSpctmChnlDataAll();
    /// Ends the trial's own spectra.
    int _cleanSpctmTrlData();
};

} // namespace megset
