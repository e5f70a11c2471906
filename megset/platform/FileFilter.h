#pragma once

#include "megset/platform/CString.h"

#include <vector>

namespace megset {

/// One kind of file that a file dialog offers: "MEG trial files (*.trl)" and "*.trl".
struct FileFilter
{
    CString label;
    CString pattern;

    bool operator==(const FileFilter&) const = default;
};

/// The kinds in a filter string such as "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||". An empty label or the
/// end of the string ends the list; a label without a pattern is left out.
std::vector<FileFilter> parseFileFilters(const CString& filter);

} // namespace megset
