#pragma once
// The pages of docs/formats, compared with what an archive really goes through.
//
// A record's layout is the first table under the heading that names its class in backticks:
//
//     ## `CSpherezk`
//
//     | Offset | Type | Field | Meaning |
//     |---|---|---|---|
//     | 0 | text | `tag` | "SPHEREZK" |
//     | 27 | int | `version` | 20261121 |
//     | 31 | double[4] | `m_dCentre` | x, y, z, w in mm |
//     | | int | `count` | points that follow |
//     | | double | > `m_dX` | of one point |
//     | | `POINTZK` | > `m_label` | the record of that tag |
//
// - Type: text, int, uint, int64, double, float, byte, block and so on, as a tracer tells them; a bool is an int.
//   An array of fixed size adds its length, `double[4]`. A record inside is the tag of that record.
// - Field: in backticks, the name that the code gives to EXCHANGE_FIELDS or to the helpers of archiveLists.h. A record
//   inside has no name of its own in the archive: any name does there.
// - `>` in front of a field: the rows of this run come any number of times, none included (elements of a list, what
//   stands behind a guard). `> >` is a run inside such a run.
// - Offset: bytes from the record's start, where it is fixed; otherwise empty.

#include "tests/kit/TracingRecorder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// One row of a layout table.
struct LayoutRow
{
    std::string offset;
    std::string type;
    std::string field; ///< without backticks and ">"
    int depth = 0;     ///< number of ">"
};

/// The rows of the table under the heading with `recordName` in backticks; empty when there is none.
std::vector<LayoutRow> layoutRows(std::string_view pageText, std::string_view recordName);

/// Whether the fields that one archive told of, beginning with the record's tag, are those of the table: names, types
/// and order, and the offset where the table gives one.
::testing::AssertionResult followsLayout(const std::vector<LayoutRow>& rows, const std::vector<TracedField>& fields);

/// The same for a page of docs/formats, such as "sensors.md".
::testing::AssertionResult followsLayoutPage(const std::filesystem::path& page, std::string_view recordName,
                                             const std::vector<TracedField>& fields);

#ifdef MEGSET_SOURCE_DIR
/// Folder of the pages.
inline std::filesystem::path formatPages()
{
    return std::filesystem::path(MEGSET_SOURCE_DIR) / "docs" / "formats";
}
#endif

} // namespace megset
