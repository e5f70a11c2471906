#pragma once
// The one pattern that every format follows: tag, date-coded version, and one routine for each version ever released.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CArchive.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace megset {

/// One released version of a format: its number, which is a name and no order, and the routine that reads it.
template <class T>
struct FormatVersion
{
    std::int32_t number;
    int (T::*serialize)(CArchive& ar);
};

/// Tag of a format and the texts that its reader shows.
struct FormatTexts
{
    std::string_view tag;
    std::string_view notThisFile;
    std::string_view wrongVersion;
};

/// What is wrong with the head of a file or record.
enum class FormatFault
{
    otherTag,
    unknownVersion
};

/// Writes the tag, which is plain ASCII, and the newest version, the last of `versions`, or reads a tag and the version
/// that the file has. Gives what the version's routine gives; 0 after `tell(FormatFault)` for another tag or an unknown
/// version. The tag is compared in full and with its case; the version by equality.
template <class T, std::size_t n, class Tell>
int serializeTagged(CArchive& ar, T& object, std::string_view tag, const FormatVersion<T> (&versions)[n], Tell tell)
{
    const ArchiveSection section(ar, tag);
    CString text = ar.IsStoring() ? CString(tag) : CString();
    std::int32_t number = versions[n - 1].number;
    ar.exchangeNamed("tag", text);
    const std::u16string_view units = text.view();
    if (!std::equal(units.begin(), units.end(), tag.begin(), tag.end())) {
        tell(FormatFault::otherTag);
        return 0;
    }
    ar.exchangeNamed("version", number);
    for (const FormatVersion<T>& version : versions)
        if (version.number == number)
            return (object.*version.serialize)(ar);
    tell(FormatFault::unknownVersion);
    return 0;
}

/// The same, showing the texts of the format.
template <class T, std::size_t n>
int serializeFormat(CArchive& ar, T& object, const FormatTexts& texts, const FormatVersion<T> (&versions)[n])
{
    return serializeTagged(ar, object, texts.tag, versions, [&texts](FormatFault fault) {
        AfxMessageBox(fault == FormatFault::otherTag ? texts.notThisFile : texts.wrongVersion, MB_OK);
    });
}

} // namespace megset
