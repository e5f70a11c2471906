#pragma once
// Layout of the sensors of a trial on a plane: three projections, scaling, and names by place. Needs the extents of
// CMDTrial0SensorInfo.

#include "megset/spectral/CMDTrial7Coh02SpctmData.h"

namespace megset {

/// Positions are in mm; a map is seen along the y axis. MEG measure channels with a first coil take part, and EEG
/// measure channels of type 302 with an electrode. What a projection gives goes to the channels (m_dSns2dX/Y for MEG,
/// m_dElct2dX/Y for EEG), its bounds and scale to the trial's contour map, and the plane counts as done from then on:
/// nothing takes that back, so that whoever moves a sensor projects again. Every projection gives 1; 0 with fewer than
/// 2 channels.
class CMDTrial8Show : public CMDTrial7Coh02SpctmData
{
public:
    bool isMegSnsr2dPlaneDone() const { return m_nMegPlaneDone != 0; }
    bool isEegElectrod2dPlaneDone() const { return m_nEegPlaneDone != 0; }

    /// From the centre of the extents, which are taken anew with `refresh`, the lower the sensor, the further out: the
    /// highest goes to half its distance. Then the map starts at 0, 0 and is divided by `scale`, which is not checked.
    /// Measure channels without a sensor are shifted and divided with the others, from where they are. Where there is
    /// nothing to refresh, and again where nothing took part, it asks "No MEG sensor!?, Continue?", or "No EEG
    /// channel!?, Continue?"; No gives 0.
    int projectMegMeasureSns3Dto2Dstd(double scale, bool refresh);
    int projectEegMeasureElectrode3Dto2Dstd(double scale, bool refresh);
    /// The same of the channels whose `use` is not 0, `count` of which is that of all channels, else "Bad channel
    /// setting error!" and 0; with the extents as they are, with half the pull, and with no division. No place lies
    /// further than 400 mm from the centre along an axis: the first that does asks "Limit contcour map size to 300
    /// mm?", and after a No the next, but all are limited whatever the answer.
    int projectMegMeasureSns3Dto2Dpro(int count, const int* use);
    int projectEegMeasureSns3Dto2Dpro(int count, const int* use);
    /// By distance along the head (flatten3Dto2D of the sensor). The map of MEG starts at 0, 0. That of EEG stays where
    /// it was put; it is the MEG measure channels whose EEG places are shifted instead, and that give the bounds, which
    /// are 0 without them: it is meant so.
    int projectMegCart3DCoilTo2DPlanVsm();
    int projectEegCart3DCoilTo2DPlanVsm();

    /// Stretches the map so that its longer side is `size`. The scale becomes the factor alone. 1; 0 for a map without
    /// extent, and where the plane is not done: "Please compute sensor 2D position first!" or "Please compute EEG
    /// electrode 2D position first!".
    int scanMegMeasureSns2Dsz(double size);
    int scanEegMeasureSns2Dsz(double size);
    /// Half the largest side of the extents, mm; -1.0 where nothing was found to refresh.
    double getRadius1stCoilMaxMeg(bool refresh);
    double getRadiusElectrodeMaxEeg(bool refresh);
    /// Position and, where `dir` is not null, direction of a coil of a MEG channel, three numbers each; with
    /// `measureOnly` of a measure channel. 0 for another channel or no such coil, with both cleared, and for a negative
    /// channel or null `pos`.
    int getChnlLoci_PhycVirt(int chan, bool measureOnly, int coil, double* pos, double* dir) const;

    /// Puts a code of the place on the MEG plane for each "MEG" in the raw name and makes that the working name, on all
    /// MEG measure channels. The code is "ML", "MZ" or "MR", then "F", "C", "P", "O" or "T". A plane that is not done
    /// is projected first, at scale 2. Gives 1.
    int codeSnsLocation2Name();
    /// Gives 1 and does nothing else (see neuromagSensorNumbers).
    int neuromagNum2name();
};

} // namespace megset
