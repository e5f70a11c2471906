#include "megset/spectral/CMDTrial1Source.h"

#include "megset/spectral/heldSlot.h"

namespace megset {

CMDTrial1Source::~CMDTrial1Source()
{
    _cleanTriallSourceData();
}

CFaceVolumSourceImagezk* CMDTrial1Source::getVolumeSrcFacezk(bool bCreate)
{
    return heldObject(m_pVolumeSrc, bCreate, "Initializing volume source error!");
}

int CMDTrial1Source::setVolumeSrcFacezk(CFaceVolumSourceImagezk* pNew)
{
    return replaceHeld(m_pVolumeSrc, pNew, "Would you like to delete the existing one?");
}

int CMDTrial1Source::addVolumeSrc(CVolumSourcImagzk* pImage, bool bFlag)
{
    CFaceVolumSourceImagezk* face = getVolumeSrcFacezk(true);
    if (face == nullptr)
        return 0;
    face->addSam3Dzk(pImage, bFlag);
    return 1;
}

int CMDTrial1Source::_cleanTriallSourceData()
{
    m_pVolumeSrc.reset();
    return 1;
}

} // namespace megset
