#include "megset/platform/version.h"

namespace megset {

// The build gives MEGSET_VERSION, so that the number stands in one place.
std::string_view version()
{
    return MEGSET_VERSION;
}

std::string compiler()
{
#if defined(__clang__)
    return "Clang " + std::to_string(__clang_major__) + '.' + std::to_string(__clang_minor__) + '.' +
           std::to_string(__clang_patchlevel__);
#else
    return "GCC " + std::to_string(__GNUC__) + '.' + std::to_string(__GNUC_MINOR__) + '.' +
           std::to_string(__GNUC_PATCHLEVEL__);
#endif
}

} // namespace megset
