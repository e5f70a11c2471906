#include "apps/cli/demo/demo.h"
#include "apps/cli/commands.h"

#include <iostream>
#include <memory>

namespace megset::cli {

void addDemo(CLI::App& program)
{
    auto folder = std::make_shared<std::string>("megset-demo");
    CLI::App* const command = program.add_subcommand(
        "demo", "Simulate a recording, import it, reduce its noise, draw its sensors and export it, step by step");
    command->add_option("DIR", *folder, "Folder for all that is made")->capture_default_str();
    command->footer("Example:\n  megset demo /tmp/megset-demo");
    command->callback([folder] { runDemo(*folder, std::cout); });
}

} // namespace megset::cli
