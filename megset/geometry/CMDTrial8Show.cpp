#include "megset/geometry/CMDTrial8Show.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/geometry/neuromagSensorNumbers.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace megset {
namespace {

struct Point
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

bool isMegMeasure(const CMDChannelzk& channel)
{
    return channel.isMEGMeasureChannel() != 0;
}

bool isEegMeasure(const CMDChannelzk& channel)
{
    return channel.isEEGMeasureChannel() != 0;
}

bool firstCoil(const CMDChannelzk& channel, Point& point)
{
    const CBscMagSns* coil = channel.getMEGCoilzk(0);
    if (coil != nullptr)
        coil->getCoilPositionD(point.x, point.y, point.z);
    return coil != nullptr;
}

bool electrode(const CMDChannelzk& channel, Point& point)
{
    const CEEGelectrodezk* found = channel.getEegElectrode(1);
    if (found != nullptr)
        found->getElectrodePositionD(point.x, point.y, point.z);
    return found != nullptr;
}

// What differs between the map of MEG sensors and that of electrodes.
struct SensorKind
{
    bool (*isMeasure)(const CMDChannelzk&);
    bool (*position)(const CMDChannelzk&, Point&); // false without a sensor
    void (*flatten)(double a, double b, double c, double& u, double& v);
    int (CMDTrial0SensorInfo::*refreshExtents)();
    CContourMap2DInfozk CMDTrial::*contour;
    int CMDTrial::*planeDone;
    double CMDChannel::*planeX;
    double CMDChannel::*planeY;
    const char* noneQuestion;
    const char* notDoneMessage;
};

constexpr SensorKind megSensors = {isMegMeasure,
                                   firstCoil,
                                   &CBscMagSns::flatten3Dto2D,
                                   &CMDTrial0SensorInfo::getMeasureMegCoilADimension,
                                   &CMDTrial::m_megContour,
                                   &CMDTrial::m_nMegPlaneDone,
                                   &CMDChannel::m_dSns2dX,
                                   &CMDChannel::m_dSns2dY,
                                   "No MEG sensor!?, Continue?",
                                   "Please compute sensor 2D position first!"};
constexpr SensorKind electrodes = {isEegMeasure,
                                   electrode,
                                   &CEEGelectrode::flatten3Dto2D,
                                   &CMDTrial0SensorInfo::getMeasureEegElctDimension,
                                   &CMDTrial::m_eegContour,
                                   &CMDTrial::m_nEegPlaneDone,
                                   &CMDChannel::m_dElct2dX,
                                   &CMDChannel::m_dElct2dY,
                                   "No EEG channel!?, Continue?",
                                   "Please compute EEG electrode 2D position first!"};

bool isAgreed(const char* question)
{
    return AfxMessageBox(question, MB_YESNO) == IDYES;
}

// The least and greatest of some places; zeros of none.
struct PlaneBounds
{
    void take(double u, double v)
    {
        if (count++ == 0) {
            uMin = uMax = u;
            vMin = vMax = v;
        }
        uMin = std::min(uMin, u);
        uMax = std::max(uMax, u);
        vMin = std::min(vMin, v);
        vMax = std::max(vMax, v);
    }

    int count = 0;
    double uMin = 0.0;
    double uMax = 0.0;
    double vMin = 0.0;
    double vMax = 0.0;
};

// One run of a projection on the sensors of one kind.
class Projection
{
public:
    Projection(CMDTrial0SensorInfo& trial, const SensorKind& kind) : m_trial(trial), m_kind(kind) {}

    int standard(double scale, bool refresh)
    {
        if (!hasChannels())
            return 0;
        if (refresh && (m_trial.*m_kind.refreshExtents)() == 0 && !isAgreed(m_kind.noneQuestion))
            return 0;
        pullOutward(1.0, [](double&, double&) {});
        if (m_places.count == 0 && !isAgreed(m_kind.noneQuestion))
            return 0;
        startAtZero(m_kind.isMeasure, scale);
        return finish(scale);
    }

    int ofChosen(int count, const int* use)
    {
        if (!hasChannels())
            return 0;
        if (count != m_trial.getTotalChannel() || use == nullptr) {
            AfxMessageBox("Bad channel setting error!", MB_OK);
            return 0;
        }
        m_use = use;
        bool asks = true;
        pullOutward(2.0, [&asks](double& u, double& v) { limit(u, v, asks); });
        const auto tookPart = [this](const CMDChannelzk& channel) {
            Point point;
            return takesPart(channel, point);
        };
        startAtZero(tookPart, 1.0);
        return finish(1.0);
    }

    // `shifted` are the channels that the map's start is taken from; see the class on why EEG names MEG ones.
    int flattened(bool (*shifted)(const CMDChannelzk&))
    {
        if (!hasChannels())
            return 0;
        forEachTakingPart([this](CMDChannelzk& channel, const Point& point) {
            double& u = channel.*m_kind.planeX;
            double& v = channel.*m_kind.planeY;
            m_kind.flatten(point.x, point.z, point.y, u, v);
            m_places.take(u, v);
        });
        startAtZero(shifted, 1.0);
        return finish(1.0);
    }

private:
    bool hasChannels() const { return m_trial.m_ppChannel && m_trial.getTotalChannel() >= 2; }
    CContourMap2DInfozk& contour() { return m_trial.*m_kind.contour; }

    bool takesPart(const CMDChannelzk& channel, Point& point) const
    {
        return m_kind.isMeasure(channel) && m_kind.position(channel, point);
    }

    template <class Action>
    void forEachChannel(Action action)
    {
        for (int i = 0; i < m_trial.getTotalChannel(); ++i)
            if (CMDChannelzk* channel = m_trial.m_ppChannel[i])
                if (m_use == nullptr || m_use[i] != 0)
                    action(*channel);
    }

    template <class Action>
    void forEachTakingPart(Action action)
    {
        forEachChannel([&](CMDChannelzk& channel) {
            Point point;
            if (takesPart(channel, point))
                action(channel, point);
        });
    }

    // Heights are counted from as far above 0 as the lowest sensor lies below it: it is meant so.
    template <class Limit>
    void pullOutward(double heights, Limit limitPlace)
    {
        const CContourMap2DInfozk& extents = contour();
        const double centreX = (extents.m_dXmin + extents.m_dXmax) * 0.5;
        const double centreZ = (extents.m_dZmin + extents.m_dZmax) * 0.5;
        const double base = extents.m_dYmin < 0.0 ? -extents.m_dYmin : 0.0;
        double highest = std::numeric_limits<double>::min();
        forEachTakingPart(
            [&](const CMDChannelzk&, const Point& point) { highest = std::max(highest, point.y - base); });
        forEachTakingPart([&](CMDChannelzk& channel, const Point& point) {
            const double pull = (point.y - base) / (heights * highest) + 1.0;
            double u = (point.x - centreX) / pull;
            double v = (point.z - centreZ) / pull;
            limitPlace(u, v);
            channel.*m_kind.planeX = u;
            channel.*m_kind.planeY = v;
            m_places.take(u, v);
        });
    }

    // The question says 300, and whatever the answer the limit is 400: it is meant so.
    static void limit(double& u, double& v, bool& asks)
    {
        constexpr double farthest = 400.0;
        if (!(std::fabs(u) > farthest || std::fabs(v) > farthest))
            return;
        if (asks && isAgreed("Limit contcour map size to 300 mm?"))
            asks = false;
        u = std::clamp(u, -farthest, farthest);
        v = std::clamp(v, -farthest, farthest);
    }

    // Shifts the places of the channels by the least ones of the map, divides them, and takes their bounds.
    template <class IsShifted>
    void startAtZero(IsShifted isShifted, double scale)
    {
        PlaneBounds bounds;
        forEachChannel([&](CMDChannelzk& channel) {
            if (!isShifted(channel))
                return;
            double& u = channel.*m_kind.planeX;
            double& v = channel.*m_kind.planeY;
            u = (u - m_places.uMin) / scale;
            v = (v - m_places.vMin) / scale;
            bounds.take(u, v);
        });
        CContourMap2DInfozk& map = contour();
        map.m_dPlaneXmin = bounds.uMin;
        map.m_dPlaneXmax = bounds.uMax;
        map.m_dPlaneYmin = bounds.vMin;
        map.m_dPlaneYmax = bounds.vMax;
    }

    int finish(double scale)
    {
        contour().m_dPlaneScale = scale;
        m_trial.*m_kind.planeDone = 1;
        return 1;
    }

    CMDTrial0SensorInfo& m_trial;
    const SensorKind& m_kind;
    const int* m_use = nullptr; // one number for each channel; null for all
    PlaneBounds m_places;       // of the channels that took part
};

int stretchPlane(CMDTrial0SensorInfo& trial, const SensorKind& kind, double size)
{
    if (trial.*kind.planeDone == 0) {
        AfxMessageBox(kind.notDoneMessage, MB_OK);
        return 0;
    }
    CContourMap2DInfozk& map = trial.*kind.contour;
    const double side = std::max(map.m_dPlaneXmax - map.m_dPlaneXmin, map.m_dPlaneYmax - map.m_dPlaneYmin);
    if (!(side > 0.0))
        return 0;
    const double factor = size / side;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* channel = trial.m_ppChannel[i];
        if (channel == nullptr || !kind.isMeasure(*channel))
            continue;
        channel->*kind.planeX *= factor;
        channel->*kind.planeY *= factor;
    }
    for (double* bound : {&map.m_dPlaneXmin, &map.m_dPlaneXmax, &map.m_dPlaneYmin, &map.m_dPlaneYmax})
        *bound *= factor;
    map.m_dPlaneScale = factor;
    return 1;
}

double largestRadius(CMDTrial0SensorInfo& trial, const SensorKind& kind, bool refresh)
{
    if (refresh && (trial.*kind.refreshExtents)() == 0)
        return -1.0;
    const CContourMap2DInfozk& extents = trial.*kind.contour;
    return std::max({(extents.m_dXmax - extents.m_dXmin) * 0.5, (extents.m_dYmax - extents.m_dYmin) * 0.5,
                     (extents.m_dZmax - extents.m_dZmin) * 0.5});
}

// The side of the head, then the lobe, of a place counted from the middle of a map of some width and height.
CString placeCode(double dx, double dy, double width, double height)
{
    const CString side = std::fabs(dx) < 10.0 ? "MZ" : dx > 0.0 ? "ML" : "MR";
    const bool isOuter = std::fabs(dy) > height * 0.25;
    if (std::fabs(dx) > width * 0.25)
        return side + "T";
    if (dy < 0.0)
        return side + (isOuter ? "F" : "C");
    return side + (isOuter ? "O" : "P");
}

} // namespace

int CMDTrial8Show::projectMegMeasureSns3Dto2Dstd(double scale, bool refresh)
{
    return Projection(*this, megSensors).standard(scale, refresh);
}

int CMDTrial8Show::projectEegMeasureElectrode3Dto2Dstd(double scale, bool refresh)
{
    return Projection(*this, electrodes).standard(scale, refresh);
}

int CMDTrial8Show::projectMegMeasureSns3Dto2Dpro(int count, const int* use)
{
    return Projection(*this, megSensors).ofChosen(count, use);
}

int CMDTrial8Show::projectEegMeasureSns3Dto2Dpro(int count, const int* use)
{
    return Projection(*this, electrodes).ofChosen(count, use);
}

int CMDTrial8Show::projectMegCart3DCoilTo2DPlanVsm()
{
    return Projection(*this, megSensors).flattened(isMegMeasure);
}

int CMDTrial8Show::projectEegCart3DCoilTo2DPlanVsm()
{
    return Projection(*this, electrodes).flattened(isMegMeasure); // of the other kind: it is meant so
}

int CMDTrial8Show::scanMegMeasureSns2Dsz(double size)
{
    return stretchPlane(*this, megSensors, size);
}

int CMDTrial8Show::scanEegMeasureSns2Dsz(double size)
{
    return stretchPlane(*this, electrodes, size);
}

double CMDTrial8Show::getRadius1stCoilMaxMeg(bool refresh)
{
    return largestRadius(*this, megSensors, refresh);
}

double CMDTrial8Show::getRadiusElectrodeMaxEeg(bool refresh)
{
    return largestRadius(*this, electrodes, refresh);
}

int CMDTrial8Show::getChnlLoci_PhycVirt(int chan, bool measureOnly, int coil, double* pos, double* dir) const
{
    if (chan < 0 || pos == nullptr)
        return 0;
    std::fill_n(pos, 3, 0.0);
    if (dir != nullptr)
        std::fill_n(dir, 3, 0.0);
    const CMDChannelzk* channel = getChannel(chan);
    if (channel == nullptr || !(measureOnly ? channel->isMEGMeasureChannel() : channel->isMEGChannel()))
        return 0;
    const CBscMagSns* found = channel->getMEGCoilzk(coil);
    if (found == nullptr)
        return 0;
    found->getCoilPositionD(pos[0], pos[1], pos[2]);
    if (dir != nullptr)
        found->getNmlDirXYZ(dir[0], dir[1], dir[2]);
    return 1;
}

int CMDTrial8Show::codeSnsLocation2Name()
{
    if (!isMegSnsr2dPlaneDone())
        projectMegMeasureSns3Dto2Dstd(2.0, true);
    const double width = m_megContour.m_dPlaneXmax - m_megContour.m_dPlaneXmin;
    const double height = m_megContour.m_dPlaneYmax - m_megContour.m_dPlaneYmin;
    for (int i = 0; i < getTotalChannel(); ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        if (channel == nullptr || !channel->isMEGMeasureChannel())
            continue;
        // The middle counts from 0, not from the least bound: it is meant so.
        const CString code =
            placeCode(channel->m_dSns2dX - width * 0.5, channel->m_dSns2dY - height * 0.5, width, height);
        channel->replaceDataChannlName("MEG", code, true);
    }
    return 1;
}

int CMDTrial8Show::neuromagNum2name()
{
    for (int lobe = 1; lobe <= neuromagLobes; ++lobe)
        neuromagSensorNumbers(lobe); // they go unused: it is meant so
    return 1;
}

} // namespace megset
