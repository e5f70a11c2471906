#include "apps/cli/process/resample.h"
#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/manual/numberChecks.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct ResampleArguments
{
    ChangeArguments change;
    ResampleRequest request;
    std::string made; ///< --new
};

void resample(const ResampleArguments& arguments)
{
    double rate = 0.0;
    int undone = 0;
    if (!arguments.made.empty())
        rate = makeResampled(arguments.change, arguments.request, arguments.made);
    else
        changeDataset(arguments.change, [&](OpenDataset& open) {
            undone = resampleDataset(open, arguments.request);
            rate = open.dataset.getMEGRecordInfozk()->m_dRecSampleRate;
        });
    if (undone > 0)
        std::cerr
            << "megset: re-sampling starts from the samples as recorded: noise reduction and montage are undone in "
            << undone << (undone == 1 ? " trial" : " trials") << "; --new keeps them\n";
    std::cout << "re-sampled by " << arguments.request.factor << ": " << rate << " Hz\n";
}

} // namespace

void addResample(CLI::App& program)
{
    auto arguments = std::make_shared<ResampleArguments>();
    CLI::App* const command = program.add_subcommand("resample", "Lower the sampling rate by a whole factor");
    addChangeOptions(*command, arguments->change);
    command->add_option("--factor", arguments->request.factor, "Keep one sample of so many; 1 undoes it")
        ->check(wholeNumber())
        ->required();
    command->add_flag("--average", arguments->request.average, "The mean of the samples, not the first of them");
    command
        ->add_option("--new", arguments->made,
                     "Make a dataset that has been recorded so, and can't be brought back to the former rate")
        ->excludes("--out")
        ->excludes("--in-place")
        ->group(targetHeading);
    command->footer("Example:\n  megset resample run.meg --factor 4 --average --out slow.meg");
    command->callback([arguments] { resample(*arguments); });
}

} // namespace megset::cli
