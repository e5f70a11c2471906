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

    // Noise reduction: from each channel the sum of reference channels that makes it a synthetic gradiometer (see
    // GradientPlan), by the coefficients of the recording information. Over the working samples of all trials in
    // memory; raw samples stay as they are, no trial is opened, and nothing is told to anybody.

    /// Takes MEG measure channels back from what their sensors' modes say, as setGradient2Non does, then brings all
    /// channels that have a record of the new mode to it, and notes it in their sensors. A channel without such a
    /// record stays at order 0, and its sensor keeps the former mode. Channels go in array order: later ones see
    /// references that have changed. 1; 0 with nothing changed for an order outside 0 to 3.
    int setGradientNoiseReduction(int order, bool realIdeal, bool adaptive);
    /// Adds to each MEG measure channel the sum that its sensor's mode says was taken away. The modes stay, so that
    /// a second call adds the sum once more: callers use setGradientNoiseReduction. Gives 1.
    int setGradient2Non();

    int getShowMEGSensor() const { return m_bShowMEGSensor; }
    int getShowMEGSensorActive() const { return m_bShowMEGSensorActive; }
    int getShowSensor2DOverlap() const { return m_bShowSensor2DOverlap; }
    /// Whether sensors that lie over each other are drawn. Gives 1.
    int setShowSensor2DOverlap(bool overlap);
    /// Pixels.
    int getSensorSize2D() const { return m_nSensorSize2D; }
    /// Whether channels of a type are drawn unless somebody says otherwise.
    static bool getShow4SensorType01(int type);

private:
    // The same arithmetic in its simplest form, to hold the others against: channel by channel, with the weights taken
    // apart anew for every sample; the references must exist, and only MEG measure channels are brought to the new
    // mode.
    int setGradientNoiseReductionSlow(int order, bool realIdeal, bool adaptive);
    int setGradient2NonSlow();

    template <class Plan>
    void changeTrials(Plan plan);
    template <class Operation>
    int forward(int trial, bool all, Operation operation);
    int getChannelPos(int chan, double& x, double& y, double& z, int trial) const;
    int initSensorInfo(int chan, int id, int type, int wordA, int wordB, double a, double b, double c, double d);
};

} // namespace megset
