#pragma once
// What an archive tells of itself while it reads or writes, for tools that show a file's structure.

#include <cstdint>
#include <string_view>

namespace megset {

class CString;

/// A block of an archive: an array as it stands in memory.
struct TracedBlock
{
    std::uint64_t bytes = 0;      ///< that it takes
    std::uint64_t done = 0;       ///< of these, that were there
    const void* data = nullptr;   ///< the bytes that were there
    std::string_view elementType; ///< named as the types of fields are; empty where the code gives none
};

/// Told of every field of an archive, in order, with its offset from where the archive began.
/// Values of a broken file arrive here as they stand.
class ArchiveTracer
{
public:
    ArchiveTracer() = default;
    ArchiveTracer(const ArchiveTracer&) = delete;
    ArchiveTracer& operator=(const ArchiveTracer&) = delete;
    virtual ~ArchiveTracer() = default;

    /// A record or section begins and ends. Sections nest; one that is left by an exception ends too.
    virtual void enter(std::string_view section, std::uint64_t offset) = 0;
    virtual void leave(std::uint64_t offset) = 0;

    /// One field. The name is empty where the code that reads it gives none; an element of an array adds "[i]".
    virtual void integer(std::string_view name, std::string_view type, std::uint64_t offset, std::int64_t value) = 0;
    virtual void real(std::string_view name, std::string_view type, std::uint64_t offset, double value) = 0;
    virtual void text(std::string_view name, std::uint64_t offset, const CString& value) = 0;
    virtual void block(std::string_view name, std::uint64_t offset, const TracedBlock& block) = 0;
};

} // namespace megset
