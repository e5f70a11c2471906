#pragma once
// What must hold for every object with serializezk that could be loaded.

#include "fuzz/harness.h"

#include "megset/platform/ArchiveTracer.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFileException.h"
#include "megset/platform/CMemFile.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace megset {

/// What an archive tells of itself must come in the order of the file, and its sections must end.
class OrderlyTracer : public ArchiveTracer
{
public:
    ~OrderlyTracer() override { require(m_depth == 0); }

    void enter(std::string_view, std::uint64_t offset) override
    {
        moveTo(offset);
        ++m_depth;
    }
    void leave(std::uint64_t offset) override
    {
        moveTo(offset);
        --m_depth;
    }
    void integer(std::string_view, std::string_view, std::uint64_t offset, std::int64_t) override { moveTo(offset); }
    void real(std::string_view, std::string_view, std::uint64_t offset, double) override { moveTo(offset); }
    void text(std::string_view, std::uint64_t offset, const CString&) override { moveTo(offset); }
    void block(std::string_view, std::uint64_t offset, const TracedBlock& block) override
    {
        moveTo(offset);
        require(block.done <= block.bytes);
    }

private:
    void moveTo(std::uint64_t offset)
    {
        require(offset >= m_offset);
        m_offset = offset;
    }

    std::uint64_t m_offset = 0;
    int m_depth = 0;
};

template <class Record>
std::vector<std::byte> stored(Record& record, ArchiveTracer* tracer = nullptr)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.setTracer(tracer);
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

/// What a record stores must load to its last byte, and be stored as the same bytes again, all the same when somebody
/// looks on.
template <class Record>
void storeAndReload(Record& record)
{
    const std::vector<std::byte> bytes = stored(record);
    limitMemory(bytes.size());
    CMemFile copy(bytes);
    CArchive archive(&copy, CArchive::load);
    OrderlyTracer loading;
    archive.setTracer(&loading);
    Record back;
    require(back.serializezk(archive) == 1);
    require(archive.bytesLeft() == 0);
    OrderlyTracer storing;
    require(stored(back, &storing) == bytes);
}

} // namespace megset
