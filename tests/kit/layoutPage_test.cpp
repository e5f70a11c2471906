#include "tests/kit/layoutPage.h"

#include "megset/platform/archiveLists.h"

#include "tests/kit/memoryArchive.h"

namespace megset::layoutPage_test {
namespace {

constexpr std::string_view page = R"(# Points

| a table | of something else |
|---|---|
| 1 | 2 |

## `CPoints`

A record of points.

| Offset | Type | Field | Meaning |
|---|---|---|---|
| 0 | double[2] | `m_dPos` | x, y |
| 16 | int | `count` | points |
| | double | > `m_dX` | of one point |
| | int | > `present` | whether a name follows |
| | text | > > `m_strName` | its name |
| | `INNER` | `m_inner` | a record |
| | int | `m_nLast` | |

| Another | table |
|---|---|
| 3 | 4 |
)";

// Points are as many as `points`; every second one has a name.
std::vector<TracedField> traced(int points, bool withInner = true)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        const ArchiveSection section(ar, "POINTS");
        double m_dPos[2] = {1, 2};
        EXCHANGE_FIELDS(ar, m_dPos);
        ar.exchangeInt(points, "count");
        for (int i = 0; i < points; ++i) {
            double m_dX = i;
            EXCHANGE_FIELDS(ar, m_dX);
            CString m_strName("p");
            if (exchangeGuard(ar, i % 2 == 1))
                EXCHANGE_FIELDS(ar, m_strName);
        }
        if (withInner) {
            const ArchiveSection inner(ar, "INNER");
            CString tag("INNER");
            EXCHANGE_FIELDS(ar, tag);
        }
        int m_nLast = 7;
        EXCHANGE_FIELDS(ar, m_nLast);
    });
    return recorder.fields();
}

TEST(LayoutPage, ReadsTheFirstTableUnderTheHeading)
{
    const std::vector<LayoutRow> rows = layoutRows(page, "CPoints");
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows[0].offset, "0");
    EXPECT_EQ(rows[0].type, "double[2]");
    EXPECT_EQ(rows[4].field, "m_strName");
    EXPECT_EQ(rows[4].depth, 2);
    EXPECT_EQ(rows[5].type, "INNER");
}

TEST(LayoutPage, GivesNoRowsForAnUnknownHeading)
{
    EXPECT_TRUE(layoutRows(page, "CPoint").empty());
    EXPECT_FALSE(followsLayout(layoutRows(page, "CPoint"), traced(1)));
}

TEST(LayoutPage, RunsComeAnyNumberOfTimes)
{
    const std::vector<LayoutRow> rows = layoutRows(page, "CPoints");
    EXPECT_TRUE(followsLayout(rows, traced(0)));
    EXPECT_TRUE(followsLayout(rows, traced(1)));
    EXPECT_TRUE(followsLayout(rows, traced(5)));
}

TEST(LayoutPage, AMissingFieldIsFound)
{
    EXPECT_FALSE(followsLayout(layoutRows(page, "CPoints"), traced(2, false)));
    std::vector<TracedField> fields = traced(2);
    fields.pop_back();
    EXPECT_FALSE(followsLayout(layoutRows(page, "CPoints"), fields));
}

TEST(LayoutPage, AFurtherFieldIsFound)
{
    std::vector<TracedField> fields = traced(2);
    fields.push_back(fields.back());
    EXPECT_FALSE(followsLayout(layoutRows(page, "CPoints"), fields));
}

TEST(LayoutPage, AnotherNameTypeLengthOrOffsetIsFound)
{
    const std::vector<LayoutRow> rows = layoutRows(page, "CPoints");
    std::vector<TracedField> renamed = traced(2);
    renamed.back().name = "m_nOther";
    EXPECT_FALSE(followsLayout(rows, renamed));
    std::vector<TracedField> retyped = traced(2);
    retyped.back().type = "int64";
    EXPECT_FALSE(followsLayout(rows, retyped));
    std::vector<TracedField> shortened = traced(2);
    shortened.erase(shortened.begin() + 1);
    EXPECT_FALSE(followsLayout(rows, shortened));
    std::vector<LayoutRow> moved = rows;
    moved[1].offset = "20";
    EXPECT_FALSE(followsLayout(moved, traced(2)));
}

} // namespace
} // namespace megset::layoutPage_test
