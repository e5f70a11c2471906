#include "megset/core/CMEGDatazk.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"

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
