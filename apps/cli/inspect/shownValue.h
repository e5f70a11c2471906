#pragma once
// Values of fields as text.

#include "megset/platform/ArchiveTracer.h"
#include "megset/platform/CString.h"

#include <cstdint>
#include <string>
#include <vector>

namespace megset::cli {

/// The shortest text that reads back as the same number; "nan", "inf" or "-inf".
std::string shownNumber(double value);

/// A text on one line, in quotes, with its control characters made visible, cut to `columns` with "..." behind it.
std::string shownText(const CString& text, int columns);

/// The first elements of a block, of those that were there, as JSON has them: numbers that are none are in quotes.
/// A block without a type of element is one of bytes.
std::vector<std::string> firstElements(const TracedBlock& block, std::uint64_t most);

/// Bytes of an element; 1 for a block that tells no type.
std::uint64_t elementBytes(const TracedBlock& block);

} // namespace megset::cli
