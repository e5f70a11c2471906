#include "megset/records/results/resultArrays.h"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace megset {
namespace {

constexpr std::int64_t mostElements = std::int64_t{1} << 60;

// A block's size is told in 32 bits, so that a large array goes in parts.
constexpr std::uint64_t partBytes = std::uint64_t{1} << 30;

template <class T>
void exchangeArray(CArchive& ar, std::vector<T>& values, std::string_view name)
{
    const std::int64_t count = ar.exchangeInt64(static_cast<std::int64_t>(values.size()), "count");
    if (ar.IsLoading()) {
        if (!isWithin(count, mostElements) || static_cast<std::uint64_t>(count) > ar.bytesLeft() / sizeof(T))
            AfxThrowArchiveException(CArchiveException::endOfFile);
        values.assign(static_cast<std::size_t>(count), T{});
    }
    auto* data = reinterpret_cast<std::byte*>(values.data());
    std::uint64_t left = values.size() * sizeof(T);
    do {
        const auto part = static_cast<unsigned>(std::min(left, partBytes));
        if (ar.exchangeBlock(data, part, name, archiveTypeName<T>()) != part)
            AfxThrowArchiveException(CArchiveException::endOfFile);
        data += part;
        left -= part;
    } while (left > 0);
}

} // namespace

std::int64_t elementCount(std::initializer_list<std::int64_t> dimensions)
{
    // A dimension of 0 makes 0 of whatever stands beside it, but not of a negative one.
    if (std::ranges::any_of(dimensions, [](std::int64_t dimension) { return dimension < 0; }))
        return -1;
    if (std::ranges::find(dimensions, 0) != dimensions.end())
        return 0;
    std::int64_t count = 1;
    for (const std::int64_t dimension : dimensions) {
        if (dimension > mostElements / count)
            return -1;
        count *= dimension;
    }
    return count;
}

int resizeToZeros(std::vector<double>& values, std::int64_t count)
{
    values.clear();
    if (count < 0)
        return 0;
    try {
        values.resize(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (const std::length_error&) {
        return 0;
    }
    return 1;
}

void exchangeNumbers(CArchive& ar, std::vector<double>& values, std::string_view name)
{
    exchangeArray(ar, values, name);
}

void exchangeNumbers(CArchive& ar, std::vector<std::int32_t>& values, std::string_view name)
{
    exchangeArray(ar, values, name);
}

} // namespace megset
