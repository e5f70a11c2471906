#pragma once
// Sensors of a dataset's trials: forwards to CMDTrial0SensorInfo, and tells what of the sensors is shown.

#include "megset/core/CMEGData.h"

namespace megset {

/// A trial index of -1 stands for the current trial. Operations with `all` go over the trials that are in memory and
/// give 0 whatever happened; without it they give the trial's result, and 0 for a trial that is not in memory.
class CMEGData0SensorInfo : public CMEGData
{
public:
    /// -1 when there is none, or the trial is not in memory.
    int findChannel4SensorName(const CString& text, int trial) const;
    /// Always -1 (see CMDTrial0SensorInfo).
    int findSensorGradOrderNo(const CString& text, int trial) const;
    CMEGSensorzk* getMEGSensorzk(int chan, int trial) const;
    /// The extents in mm of the MEG measure coils of the current trial, taken anew with `refresh`; zeros and 0 with no
    /// trial in memory.
    int getSnsDimension(double& x0, double& x1, double& y0, double& y1, double& z0, double& z1, bool refresh);
    int updateCoilADimension(int trial);
    /// Trims the working names of the current trial's channels, or with `all` of each trial in turn. 0 at a trial that
    /// is not in memory.
    int removeSpaceInChannelName(int all);
    int replaceDataChannlName(const CString& from, const CString& to, int chan, bool fromRaw, int trial, bool all);
    int setMEGSensorAll(const CMEGSensorzk* sensor, int chan, int trial, bool all);
    int setMEGSensorName(const CString& raw, const CString& working, int chan, int trial, bool all);
    int setMEGSensorParameter(const CMEGSensorzk* sensor, int chan, int trial, bool all);

    int getShowMEGSensor() const { return m_bShowMEGSensor; }
    int getShowMEGSensorActive() const { return m_bShowMEGSensorActive; }
    int getShowSensor2DOverlap() const { return m_bShowSensor2DOverlap; }
    int setShowSensor2DOverlap(bool overlap);
    /// Pixels.
    int getSensorSize2D() const { return m_nSensorSize2D; }
    /// Whether channels of a type are drawn unless somebody says otherwise.
    static bool getShow4SensorType01(int type);

private:
    template <class Operation>
    int forward(int trial, bool all, Operation operation);
    int getChannelPos(int chan, double& x, double& y, double& z, int trial) const;
    int initSensorInfo(int chan, int id, int type, int wordA, int wordB, double a, double b, double c, double d);
};

} // namespace megset
