#pragma once
// The marks of a dataset as a list.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/dataset/sampleRange.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace megset::cli {

/// The lists that a dataset keeps marks in: "trigger", "mark", "segment", "class", "threshold", "pattern", "wave".
const std::vector<std::string>& markLists();

/// The manager of a list; null for another name.
CMarkerManagerzk* managerOfList(CMEGDatazk& dataset, const std::string& list);

/// A marker: a kind of mark.
struct MarkerRow
{
    std::string list;
    std::string name; ///< of a nameless marker of segments what its manager says of itself
    std::int64_t value = 0;
    bool isEmpty = true;             ///< has no mark at all
    CMarkerDatazk* marker = nullptr; ///< the dataset's, as long as that has it
    int place = 0;                   ///< in its manager
};

/// All markers of these lists, or of all for none, in the order of markLists(), empty places left out.
std::vector<MarkerRow> listMarkers(CMEGDatazk& dataset, const std::vector<std::string>& lists = {});

/// One mark, an occurrence of a marker.
struct MarkRow
{
    std::size_t marker = 0; ///< index into the markers
    int occurrence = 0;     ///< index into the marker's
    int trial = 0;
    int channel = 0;
    SampleRange samples; ///< at the dataset's rate as it is now, both ends included
};

struct MarkList
{
    TrialTimes times; ///< of the recording
    std::vector<MarkerRow> markers;
    std::vector<MarkRow> marks; ///< by trial, and in each of them by sample

    /// Trials that have one of the marks.
    std::size_t trials() const;
};

/// Where an occurrence of a marker is at the dataset's rate as it is now. Re-sampling moves triggers alone: other marks
/// keep the samples at which they were set, and their backup tells these at the recorded rate. An end before the begin
/// stands for no end.
SampleRange samplesOfMark(const CMEGDatazk& dataset, const CMarkerDatazk& marker, int occurrence);

/// What is looked for; nothing stands for all.
struct MarkFilter
{
    std::vector<std::string> lists;
    std::optional<std::string> name; ///< in full
    std::vector<int> trials;         ///< in ascending order
};

/// The marks that meet the filter. Throws std::runtime_error that suggests the nearest names when no marker has the
/// name.
MarkList listMarks(CMEGDatazk& dataset, const MarkFilter& filter);

/// Puts them in order: by trial, in each trial by sample.
void sortMarks(std::vector<MarkRow>& marks);

void writeText(const MarkList& list, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeJson(const MarkList& list, std::ostream& out);

} // namespace megset::cli
