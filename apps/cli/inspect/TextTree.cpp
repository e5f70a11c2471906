#include "apps/cli/inspect/TextTree.h"

#include "apps/cli/inspect/shownValue.h"

#include <algorithm>
#include <ostream>

namespace megset::cli {

namespace {

constexpr std::size_t offsetColumns = 10;
constexpr int textColumns = 60;
constexpr std::uint64_t textElements = 6;

std::string shownBlock(const TracedBlock& block)
{
    std::string text = block.done < block.bytes ? std::to_string(block.done) + " of " : std::string();
    text += std::to_string(block.bytes) + " bytes";
    const std::uint64_t elements = block.done / elementBytes(block);
    if (elements == 0)
        return text;
    text += ", " + std::to_string(elements) + " ";
    text += block.elementType.empty() ? "byte" : block.elementType;
    std::string separator = ": ";
    for (const std::string& element : firstElements(block, textElements)) {
        text += separator + element;
        separator = ", ";
    }
    std::erase(text, '"'); // of numbers that are none
    return elements > textElements ? text + ", ..." : text;
}

struct ShownValue
{
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(std::uint64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return shownNumber(value); }
    std::string operator()(const CString* value) const { return shownText(*value, textColumns); }
    std::string operator()(const TracedBlock& value) const { return shownBlock(value); }
};

} // namespace

void TextTree::line(std::uint64_t offset, std::string_view text)
{
    const std::string number = std::to_string(offset);
    const std::size_t blanks = offsetColumns - std::min(offsetColumns, number.size());
    m_out << std::string(blanks, ' ') << number << std::string(2 + 2 * static_cast<std::size_t>(m_depth), ' ') << text
          << '\n';
}

void TextTree::begin(const TreeHead& head)
{
    m_out << head.file << ": " << head.meaning << ", " << head.size << " bytes\n";
}

void TextTree::enter(std::string_view section, std::uint64_t offset)
{
    line(offset, "[" + std::string(section) + "]");
    ++m_depth;
}

void TextTree::leave(std::uint64_t)
{
    --m_depth;
}

void TextTree::field(const TreeField& field)
{
    std::string text(field.type);
    if (!field.name.empty())
        text.append(" ").append(field.name);
    line(field.offset, text + " = " + std::visit(ShownValue(), field.value));
}

void TextTree::hidden(const HiddenEntries& entries)
{
    std::string text = "... " + std::to_string(entries.count) + " more";
    std::string separator = ": ";
    for (const std::string& name : entries.names) {
        text += separator + name;
        separator = ", ";
    }
    line(entries.offset, text);
}

void TextTree::end(const TreeReport& report)
{
    m_depth = 0;
    line(report.end, report.faults.empty() ? "end" : "broken: " + report.faults.front());
}

} // namespace megset::cli
