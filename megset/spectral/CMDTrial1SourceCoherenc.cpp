#include "megset/spectral/CMDTrial1SourceCoherenc.h"

#include "megset/spectral/heldSlot.h"

namespace megset {

CFaceVolumSourceCoherenceImagezk* CMDTrial1SourceCoherenc::getFaceVolumSourceCoherenceImagezk(int bCreate)
{
    return heldObject(m_pVolumeSrcCoh, bCreate != 0, "Initializing volume source error!");
}

int CMDTrial1SourceCoherenc::setFaceVolumeSourceCoherencImag(CFaceVolumSourceCoherenceImagezk* pNew)
{
    return replaceHeld(m_pVolumeSrcCoh, pNew, "Would you like to delete the existing one?");
}

int CMDTrial1SourceCoherenc::addVolumeSourceCoherencImag(CVolumSourcCoherencImagzk* pImage, int bFlag)
{
    CFaceVolumSourceCoherenceImagezk* face = getFaceVolumSourceCoherenceImagezk(1);
    if (face == nullptr)
        return 0;
    face->addSam3Dzk(pImage, bFlag != 0);
    return 1;
}

int CMDTrial1SourceCoherenc::_cleanTriallSourceCoherencData()
{
    m_pVolumeSrcCoh.reset();
    return 1;
}

} // namespace megset
