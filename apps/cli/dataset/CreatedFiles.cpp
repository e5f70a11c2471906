#include "apps/cli/dataset/CreatedFiles.h"

#include "apps/cli/inspect/fileTag.h"

#include <stdexcept>

namespace megset::cli {

CreatedFiles::~CreatedFiles()
{
    for (const std::filesystem::path& path : m_paths) {
        std::error_code ignored; // what can't be removed can't be told from here either
        std::filesystem::remove(path, ignored);
    }
}

void CreatedFiles::add(const std::filesystem::path& path)
{
    if (std::filesystem::exists(path))
        throw std::runtime_error(shownPath(path) + ": exists already");
    m_paths.push_back(path);
}

} // namespace megset::cli
