#pragma once
// How a MEG sensor was recorded, noted in the sensor at import, so that a dataset can be brought back to that.

#include "megset/records/records.h"

namespace megset {

/// Notes gradient order and kind of balancing as they are now, in the sensor's word for applications.
inline void noteRecordedMode(CMEGSensor& sensor)
{
    constexpr int adaptive = 16;
    sensor.m_nSnsWordD = sensor.getGradOrderNo() + (sensor.getAdaptiveBalance() ? adaptive : 0);
}

/// Sets order and balancing to what was noted: order 0 where nothing was.
inline void setRecordedMode(CMEGSensor& sensor)
{
    constexpr int adaptive = 16;
    sensor.setGradOrderNo(sensor.m_nSnsWordD % adaptive);
    sensor.setRealIdealCoefMode(true);
    sensor.setAdaptiveBalance(sensor.m_nSnsWordD >= adaptive);
}

} // namespace megset
