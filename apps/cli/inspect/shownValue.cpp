#include "apps/cli/inspect/shownValue.h"

#include "megset/platform/CArchive.h"
#include "megset/platform/terminalText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace megset::cli {

namespace {

template <class T>
std::string elementText(const std::byte* data)
{
    T value{};
    std::memcpy(&value, data, sizeof value);
    if constexpr (std::is_floating_point_v<T>) {
        const std::string text = shownNumber(static_cast<double>(value));
        return std::isfinite(value) ? text : '"' + text + '"';
    } else {
        return std::to_string(value);
    }
}

struct ElementType
{
    std::string_view name;
    std::uint64_t bytes;
    std::string (*text)(const std::byte* data);
};

template <class T>
constexpr ElementType elementType()
{
    return {archiveTypeName<T>(), sizeof(T), elementText<T>};
}

constexpr std::array elementTypes{elementType<std::uint8_t>(),  elementType<double>(),
                                  elementType<float>(),         elementType<std::int32_t>(),
                                  elementType<std::int64_t>(),  elementType<std::uint32_t>(),
                                  elementType<std::uint64_t>(), elementType<std::int16_t>(),
                                  elementType<std::uint16_t>(), elementType<std::int8_t>()};

const ElementType& typeOf(const TracedBlock& block)
{
    const auto* const found = std::ranges::find(elementTypes, block.elementType, &ElementType::name);
    return found != elementTypes.end() ? *found : elementTypes.front();
}

} // namespace

std::string shownNumber(double value)
{
    if (std::isnan(value))
        return "nan";
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

std::string shownText(const CString& text, int columns)
{
    // No more is looked at than can be shown: a text of a broken file may be of any length.
    CString line = text.Left(columns + 1);
    line.Replace("\r", "\\r");
    line.Replace("\n", "\\n");
    line.Replace("\t", "\\t");
    line.Replace("\"", "\\\"");
    line = showControlCharacters(line);
    const CString shown = cutToColumns(line, columns);
    const bool whole = shown == line && text.GetLength() <= columns + 1;
    return '"' + shown.toUtf8() + (whole ? "\"" : "\"...");
}

std::uint64_t elementBytes(const TracedBlock& block)
{
    return typeOf(block).bytes;
}

std::vector<std::string> firstElements(const TracedBlock& block, std::uint64_t most)
{
    const ElementType& type = typeOf(block);
    const auto* const data = static_cast<const std::byte*>(block.data);
    std::vector<std::string> elements;
    for (std::uint64_t i = 0; i < std::min(most, block.done / type.bytes); ++i)
        elements.push_back(type.text(data + i * type.bytes));
    return elements;
}

} // namespace megset::cli
