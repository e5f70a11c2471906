#pragma once
// Sensors and electrodes of a trial's channels: look-up, positions, extents, and binding of recorded sensors.

#include "megset/core/CMDTrial.h"

namespace megset {

/// An index of -1 stands for the current channel. Positions are in mm.
class CMDTrial0SensorInfo : public CMDTrial
{
public:
    // By text: the first channel whose working name stands in the text. A channel without a name passes at once. The
    // opposite sense is that of setCurrentChannel2Name.

    /// -1 when there is none.
    int getChannelID4Name(const CString& text) const;
    int findChannel4SensorName(const CString& text) const { return getChannelID4Name(text); }
    /// Null when there is none.
    CMDChannelzk* getChannelPt4Name(const CString& text) const;
    /// Always -1: what the sensors answer is dropped. It is meant so, and callers can't rely on another result.
    int findSensorGradOrderNo(const CString& text) const;
    /// The gain of the first such channel that has a sensor; 0.0 when there is none.
    double getReferenceSensorGain(const CString& text) const;

    /// The position of the channel's sensor, zeros without one; 0 with zeros when out of range.
    int getChannelPos(int index, double& x, double& y, double& z) const;
    /// Position and direction of a MEG sensor; position of an electrode, with a direction of zeros. 0 with zeros for
    /// all else.
    int getChannelPsnDir(double& x, double& y, double& z, double& dx, double& dy, double& dz, int index) const;
    CMEGSensorzk* getMEGTrialSensorzk(int index) const;
    int isEEGChannel(int index) const;
    int isMEGChannel(int index) const;

    /// Takes the extents of all MEG measure coils, or EEG measure electrodes of type 302, into the trial's contour map.
    /// Gives the channels used, with extents of 0 for none; 0 with the extents as they were in a trial of fewer than 2
    /// channels.
    int getMeasureMegCoilADimension();
    int getMeasureEegElctDimension();
    /// Refreshes the extents, and gives their centre and size.
    int getMeasureMegSnsrCntDmn(double& cx, double& cy, double& cz, double& dx, double& dy, double& dz);
    /// The same for electrodes. A largest size below 1 or above 210 mm asks "Electrode array size may be out of range
    /// in typical EEG %f (1-210 mm)! Continue?"; No gives 0.
    int getMeasureEegElctCntDmn(double& cx, double& cy, double& cz, double& dx, double& dy, double& dz);

    /// Replaces in the channel's working name; -1 when out of range.
    int replaceDataChannlName(const CString& from, const CString& to, int index, bool fromRaw);
    /// Standard positions for all EEG channels, from the EasyCap table or the plain one. Gives the channels found; 0 at
    /// a channel that is missing or has no electrode. A miss shows "Find standard position for %s error" unless
    /// `quiet`.
    int setEegElectrodePosStd(int quiet, int easyCap);
    /// Gives a MEG channel the sensor; its type stays. 0 for another channel, null or no memory.
    int setMEGSensorAll(const CMEGSensorzk* sensor, int index);
    /// Sets both names; 0 when out of range.
    int setMEGSensorName(const CString& raw, const CString& working, int index);
    /// Binds a recorded sensor to the channel by the sensor's channel type: a MEG sensor moved to the head frame, an
    /// electrode with its position and direction, a stimulus, or a miscellaneous sensor with its name. 0 out of range,
    /// for null or without memory.
    int setMEGSensorParameter(const CMEGSensorzk* sensor, int index);

private:
    template <class Position>
    int measureExtents(CContourMap2DInfozk& contour, Position position) const;
    int giveStandardPosition(CMDChannelzk& channel, CEEGelectrodezk& electrode, int quiet, int easyCap) const;
};

} // namespace megset
