#pragma once

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

namespace megset::kit {

/// What a program left behind: its exit code (-1 when a signal ended it) and all that it printed.
struct ProgramResult
{
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// Runs a program with these arguments and an empty standard input, and waits for its end. `environment` holds
/// NAME=value settings that come on top of the test's own.
ProgramResult runProgram(const std::string& path, const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment = {});

/// The same, but the program gets a signal after that time unless it has ended.
ProgramResult runAndKillProgram(const std::string& path, const std::vector<std::string>& arguments,
                                std::chrono::microseconds after, int signal = SIGKILL);

} // namespace megset::kit
