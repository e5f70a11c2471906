#pragma once
// Volumetric source-coherence images of a trial.

#include "megset/spectral/CMDTrial1Source.h"

namespace megset {

/// The trial's layer for source-coherence images.
class CMDTrial1SourceCoherenc : public CMDTrial1Source
{
public:
    /// The images of the trial; with `bCreate` an empty list is made where there is none. Null without one, and without
    /// memory ("Initializing volume source error!").
    CFaceVolumSourceCoherenceImagezk* getFaceVolumSourceCoherenceImagezk(int bCreate);
    /// Takes the images over. Where there are others it asks "Would you like to delete the existing one?": with No
    /// nothing changes, pNew stays the caller's, and the result is 0. Null ends those that are there.
    int setFaceVolumeSourceCoherencImag(CFaceVolumSourceCoherenceImagezk* pNew);
    /// Adds a copy of the image, as the current one with `bFlag`. 0 when there is no memory for the list; else 1,
    /// whatever the list says of the image.
    int addVolumeSourceCoherencImag(CVolumSourcCoherencImagzk* pImage, int bFlag);
    /// Ends the images. Gives 1.
    int _cleanTriallSourceCoherencData();
};

} // namespace megset
