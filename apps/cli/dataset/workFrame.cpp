#include "apps/cli/dataset/workFrame.h"

namespace megset::cli {

const std::vector<std::string>& frameNames()
{
    static const std::vector<std::string> names = {"dewar", "dewar-measured", "head"};
    return names;
}

std::string frameName(int frame)
{
    const bool isKnown = frame >= 0 && frame < static_cast<int>(frameNames().size());
    return isKnown ? frameNames()[static_cast<std::size_t>(frame)] : "unknown";
}

} // namespace megset::cli
