#include "apps/cli/events/scanTriggers.h"

#include "apps/cli/dataset/shownLine.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/process/forEachTrial.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <map>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace megset::cli {

namespace {

constexpr double defaultThreshold = 0.5;

// As in the library's scan of a dataset: beyond them a channel is no stimulus channel, and its marks eat the memory.
constexpr std::size_t mostTriggers = 1'000'000;
constexpr std::size_t mostMarkers = 200'000;

void refuseTooMany(std::size_t count, std::size_t most)
{
    if (count > most)
        throw std::runtime_error("Too many triggers (more than " + std::to_string(most) +
                                 "), please check the trigger channels!");
}

bool hasNoNumbers(const CMDChannelzk& channel)
{
    const double* const samples = channel.getDataWave();
    return std::any_of(samples, samples + channel.getTotalSample(), [](double v) { return !std::isfinite(v); });
}

std::vector<CMDChannelzk*> triggerChannels(const CMDTrialzk& trial)
{
    std::vector<CMDChannelzk*> channels;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (CMDChannelzk* const channel = trial.getChannel(i); channel != nullptr && channel->isTriggerChannel())
            channels.push_back(channel);
    return channels;
}

// The plain scan asks how far a sample is from the channel's mean. Half the range of the least channel that has pulses
// lies between its rest and its pulses as long as these take less than half of the time.
double halfOfRange(const CMDTrialzk& trial)
{
    double least = 0.0;
    for (const CMDChannelzk* channel : triggerChannels(trial)) {
        double low = 0.0;
        double high = 0.0;
        channel->getSelectMinMeaMaxV(0, channel->getTotalSample() - 1, &low, nullptr, &high, nullptr);
        if (high > low && (least == 0.0 || high - low < least))
            least = high - low;
    }
    return least > 0.0 ? least / 2.0 : defaultThreshold;
}

// Keeps the samples of the trigger channels while a scan conditions them.
class KeptSamples
{
public:
    explicit KeptSamples(const CMDTrialzk& trial) : m_channels(triggerChannels(trial))
    {
        for (const CMDChannelzk* channel : m_channels)
            m_samples.emplace_back(channel->getDataWave(), channel->getDataWave() + channel->getTotalSample());
    }
    KeptSamples(const KeptSamples&) = delete;
    KeptSamples& operator=(const KeptSamples&) = delete;
    ~KeptSamples()
    {
        for (std::size_t i = 0; i < m_channels.size(); ++i)
            std::ranges::copy(m_samples[i], m_channels[i]->getDataWave());
    }

private:
    std::vector<CMDChannelzk*> m_channels;
    std::vector<std::vector<double>> m_samples;
};

class Scan
{
public:
    Scan(OpenDataset& open, const TriggerRequest& request) : m_open(open), m_dataset(open.dataset), m_request(request)
    {
        CMarkerManagerzk& manager = *m_dataset.getTrigManager();
        if (!request.keep)
            manager.cleanMarks();
        manager.m_trigScanParam.m_nTrigScanMode = request.mode;
        manager.m_trigScanParam.m_strTrigPrefix = request.prefix;
        for (int i = 0; i < manager.getTotalMarkers(); ++i)
            if (CMarkerDatazk* const marker = manager.getMarker(i, false))
                m_known.emplace(Identity(marker->m_nMarkValue, marker->m_nMarkChannel), marker);
    }

    TriggerFindings run()
    {
        int index = 0;
        forEachTrial(m_open, "Triggers", [&](CMDTrialzk& trial) { scanTrial(trial, index++); });
        for (const auto& [channel, trials] : m_trialsWithoutNumbers)
            m_found.notes.push_back("channel " + channel + " has samples that are no numbers, in trial " +
                                    std::to_string(trials.first) +
                                    (trials.count > 1 ? " and " + std::to_string(trials.count - 1) + " more" : ""));
        if (m_found.triggers.empty())
            m_found.notes.push_back("nothing on the trigger channels is above the threshold" + shownThreshold());
        return std::move(m_found);
    }

private:
    // What findMatchMarkerData compares; a search of all markers for each trigger would take too long.
    using Identity = std::pair<std::int64_t, int>;

    struct Trials
    {
        int first = 0;
        int count = 0;
    };

    std::string shownThreshold() const
    {
        std::ostringstream text;
        if (m_request.threshold)
            text << " of " << *m_request.threshold;
        return text.str();
    }

    void lookForNumbers(const CMDTrialzk& trial, int index)
    {
        for (const CMDChannelzk* channel : triggerChannels(trial))
            if (hasNoNumbers(*channel))
                ++m_trialsWithoutNumbers.try_emplace(shownLine(channel->m_strChannelName.toUtf8()), Trials{index, 0})
                      .first->second.count;
    }

    void scanTrial(CMDTrialzk& trial, int index)
    {
        lookForNumbers(trial, index);
        CMarkerManagerzk out;
        const KeptSamples kept(trial);
        out.m_trigScanParam.m_dTrigThreshold =
            m_request.threshold.value_or(m_request.mode == 0 ? halfOfRange(trial) : defaultThreshold);
        const MessageRecorder host([] { return ReaderMessage(); });
        callScan(out, trial);
        if (!host.messages().empty())
            throw std::runtime_error(host.messages().back().text);
        refuseTooMany(m_found.triggers.size() + static_cast<std::size_t>(out.getTotalMarkers()), mostTriggers);
        for (int i = 0; i < out.getTotalMarkers(); ++i)
            if (const CMarkerDatazk* const marker = out.getMarker(i, false); marker != nullptr && marker->getMarkPt(0))
                add(*marker, index);
    }

    void callScan(CMarkerManagerzk& out, CMDTrialzk& trial)
    {
        switch (m_request.mode) {
        case 1:
            m_dataset.getTrialTrigPro(out, &trial, nullptr);
            break;
        case 2:
            m_dataset.getTrialTrigAbsDc(out, &trial, nullptr);
            break;
        case 3:
            m_dataset.getTrialTrigAbsDcM(out, &trial, nullptr);
            break;
        default:
            m_dataset.getTrialTriggers(out, &trial, nullptr);
        }
    }

    // The begin sample of a run moves along with it; its begin time stays, and tells the first sample.
    void add(const CMarkerDatazk& marker, int trial)
    {
        const CMEGRecordInfozkProzk& recording = m_dataset.m_recordInfo;
        MarkTrigClass point = *marker.getMarkPt(0);
        const std::int64_t last = std::max(point.m_nMarkPtBegin, point.m_nMarkPtEnd);
        point.m_nMarkPtTrial = trial;
        point.m_nMarkPtBegin = std::llround(point.m_dMarkPtBegin / 1000.0 * recording.m_dRecSampleRate);
        point.m_nMarkPtEnd = last;
        CMarkerDatazk& kept = markerFor(marker);
        if (!kept.addMarkPt(point, recording.m_nResampleFactor))
            throw std::runtime_error("there is not enough memory");
        ++kept.m_nMarkCount;
        m_found.triggers.push_back({trial, point.m_nMarkPtChannel, kept.m_strMarkName.toUtf8(), marker.m_nMarkValue,
                                    point.m_nMarkPtBegin, last - point.m_nMarkPtBegin + 1,
                                    static_cast<double>(point.m_nMarkPtBegin - recording.m_nRecPreTrigPts) /
                                        recording.m_dRecSampleRate * 1000.0});
    }

    CMarkerDatazk& markerFor(const CMarkerDatazk& marker)
    {
        CMarkerManagerzk& manager = *m_dataset.getTrigManager();
        const Identity identity(marker.m_nMarkValue, marker.m_nMarkChannel);
        if (const auto known = m_known.find(identity); known != m_known.end())
            return *known->second;
        refuseTooMany(static_cast<std::size_t>(manager.getTotalMarkers()) + 1, mostMarkers);
        auto made = std::make_unique<CMarkerDatazk>(marker);
        made->cleanMarkedPts();
        made->m_strMarkName = CString(m_request.prefix + std::to_string(marker.m_nMarkValue));
        made->m_nMarkID = manager.getTotalMarkers() + 1;
        made->m_nMarkValueBk = made->m_nMarkValue;
        made->m_nMarkCount = 0;
        made->m_dMarkSampleRate = m_dataset.m_recordInfo.m_dRecSampleRate;
        manager.setupTrgClsMks(made.get(), nullptr);
        CMarkerDatazk& kept = *manager.getMarker(manager.addMarker(std::move(made)), false);
        m_known.emplace(identity, &kept);
        return kept;
    }

    OpenDataset& m_open;
    CMEGDatazk& m_dataset;
    const TriggerRequest& m_request;
    TriggerFindings m_found;
    std::map<Identity, CMarkerDatazk*> m_known;
    std::map<std::string, Trials> m_trialsWithoutNumbers; // by channel
};

} // namespace

TriggerFindings scanTriggers(OpenDataset& open, const TriggerRequest& request)
{
    const CMDTrialzk* const trial = open.dataset.getTrialzk(-1);
    if (trial == nullptr)
        throw std::runtime_error("its current trial can't be read");
    if (triggerChannels(*trial).empty())
        throw std::runtime_error("the dataset has no trigger channel");
    return Scan(open, request).run();
}

void writeTriggerText(const std::vector<FoundTrigger>& triggers, std::ostream& out)
{
    out << "trial  code    sample  latency, ms  name\n";
    for (const FoundTrigger& trigger : triggers)
        out << std::setw(5) << trigger.trial << std::setw(6) << trigger.value << std::setw(10) << trigger.sample
            << std::setw(13) << trigger.ms << "  " << trigger.name << '\n';
}

void writeTriggerJson(const std::vector<FoundTrigger>& triggers, std::ostream& out)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const FoundTrigger& trigger : triggers)
        list.push_back({{"trial", trigger.trial},
                        {"channel", trigger.channel},
                        {"name", trigger.name},
                        {"code", trigger.value},
                        {"sample", trigger.sample},
                        {"length", trigger.length},
                        {"ms", trigger.ms}});
    out << nlohmann::ordered_json{{"triggers", list}}.dump(2, ' ', false,
                                                           nlohmann::ordered_json::error_handler_t::replace)
        << '\n';
}

void writeTriggerTsv(const std::vector<FoundTrigger>& triggers, const CMEGDatazk& dataset, std::ostream& out)
{
    const double rate = dataset.m_recordInfo.m_dRecSampleRate;
    out << "onset\tduration\ttrial_type\tvalue\tsample\n" << std::setprecision(10);
    for (const FoundTrigger& trigger : triggers) {
        const std::int64_t sample = trigger.trial * dataset.m_recordInfo.m_nRecTotalSample + trigger.sample;
        out << static_cast<double>(sample) / rate << '\t' << static_cast<double>(trigger.length) / rate << '\t'
            << trigger.name << '\t' << trigger.value << '\t' << sample << '\n';
    }
}

} // namespace megset::cli
