#include "megset/records/display/SHOW_SHRINK_DATAF.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"

namespace megset {
namespace {

int exchangeExtremes(CArchive& ar, std::unique_ptr<float[]>& values, std::int64_t count, std::string_view name)
{
    const BlockResult result = exchangeGuardedBlock(ar, values, count, name);
    if (result == BlockResult::noMemory)
        AfxMessageBox("Is memory enough?!", MB_OK);
    else if (result == BlockResult::empty)
        AfxMessageBox("Read ShowShrink data error!?", MB_OK);
    return result != BlockResult::noMemory && result != BlockResult::empty;
}

} // namespace

int SHOW_SHRINK_DATAF::serialize(CArchive& ar)
{
    if (ar.IsLoading())
        *this = SHOW_SHRINK_DATAF();
    EXCHANGE_FIELDS(ar, m_nSrcSample, m_dShrinkRatio, m_nDirty, m_dShrinkRatioUsed, m_nBinSample, m_nBinCount);
    return exchangeExtremes(ar, m_pMax, m_nBinCount, "m_pMax") && exchangeExtremes(ar, m_pMin, m_nBinCount, "m_pMin");
}

} // namespace megset
