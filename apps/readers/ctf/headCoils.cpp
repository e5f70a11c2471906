#include "apps/readers/ctf/headCoils.h"
#include "apps/readers/ctf/textLines.h"

namespace megset::ctf {

namespace {

bool contains(std::string_view line, std::string_view part)
{
    return line.find(part) != std::string_view::npos;
}

// The set that a heading speaks of; null for coils of other frames. Some systems write "stadard".
CoilSet* setOf(HeadCoils& coils, std::string_view heading)
{
    const bool isDewar = contains(heading, "relative to dewar");
    if (heading.starts_with("standard") || heading.starts_with("stadard"))
        return isDewar ? &coils.standardDewar : nullptr;
    if (!heading.starts_with("measured"))
        return nullptr;
    if (isDewar)
        return &coils.measuredDewar;
    return contains(heading, "relative to head") ? &coils.measuredHead : nullptr;
}

std::optional<Vector>* placeOf(CoilSet& set, std::string_view heading)
{
    if (contains(heading, "nasion"))
        return &set.nasion;
    if (contains(heading, "left ear"))
        return &set.leftEar;
    return contains(heading, "right ear") ? &set.rightEar : nullptr;
}

// The number of a line "x = 1.5".
std::optional<double> coordinate(std::string_view line, char axis)
{
    const std::vector<std::string_view> words = wordsOf(line);
    if (words.size() != 3 || words[0] != std::string_view(&axis, 1) || words[1] != "=")
        return std::nullopt;
    return numberOf(words[2]);
}

std::optional<Vector> coordinates(const std::vector<std::string_view>& lines, std::size_t first)
{
    Vector place{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const std::optional<double> number =
            first + axis < lines.size() ? coordinate(lines[first + axis], "xyz"[axis]) : std::nullopt;
        if (!number)
            return std::nullopt;
        place[axis] = *number;
    }
    return place;
}

} // namespace

HeadCoils parseHeadCoils(std::string_view text, const std::string& file, std::vector<std::string>& warnings)
{
    HeadCoils coils;
    FileWarnings faults(file);
    const std::vector<std::string_view> lines = linesOf(text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!contains(lines[i], "coil position relative to"))
            continue;
        CoilSet* const set = setOf(coils, lines[i]);
        std::optional<Vector>* const place = set != nullptr ? placeOf(*set, lines[i]) : nullptr;
        if (place == nullptr)
            continue;
        *place = contains(lines[i], "(cm)") ? coordinates(lines, i + 1) : std::nullopt;
        if (!*place)
            faults.add(i + 1, "the head coil has no place in cm");
    }
    faults.appendTo(warnings);
    return coils;
}

} // namespace megset::ctf
