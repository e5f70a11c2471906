#include "megset/records/magnetic/CBscMagSns.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"
#include "megset/records/sensors/flattenPoint.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

constexpr std::size_t normalAt = 4;

using CoilPoints = std::array<double, 4 * CBscMagSns::maxPoints>;

// Most coils have no points: then the file has none either.
void exchangePoints(CArchive& ar, CoilPoints& points, std::string_view name)
{
    const bool used = std::any_of(points.begin(), points.end(), [](double value) { return value != 0.0; });
    const bool present = exchangeGuard(ar, used);
    if (ar.IsLoading())
        points.fill(0.0);
    if (present)
        ar.exchangeNamed(name, points);
}

bool isPointCount(int count)
{
    return count >= 0 && count <= CBscMagSns::maxPoints;
}

} // namespace

void CBscMagSns::getCoilPositionD(double& x, double& y, double& z) const
{
    x = m_dCoilWork[0];
    y = m_dCoilWork[1];
    z = m_dCoilWork[2];
}

void CBscMagSns::setCoilPositionD(double x, double y, double z)
{
    m_dCoilWork[0] = x;
    m_dCoilWork[1] = y;
    m_dCoilWork[2] = z;
    m_dCoilWork[3] = 1.0;
}

void CBscMagSns::getNmlDirXYZ(double& x, double& y, double& z) const
{
    const double* const normal = m_dCoilWork.data() + normalAt;
    const double length = std::hypot(normal[0], normal[1], normal[2]);
    const double scale = length > 0.0 ? length : 1.0;
    x = normal[0] / scale;
    y = normal[1] / scale;
    z = normal[2] / scale;
}

CoilPlace* CBscMagSns::getPlace(int frame)
{
    switch (frame) {
    case coilFrameWork:
        return &m_dCoilWork;
    case coilFrameDewar:
        return &m_dCoilDewar;
    case coilFrameHead:
        return &m_dCoilHead;
    default:
        return nullptr;
    }
}

const CoilPlace* CBscMagSns::getPlace(int frame) const
{
    return const_cast<CBscMagSns*>(this)->getPlace(frame);
}

int CBscMagSns::setPlace2work(int frame)
{
    const CoilPlace* const place = getPlace(frame);
    if (place == nullptr || (*place)[3] == 0.0)
        return 0;
    m_dCoilWork = *place;
    return 1;
}

void CBscMagSns::flatten3Dto2D(double a, double b, double c, double& u, double& v)
{
    flattenPoint(a, b, c, u, v);
}

int CBscMagSns::exchangeCoil(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strCoilName, m_dCoilHead, m_dCoilDewar, m_dCoilWork, m_dCoilDiameter, m_dCoilTurns);
    exchangePoints(ar, m_dCoilMatrix, "m_dCoilMatrix");
    EXCHANGE_FIELDS(ar, m_nCoilPoints, m_nCoilShape);
    return isPointCount(m_nCoilPoints);
}

const FormatVersion<CBscMagSns09File> CBscMagSns09File::s_versions[] = {
    {20261121, &CBscMagSns09File::serialize_20261121},
};

int CBscMagSns09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "BSCMAGSNSZK", s_versions);
}

int CBscMagSns09File::serialize_20261121(CArchive& ar)
{
    return exchangeCoil(ar);
}

const FormatVersion<CMagVapor09File> CMagVapor09File::s_versions[] = {
    {20261121, &CMagVapor09File::serialize_20261121},
};

int CMagVapor09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MAGVAPORZK", s_versions);
}

int CMagVapor09File::serialize_20261121(CArchive& ar)
{
    if (!exchangeCoil(ar))
        return 0;
    EXCHANGE_FIELDS(ar, m_nVaporAxes, m_nVaporMode);
    exchangePoints(ar, m_dVaporMatrix, "m_dVaporMatrix");
    EXCHANGE_FIELDS(ar, m_nVaporPoints);
    return isPointCount(m_nVaporPoints);
}

} // namespace megset
