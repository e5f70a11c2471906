// Sums that only grow, to the bit without one addition after the other. Internal to numeric/ and its tests.
//
// While a sum stays between two powers of two it is a multiple of one unit, the distance of numbers there, and so is
// the next sum after rounding: to add v is to add the multiple that is nearest to v. Only for a v half-way between two
// of them does it matter what the sum is. So the values of a group can be rounded first, by adding and taking away a
// number of that size, and these multiples be added in any order without any further rounding. Where a group takes the
// sum past the upper power, or has a value half-way, its values are added one after the other.
#pragma once

#include <bit>
#include <cstdint>

namespace megset::numeric {

/// The values of a group, each rounded to a sum's unit by adding and taking away its rounder.
struct RoundedGroup
{
    double sum = 0.0;
    double mostCutOff = 0.0; ///< the largest |value - rounded|
};

/// A sum of values none of which is below 0. Infinities and NaN may be among them.
class GrowingSum
{
public:
    explicit GrowingSum(double start) noexcept : m_value(start), m_rounder(powerNotAbove(start)) {}

    double value() const noexcept { return m_value; }

    /// v + rounder - rounder is the multiple of the unit next to v, for v below it; any other gives no less than it.
    double rounder() const noexcept { return m_rounder; }

    /// False, with nothing added, when the group's values have to be added one after the other.
    bool add(const RoundedGroup& group) noexcept
    {
        const double halfUnit = m_rounder * 0x1p-53; // may be too small for a number, and then nothing is below it
        const double upperPower = m_rounder * 2.0;
        const double sum = m_value + group.sum;
        if (!(group.mostCutOff < halfUnit && sum < upperPower))
            return false;
        m_value = sum;
        return true;
    }

private:
    /// Of two; 0 when there is none among the normal numbers, infinity or NaN as they come.
    static double powerNotAbove(double value) noexcept
    {
        constexpr int fractionBits = 52;
        return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) >> fractionBits << fractionBits);
    }

    double m_value;
    double m_rounder;
};

} // namespace megset::numeric
