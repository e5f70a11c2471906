#pragma once
// Where the head is: fiducials of the MEG sensors in three frames, the frame that the sensors work in, and the region
// of interest in the dewar. Needs the trials of CMEGData.

#include "megset/core/CMEGData0SensorInfo.h"

namespace megset {

/// A sensor keeps its places in the dewar and in the head; who reads positions reads the working copy, which the
/// switches here set. Positions are in mm.
class CMEGData1Localization01Meg : public CMEGData0SensorInfo
{
public:
    CHeadLocalizationzk* getHeadLocationDataset() { return &m_headLocalization; }
    CFiducialzk* getFidDewarStd() { return &m_headLocalization.m_fidDewarStd; }
    CFiducialzk* getFidDewarMsr() { return &m_headLocalization.m_fidDewarMsr; }
    CFiducialzk* getFidHeadMsr() { return &m_headLocalization.m_fidHeadMsr; }
    CFiducialzk* getFidWorkMeg() { return &m_headLocalization.m_fidWorkMeg; }
    /// A head that was not localised. Gives 1.
    int initDefaultHeadLocalizationParams();
    /// "Unknown".
    CString headCoilChannelName() const { return "Unknown"; }

    // The working fiducials from one of the sets. Give 1.

    int setFidDewarMeasure2work();
    int setFidDewarStandard2work();
    int setFidHeadMeasure2work();

    // The working places of all sensors of one trial, which is opened (-1: the current one), or of all trials, and then
    // the working fiducials. A trial of all that can't be opened is passed over. What tells the frame in use,
    // m_nWorkCoordinate, is left to the caller. 1; 0 with nothing changed for a dataset without trials, and where the
    // one trial can't be opened.

    /// Places in the dewar with the standard fiducials.
    int setSnsFidDewar2work(int trial, bool allTrials);
    /// Places in the dewar with the measured fiducials, in spite of its name: the two are crossed, and meant so.
    int setSnsFidDewarStd2work(int trial, bool allTrials);
    /// Places and fiducials in the head.
    int setSnsFidHead2work(int trial, bool allTrials);
    /// The one that fits m_nWorkCoordinate: 0 setSnsFidDewarStd2work, 1 setSnsFidDewar2work, 2 setSnsFidHead2work; 0
    /// for another frame.
    int resetSnsFidCoordinate2work(int trial, bool allTrials);

    // The region of interest, mm. Whether a minimum lies below its maximum is not checked. Give 1.

    int getROIDewar(double& xMin, double& xMax, double& yMin, double& yMax, double& zMin, double& zMax) const;
    /// Sets the dimensions, maximum - minimum, as well.
    int setROIDewar(double xMin, double xMax, double yMin, double yMax, double zMin, double zMax);
    /// The limits of a new dataset; the dimensions stay as they are, and are meant to.
    int resetROIDewar();

private:
    template <class Switch>
    int switchSensors(int trial, bool allTrials, Switch change);
};

} // namespace megset
