#pragma once

#include "megset/platform/CString.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace megset {

/// A folder of its own below the system's folder for temporary files. Its end removes it with all that is in it, and
/// brings back the current directory that was there at its beginning.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// The folder in library form, with its closing backslash; with a name, the path of that file in it. The name may
    /// hold folders, in library form.
    CString path() const { return m_path; }
    CString path(const CString& name) const { return m_path + name; }
    /// The same in native form.
    const std::filesystem::path& native() const { return m_native; }
    std::filesystem::path native(const CString& name) const;

    /// Makes a file, and gives its path in library form.
    CString write(const CString& name, std::span<const std::byte> bytes) const;
    CString write(const CString& name, std::string_view text) const;
    /// Makes a folder with those that lead to it, and gives its path in library form, with its closing backslash.
    CString makeFolder(const CString& name) const;
    /// A file's bytes. Fails the test when it can't be read.
    std::vector<std::byte> read(const CString& name) const;
    bool has(const CString& name) const { return std::filesystem::exists(native(name)); }
    /// Names of what is right in the folder, sorted.
    std::vector<std::string> names() const;

    /// Makes the folder the current directory.
    void enter() const { std::filesystem::current_path(m_native); }

private:
    std::filesystem::path m_formerDirectory;
    std::filesystem::path m_native;
    CString m_path;
};

} // namespace megset
