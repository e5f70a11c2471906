#pragma once
// Makes a dataset on disk of a recording.

#include <cstdint>
#include <string>
#include <vector>

namespace megset::cli {

struct ImportArguments
{
    std::string source;  ///< folder NAME.ds, or file NAME.mega
    std::string target;  ///< dataset; ".meg" is added where it has no extension
    std::string session; ///< empty: the target's name
    bool force = false;  ///< replace files that exist
};

struct ImportSummary
{
    int trials = 0;
    int channels = 0;
    std::int64_t samples = 0; ///< of a trial
    std::vector<std::string> warnings;
};

/// Throws std::runtime_error with file and reason; no half-made dataset is left then.
ImportSummary importRecording(const ImportArguments& arguments);

} // namespace megset::cli
