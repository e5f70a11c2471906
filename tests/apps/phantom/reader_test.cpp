// What the phantom writes, as the reader of CTF recordings reads it.
#include "apps/phantom/Sources.h"
#include "apps/phantom/coefficients.h"
#include "apps/phantom/phantom.h"
#include "apps/readers/ctf/openCtf.h"
#include "tests/kit/TemporaryFolder.h"

#include <cmath>
#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::phantom::reader_test {

namespace {

using testing::IsEmpty;

class PhantomIsRead : public testing::Test
{
protected:
    ctf::Recording written(const PhantomOptions& options)
    {
        writePhantom(folder.native("a.ds"), options);
        return ctf::openCtf(folder.native("a.ds"));
    }
    /// All samples of a trial in the units of the reader (fT, uV), channels x samples.
    static std::vector<std::vector<double>> trialOf(ctf::Recording& recording, int trial)
    {
        std::vector<std::int32_t> block(recording.data.trialSize());
        recording.data.readTrial(trial, block);
        const auto samples = static_cast<std::size_t>(recording.header.samples);
        std::vector<std::vector<double>> trialSamples;
        for (std::size_t channel = 0; channel < recording.header.channels.size(); ++channel) {
            const double unit = recording.header.channels[channel].unitsPerInteger();
            trialSamples.emplace_back();
            for (std::size_t i = 0; i < samples; ++i)
                trialSamples.back().push_back(unit * block[channel * samples + i]);
        }
        return trialSamples;
    }

    TemporaryFolder folder;
};

double rms(const std::vector<double>& values)
{
    return std::sqrt(std::inner_product(values.begin(), values.end(), values.begin(), 0.0) /
                     static_cast<double>(values.size()));
}

TEST_F(PhantomIsRead, WithoutAWarning)
{
    const ctf::Recording recording = written({});
    EXPECT_THAT(recording.warnings, IsEmpty());
    EXPECT_THAT(recording.header.warnings, IsEmpty());
    EXPECT_THAT(recording.data.warnings(), IsEmpty());
    EXPECT_THAT(recording.badChannels, IsEmpty());
    EXPECT_THAT(recording.badSegments, IsEmpty());
    EXPECT_THAT(recording.badTrials(), IsEmpty());
    EXPECT_EQ(recording.classes.size(), 1U);
    EXPECT_EQ(recording.trials(), 10);
    EXPECT_EQ(recording.header.trials, 10);
    EXPECT_EQ(recording.header.samples, 1200);
    EXPECT_EQ(recording.header.sampleRate, 1200);
    EXPECT_EQ(recording.header.preTriggerPts, 240);
    EXPECT_EQ(recording.header.averages, 0);
    EXPECT_EQ(recording.header.subjectId, "phantom");
}

TEST_F(PhantomIsRead, WithEveryChannelsKindGainAndCoils)
{
    const ctf::Recording recording = written({});
    const Instrument instrument = makeInstrument(275);
    ASSERT_EQ(recording.header.channels.size(), instrument.channels.size());
    for (std::size_t i = 0; i < instrument.channels.size(); ++i) {
        const ctf::Channel& read = recording.header.channels[i];
        const Channel& meant = instrument.channels[i];
        EXPECT_EQ(read.name, meant.name);
        EXPECT_EQ(read.properGain, meant.properGain);
        EXPECT_EQ(read.qGain, meant.qGain);
        EXPECT_EQ(read.gradientOrder, 0);
        const ctf::Kind kind = meant.kind == ChannelKind::stimulus      ? ctf::Kind::stimulus
                               : meant.kind == ChannelKind::eeg         ? ctf::Kind::eeg
                               : meant.kind == ChannelKind::gradiometer ? ctf::Kind::meg
                                                                        : ctf::Kind::reference;
        EXPECT_EQ(read.kind(), kind) << read.name;
        ASSERT_EQ(read.coils.size(), meant.coils.size()) << read.name;
        for (std::size_t k = 0; k < meant.coils.size(); ++k) {
            const ctf::Vector& dewar = read.coils[k].dewar.position;
            EXPECT_LT(length(0.01 * Vector3{dewar[0], dewar[1], dewar[2]} - meant.coils[k].position), 1e-15);
            const ctf::Vector& head = read.coils[k].head.position;
            const Vector3 inHead =
                meant.isField() ? instrument.head.toHead(meant.coils[k].position) : meant.coils[k].position;
            EXPECT_LT(length(0.01 * Vector3{head[0], head[1], head[2]} - inHead), 1e-15);
            const ctf::Vector& direction = read.coils[k].dewar.direction;
            const double sign = meant.isField() && meant.properGain > 0 ? -1 : 1;
            EXPECT_EQ((sign * Vector3{direction[0], direction[1], direction[2]}), meant.coils[k].direction);
        }
    }
}

TEST_F(PhantomIsRead, WithItsHeadCoils)
{
    const ctf::Recording recording = written({});
    const Instrument instrument = makeInstrument(1);
    ASSERT_TRUE(recording.coils.measuredDewar.isComplete());
    ASSERT_TRUE(recording.coils.measuredHead.isComplete());
    ASSERT_TRUE(recording.coils.standardDewar.isComplete());
    EXPECT_EQ(*recording.coils.measuredHead.nasion, (ctf::Vector{10, 0, 0}));
    const ctf::Vector& ear = *recording.coils.measuredDewar.leftEar;
    EXPECT_LT(length(0.01 * Vector3{ear[0], ear[1], ear[2]} - instrument.head.toDewar(instrument.leftEar)), 1e-8);
}

TEST_F(PhantomIsRead, WithEveryCoefficient)
{
    const ctf::Recording recording = written({});
    const Instrument instrument = makeInstrument(275);
    std::size_t record = 0;
    for (const CoefficientTable& table : coefficientTables(instrument))
        for (std::size_t row = 0; row < table.gradiometers.size(); ++row, ++record) {
            const ctf::Coefficients& read = recording.header.coefficients.at(record);
            EXPECT_EQ(read.channel, table.gradiometers[row]);
            for (const int shift : {0, 8, 16, 24})
                EXPECT_EQ(static_cast<char>(read.type >> shift), table.type[static_cast<std::size_t>(3 - shift / 8)]);
            ASSERT_EQ(read.weights.size(), table.references.size());
            for (std::size_t i = 0; i < read.weights.size(); ++i)
                EXPECT_EQ(read.weights[i], (ctf::Weight{table.references[i], table.stored(instrument, row, i)}));
        }
    EXPECT_EQ(record, recording.header.coefficients.size());
}

TEST_F(PhantomIsRead, WithItsMarkersAtTheStimuli)
{
    PhantomOptions options;
    options.channels = 1;
    options.trials = 4;
    options.rate = 977; // times that no decimal number hits
    options.codes = {9, 2, 9};
    options.stimulusIntervalSeconds = 0.0317;
    const PhantomPlan plan = planPhantom(options);
    const ctf::Recording recording = written(options);
    std::vector<Stimulus> found;
    for (const ctf::Marker& marker : recording.markers)
        for (const ctf::Marker::Occurrence& occurrence : marker.occurrences) {
            const double sample = occurrence.time * options.rate + plan.preTriggerSamples;
            EXPECT_NEAR(sample, std::round(sample), 1e-5);
            found.push_back(
                {occurrence.trial, static_cast<int>(std::lround(sample)), std::stoi(marker.name.substr(9))});
        }
    EXPECT_EQ(recording.markers.size(), 2U);
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(plan.stimuli));
}

TEST_F(PhantomIsRead, WithEverySampleOfItsSources)
{
    PhantomOptions options;
    options.trials = 2;
    options.seconds = 0.5;
    options.preTriggerSeconds = 0.1;
    options.noiseScale = 0;
    ctf::Recording recording = written(options);
    const PhantomPlan plan = planPhantom(options);
    const Instrument instrument = makeInstrument(275);
    Sources sources(instrument, options);
    for (int trial = 0; trial < 2; ++trial) {
        const auto read = trialOf(recording, trial);
        const auto courses = sources.courses(plan, trial);
        for (std::size_t channel = 1; channel < read.size(); ++channel) {
            const double unit = instrument.channels[channel].isField() ? 1e15 : 1e6;
            const double half = 0.5 * unit / std::abs(instrument.channels[channel].gain());
            for (std::size_t i = 0; i < read[channel].size(); ++i) {
                double expected = 0;
                for (std::size_t source = 0; source < sources.count(); ++source)
                    expected += unit * sources.share(source, channel) * courses[source][i];
                ASSERT_NEAR(read[channel][i], expected, half * (1 + 1e-6)) << channel << ' ' << i;
            }
        }
    }
}

TEST_F(PhantomIsRead, NoiseHasTheDensityOfTheSensors)
{
    PhantomOptions options;
    options.trials = 1;
    options.seconds = 10;
    options.evokedScale = options.alphaScale = options.interferenceScale = 0;
    ctf::Recording recording = written(options);
    const Instrument instrument = makeInstrument(275);
    const auto read = trialOf(recording, 0);
    for (std::size_t channel = 1; channel < read.size(); ++channel) {
        const double unit = instrument.channels[channel].isField() ? 1e15 : 1e6;
        const double expected = unit * instrument.channels[channel].noise * std::sqrt(600);
        EXPECT_NEAR(rms(read[channel]), expected, 0.04 * expected) << instrument.channels[channel].name;
    }
}

TEST_F(PhantomIsRead, AndOrderThreeByItsCoefficientsLowersTheInterferenceTwentyfold)
{
    PhantomOptions options;
    options.trials = 3;
    ctf::Recording recording = written(options);
    const auto& channels = recording.header.channels;
    for (int trial = 0; trial < options.trials; ++trial) {
        const auto read = trialOf(recording, trial);
        double before = 0;
        double behind = 0;
        for (const ctf::Coefficients& coefficients : recording.header.coefficients) {
            if (coefficients.type != 0x47334252) // G3BR
                continue;
            const auto sensor = static_cast<std::size_t>(coefficients.channel);
            std::vector<double> reduced = read[sensor];
            for (const ctf::Weight& weight : coefficients.weights) {
                // The weights are for integers of the file.
                const auto reference = static_cast<std::size_t>(weight.channel);
                const double value =
                    weight.value * channels[sensor].unitsPerInteger() / channels[reference].unitsPerInteger();
                for (std::size_t i = 0; i < reduced.size(); ++i)
                    reduced[i] -= value * read[reference][i];
            }
            before += rms(read[sensor]) * rms(read[sensor]);
            behind += rms(reduced) * rms(reduced);
        }
        EXPECT_GT(std::sqrt(before / behind), 20) << trial;
    }
}

TEST_F(PhantomIsRead, WithContinuationFilesAsOneRecording)
{
    PhantomOptions options;
    options.channels = 1;
    options.trials = 5;
    const std::int64_t trialBytes = 63 * 1200 * 4;
    options.maxFileBytes = 2 * trialBytes + 8;
    ctf::Recording recording = written(options);
    EXPECT_THAT(recording.data.warnings(), IsEmpty());
    EXPECT_EQ(recording.trials(), 5);
    for (int trial = 0; trial < 5; ++trial)
        EXPECT_EQ(trialOf(recording, trial)[0][240], 1);
}

TEST_F(PhantomIsRead, AContinuousRecordingAsOneTrial)
{
    PhantomOptions options;
    options.channels = 1;
    options.continuous = true;
    ctf::Recording recording = written(options);
    EXPECT_EQ(recording.trials(), 1);
    EXPECT_EQ(recording.header.samples, 12000);
    EXPECT_EQ(recording.header.preTriggerPts, 0);
    const auto read = trialOf(recording, 0);
    EXPECT_EQ(read[0][239], 0);
    EXPECT_EQ(read[0][240], 1);
    EXPECT_EQ(read[0][1440], 1);
    ASSERT_EQ(recording.markers.size(), 1U);
    EXPECT_NEAR(recording.markers[0].occurrences.at(1).time, 1.2, 1e-9);
}

} // namespace

} // namespace megset::phantom::reader_test
