#pragma once
// The one pattern that every format follows: tag, date-coded version, and one routine for each version ever released.

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CArchive.h"

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

/// Writes the tag and the newest version, the last of `versions`, or reads a tag and the version that the file has.
/// Gives what the version's routine gives; 0 with the text of the case for another tag or an unknown version.
/// The tag is compared in full and with its case; the version by equality.
template <class T, std::size_t n>
int serializeFormat(CArchive& ar, T& object, const FormatTexts& texts, const FormatVersion<T> (&versions)[n])
{
    const ArchiveSection section(ar, texts.tag);
    CString tag(texts.tag);
    std::int32_t number = versions[n - 1].number;
    ar.exchangeNamed("tag", tag);
    if (ar.IsLoading() && tag != CString(texts.tag)) {
        AfxMessageBox(texts.notThisFile, MB_OK);
        return 0;
    }
    ar.exchangeNamed("version", number);
    for (const FormatVersion<T>& version : versions)
        if (version.number == number)
            return (object.*version.serialize)(ar);
    AfxMessageBox(texts.wrongVersion, MB_OK);
    return 0;
}

} // namespace megset
