#include "megset/spectral/CMDTrial7Coh02SpctmData.h"

#include "megset/spectral/heldSlot.h"

namespace megset {

CMDTrial7Coh02SpctmData::~CMDTrial7Coh02SpctmData()
{
    _cleanTrialCoherenceFacezkSpctm();
}

CMEGSpctmCCDataFacezk* CMDTrial7Coh02SpctmData::getTrlSpctmCCDataFace(int bCreate)
{
    return heldObject(m_pSpctmCCFace, bCreate != 0);
}

int CMDTrial7Coh02SpctmData::setCoherenceFacezkSpctm(CMEGSpctmCCDataFacezk* pNew)
{
    return replaceHeld(m_pSpctmCCFace, pNew, "Would you like to delete the existing coherence data?!");
}

int CMDTrial7Coh02SpctmData::_cleanTrialCoherenceFacezkSpctm()
{
    m_pSpctmCCFace.reset();
    return 1;
}

} // namespace megset
