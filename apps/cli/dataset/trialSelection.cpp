#include "apps/cli/dataset/trialSelection.h"

#include "apps/cli/dataset/TrialSummary.h"
#include "megset/platform/paths.h"

#include <charconv>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string_view>

namespace megset::cli {

namespace {

int parseTrial(std::string_view text, const std::string& whole, int total)
{
    int trial = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), trial);
    if (text.empty() || error == std::errc::invalid_argument || end != text.data() + text.size())
        throw std::runtime_error("\"" + whole + "\" tells no trials: they are of the form N or A:B");
    if (error != std::errc() || trial < 0 || trial >= total)
        throw std::runtime_error("there is no trial " + std::string(text) + "; the dataset has " +
                                 std::to_string(total));
    return trial;
}

} // namespace

std::vector<int> selectTrials(const CMEGDatazk& dataset, const std::vector<std::string>& texts)
{
    const int total = dataset.m_aTrialFilePath.GetSize();
    std::set<int> trials;
    for (const std::string& text : texts) {
        const std::string_view view = text;
        const std::size_t colon = view.find(':');
        const int first = parseTrial(view.substr(0, colon), text, total);
        const int last = colon == std::string_view::npos ? first : parseTrial(view.substr(colon + 1), text, total);
        if (last < first)
            throw std::runtime_error("the trials \"" + text + "\" end before they begin");
        for (int i = first; i <= last; ++i)
            trials.insert(i);
    }
    return {trials.begin(), trials.end()};
}

std::vector<int> allTrials(const CMEGDatazk& dataset)
{
    std::vector<int> trials(static_cast<std::size_t>(dataset.m_aTrialFilePath.GetSize()));
    std::iota(trials.begin(), trials.end(), 0);
    return trials;
}

TrialTimes timesOfTrial(const OpenDataset& open, int trial)
{
    const CMEGRecordInfozkProzk& recording = open.dataset.m_recordInfo;
    if (!(recording.m_dRecSampleRate > 0.0))
        throw std::runtime_error("the dataset's sampling rate is not above 0 Hz");
    const CString file = findTrialFile(open, trial);
    const auto summary = file.IsEmpty() ? std::nullopt : readTrialSummary(toNative(file));
    if (!summary)
        throw std::runtime_error("its file can't be read");
    return {summary->samples, recording.m_dRecSampleRate, recording.m_nRecPreTrigPts};
}

} // namespace megset::cli
