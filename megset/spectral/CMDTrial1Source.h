#pragma once
// Volumetric source images of a trial.

#include "megset/core/CMDTrial0SensorInfo.h"

namespace megset {

/// The trial's layer for source images.
class CMDTrial1Source : public CMDTrial0SensorInfo
{
public:
    ~CMDTrial1Source() override;

    /// The images of the trial; with `bCreate` an empty list is made where there is none. Null without one, and without
    /// memory ("Initializing volume source error!").
    CFaceVolumSourceImagezk* getVolumeSrcFacezk(bool bCreate);
    /// Takes the images over. Where there are others it asks "Would you like to delete the existing one?": with No
    /// nothing changes, pNew stays the caller's, and the result is 0. Null ends those that are there.
    int setVolumeSrcFacezk(CFaceVolumSourceImagezk* pNew);
    /// Adds a copy of the image, as the current one with `bFlag`. 0 when there is no memory for the list; else 1,
    /// whatever the list says of the image.
    int addVolumeSrc(CVolumSourcImagzk* pImage, bool bFlag);
    /// Ends the images. Gives 1.
    int _cleanTriallSourceData();
};

} // namespace megset
