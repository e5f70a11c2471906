#include "megset/spectral/CMDChannel1Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/numeric/transform.h"
#include "megset/records/results/CFreqDataChnl.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/spectralPlanes.h"

namespace megset {
namespace {

template <class T>
T* getOrMake(std::unique_ptr<T>& slot, bool create)
{
    if (slot == nullptr && create)
        slot = tryNew<T>();
    return slot.get();
}

// to = or += the average of a and b, which have its shape.
void averagePlanes(const SampleArray& a, const SampleArray& b, const SampleArray& to, std::int64_t count, bool assign)
{
    const auto apply = assign ? numeric::average : numeric::addAverage;
    apply(planeSpan(a, count), planeSpan(b, count), planeSpan(to, count));
}

} // namespace

CSpctmChnlzk* CMDChannel1Spctm::getSpctmChnl(bool bCreate, int nClass)
{
    switch (nClass) {
    case 0:
        return getSpctmChnlA(bCreate);
    case 1:
        return getSpctmChnlC(bCreate);
    case 2:
        return getSpctmChnlR(bCreate);
    default:
        return nullptr;
    }
}

CSpctmChnlzk* CMDChannel1Spctm::getSpctmChnlA(bool bCreate)
{
    return getOrMake(m_pSpctmChnlA, bCreate);
}

CSpctmChnlzk* CMDChannel1Spctm::getSpctmChnlC(bool bCreate)
{
    return getOrMake(m_pSpctmChnlC, bCreate);
}

CSpctmChnlzk* CMDChannel1Spctm::getSpctmChnlR(bool bCreate)
{
    return getOrMake(m_pSpctmChnlR, bCreate);
}

void* CMDChannel1Spctm::getFreqChnl(bool bCreate, int nClass)
{
    switch (nClass) {
    case 0:
        return getFreqDataA(bCreate);
    case 1:
        return getFreqDataC(bCreate);
    case 2:
        return getFreqDataX(bCreate);
    default:
        return nullptr;
    }
}

void* CMDChannel1Spctm::getFreqDataA(int bCreate)
{
    return getOrMake(m_pFreqDataA, bCreate != 0);
}

void* CMDChannel1Spctm::getFreqDataC(int bCreate)
{
    return getOrMake(m_pFreqDataC, bCreate != 0);
}

void* CMDChannel1Spctm::getFreqDataX(int bCreate)
{
    return getOrMake(m_pFreqDataX, bCreate != 0);
}

int CMDChannel1Spctm::hasSpctmData() const
{
    return m_pSpctmChnlA != nullptr || m_pSpctmChnlC != nullptr || m_pSpctmChnlR != nullptr ? 1 : 0;
}

int CMDChannel1Spctm::spctmAC2X_average(int bInit, int bAssign, int bBackup)
{
    const CSpctmChnlzk* const a = m_pSpctmChnlA.get();
    const CSpctmChnlzk* const c = m_pSpctmChnlC.get();
    if (a == nullptr || c == nullptr || a->m_nTimePt != c->m_nTimePt || a->m_nFreqPt != c->m_nFreqPt)
        return 0;
    if (a->m_pSpctmR == nullptr || c->m_pSpctmR == nullptr)
        return 0;
    const bool withI = bInit != 0 && a->m_pSpctmI != nullptr && c->m_pSpctmI != nullptr;
    const bool withM = bInit != 0 && a->m_pSpctmM != nullptr && c->m_pSpctmM != nullptr;
    CSpctmChnlzk* const r = getSpctmChnlR(bInit != 0);
    if (r == nullptr || (bInit != 0 && !r->initSpctmSpace(a->m_nTimePt, a->m_nFreqPt, true, withI, withM)))
        return 0;
    if (r->m_nTimePt != a->m_nTimePt || r->m_nFreqPt != a->m_nFreqPt || r->m_pSpctmR == nullptr)
        return 0;
    const std::int64_t count = planeCount(a->m_nTimePt, a->m_nFreqPt);
    averagePlanes(a->m_pSpctmR, c->m_pSpctmR, r->m_pSpctmR, count, bAssign != 0);
    if (withI)
        averagePlanes(a->m_pSpctmI, c->m_pSpctmI, r->m_pSpctmI, count, bAssign != 0);
    if (withM)
        averagePlanes(a->m_pSpctmM, c->m_pSpctmM, r->m_pSpctmM, count, bAssign != 0);
    if (bBackup != 0)
        r->storeData2Backupfile();
    return 1;
}

} // namespace megset
