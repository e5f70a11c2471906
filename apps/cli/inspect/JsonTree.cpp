#include "apps/cli/inspect/JsonTree.h"

#include "apps/cli/inspect/shownValue.h"

#include <cmath>
#include <ostream>

namespace megset::cli {

namespace {

constexpr std::uint64_t jsonElements = 16;

std::string escaped(char unit)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto number = static_cast<unsigned char>(unit);
    return {'\\', 'u', '0', '0', digits[number >> 4U], digits[number & 15U]};
}

// The text as JSON has it. It must be UTF-8.
std::string jsonText(std::string_view text)
{
    std::string json = "\"";
    for (const char unit : text) {
        if (unit == '"' || unit == '\\')
            (json += '\\') += unit;
        else if (static_cast<unsigned char>(unit) < 0x20)
            json += escaped(unit);
        else
            json += unit;
    }
    return json + '"';
}

std::string jsonNumber(double value)
{
    return std::isfinite(value) ? shownNumber(value) : jsonText(shownNumber(value));
}

template <class List, class Shown>
std::string jsonList(const List& list, Shown shown)
{
    std::string json;
    for (const auto& element : list)
        json += (json.empty() ? "" : ", ") + shown(element);
    return "[" + json + "]";
}

std::string jsonMessage(const ReaderMessage& message)
{
    return "{\"offset\": " + std::to_string(message.offset) + ", \"section\": " + jsonText(message.section) +
           ", \"text\": " + jsonText(message.text) + "}";
}

std::string jsonPlace(const FieldPlace& place)
{
    return "{\"offset\": " + std::to_string(place.offset) + ", \"type\": " + jsonText(place.type) +
           ", \"name\": " + jsonText(place.name) + ", \"section\": " + jsonText(place.section) + "}";
}

} // namespace

void JsonTree::begin(const TreeHead& head)
{
    m_out << "{\"file\": " << jsonText(head.file) << ", \"size\": " << std::to_string(head.size)
          << ", \"tag\": " << jsonText(head.tag) << ", \"kind\": " << jsonText(head.meaning) << ",\n\"entries\": [";
}

void JsonTree::startEntry()
{
    m_out << (m_hasEntries ? ",\n" : "\n") << std::string(static_cast<std::size_t>(m_depth), ' ');
    m_hasEntries = true;
}

void JsonTree::enter(std::string_view section, std::uint64_t offset)
{
    startEntry();
    m_out << "{\"offset\": " << std::to_string(offset) << ", \"section\": " << jsonText(section) << ", \"entries\": [";
    m_hasEntries = false;
    ++m_depth;
}

void JsonTree::leave(std::uint64_t offset)
{
    m_out << "], \"end\": " << std::to_string(offset) << "}";
    m_hasEntries = true;
    --m_depth;
}

void JsonTree::field(const TreeField& field)
{
    startEntry();
    m_out << "{\"offset\": " << std::to_string(field.offset) << ", \"type\": " << jsonText(field.type)
          << ", \"name\": " << jsonText(field.name);
    if (const auto* const block = std::get_if<TracedBlock>(&field.value))
        blockValue(*block);
    else if (const auto* const text = std::get_if<const CString*>(&field.value))
        m_out << ", \"value\": " << jsonText((*text)->toUtf8());
    else if (const auto* const real = std::get_if<double>(&field.value))
        m_out << ", \"value\": " << jsonNumber(*real);
    else if (const auto* const integer = std::get_if<std::int64_t>(&field.value))
        m_out << ", \"value\": " << std::to_string(*integer);
    else
        m_out << ", \"value\": " << std::to_string(std::get<std::uint64_t>(field.value));
    m_out << "}";
}

void JsonTree::blockValue(const TracedBlock& block)
{
    const auto same = [](const std::string& element) { return element; };
    const std::string_view type = block.elementType.empty() ? "byte" : block.elementType;
    m_out << ", \"bytes\": " << std::to_string(block.bytes) << ", \"done\": " << std::to_string(block.done)
          << ", \"elementType\": " << jsonText(type)
          << ", \"elements\": " << std::to_string(block.done / elementBytes(block))
          << ", \"first\": " << jsonList(firstElements(block, jsonElements), same);
}

void JsonTree::hidden(const HiddenEntries& entries)
{
    startEntry();
    m_out << "{\"offset\": " << std::to_string(entries.offset) << ", \"hidden\": " << std::to_string(entries.count)
          << ", \"names\": " << jsonList(entries.names, jsonText) << "}";
}

void JsonTree::end(const TreeReport& report)
{
    m_out << "],\n\"result\": {\"complete\": " << (report.faults.empty() ? "true" : "false")
          << ", \"end\": " << std::to_string(report.end) << ", \"left\": " << std::to_string(report.left)
          << ",\n \"faults\": " << jsonList(report.faults, jsonText) << ", \"section\": " << jsonText(report.section)
          << ",\n \"lastField\": " << (report.lastField ? jsonPlace(*report.lastField) : "null")
          << ",\n \"messages\": " << jsonList(report.messages, jsonMessage)
          << ", \"messageCount\": " << std::to_string(report.messageCount) << "}}\n";
}

} // namespace megset::cli
