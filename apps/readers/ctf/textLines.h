#pragma once
// The text files of a CTF recording: lines and numbers as people and programs write them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace megset::ctf {

/// Without blanks, tabs and line ends at both ends.
std::string_view trimmed(std::string_view text);

/// The lines of a text, trimmed, empty ones too.
std::vector<std::string_view> linesOf(std::string_view text);

/// The words of a line, which blanks and tabs part.
std::vector<std::string_view> wordsOf(std::string_view line);

/// A number in decimal, a leading plus allowed; nothing when the word is anything else or the number is not finite.
std::optional<double> numberOf(std::string_view word);
std::optional<int> integerOf(std::string_view word);

/// Sentences about what was passed over in a file. A file that is wrong throughout gets a few, and the number of all.
class FileWarnings
{
public:
    explicit FileWarnings(std::string file) : m_file(std::move(file)) {}

    /// `line` counts from 1.
    void add(std::size_t line, const std::string& fault);
    /// Appends the sentences to a list.
    void appendTo(std::vector<std::string>& list) const;

private:
    std::string m_file;
    std::vector<std::string> m_sentences;
    std::size_t m_more = 0;
};

} // namespace megset::ctf
