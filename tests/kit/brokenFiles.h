#pragma once
// Files that are cut short or changed, for tests of formats.

#include "megset/platform/CArchiveException.h"

#include "tests/kit/memoryArchive.h"
#include "tests/kit/tried.h"

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

/// Runs `use(prefix)` with every `step`-th prefix of the file, the empty one first and never the whole.
template <class Use>
void forEachPrefix(const std::vector<std::byte>& bytes, Use use, std::size_t step = 1)
{
    for (std::size_t length = 0; length < bytes.size() && !::testing::Test::HasFatalFailure(); length += step) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        countTried(Tried::prefix);
        use(std::span<const std::byte>(bytes).first(length));
    }
}

/// Fails the test unless `load(archive)` gives 0, or meets the end, on every `step`-th prefix of the file.
template <class Load>
void expectEveryPrefixRefused(const std::vector<std::byte>& bytes, Load load, std::size_t step = 1)
{
    forEachPrefix(
        bytes, [&](std::span<const std::byte> prefix) { ASSERT_EQ(tryLoading(prefix, load), 0); }, step);
}

/// What the reader of a record with its own tag says of another record.
inline CString otherKind(const CString& tag)
{
    return tag + ": The record is of another kind or corrupted!";
}

/// As many as a test takes of a file's bits: all of a small one, of larger ones a part in which every bit of a byte is
/// met.
inline std::size_t bitStep(const std::vector<std::byte>& bytes)
{
    return bytes.size() / 1024 * 2 + 1;
}

/// Runs `use(bytes)` with single bits changed, every `step`-th of the file.
template <class Use>
void forEachBitFlip(std::vector<std::byte> bytes, Use use, std::size_t step)
{
    for (std::size_t bit = 0; bit < 8 * bytes.size() && !::testing::Test::HasFatalFailure(); bit += step) {
        SCOPED_TRACE("bit " + std::to_string(bit));
        const std::byte mask{static_cast<unsigned char>(1U << (bit % 8))};
        bytes[bit / 8] ^= mask;
        countTried(Tried::bitFlip);
        use(std::span<const std::byte>(bytes));
        bytes[bit / 8] ^= mask;
    }
}

template <class Use>
void forEachBitFlip(const std::vector<std::byte>& bytes, Use use)
{
    forEachBitFlip(bytes, use, bitStep(bytes));
}

} // namespace megset
