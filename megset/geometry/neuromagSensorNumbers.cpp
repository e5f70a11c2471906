#include "megset/geometry/neuromagSensorNumbers.h"

#include <array>
#include <span>

namespace megset {
namespace {

constexpr std::array lobe1 = {112, 113, 121, 122, 123, 124, 131, 132, 133, 134, 222,
                              241, 242, 243, 244, 252, 253, 261, 262, 263, 264};
constexpr std::array lobe2 = {31, 32,  33,  34,  11,  12,  13,  14,  21,  22,  23,  24, 41,
                              44, 151, 152, 153, 154, 161, 162, 163, 164, 171, 172, 181};
constexpr std::array lobe3 = {81, 82, 51, 52, 53, 54, 61, 62, 64, 91, 92, 93, 94, 101, 102, 103};
constexpr std::array lobe4 = {42, 43, 63, 71, 72, 73, 74, 104, 111, 114, 221};
constexpr std::array lobe5 = {183, 184, 191, 192, 193, 194, 173, 174, 201, 202, 203, 204,
                              211, 212, 213, 214, 223, 224, 231, 232, 233, 234, 251, 252};

std::span<const int> tripletsOf(int lobe)
{
    switch (lobe) {
    case 1:
        return lobe1;
    case 2:
        return lobe2;
    case 3:
        return lobe3;
    case 4:
        return lobe4;
    case 5:
        return lobe5;
    default:
        return {};
    }
}

} // namespace

std::vector<CString> neuromagSensorNumbers(int lobe)
{
    std::vector<CString> numbers;
    for (const int triplet : tripletsOf(lobe))
        for (int sensor = 0; sensor < 3; ++sensor)
            numbers.push_back(CString::formatted("%03d%d", triplet, sensor));
    return numbers;
}

} // namespace megset
