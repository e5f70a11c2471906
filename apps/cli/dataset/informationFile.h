#pragma once
// Files of their own that commands read and write: electrodes, probes, arrays of datasets.

#include "megset/platform/CArchive.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace megset::cli {

/// What reads a file from an archive, or writes it: an operation of the library. Gives 1, or 0 where it gave up.
using Exchange = std::function<int(CArchive&)>;

/// Throws std::runtime_error unless the file begins with that tag and all of it can be read. It tells path and offset,
/// what the library has to say, and for another kind of file which one it is. Nothing is changed.
void checkInformation(const std::filesystem::path& path, std::string_view tag);

/// Gives what `exchange` gave for the file. Others may have it open. `tracer` may be null. Throws std::runtime_error.
int readInformation(const std::filesystem::path& path, const Exchange& exchange, ArchiveTracer* tracer = nullptr);

/// Writes a file in one step: when it fails, the file that was there is as before, and a std::runtime_error tells why.
void writeInformation(const std::filesystem::path& path, const Exchange& exchange);

/// The path that a user means by a name: the extension, with its dot, is added where it has none.
std::filesystem::path withExtension(const std::filesystem::path& name, const std::string& extension);

} // namespace megset::cli
