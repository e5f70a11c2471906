#pragma once
// Files that a command makes: all of them stay, or none.

#include "megset/platform/stopRequest.h"

#include <filesystem>
#include <vector>

namespace megset::cli {

class CreatedFiles
{
public:
    CreatedFiles() = default;
    CreatedFiles(const CreatedFiles&) = delete;
    CreatedFiles& operator=(const CreatedFiles&) = delete;
    /// Removes the files unless keep() was called, and brings back those that they were to replace.
    ~CreatedFiles();

    /// Makes an empty file, which is this command's from then on. Throws std::runtime_error when there is one already,
    /// and when none can be made.
    void add(const std::filesystem::path& path);
    /// Notes a file that has just been made.
    void take(const std::filesystem::path& path) { m_paths.push_back(path); }
    /// Notes a file that is about to be made, and puts the one aside that is there. Throws std::runtime_error for a
    /// folder, and std::filesystem::filesystem_error for a file that can't be renamed.
    void replace(const std::filesystem::path& path);
    /// The files stay, and those that they replace go.
    void keep();

private:
    struct Aside
    {
        std::filesystem::path path;
        std::filesystem::path former;
    };

    StopSignals m_signals; // so that a command that is stopped removes them, too
    std::vector<std::filesystem::path> m_paths;
    std::vector<Aside> m_aside;
};

/// Copies a file, also over one that is there. Throws std::runtime_error with both and the reason.
void copyFile(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace megset::cli
