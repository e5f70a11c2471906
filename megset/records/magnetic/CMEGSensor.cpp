#include "megset/records/magnetic/CMEGSensor.h"

#include "megset/records/recordFormat.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace megset {
namespace {

constexpr std::size_t directionAt = 4;
constexpr std::size_t knownAt = 3;

bool isAllZero(const CMEGSensor::Geometry& geometry)
{
    return std::all_of(geometry.begin(), geometry.end(), [](double value) { return value == 0.0; });
}

int giveTriple(const double* from, double& x, double& y, double& z)
{
    x = from != nullptr ? from[0] : 0.0;
    y = from != nullptr ? from[1] : 0.0;
    z = from != nullptr ? from[2] : 0.0;
    return from != nullptr;
}

// Numbers of a coil in an array of triples that may be absent.
void takeTriple(const double* triples, std::size_t coil, double* to)
{
    if (triples != nullptr)
        std::copy_n(triples + 3 * coil, 3, to);
}

CoilPlace placeFrom(const double* positions, const double* directions, std::size_t coil)
{
    CoilPlace place{};
    takeTriple(positions, coil, place.data());
    takeTriple(directions, coil, place.data() + directionAt);
    place[knownAt] = positions != nullptr ? 1.0 : 0.0;
    return place;
}

} // namespace

const double* CMEGSensor::placeOf(int nSet, int nCoil) const
{
    if (const CBscMagSnszk* coil = getCoil(nCoil)) {
        const CoilPlace* const place = coil->getPlace(nSet);
        return place != nullptr ? place->data() : nullptr;
    }
    if (nCoil != 0 || nSet < coilFrameWork || nSet > coilFrameHead)
        return nullptr;
    // Before it is put to work a sensor is where it was recorded.
    return nSet == coilFrameWork && !isAllZero(m_dSnsGeomWork) ? m_dSnsGeomWork.data() : m_dSnsGeom.data();
}

CoilPlace* CMEGSensor::placeToSet(int nSet, int nCoil)
{
    if (nCoil == 0 && getTotalCoils() == 0 && nSet >= coilFrameWork && nSet <= coilFrameHead)
        makeFirstCoil();
    CBscMagSnszk* const coil = getCoil(nCoil);
    return coil != nullptr ? coil->getPlace(nSet) : nullptr;
}

// The first coil begins where the sensor was without it.
void CMEGSensor::makeFirstCoil()
{
    CMagCoilzk coil;
    const double* const work = placeOf(coilFrameWork, 0);
    std::copy_n(work, m_dSnsGeomWork.size(), coil.m_dCoilWork.begin());
    std::copy(m_dSnsGeom.begin(), m_dSnsGeom.end(), coil.m_dCoilHead.begin());
    coil.m_dCoilHead[knownAt] = isAllZero(m_dSnsGeom) ? 0.0 : 1.0;
    m_pSnsCoils.m_aCoils.push_back(coil);
}

void CMEGSensor::followFirstCoil()
{
    const CBscMagSnszk* const coil = getCoil(0);
    if (coil == nullptr)
        return;
    std::copy_n(coil->m_dCoilWork.begin(), m_dSnsGeomWork.size(), m_dSnsGeomWork.begin());
    if (coil->m_dCoilHead[knownAt] != 0.0)
        std::copy_n(coil->m_dCoilHead.begin(), m_dSnsGeom.size(), m_dSnsGeom.begin());
}

int CMEGSensor::getSnsPos(int nSet, int nCoil, double& x, double& y, double& z) const
{
    return giveTriple(placeOf(nSet, nCoil), x, y, z);
}

int CMEGSensor::setSnsPos(int nSet, int nCoil, double x, double y, double z)
{
    CoilPlace* const place = placeToSet(nSet, nCoil);
    if (place == nullptr)
        return 0;
    (*place)[0] = x;
    (*place)[1] = y;
    (*place)[2] = z;
    (*place)[knownAt] = 1.0;
    followFirstCoil();
    return 1;
}

int CMEGSensor::getSnsNmlDir(int nSet, int nCoil, double& x, double& y, double& z) const
{
    if (!getSnsOrn(nSet, nCoil, x, y, z))
        return 0;
    const double length = std::hypot(x, y, z);
    if (length > 0.0) {
        x /= length;
        y /= length;
        z /= length;
    }
    return 1;
}

int CMEGSensor::getSnsOrn(int nSet, int nCoil, double& x, double& y, double& z) const
{
    const double* const place = placeOf(nSet, nCoil);
    return giveTriple(place != nullptr ? place + directionAt : nullptr, x, y, z);
}

int CMEGSensor::setSnsOrn(int nSet, int nCoil, double x, double y, double z)
{
    CoilPlace* const place = placeToSet(nSet, nCoil);
    if (place == nullptr)
        return 0;
    (*place)[directionAt] = x;
    (*place)[directionAt + 1] = y;
    (*place)[directionAt + 2] = z;
    followFirstCoil();
    return 1;
}

CBscMagSnszk* CMEGSensor::getCoil(int nCoil)
{
    return const_cast<CBscMagSnszk*>(std::as_const(*this).getCoil(nCoil));
}

const CBscMagSnszk* CMEGSensor::getCoil(int nCoil) const
{
    return nCoil >= 0 && nCoil < getTotalCoils() ? &m_pSnsCoils.m_aCoils[static_cast<std::size_t>(nCoil)] : nullptr;
}

int CMEGSensor::setCoils2work(int nFrame)
{
    if (getTotalCoils() == 0 && !isAllZero(m_dSnsGeom))
        m_dSnsGeomWork = m_dSnsGeom;
    for (CMagCoilzk& coil : m_pSnsCoils.m_aCoils)
        coil.setPlace2work(nFrame);
    followFirstCoil();
    return 1;
}

double CMEGSensor::getCoilBaseLine() const
{
    if (getTotalCoils() < 2)
        return 0.0;
    const CoilPlace& first = getCoil(0)->m_dCoilWork;
    const CoilPlace& second = getCoil(1)->m_dCoilWork;
    return std::hypot(second[0] - first[0], second[1] - first[1], second[2] - first[2]);
}

int CMEGSensor::isAxialGrad() const
{
    const double baseLine = getCoilBaseLine();
    if (!(baseLine > 0.0))
        return 0;
    const CoilPlace& first = getCoil(0)->m_dCoilWork;
    const CoilPlace& second = getCoil(1)->m_dCoilWork;
    double nx = 0.0;
    double ny = 0.0;
    double nz = 0.0;
    getCoil(0)->getNmlDirXYZ(nx, ny, nz);
    const double along = (second[0] - first[0]) * nx + (second[1] - first[1]) * ny + (second[2] - first[2]) * nz;
    return 2.0 * along * along > baseLine * baseLine;
}

int CMEGSensor::setGradOrderNo(int nOrder)
{
    if (nOrder < 0 || nOrder > 3)
        return 0;
    m_nGradOrderNo = nOrder;
    return 1;
}

int CMEGSensor::initSensorBasic(int nGeometryCode, const CString& strName, const CString& strTypeName, int nItem,
                                const int* pTurns, const double* pDewarPos, const double* pDewarDir,
                                const double* pHeadPos, const double* pHeadDir)
{
    if (nItem < 0 || nItem / 3 > maxCoils)
        return 0;
    m_nSnsWordC = nGeometryCode;
    m_strSensorName = strName;
    m_strSensorTypeName = strTypeName;
    m_pSnsCoils.m_aCoils.assign(static_cast<std::size_t>(nItem / 3), CMagCoilzk());
    for (std::size_t i = 0; i < m_pSnsCoils.m_aCoils.size(); ++i) {
        CMagCoilzk& coil = m_pSnsCoils.m_aCoils[i];
        coil.m_dCoilTurns = pTurns != nullptr ? pTurns[i] : 1.0;
        coil.m_dCoilDewar = placeFrom(pDewarPos, pDewarDir, i);
        coil.m_dCoilHead = placeFrom(pHeadPos, pHeadDir, i);
        if (!coil.setPlace2work(coilFrameHead))
            coil.setPlace2work(coilFrameDewar);
    }
    followFirstCoil();
    return 1;
}

int CMEGSensor::initSensorInfo(int nSensorID, int nChannelType, int nCoilShape, int nGradOrder, double dProperGain,
                               double dQGain, double dIOGain, double dIOOffset)
{
    m_nSnsWordA = nSensorID;
    m_nChannelType = nChannelType;
    m_nSnsWordB = nCoilShape;
    for (CMagCoilzk& coil : m_pSnsCoils.m_aCoils)
        coil.m_nCoilShape = nCoilShape;
    if (!setGradOrderNo(nGradOrder))
        m_nGradOrderNo = 0;
    m_pSnsCoils.m_dProperGain = dProperGain;
    m_pSnsCoils.m_dQGain = dQGain;
    m_pSnsCoils.m_dIOGain = dIOGain;
    m_pSnsCoils.m_dIOOffset = dIOOffset;
    return 1;
}

const FormatVersion<CMEGSensor09File> CMEGSensor09File::s_versions[] = {
    {20261121, &CMEGSensor09File::serialize_20261121},
};

int CMEGSensor09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MEGSENSORZK", s_versions);
}

int CMEGSensor09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_nSnsValueA, m_strSensorName, m_strSensorTypeName, m_strSensorCoilTypeName,
                    m_nSnsWordA, m_nChannelType, m_nGradOrderNo, m_nSnsWordB);
    if (!m_pSnsCoils.serializezk(ar))
        return 0;
    EXCHANGE_FIELDS(ar, m_dSnsGeom, m_nSnsWordC, m_nSnsWordD, m_nSnsValueB, m_dSnsGeomWork);
    return 1;
}

} // namespace megset
