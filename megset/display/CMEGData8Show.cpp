// Which channels are shown, and what the views ask of one channel.
#include "megset/display/CMEGData8Show.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/CSpctmChnlzk.h"

namespace megset {

int CMEGData8Show::setShowVirtChnl(bool show)
{
    m_bShowVirtChnl = show ? 1 : 0;
    return 1;
}

// ---- one channel

// The channel of the current trial; null out of range, and for one that isn't shown where that counts.
const CMDChannelzk* CMEGData8Show::channelAt(int chan, bool onlyShown) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr || chan < 0 || (onlyShown && !getChnlShow_PhycVirt(chan)))
        return nullptr;
    return trial->getChannel(chan);
}

CString CMEGData8Show::getChnlName_PhycVirt(int chan, bool onlyShown) const
{
    const CMDChannelzk* channel = channelAt(chan, onlyShown);
    return channel != nullptr ? channel->m_strChannelName : CString();
}

namespace {

const CSpctmChnlzk* spectrumOf(const CMDChannelzk& channel, int kind)
{
    switch (kind) {
    case 0:
        return channel.m_pSpctmChnlA.get();
    case 1:
        return channel.m_pSpctmChnlC.get();
    case 2:
        return channel.m_pSpctmChnlR.get();
    default:
        return nullptr;
    }
}

} // namespace

double* CMEGData8Show::getChnlSpctmData(int chan, bool onlyShown, int kind, int part, std::int64_t* a,
                                        std::int64_t* b) const
{
    if (a != nullptr)
        *a = 0;
    if (b != nullptr)
        *b = 0;
    const CMDChannelzk* channel = channelAt(chan, onlyShown);
    const CSpctmChnlzk* spectrum = channel != nullptr ? spectrumOf(*channel, kind) : nullptr;
    return spectrum != nullptr ? spectrum->getSpctmDataPtr(part, a, b) : nullptr;
}

double* CMEGData8Show::getTrlChnlDataWave(int chan, bool onlyShown) const
{
    const CMDChannelzk* channel = channelAt(chan, onlyShown);
    return channel != nullptr ? channel->getDataWave() : nullptr;
}

CString CMEGData8Show::getLongestChannelName() const
{
    const CString none = "Non";
    CString name = none;
    const CMDTrialzk* trial = getCurrentTrialPt();
    for (int i = 0; trial != nullptr && i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = channelAt(i, true);
        // Longer than the first text, not than the name that was found last: it is meant so.
        if (channel != nullptr && channel->m_strChannelName.GetLength() > none.GetLength())
            name = channel->m_strChannelName;
    }
    return name;
}

// ---- which channels are shown

int CMEGData8Show::setMEGSensorShow(bool show, int chan)
{
    CMDTrialzk* trial = getCurrentTrialPt();
    if (chan == -1 && trial != nullptr)
        chan = trial->getCurntChnlIndx();
    return setShowChnl4Alltrials(chan, show ? 1 : 0);
}

// The current trial, opened, when the flags are there for all its channels; else null.
const CMDTrialzk* CMEGData8Show::openTrialWithFlags()
{
    const CMDTrialzk* trial = getTrialzk(-1);
    const bool hasFlags = checkInitChnlParam(trial) != 0;
    return hasFlags || (trial != nullptr && trial->getTotalChannel() < 1) ? trial : nullptr;
}

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

int CMEGData8Show::setShowGroup4Word(const CString& text)
{
    const CMDTrialzk* trial = openTrialWithFlags();
    if (trial == nullptr)
        return 0;
    showChannels(*trial, [&text](const CMDChannelzk& channel) {
        return channel.isMEGMeasureChannel() && channel.m_strChannelName.Find(text) >= 0;
    });
    return 1;
}

int CMEGData8Show::setShowGroup4WordTrial(const CString& text, int trial, bool)
{
    const int index = trialIndex(trial);
    const bool exists = m_ppTrial && index >= 0 && index < m_nTotalTrial;
    return exists ? setShowGroup4Word(text) : 0;
}

namespace {

bool isOfEegMode(const CMDChannelzk& channel, int mode)
{
    switch (mode) {
    case 1:
        return channel.isEEGChannel() != 0;
    case 2:
        return channel.isEEGMeasureChannel() != 0;
    case 3:
        return channel.isEEGReferenceChannel() != 0;
    case 4:
        return channel.isEKGChannel() != 0;
    case 5:
        return channel.isIeegChannel() != 0;
    case 6:
        return channel.isSeegChannel() != 0;
    default:
        return true;
    }
}

} // namespace

int CMEGData8Show::setShowGroup4WordEeg(const CString&, int mode)
{
    const CMDTrialzk* trial = openTrialWithFlags();
    if (trial == nullptr)
        return 0;
    showChannels(*trial, [mode](const CMDChannelzk& channel) { return isOfEegMode(channel, mode); });
    return 1;
}

int CMEGData8Show::setShowMEGMeasureChannel()
{
    const CMDTrialzk* trial = openTrialWithFlags();
    if (trial == nullptr)
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
