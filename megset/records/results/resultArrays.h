#pragma once
// Arrays of numbers in result holders: sizes that can't overflow, access that can't run over, and their form in files.

#include "megset/platform/CArchive.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <vector>

namespace megset {

/// What a query gives where there is no value.
inline constexpr double noValue = std::numeric_limits<double>::quiet_NaN();

/// Product of the dimensions; -1 when one is negative or the product is above 2^60.
std::int64_t elementCount(std::initializer_list<std::int64_t> dimensions);

/// Whether `index` lies in 0 .. size - 1.
constexpr bool isWithin(std::int64_t index, std::int64_t size)
{
    return index >= 0 && index < size;
}

/// Makes `values` an array of `count` zeros. 1, or 0 and an empty array when the count is negative or memory is short.
int resizeToZeros(std::vector<double>& values, std::int64_t count);

/// The element, or noValue outside the array.
inline double valueAt(const std::vector<double>& values, std::int64_t index)
{
    return isWithin(index, static_cast<std::int64_t>(values.size())) ? values[static_cast<std::size_t>(index)]
                                                                     : noValue;
}

/// Stores an element: 1, or 0 outside the array.
inline int setValueAt(std::vector<double>& values, std::int64_t index, double value)
{
    if (!isWithin(index, static_cast<std::int64_t>(values.size())))
        return 0;
    values[static_cast<std::size_t>(index)] = value;
    return 1;
}

/// Whether the array has as many elements as the dimensions say.
template <class T>
bool hasShape(const std::vector<T>& values, std::initializer_list<std::int64_t> dimensions)
{
    return static_cast<std::int64_t>(values.size()) == elementCount(dimensions);
}

/// The same, or empty: the array is absent.
template <class T>
bool hasShapeOrIsEmpty(const std::vector<T>& values, std::initializer_list<std::int64_t> dimensions)
{
    return values.empty() || hasShape(values, dimensions);
}

/// An array of numbers in a file: the count as an __int64 and the elements as one block. A count that the rest of the
/// file can't hold is the end-of-file exception.
void exchangeNumbers(CArchive& ar, std::vector<double>& values, std::string_view name);
/// The same of 32-bit integers.
void exchangeNumbers(CArchive& ar, std::vector<std::int32_t>& values, std::string_view name);

} // namespace megset
