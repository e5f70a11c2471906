#include "megset/spectral/CMDTrial6IcaFace.h"

#include "megset/spectral/heldSlot.h"

namespace megset {

CFaceIcazk* CMDTrial6IcaFace::getFaceIca(int bCreate)
{
    return heldObject(m_pFaceIca, bCreate != 0);
}

int CMDTrial6IcaFace::cleanIcaFace()
{
    m_pFaceIca.reset();
    return 1;
}

} // namespace megset
