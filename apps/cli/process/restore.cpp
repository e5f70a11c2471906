#include "apps/cli/process/restore.h"

#include "apps/readers/recordedMode.h"

#include <stdexcept>
#include <utility>

namespace megset::cli {

namespace {

bool takeRecordedMode(CMEGSensorzk& sensor)
{
    const auto mode = [&sensor] { return std::pair(sensor.getGradOrderNo(), sensor.getAdaptiveBalance()); };
    const auto former = mode();
    setRecordedMode(sensor);
    return mode() != former;
}

} // namespace

bool markAsRecorded(CMDTrialzk& trial)
{
    bool wasProcessed = trial.m_bMontageCrDone != 0 || trial.m_bMontageIrDone != 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (channel == nullptr || channel->getBkDataSample() == 0)
            continue;
        if (CMEGSensorzk* const sensor = channel->getMEGSensorzk(); sensor != nullptr && takeRecordedMode(*sensor))
            wasProcessed = true;
    }
    trial.m_bMontageCrDone = 0;
    trial.m_bMontageIrDone = 0;
    return wasProcessed;
}

void restoreTrial(CMDTrialzk& trial)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* const channel = trial.getChannel(i);
        if (channel != nullptr && channel->getBkDataSample() != 0 && !channel->reverseRawData())
            throw std::runtime_error("there is not enough memory");
    }
    markAsRecorded(trial);
    trial.m_bTrialResampled = 0;
    trial.m_nTrialResampleStep = 1;
}

void restoreRecording(CMEGDatazk& dataset)
{
    if (!dataset.setResampleParameter(false, 1))
        throw std::runtime_error("the triggers can't be restored");
}

} // namespace megset::cli
