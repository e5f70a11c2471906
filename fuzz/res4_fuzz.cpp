// Reads a .res4 file from the input, and after it the texts that lie beside one. Whatever came of it must hold
// together.

#include "fuzz/harness.h"

#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/Res4.h"
#include "apps/readers/ctf/annotations.h"
#include "apps/readers/ctf/headCoils.h"

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
    for (const BadSegment& segment : parseBadSegments(text, trials, "bad.segments", warnings))
        require(segment.trial >= 0 && segment.trial < trials && segment.begin <= segment.end);
    for (const TrialClass& entry : parseClasses(text, trials, "ClassFile.cls", warnings))
        for (const int trial : entry.trials)
            require(trial >= 0 && trial < trials);
    for (const Marker& marker : parseMarkers(text, trials, "MarkerFile.mrk", warnings))
        for (const Marker::Occurrence& occurrence : marker.occurrences)
            require(occurrence.trial >= 0 && occurrence.trial < trials && std::isfinite(occurrence.time));
    require(warnings.size() <= 4 * 6); // a few for each file
}

void run(std::span<const std::byte> input)
{
    try {
        check(parseRes4(input, "fuzz.res4"));
    } catch (const CtfError& error) {
        require(error.offset().has_value() && *error.offset() <= input.size());
    }
    readTexts({reinterpret_cast<const char*>(input.data()), input.size()});
}

} // namespace
} // namespace megset::ctf

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    megset::beginFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    megset::ctf::run(std::as_bytes(std::span(data, size)));
    return 0;
}
