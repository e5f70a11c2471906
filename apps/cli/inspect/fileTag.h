#pragma once
// What a file says that it is.

#include "apps/cli/inspect/recordKinds.h"

#include <filesystem>
#include <string>

namespace megset::cli {

/// The kind that the tag at the beginning of the file names; the file stands at its beginning before and after. Throws
/// a std::runtime_error that tells the first bytes and all known tags when there is none.
const RecordKind& kindOfFile(CFile& file, const std::filesystem::path& path);

/// The same, but null when there is none.
const RecordKind* kindOf(CFile& file);

/// A path fit for a terminal.
std::string shownPath(const std::filesystem::path& path);

} // namespace megset::cli
