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

/// Compares the files of fuzz/corpus/<target>/, or writes them with MEGSET_WRITE_SEEDS set.
inline void compareOrWrite(const std::string& target, const Seeds& seeds)
{
    const auto folder = std::filesystem::path(MEGSET_SOURCE_DIR) / "fuzz/corpus" / target;
    for (const auto& [name, bytes] : seeds) {
        if (std::getenv("MEGSET_WRITE_SEEDS") != nullptr) {
            std::filesystem::create_directories(folder);
            std::ofstream(folder / name, std::ios::binary)
                .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        }
        std::ifstream file(folder / name, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), {});
        EXPECT_TRUE(sameBytes(std::as_bytes(std::span(text)), bytes)) << name;
    }
}

} // namespace megset
