// The channel in a text file for other tools.

#include "megset/persistence/CMDChannel9File.h"
#include "megset/persistence/textExport.h"
#include "megset/records/records.h"

#include <algorithm>

namespace megset {

int CMDChannel9File::exportMEGData2TxtFile(CFile& file, std::int64_t from, std::int64_t to, int bSelect) const
{
    LongTextWriter text(file);
    text.put(CString::formatted(" %s Samples: %I64d ", m_strChannelName, m_nTotalSample).view());
    text.put(textOfGeometry().view());
    text.put(u"\n");
    const std::int64_t total = m_pDataWave != nullptr ? m_nTotalSample : 0;
    const std::int64_t first = bSelect ? std::max<std::int64_t>(from, 0) : 0;
    const std::int64_t end = bSelect && to < total ? to + 1 : total;
    for (std::int64_t i = first; i < end; ++i)
        text.putSample(m_pDataWave[static_cast<std::size_t>(i)]);
    text.put(u"\n");
    text.finish();
    return 1;
}

// Where the channel's sensor is, or what it is; nothing for other geometry types.
CString CMDChannel9File::textOfGeometry() const
{
    switch (m_nGeomType) {
    case 1:
        return textOfMEGSensor();
    case 2:
        return textOfElectrode();
    case 3: {
        const auto* trigger = dynamic_cast<const CStimTrigzk*>(m_pGeomHw.get());
        return trigger != nullptr
                   ? CString::formatted("Stim_trig: %s %s \n", trigger->m_strTrigName, trigger->m_strTrigTypeName)
                   : CString("No_Stimulation_Info");
    }
    case 4: {
        const auto* other = dynamic_cast<const CMisceSnsrzk*>(m_pGeomHw.get());
        return other != nullptr ? other->m_strSnsName : CString("No_Misc_Channel_Info");
    }
    default:
        return {};
    }
}

CString CMDChannel9File::textOfMEGSensor() const
{
    const CMEGSensorzk* sensor = getMEGSensorzk();
    if (sensor == nullptr)
        return "No_MEG_Sensor_Info";
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    sensor->getSnsPos(-1, 0, x, y, z);
    return CString::formatted("Coil_Position: %f %f %f ", x, y, z);
}

CString CMDChannel9File::textOfElectrode() const
{
    const auto* electrode = dynamic_cast<const CEEGelectrodezk*>(m_pGeomHw.get());
    if (electrode == nullptr)
        return "No_EEEG_Electrode_Info"; // spelled so
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    electrode->getElectrodePositionD(x, y, z);
    return CString::formatted("Electrode_Position: %f %f %f ", x, y, z);
}

int CMDChannel9File::exportSnsrInf2TxtFile(CFile& file) const
{
    return exportCString(file, m_strChannelName);
}

int CMDChannel9File::exportCString(CFile& file, const CString& value)
{
    writeText(file, CString::formatted("%s \n", value));
    return 1;
}

int CMDChannel9File::exportDWORD(CFile& file, std::uint32_t value)
{
    writeText(file, CString::formatted("%d \n", value));
    return 1;
}

int CMDChannel9File::exportDouble(CFile& file, double value)
{
    writeText(file, CString::formatted("%.32f \n", value));
    return 1;
}

} // namespace megset
