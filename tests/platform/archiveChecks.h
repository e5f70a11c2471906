#pragma once
// What the tests of the archive have in common: the faults that it raises, and values and blocks to store.

#include "megset/platform/CArchive.h"

#include "tests/kit/memoryArchive.h"
#include "tests/platform/fileFaults.h"

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::archiveChecks {

/// A fault that an archive told.
struct Fault
{
    int cause;
    std::string fileName;
    bool operator==(const Fault&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Fault& fault)
{
    return out << "cause " << fault.cause << " of file '" << fault.fileName << "'";
}

inline const Fault endOfFileNamed{CArchiveException::endOfFile, "memory.bin"};
inline const Fault endOfFileUnnamed{CArchiveException::endOfFile, ""};

/// What archive exception `act` raises, if any.
template <class Act>
std::optional<Fault> archiveFault(Act act)
{
    try {
        act();
    } catch (const CArchiveException& exception) {
        return Fault{exception.m_cause, exception.m_strFileName.toUtf8()};
    }
    return std::nullopt;
}

/// The value that the bytes hold, and nothing else.
template <class T>
T loaded(const ByteBuilder& bytes)
{
    T value{};
    LoadingArchive archive(bytes);
    *archive >> value;
    EXPECT_EQ(archive->bytesLeft(), 0U);
    return value;
}

/// Bytes that differ from those around them.
inline std::vector<std::byte> bytePattern(std::size_t length)
{
    std::vector<std::byte> bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = static_cast<std::byte>((i * 7 + i / 251) & 0xFFU);
    return bytes;
}

} // namespace megset::archiveChecks
