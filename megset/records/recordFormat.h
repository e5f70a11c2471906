#pragma once
// How the records of this folder write themselves: tag, date-coded version, fields in declared order.

#include "megset/platform/formatVersion.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace megset {

/// Exchanges a record under its own tag (upper case, ending "ZK") and the newest of `versions`. For another tag it
/// shows
/// "<tag>: The record is of another kind or corrupted!", for an unknown version "<tag>: Wrong record format!!?", and
/// gives 0.
template <class T, std::size_t n>
int serializeRecord(CArchive& ar, T& record, std::string_view tag, const FormatVersion<T> (&versions)[n])
{
    // A recording has tens of thousands of records: the texts are made when they are needed.
    return serializeTagged(ar, record, tag, versions, [tag](FormatFault fault) {
        AfxMessageBox(std::string(tag) + (fault == FormatFault::otherTag
                                              ? ": The record is of another kind or corrupted!"
                                              : ": Wrong record format!!?"),
                      MB_OK);
    });
}

} // namespace megset
