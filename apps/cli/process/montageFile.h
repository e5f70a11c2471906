#pragma once
// Bipolar and other montages with a reference for each channel, as a person writes them.

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace megset::cli {

struct MontageTerm
{
    std::string channel;
    double weight = 1.0;
    int line = 0; ///< where it stands, from 1
    int column = 0;
};

/// target - (sum of weight x channel) / divisor
struct MontageLine
{
    MontageTerm target;
    std::vector<MontageTerm> terms;
    double divisor = 0.0; ///< 0: not divided
};

/// A fault in a montage file: "line 3, column 7: ...".
class MontageFault : public std::runtime_error
{
public:
    MontageFault(int line, int column, const std::string& fault);
};

/// Reads lines "TARGET = REF" or "TARGET = W1*REF1 + W2*REF2 / D". A "+" or "/" stands between blanks, since names may
/// hold them. Empty lines and what is behind a "#" count for nothing. Throws MontageFault.
std::vector<MontageLine> readMontage(std::istream& in);

} // namespace megset::cli
