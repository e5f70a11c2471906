#pragma once
// The first files of a fuzz target's corpus.

#include "tests/kit/ByteBuilder.h"

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// Inputs by their names.
using Seeds = std::map<std::string, std::vector<std::byte>>;

inline std::filesystem::path seedPath(const std::string& target, const std::string& name)
{
    return std::filesystem::path(MEGSET_SOURCE_DIR) / "fuzz/corpus" / target / name;
}

/// The bytes of fuzz/corpus/<target>/<name>; none where it can't be read.
inline std::vector<std::byte> seedFile(const std::string& target, const std::string& name)
{
    std::ifstream file(seedPath(target, name), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// Compares the files of fuzz/corpus/<target>/, or writes them with MEGSET_WRITE_SEEDS set.
inline void compareOrWrite(const std::string& target, const Seeds& seeds)
{
    for (const auto& [name, bytes] : seeds) {
        const std::filesystem::path path = seedPath(target, name);
        if (std::getenv("MEGSET_WRITE_SEEDS") != nullptr) {
            std::filesystem::create_directories(path.parent_path());
            std::ofstream(path, std::ios::binary)
                .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        }
        EXPECT_TRUE(sameBytes(seedFile(target, name), bytes)) << name;
    }
}

} // namespace megset
