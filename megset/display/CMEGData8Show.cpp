#include "megset/display/CMEGData8Show.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"

namespace megset {

// Sets the show flag of every channel by `isShown(channel)`, and gives the number of channels that are shown. An empty
// place is hidden.
template <class IsShown>
int CMEGData8Show::showChannels(const CMDTrialzk& trial, IsShown isShown)
{
    int shown = 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.m_ppChannel[i];
        const int show = channel != nullptr && isShown(*channel) ? 1 : 0;
        setShowChnl4Alltrials(i, show);
        shown += show;
    }
    return shown;
}

int CMEGData8Show::setShowMEGMeasureChannel()
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    const bool hasFlags = checkInitChnlParam(trial) != 0;
    if (!hasFlags && trial->getTotalChannel() > 0)
        return 0;
    // The texts ask, but the boxes have one button: nobody can say no.
    if (showChannels(*trial, [](const CMDChannelzk& channel) { return channel.isMEGMeasureChannel(); }))
        return 1;
    AfxMessageBox("No MEG measure channels, show EEG?", MB_OK);
    if (showChannels(*trial, [](const CMDChannelzk& channel) { return channel.isEEGMeasureChannel(); }))
        return 1;
    AfxMessageBox("No MEG/EEG measure channels, show all MEG/EEG?", MB_OK);
    if (showChannels(*trial, [](const CMDChannelzk& channel) { return channel.isMEG_EEG_Channel(); }))
        return 1;
    AfxMessageBox("No MEG/EEG channels, show all channels?", MB_OK);
    if (!showChannels(*trial, [](const CMDChannelzk&) { return true; }))
        AfxMessageBox("No channel to show", MB_OK);
    return 0; // also where all are shown: it is meant so
}

} // namespace megset
