#pragma once
// The dataset that is made, and the 3D points last selected by the user, which all datasets share.

#include "megset/persistence/CMEGData9FileRecord.h"

namespace megset {

class CDlgReSamplingMEGData;
class CDlgSeegProbeSetup;
class CDlgSetupROIDewar;
class CWnd;

/// The dataset that is made; it closes the chain of the dataset.
class CMEGDatazk : public CMEGData9FileRecord
{
public:
    CMEGDatazk();
    /// Waits for a re-sampling that is under way.
    ~CMEGDatazk() override;

    /// Binds the recorded sensors to the channels of all trials, each of which is opened. A null entry shows "Finding
    /// recorded MEG sensor error!", and the walk goes on. 0 for null, without trials, or at a trial that can't be
    /// opened.
    int setRecordGeom2Trials(CPtrArray* sensors);
    /// Takes over what a session is: recording information, triggers of both kinds with their sample numbers as they
    /// are, head localisation, EEG fiducials, and, where both have a first trial, what its channels are. 1; 0 for null.
    int copyMegInfo(CMEGDatazk* source);
    /// Shows the dataset's own re-sampling dialog, which is made at first use, and stores the parent when it is not
    /// null. 1; 0 without trials ("There is no data!").
    int showDlgResampleData(CWnd* parent);

    /// The same with the dialog of the region of interest in the dewar, loaded from the dataset.
    int showDlgSetupROIDewar(CWnd* parent);
    /// The same with the dialog of one SEEG probe, loaded from the current probe. A trial other than -1 is opened
    /// first.
    int showDlgSeegProbeSetup(CWnd* parent, int trial);

    // Two points that views and dialogs of all datasets hand to each other, mm. Give 1.

    /// The place selected in the source images; what 3D views write.
    static int getMsiSelect3DPts2Me(double& x, double& y, double& z);
    static int setMsiSelect3DPts2Me(double x, double y, double z);
    /// Pointers to its three numbers.
    static int getMsiSelect3DPtrs(double*& x, double*& y, double*& z);
    /// The SEEG contact that was chosen.
    static int getSeegProbContact2Me(double& x, double& y, double& z);
    static int setSeegProbContact2Me(double x, double y, double z);

    std::unique_ptr<CDlgReSamplingMEGData> m_pDlgResampling;
    std::unique_ptr<CDlgSetupROIDewar> m_pDlgRoiDewar;
    std::unique_ptr<CDlgSeegProbeSetup> m_pDlgSeegProbe;

    // Process-wide, without a lock, in mm.
    static double m_dMsiSelectX;
    static double m_dMsiSelectY;
    static double m_dMsiSelectZ;
    static int m_nSelectSeegProbeID;
    static int m_nSelectSeegProbeContactID;
    static double m_dSelectSeegProbeContactX;
    static double m_dSelectSeegProbeContactY;
    static double m_dSelectSeegProbeContactZ;
};

} // namespace megset
