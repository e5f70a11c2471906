#pragma once
// The .hc file: where the three head coils are, in the dewar and in the head's own frame.

#include "apps/readers/ctf/Res4.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace megset::ctf {

/// Places of the coils in one frame, cm. A place that is not in the file is absent.
struct CoilSet
{
    std::optional<Vector> nasion;
    std::optional<Vector> leftEar;
    std::optional<Vector> rightEar;

    bool isComplete() const { return nasion && leftEar && rightEar; }
    bool operator==(const CoilSet&) const = default;
};

struct HeadCoils
{
    CoilSet standardDewar; ///< of a standard head
    CoilSet measuredDewar;
    CoilSet measuredHead;

    bool operator==(const HeadCoils&) const = default;
};

/// Reads a .hc file. What makes no sense is passed over, and `warnings` gets a sentence for it.
HeadCoils parseHeadCoils(std::string_view text, const std::string& file, std::vector<std::string>& warnings);

} // namespace megset::ctf
