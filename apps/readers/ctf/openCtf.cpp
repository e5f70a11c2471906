#include "apps/readers/ctf/openCtf.h"

#include <algorithm>
#include <set>
#include <utility>

namespace megset::ctf {

namespace {

// Files of text that are larger hold no such text.
constexpr std::uintmax_t mostText = 256U << 20U;

// The name that a folder's files have: the folder's own, or where it was renamed that of its only .res4 file.
std::string nameOfFiles(const std::filesystem::path& folder)
{
    const std::string own = folder.stem().string();
    if (std::filesystem::is_regular_file(folder / (own + ".res4")))
        return own;
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        if (entry.path().extension() == ".res4")
            names.push_back(entry.path().stem().string());
    if (names.size() == 1)
        return names.front();
    throw CtfError(folder, names.empty() ? "this is no CTF dataset, it has no .res4 file"
                                         : "there are several .res4 files, and none has the folder's name");
}

std::filesystem::path checkedFolder(std::filesystem::path folder)
{
    if (!folder.has_filename()) // a closing separator
        folder = folder.parent_path();
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw CtfError(folder, "this is no CTF dataset, it is no folder");
    return folder;
}

// The text of a file that may be missing.
std::string textOf(const std::filesystem::path& file, std::vector<std::string>& warnings)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return {};
    if (std::filesystem::file_size(file, error) > mostText) {
        warnings.push_back(file.string() + ": the file is too large for a text, and is passed over.");
        return {};
    }
    const std::vector<std::byte> bytes = readBytes(file);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void addChannelsWithoutGain(Recording& recording)
{
    std::set<int> bad(recording.badChannels.begin(), recording.badChannels.end());
    for (std::size_t i = 0; i < recording.header.channels.size(); ++i) {
        if (recording.header.channels[i].hasGain())
            continue;
        bad.insert(static_cast<int>(i));
        recording.warnings.push_back("Channel \"" + recording.header.channels[i].name +
                                     "\" has no gain: it is taken for a bad one, its samples are not scaled by it.");
    }
    recording.badChannels.assign(bad.begin(), bad.end());
}

void readTexts(Recording& recording)
{
    const std::filesystem::path& folder = recording.folder;
    std::vector<std::string>& warnings = recording.warnings;
    const auto file = [&](const std::string& name) { return (folder / name).string(); };
    const auto text = [&](const std::string& name) { return textOf(folder / name, warnings); };
    const std::string coils = recording.name + ".hc";
    recording.coils = parseHeadCoils(text(coils), file(coils), warnings);
    recording.badChannels =
        parseBadChannels(text("BadChannels"), recording.header.channels, file("BadChannels"), warnings);
    recording.badSegments = parseBadSegments(text("bad.segments"), recording.trials(), file("bad.segments"), warnings);
    recording.classes = parseClasses(text("ClassFile.cls"), recording.trials(), file("ClassFile.cls"), warnings);
    recording.markers = parseMarkers(text("MarkerFile.mrk"), recording.trials(), file("MarkerFile.mrk"), warnings);
}

} // namespace

std::vector<int> Recording::badTrials() const
{
    std::set<int> bad;
    for (const TrialClass& entry : classes)
        if (entry.name == "BAD")
            bad.insert(entry.trials.begin(), entry.trials.end());
    return {bad.begin(), bad.end()};
}

Recording openCtf(const std::filesystem::path& path)
{
    const std::filesystem::path folder = checkedFolder(path);
    const std::string name = nameOfFiles(folder);
    const std::filesystem::path file = folder / (name + ".res4");
    Res4 header = parseRes4(readBytes(file), file);
    Meg4 data(folder, name, {header.trials, static_cast<int>(header.channels.size()), header.samples});
    std::vector<std::string> warnings = header.warnings;
    warnings.insert(warnings.end(), data.warnings().begin(), data.warnings().end());
    Recording recording{folder, name, std::move(header), std::move(data), {}, {}, {}, {}, {}, std::move(warnings)};
    readTexts(recording);
    addChannelsWithoutGain(recording);
    return recording;
}

} // namespace megset::ctf
