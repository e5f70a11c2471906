#pragma once
// Paths. Inside the library they have the backslash as separator, as the files store them (library form); at the edge
// to the system they take its own form (native form).

#include "megset/platform/CString.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace megset {

/// Native form of a path in library form. A drive letter stays as it is: on this system such a path names nothing.
std::filesystem::path toNative(const CString& path);

/// Library form of a native path. Every file name has one, and toNative gives the same bytes back.
CString fromNative(const std::filesystem::path& path);

/// Library form of the absolute path that `path` means from the current directory; dots are resolved, links are not.
CString fullPath(const CString& path);

/// Splits a path into drive ("C:"), directory with its closing separator, title, and extension with its dot. A null
/// part is not asked for; its size counts UTF-16 units with a terminating zero, as the limits of stored paths do.
/// 0 when done; 34 (ERANGE), with all parts empty, when a part does not fit its size.
int _wsplitpath_s(const CString& path, CString* drive, std::size_t driveSize, CString* directory,
                  std::size_t directorySize, CString* title, std::size_t titleSize, CString* extension,
                  std::size_t extensionSize);

/// The current directory in library form, without a closing backslash (but for the root); empty when there is none.
CString currentDirectory();

/// Copies the current directory into a buffer of `size` code units. Gives its length; where the buffer is too small,
/// the size needed with the terminating zero, and the buffer stays as it is; 0 when there is no current directory.
std::uint32_t GetCurrentDirectory(std::uint32_t size, char16_t* buffer);

/// Changes the current directory of the process; false when it can't be entered.
bool SetCurrentDirectory(const CString& path);

} // namespace megset
