#include "apps/cli/export/exportSamples.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/TrialReader.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/dataset/sampleRange.h"
#include "apps/cli/export/NpyWriter.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/stopRequest.h"

#include <array>
#include <charconv>
#include <span>
#include <stdexcept>

namespace megset::cli {

namespace {

// The samples of one channel within the range; fewer where it has fewer.
std::span<const double> samplesOf(const CMDChannelzk& channel, const SampleRange& range, bool raw)
{
    const double* const data = raw ? channel.getBkData() : channel.getDataWave();
    const std::int64_t total = raw ? channel.getBkDataSample() : channel.getTotalSample();
    const std::int64_t end = std::min(range.to + 1, total);
    if (data == nullptr || end <= range.from)
        return {};
    return {data + range.from, static_cast<std::size_t>(end - range.from)};
}

std::int64_t sampleCount(const CMDTrialzk& trial, bool raw)
{
    std::int64_t most = 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i))
            most = std::max(most, raw ? channel->getBkDataSample() : channel->getTotalSample());
    return most;
}

// What of one trial goes out.
struct TrialPart
{
    int trial = 0;
    SampleRange range;
};

struct Plan
{
    std::vector<int> channels;
    std::vector<std::string> names;
    std::vector<TrialPart> parts;

    std::int64_t samples() const
    {
        std::int64_t count = 0;
        for (const TrialPart& part : parts)
            count += part.range.count();
        return count;
    }
};

std::vector<int> trialsOf(const OpenDataset& open, const ExportOptions& options)
{
    const int total = open.dataset.m_aTrialFilePath.GetSize();
    if (options.trial && (*options.trial < 0 || *options.trial >= total))
        throw std::runtime_error("there is no trial " + std::to_string(*options.trial) + "; the dataset has " +
                                 std::to_string(total));
    if (options.trial)
        return {*options.trial};
    std::vector<int> trials;
    for (int i = 0; i < total; ++i)
        trials.push_back(i);
    return trials;
}

Plan makePlan(TrialReader& reader, const OpenDataset& open, const ExportOptions& options)
{
    Plan plan;
    for (const int index : trialsOf(open, options)) {
        const CMDTrialzk& trial = reader.read(index);
        if (plan.parts.empty())
            plan.channels = selectChannels(trial, options.channels, options.kind);
        plan.parts.push_back({index, parseSampleRange(options.samples, sampleCount(trial, options.raw))});
        if (plan.names.empty())
            for (const int channel : plan.channels)
                plan.names.push_back(trial.getChannel(channel)->m_strChannelName.toUtf8());
    }
    if (plan.channels.empty())
        throw std::runtime_error("the dataset has no channel of this kind");
    return plan;
}

const CMDChannelzk* channelAt(const CMDTrialzk& trial, int index)
{
    return index < trial.getTotalChannel() ? trial.getChannel(index) : nullptr;
}

void appendNumber(std::string& line, double value)
{
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    line.append(buffer.data(), end);
}

void appendRow(std::string& text, const std::vector<std::span<const double>>& rows, std::size_t sample)
{
    for (const std::span<const double>& row : rows) {
        text += '\t';
        if (sample < row.size())
            appendNumber(text, row[sample]);
    }
    text += '\n';
}

void writeTextPart(OpenDataset& open, const CMDTrialzk& trial, const TrialPart& part, const Plan& plan, bool raw,
                   std::ofstream& file)
{
    std::vector<std::span<const double>> rows;
    for (const int index : plan.channels) {
        const CMDChannelzk* const channel = channelAt(trial, index);
        rows.push_back(channel != nullptr ? samplesOf(*channel, part.range, raw) : std::span<const double>());
    }
    const CMEGRecordInfozkProzk& recording = open.dataset.m_recordInfo;
    const double rate = raw ? recording.m_dRawSampleRate : recording.m_dRecSampleRate;
    const std::int64_t trigger = raw ? recording.m_nRawPreTrigPts : recording.m_nRecPreTrigPts;
    std::string text;
    for (std::int64_t i = 0; i < part.range.count(); ++i) {
        text = std::to_string(part.trial) + '\t';
        appendNumber(text, static_cast<double>(part.range.from + i - trigger) / rate);
        appendRow(text, rows, static_cast<std::size_t>(i));
        file << text;
    }
}

} // namespace

ExportedShape exportNpy(OpenDataset& open, const ExportOptions& options, const std::filesystem::path& path)
{
    TrialReader reader(open);
    const Plan plan = makePlan(reader, open, options);
    const ExportedShape shape = {static_cast<std::int64_t>(plan.channels.size()), plan.samples()};
    CreatedFiles created;
    created.add(path);
    NpyWriter writer(path, shape.channels, shape.samples);
    std::int64_t column = 0;
    for (const TrialPart& part : plan.parts) {
        endWhenAsked();
        const CMDTrialzk& trial = reader.read(part.trial);
        for (std::size_t row = 0; row < plan.channels.size(); ++row)
            if (const CMDChannelzk* const channel = channelAt(trial, plan.channels[row]))
                writer.write(static_cast<std::int64_t>(row), column, samplesOf(*channel, part.range, options.raw));
        column += part.range.count();
    }
    writer.close();
    created.keep();
    return shape;
}

ExportedShape exportText(OpenDataset& open, const ExportOptions& options, const std::filesystem::path& path)
{
    TrialReader reader(open);
    const Plan plan = makePlan(reader, open, options);
    CreatedFiles created;
    created.add(path);
    std::ofstream file(path, std::ios::binary);
    file << "trial\ttime_s";
    for (const std::string& name : plan.names)
        file << '\t' << name;
    file << '\n';
    for (const TrialPart& part : plan.parts) {
        endWhenAsked();
        writeTextPart(open, reader.read(part.trial), part, plan, options.raw, file);
    }
    file.close();
    if (!file)
        throw std::runtime_error(shownPath(path) + ": can't be written");
    created.keep();
    return {static_cast<std::int64_t>(plan.channels.size()), plan.samples()};
}

} // namespace megset::cli
