#pragma once
// The parts of a path in library form.

#include "megset/platform/CString.h"

namespace megset {

/// Everything behind the last backslash; the whole path if there is none.
CString fileNameOf(const CString& path);

/// The file name up to its last dot; the whole name if there is none.
CString fileTitleOf(const CString& path);

/// Everything behind the last dot of the file name; empty if there is none.
CString fileExtensionOf(const CString& path);

/// A name from elsewhere as one component of a path: separators and control characters become "_", so that what is made
/// of it stays in its folder.
CString asFileName(const CString& name);

} // namespace megset
