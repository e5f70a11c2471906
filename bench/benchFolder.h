#pragma once
// Where benchmarks write their files.

#include <filesystem>
#include <string>

#include <stdlib.h> // NOLINT(modernize-deprecated-headers): mkdtemp is POSIX

namespace megset {

/// A folder that goes with the program; the benchmarks of one run share it.
inline const std::filesystem::path& benchFolder()
{
    struct Folder
    {
        Folder()
        {
            std::string name = (std::filesystem::temp_directory_path() / "megset_bench_XXXXXX").native();
            path = ::mkdtemp(name.data());
        }
        ~Folder() { std::filesystem::remove_all(path); }
        std::filesystem::path path;
    };
    static const Folder made;
    return made.path;
}

} // namespace megset
