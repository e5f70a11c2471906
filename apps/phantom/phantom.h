#pragma once
// A simulated recording in the CTF format: stimuli that a dipole in the brain answers, alpha rhythm, noise of the
// sensors, and interference from outside that gradient noise reduction takes away. See docs/phantom.md.

#include "apps/phantom/PhantomOptions.h"

#include <cstddef>
#include <filesystem>

namespace megset::phantom {

/// What was written.
struct PhantomReport
{
    PhantomPlan plan;
    std::size_t channels = 0; ///< of all kinds
    int sampleFiles = 0;      ///< the .meg4 file and its continuations
};

/// Writes the recording into a new folder, whose name ends with .ds. Equal options give equal bytes, on every machine
/// and for every name of the folder. Throws std::invalid_argument for options that can't be fulfilled and a folder with
/// another ending, std::runtime_error when the folder exists or can't be written; then nothing is left behind.
PhantomReport writePhantom(const std::filesystem::path& folder, const PhantomOptions& options = {});

} // namespace megset::phantom
