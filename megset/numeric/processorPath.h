// Which version of the multi-versioned loops this processor runs.
#pragma once

#include <string_view>

namespace megset::numeric {

/// The versions of the multi-versioned loops, by the instructions that they may use.
enum class ProcessorPath
{
    Baseline,
    Avx2,
    Avx512
};

/// The widest path that this build has and this processor supports.
ProcessorPath currentProcessorPath() noexcept;

/// "avx512f", "avx2" or "baseline".
std::string_view processorPath() noexcept;

} // namespace megset::numeric
