#pragma once
// Archives over files in memory, for tests of formats.

#include "megset/platform/CArchive.h"
#include "megset/platform/CMemFile.h"

#include "tests/kit/ByteBuilder.h"

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace megset {

/// The bytes that `write(archive)` stores.
template <class Write>
std::vector<std::byte> storedBytes(Write write)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    write(archive);
    archive.Close();
    return file.detach();
}

/// An archive that loads given bytes. The file's name is "memory.bin".
class LoadingArchive
{
public:
    explicit LoadingArchive(std::span<const std::byte> bytes) : m_file(bytes), m_archive(&m_file, CArchive::load)
    {
        m_file.SetFilePath("memory.bin");
    }
    explicit LoadingArchive(const ByteBuilder& bytes) : LoadingArchive(std::span(bytes.bytes())) {}

    CArchive& operator*() { return m_archive; }
    CArchive* operator->() { return &m_archive; }
    CMemFile& file() { return m_file; }

private:
    CMemFile m_file;
    CArchive m_archive;
};

} // namespace megset
