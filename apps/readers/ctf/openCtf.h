#pragma once
// A CTF recording as a whole: a folder NAME.ds with its files.

#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/Meg4.h"
#include "apps/readers/ctf/Res4.h"
#include "apps/readers/ctf/annotations.h"
#include "apps/readers/ctf/headCoils.h"

#include <filesystem>
#include <string>
#include <vector>

namespace megset::ctf {

struct Recording
{
    std::filesystem::path folder;
    std::string name; ///< what the files are named by
    Res4 header;
    Meg4 data;
    HeadCoils coils;              ///< empty without .hc file
    std::vector<int> badChannels; ///< by BadChannels, and those without gain; rising
    std::vector<BadSegment> badSegments;
    std::vector<TrialClass> classes;
    std::vector<Marker> markers;
    std::vector<std::string> warnings; ///< sentences about what was cut or passed over

    /// Trials that can be read, which may not be what the header counts.
    int trials() const { return data.trials(); }
    /// Trials of the class BAD, rising, each once.
    std::vector<int> badTrials() const;
};

/// Opens a recording. CtfError when it can't be read: no CTF dataset, a header that is missing, cut or broken, no whole
/// trial. Samples stay in their files until they are asked for.
Recording openCtf(const std::filesystem::path& folder);

} // namespace megset::ctf
