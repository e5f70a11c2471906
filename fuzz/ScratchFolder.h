#pragma once
// A folder for the files of one input, for readers that open files by themselves. It lies in memory where the system
// has a place for that, and goes when the program ends.

#include "fuzz/harness.h"

#include "megset/platform/paths.h"

#include "tests/kit/SilentHost.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include <stdlib.h>

namespace megset {

class ScratchFolder
{
public:
    ScratchFolder() : m_native(make()), m_path(fromNative(m_native) + "\\") {}
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_native, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Removes what the input before has left.
    void clear() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(m_native))
            std::filesystem::remove_all(entry.path());
    }
    const std::filesystem::path& native() const { return m_native; }
    /// The path of a file in it, in library form.
    CString path(const CString& name) const { return m_path + name; }
    /// Writes a file, and gives its path in library form.
    CString write(const std::string& name, std::span<const std::byte> bytes) const
    {
        std::ofstream file(m_native / name, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        file.close();
        require(file.good());
        return path(name);
    }

private:
    static std::filesystem::path make()
    {
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = std::filesystem::is_directory(memory);
        std::string name = (hasMemory ? memory : std::filesystem::temp_directory_path()) / "megset_fuzz_XXXXXX";
        require(mkdtemp(name.data()) != nullptr);
        return name;
    }

    std::filesystem::path m_native;
    CString m_path;
};

/// The program's one.
inline const ScratchFolder& scratch()
{
    static const ScratchFolder folder;
    return folder;
}

/// Answers every question with Yes, and chooses one file of the scratch folder.
class YesHost : public SilentHost
{
public:
    explicit YesHost(const CString& file) : SilentHost(IDYES), m_file(file) {}
    std::optional<FileChoice> chooseFile(const FileRequest&) override { return FileChoice{scratch().path(m_file), 1}; }

private:
    CString m_file;
};

/// The library moves to the folder of a dataset, while what the fuzzer writes has paths from where it was started.
class KeepDirectory
{
public:
    KeepDirectory() : m_former(std::filesystem::current_path()) {}
    ~KeepDirectory() { std::filesystem::current_path(m_former); }
    KeepDirectory(const KeepDirectory&) = delete;
    KeepDirectory& operator=(const KeepDirectory&) = delete;

private:
    std::filesystem::path m_former;
};

} // namespace megset
