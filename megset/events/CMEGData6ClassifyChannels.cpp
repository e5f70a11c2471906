// Channels of a kind, good and bad.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

namespace megset {

int CMEGData6Classify::getTotalMEGChannelMeasure(bool goodOnly)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    int count = 0;
    for (int i = 0; trial != nullptr && i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->getChannel(i);
        if (channel != nullptr && channel->isMEGMeasureChannel() && (!goodOnly || isGoodChnl4Alltrials(i)))
            ++count;
    }
    return count;
}

} // namespace megset
