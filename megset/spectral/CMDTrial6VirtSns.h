#pragma once
// Virtual channels of a trial: waves, spectra, source coherence.

#include "megset/geometry/CMDTrial6SeegIeeg.h"

namespace megset {

/// A clean operation ends what is there and gives 1; with `bCreate` an empty object is made where there is none.
class CMDTrial6VirtSns : public CMDTrial6SeegIeeg
{
public:
    ~CMDTrial6VirtSns() override;

    /// Null without one or without memory.
    CSrcCohFacezk* getFaceSrcCoh(int bCreate);
    int cleanFaceSrcCoh();

    /// Null without one or without memory.
    CFaceVirtChnlSpctmzk* getFaceVirtChnlSpctmzk(int bCreate);
    int cleanFaceVirtSpctm();

    /// A face of the package of waves, null outside. With `bCreate` the number behind the last one makes an empty face.
    CFaceVirtChnlWavezk* getFaceVirtChnlWave(int iFace, int bCreate);
    int getTotalFaceVirtSnsWave() const { return m_pkgVirtWave.getTotalFvcw(); }
    int cleanFaceVirtWave();
    /// Brings the number of a face into the package, and gives the number of faces. A negative one becomes 0; one above
    /// that number becomes the last face's, but one equal to it stays, though there is no such face: it is meant so. -1
    /// for an empty package.
    int correctFaceVirtualSnsPkgID(int& nPkgId) const;
};

} // namespace megset
