#include "megset/numeric/processorPath.h"

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

ProcessorPath currentProcessorPath() noexcept
{
#if MEGSET_HAS_MULTIVERSION
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f"))
        return ProcessorPath::Avx512;
    if (__builtin_cpu_supports("avx2"))
        return ProcessorPath::Avx2;
#endif
    return ProcessorPath::Baseline;
}

std::string_view processorPath() noexcept
{
    switch (currentProcessorPath()) {
    case ProcessorPath::Avx512:
        return "avx512f";
    case ProcessorPath::Avx2:
        return "avx2";
    case ProcessorPath::Baseline:
        break;
    }
    return "baseline";
}

} // namespace megset::numeric
