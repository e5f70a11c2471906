#include "megset/spectral/CSpctmChnl01Function.h"

#include "megset/numeric/transform.h"
#include "megset/spectral/spectralPlanes.h"

#include <algorithm>

namespace megset {
namespace {

enum DataType
{
    R,
    I,
    M,
    A
};

} // namespace

numeric::Plane CSpctmChnl01Function::plane(int nDataType) const
{
    double* const values = getSpctmDataPtr(nDataType, nullptr, nullptr);
    if (values == nullptr || m_nTimePt < 1 || m_nFreqPt < 1)
        return {};
    return {{values, static_cast<std::size_t>(planeCount(m_nTimePt, m_nFreqPt))}, m_nFreqPt};
}

// Makes a plane that is missing; its content is left to the caller.
bool CSpctmChnl01Function::makePlane(SampleArray& samples) const
{
    if (samples == nullptr)
        samples = tryNewSamples(planeCount(m_nTimePt, m_nFreqPt), false);
    return samples != nullptr;
}

int CSpctmChnl01Function::computeMagnitude()
{
    if (plane(R).isEmpty() || !makePlane(m_pSpctmM))
        return 0;
    if (plane(I).isEmpty()) {
        numeric::magnitude(plane(R).values(), plane(M).values());
        return 1;
    }
    numeric::magnitude(plane(R).values(), plane(I).values(), plane(M).values());
    return 2;
}

int CSpctmChnl01Function::computePhase()
{
    if (plane(R).isEmpty() || !makePlane(m_pSpctmA))
        return 0;
    if (plane(I).isEmpty()) {
        numeric::phase(plane(R).values(), plane(A).values());
        return 1;
    }
    numeric::phase(plane(R).values(), plane(I).values(), plane(A).values());
    return 2;
}

int CSpctmChnl01Function::setPolarity2Magnitude(int nPolarity)
{
    if (computeMagnitude() == 0)
        return 0;
    const auto magnitude = plane(M).values();
    if (nPolarity == 1) {
        numeric::giveSign(magnitude, plane(R).values());
        return 1;
    }
    if ((nPolarity != 2 && nPolarity != 3) || plane(I).isEmpty())
        return 0;
    if (nPolarity == 2)
        numeric::giveSign(magnitude, plane(I).values());
    else
        numeric::giveSignOfLarger(magnitude, plane(R).values(), plane(I).values());
    return 1;
}

int CSpctmChnl01Function::getOneFreqBandData(int nDataType, double* pOut, std::int64_t iFreq,
                                             std::int64_t nTimePt) const
{
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty() || pOut == nullptr || nTimePt > m_nTimePt || !isFreqIndex(iFreq))
        return 0;
    const auto count = static_cast<std::size_t>(std::max<std::int64_t>(nTimePt, 0));
    numeric::copyColumn(values, iFreq, 0, {pOut, count});
    return 1;
}

int CSpctmChnl01Function::getOneFreqBandDataTbe(int nDataType, double* pOut, std::int64_t iFreq,
                                                std::int64_t iTimeBegin, std::int64_t iTimeEnd) const
{
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty() || pOut == nullptr || !isFreqIndex(iFreq))
        return 0;
    if (iTimeBegin < 0 || iTimeBegin > iTimeEnd || iTimeEnd >= m_nTimePt)
        return 0;
    numeric::copyColumn(values, iFreq, iTimeBegin, {pOut, static_cast<std::size_t>(iTimeEnd - iTimeBegin)});
    return 1;
}

double* CSpctmChnl01Function::getStd(int nDataType, std::int64_t& nFreqOut) const
{
    if (nFreqOut == -1)
        nFreqOut = m_nFreqPt;
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty())
        return nullptr;
    nFreqOut = std::clamp<std::int64_t>(nFreqOut, 1, m_nFreqPt);
    auto deviations = tryNewArray<double>(nFreqOut);
    if (deviations != nullptr)
        numeric::columnDeviations(values, {deviations.get(), static_cast<std::size_t>(nFreqOut)});
    return deviations.release();
}

} // namespace megset
