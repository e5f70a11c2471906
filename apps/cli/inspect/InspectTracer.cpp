#include "apps/cli/inspect/InspectTracer.h"

#include "megset/platform/CArchive.h"

#include <algorithm>
#include <exception>

namespace megset::cli {

namespace {

constexpr std::size_t mostHiddenNames = 6;

void addName(std::vector<std::string>& names, std::string_view name)
{
    if (!name.empty() && names.size() < mostHiddenNames && std::ranges::find(names, name) == names.end())
        names.emplace_back(name);
}

// The elements of an array share its name.
std::string_view withoutIndex(std::string_view name)
{
    return name.substr(0, name.find('['));
}

} // namespace

InspectTracer::InspectTracer(TreeWriter& writer, const TreeLimits& limits)
    : m_writer(writer), m_limits(limits), m_sections(1), m_exceptions(std::uncaught_exceptions())
{
}

std::optional<FieldPlace> InspectTracer::lastField() const
{
    if (!m_hasField)
        return std::nullopt;
    FieldPlace place = m_lastField;
    if (m_fieldIsInside)
        place.section = section();
    return place;
}

std::string InspectTracer::section() const
{
    std::string path;
    for (std::size_t i = 1; i < m_sections.size(); ++i)
        path += (i > 1 ? "/" : "") + m_sections[i].name;
    return path;
}

void InspectTracer::enter(std::string_view section, std::uint64_t offset)
{
    noteSection();
    const Count counted = count(m_sections.back(), section);
    const bool shown = show(counted, section, offset);
    const std::string index = counted.total > 1 ? "[" + std::to_string(counted.total - 1) + "]" : std::string();
    m_sections.push_back({std::string(section) + index, shown});
    if (shown)
        m_writer.enter(section, offset);
}

// Called while an exception passes, too, and must not raise another one then.
void InspectTracer::leave(std::uint64_t offset)
{
    try {
        closeSection(offset);
    } catch (const std::exception& fault) {
        m_writerFault = fault.what();
    }
}

void InspectTracer::closeSection(std::uint64_t offset)
{
    if (std::uncaught_exceptions() > m_exceptions && m_brokenSection.empty())
        m_brokenSection = section();
    noteSection();
    Section closed = std::move(m_sections.back());
    m_sections.pop_back();
    if (!closed.shown)
        return;
    showHidden(closed);
    m_writer.leave(offset);
}

// The path of the last field is put together only when its section is about to change.
void InspectTracer::noteSection()
{
    if (m_fieldIsInside)
        m_lastField.section = section();
    m_fieldIsInside = false;
}

void InspectTracer::integer(std::string_view name, std::string_view type, std::uint64_t offset, std::int64_t value)
{
    if (type == archiveTypeName<std::uint64_t>())
        field({name, type, offset, static_cast<std::uint64_t>(value)});
    else
        field({name, type, offset, value});
}

void InspectTracer::real(std::string_view name, std::string_view type, std::uint64_t offset, double value)
{
    field({name, type, offset, value});
}

void InspectTracer::text(std::string_view name, std::uint64_t offset, const CString& value)
{
    field({name, "text", offset, &value});
}

void InspectTracer::block(std::string_view name, std::uint64_t offset, const TracedBlock& block)
{
    field({name, "block", offset, block});
    if (block.done < block.bytes && m_shortBlock.empty())
        m_shortBlock = "the block " + std::string(name) + " at offset " + std::to_string(offset) + " has " +
                       std::to_string(block.done) + " of its " + std::to_string(block.bytes) + " bytes";
}

void InspectTracer::field(const TreeField& field)
{
    m_hasField = true;
    m_fieldIsInside = true;
    m_lastField.type = field.type;
    m_lastField.name = field.name;
    m_lastField.offset = field.offset;
    const std::string_view name = withoutIndex(field.name);
    Section& section = m_sections.back();
    if (section.shown && show(count(section, name), name, field.offset))
        m_writer.field(field);
}

InspectTracer::Count& InspectTracer::count(Section& section, std::string_view name)
{
    auto found = section.counts.find(name);
    if (found == section.counts.end()) {
        // A new name: what came before was no list, or has ended, or is the first of several names that repeat.
        for (auto& [known, count] : section.counts)
            count.run = 1;
        found = section.counts.emplace(std::string(name), Count()).first;
    }
    ++found->second.run;
    ++found->second.total;
    return found->second;
}

bool InspectTracer::show(const Count& count, std::string_view name, std::uint64_t offset)
{
    Section& section = m_sections.back();
    if (!section.shown)
        return false;
    const bool withinDepth = static_cast<int>(m_sections.size()) - 1 <= m_limits.depth;
    const bool withinList = m_limits.list == 0 || count.run <= static_cast<std::uint64_t>(m_limits.list);
    if (withinDepth && withinList) {
        showHidden(section);
        return true;
    }
    if (section.hidden.count++ == 0)
        section.hidden.offset = offset;
    addName(section.hidden.names, name);
    return false;
}

void InspectTracer::showHidden(Section& section)
{
    if (section.hidden.count > 0)
        m_writer.hidden(section.hidden);
    section.hidden = {};
}

} // namespace megset::cli
