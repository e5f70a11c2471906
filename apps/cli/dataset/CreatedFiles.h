#pragma once
// Files that a command makes: all of them stay, or none.

#include <filesystem>
#include <vector>

namespace megset::cli {

class CreatedFiles
{
public:
    CreatedFiles() = default;
    CreatedFiles(const CreatedFiles&) = delete;
    CreatedFiles& operator=(const CreatedFiles&) = delete;
    /// Removes the files unless keep() was called.
    ~CreatedFiles();

    /// Notes a file that is about to be made. Throws std::runtime_error when there is one already.
    void add(const std::filesystem::path& path);
    /// Notes a file that has just been made.
    void take(const std::filesystem::path& path) { m_paths.push_back(path); }
    void keep() { m_paths.clear(); }

private:
    std::vector<std::filesystem::path> m_paths;
};

} // namespace megset::cli
