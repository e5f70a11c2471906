#include "apps/readers/ctf/annotations.h"
#include "apps/readers/ctf/textLines.h"

#include <cmath>
#include <functional>
#include <optional>
#include <set>

namespace megset::ctf {

namespace {

// The name without the number of the system that it was recorded with.
std::string_view withoutSystem(std::string_view name)
{
    return name.substr(0, name.find('-'));
}

std::optional<int> findChannel(const std::vector<Channel>& channels, std::string_view name)
{
    for (std::size_t i = 0; i < channels.size(); ++i)
        if (channels[i].name == name)
            return static_cast<int>(i);
    for (std::size_t i = 0; i < channels.size(); ++i)
        if (withoutSystem(channels[i].name) == withoutSystem(name))
            return static_cast<int>(i);
    return std::nullopt;
}

std::string trialFault(std::string_view trial, int trials)
{
    return "there is no trial " + std::string(trial) + " among the " + std::to_string(trials) + " of the recording";
}

// The numbers among the words.
std::vector<double> numbersOf(const std::vector<std::string_view>& words)
{
    std::vector<double> numbers;
    for (const std::string_view word : words)
        if (const std::optional<double> number = numberOf(word))
            numbers.push_back(*number);
    return numbers;
}

// Class and marker files are one entry behind another, each a list of keys with a line for the value of each. The last
// key opens a list, with its heading and as many rows as were counted before.
class EntryReader
{
public:
    using Row = std::function<void(const std::vector<std::string_view>& words, std::size_t line)>;

    EntryReader(std::string_view text, FileWarnings& faults) : m_lines(linesOf(text)), m_faults(faults) {}

    /// Moves to the next entry. False at the end of the file.
    bool next()
    {
        while (m_line < m_lines.size() && m_lines[m_line] != "CLASSGROUPID:")
            ++m_line;
        return m_line++ < m_lines.size();
    }

    /// Reads an entry up to its end: a value for each key that is asked for, then `row` for each row of its list.
    void read(std::string_view countKey, std::string_view listKey, std::string& name, std::string& comment,
              const Row& row)
    {
        int rows = 0;
        for (; m_line < m_lines.size() && m_lines[m_line] != "CLASSGROUPID:"; ++m_line) {
            const std::string_view key = m_lines[m_line];
            if (key == "NAME:")
                name = value();
            else if (key == "COMMENT:")
                comment = value();
            else if (key == countKey)
                rows = countOfRows();
            else if (key == listKey)
                return readList(rows, row);
        }
    }

private:
    std::string_view value() const { return m_line + 1 < m_lines.size() ? m_lines[m_line + 1] : std::string_view(); }

    int countOfRows() const
    {
        const std::optional<int> rows = integerOf(value());
        if (!rows || *rows < 0)
            m_faults.add(m_line + 2, "this is no number of entries");
        return rows.value_or(0);
    }

    void readList(int rows, const Row& row)
    {
        m_line += 2; // the key and the heading of its columns
        for (int i = 0; i < rows; ++i, ++m_line) {
            if (m_line >= m_lines.size() || m_lines[m_line].empty() || m_lines[m_line] == "CLASSGROUPID:") {
                m_faults.add(m_line + 1,
                             "the list ends after " + std::to_string(i) + " of " + std::to_string(rows) + " entries");
                return;
            }
            row(wordsOf(m_lines[m_line]), m_line + 1);
        }
    }

    std::vector<std::string_view> m_lines;
    FileWarnings& m_faults;
    std::size_t m_line = 0;
};

// The trial that a row begins with; nothing, with a warning, when there is none such.
std::optional<int> trialOf(const std::vector<std::string_view>& words, std::size_t wordsNeeded, int trials,
                           std::size_t line, FileWarnings& faults)
{
    const std::optional<int> trial = words.size() == wordsNeeded ? integerOf(words[0]) : std::nullopt;
    if (!trial) {
        faults.add(line, "the line does not hold a trial" + std::string(wordsNeeded > 1 ? " and a time" : ""));
        return std::nullopt;
    }
    if (*trial < 0 || *trial >= trials) {
        faults.add(line, trialFault(words[0], trials));
        return std::nullopt;
    }
    return trial;
}

} // namespace

std::vector<int> parseBadChannels(std::string_view text, const std::vector<Channel>& channels, const std::string& file,
                                  std::vector<std::string>& warnings)
{
    std::set<int> bad;
    FileWarnings faults(file);
    const std::vector<std::string_view> lines = linesOf(text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].empty())
            continue;
        if (const std::optional<int> channel = findChannel(channels, lines[i]))
            bad.insert(*channel);
        else
            faults.add(i + 1, "there is no channel \"" + std::string(lines[i]) + "\"");
    }
    faults.appendTo(warnings);
    return {bad.begin(), bad.end()};
}

std::vector<BadSegment> parseBadSegments(std::string_view text, int trials, const std::string& file,
                                         std::vector<std::string>& warnings)
{
    std::vector<BadSegment> segments;
    FileWarnings faults(file);
    const std::vector<std::string_view> lines = linesOf(text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::vector<std::string_view> words = wordsOf(lines[i]);
        if (words.empty())
            continue;
        const std::vector<double> numbers = numbersOf(words);
        if (words.size() != 3 || numbers.size() != 3 || numbers[2] < numbers[1])
            faults.add(i + 1, "the line does not hold a trial, a begin and an end behind it");
        else if (!(numbers[0] >= 1.0 && numbers[0] <= trials) || numbers[0] != std::floor(numbers[0]))
            faults.add(i + 1, trialFault(words[0], trials));
        else
            segments.push_back({static_cast<int>(numbers[0]) - 1, numbers[1], numbers[2]});
    }
    faults.appendTo(warnings);
    return segments;
}

std::vector<TrialClass> parseClasses(std::string_view text, int trials, const std::string& file,
                                     std::vector<std::string>& warnings)
{
    std::vector<TrialClass> classes;
    FileWarnings faults(file);
    EntryReader reader(text, faults);
    while (reader.next()) {
        TrialClass& entry = classes.emplace_back();
        std::string comment;
        reader.read("NUMBER OF TRIALS:", "LIST OF TRIALS:", entry.name, comment,
                    [&](const std::vector<std::string_view>& words, std::size_t line) {
                        if (const std::optional<int> trial = trialOf(words, 1, trials, line, faults))
                            entry.trials.push_back(*trial);
                    });
    }
    faults.appendTo(warnings);
    return classes;
}

std::vector<Marker> parseMarkers(std::string_view text, int trials, const std::string& file,
                                 std::vector<std::string>& warnings)
{
    std::vector<Marker> markers;
    FileWarnings faults(file);
    EntryReader reader(text, faults);
    while (reader.next()) {
        Marker& entry = markers.emplace_back();
        reader.read("NUMBER OF SAMPLES:", "LIST OF SAMPLES:", entry.name, entry.comment,
                    [&](const std::vector<std::string_view>& words, std::size_t line) {
                        const std::optional<int> trial = trialOf(words, 2, trials, line, faults);
                        const std::optional<double> time = trial ? numberOf(words[1]) : std::nullopt;
                        if (time)
                            entry.occurrences.push_back({*trial, *time});
                        else if (trial)
                            faults.add(line, "the line does not hold a trial and a time");
                    });
    }
    faults.appendTo(warnings);
    return markers;
}

} // namespace megset::ctf
