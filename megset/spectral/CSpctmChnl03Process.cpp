#include "megset/spectral/CSpctmChnl03Process.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/transform.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/spectrumSelection.h"

#include <algorithm>
#include <limits>

namespace megset {
namespace {

constexpr std::int64_t toTheEnd = std::numeric_limits<std::int64_t>::max();

// Several operations take a first value of 0.0 as the sign of an empty plane: it is meant so.
bool looksEmpty(numeric::ConstPlane plane)
{
    return plane.isEmpty() || plane.values().front() == 0.0;
}

void put(double* out, double value)
{
    if (out != nullptr)
        *out = value;
}

void put(const numeric::PlaneRange& range, double* pMin, double* pMax, double* pMean)
{
    put(pMin, range.min);
    put(pMax, range.max);
    put(pMean, range.mean);
}

} // namespace

// Runs `operation(values)` on the plane's values.
template <class Operation>
int CSpctmChnl03Process::inPlace(int nDataType, Operation operation)
{
    const numeric::Plane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    operation(values.values());
    return 1;
}

int CSpctmChnl03Process::cutSpctmDataExtrama(double dLow, double dHigh, double dFill, int nDataType)
{
    return inPlace(nDataType, [=](std::span<double> x) { numeric::replaceOutside(x, dLow, dHigh, dFill); });
}

int CSpctmChnl03Process::cutSpctmFreqBlock(std::int64_t iFreqBegin, std::int64_t iFreqEnd, double dFill, int nDataType)
{
    return cutSpctmSelect(0, toTheEnd, iFreqBegin, iFreqEnd, dFill, nDataType);
}

int CSpctmChnl03Process::cutSpctmTimeBlock(std::int64_t iTimeBegin, std::int64_t iTimeEnd, double dFill, int nDataType)
{
    return cutSpctmSelect(iTimeBegin, iTimeEnd, 0, toTheEnd, dFill, nDataType);
}

int CSpctmChnl03Process::cutSpctmSelect(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                                        std::int64_t iFreqEnd, double dFill, int nDataType)
{
    const numeric::Plane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    numeric::fillRectangle(values, clampedRectangle({iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}, m_nTimePt, m_nFreqPt),
                           dFill);
    return 1;
}

double CSpctmChnl03Process::getSelectSpctmValue(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                                                std::int64_t iFreqEnd, int nDataType) const
{
    const auto s = numeric::rectangleSum(
        plane(nDataType), clampedRectangle({iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}, m_nTimePt, m_nFreqPt));
    return s.count == 0 ? 0.0 : s.sum / static_cast<double>(s.count);
}

std::int64_t CSpctmChnl03Process::getSelectSpctmValueMMMR(int nDataType, std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                                          std::int64_t iFreqBegin, std::int64_t iFreqEnd, double& dMin,
                                                          double& dMean, double& dMax, double& dRms) const
{
    return readStatistics(plane(nDataType),
                          clampedForReaders({iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}, m_nTimePt, m_nFreqPt), dMin,
                          dMean, dMax, dRms);
}

int CSpctmChnl03Process::getSelectSpctmValueX(std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                                              std::int64_t iFreqEnd, double& dSum, std::int64_t& nCount,
                                              int nDataType) const
{
    const auto s = numeric::rectangleSum(
        plane(nDataType), clampedForReaders({iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}, m_nTimePt, m_nFreqPt));
    dSum = s.sum;
    nCount = s.count;
    return static_cast<int>(nCount);
}

CString CSpctmChnl03Process::getSelectSpctmValue2Txt(int nDataType, std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                                     std::int64_t iFreqBegin, std::int64_t iFreqEnd) const
{
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty())
        return "No data";
    return readText(values, clampedForReaders({iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}, m_nTimePt, m_nFreqPt));
}

double CSpctmChnl03Process::getSpctmFreqAbsMax(std::int64_t iFreq, int nDataType) const
{
    return numeric::columnMaxAbsolute(plane(nDataType), iFreq);
}

double CSpctmChnl03Process::getSpctmFreqAverage(std::int64_t iFreq, bool bOneFreq, int nDataType) const
{
    const numeric::ConstPlane values = plane(nDataType);
    if (looksEmpty(values))
        return 0.0;
    return bOneFreq ? numeric::columnMean(values, iFreq) : m_dSpctmMean;
}

double CSpctmChnl03Process::getSpctmFreqRootMean(std::int64_t iFreq, int nDataType) const
{
    return numeric::columnMeanSquare(plane(nDataType), iFreq);
}

int CSpctmChnl03Process::getSpctmRange(double* pMin, double* pMax, double* pMean, int bCompute, int nDataType)
{
    put({}, pMin, pMax, pMean);
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    if (bCompute != 0) {
        numeric::RangeScan scan;
        scan.carriesRowSum = true;
        scan.rowDivisor = static_cast<double>(m_nTimePt) * static_cast<double>(m_nFreqPt);
        const numeric::PlaneRange range = numeric::planeRange(values, scan);
        m_dSpctmMin = range.min;
        m_dSpctmMax = range.max;
        m_dSpctmMean = range.mean;
    }
    put({m_dSpctmMin, m_dSpctmMax, m_dSpctmMean}, pMin, pMax, pMean);
    return 1;
}

int CSpctmChnl03Process::getSpctmRangeAbs(double* pMin, double* pMax, double* pMean, int, int nDataType) const
{
    put({}, pMin, pMax, pMean);
    const numeric::ConstPlane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    numeric::RangeScan scan;
    scan.absolute = true;
    scan.carriesRowSum = true;
    scan.rowDivisor = static_cast<double>(m_nFreqPt);
    scan.divisor = static_cast<double>(m_nTimePt);
    put(numeric::planeRange(values, scan), pMin, pMax, pMean);
    return 1;
}

int CSpctmChnl03Process::globaleNormalSpctmFreq(std::int64_t iFreq, double dDivisor, int nDataType)
{
    const numeric::Plane values = plane(nDataType);
    if (looksEmpty(values) || !isFreqIndex(iFreq) || dDivisor == 0.0)
        return 0;
    numeric::divideColumn(values, iFreq, dDivisor);
    return 1;
}

int CSpctmChnl03Process::normSpctmValue2Shrt(double dScale, double dOffset, int nDataType)
{
    return inPlace(nDataType, [=](std::span<double> x) { numeric::shiftAndScale(x, dOffset, dScale); });
}

int CSpctmChnl03Process::normalizeSpctm4FreqX(double, int nDataType)
{
    const numeric::Plane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    numeric::divideColumnsByTheirMeans(values);
    return 1;
}

int CSpctmChnl03Process::rootStrip(std::int64_t iTimeBegin, std::int64_t iTimeEnd, double dScale, int nDataType)
{
    const numeric::Plane values = plane(nDataType);
    if (values.isEmpty())
        return 0;
    const auto base = tryNewArray<double>(m_nFreqPt);
    if (base == nullptr) {
        AfxMessageBox("Not enough memory?!", MB_OK);
        return 0;
    }
    const std::int64_t end = std::max<std::int64_t>(std::min(m_nTimePt, iTimeEnd), 1);
    const std::int64_t begin = std::max<std::int64_t>(iTimeBegin > end ? end - 1 : iTimeBegin, 0);
    if (begin == end)
        return 0;
    const std::span<double> divisor(base.get(), static_cast<std::size_t>(m_nFreqPt));
    numeric::baseline(values, begin, end, divisor);
    numeric::divideRowsAndScale(values, divisor, dScale);
    return 1;
}

int CSpctmChnl03Process::scaleSpctm(double dScale, int nDataType)
{
    return inPlace(nDataType, [=](std::span<double> x) { numeric::scaleInPlace(x, dScale); });
}

int CSpctmChnl03Process::setSpctmNAN2zero(int nDataType)
{
    return inPlace(nDataType, [](std::span<double> x) { numeric::replaceNonFinite(x, 0.0); });
}

int CSpctmChnl03Process::transformSpctm2log(int nDataType)
{
    return inPlace(nDataType, [](std::span<double> x) { numeric::logarithm(x); });
}

} // namespace megset
