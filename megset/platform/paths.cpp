#include "megset/platform/paths.h"

#include "megset/platform/unicode.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace megset {
namespace {

constexpr int rangeError = 34; // ERANGE, by number: it is part of the interface

struct PathParts
{
    std::u16string_view drive, directory, title, extension;
};

PathParts split(std::u16string_view path)
{
    PathParts parts;
    const std::size_t driveLength = path.size() >= 2 && path[1] == u':' ? 2 : 0;
    parts.drive = path.substr(0, driveLength);
    path.remove_prefix(driveLength);

    const std::size_t lastSeparator = path.find_last_of(u"\\/");
    const std::size_t nameAt = lastSeparator == std::u16string_view::npos ? 0 : lastSeparator + 1;
    parts.directory = path.substr(0, nameAt);
    const std::u16string_view name = path.substr(nameAt);
    const std::size_t dot = std::min(name.rfind(u'.'), name.size());
    parts.title = name.substr(0, dot);
    parts.extension = name.substr(dot);
    return parts;
}

struct PartTarget
{
    CString* target;
    std::size_t size;
    std::u16string_view text;
};

} // namespace

std::filesystem::path toNative(const CString& path)
{
    std::u16string text(path.view());
    std::replace(text.begin(), text.end(), u'\\', u'/');
    return std::filesystem::path(utf16ToFileName(text));
}

CString fromNative(const std::filesystem::path& path)
{
    std::u16string text = fileNameToUtf16(path.native());
    std::replace(text.begin(), text.end(), u'/', u'\\');
    return CString(std::move(text));
}

CString fullPath(const CString& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(toNative(path), error);
    return error ? path : fromNative(absolute.lexically_normal());
}

int _wsplitpath_s(const CString& path, CString* drive, std::size_t driveSize, CString* directory,
                  std::size_t directorySize, CString* title, std::size_t titleSize, CString* extension,
                  std::size_t extensionSize)
{
    const PathParts parts = split(path.view());
    const std::array<PartTarget, 4> targets = {{{drive, driveSize, parts.drive},
                                                {directory, directorySize, parts.directory},
                                                {title, titleSize, parts.title},
                                                {extension, extensionSize, parts.extension}}};
    const bool fits = std::all_of(targets.begin(), targets.end(), [](const PartTarget& part) {
        return part.target == nullptr || part.text.size() < part.size;
    });
    std::array<CString, 4> texts; // taken first: a target may be the path itself
    if (fits)
        std::transform(targets.begin(), targets.end(), texts.begin(),
                       [](const PartTarget& part) { return CString(part.text); });
    for (std::size_t i = 0; i < targets.size(); ++i)
        if (targets[i].target != nullptr)
            *targets[i].target = texts[i];
    return fits ? 0 : rangeError;
}

CString currentDirectory()
{
    std::error_code error;
    const std::filesystem::path path = std::filesystem::current_path(error);
    return error ? CString() : fromNative(path);
}

std::uint32_t GetCurrentDirectory(std::uint32_t size, char16_t* buffer)
{
    const CString path = currentDirectory();
    const auto length = static_cast<std::uint32_t>(path.GetLength());
    if (length == 0)
        return 0;
    if (buffer == nullptr || length >= size)
        return length + 1;
    *std::copy(path.view().begin(), path.view().end(), buffer) = 0;
    return length;
}

bool SetCurrentDirectory(const CString& path)
{
    std::error_code error;
    std::filesystem::current_path(toNative(path), error);
    return !error;
}

} // namespace megset
