#pragma once
// The files and records that megset can read, by their tags.

#include "megset/platform/CArchive.h"

#include <span>
#include <string_view>

namespace megset::cli {

/// A kind of record. `load` makes an object, reads it from the archive and drops it, and gives what its reader gave.
struct RecordKind
{
    std::string_view tag;
    std::string_view meaning;
    int (*load)(CArchive& ar);
};

/// All kinds, files first.
std::span<const RecordKind> recordKinds();

/// The kind of a tag, compared in full and with its case; null for an unknown one.
const RecordKind* findRecordKind(std::string_view tag);

} // namespace megset::cli
