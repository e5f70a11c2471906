#include "megset/records/electric/CEEGelectrode.h"

#include "megset/records/catalogues.h"
#include "megset/records/recordFormat.h"
#include "megset/records/sensors/flattenPoint.h"

#include <algorithm>

namespace megset {
namespace {

constexpr int notFound = -1;
constexpr int noName = -2;

} // namespace

void CEEGelectrode::getElectrodePositionD(double& x, double& y, double& z) const
{
    x = m_dElectrodePos[0];
    y = m_dElectrodePos[1];
    z = m_dElectrodePos[2];
}

void CEEGelectrode::setElectrodePositionD(double x, double y, double z)
{
    m_dElectrodePos[0] = x;
    m_dElectrodePos[1] = y;
    m_dElectrodePos[2] = z;
}

int CEEGelectrode::setPosDiir(const double* pPos, const double* pDir)
{
    if (pPos != nullptr)
        std::copy_n(pPos, 3, m_dElectrodePos.begin());
    if (pDir != nullptr)
        std::copy_n(pDir, 3, m_dElectrodeDir.begin());
    return 1;
}

void CEEGelectrode::flatten3Dto2D(double a, double b, double c, double& u, double& v)
{
    flattenPoint(a, b, c, u, v);
}

template <class Table>
int CEEGelectrode::findIn(const Table& table)
{
    if (m_strElectrodeName.IsEmpty())
        return noName;
    const EEG_STD_POS* const row = findEegStdPos(table, m_strElectrodeName.view());
    if (row == nullptr)
        return notFound;
    setElectrodePositionD(row->m_dPosX, row->m_dPosY, row->m_dPosZ);
    m_strElectrodeStd = CString(row->m_strElectrodeName);
    m_nChannelType = row->m_nChannelType;
    m_nElectrodeWord = row->m_nEegTypeRow;
    m_nPosFound = 1;
    return static_cast<int>(row - table.data());
}

int CEEGelectrode::findPosMe()
{
    return findIn(g_aEegStd21);
}

int CEEGelectrode::findPosEasyCap74()
{
    return findIn(g_aEegStd32);
}

int CEEGelectrode::findAll()
{
    const int row = findIn(g_aEegStd32);
    return row >= 0 ? row : std::max(findIn(g_aEegStd21), notFound);
}

int CEEGelectrode::findPosReadPea(const CPtrArray* pList)
{
    if (m_strElectrodeName.IsEmpty())
        return noName;
    const int count = pList != nullptr ? pList->GetSize() : 0;
    for (int i = 0; i < count; ++i) {
        const auto* const found = static_cast<const CEEGelectrodezk*>(pList->GetAt(i));
        if (found == nullptr || found->m_strElectrodeName != m_strElectrodeName)
            continue;
        m_dElectrodePos = found->m_dElectrodePos;
        m_dElectrodeDir = found->m_dElectrodeDir;
        m_strElectrodeStd = found->m_strElectrodeName;
        m_nChannelType = found->m_nChannelType;
        m_nElectrodeWord = found->m_nElectrodeWord;
        m_nPosFound = 1;
        return i;
    }
    return notFound;
}

const FormatVersion<CEEGelectrode09File> CEEGelectrode09File::s_versions[] = {
    {20261121, &CEEGelectrode09File::serialize_20261121},
};

int CEEGelectrode09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "EEGELECTRODEZK", s_versions);
}

int CEEGelectrode09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_strElectrodeLabel, m_strElectrodeName, m_strElectrodeStd, m_dElectrodePos,
                    m_dElectrodeDir, m_dImpedance, m_nElectrodeID, m_nChannelType, m_nElectrodeWord, m_nNameSet,
                    m_nPosFound, m_nSeegProbeID, m_nSeegContactID);
    return 1;
}

} // namespace megset
