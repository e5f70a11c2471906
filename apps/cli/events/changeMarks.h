#pragma once
// Marks added to a dataset and removed from it.

#include "apps/cli/events/markList.h"

#include <string>
#include <vector>

namespace megset::cli {

/// Where marks are meant. Places are as parsePlace takes them, in each of the trials.
struct MarkPlaces
{
    std::vector<std::string> places;
    std::vector<int> trials; ///< in ascending order; none: the current one for what is added, all for what is removed
};

// All of them give the marks concerned, and throw std::runtime_error, which tells the trial, with the dataset half
// changed: it is not to be stored then. No trial is opened.

/// Adds marks to the marker of that name among those set by hand, which is made where there is none.
MarkList addHandMarks(OpenDataset& open, const std::string& name, const MarkPlaces& at);

/// Adds bad segments, as the library does. One that overlaps another one of its trial is refused.
MarkList addBadSegments(OpenDataset& open, const MarkPlaces& at);

/// Removes the marks of the marker of that name, all or those that have a sample in one of the places; a marker that
/// loses the last one goes, too. `lists` tells where to look for the name, and none stands for all; a name that is in
/// several of them is refused, and so is a removal of nothing from a marker that has marks.
MarkList removeMarks(OpenDataset& open, const std::vector<std::string>& lists, const std::string& name,
                     const MarkPlaces& at);

} // namespace megset::cli
