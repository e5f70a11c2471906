#include "apps/cli/inspect/fileTag.h"

#include "apps/cli/inspect/shownValue.h"
#include "megset/platform/CMemFile.h"
#include "megset/platform/terminalText.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <vector>

namespace megset::cli {

namespace {

constexpr unsigned bytesForTag = 256; // more than any known tag takes
constexpr std::size_t bytesShown = 16;
constexpr std::size_t tagColumns = 34;

std::vector<std::byte> firstBytes(CFile& file)
{
    std::vector<std::byte> bytes(bytesForTag);
    bytes.resize(file.Read(bytes.data(), bytesForTag));
    file.SeekToBegin();
    return bytes;
}

// The text at the beginning; nothing where there is none, or one that is too long to be a tag.
std::optional<CString> readTag(const std::vector<std::byte>& bytes)
{
    CMemFile file(bytes);
    CArchive ar(&file, CArchive::load);
    CString tag;
    try {
        ar >> tag;
    } catch (const CArchiveException&) {
        return std::nullopt;
    }
    return tag;
}

std::string hexAndCharacters(const std::vector<std::byte>& bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    std::string characters;
    for (std::size_t i = 0; i < std::min(bytes.size(), bytesShown); ++i) {
        const auto byte = std::to_integer<unsigned>(bytes[i]);
        hex += {digits[byte >> 4U], digits[byte & 15U], ' '};
        characters += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    return hex + " " + characters;
}

std::string knownTags()
{
    std::string text;
    for (const RecordKind& kind : recordKinds()) {
        const std::size_t blanks = tagColumns - std::min(tagColumns, kind.tag.size());
        text.append("\n  ").append(kind.tag).append(blanks, ' ').append(kind.meaning);
    }
    return text;
}

std::string describeBeginning(const std::vector<std::byte>& bytes, const std::optional<CString>& tag)
{
    if (bytes.empty())
        return " is empty";
    std::string text = tag ? " begins with the unknown tag " + shownText(*tag, 60) : " begins with no tag";
    return text + ".\nIts first bytes: " + hexAndCharacters(bytes);
}

} // namespace

const RecordKind& kindOfFile(CFile& file, const std::filesystem::path& path)
{
    const std::vector<std::byte> bytes = firstBytes(file);
    const std::optional<CString> tag = readTag(bytes);
    const RecordKind* const kind = tag ? findRecordKind(tag->toUtf8()) : nullptr;
    if (kind == nullptr)
        throw std::runtime_error(shownPath(path) + describeBeginning(bytes, tag) + "\nKnown tags:" + knownTags());
    return *kind;
}

const RecordKind* kindOf(CFile& file)
{
    const std::optional<CString> tag = readTag(firstBytes(file));
    return tag ? findRecordKind(tag->toUtf8()) : nullptr;
}

std::string shownPath(const std::filesystem::path& path)
{
    return showControlCharacters(CString(path.string())).toUtf8();
}

} // namespace megset::cli
