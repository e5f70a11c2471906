#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace megset {

/// The folder of real recordings, which MEGSET_TEST_DATA names; nothing when it is not set or not a folder. Tests that
/// need it skip without it: `const auto data = realDataFolder(); if (!data) GTEST_SKIP() << noRealData;`
inline std::optional<std::filesystem::path> realDataFolder()
{
    const char* folder = std::getenv("MEGSET_TEST_DATA");
    std::error_code error;
    if (folder == nullptr || !std::filesystem::is_directory(folder, error))
        return std::nullopt;
    return std::filesystem::path(folder);
}

inline constexpr std::string_view noRealData = "MEGSET_TEST_DATA names no folder";

} // namespace megset
