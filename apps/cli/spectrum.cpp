#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/export/NpyWriter.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/manual/numberChecks.h"
#include "apps/cli/process/forEachTrial.h"
#include "apps/cli/spectrum/changeSpectra.h"
#include "apps/cli/spectrum/computeSpectra.h"
#include "apps/cli/spectrum/showSpectrum.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct SpectrumArguments
{
    ChangeArguments change;
    std::string freqs;
    std::string octaves;
    SpectrumRequest request;
    std::string className = "active";
    std::string typeName = "magnitude";
    bool show = false;
    ShowRequest shown;
    bool json = false;
    std::string npy;
    std::string svg;
    SpectrumChange edit;
};

void compute(const SpectrumArguments& arguments)
{
    SpectrumRequest request = arguments.request;
    request.axis =
        arguments.freqs.empty() ? spectrum::octaveAxis(arguments.octaves) : spectrum::linearAxis(arguments.freqs);
    request.classIndex = spectrumClass(arguments.className);
    int channels = 0;
    changeDataset(arguments.change, [&](OpenDataset& open) {
        const double rate = open.dataset.getMEGRecordInfozk()->m_dRecSampleRate;
        forEachTrial(open, "Spectra", [&](CMDTrialzk& trial) { channels = computeSpectra(trial, rate, request); });
    });
    std::cout << channels << (channels == 1 ? " channel, " : " channels, ") << request.axis.hz.size()
              << (request.axis.hz.size() == 1 ? " frequency from " : " frequencies from ") << request.axis.hz.front()
              << " to " << request.axis.hz.back() << " Hz\n";
}

void writeNpy(const SpectrumMap& map, const std::string& path)
{
    CreatedFiles created;
    created.add(path);
    NpyWriter writer(path, static_cast<std::int64_t>(map.ms.size()), static_cast<std::int64_t>(map.hz.size()));
    writer.write(0, 0, map.values);
    writer.close();
    created.keep();
}

void writePicture(const SpectrumMap& map, const std::string& path)
{
    CreatedFiles created;
    created.add(path);
    std::ofstream file(path);
    writeSvg(map, file);
    file.close();
    if (!file)
        throw std::runtime_error(shownPath(path) + ": can't be written");
    created.keep();
}

void show(const SpectrumArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    ShowRequest request = arguments.shown;
    request.classIndex = spectrumClass(arguments.className);
    request.type = spectrumType(arguments.typeName);
    request.kind = arguments.request.kind;
    const SpectrumMap map = readSpectrum(*open, request);
    if (!arguments.npy.empty())
        writeNpy(map, arguments.npy);
    if (!arguments.svg.empty())
        writePicture(map, arguments.svg);
    if (arguments.json)
        writeJson(map, std::cout);
    else
        writeText(map, std::cout);
}

void edit(const SpectrumArguments& arguments)
{
    SpectrumChange change = arguments.edit;
    change.classIndex = spectrumClass(arguments.className);
    change.type = spectrumType(arguments.typeName);
    changeDataset(arguments.change, [&](OpenDataset& open) {
        forEachTrial(open, "Spectra", [&](CMDTrialzk& trial) { changeSpectra(open.dataset, trial, change); });
    });
    std::cout << "spectra changed\n";
}

void run(const SpectrumArguments& arguments)
{
    if (arguments.show)
        show(arguments);
    else if (arguments.freqs.empty() && arguments.octaves.empty())
        edit(arguments);
    else
        compute(arguments);
}

void addComputing(CLI::App& command, CLI::Option_group& what, SpectrumArguments& arguments)
{
    SpectrumRequest& request = arguments.request;
    what.add_option("--freqs", arguments.freqs, "Compute at A:B:STEP Hz");
    what.add_option("--octaves", arguments.octaves, "Compute from A to B Hz, N frequencies an octave: A:B:N");
    const std::vector<CLI::Option*> options = {
        command.add_option("--cycles", request.cycles, "Length of the wavelets, 3 to 10")
            ->check(numberWithin(3.0, 10.0))
            ->capture_default_str(),
        command.add_option("--channels", request.channels, "Names of channels (default: by kind)")->delimiter(','),
        command.add_option("--samples", request.samples, "Samples A:B, both included (default: all)"),
        command.add_option("--step", request.step, "Samples from one time point to the next (default: 20 ms)")
            ->check(wholeNumber(1)),
        command.add_option("--edge", request.edge, "Samples left out at each end")->check(wholeNumber(0)),
        command.add_flag("--accumulate", request.accumulate, "Add to the spectra that are there")};
    for (CLI::Option* option : options)
        option->group("To compute");
}

void addShowing(CLI::App& command, CLI::Option_group& what, SpectrumArguments& arguments)
{
    ShowRequest& shown = arguments.shown;
    CLI::Option* const show = what.add_flag("--show", arguments.show, "Show a spectrum, with latency and frequency");
    CLI::Option* const channel = command.add_option("--channel", shown.channel, "The spectrum of one channel");
    const std::vector<CLI::Option*> options = {
        channel,
        command.add_option("--sum", shown.sum, "The statistic over good and shown channels (default: mean)")
            ->check(CLI::IsMember({"mean", "min", "max", "positive", "negative", "rms"}))
            ->excludes(channel),
        command.add_option("--trial", shown.trial, "A trial, counted from 0 (default: the current one)")
            ->check(wholeNumber(0)),
        command.add_flag("--json", arguments.json, "Write a JSON object"),
        command.add_option("--npy", arguments.npy, "NumPy file of times x frequencies"),
        command.add_option("--svg", arguments.svg, "Picture")};
    for (CLI::Option* option : options)
        option->needs(show)->group("To show");
}

void addEditing(CLI::Option_group& what, SpectrumArguments& arguments)
{
    SpectrumChange& change = arguments.edit;
    what.add_option("--baseline", change.baseline, "Divide each frequency by its mean over A:B ms from the trigger");
    what.add_flag("--log", change.logarithm, "Take the natural logarithm");
    what.add_option("--normalize", change.law, "Divide each frequency by a value over all channels and times")
        ->check(CLI::IsMember({"rms", "max", "mean"}));
    what.add_option("--scale", change.scale, "Multiply all data types")->check(finiteNumber());
    what.add_option("--cut", change.cut, "Set values outside LOW:HIGH to 0");
    what.add_flag("--reload", change.reload, "Bring imaginary part, magnitude and phase back as computed");
}

} // namespace

void addSpectrum(CLI::App& program)
{
    auto arguments = std::make_shared<SpectrumArguments>();
    CLI::App* const command =
        program.add_subcommand("spectrum", "Compute, change or show spectra over time and frequency");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const what = command->add_option_group("what");
    addComputing(*command, *what, *arguments);
    addShowing(*command, *what, *arguments);
    addEditing(*what, *arguments);
    what->require_option(1);
    command->add_option("--kind", arguments->request.kind, "Channels of a kind")
        ->check(CLI::IsMember(channelKinds()))
        ->capture_default_str();
    command->add_option("--class", arguments->className, "Class of spectra")
        ->check(CLI::IsMember({"active", "control", "result"}))
        ->capture_default_str();
    command->add_option("--type", arguments->typeName, "Data type")
        ->check(CLI::IsMember({"real", "imaginary", "magnitude", "phase"}))
        ->capture_default_str();
    command->footer("Example:\n  megset spectrum run.meg --freqs 2:40:1 --out power.meg\n"
                    "  megset spectrum power.meg --show --sum mean --svg power.svg");
    command->callback([arguments] { run(*arguments); });
}

} // namespace megset::cli
