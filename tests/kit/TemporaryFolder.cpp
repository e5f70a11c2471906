#include "tests/kit/TemporaryFolder.h"

#include "megset/platform/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include <gtest/gtest.h>

namespace megset {

TemporaryFolder::TemporaryFolder() : m_formerDirectory(std::filesystem::current_path())
{
    const auto parent = std::filesystem::canonical(std::filesystem::temp_directory_path());
    std::string name = (parent / "megset_test_XXXXXX").native();
    if (mkdtemp(name.data()) == nullptr)
        throw std::filesystem::filesystem_error("no temporary folder", name,
                                                std::error_code(errno, std::generic_category()));
    m_native = name;
    m_path = fromNative(m_native) + "\\";
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::current_path(m_formerDirectory, ignored);
    std::filesystem::remove_all(m_native, ignored);
}

std::filesystem::path TemporaryFolder::native(const CString& name) const
{
    return m_native / toNative(name);
}

CString TemporaryFolder::write(const CString& name, std::span<const std::byte> bytes) const
{
    std::ofstream file(native(name), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    EXPECT_TRUE(file.good()) << native(name);
    return path(name);
}

CString TemporaryFolder::write(const CString& name, std::string_view text) const
{
    return write(name, std::as_bytes(std::span(text)));
}

CString TemporaryFolder::makeFolder(const CString& name) const
{
    std::filesystem::create_directories(native(name));
    return path(name) + "\\";
}

std::vector<std::byte> TemporaryFolder::read(const CString& name) const
{
    std::ifstream file(native(name), std::ios::binary);
    EXPECT_TRUE(file.good()) << native(name);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(m_native))
        found.push_back(entry.path().filename().native());
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace megset
