#include "apps/cli/process/montageFile.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace megset::cli {

namespace {

// A part of a line, which knows where it stands.
struct Part
{
    std::string_view text;
    int line = 0;
    int column = 0;

    Part from(std::size_t begin, std::size_t count = std::string_view::npos) const
    {
        return {text.substr(begin, count), line, column + static_cast<int>(begin)};
    }
    Part trimmed() const
    {
        const std::size_t begin = text.find_first_not_of(" \t\r");
        if (begin == std::string_view::npos)
            return from(text.size());
        return from(begin, text.find_last_not_of(" \t\r") + 1 - begin);
    }
    [[noreturn]] void fail(const std::string& fault) const { throw MontageFault(line, column, fault); }
};

double number(const Part& part)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(part.text.data(), part.text.data() + part.text.size(), value);
    if (error != std::errc() || end != part.text.data() + part.text.size() || !std::isfinite(value))
        part.fail("\"" + std::string(part.text) + "\" is no number");
    return value;
}

MontageTerm name(const Part& part)
{
    if (part.text.empty())
        part.fail("a channel is missing");
    return {std::string(part.text), 1.0, part.line, part.column};
}

// "NAME" or "WEIGHT*NAME"
MontageTerm term(const Part& part)
{
    const std::size_t star = part.text.find('*');
    if (star == std::string_view::npos)
        return name(part);
    MontageTerm made = name(part.from(star + 1).trimmed());
    made.weight = number(part.from(0, star).trimmed());
    return made;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// The end of the text counts as a blank.
std::size_t findBetweenBlanks(std::string_view text, char sign)
{
    for (std::size_t i = 1; i < text.size(); ++i)
        if (text[i] == sign && isBlank(text[i - 1]) && (i + 1 == text.size() || isBlank(text[i + 1])))
            return i;
    return std::string_view::npos;
}

std::vector<MontageTerm> terms(Part part)
{
    std::vector<MontageTerm> made;
    for (;;) {
        const std::size_t plus = findBetweenBlanks(part.text, '+');
        made.push_back(term(part.from(0, plus).trimmed()));
        if (plus == std::string_view::npos)
            return made;
        part = part.from(plus + 1);
    }
}

MontageLine montageLine(const Part& part)
{
    const std::size_t equals = part.text.find('=');
    if (equals == std::string_view::npos)
        part.fail("there is no \"=\"");
    MontageLine line;
    line.target = name(part.from(0, equals).trimmed());
    Part sum = part.from(equals + 1);
    const std::size_t slash = findBetweenBlanks(sum.text, '/');
    if (slash != std::string_view::npos) {
        const Part divisor = sum.from(slash + 1).trimmed();
        line.divisor = number(divisor);
        if (!(line.divisor > 0.0))
            divisor.fail("the divisor is not above 0");
    }
    line.terms = terms(sum.from(0, slash));
    return line;
}

} // namespace

MontageFault::MontageFault(int line, int column, const std::string& fault)
    : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + fault)
{
}

std::vector<MontageLine> readMontage(std::istream& in)
{
    std::vector<MontageLine> montage;
    std::string text;
    for (int number = 1; std::getline(in, text); ++number) {
        const Part part = Part{std::string_view(text).substr(0, text.find('#')), number, 1}.trimmed();
        if (!part.text.empty())
            montage.push_back(montageLine(part));
    }
    if (montage.empty())
        throw MontageFault(1, 1, "the file holds no montage");
    return montage;
}

} // namespace megset::cli
