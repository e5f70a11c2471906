#pragma once
// Whether a dataset and its trials agree.

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace megset::cli {

/// One thing that was found. A fault is wrong; a note is worth knowing, and the library mends or bears it.
struct Finding
{
    bool isFault = true;
    std::string file; ///< the file concerned
    std::string text;
};

struct CheckReport
{
    std::string dataset;
    int trials = 0;     ///< that the dataset names
    int trialsRead = 0; ///< that could be read
    std::vector<Finding> findings;

    int faults() const;
};

/// Reads the dataset and every trial, one at a time, and compares counts, paths, numbers of samples, flags and marks.
/// Nothing is changed. A file that can't be read is a fault.
CheckReport checkDataset(const std::filesystem::path& path);

void writeText(const CheckReport& report, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeJson(const CheckReport& report, std::ostream& out);

} // namespace megset::cli
