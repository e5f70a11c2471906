// Whole recordings for fuzz/res4_fuzz.cpp. With MEGSET_WRITE_SEEDS set the test writes them; otherwise it compares
// them.

#include "apps/readers/ctf/openCtf.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"
#include "tests/fuzz/seedFiles.h"

#include <string_view>

namespace megset::ctf::ctfSeeds_test {
namespace {

// The first byte of a file in an input says which one it is: the target's order.
enum FileKind : std::uint8_t
{
    res4,
    meg4,
    secondMeg4,
    headCoils,
    badChannels,
    badSegments,
    classFile,
    markerFile,
    otherRes4
};

struct Input
{
    Input() { bytes.text("DS", 2); }
    Input& add(FileKind kind, std::span<const std::byte> file)
    {
        bytes.text(std::string_view(reinterpret_cast<const char*>(&kind), 1), 1);
        bytes.i16(static_cast<int>(file.size())).raw(file);
        return *this;
    }
    Input& add(FileKind kind, std::string_view text) { return add(kind, std::as_bytes(std::span(text))); }

    BigEndianBuilder bytes;
};

Input samplesOf(const CtfBuilder& builder)
{
    return Input().add(res4, builder.res4()).add(meg4, builder.meg4(0, builder.trials));
}

constexpr std::string_view coils =
    "standard nasion coil position relative to dewar (cm):\n\tx = 5\n\ty = 5\n\tz = -20\n"
    "standard left ear coil position relative to dewar (cm):\n\tx = -5\n\ty = 5\n\tz = -20\n"
    "standard right ear coil position relative to dewar (cm):\n\tx = 5\n\ty = -5\n\tz = -20\n"
    "measured nasion coil position relative to dewar (cm):\n\tx = 6\n\ty = 6\n\tz = -21\n"
    "measured left ear coil position relative to dewar (cm):\n\tx = -6\n\ty = 6\n\tz = -21\n"
    "measured right ear coil position relative to dewar (cm):\n\tx = 6\n\ty = -6\n\tz = -21\n"
    "measured nasion coil position relative to head (cm):\n\tx = 8.5\n\ty = 0\n\tz = 0\n"
    "measured left ear coil position relative to head (cm):\n\tx = 0\n\ty = 8.5\n\tz = 0\n"
    "measured right ear coil position relative to head (cm):\n\tx = 0\n\ty = -8.5\n\tz = 0\n";
constexpr std::string_view classes = "CLASSGROUPID:\n3\nNAME:\nBAD\nCOMMENT:\n\nNUMBER OF TRIALS:\n2\nLIST OF TRIALS:\n"
                                     "TRIAL NUMBER\n+1\n+9\n";
constexpr std::string_view markers = "CLASSGROUPID:\n0\nNAME:\nbeep\nCOMMENT:\nloud\nNUMBER OF SAMPLES:\n4\n"
                                     "LIST OF SAMPLES:\nTRIAL NUMBER\t\tTIME\n+0 0\n+1 1.5\n+1 x\n+7 0\n";

Input withTexts(const CtfBuilder& builder)
{
    return samplesOf(builder)
        .add(headCoils, coils)
        .add(badChannels, "MLC12\nMLC99\n")
        .add(badSegments, "1 0 0.1\n9 0 1\n2 1 0\n")
        .add(classFile, classes)
        .add(markerFile, markers);
}

// A channel for each kind of sensor that has a name of its own, with and without coils and gains; the last one's name
// holds another's.
CtfBuilder everyKind()
{
    CtfBuilder builder;
    const CoilText coil{{1, 2, 3, 0, 0, 1}, {4, 5, 6, 0, 1, 0}, 0, 2.5};
    builder.channels.clear();
    builder.coefficients.clear();
    for (const int type : {0, 1, 4, 5, 8, 9, 21, 11, 10, 14, 17, 13, 30}) {
        ChannelText& channel = builder.channels.emplace_back();
        channel.name = "X" + std::to_string(type);
        channel.type = type;
        channel.coils.assign(static_cast<std::size_t>(type % 3), coil);
        channel.properGain = type == 4 ? 0.0 : 1e8;
    }
    builder.channels.front().name = "MX5";
    builder.trials = 1;
    builder.samples = 1;
    return builder;
}

// Coefficients that are adaptive alone, for a channel that was recorded with them.
CtfBuilder adaptive()
{
    CtfBuilder builder;
    builder.channels[3].order = 3;
    builder.coefficients = {{"MLC11-1", "G3AR", {{"BG1-1", 0.25}}}, {"GONE", "G1BR", {}}};
    return builder;
}

TEST(CtfFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    const CtfBuilder small;
    CtfBuilder oneTrial;
    oneTrial.trials = 1;
    CtfBuilder lessChannels;
    lessChannels.channels.pop_back();
    Seeds seeds;
    seeds["recording"] = samplesOf(small).bytes.bytes();
    seeds["recording_texts"] = withTexts(small).bytes.bytes();
    seeds["recording_kinds"] = samplesOf(everyKind()).bytes.bytes();
    seeds["recording_adaptive"] = samplesOf(adaptive()).bytes.bytes();
    seeds["recording_two_parts"] = Input()
                                       .add(res4, small.res4())
                                       .add(meg4, small.meg4(0, 1, "MEG42CP"))
                                       .add(secondMeg4, small.meg4(1, 2))
                                       .bytes.bytes();
    const std::vector<std::byte> samples = small.meg4(0, 2);
    seeds["recording_cut"] =
        Input().add(res4, small.res4()).add(meg4, std::span(samples).first(samples.size() - 9)).bytes.bytes();
    seeds["recording_first_trial_cut"] =
        Input().add(res4, small.res4()).add(meg4, std::span(samples).first(50)).bytes.bytes();
    seeds["recording_more_trials"] = Input().add(res4, oneTrial.res4()).add(meg4, samples).bytes.bytes();
    seeds["recording_more_channels"] = Input().add(res4, lessChannels.res4()).add(meg4, samples).bytes.bytes();
    seeds["recording_other_tag"] = Input().add(res4, small.res4()).add(meg4, small.meg4(0, 2, "MEG40CP")).bytes.bytes();
    seeds["recording_without_samples"] = Input().add(res4, small.res4()).bytes.bytes();
    seeds["recording_renamed"] = Input().add(otherRes4, small.res4()).bytes.bytes();
    seeds["recording_empty"] = Input().bytes.bytes();
    compareOrWrite("res4_fuzz", seeds);
}

} // namespace
} // namespace megset::ctf::ctfSeeds_test
