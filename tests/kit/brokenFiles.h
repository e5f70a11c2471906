#pragma once
// Files that are cut short or changed, for tests of formats.

#include "megset/platform/CArchiveException.h"

#include "tests/kit/memoryArchive.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// Runs `load(archive)` on what may be broken: what it gives, 0 also for an early end of the file.
template <class Load>
int tryLoading(std::span<const std::byte> bytes, Load load)
{
    LoadingArchive archive(bytes);
    try {
        return load(*archive);
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
        return 0;
    }
}

/// Fails the test unless `load(archive)` gives 0, or meets the end, on every `step`-th prefix of the file.
template <class Load>
void expectEveryPrefixRefused(const std::vector<std::byte>& bytes, Load load, std::size_t step = 1)
{
    for (std::size_t length = 0; length < bytes.size(); length += step)
        ASSERT_EQ(tryLoading(std::span(bytes).first(length), load), 0) << length << " bytes";
}

/// What the reader of a record with its own tag says of another record.
inline CString otherKind(const CString& tag)
{
    return tag + ": The record is of another kind or corrupted!";
}

/// Runs `use(bytes)` with single bits changed: all of a small file, of larger ones a part in which every bit of a byte
/// is met.
template <class Use>
void forEachBitFlip(std::vector<std::byte> bytes, Use use)
{
    const std::size_t step = bytes.size() / 1024 * 2 + 1;
    for (std::size_t bit = 0; bit < 8 * bytes.size() && !::testing::Test::HasFatalFailure(); bit += step) {
        SCOPED_TRACE("bit " + std::to_string(bit));
        const std::byte mask{static_cast<unsigned char>(1U << (bit % 8))};
        bytes[bit / 8] ^= mask;
        use(std::span<const std::byte>(bytes));
        bytes[bit / 8] ^= mask;
    }
}

} // namespace megset
