#include "megset/core/CMEGDatazk.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/memory.h"
#include "megset/ui/CDlgReSamplingMEGData.h"
#include "megset/ui/CDlgSeegProbeSetup.h"
#include "megset/ui/CDlgSetupROIDewar.h"

#include <algorithm>

namespace megset {

double CMEGDatazk::m_dMsiSelectX = 0.0;
double CMEGDatazk::m_dMsiSelectY = 0.0;
double CMEGDatazk::m_dMsiSelectZ = 0.0;
int CMEGDatazk::m_nSelectSeegProbeID = -1;
int CMEGDatazk::m_nSelectSeegProbeContactID = -1;
double CMEGDatazk::m_dSelectSeegProbeContactX = 0.0;
double CMEGDatazk::m_dSelectSeegProbeContactY = 0.0;
double CMEGDatazk::m_dSelectSeegProbeContactZ = 0.0;

CMEGDatazk::CMEGDatazk() = default;

CMEGDatazk::~CMEGDatazk()
{
    if (m_pDlgResampling != nullptr)
        m_pDlgResampling->endWorker();
}

int CMEGDatazk::copyMegInfo(CMEGDatazk* source)
{
    if (source == nullptr)
        return 0;
    m_recordInfo = source->m_recordInfo;
    m_mkTrig = source->m_mkTrig;
    m_mkTrigRecord = source->m_mkTrigRecord;
    m_headLocalization = source->m_headLocalization;
    m_fidEegMeasure = source->m_fidEegMeasure;
    m_fidWorkEeg = source->m_fidWorkEeg;
    // The source's current trial stays where there is nothing to be copied to.
    if (CMDTrialzk* trial = getTrialzk(0))
        trial->copyTrialInfo(source->getTrialzk(0));
    return 1;
}

int CMEGDatazk::showDlgResampleData(CWnd* parent)
{
    return CDlgReSamplingMEGData::show(m_pDlgResampling, this, parent, nullptr, nullptr);
}

namespace {

// The dialog of `slot`, made at first use and given its dataset and its parent, if any; null, with the message, for a
// dataset without trials, and without memory.
template <class Dialog>
Dialog* preparedDialog(std::unique_ptr<Dialog>& slot, CMEGDatazk* data, CWnd* parent)
{
    if (data->m_nTotalTrial < 1) {
        AfxMessageBox("There is no data!", MB_OK);
        return nullptr;
    }
    if (slot == nullptr)
        slot = tryNew<Dialog>();
    if (slot == nullptr)
        return nullptr;
    slot->m_pDataset = data;
    if (parent != nullptr)
        slot->m_pParent = parent;
    return slot.get();
}

} // namespace

int CMEGDatazk::showDlgSetupROIDewar(CWnd* parent)
{
    CDlgSetupROIDewar* dialog = preparedDialog(m_pDlgRoiDewar, this, parent);
    if (dialog == nullptr)
        return 0;
    dialog->ShowWindow(true);
    dialog->load();
    return 1;
}

int CMEGDatazk::showDlgSeegProbeSetup(CWnd* parent, int trial)
{
    CDlgSeegProbeSetup* dialog = preparedDialog(m_pDlgSeegProbe, this, parent);
    if (dialog == nullptr)
        return 0;
    if (trial != -1)
        openTrial(trial);
    dialog->ShowWindow(true);
    dialog->load();
    return 1;
}

// ---- points of all datasets

int CMEGDatazk::getMsiSelect3DPts2Me(double& x, double& y, double& z)
{
    x = m_dMsiSelectX;
    y = m_dMsiSelectY;
    z = m_dMsiSelectZ;
    return 1;
}

int CMEGDatazk::setMsiSelect3DPts2Me(double x, double y, double z)
{
    m_dMsiSelectX = x;
    m_dMsiSelectY = y;
    m_dMsiSelectZ = z;
    return 1;
}

int CMEGDatazk::getMsiSelect3DPtrs(double*& x, double*& y, double*& z)
{
    x = &m_dMsiSelectX;
    y = &m_dMsiSelectY;
    z = &m_dMsiSelectZ;
    return 1;
}

int CMEGDatazk::getSeegProbContact2Me(double& x, double& y, double& z)
{
    x = m_dSelectSeegProbeContactX;
    y = m_dSelectSeegProbeContactY;
    z = m_dSelectSeegProbeContactZ;
    return 1;
}

int CMEGDatazk::setSeegProbContact2Me(double x, double y, double z)
{
    m_dSelectSeegProbeContactX = x;
    m_dSelectSeegProbeContactY = y;
    m_dSelectSeegProbeContactZ = z;
    return 1;
}

int CMEGDatazk::setRecordGeom2Trials(CPtrArray* sensors)
{
    if (sensors == nullptr || m_nTotalTrial < 1)
        return 0;
    for (int i = 0; i < m_nTotalTrial; ++i) {
        CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr)
            return 0;
        const int count = std::min(trial->getTotalChannel(), sensors->GetSize());
        for (int k = 0; k < count; ++k) {
            const auto* sensor = static_cast<const CMEGSensorzk*>(sensors->GetAt(k));
            if (sensor == nullptr)
                AfxMessageBox("Finding recorded MEG sensor error!", MB_OK);
            else
                trial->setMEGSensorParameter(sensor, k);
        }
    }
    return 1;
}

} // namespace megset
