// Reads a .res4 file from the input, and after it the texts that lie beside one. Whatever came of it must hold
// together.
//
// An input that begins with "DS" is a whole recording: for each file a byte that says which one, modulo their number,
// and its size in two bytes, the high one first; then its bytes, as many as there are. The recording is opened and
// imported.

#include "fuzz/ScratchFolder.h"

#include "apps/readers/ctf/importCtf.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

namespace megset::ctf {
namespace {

void check(const Res4& res4)
{
    const auto channels = static_cast<int>(res4.channels.size());
    require(channels > 0 && res4.samples > 0 && res4.trials > 0 && res4.sampleRate > 0.0);
    for (const Channel& channel : res4.channels) {
        require(!channel.name.empty() && channel.coils.size() <= 8);
        require(std::isfinite(channel.unitsPerInteger()) && channel.unitsPerInteger() != 0.0);
        require(!channel.isField() || (channel.gradientOrder >= 0 && channel.gradientOrder <= 3));
    }
    for (const Coefficients& record : res4.coefficients) {
        require(record.channel >= 0 && record.channel < channels && record.weights.size() <= 50);
        for (const Weight& weight : record.weights)
            require(weight.channel >= 0 && weight.channel < channels && std::isfinite(weight.value));
    }
}

void readTexts(std::string_view text)
{
    constexpr int trials = 3;
    std::vector<std::string> warnings;
    parseHeadCoils(text, "fuzz.hc", warnings);
    parseBadChannels(text, {}, "BadChannels", warnings);
    for (const BadSegment& segment : parseBadSegments(text, trials, "bad.segments", warnings))
        require(segment.trial >= 0 && segment.trial < trials && segment.begin <= segment.end);
    for (const TrialClass& entry : parseClasses(text, trials, "ClassFile.cls", warnings))
        for (const int trial : entry.trials)
            require(trial >= 0 && trial < trials);
    for (const Marker& marker : parseMarkers(text, trials, "MarkerFile.mrk", warnings))
        for (const Marker::Occurrence& occurrence : marker.occurrences)
            require(occurrence.trial >= 0 && occurrence.trial < trials && std::isfinite(occurrence.time));
    require(warnings.size() <= 5 * 6); // a few for each file
}

// ---- whole recordings

constexpr const char* files[] = {"fuzz.res4",    "fuzz.meg4",     "fuzz.1_meg4",    "fuzz.hc",   "BadChannels",
                                 "bad.segments", "ClassFile.cls", "MarkerFile.mrk", "other.res4"};

std::filesystem::path writeFiles(std::span<const std::byte> input)
{
    constexpr std::size_t headSize = 3;
    const std::filesystem::path folder = scratch().native() / "fuzz.ds";
    std::filesystem::create_directory(folder);
    while (input.size() >= headSize) {
        const auto number = [&](std::size_t at) { return std::to_integer<std::size_t>(input[at]); };
        const char* const name = files[number(0) % std::size(files)];
        const std::size_t size = std::min(number(1) << 8U | number(2), input.size() - headSize);
        scratch().write(std::string("fuzz.ds/") + name, input.subspan(headSize, size));
        input = input.subspan(headSize + size);
    }
    return folder;
}

// Each trial has a file with all channels and samples.
void checkImport(const Recording& recording, CMEGDatazk& dataset)
{
    require(dataset.getTotalTrial() == recording.trials());
    for (int i = 0; i < recording.trials(); ++i) {
        const CMDTrialzk* const trial = dataset.getTrialzk(i);
        require(trial != nullptr);
        require(trial->getTotalChannel() == static_cast<int>(recording.header.channels.size()));
        require(trial->getChannel(0)->getTotalSample() == recording.header.samples);
    }
}

void openAndImport(const std::filesystem::path& folder)
{
    constexpr int mostTrials = 8; // each is a file
    Recording recording = openCtf(folder);
    check(recording.header);
    require(recording.trials() > 0);
    if (recording.trials() > mostTrials)
        return;
    CDocument document;
    document.SetPathName(scratch().path("fuzz.meg"));
    CMEGDatazk dataset;
    importCtf(recording, dataset, document);
    checkImport(recording, dataset);
}

void runRecording(std::span<const std::byte> input)
{
    const KeepDirectory keep;
    scratch().clear();
    limitMemory(input.size(), 512);
    try {
        openAndImport(writeFiles(input));
    } catch (const CtfError&) {
    }
}

// ---- the header and the texts alone

void runHeader(std::span<const std::byte> input)
{
    try {
        check(parseRes4(input, "fuzz.res4"));
    } catch (const CtfError& error) {
        require(error.offset().has_value() && *error.offset() <= input.size());
    }
    readTexts({reinterpret_cast<const char*>(input.data()), input.size()});
}

void run(std::span<const std::byte> input)
{
    if (input.size() >= 2 && input[0] == std::byte{'D'} && input[1] == std::byte{'S'})
        runRecording(input.subspan(2));
    else
        runHeader(input);
}

} // namespace
} // namespace megset::ctf

void megset::fuzzInput(std::span<const std::byte> input)
{
    ctf::run(input);
}
