#include "megset/import/CMEGData9FileA00Maker.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"

namespace megset {
namespace {

constexpr int trialFromVirtualChannels = 8; // kind of trial

struct EegKind
{
    const char* typeName; ///< format of the face's name
    int type;
};

EegKind eegKind(int kind)
{
    switch (kind) {
    case 1:
        return {"Vc2iEEG_%s", 340};
    case 2:
        return {"Vc2EEG_%s", 302};
    default:
        return {"Vc2EEG_%s", 350};
    }
}

struct Range
{
    std::int64_t from = 0;
    std::int64_t count = 0;
};

// A virtual channel that has the samples the face says, as checkVirtChnl and getNumShowSns count them.
bool isUsable(const CVirtChnlWavezk* channel, const CFaceVirtChnlWavezk& face, bool shownOnly)
{
    return channel != nullptr && std::ssize(channel->m_aWave) == face.getTotalSample() &&
           (!shownOnly || channel->m_bShow != 0);
}

int noMemory(const CString& message)
{
    AfxMessageBox(message, MB_OK);
    return 0;
}

int makeEegChannel(CMDChannelzk& channel, const CVirtChnlWavezk& from, const EegKind& kind, const CString& faceName)
{
    channel._cleanGeomHw();
    channel.setChannelTypeName(CString::formatted(kind.typeName, faceName));
    channel.setChannelType(kind.type);
    channel.setGeomType(2);
    CEEGelectrodezk* electrode = channel.ensureEegElectrode();
    if (electrode == nullptr)
        return noMemory("Is there enough memory?!");
    electrode->setPosDiir(from.m_dPosition.data(), from.m_dDirection.data());
    channel.m_nMegListID = from.m_nMegListID;
    channel.m_dSns2dX = from.m_dSns2dX;
    channel.m_dSns2dY = from.m_dSns2dY;
    channel.m_strChannelNameRaw = from.m_strChannelNameRaw;
    channel.m_strChannelName = from.m_strChannelName;
    return 1;
}

std::unique_ptr<CMDTrialzk> makeClearTrial(int channels, std::int64_t samples)
{
    auto trial = tryNew<CMDTrialzk>();
    bool made = trial != nullptr && trial->allocateChannels(channels);
    for (int i = 0; made && i < channels; ++i)
        made = trial->m_ppChannel[i]->initData(samples, true) != 0;
    if (!made)
        noMemory("Not enough memory?");
    return made ? std::move(trial) : nullptr;
}

// Fills the trial's channels from the usable virtual ones, in their order.
int fillChannels(const CMDTrialzk& trial, const CFaceVirtChnlWavezk& face, const EegKind& kind, const Range& range,
                 bool shownOnly)
{
    int place = 0;
    for (int i = 0; i < face.getTotalVirtChnl() && place < trial.getTotalChannel(); ++i) {
        const CVirtChnlWavezk* from = face.m_aVirtChnl[i];
        if (!isUsable(from, face, shownOnly))
            continue;
        CMDChannelzk& channel = *trial.m_ppChannel[place++];
        if (!makeEegChannel(channel, *from, kind, face.m_strFaceName))
            return 0;
        channel.addData(range.count, from->m_aWave.data() + range.from);
    }
    return 1;
}

} // namespace

CMDTrialzk* CMEGData9FileA00Maker::makeTrial4VirtSns2xEeg(CMEGData9FileA00Maker* target,
                                                          const CFaceVirtChnlWavezk* wave, int kind, bool hasRange,
                                                          std::int64_t from, std::int64_t to, bool shownOnly)
{
    if (target != nullptr) {
        m_recordInfo = target->m_recordInfo;
        m_strSessionName = "VirtualWaveform";
        m_recordInfo.m_nBasicWordE = 0;
        m_recordInfo.m_nBasicWordA = 1;
    }
    if (wave == nullptr)
        return nullptr;
    const std::int64_t total = wave->getTotalSample();
    if (hasRange && (from < 0 || from >= total || to < 0 || to >= total))
        return nullptr;
    const Range range = hasRange ? Range{from, to - from + 1} : Range{0, total};
    const int channels = shownOnly ? wave->getNumShowSns() : wave->checkVirtChnl();
    if (range.count < 1 || channels < 1)
        return nullptr;
    std::unique_ptr<CMDTrialzk> trial = makeClearTrial(channels, range.count);
    if (trial == nullptr || !fillChannels(*trial, *wave, eegKind(kind), range, shownOnly))
        return nullptr;
    trial->m_nVirtualTrial = 1;
    trial->m_nTrialKind = trialFromVirtualChannels;
    return trial.release();
}

} // namespace megset
