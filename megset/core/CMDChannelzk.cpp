#include "megset/core/CMDChannelzk.h"

#include "megset/numeric/arithmetic.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/records/records.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

// Puts a copy of the geometry into `copy`; false without memory. An object of another class than its type tells, which
// setGeomType() can leave behind, counts as none.
template <class Record>
bool copyTo(std::unique_ptr<CGeomzk>& copy, const CGeomzk* geometry)
{
    const auto* record = dynamic_cast<const Record*>(geometry);
    if (record == nullptr)
        return true;
    copy = tryNew<Record>(*record);
    return copy != nullptr;
}

// Combines the samples that a and b both have into two results; 0 for a mode that is none.
int combine(std::span<const double> a, std::span<const double> b, int mode, std::span<double> to,
            std::span<double> alsoTo)
{
    const std::size_t both = std::min(a.size(), b.size());
    switch (mode) {
    case 0:
        numeric::subtract(a.first(both), b.first(both), to, alsoTo);
        return 1;
    case 1:
        numeric::add(a.first(both), b.first(both), to, alsoTo);
        return 1;
    case 2:
        numeric::multiply(a.first(both), b.first(both), to, alsoTo);
        return 1;
    default:
        return 0;
    }
}

} // namespace

int CMDChannelzk::copyChannelInfo(const CMDChannelzk* src)
{
    if (src == nullptr)
        return 0;
    if (src == this)
        return 1;
    _cleanGeomHw();
    m_strChannelTypeName = src->m_strChannelTypeName;
    m_nChannelType = src->m_nChannelType;
    m_nGeomType = src->m_nGeomType;
    if (!copyGeometry(*src) || !copyBalance(*src)) {
        AfxMessageBox("Is there enough memory?!", MB_OK);
        return 0;
    }
    m_nMegListID = src->m_nMegListID;
    m_nEegListID = src->m_nEegListID;
    m_dChnlParamA = src->m_dChnlParamA;
    m_dSns2dX = src->m_dSns2dX;
    m_dSns2dY = src->m_dSns2dY;
    m_nChnlParamE = src->m_nChnlParamE;
    m_nChnlParamD = src->m_nChnlParamD;
    m_nChnlParamF = src->m_nChnlParamF;
    m_nChnlParamG = src->m_nChnlParamG;
    m_nChnlParamH = src->m_nChnlParamH;
    m_nChnlParamI = src->m_nChnlParamI;
    m_dChnlParamJ = src->m_dChnlParamJ;
    m_dChnlParamK = src->m_dChnlParamK;
    m_dChnlParamL = src->m_dChnlParamL;
    m_strChannelNameRaw = src->m_strChannelNameRaw;
    m_strChannelName = src->m_strChannelName;
    return 1;
}

// Types 1 to 4 are copied; an accelerator, which only a file brings, is not.
bool CMDChannelzk::copyGeometry(const CMDChannelzk& src)
{
    const CGeomzk* geometry = src.m_pGeomHw.get();
    switch (src.m_nGeomType) {
    case 1:
        return copyTo<CMEGSensorzk>(m_pGeomHw, geometry);
    case 2:
        return copyTo<CEEGelectrodezk>(m_pGeomHw, geometry);
    case 3:
        return copyTo<CStimTrigzk>(m_pGeomHw, geometry);
    case 4:
        return copyTo<CMisceSnsrzk>(m_pGeomHw, geometry);
    default:
        return true;
    }
}

bool CMDChannelzk::copyBalance(const CMDChannelzk& src)
{
    m_nMegBalMode = src.m_nMegBalMode;
    m_nMegChnlNumBal = src.m_nMegChnlNumBal;
    if (src.m_pMegBalInf == nullptr || src.m_nMegChnlNumBal < 0)
        return true;
    m_pMegBalInf = tryNewZeroArray<MEG_BalInfo>(src.m_nMegChnlNumBal);
    if (m_pMegBalInf == nullptr) {
        m_nMegChnlNumBal = 0;
        return false;
    }
    std::copy_n(src.m_pMegBalInf.get(), src.m_nMegChnlNumBal, m_pMegBalInf.get());
    return true;
}

int CMDChannelzk::operateChnl(const CMDChannelzk* a, const CMDChannelzk* b, bool, int mode)
{
    if (a == nullptr || b == nullptr || a->waveSpan().empty() || b->waveSpan().empty())
        return 0;
    const std::int64_t count = a->m_nTotalSample;
    // A channel that is its own operand must not lose its samples before they are used.
    if (a == this || b == this) {
        CMDChannelzk result;
        if (!result.initData(count, true))
            return 0;
        const int done = combine(a->waveSpan(), b->waveSpan(), mode, result.waveSpan(), result.backupSpan());
        std::swap(m_pDataWave, result.m_pDataWave);
        std::swap(m_pBkData, result.m_pBkData);
        m_nTotalSample = m_nBkDataSample = count;
        m_nCurrentSample = 0;
        return done;
    }
    return initData(count, true) ? combine(a->waveSpan(), b->waveSpan(), mode, waveSpan(), backupSpan()) : 0;
}

} // namespace megset
