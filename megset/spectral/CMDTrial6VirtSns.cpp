#include "megset/spectral/CMDTrial6VirtSns.h"

#include "megset/spectral/heldSlot.h"

namespace megset {

CMDTrial6VirtSns::~CMDTrial6VirtSns()
{
    cleanFaceSrcCoh();
    cleanFaceVirtSpctm();
    cleanFaceVirtWave();
}

CSrcCohFacezk* CMDTrial6VirtSns::getFaceSrcCoh(int bCreate)
{
    return heldObject(m_pSrcCohFace, bCreate != 0);
}

int CMDTrial6VirtSns::cleanFaceSrcCoh()
{
    m_pSrcCohFace.reset();
    return 1;
}

CFaceVirtChnlSpctmzk* CMDTrial6VirtSns::getFaceVirtChnlSpctmzk(int bCreate)
{
    return heldObject(m_pVirtSpctm, bCreate != 0);
}

int CMDTrial6VirtSns::cleanFaceVirtSpctm()
{
    m_pVirtSpctm.reset();
    return 1;
}

CFaceVirtChnlWavezk* CMDTrial6VirtSns::getFaceVirtChnlWave(int iFace, int bCreate)
{
    return m_pkgVirtWave.getFaceVirtChnlWave(iFace, bCreate);
}

int CMDTrial6VirtSns::cleanFaceVirtWave()
{
    m_pkgVirtWave.cleanFaceVirtSnsWav();
    return 1;
}

int CMDTrial6VirtSns::correctFaceVirtualSnsPkgID(int& nPkgId) const
{
    const int total = getTotalFaceVirtSnsWave();
    if (total < 1) {
        nPkgId = -1;
        return 0;
    }
    if (nPkgId > total) // not at it: it is meant so
        nPkgId = total - 1;
    if (nPkgId < 0)
        nPkgId = 0;
    return total;
}

} // namespace megset
