#include "apps/cli/process/moveFrame.h"

#include "apps/cli/dataset/workFrame.h"
#include "apps/cli/process/forEachTrial.h"

#include <algorithm>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr int headFrame = 2;

bool hasPlace(const CMEGSensorzk& sensor, int frame)
{
    const CBscMagSnszk* const coil = sensor.getCoil(0);
    return coil != nullptr && coil->getPlace(frame == headFrame ? coilFrameHead : coilFrameDewar)->at(3) != 0.0;
}

FrameResult countSensors(const CMDTrialzk& trial, int frame)
{
    FrameResult result;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (const CMEGSensorzk* const sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr)
            ++(hasPlace(*sensor, frame) ? result.moved : result.stayed);
    }
    return result;
}

} // namespace

FrameResult setWorkFrame(CMEGDatazk& dataset, const std::string& frame)
{
    const auto& names = frameNames();
    const auto number = static_cast<int>(std::find(names.begin(), names.end(), frame) - names.begin());
    dataset.getHeadLocationDataset()->m_nWorkCoordinate = number;
    const CMDTrialzk* const trial = dataset.getTrialzk(-1);
    if (trial == nullptr || !dataset.resetSnsFidCoordinate2work(-1, false))
        throw std::runtime_error("the sensors can't be moved to the frame " + frame);
    return countSensors(*trial, number);
}

FrameResult moveToFrame(const ChangeArguments& arguments, const std::string& frame)
{
    FrameResult result;
    changeDataset(arguments, [&](OpenDataset& open) {
        forEachTrial(open, "Frame of the sensors", [&](CMDTrialzk&) { result = setWorkFrame(open.dataset, frame); });
    });
    return result;
}

} // namespace megset::cli
