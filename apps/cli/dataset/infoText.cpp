#include "apps/cli/dataset/DatasetInfo.h"

#include "apps/cli/dataset/shownLine.h"

#include <array>
#include <iomanip>
#include <map>
#include <ostream>
#include <sstream>

namespace megset::cli {

namespace {

std::string number(double value)
{
    std::ostringstream text;
    text << std::setprecision(10) << value;
    return text.str();
}

std::string byteSize(std::uint64_t bytes)
{
    constexpr std::array<const char*, 5> units = {"bytes", "kB", "MB", "GB", "TB"};
    auto size = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (size >= 1000.0 && unit + 1 < units.size()) {
        size /= 1000.0;
        ++unit;
    }
    std::ostringstream text;
    text << std::fixed << std::setprecision(unit == 0 ? 0 : 1) << size << ' ' << units[unit];
    return text.str();
}

void line(std::ostream& out, const std::string& name, const std::string& value)
{
    out << std::left << std::setw(16) << name << value << '\n';
}

std::string countOf(std::size_t count, const std::string& thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

// "301 (meg 273, ref 28)"
std::string channelCounts(const DatasetInfo& info)
{
    std::map<std::string, int> kinds;
    for (const ChannelInfo& channel : info.channels)
        ++kinds[channel.kind];
    std::string text;
    for (const char* kind : {"meg", "ref", "eeg", "trigger", "other"})
        if (kinds.contains(kind))
            text += (text.empty() ? "" : ", ") + std::string(kind) + ' ' + std::to_string(kinds[kind]);
    return std::to_string(info.channels.size()) + (text.empty() ? "" : " (" + text + ")");
}

std::string placeOfTrigger(std::int64_t samplesBefore)
{
    return samplesBefore >= 0 ? ", of these " + std::to_string(samplesBefore) + " before the trigger"
                              : ", the first of them " + std::to_string(-samplesBefore) + " behind the trigger";
}

// Commands take the current trial where none is named.
std::string trialCount(const DatasetInfo& info)
{
    return std::to_string(info.trials.size()) +
           (info.trials.size() > 1 ? ", of these " + std::to_string(info.currentTrial) + " is the current one" : "");
}

void writeSession(const DatasetInfo& info, std::ostream& out)
{
    line(out, "session", shownLine(info.session));
    line(out, "file", shownLine(info.file) + ", " + byteSize(info.bytes));
    line(out, "rate", number(info.rate) + " Hz");
    line(out, "samples", std::to_string(info.samples) + placeOfTrigger(info.preTrigger));
    if (info.resamplingFactor != 1)
        line(out, "re-sampled",
             "by " + std::to_string(info.resamplingFactor) + " from " + number(info.rawRate) + " Hz, " +
                 std::to_string(info.rawSamples) + " samples");
    if (info.averages > 0)
        line(out, "averages", std::to_string(info.averages));
    line(out, "frame", info.frame);
    line(out, "filter range", number(info.filterLow) + " to " + number(info.filterHigh) + " Hz");
    for (const std::string& done : info.processing)
        line(out, "processing", shownLine(done));
    line(out, "trials", trialCount(info));
    line(out, "channels", channelCounts(info));
}

void writeTrials(const DatasetInfo& info, std::ostream& out)
{
    if (info.trials.empty())
        return;
    out << "\ntrial  kind      good   samples  size        file\n";
    for (const TrialInfo& trial : info.trials) {
        out << std::right << std::setw(5) << trial.index << "  " << std::left << std::setw(10)
            << (!trial.found      ? "missing"
                : trial.isVirtual ? "virtual"
                                  : "recorded")
            << std::setw(5) << (trial.good ? "good" : "bad") << std::right << std::setw(9) << trial.samples << "  "
            << std::left << std::setw(12) << byteSize(trial.bytes) << shownLine(trial.file) << '\n';
    }
}

std::string place(const std::optional<Position>& position)
{
    if (!position)
        return "";
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << position->x << ' ' << position->y << ' ' << position->z;
    return text.str();
}

void writeChannels(const DatasetInfo& info, std::ostream& out)
{
    if (info.channels.empty())
        return;
    out << "\nindex  name              type  kind     unit  good  shown  order  position, mm\n";
    for (const ChannelInfo& channel : info.channels) {
        out << std::right << std::setw(5) << channel.index << "  " << std::left << std::setw(18)
            << shownLine(channel.name) << std::setw(6) << channel.type << std::setw(9) << channel.kind << std::setw(6)
            << channel.unit << std::setw(6) << (channel.good ? "yes" : "no") << std::setw(7)
            << (channel.shown ? "yes" : "no") << std::setw(7)
            << (channel.gradientOrder ? std::to_string(*channel.gradientOrder) : "") << place(channel.position) << '\n';
    }
}

void writeMarks(const DatasetInfo& info, std::ostream& out)
{
    if (info.marks.empty())
        return;
    out << "\nmarks\n";
    for (const MarkInfo& mark : info.marks)
        out << "  " << std::left << std::setw(10) << mark.list << std::setw(18) << shownLine(mark.name)
            << countOf(static_cast<std::size_t>(mark.count), "occurrence") << '\n';
}

} // namespace

void writeText(const DatasetInfo& info, std::ostream& out)
{
    writeSession(info, out);
    writeTrials(info, out);
    writeChannels(info, out);
    writeMarks(info, out);
}

} // namespace megset::cli
