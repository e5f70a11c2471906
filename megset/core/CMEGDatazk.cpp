#include "megset/core/CMEGDatazk.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/ui/CDlgReSamplingMEGData.h"

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
CMEGDatazk::~CMEGDatazk() = default;

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
