#include "apps/cli/events/markList.h"

#include "apps/cli/dataset/nearestNames.h"
#include "apps/cli/dataset/shownLine.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string_view>

namespace megset::cli {

namespace {

std::string nameOf(const std::string& list, const CMarkerManagerzk& manager, const CMarkerDatazk& marker)
{
    const bool isNameless = marker.m_strMarkName.IsEmpty() && list == "segment";
    return (isNameless ? manager.m_strMgrInfo : marker.m_strMarkName).toUtf8();
}

void keepThoseNamed(std::vector<MarkerRow>& markers, const std::string& name)
{
    std::vector<std::pair<std::size_t, std::string>> known;
    for (const MarkerRow& row : markers)
        known.emplace_back(editDistance(name, row.name), row.name);
    std::erase_if(markers, [&](const MarkerRow& row) { return row.name != name; });
    if (!markers.empty())
        return;
    throw std::runtime_error("there is no marker " + name +
                             (known.empty() ? ", and no other" : "; the nearest names are " + nearestNames(known)));
}

// Lines for very many marks: a stream for each number would take too long.
class LineWriter
{
public:
    explicit LineWriter(std::ostream& out) : m_out(out) { m_text.reserve(blockBytes + lineBytes); }
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;
    ~LineWriter() { flush(); }

    LineWriter& operator<<(std::string_view text)
    {
        m_text += text;
        if (m_text.size() >= blockBytes)
            flush();
        return *this;
    }
    template <class Integer>
    void integer(Integer value, std::size_t width = 0)
    {
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        padded({digits.data(), end}, width);
    }
    /// In microseconds, without zeros at the end; "-" for what is no number.
    void milliseconds(double value, std::size_t width)
    {
        std::array<char, 340> digits{};
        if (!std::isfinite(value))
            return padded("-", width);
        const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 3).ptr;
        std::string_view text(digits.data(), end);
        text.remove_suffix(text.size() - 1 - text.find_last_not_of('0'));
        if (text.ends_with('.'))
            text.remove_suffix(1);
        padded(text == "-0" ? "0" : text, width);
    }
    /// With all digits; null for what is no number, as JSON has none for it.
    void real(double value)
    {
        std::array<char, 32> digits{};
        if (!std::isfinite(value))
            padded("null", 0);
        else
            padded({digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr}, 0);
    }

private:
    static constexpr std::size_t blockBytes = 1 << 16;
    static constexpr std::size_t lineBytes = 1 << 9;

    void padded(std::string_view text, std::size_t width)
    {
        if (text.size() < width)
            m_text.append(width - text.size(), ' ');
        *this << text;
    }
    void flush()
    {
        m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
        m_text.clear();
    }

    std::ostream& m_out;
    std::string m_text;
};

std::string jsonText(const std::string& text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// What all marks of a marker share, as members of a JSON object.
std::string jsonMarker(const MarkerRow& row)
{
    return "\"list\": " + jsonText(row.list) + ", \"name\": " + jsonText(row.name) +
           ", \"value\": " + std::to_string(row.value);
}

} // namespace

const std::vector<std::string>& markLists()
{
    static const std::vector<std::string> lists = {"trigger",   "mark",    "segment", "class",
                                                   "threshold", "pattern", "wave"};
    return lists;
}

CMarkerManagerzk* managerOfList(CMEGDatazk& dataset, const std::string& list)
{
    const std::array<CMarkerManagerzk*, 7> managers = {dataset.getTrigManager(),       dataset.getMarkerManager(),
                                                       dataset.getSegmentManager(),    dataset.getClassManager(),
                                                       dataset.getThreshodMkManager(), dataset.getPatternMkManager(),
                                                       dataset.getAiMarkWave2Disease()};
    const auto found = std::ranges::find(markLists(), list) - markLists().begin();
    return found < std::ssize(managers) ? managers[static_cast<std::size_t>(found)] : nullptr;
}

std::vector<MarkerRow> listMarkers(CMEGDatazk& dataset, const std::vector<std::string>& lists)
{
    std::vector<MarkerRow> rows;
    for (const std::string& list : markLists()) {
        if (!lists.empty() && std::ranges::find(lists, list) == lists.end())
            continue;
        const CMarkerManagerzk& manager = *managerOfList(dataset, list);
        for (int i = 0; i < manager.getTotalMarkers(); ++i)
            if (CMarkerDatazk* const marker = manager.m_aMarkers.GetAt(i))
                rows.push_back({list, nameOf(list, manager, *marker), marker->m_nMarkValue,
                                marker->getTotalTrgMrkPts() == 0, marker, i});
    }
    return rows;
}

SampleRange samplesOfMark(const CMEGDatazk& dataset, const CMarkerDatazk& marker, int occurrence)
{
    const MarkTrigClass* point = marker.m_aMarkPts.GetAt(occurrence);
    std::int64_t factor = 1;
    if (dataset.m_recordInfo.m_nResampleFactor > 1 && marker.m_aMarkPtsBk.GetSize() == marker.m_aMarkPts.GetSize() &&
        marker.m_aMarkPtsBk.GetAt(occurrence) != nullptr) {
        point = marker.m_aMarkPtsBk.GetAt(occurrence);
        factor = dataset.m_recordInfo.m_nResampleFactor;
    }
    const std::int64_t begin = point->m_nMarkPtBegin / factor;
    return {begin, std::max(begin, point->m_nMarkPtEnd / factor)};
}

MarkList listMarks(CMEGDatazk& dataset, const MarkFilter& filter)
{
    const CMEGRecordInfozkProzk& recording = dataset.m_recordInfo;
    MarkList list;
    list.times = {recording.m_nRecTotalSample, recording.m_dRecSampleRate, recording.m_nRecPreTrigPts};
    list.markers = listMarkers(dataset, filter.lists);
    if (filter.name)
        keepThoseNamed(list.markers, *filter.name);
    for (std::size_t m = 0; m < list.markers.size(); ++m) {
        const CMarkerDatazk& marker = *list.markers[m].marker;
        for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i) {
            const MarkTrigClass* const point = marker.m_aMarkPts.GetAt(i);
            if (point != nullptr &&
                (filter.trials.empty() || std::ranges::binary_search(filter.trials, point->m_nMarkPtTrial)))
                list.marks.push_back(
                    {m, i, point->m_nMarkPtTrial, point->m_nMarkPtChannel, samplesOfMark(dataset, marker, i)});
        }
    }
    sortMarks(list.marks);
    return list;
}

void sortMarks(std::vector<MarkRow>& marks)
{
    std::ranges::stable_sort(marks, [](const MarkRow& a, const MarkRow& b) {
        return a.trial != b.trial ? a.trial < b.trial : a.samples.from < b.samples.from;
    });
}

std::size_t MarkList::trials() const
{
    std::set<int> found;
    for (const MarkRow& mark : marks)
        found.insert(mark.trial);
    return found.size();
}

void writeText(const MarkList& list, std::ostream& out)
{
    std::vector<std::string> ends; // of lines: what the marks of a marker share
    for (const MarkerRow& row : list.markers)
        ends.push_back("  " + row.list + std::string(11 - row.list.size(), ' ') + shownLine(row.name) + "\n");
    LineWriter lines(out);
    lines << "trial     begin       end   begin, ms     end, ms  list       name\n";
    for (const MarkRow& mark : list.marks) {
        lines.integer(mark.trial, 5);
        lines.integer(mark.samples.from, 10);
        lines.integer(mark.samples.to, 10);
        lines.milliseconds(list.times.msOf(mark.samples.from), 12);
        lines.milliseconds(list.times.msOf(mark.samples.to), 12);
        lines << ends[mark.marker];
    }
    for (std::size_t m = 0; m < list.markers.size(); ++m)
        if (list.markers[m].isEmpty)
            lines << "    -         -         -           -           -" << ends[m];
}

void writeJson(const MarkList& list, std::ostream& out)
{
    std::vector<std::string> shared;
    std::vector<std::int64_t> counts(list.markers.size());
    for (const MarkerRow& row : list.markers)
        shared.push_back(jsonMarker(row));
    LineWriter lines(out);
    lines << "{\n \"marks\": [";
    const char* separator = "\n  {\"trial\": ";
    for (const MarkRow& mark : list.marks) {
        lines << separator;
        lines.integer(mark.trial);
        lines << ", " << shared[mark.marker] << ", \"channel\": ";
        lines.integer(mark.channel);
        lines << ", \"samples\": [";
        lines.integer(mark.samples.from);
        lines << ", ";
        lines.integer(mark.samples.to);
        lines << "], \"ms\": [";
        lines.real(list.times.msOf(mark.samples.from));
        lines << ", ";
        lines.real(list.times.msOf(mark.samples.to));
        lines << "]}";
        separator = ",\n  {\"trial\": ";
        ++counts[mark.marker];
    }
    lines << "\n ],\n \"markers\": [";
    separator = "\n  {";
    for (std::size_t m = 0; m < list.markers.size(); ++m) {
        lines << separator << shared[m] << ", \"marks\": ";
        lines.integer(counts[m]);
        lines << "}";
        separator = ",\n  {";
    }
    lines << "\n ]\n}\n";
}

} // namespace megset::cli
