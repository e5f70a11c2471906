#include "apps/cli/commands.h"
#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/layout/SensorMap.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct LayoutArguments
{
    std::string dataset;
    std::string svg;
};

void drawLayout(const LayoutArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.dataset, notes);
    CMDTrialzk* const trial = open->dataset.getCurrentTrialPt();
    if (trial == nullptr)
        throw std::runtime_error(shownPath(arguments.dataset) + ": its current trial can't be read");
    const std::vector<SensorMap> maps = makeSensorMaps(*trial);
    if (maps.empty())
        throw std::runtime_error(shownPath(arguments.dataset) + ": no sensor has a position");
    CreatedFiles created;
    created.add(arguments.svg);
    std::ofstream file(arguments.svg);
    writeSvg(maps, file);
    file.close();
    if (!file)
        throw std::runtime_error(shownPath(arguments.svg) + ": can't be written");
    created.keep();
    std::cout << arguments.svg << ':';
    for (const SensorMap& map : maps)
        std::cout << ' ' << map.points.size() << ' ' << map.title << (&map == &maps.back() ? "\n" : ",");
}

} // namespace

void addLayout(CLI::App& program)
{
    auto arguments = std::make_shared<LayoutArguments>();
    CLI::App* const command = program.add_subcommand("layout", "Draw the sensors on the plane with their names");
    command->add_option("DATASET", arguments->dataset, "A dataset file (.meg)")->required();
    command->add_option("--svg", arguments->svg, "Picture to write")->required();
    command->footer("Example:\n  megset layout run.meg --svg sensors.svg");
    command->callback([arguments] { drawLayout(*arguments); });
}

} // namespace megset::cli
