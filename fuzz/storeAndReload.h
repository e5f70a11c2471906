#pragma once
// What must hold for every object with serializezk that could be loaded.

#include "fuzz/harness.h"

#include "megset/platform/CArchive.h"
#include "megset/platform/CFileException.h"
#include "megset/platform/CMemFile.h"

#include <span>
#include <vector>

namespace megset {

template <class Record>
std::vector<std::byte> stored(Record& record)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    require(record.serializezk(archive) == 1);
    archive.Close();
    return file.detach();
}

/// Loads a record from the input; only the exceptions of archives and files may leave, and memory must stay in
/// proportion. Whether it gave 1.
template <class Record>
bool load(Record& record, std::span<const std::byte> input)
{
    limitMemory(input.size());
    CMemFile file(input);
    CArchive archive(&file, CArchive::load);
    bool done = false;
    try {
        done = record.serializezk(archive) == 1;
    } catch (const CArchiveException&) {
    } catch (const CFileException&) {
    }
    require(archive.position() <= file.GetLength());
    return done;
}

/// What a record stores must load to its last byte, and be stored as the same bytes again.
template <class Record>
void storeAndReload(Record& record)
{
    const std::vector<std::byte> bytes = stored(record);
    limitMemory(bytes.size());
    CMemFile copy(bytes);
    CArchive archive(&copy, CArchive::load);
    Record back;
    require(back.serializezk(archive) == 1);
    require(archive.bytesLeft() == 0);
    require(stored(back) == bytes);
}

} // namespace megset
