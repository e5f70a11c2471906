#include "apps/cli/spectrum/showSpectrum.h"

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/dataset/shownLine.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace megset::cli {

namespace {

struct Plane
{
    const double* values = nullptr;
    std::int64_t times = 0;
    std::int64_t frequencies = 0;
};

const double* sumPlane(const CSumChnlSpctmDatazk& sum, const std::string& name)
{
    if (name.empty() || name == "mean")
        return sum.m_pSumMean.get();
    if (name == "min")
        return sum.m_pSumMin.get();
    if (name == "max")
        return sum.m_pSumMax.get();
    if (name == "positive")
        return sum.m_pSumPositive.get();
    return name == "negative" ? sum.m_pSumNegative.get() : sum.m_pSumRms.get();
}

Plane channelPlane(CMDTrialzk& trial, const ShowRequest& request)
{
    CMDChannelzk& channel = *trial.getChannel(channelNamed(trial, request.channel));
    Plane plane;
    if (CSpctmChnlzk* const spectrum = channel.getSpctmChnl(false, request.classIndex))
        plane.values = spectrum->getSpctmDataPtr(request.type, &plane.times, &plane.frequencies);
    return plane;
}

// The sum is computed over what the planes hold now, with the good and shown channels alone.
Plane summedPlane(OpenDataset& open, CMDTrialzk& trial, const ShowRequest& request)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    open.dataset.checkInitChnlParam(&trial);
    const bool meg = request.kind == "meg";
    const bool eeg = request.kind == "eeg";
    const CSumChnlSpctmDatazk* const sum =
        open.dataset.computTrialSpctm(&trial, meg, eeg, true, true, request.classIndex, request.type);
    // The library counts reference channels before it leaves them out, and then sums nobody to zeros.
    if (sum == nullptr || sum->m_nChannels < 1)
        return {};
    return {sumPlane(*sum, request.sum), sum->m_nTimePt, sum->m_nFreqPt};
}

std::string typeOf(const ShowRequest& request)
{
    static const char* const types[] = {"real part", "imaginary part", "magnitude", "phase"};
    return types[request.type];
}

std::string titleOf(const ShowRequest& request)
{
    const std::string type = typeOf(request);
    if (!request.channel.empty())
        return request.channel + ", " + type;
    return type + ", " + (request.sum.empty() ? "mean" : request.sum) + " over channels";
}

// The spectrum that is asked for, as the options tell it.
std::string wantedBy(const ShowRequest& request)
{
    static const char* const classes[] = {"active", "control", "result"};
    const std::string channels = request.channel.empty() ? request.kind + " channels" : shownLine(request.channel);
    return channels + ", class " + classes[request.classIndex] + ", " + typeOf(request);
}

std::string unitOf(const CMDTrialzk& trial, const ShowRequest& request)
{
    if (request.type == 3)
        return "rad";
    if (request.channel.empty())
        return request.kind == "meg" ? "fT" : request.kind == "eeg" ? "uV" : "";
    return std::string(channelUnit(*trial.getChannel(channelNamed(trial, request.channel))));
}

nlohmann::ordered_json numberOrNull(double value)
{
    return std::isfinite(value) ? nlohmann::ordered_json(value) : nlohmann::ordered_json(nullptr);
}

} // namespace

SpectrumMap readSpectrum(OpenDataset& open, const ShowRequest& request)
{
    const int index = request.trial < 0 ? open.dataset.getCurrentTrialIndx() : request.trial;
    if (index < 0 || index >= open.dataset.m_aTrialFilePath.GetSize())
        throw std::runtime_error("there is no trial " + std::to_string(index) + "; the dataset has " +
                                 std::to_string(open.dataset.m_aTrialFilePath.GetSize()));
    const auto trial = readTrial(open, index);
    CSpctmTrialzk* const spectrum = trial->getSpctmTrial(false, request.classIndex);
    const Plane plane = request.channel.empty() ? summedPlane(open, *trial, request) : channelPlane(*trial, request);
    if (spectrum == nullptr || plane.values == nullptr)
        throw std::runtime_error("trial " + std::to_string(index) + " has no such spectrum: " + wantedBy(request));
    SpectrumMap map = {titleOf(request), unitOf(*trial, request), {}, {}, {}};
    const CMEGRecordInfozkProzk& recording = open.dataset.m_recordInfo;
    for (std::int64_t t = 0; t < plane.times; ++t)
        map.ms.push_back(
            static_cast<double>(trial->getSpctmTimePt(t, request.classIndex, 0) - recording.m_nRecPreTrigPts) /
            recording.m_dRecSampleRate * 1000.0);
    for (std::int64_t f = 0; f < plane.frequencies; ++f)
        map.hz.push_back(spectrum->getSpctmFreq4FreqIndex(f));
    map.values.assign(plane.values, plane.values + plane.times * plane.frequencies);
    return map;
}

void writeText(const SpectrumMap& map, std::ostream& out)
{
    out << map.title << (map.unit.empty() ? "" : ", " + map.unit) << '\n'
        << map.ms.size() << " times, " << map.ms.front() << " to " << map.ms.back() << " ms\n"
        << map.hz.size() << " frequencies, " << map.hz.front() << " to " << map.hz.back() << " Hz\n";
    std::size_t low = map.values.size();
    std::size_t high = map.values.size();
    for (std::size_t i = 0; i < map.values.size(); ++i) {
        if (!std::isfinite(map.values[i]))
            continue;
        if (low == map.values.size() || map.values[i] < map.values[low])
            low = i;
        if (high == map.values.size() || map.values[i] > map.values[high])
            high = i;
    }
    const auto extreme = [&](const char* name, std::size_t i) {
        if (i < map.values.size())
            out << name << map.values[i] << " at " << map.ms[i / map.hz.size()] << " ms, " << map.hz[i % map.hz.size()]
                << " Hz\n";
    };
    extreme("smallest ", low);
    extreme("largest ", high);
}

void writeJson(const SpectrumMap& map, std::ostream& out)
{
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (std::size_t t = 0; t < map.ms.size(); ++t) {
        nlohmann::ordered_json row = nlohmann::ordered_json::array();
        for (std::size_t f = 0; f < map.hz.size(); ++f)
            row.push_back(numberOrNull(map.values[t * map.hz.size() + f]));
        rows.push_back(std::move(row));
    }
    const nlohmann::ordered_json json = {
        {"title", map.title}, {"unit", map.unit}, {"ms", map.ms}, {"hz", map.hz}, {"values", rows}};
    out << json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
