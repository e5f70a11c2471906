#include "apps/cli/dataset/CreatedFiles.h"

#include "apps/cli/inspect/fileTag.h"

#include "megset/platform/nativeFile.h"

#include <stdexcept>
#include <string>
#include <system_error>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

fs::path freeName(const fs::path& path)
{
    fs::path name = path.string() + ".former";
    for (int i = 2; fs::exists(name); ++i)
        name = path.string() + ".former" + std::to_string(i);
    return name;
}

} // namespace

CreatedFiles::~CreatedFiles()
{
    std::error_code ignored; // what can't be removed or renamed can't be told from here either
    for (const fs::path& path : m_paths)
        fs::remove(path, ignored);
    for (const Aside& aside : m_aside)
        fs::rename(aside.former, aside.path, ignored);
}

void CreatedFiles::add(const fs::path& path)
{
    m_paths.reserve(m_paths.size() + 1);
    if (const std::error_code fault = createNewFile(path))
        throw std::runtime_error(shownPath(path) + (fault == std::errc::file_exists
                                                        ? ": exists already"
                                                        : ": can't be written: " + fault.message()));
    m_paths.push_back(path);
}

void CreatedFiles::replace(const fs::path& path)
{
    if (fs::is_directory(path))
        throw std::runtime_error(shownPath(path) + ": is a folder");
    if (fs::exists(path)) {
        const fs::path former = freeName(path);
        fs::rename(path, former);
        m_aside.push_back({path, former});
    }
    m_paths.push_back(path);
}

void CreatedFiles::keep()
{
    m_paths.clear();
    std::error_code ignored; // a former file that can't be removed lies beside the new one
    for (const Aside& aside : m_aside)
        fs::remove(aside.former, ignored);
    m_aside.clear();
}

// The system's copy tells a full disk as a fault of the device.
void copyFile(const fs::path& from, const fs::path& to)
{
    std::error_code fault;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, fault);
    std::error_code ignored;
    if (fault)
        throw std::runtime_error(
            shownPath(to) + ": can't be copied from " + shownPath(from) + ": " +
            (fs::space(to.parent_path(), ignored).available == 0 ? "the disk is full" : fault.message()));
}

} // namespace megset::cli
