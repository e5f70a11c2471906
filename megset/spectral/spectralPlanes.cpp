#include "megset/spectral/spectralPlanes.h"

#include <cstddef>

namespace megset {
namespace {

// A row of a plane whose contents are dropped; null when memory or the file can't hold `planeElements`.
SampleArray dropBuffer(const CArchive& ar, std::int64_t rowElements, std::int64_t planeElements)
{
    constexpr std::int64_t most = INT64_MAX / static_cast<std::int64_t>(sizeof(double));
    if (planeElements < 0 || planeElements > most ||
        !ar.mayHold(static_cast<std::uint64_t>(planeElements) * sizeof(double)))
        return nullptr;
    return tryNewSamples(rowElements, false);
}

// False when the file ended inside the row.
bool dropRow(CArchive& ar, double* row, std::int64_t nFreqPt)
{
    const std::uint32_t bytes = guardedBlockBytes(nFreqPt, sizeof(double));
    return ar.exchangeBlock(row, bytes, "dropped", archiveTypeName<double>()) == bytes;
}

// A guarded plane, row by row: `readRow(buffer)` gives false where the file ended inside the row.
template <class ReadRow>
BlockResult dropPlane(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt, ReadRow readRow)
{
    if (!exchangeGuard(ar, false))
        return BlockResult::absent;
    const std::int64_t count = planeCount(nTimePt, nFreqPt);
    if (count == 0)
        return BlockResult::complete;
    const SampleArray row = dropBuffer(ar, nFreqPt, count);
    if (row == nullptr)
        return BlockResult::noMemory;
    for (std::int64_t t = 0; t < nTimePt; ++t)
        if (!readRow(row.get()))
            return BlockResult::partial;
    return BlockResult::complete;
}

} // namespace

std::int64_t planeCount(std::int64_t nTimePt, std::int64_t nFreqPt) noexcept
{
    if (nTimePt == 0 || nFreqPt == 0)
        return 0;
    if (nTimePt < 0 || nFreqPt < 0)
        return -1;
    return nTimePt > INT64_MAX / nFreqPt ? INT64_MAX : nTimePt * nFreqPt;
}

std::span<double> planeSpan(const SampleArray& plane, std::int64_t count) noexcept
{
    if (plane == nullptr || count < 1)
        return {};
    return {plane.get(), static_cast<std::size_t>(count)};
}

BlockResult exchangePlane(CArchive& ar, SampleArray& plane, std::int64_t count, bool legalShape, std::string_view name)
{
    if (ar.IsStoring() && (!legalShape || count < 0)) {
        exchangeGuard(ar, false);
        return BlockResult::absent;
    }
    return exchangeGuardedBlock(ar, plane, count, name);
}

BlockResult dropPlaneOfRows(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt)
{
    return dropPlane(ar, nTimePt, nFreqPt, [&](double* row) { return dropRow(ar, row, nFreqPt); });
}

BlockResult dropPlaneOfValues(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt)
{
    return dropPlane(ar, nTimePt, nFreqPt, [&](double* row) {
        for (std::int64_t f = 0; f < nFreqPt; ++f)
            ar.exchangeNamed("dropped", row[f]);
        return true;
    });
}

BlockResult dropPlaneOfGuardedRows(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt)
{
    if (!exchangeGuard(ar, false))
        return BlockResult::absent;
    for (std::int64_t t = 0; t < nTimePt; ++t) {
        if (!exchangeGuard(ar, false))
            continue;
        const SampleArray row = dropBuffer(ar, nFreqPt, nFreqPt);
        if (row == nullptr)
            return BlockResult::noMemory;
        if (!dropRow(ar, row.get(), nFreqPt))
            return BlockResult::partial;
    }
    return BlockResult::complete;
}

} // namespace megset
