#include "apps/cli/dataset/DatasetInfo.h"

#include "apps/cli/dataset/TrialSummary.h"
#include "apps/cli/dataset/workFrame.h"
#include "apps/cli/process/montage.h"
#include "megset/platform/paths.h"

#include <array>
#include <utility>

namespace megset::cli {

namespace {

TrialInfo describeTrial(const OpenDataset& open, int index)
{
    const CString& stored = open.dataset.m_aTrialFilePath.GetAt(index);
    const CString found = findTrialFile(open, index);
    TrialInfo info;
    info.index = index;
    info.file = found.IsEmpty() ? storedTrialPath(open, index) : found.toUtf8();
    info.name = CMDTrialzk::fileName2FileTitle(CMDTrialzk::filePath2FileName(stored)).toUtf8();
    const auto summary = found.IsEmpty() ? std::nullopt : readTrialSummary(toNative(found));
    if (!summary)
        return info;
    info.found = true;
    info.file = toNative(found).string();
    if (!summary->name.empty())
        info.name = summary->name;
    info.isVirtual = summary->isVirtual;
    info.good = summary->good;
    info.channels = summary->channels;
    info.samples = summary->samples;
    info.bytes = summary->bytes;
    return info;
}

// A flag that holds for a channel in all trials; set where the dataset has none for it.
bool flagOf(const CMEGDatazk& dataset, const std::unique_ptr<int[]>& flags, int channel)
{
    return !flags || channel >= dataset.m_nChnlParamCount || flags[static_cast<std::size_t>(channel)] != 0;
}

ChannelInfo describeChannel(const CMEGDatazk& dataset, const CMDChannelzk& channel, int index)
{
    ChannelInfo info;
    info.index = index;
    info.name = channel.m_strChannelName.toUtf8();
    info.rawName = channel.m_strChannelNameRaw.toUtf8();
    info.type = channel.getChannelType();
    info.typeName = channel.getChannelTypeName().toUtf8();
    info.kind = channelKind(channel);
    info.geometry = geometryName(channel);
    info.unit = channelUnit(channel);
    info.good = flagOf(dataset, dataset.m_pChnlGood, index);
    info.shown = flagOf(dataset, dataset.m_pChnlShow, index);
    info.position = positionOf(channel);
    info.gradientOrder = gradientOrder(channel);
    return info;
}

void addChannels(const CMEGDatazk& dataset, std::vector<ChannelInfo>& channels)
{
    const CMDTrialzk* const trial = dataset.getCurrentTrialPt();
    const int total = trial != nullptr ? trial->getTotalChannel() : 0;
    for (int i = 0; i < total; ++i)
        if (const CMDChannelzk* const channel = trial->getChannel(i))
            channels.push_back(describeChannel(dataset, *channel, i));
}

void addMarks(const std::string& list, const CMarkerManagerzk& manager, std::vector<MarkInfo>& marks)
{
    for (int i = 0; i < manager.m_aMarkers.GetSize(); ++i)
        if (const CMarkerDatazk* const marker = manager.m_aMarkers.GetAt(i))
            marks.push_back({list, marker->m_strMarkName.toUtf8(), marker->m_nMarkValue, marker->getTotalTrgMrkPts()});
}

void addAllMarks(const CMEGDatazk& dataset, std::vector<MarkInfo>& marks)
{
    const std::array<std::pair<const char*, const CMarkerManagerzk*>, 7> lists = {
        {{"trigger", &dataset.m_mkTrig},
         {"mark", &dataset.m_mkMarker},
         {"segment", &dataset.m_mkSegment},
         {"class", &dataset.m_mkClass},
         {"threshold", &dataset.m_mkThreshold},
         {"pattern", &dataset.m_mkPattern},
         {"wave", &dataset.m_mkAiMarkWave}}};
    for (const auto& [name, manager] : lists)
        addMarks(name, *manager, marks);
}

void addRecording(const CMEGDatazk& dataset, DatasetInfo& info)
{
    const CMEGRecordInfozkProzk& recording = dataset.m_recordInfo;
    info.rate = recording.m_dRecSampleRate;
    info.samples = recording.m_nRecTotalSample;
    info.preTrigger = recording.m_nRecPreTrigPts;
    info.rawRate = recording.m_dRawSampleRate;
    info.rawSamples = recording.m_nRawTotalSample;
    info.rawPreTrigger = recording.m_nRawPreTrigPts;
    info.resamplingFactor = recording.m_nResampleFactor;
    info.averages = recording.m_nAverageCount;
}

} // namespace

DatasetInfo collectInfo(OpenDataset& open)
{
    CMEGDatazk& dataset = open.dataset;
    DatasetInfo info;
    info.file = open.path.string();
    info.session = dataset.getSessionName().toUtf8();
    info.currentTrial = dataset.getCurrentTrialIndx();
    info.bytes = std::filesystem::file_size(open.path);
    addRecording(dataset, info);
    info.frame = frameName(dataset.getHeadLocationDataset()->m_nWorkCoordinate);
    dataset.getFilterRange(info.filterLow, info.filterHigh);
    for (int i = 0; i < dataset.m_aTrialFilePath.GetSize(); ++i)
        info.trials.push_back(describeTrial(open, i));
    addChannels(dataset, info.channels);
    addAllMarks(dataset, info.marks);
    if (const CMDTrialzk* const trial = dataset.getCurrentTrialPt())
        info.processing = describeProcessing(*trial);
    return info;
}

} // namespace megset::cli
