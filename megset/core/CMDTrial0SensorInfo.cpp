#include "megset/core/CMDTrial0SensorInfo.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {
namespace {

struct Point
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

} // namespace

int CMDTrial0SensorInfo::getChannelID4Name(const CString& text) const
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (channel != nullptr && text.Find(channel->m_strChannelName) >= 0)
            return i;
    }
    return -1;
}

CMDChannelzk* CMDTrial0SensorInfo::getChannelPt4Name(const CString& text) const
{
    const int i = getChannelID4Name(text);
    return i >= 0 ? m_ppChannel[i] : nullptr;
}

int CMDTrial0SensorInfo::findSensorGradOrderNo(const CString&) const
{
    return -1;
}

double CMDTrial0SensorInfo::getReferenceSensorGain(const CString& text) const
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (channel == nullptr || text.Find(channel->m_strChannelName) < 0)
            continue;
        if (const CMEGSensorzk* sensor = channel->getMEGSensorzk())
            return sensor->sensorGain();
    }
    return 0.0;
}

int CMDTrial0SensorInfo::getChannelPos(int index, double& x, double& y, double& z) const
{
    x = y = z = 0.0;
    const CMDChannelzk* channel = getChannel(index);
    if (channel == nullptr)
        return 0;
    channel->getSnsCoilWkCpyXYZ(0, x, y, z);
    return 1;
}

int CMDTrial0SensorInfo::getChannelPsnDir(double& x, double& y, double& z, double& dx, double& dy, double& dz,
                                          int index) const
{
    x = y = z = dx = dy = dz = 0.0;
    const CMDChannelzk* channel = getChannel(index);
    if (channel == nullptr)
        return 0;
    if (const CMEGSensorzk* sensor = channel->isMEGChannel() ? channel->getMEGSensorzk() : nullptr) {
        sensor->getSnsPos(-1, 0, x, y, z);
        sensor->getSnsNmlDir(-1, 0, dx, dy, dz);
        return 1;
    }
    if (const CEEGelectrodezk* electrode = channel->getEegElectrode(0)) {
        electrode->getElectrodePositionD(x, y, z);
        return 1;
    }
    return 0;
}

CMEGSensorzk* CMDTrial0SensorInfo::getMEGTrialSensorzk(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->getMEGSensorzk() : nullptr;
}

int CMDTrial0SensorInfo::isEEGChannel(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->isEEGChannel() : 0;
}

int CMDTrial0SensorInfo::isMEGChannel(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->isMEGChannel() : 0;
}

// Takes the extents of the channels for which `position(channel, point)` gives true.
template <class Position>
int CMDTrial0SensorInfo::measureExtents(CContourMap2DInfozk& contour, Position position) const
{
    if (getTotalChannel() < 2)
        return 0;
    int used = 0;
    Point low;
    Point high;
    for (int i = 0; i < getTotalChannel(); ++i) {
        Point point;
        if (m_ppChannel[i] == nullptr || !position(*m_ppChannel[i], point))
            continue;
        if (used++ == 0)
            low = high = point;
        low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z)};
    }
    contour.m_dXmin = low.x;
    contour.m_dXmax = high.x;
    contour.m_dYmin = low.y;
    contour.m_dYmax = high.y;
    contour.m_dZmin = low.z;
    contour.m_dZmax = high.z;
    return used;
}

int CMDTrial0SensorInfo::getMeasureMegCoilADimension()
{
    return measureExtents(m_megContour, [](const CMDChannelzk& channel, Point& point) {
        return channel.isMEGMeasureChannel() && channel.getSnsCoilWkCpyXYZ(0, point.x, point.y, point.z);
    });
}

int CMDTrial0SensorInfo::getMeasureEegElctDimension()
{
    return measureExtents(m_eegContour, [](const CMDChannelzk& channel, Point& point) {
        const CEEGelectrodezk* electrode = channel.isEEGMeasureChannel() ? channel.getEegElectrode(1) : nullptr;
        if (electrode != nullptr)
            electrode->getElectrodePositionD(point.x, point.y, point.z);
        return electrode != nullptr;
    });
}

namespace {

void centreAndSize(const CContourMap2DInfozk& contour, Point& centre, Point& size)
{
    centre = {(contour.m_dXmin + contour.m_dXmax) * 0.5, (contour.m_dYmin + contour.m_dYmax) * 0.5,
              (contour.m_dZmin + contour.m_dZmax) * 0.5};
    size = {contour.m_dXmax - contour.m_dXmin, contour.m_dYmax - contour.m_dYmin, contour.m_dZmax - contour.m_dZmin};
}

void give(const Point& point, double& x, double& y, double& z)
{
    x = point.x;
    y = point.y;
    z = point.z;
}

} // namespace

int CMDTrial0SensorInfo::getMeasureMegSnsrCntDmn(double& cx, double& cy, double& cz, double& dx, double& dy, double& dz)
{
    Point centre;
    Point size;
    getMeasureMegCoilADimension();
    centreAndSize(m_megContour, centre, size);
    give(centre, cx, cy, cz);
    give(size, dx, dy, dz);
    return 1;
}

int CMDTrial0SensorInfo::getMeasureEegElctCntDmn(double& cx, double& cy, double& cz, double& dx, double& dy, double& dz)
{
    Point centre;
    Point size;
    getMeasureEegElctDimension();
    centreAndSize(m_eegContour, centre, size);
    give(centre, cx, cy, cz);
    give(size, dx, dy, dz);
    const double largest = std::max({size.x, size.y, size.z});
    if (largest >= 1.0 && largest <= 210.0)
        return 1;
    const CString question =
        CString::formatted("Electrode array size may be out of range in typical EEG %f (1-210 mm)! Continue?", largest);
    return AfxMessageBox(question, MB_YESNO) == IDYES ? 1 : 0;
}

int CMDTrial0SensorInfo::replaceDataChannlName(const CString& from, const CString& to, int index, bool fromRaw)
{
    CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->replaceDataChannlName(from, to, fromRaw) : -1;
}

int CMDTrial0SensorInfo::setEegElectrodePosStd(int quiet, int easyCap)
{
    int found = 0;
    for (int i = 0; i < getTotalChannel(); ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        if (channel == nullptr)
            return 0;
        if (!channel->isEEGChannel())
            continue;
        CEEGelectrodezk* electrode = channel->getEegElectrode(0);
        if (electrode == nullptr)
            return 0;
        found += giveStandardPosition(*channel, *electrode, quiet, easyCap);
    }
    return found;
}

int CMDTrial0SensorInfo::giveStandardPosition(CMDChannelzk& channel, CEEGelectrodezk& electrode, int quiet,
                                              int easyCap) const
{
    if (electrode.m_nNameSet == 0) {
        electrode.m_strElectrodeName = channel.m_strChannelName;
        electrode.m_nNameSet = 1;
    }
    const int place = easyCap ? electrode.findPosEasyCap74() : electrode.findPosMe();
    if ((place == -1 || place == -2) && electrode.findAll() == -1) {
        if (quiet == 0)
            AfxMessageBox(CString::formatted("Find standard position for %s error", electrode.m_strElectrodeName),
                          MB_OK);
        return 0;
    }
    channel.m_nChannelType = electrode.m_nChannelType;
    electrode.m_nPosFound = 1;
    return 1;
}

int CMDTrial0SensorInfo::setMEGSensorAll(const CMEGSensorzk* sensor, int index)
{
    CMDChannelzk* channel = getChannel(index);
    if (sensor == nullptr || channel == nullptr || !channel->isMEGChannel())
        return 0;
    CMEGSensorzk* target = channel->ensureMEGSensor();
    if (target == nullptr)
        return 0;
    *target = *sensor;
    return 1;
}

int CMDTrial0SensorInfo::setMEGSensorName(const CString& raw, const CString& working, int index)
{
    CMDChannelzk* channel = getChannel(index);
    if (channel == nullptr)
        return 0;
    channel->m_strChannelNameRaw = raw;
    channel->m_strChannelName = working;
    return 1;
}

namespace {

bool bindMEGSensor(CMDChannelzk& channel, const CMEGSensorzk& sensor)
{
    CMEGSensorzk* target = channel.ensureMEGSensor();
    if (target == nullptr)
        return false;
    *target = sensor;
    target->setCoilsHead2work();
    return true;
}

// The sensor may be the channel's own, which ends when the channel gets another geometry: what is taken from it is
// copied first.
bool bindElectrode(CMDChannelzk& channel, const CMEGSensorzk& sensor)
{
    const CMEGSensor::Geometry geometry = sensor.m_dSnsGeom;
    CEEGelectrodezk* electrode = channel.ensureEegElectrode();
    if (electrode == nullptr)
        return false;
    std::copy_n(geometry.begin(), 4, electrode->m_dElectrodePos.begin());
    std::copy_n(geometry.begin() + 4, 4, electrode->m_dElectrodeDir.begin());
    return true;
}

bool bindMiscellaneous(CMDChannelzk& channel, const CMEGSensorzk& sensor)
{
    const CString name = sensor.m_strSensorName;
    CMisceSnsrzk* target = channel.ensureMisceSnsr();
    if (target == nullptr)
        return false;
    target->m_strSnsName = name;
    return true;
}

} // namespace

int CMDTrial0SensorInfo::setMEGSensorParameter(const CMEGSensorzk* sensor, int index)
{
    CMDChannelzk* channel = getChannel(index);
    if (sensor == nullptr || channel == nullptr)
        return 0;
    const int type = sensor->m_nChannelType;
    channel->m_nChannelType = type;
    bool bound = false;
    if (channel->isMEGChannel())
        bound = bindMEGSensor(*channel, *sensor);
    else if (channel->isEEGChannel())
        bound = bindElectrode(*channel, *sensor);
    else if (type >= 600 && type <= 904)
        bound = channel->ensureStimTrig() != nullptr;
    else
        bound = bindMiscellaneous(*channel, *sensor);
    return bound ? 1 : 0;
}

} // namespace megset
