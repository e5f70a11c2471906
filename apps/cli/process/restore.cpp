#include "apps/cli/process/restore.h"

#include "apps/readers/recordedMode.h"

#include <stdexcept>

namespace megset::cli {

void restoreTrial(CMDTrialzk& trial)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* const channel = trial.getChannel(i);
        if (channel == nullptr || channel->getBkDataSample() == 0)
            continue;
        if (!channel->reverseRawData())
            throw std::runtime_error("there is not enough memory");
        if (CMEGSensorzk* const sensor = channel->getMEGSensorzk())
            setRecordedMode(*sensor);
    }
    trial.m_bTrialResampled = 0;
    trial.m_nTrialResampleStep = 1;
    trial.m_bMontageCrDone = 0;
    trial.m_bMontageIrDone = 0;
}

void restoreRecording(CMEGDatazk& dataset)
{
    if (!dataset.setResampleParameter(false, 1))
        throw std::runtime_error("the triggers can't be restored");
}

} // namespace megset::cli
