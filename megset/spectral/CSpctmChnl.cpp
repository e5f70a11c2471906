#include "megset/spectral/CSpctmChnl.h"

namespace megset {

CSpctmChnl::~CSpctmChnl()
{
    _cleanSpctmData();
    _cleanBkSpctmData();
}

int CSpctmChnl::_cleanSpctmData()
{
    m_pSpctmR.reset();
    m_pSpctmI.reset();
    m_pSpctmM.reset();
    m_pSpctmA.reset();
    m_nTimePt = m_nFreqPt = 0;
    return 1;
}

int CSpctmChnl::_cleanBkSpctmData()
{
    m_pBkSpctmR.reset();
    m_pBkSpctmI.reset();
    m_pBkSpctmM.reset();
    m_pBkSpctmA.reset();
    m_nBkTimePt = m_nBkFreqPt = 0;
    return 1;
}

} // namespace megset
