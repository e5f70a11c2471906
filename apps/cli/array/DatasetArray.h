#pragma once
// The file of several datasets, for the commands.

#include "megset/core/CArrayMEDataSet.h"
#include "megset/platform/CDocument.h"

#include <filesystem>
#include <iosfwd>

namespace megset::cli {

/// An array of datasets as its file has it. The trials stay in files of their own, which are neither opened nor
/// written; they are looked for beside the array first, by their names.
class DatasetArray
{
public:
    /// A new array.
    DatasetArray() = default;
    /// Reads a file. Throws std::runtime_error with path and offset for one that can't be read to its last byte.
    explicit DatasetArray(const std::filesystem::path& path);

    /// Appends a dataset; its trials' paths are those where they are now. Throws std::runtime_error when the dataset
    /// can't be read or a trial isn't found.
    void add(const std::filesystem::path& dataset);
    /// Removes the dataset with that index, counted from 0. Throws std::runtime_error when there is none.
    void remove(int index);
    /// Writes the file in one step. Throws std::runtime_error, with the former file kept, also when a dataset would
    /// find another file than its trial beside it.
    void store(const std::filesystem::path& path);

    int size() const { return m_array.getTotalDataset(); }
    void writeText(std::ostream& out) const;
    /// A JSON object with the keys of docs/commands.md.
    void writeJson(std::ostream& out) const;

private:
    const CMEGDatazk& at(int index) const;
    CString findTrial(int index, int trial) const;
    int countTrials(int index) const;
    void moveTo(const std::filesystem::path& path);

    std::filesystem::path m_path; ///< absolute; empty for a new array
    CDocument m_document;         ///< of that path; outlives the datasets that may point to it
    CArrayMEDataSetzk m_array;
    int m_nOfFile = 0; ///< datasets that were read from the file; those behind them have been added
};

} // namespace megset::cli
