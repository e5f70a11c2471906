#pragma once
// The files of a dataset as they were, while it is changed in place: a change is done as a whole, or not at all.

#include "megset/platform/nativeFile.h"
#include "megset/platform/stopRequest.h"

#include <filesystem>
#include <string>
#include <vector>

namespace megset::cli {

/// Files that are written over lie in the folder DATASET.meg.former until the change is done, beside a copy of the
/// dataset's own file. A change that is cut off without a chance to clear up leaves that folder.
class FormerFiles
{
public:
    /// Throws std::runtime_error when such a folder tells of a change that was cut off.
    explicit FormerFiles(const std::filesystem::path& dataset);
    FormerFiles(const FormerFiles&) = delete;
    FormerFiles& operator=(const FormerFiles&) = delete;
    /// Brings the files back unless keepNew() was called.
    ~FormerFiles();

    /// Puts the file aside that is about to be written, once. One that is not there, or that may not be written, stays.
    void putAside(const std::filesystem::path& path);
    /// The change is done: what was put aside goes. Where nothing was written in its place, it comes back.
    void keepNew();

private:
    struct Aside
    {
        std::filesystem::path path;
        std::filesystem::path former;
    };

    void makeFolder();
    void removeFolder();

    StopSignals m_signals;
    std::filesystem::path m_dataset;
    std::filesystem::path m_folder;
    std::vector<Aside> m_aside;
    bool m_hasFolder = false;
    NativeFile m_held; // the dataset's file in the folder
};

/// The folder of a change of this dataset that was cut off, with the dataset's file in it; empty when there is none,
/// and while a change is going on.
std::filesystem::path cutOffChange(const std::filesystem::path& dataset);

/// What to do with it, in words.
std::string adviceAfterCutOff(const std::filesystem::path& folder);

} // namespace megset::cli
