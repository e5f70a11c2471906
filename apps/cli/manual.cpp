#include "apps/cli/manual/manual.h"
#include "apps/cli/commands.h"

#include <iostream>

namespace megset::cli {

void addManual(CLI::App& program)
{
    CLI::App* const man = program.add_subcommand("man", "Write the manual page, as man reads it");
    man->footer("Example:\n  megset man | man -l -");
    man->callback([&program] { writeManPage(program, std::cout); });

    CLI::App* const completion = program.add_subcommand("completion", "Write a script that completes commands");
    auto shell = std::make_shared<std::string>();
    completion->add_option("SHELL", *shell, "bash or zsh")->required()->check(CLI::IsMember({"bash", "zsh"}));
    completion->footer("Example:\n  megset completion bash > /etc/bash_completion.d/megset");
    completion->callback([&program, shell] {
        if (*shell == "zsh")
            writeZshCompletion(program, std::cout);
        else
            writeBashCompletion(program, std::cout);
    });
}

} // namespace megset::cli
