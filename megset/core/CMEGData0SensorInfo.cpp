#include "megset/core/CMEGData0SensorInfo.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/GradientPlan.h"

#include <algorithm>
#include <vector>

namespace megset {

int CMEGData0SensorInfo::findChannel4SensorName(const CString& text, int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->findChannel4SensorName(text) : -1;
}

int CMEGData0SensorInfo::findSensorGradOrderNo(const CString& text, int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->findSensorGradOrderNo(text) : -1;
}

CMEGSensorzk* CMEGData0SensorInfo::getMEGSensorzk(int chan, int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getMEGTrialSensorzk(chan) : nullptr;
}

int CMEGData0SensorInfo::getSnsDimension(double& x0, double& x1, double& y0, double& y1, double& z0, double& z1,
                                         bool refresh)
{
    x0 = x1 = y0 = y1 = z0 = z1 = 0.0;
    CMDTrialzk* slot = getCurrentTrialPt();
    if (slot == nullptr)
        return 0;
    if (refresh)
        slot->getMeasureMegCoilADimension();
    const CContourMap2DInfozk& contour = slot->m_megContour;
    x0 = contour.m_dXmin;
    x1 = contour.m_dXmax;
    y0 = contour.m_dYmin;
    y1 = contour.m_dYmax;
    z0 = contour.m_dZmin;
    z1 = contour.m_dZmax;
    return 1;
}

int CMEGData0SensorInfo::updateCoilADimension(int trial)
{
    CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getMeasureMegCoilADimension() : 0;
}

namespace {

void trimChannelNames(const CMDTrialzk& trial)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (CMDChannelzk* channel = trial.getChannel(i))
            channel->m_strChannelName.TrimLeft().TrimRight();
}

} // namespace

int CMEGData0SensorInfo::removeSpaceInChannelName(int all)
{
    if (m_nTotalTrial < 1)
        return 0;
    m_nCurrentTrial = std::clamp(m_nCurrentTrial, 0, m_nTotalTrial - 1);
    const int from = all ? 0 : m_nCurrentTrial;
    const int to = all ? m_nTotalTrial - 1 : m_nCurrentTrial;
    for (int i = from; i <= to; ++i) {
        const CMDTrialzk* slot = getMDTrial(i);
        if (slot == nullptr)
            return 0;
        trimChannelNames(*slot);
    }
    return 1;
}

// Runs `operation(trial)` on one trial, or on all that are in memory.
template <class Operation>
int CMEGData0SensorInfo::forward(int trial, bool all, Operation operation)
{
    if (!all) {
        CMDTrialzk* slot = getMDTrial(trial);
        return slot != nullptr ? operation(*slot) : 0;
    }
    for (int i = 0; i < placedTrials(); ++i)
        if (CMDTrialzk* slot = getMDTrial(i))
            operation(*slot);
    return 0;
}

int CMEGData0SensorInfo::replaceDataChannlName(const CString& from, const CString& to, int chan, bool fromRaw,
                                               int trial, bool all)
{
    return forward(trial, all, [&](CMDTrialzk& slot) { return slot.replaceDataChannlName(from, to, chan, fromRaw); });
}

int CMEGData0SensorInfo::setMEGSensorAll(const CMEGSensorzk* sensor, int chan, int trial, bool all)
{
    return forward(trial, all, [&](CMDTrialzk& slot) { return slot.setMEGSensorAll(sensor, chan); });
}

int CMEGData0SensorInfo::setMEGSensorName(const CString& raw, const CString& working, int chan, int trial, bool all)
{
    return forward(trial, all, [&](CMDTrialzk& slot) { return slot.setMEGSensorName(raw, working, chan); });
}

int CMEGData0SensorInfo::setMEGSensorParameter(const CMEGSensorzk* sensor, int chan, int trial, bool all)
{
    return forward(trial, all, [&](CMDTrialzk& slot) { return slot.setMEGSensorParameter(sensor, chan); });
}

// ---- noise reduction

// Plans for all trials in memory come before the first sample changes: a plan that finds no memory changes nothing.
template <class Plan>
void CMEGData0SensorInfo::changeTrials(Plan plan)
{
    std::vector<GradientPlan> plans;
    for (int i = 0; i < placedTrials(); ++i)
        if (const CMDTrialzk* slot = getMDTrial(i))
            plan(plans.emplace_back(*slot, *m_recordInfo.getSensorCoefficientzk()));
    for (const GradientPlan& ready : plans)
        ready.run();
}

int CMEGData0SensorInfo::setGradientNoiseReduction(int order, bool realIdeal, bool adaptive)
{
    if (order < 0 || order > 3)
        return 0;
    // What setGradient2Non does and the new sums go in one pass over the samples.
    changeTrials([&](GradientPlan& plan) {
        plan.addOldSums();
        plan.subtractNewSums({order, realIdeal, adaptive});
    });
    return 1;
}

int CMEGData0SensorInfo::setGradient2Non()
{
    changeTrials([](GradientPlan& plan) { plan.addOldSums(); });
    return 1;
}

namespace {

double slowSum(const CMDTrialzk& trial, const CCoefficientDatazk& record, double sensorGain, std::int64_t i)
{
    double s = 0.0;
    for (int k = 0; k < record.usedReferences(); ++k) {
        const auto at = static_cast<std::size_t>(k);
        const CString& name = record.m_aCoefRefName[at];
        s += record.m_aCoefValue[at] * trial.getChannelPt4Name(name)->getDataWave()[i] *
             trial.getReferenceSensorGain(name) / sensorGain;
    }
    return s;
}

// Calls `change(trial, channel, sensor)` for each MEG measure channel with a sensor of the trials in memory.
template <class Change>
void forMeasureChannels(const CMEGData& data, Change change)
{
    for (int t = 0; t < data.getTotalTrial(); ++t) {
        const CMDTrialzk* trial = data.getMDTrial(t);
        for (int c = 0; trial != nullptr && c < trial->getTotalChannel(); ++c) {
            const CMDChannelzk* channel = trial->m_ppChannel[c];
            CMEGSensorzk* sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr;
            if (sensor != nullptr && channel->isMEGMeasureChannel())
                change(*trial, *channel, *sensor);
        }
    }
}

} // namespace

int CMEGData0SensorInfo::setGradientNoiseReductionSlow(int order, bool realIdeal, bool adaptive)
{
    if (order < 0 || order > 3)
        return 0;
    setGradient2Non(); // the quick one: it is meant so
    forMeasureChannels(*this, [&](const CMDTrialzk& trial, const CMDChannelzk& channel, CMEGSensorzk& sensor) {
        const CCoefficientDatazk* record = m_recordInfo.getSensorCoefficientzk()->getSensorCoefRecord(
            sensor.getSensorName(), order, realIdeal, adaptive);
        if (record == nullptr)
            return;
        for (std::int64_t i = 0; i < channel.getTotalSample(); ++i)
            channel.getDataWave()[i] -= slowSum(trial, *record, sensor.sensorGain(), i);
        sensor.setGradOrderNo(order);
        sensor.setRealIdealCoefMode(realIdeal);
        sensor.setAdaptiveBalance(adaptive);
    });
    return 1;
}

int CMEGData0SensorInfo::setGradient2NonSlow()
{
    forMeasureChannels(*this, [&](const CMDTrialzk& trial, const CMDChannelzk& channel, const CMEGSensorzk& sensor) {
        const CCoefficientDatazk* record = m_recordInfo.getSensorCoefficientzk()->getSensorCoefRecord(
            sensor.getSensorName(), sensor.getGradOrderNo(), sensor.getRealIdealCoefMode(),
            sensor.getAdaptiveBalance());
        for (std::int64_t i = 0; record != nullptr && i < channel.getTotalSample(); ++i)
            channel.getDataWave()[i] += slowSum(trial, *record, sensor.sensorGain(), i);
    });
    return 1;
}

int CMEGData0SensorInfo::setShowSensor2DOverlap(bool overlap)
{
    m_bShowSensor2DOverlap = overlap ? 1 : 0;
    return 1;
}

bool CMEGData0SensorInfo::getShow4SensorType01(int type)
{
    return CMDChannelzk::getShow4SensorType01(type);
}

int CMEGData0SensorInfo::getChannelPos(int chan, double& x, double& y, double& z, int trial) const
{
    x = y = z = 0.0;
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getChannelPos(chan, x, y, z) : 0;
}

int CMEGData0SensorInfo::initSensorInfo(int chan, int id, int type, int wordA, int wordB, double a, double b, double c,
                                        double d)
{
    return forward(-1, true, [&](CMDTrialzk& slot) {
        CMDChannelzk* channel = slot.getChannel(chan);
        return channel != nullptr ? channel->initSensorInfo(id, type, wordA, wordB, a, b, c, d) : 0;
    });
}

} // namespace megset
