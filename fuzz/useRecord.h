#pragma once
// The operations of each record that a broken number or list might lead astray. Records without such have none here.

#include "megset/records/records.h"

#include <array>
#include <cstdint>
#include <limits>

namespace megset {

/// Indices that stand for the current one, the first one, one behind most, and none.
inline constexpr std::int64_t someIndices[] = {-1, 0, 3, INT64_MAX};

inline void use(CMEGRecordInfozk& info)
{
    info.clearFilterInfo();
}

inline void use(CMEGRecordInfozkProzk& info)
{
    CMEGRecordInfozkProzk copy;
    copy = info;
    copy.showRecordInfo();
    copy.getSensorCoefficientzk()->addCoefficientsData(
        1, info.getSensorCoefficientzk()->getSensorCoefRecord("", 1, true, false));
}

// ---- display, electrodes, the head

inline void use(CM3DIndex2Colorzk& colors)
{
    for (const double value : {0.0, -1e300, std::numeric_limits<double>::quiet_NaN()})
        colors.value2Color(value);
    colors.setRange(colors.m_dRangeHigh, colors.m_dRangeLow);
}

inline void use(CEEGelectrodezk& electrode)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    electrode.getElectrodePositionD(x, y, z);
    CEEGelectrodezk::flatten3Dto2D(x, y, z, x, y);
    electrode.findPosMe();
    electrode.findPosEasyCap74();
    electrode.findAll();
    CPtrArray list;
    list.Add(&electrode);
    electrode.findPosReadPea(&list);
}

inline void use(CFiducialzk& fiducials)
{
    fiducials.getTotalFound();
    for (int point = -1; point <= CFiducial::pointCount; ++point)
        fiducials.setUpFiducialPoint(point);
}

inline void use(CHeadLocalizationzk& head)
{
    head.computeDewar2Head();
    double x = 1.0;
    double y = 2.0;
    double z = 3.0;
    head.dewar2Head(x, y, z);
    head.head2Dewar(x, y, z);
    head.dewar2HeadDir(x, y, z);
    head.head2DewarDir(x, y, z);
    head.initDefaultHeadLocalParams();
}

// ---- sensors

inline void use(CBscMagSnszk& coil)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (int frame = -1; frame < 4; ++frame)
        coil.setPlace2work(frame);
    coil.getNmlDirXYZ(x, y, z);
    coil.getCoilPositionD(x, y, z);
    coil.setCoilPositionD(x, y, z);
    CBscMagSnszk::flatten3Dto2D(x, y, z, x, y);
}

inline void use(CMegSquidzk& sensor)
{
    sensor.getSnsGainCtf();
}

inline void use(CMEGSensorzk& sensor)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (int set = -1; set < 4; ++set)
        for (const int coil : {-1, 0, 7, INT32_MAX}) {
            sensor.getSnsPos(set, coil, x, y, z);
            sensor.getSnsOrn(set, coil, x, y, z);
            sensor.getSnsNmlDir(set, coil, x, y, z);
            sensor.setSnsPos(set, coil, x, y, z);
            sensor.setSnsOrn(set, coil, x, y, z);
        }
    sensor.setCoilsHead2work();
    sensor.setCoilsDewar2work();
    sensor.getCoilBaseLine();
    sensor.isAxialGrad();
    sensor.getSnsGainCtf();
    sensor.setGradOrderNo(sensor.getGradOrderNo());
}

inline void use(CSeegProbezk& probe)
{
    probe.getContact(-1);
    probe.computeExtend();
    probe.computeContactPos();
    probe.setupProbeColor();
    probe.setupContactColor();
    probe.setUserContact(3, 2.0);
    probe.setProbeMode(probe.m_nProbeMode + 1);
}

// ---- markers

inline void use(CMarkerDatazk& marker)
{
    marker.getMarkPt(-1);
    marker.addClassifyTrial(0, 0, INT64_MAX, INT64_MIN, 1000.0, 0.0);
    marker.backupMarkPts(INT64_MAX);
    marker.scaleMarkPts(3);
    marker.reloadBkMarkPts();
    marker.cleanMarkedPts();
}

inline void use(CMarkerManagerzk& markers)
{
    std::int64_t count = 0;
    std::int64_t most = 0;
    markers.getTrialAllTrigInfoStd(0, count);
    markers.getTrialAllTrigInfoPro(0, count);
    markers.getAllTrigInfoStd(3, count, most);
    markers.getAllTrigInfoPro(3, count);
    CMarkerDatazk* const marker = markers.getMarkerRoundIndx(markers.m_nCurrentMarker, true);
    markers.findMatchMarkerData(marker);
    markers.setupTrgClsMks(marker, nullptr);
    markers.addTrigger(1, INT64_MAX, INT64_MIN, INT64_MAX);
    markers.cleanMarks();
}

// ---- results

inline void use(CFreqDataChnlzk& data)
{
    double* values = nullptr;
    std::int64_t points = 0;
    for (int type = -1; type <= 4; ++type)
        data.getFreqData(type, &values, &points);
    data.hasFreqData();
    data.setFreqData(1, std::array{1.0, 2.0});
    data.cleanAll();
}

inline void use(CSumChnlFreqDatazk& sums)
{
    sums.checkInit(2);
}

inline void use(CFreqDataTrialzk& data)
{
    for (const std::int64_t index : someIndices)
        data.getFreqHz(index);
    data.getSumChnlFreqData(3);
}

inline void use(CGroupMeegCxcFacezk& face)
{
    std::int64_t lag = 0;
    double value = 0.0;
    for (const std::int64_t index : someIndices) {
        face.getPeakLag(index, index, lag, value);
        face.setValue(index, index, index, face.getValue(index, index, index));
    }
    face.setSize({0, 1}, {2}, -1, 3);
}

inline void use(CVirtSnsPOXlistzk& sensors)
{
    const std::array values{1.0, 2.0};
    for (const std::int64_t index : someIndices)
        sensors.virtualValue(index, values);
}

inline void use(CFaceIcazk& components)
{
    for (const std::int64_t index : someIndices) {
        components.getComponentWave(index);
        components.setRejected(index, true);
        components.cleanedValue(index, index);
    }
}

inline void use(CVolumSourcImagzk& image)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double value = 0.0;
    for (const std::int64_t index : someIndices) {
        image.getPeak(index, x, y, z, value);
        image.setValue(index, index, index, index, image.getValue(index, index, index, index));
        image.m_grid.pointPosition(index, x, y, z);
    }
    image.m_grid.pointAt(x, y, z);
}

inline void use(CVolumSourcCoherencImagzk& image)
{
    for (const std::int64_t index : someIndices)
        image.setValue(index, index, index, index, image.getValue(index, index, index, index));
}

inline void use(CMEGSpctmCCDataFacezk& face)
{
    for (int type = -1; type <= 4; ++type)
        for (const std::int64_t index : someIndices) {
            face.getSpctmTimePt(index, 0, type);
            if (CMEGSpctmCCTrlDatazk* const data = face.getCCSpctmTrlData4Class(0))
                data->setValue(type, index, index, index, index, data->getValue(type, index, index, index, index));
        }
    face.cleanAll();
}

inline void use(CSnsCohDatazk& data)
{
    for (const std::int64_t index : someIndices) {
        data.setValue(index, index, index, data.getValue(index, index, index));
        data.getSpctmFreqHz(index);
        data.getSpctmTimePt(index);
    }
}

inline void use(CSrcCohFacezk& face)
{
    for (const std::int64_t index : someIndices) {
        face.getPairSource(index, true);
        face.getPairSource(index, false);
    }
}

inline void use(CFaceVirtChnlWavezk& face)
{
    face.checkVirtChnl();
    face.getNumShowSns();
    face.getVirtChnlWavezk(-1);
}

inline void use(CFaceVirtChnlSpctmzk& face)
{
    for (const std::int64_t index : someIndices)
        if (const CVirtChnlSpctmzk* const channel = face.getVirtChnlSpctm(index))
            for (int type = -1; type <= 4; ++type)
                channel->getValue(type, index, index, face.m_nFreqPt);
}

inline void use(CChnlWaveAnalyzedResultzk& result)
{
    for (int kind = -1; kind < 4; ++kind) {
        result.getWadX(kind, 0);
        result.getMaxSample(kind);
    }
    result.cleanAll();
}

inline void use(CTrlWaveAnalyzedResultzk& result)
{
    result.getSummary(0, 0);
    result.setSummary({});
}

inline void use(CFaceWaveAnalyzedResultzk& face)
{
    face.getAnalysis(0);
    face.setAnalysis({});
}

} // namespace megset
