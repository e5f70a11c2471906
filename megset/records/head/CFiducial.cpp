#include "megset/records/head/CFiducial.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

#include <algorithm>

namespace megset {
namespace {

struct StandardPoint
{
    const char* name;
    double x, y, z;
};

// The standard head: its frame is the one that CHeadLocalization makes of nasion and ears, so that these three lie at
// y = 0 with the ears on the x axis. Sizes are of an adult's head.
constexpr std::array<StandardPoint, CFiducial::pointCount> standardHead{{
    {"Nasion (Nz)", 0.0, 0.0, -100.0},
    {"Left Ear (LPA, Left Preauricular)", 75.0, 0.0, 0.0},
    {"Right Ear (RPA, Right Preauricular)", -75.0, 0.0, 0.0},
    {"Inion (Iz)", 0.0, 0.0, 95.0},
    {"Vertex (Cz)", 0.0, 130.0, 0.0},
    {"Forehead (Fpz)", 0.0, 35.0, -98.0},
}};

} // namespace

void CFiduciaryPt::getFidPos(double& x, double& y, double& z) const
{
    x = m_dFidPos[0];
    y = m_dFidPos[1];
    z = m_dFidPos[2];
}

void CFiduciaryPt::setFidPos(double x, double y, double z)
{
    m_dFidPos = {x, y, z, m_dFidPos[3]};
}

const FormatVersion<CFiduciaryPt9File> CFiduciaryPt9File::s_versions[] = {
    {20261121, &CFiduciaryPt9File::serialize_20261121},
};

int CFiduciaryPt9File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "FIDUCIARYPTZK", s_versions);
}

int CFiduciaryPt9File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strFidName, m_dFidPos, m_dFidSize, m_nFidFound, m_nFidShow);
    return 1;
}

CFiducial::CFiducial()
{
    for (int i = 0; i < pointCount; ++i)
        getFiducialPt(i)->m_strFidName = standardName(i);
}

CFiduciaryPtzk* CFiducial::getFiducialPt(int point)
{
    return point >= 0 && point < pointCount ? &m_aFidPt[static_cast<std::size_t>(point)] : nullptr;
}

const CFiduciaryPtzk* CFiducial::getFiducialPt(int point) const
{
    return point >= 0 && point < pointCount ? &m_aFidPt[static_cast<std::size_t>(point)] : nullptr;
}

int CFiducial::setUpFiducialPoint(int point)
{
    if (point == -1) {
        for (int i = 0; i < pointCount; ++i)
            setUpFiducialPoint(i);
        return 1;
    }
    CFiduciaryPtzk* one = getFiducialPt(point);
    if (one == nullptr)
        return 0;
    const StandardPoint& standard = standardHead[static_cast<std::size_t>(point)];
    one->m_strFidName = standardName(point);
    one->setFidPos(standard.x, standard.y, standard.z);
    one->m_nFidFound = 0;
    return 1;
}

int CFiducial::getTotalFound() const
{
    return static_cast<int>(
        std::count_if(m_aFidPt.begin(), m_aFidPt.end(), [](const auto& point) { return point.m_nFidFound != 0; }));
}

CString CFiducial::standardName(int point)
{
    return standardHead[static_cast<std::size_t>(point)].name;
}

const FormatVersion<CFiducial9File> CFiducial9File::s_versions[] = {
    {20261121, &CFiducial9File::serialize_20261121},
};

int CFiducial9File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "FIDUCIALZK", s_versions);
}

int CFiducial9File::serialize_20261121(CArchive& ar)
{
    for (CFiduciaryPtzk& point : m_aFidPt)
        if (!point.serialize(ar))
            return 0;
    EXCHANGE_FIELDS(ar, m_nCurrentFid, m_nFidSetShow);
    return 1;
}

} // namespace megset
