#include "tests/kit/TracingRecorder.h"

#include <charconv>

namespace megset {
namespace {

// The shortest text that reads back as the same number, in any locale.
std::string shown(double value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

} // namespace

void TracingRecorder::clear()
{
    m_sections.clear();
    m_fields.clear();
    m_lines.clear();
}

void TracingRecorder::enter(std::string_view section, std::uint64_t offset)
{
    m_sections.emplace_back(section);
    m_lines.push_back("{ " + std::string(section) + " @" + std::to_string(offset));
}

void TracingRecorder::leave(std::uint64_t offset)
{
    if (!m_sections.empty())
        m_sections.pop_back();
    m_lines.push_back("} @" + std::to_string(offset));
}

void TracingRecorder::integer(std::string_view name, std::string_view type, std::uint64_t offset, std::int64_t value)
{
    add(name, type, offset, " = " + std::to_string(value)).integer = value;
}

void TracingRecorder::real(std::string_view name, std::string_view type, std::uint64_t offset, double value)
{
    add(name, type, offset, " = " + shown(value)).real = value;
}

void TracingRecorder::text(std::string_view name, std::uint64_t offset, const CString& value)
{
    add(name, "text", offset, " = \"" + value.toUtf8() + "\"").text = value;
}

void TracingRecorder::block(std::string_view name, std::uint64_t offset, const TracedBlock& block)
{
    const std::string part = block.done < block.bytes ? std::to_string(block.done) + " of " : std::string();
    TracedField& field = add(name, "block", offset, " " + part + std::to_string(block.bytes));
    field.bytes = block.bytes;
    field.done = block.done;
    field.elementType = block.elementType;
    const auto* const data = static_cast<const std::byte*>(block.data);
    field.data.assign(data, data + block.done);
}

TracedField& TracingRecorder::add(std::string_view name, std::string_view type, std::uint64_t offset,
                                  const std::string& shown)
{
    std::string section;
    for (const std::string& part : m_sections)
        section += (section.empty() ? "" : "/") + part;
    std::string line = std::to_string(offset);
    for (const std::string_view part : {type, name})
        if (!part.empty())
            line.append(" ").append(part);
    m_lines.push_back(line + shown);
    return m_fields.emplace_back(
        TracedField{section, std::string(name), std::string(type), offset, 0, 0, {}, 0, 0, {}, {}});
}

} // namespace megset
