#include "tests/kit/layoutPage.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace megset {
namespace {

std::string trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r`");
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t\r`") - first + 1));
}

std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::istringstream rest(line.substr(1));
    for (std::string cell; std::getline(rest, cell, '|');)
        cells.push_back(trimmed(cell));
    return cells;
}

bool isTableLine(const std::string& line)
{
    return line.starts_with("|");
}

LayoutRow rowOf(const std::vector<std::string>& cells)
{
    LayoutRow row{cells[0], cells[1], cells[2], 0};
    while (row.field.starts_with(">")) {
        ++row.depth;
        row.field = trimmed(std::string_view(row.field).substr(1));
    }
    return row;
}

/// What an archive went through, in the words of a table: an array or a run of records inside is one entry.
struct TracedRow
{
    std::string type;
    std::string field; ///< empty where the code gives no name
    std::uint64_t offset;
};

std::string lastSection(std::string_view path, std::size_t from)
{
    const std::string_view inner = path.substr(from);
    return std::string(inner.substr(0, inner.find('/')));
}

bool isElement(const TracedField& field, std::string_view name, std::size_t index)
{
    return field.name == std::string(name) + "[" + std::to_string(index) + "]";
}

std::size_t elementsFrom(const std::vector<TracedField>& fields, std::size_t at, std::string_view name)
{
    std::size_t count = 0;
    while (at + count < fields.size() && isElement(fields[at + count], name, count))
        ++count;
    return count;
}

bool beginsRecord(const TracedField& field, const std::string& outer)
{
    return field.name == "tag" && field.section.find('/', outer.size() + 1) == std::string::npos;
}

std::vector<TracedRow> tracedRows(const std::vector<TracedField>& fields)
{
    std::vector<TracedRow> rows;
    const std::string outer = fields.empty() ? std::string() : fields.front().section;
    for (std::size_t i = 0; i < fields.size();) {
        const TracedField& field = fields[i];
        if (field.section != outer) {
            if (beginsRecord(field, outer))
                rows.push_back({lastSection(field.section, outer.size() + 1), {}, field.offset});
            ++i;
        } else if (field.name.ends_with("[0]")) {
            const std::string name = field.name.substr(0, field.name.size() - 3);
            const std::size_t count = elementsFrom(fields, i, name);
            rows.push_back({field.type + "[" + std::to_string(count) + "]", name, field.offset});
            i += count;
        } else {
            rows.push_back({field.type, field.name, field.offset});
            ++i;
        }
    }
    return rows;
}

bool fits(const LayoutRow& row, const TracedRow& traced)
{
    return row.type == traced.type && (traced.field.empty() || row.field == traced.field);
}

/// Walks the table and the traced rows side by side.
class LayoutWalk
{
public:
    LayoutWalk(const std::vector<LayoutRow>& rows, const std::vector<TracedRow>& traced)
        : m_rows(rows), m_traced(traced)
    {
    }

    ::testing::AssertionResult run()
    {
        if (!walk(0, m_rows.size(), 0))
            return ::testing::AssertionFailure() << m_fault;
        if (m_at < m_traced.size())
            return ::testing::AssertionFailure() << "not in the table: " << found();
        return ::testing::AssertionSuccess();
    }

private:
    // Rows `from` to `to` once, where a run of deeper rows comes as often as its first row fits.
    bool walk(std::size_t from, std::size_t to, int depth)
    {
        for (std::size_t i = from; i < to;) {
            if (m_rows[i].depth == depth) {
                if (!step(m_rows[i]))
                    return false;
                ++i;
                continue;
            }
            const std::size_t end = endOfRun(i, to, depth);
            while (m_at < m_traced.size() && fits(m_rows[i], m_traced[m_at]))
                if (!walk(i, end, depth + 1))
                    return false;
            i = end;
        }
        return true;
    }

    std::size_t endOfRun(std::size_t i, std::size_t to, int depth) const
    {
        while (i < to && m_rows[i].depth > depth)
            ++i;
        return i;
    }

    bool step(const LayoutRow& row)
    {
        const std::string wanted = row.type + " " + row.field;
        if (m_at == m_traced.size() || !fits(row, m_traced[m_at])) {
            m_fault = "the table has " + wanted + ", the archive " + found();
            return false;
        }
        const std::string offset = std::to_string(m_traced[m_at].offset - m_traced.front().offset);
        if (!row.offset.empty() && row.offset != offset) {
            m_fault = wanted + " stands at " + offset + ", the table says " + row.offset;
            return false;
        }
        ++m_at;
        return true;
    }

    std::string found() const
    {
        if (m_at == m_traced.size())
            return "nothing more";
        return m_traced[m_at].type + " " + m_traced[m_at].field + " at " + std::to_string(m_traced[m_at].offset);
    }

    const std::vector<LayoutRow>& m_rows;
    const std::vector<TracedRow>& m_traced;
    std::size_t m_at = 0;
    std::string m_fault;
};

} // namespace

std::vector<LayoutRow> layoutRows(std::string_view pageText, std::string_view recordName)
{
    const std::string named = "`" + std::string(recordName) + "`";
    std::vector<LayoutRow> rows;
    std::istringstream text{std::string(pageText)};
    bool under = false;
    int tableLines = 0;
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with("#"))
            under = line.find(named) != std::string::npos;
        if (!under || !isTableLine(line)) {
            if (tableLines > 0)
                break;
            continue;
        }
        // The first two lines are the table's heading.
        const std::vector<std::string> cells = cellsOf(line);
        if (++tableLines > 2 && cells.size() >= 3)
            rows.push_back(rowOf(cells));
    }
    return rows;
}

::testing::AssertionResult followsLayout(const std::vector<LayoutRow>& rows, const std::vector<TracedField>& fields)
{
    if (rows.empty())
        return ::testing::AssertionFailure() << "the table has no rows";
    const std::vector<TracedRow> traced = tracedRows(fields);
    return LayoutWalk(rows, traced).run();
}

::testing::AssertionResult followsLayoutPage(const std::filesystem::path& page, std::string_view recordName,
                                             const std::vector<TracedField>& fields)
{
    std::ifstream file(page);
    if (!file)
        return ::testing::AssertionFailure() << "no page " << page;
    std::stringstream text;
    text << file.rdbuf();
    const std::vector<LayoutRow> rows = layoutRows(text.str(), recordName);
    if (rows.empty())
        return ::testing::AssertionFailure() << page << " has no table under a heading with `" << recordName << "`";
    return followsLayout(rows, fields) << " (" << page.filename() << ", `" << recordName << "`)";
}

} // namespace megset
