#include "megset/geometry/CMEGData1Localization01Meg.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

namespace megset {
namespace {

template <class Switch>
void switchTrial(const CMDTrialzk& trial, Switch change)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.m_ppChannel[i];
        if (CMEGSensorzk* sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr)
            change(*sensor);
    }
}

void toDewar(CMEGSensorzk& sensor)
{
    sensor.setCoilsDewar2work();
}

void toHead(CMEGSensorzk& sensor)
{
    sensor.setCoilsHead2work();
}

} // namespace

int CMEGData1Localization01Meg::initDefaultHeadLocalizationParams()
{
    m_headLocalization.initDefaultHeadLocalParams();
    return 1;
}

int CMEGData1Localization01Meg::setFidDewarMeasure2work()
{
    m_headLocalization.m_fidWorkMeg = m_headLocalization.m_fidDewarMsr;
    return 1;
}

int CMEGData1Localization01Meg::setFidDewarStandard2work()
{
    m_headLocalization.m_fidWorkMeg = m_headLocalization.m_fidDewarStd;
    return 1;
}

int CMEGData1Localization01Meg::setFidHeadMeasure2work()
{
    m_headLocalization.m_fidWorkMeg = m_headLocalization.m_fidHeadMsr;
    return 1;
}

// ---- frames

template <class Switch>
int CMEGData1Localization01Meg::switchSensors(int trial, bool allTrials, Switch change)
{
    if (!allTrials) {
        const CMDTrialzk* opened = getTrialzk(trial);
        if (opened == nullptr)
            return 0;
        switchTrial(*opened, change);
        return 1;
    }
    for (int i = 0; i < placedTrials(); ++i)
        if (const CMDTrialzk* opened = getTrialzk(i))
            switchTrial(*opened, change);
    return m_nTotalTrial > 0 ? 1 : 0;
}

int CMEGData1Localization01Meg::setSnsFidDewar2work(int trial, bool allTrials)
{
    return switchSensors(trial, allTrials, toDewar) ? setFidDewarStandard2work() : 0;
}

int CMEGData1Localization01Meg::setSnsFidDewarStd2work(int trial, bool allTrials)
{
    return switchSensors(trial, allTrials, toDewar) ? setFidDewarMeasure2work() : 0;
}

int CMEGData1Localization01Meg::setSnsFidHead2work(int trial, bool allTrials)
{
    return switchSensors(trial, allTrials, toHead) ? setFidHeadMeasure2work() : 0;
}

int CMEGData1Localization01Meg::resetSnsFidCoordinate2work(int trial, bool allTrials)
{
    switch (m_headLocalization.m_nWorkCoordinate) {
    case 0:
        return setSnsFidDewarStd2work(trial, allTrials);
    case 1:
        return setSnsFidDewar2work(trial, allTrials);
    case 2:
        return setSnsFidHead2work(trial, allTrials);
    default:
        return 0;
    }
}

// ---- region of interest

int CMEGData1Localization01Meg::getROIDewar(double& xMin, double& xMax, double& yMin, double& yMax, double& zMin,
                                            double& zMax) const
{
    xMin = m_dRoiXMin;
    xMax = m_dRoiXMax;
    yMin = m_dRoiYMin;
    yMax = m_dRoiYMax;
    zMin = m_dRoiZMin;
    zMax = m_dRoiZMax;
    return 1;
}

int CMEGData1Localization01Meg::setROIDewar(double xMin, double xMax, double yMin, double yMax, double zMin,
                                            double zMax)
{
    m_dRoiXMin = xMin;
    m_dRoiXMax = xMax;
    m_dRoiYMin = yMin;
    m_dRoiYMax = yMax;
    m_dRoiZMin = zMin;
    m_dRoiZMax = zMax;
    m_dRoiXDim = xMax - xMin;
    m_dRoiYDim = yMax - yMin;
    m_dRoiZDim = zMax - zMin;
    return 1;
}

int CMEGData1Localization01Meg::resetROIDewar()
{
    m_dRoiXMin = -90.0;
    m_dRoiXMax = 90.0;
    m_dRoiYMin = 20.0;
    m_dRoiYMax = 120.0;
    m_dRoiZMin = -100.0;
    m_dRoiZMax = 100.0;
    return 1;
}

} // namespace megset
