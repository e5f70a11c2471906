#include "megset/numeric/processorPath.h"

namespace megset::numeric {

std::string_view processorPath()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f")) {
        return "avx512f";
    }
    if (__builtin_cpu_supports("avx2")) {
        return "avx2";
    }
#endif
    return "baseline";
}

} // namespace megset::numeric
