#include "megset/spectral/CSpctmChnlzk.h"

#include "megset/numeric/arithmetic.h"
#include "megset/spectral/spectralPlanes.h"

#include <array>
#include <cstddef>

namespace megset {
namespace {

bool haveBoth(const CSpctmChnlzk& a, const CSpctmChnlzk& b, int nDataType)
{
    return a.getSpctmDataPtr(nDataType, nullptr, nullptr) != nullptr &&
           b.getSpctmDataPtr(nDataType, nullptr, nullptr) != nullptr;
}

} // namespace

bool CSpctmChnlzk::hasShapeOf(const CSpctmChnlzk& other) const
{
    return m_nTimePt == other.m_nTimePt && m_nFreqPt == other.m_nFreqPt;
}

// Makes a zero plane of the other's shape. Planes of the shape held so far are ended, because they would no longer be
// what T and F say. Nothing changes without memory.
bool CSpctmChnlzk::takeShapeAndMake(const CSpctmChnlzk& other, int nDataType)
{
    SampleArray made = tryNewSamples(planeCount(other.m_nTimePt, other.m_nFreqPt), true);
    if (made == nullptr)
        return false;
    setParameters(&other);
    const std::array planes{&m_pSpctmR, &m_pSpctmI, &m_pSpctmM, &m_pSpctmA};
    *planes[static_cast<std::size_t>(nDataType)] = std::move(made);
    return true;
}

int CSpctmChnlzk::addSpctmChnlzk(CSpctmChnlzk* pOther, bool bCreate)
{
    if (pOther == nullptr || pOther->m_nTimePt < 1 || pOther->m_nFreqPt < 1)
        return 0;
    for (int type = 0; type < spectrumDataTypes; ++type) {
        if (pOther->plane(type).isEmpty())
            continue;
        const bool isMissing = getSpctmDataPtr(type, nullptr, nullptr) == nullptr;
        if (isMissing && (!bCreate || !takeShapeAndMake(*pOther, type)))
            return 0;
        if (!hasShapeOf(*pOther))
            return 0;
        numeric::addInPlace(plane(type).values(), pOther->plane(type).values());
    }
    return 1;
}

bool CSpctmChnlzk::hasPlanesUpTo(int nDataType) const
{
    for (int type = 0; type <= nDataType; ++type)
        if (plane(type).isEmpty())
            return false;
    return true;
}

int CSpctmChnlzk::has3Data() const
{
    return hasPlanesUpTo(2) ? 1 : 0;
}

int CSpctmChnlzk::has4Data() const
{
    return hasPlanesUpTo(3) ? 1 : 0;
}

void CSpctmChnlzk::combine(const CSpctmChnlzk& a, const CSpctmChnlzk& b, int nDataType, int nOperation)
{
    const std::span<const double> x = a.plane(nDataType).values();
    const std::span<const double> y = b.plane(nDataType).values();
    const std::span<double> to = plane(nDataType).values();
    if (nOperation == 0)
        numeric::subtract(x, y, to);
    else if (nOperation == 1)
        numeric::add(x, y, to);
    else if (nOperation == 2)
        numeric::multiply(x, y, to);
    else
        numeric::fill(to, 0.0);
}

int CSpctmChnlzk::operateSpctmChnlAB2C(CSpctmChnlzk* pA, CSpctmChnlzk* pB, bool bCreate, int nOperation)
{
    if (pA == nullptr || pB == nullptr || pA->m_nTimePt < 1 || pA->m_nFreqPt < 1 || !pA->hasShapeOf(*pB))
        return 0;
    if (!hasShapeOf(*pA)) {
        _cleanBkSpctmData();
        _cleanSpctmData();
    }
    for (int type = 0; type < spectrumDataTypes; ++type) {
        const bool isMissing = getSpctmDataPtr(type, nullptr, nullptr) == nullptr;
        if (haveBoth(*pA, *pB, type) && isMissing && (!bCreate || !takeShapeAndMake(*pA, type)))
            return 0;
    }
    for (int type = 0; type < spectrumDataTypes; ++type)
        if (haveBoth(*pA, *pB, type))
            combine(*pA, *pB, type, nOperation);
    storeData2Backupfile();
    return 1;
}

int CSpctmChnlzk::setParameters(const CSpctmChnlzk* pOther)
{
    if (pOther == nullptr)
        return 0;
    if (!hasShapeOf(*pOther))
        _cleanSpctmData();
    m_nTimePt = pOther->m_nTimePt;
    m_nFreqPt = pOther->m_nFreqPt;
    return 1;
}

} // namespace megset
