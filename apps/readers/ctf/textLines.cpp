#include "apps/readers/ctf/textLines.h"

#include <charconv>
#include <cmath>

namespace megset::ctf {

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::size_t mostWarnings = 5;

std::string_view withoutPlus(std::string_view word)
{
    return word.size() > 1 && word.front() == '+' && word[1] != '-' ? word.substr(1) : word;
}

template <class Number>
std::optional<Number> parsed(std::string_view word)
{
    const std::string_view digits = withoutPlus(word);
    Number number{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::vector<std::string_view> wordsOf(std::string_view line)
{
    std::vector<std::string_view> words;
    for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
        const std::size_t end = line.find_first_of(blanks);
        words.push_back(line.substr(0, end));
        line.remove_prefix(words.back().size());
    }
    return words;
}

std::optional<double> numberOf(std::string_view word)
{
    const std::optional<double> number = parsed<double>(word);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<int> integerOf(std::string_view word)
{
    return parsed<int>(word);
}

void FileWarnings::add(std::size_t line, const std::string& fault)
{
    if (m_sentences.size() == mostWarnings) {
        ++m_more;
        return;
    }
    m_sentences.push_back(m_file + ", line " + std::to_string(line) + ": " + fault + ".");
}

void FileWarnings::appendTo(std::vector<std::string>& list) const
{
    list.insert(list.end(), m_sentences.begin(), m_sentences.end());
    if (m_more > 0)
        list.push_back(m_file + ": " + std::to_string(m_more) + " more lines are passed over.");
}

} // namespace megset::ctf
