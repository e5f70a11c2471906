#include "megset/core/CMDChannel0SensorInfo.h"

#include "megset/records/records.h"

#include <algorithm>
#include <array>

namespace megset {
namespace {

struct EegTypeRow
{
    int type;
    int row;
};

constexpr std::array<EegTypeRow, 9> eegTypeRows = {
    {{300, 0}, {301, 1}, {302, 2}, {303, 3}, {310, 4}, {320, 5}, {330, 6}, {340, 7}, {350, 8}}};

} // namespace

int CMDChannel0SensorInfo::setChannelTypeName(const CString& name)
{
    m_strChannelTypeName = name;
    return 1;
}

int CMDChannel0SensorInfo::setChannelType(int type)
{
    // Negative types are large ones to the limit, as they come as unsigned numbers.
    if (static_cast<unsigned>(type) > 4000U)
        return 0;
    m_nChannelType = type;
    return 1;
}

int CMDChannel0SensorInfo::setGeomType(int type)
{
    if (type < 1 || type > 4)
        return 0;
    m_nGeomType = type;
    return 1;
}

int CMDChannel0SensorInfo::setChannelName(const CString& name, bool raw)
{
    (raw ? m_strChannelNameRaw : m_strChannelName) = name;
    return 1;
}

int CMDChannel0SensorInfo::replaceDataChannlName(const CString& from, const CString& to, bool fromRaw)
{
    if (fromRaw)
        m_strChannelName = m_strChannelNameRaw;
    return m_strChannelName.Replace(from, to);
}

CMEGSensorzk* CMDChannel0SensorInfo::getMEGSensorzk() const
{
    return m_nGeomType == 1 ? dynamic_cast<CMEGSensorzk*>(m_pGeomHw.get()) : nullptr;
}

CBscMagSns* CMDChannel0SensorInfo::getMEGCoilzk(int coil) const
{
    CMEGSensorzk* sensor = getMEGSensorzk();
    return sensor != nullptr ? sensor->getCoil(coil) : nullptr;
}

// A channel of an EEG type may hold another geometry, which is no electrode.
CEEGelectrodezk* CMDChannel0SensorInfo::getEegElectrode(int strict) const
{
    const bool wanted = strict ? m_nChannelType == 302 : isEEGChannel() != 0;
    return wanted && m_nGeomType == 2 ? dynamic_cast<CEEGelectrodezk*>(m_pGeomHw.get()) : nullptr;
}

int CMDChannel0SensorInfo::getSnsCoilWkCpyXYZ(int, double& x, double& y, double& z) const
{
    const CMEGSensorzk* sensor = getMEGSensorzk();
    if (sensor == nullptr)
        return 0;
    sensor->getSnsPos(-1, 0, x, y, z);
    return 1;
}

int CMDChannel0SensorInfo::initSensorBasic(int id, int type, const CString& name, const CString& typeName, int coils,
                                           int* words, double* a, double* b, double* c, double* d)
{
    m_nChannelType = type;
    CMEGSensorzk* sensor = ensureMEGSensor();
    if (sensor == nullptr)
        return 0;
    return sensor->initSensorBasic(id, name, typeName, coils, words, a, b, c, d);
}

int CMDChannel0SensorInfo::initSensorInfo(int id, int type, int wordA, int wordB, double a, double b, double c,
                                          double d)
{
    m_nChannelType = type;
    if (isMEGChannel()) {
        auto sensor = tryNew<CMEGSensorzk>();
        if (sensor == nullptr)
            return 0;
        m_pGeomHw = std::move(sensor);
        m_nGeomType = 1;
    }
    CMEGSensorzk* sensor = getMEGSensorzk();
    if (sensor == nullptr)
        return 0;
    return sensor->initSensorInfo(id, type, wordA, wordB, a, b, c, d);
}

int CMDChannel0SensorInfo::setGradientNoiseReduction(int order, const CCoefficientDatazk* coefficients)
{
    const CMEGSensorzk* sensor = getMEGSensorzk();
    if (order < 0 || order > 3 || coefficients == nullptr || sensor == nullptr)
        return 0;
    return sensor->getGradOrderNo() == order ? 1 : 0;
}

namespace {

template <class Record>
Record* ensureGeometry(CMDChannel& channel, int geomType)
{
    auto* present = channel.m_nGeomType == geomType ? dynamic_cast<Record*>(channel.m_pGeomHw.get()) : nullptr;
    if (present != nullptr)
        return present;
    auto made = tryNew<Record>();
    Record* record = made.get();
    if (record != nullptr) {
        channel.m_pGeomHw = std::move(made);
        channel.m_nGeomType = geomType;
    }
    return record;
}

} // namespace

CMEGSensorzk* CMDChannel0SensorInfo::ensureMEGSensor()
{
    return ensureGeometry<CMEGSensorzk>(*this, 1);
}

CEEGelectrodezk* CMDChannel0SensorInfo::ensureEegElectrode()
{
    return ensureGeometry<CEEGelectrodezk>(*this, 2);
}

CStimTrigzk* CMDChannel0SensorInfo::ensureStimTrig()
{
    return ensureGeometry<CStimTrigzk>(*this, 3);
}

CMisceSnsrzk* CMDChannel0SensorInfo::ensureMisceSnsr()
{
    return ensureGeometry<CMisceSnsrzk>(*this, 4);
}

int CMDChannel0SensorInfo::chnlType2eegType(int type)
{
    const auto* row = std::find_if(eegTypeRows.begin(), eegTypeRows.end(),
                                   [type](const EegTypeRow& entry) { return entry.type == type; });
    return row != eegTypeRows.end() ? row->row : 10;
}

int CMDChannel0SensorInfo::eegType2ChnlType(int row)
{
    return row >= 0 && row < static_cast<int>(eegTypeRows.size()) ? eegTypeRows[static_cast<std::size_t>(row)].type
                                                                  : 354;
}

bool CMDChannel0SensorInfo::getShow4SensorType01(int type)
{
    return (type >= 100 && type <= 103) || type == 300 || type == 302 || type == 303 || type == 600;
}

} // namespace megset
