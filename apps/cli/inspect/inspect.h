#pragma once
// The tree of a file's records and fields, and where a broken file stops making sense.

#include "apps/cli/inspect/InspectTracer.h"

#include <filesystem>
#include <iosfwd>
#include <string>

namespace megset::cli {

struct InspectOptions
{
    bool json = false;
    TreeLimits limits;
};

/// Writes the tree of the file to `out` while it is read, as far as it goes. Gives how that ended. Throws a
/// std::runtime_error, with nothing written, for a file that can't be opened or that begins with no known tag.
TreeReport inspectFile(const std::filesystem::path& path, const InspectOptions& options, std::ostream& out);

/// The same as lines of text: what is wrong, where, and what the reader had to say; empty for a file that is all right.
std::string describeFaults(const TreeReport& report);

} // namespace megset::cli
