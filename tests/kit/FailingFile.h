#pragma once

#include "megset/platform/CMemFile.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace megset {

/// A file in memory that fails as told, and counts what is done to it.
class FailingFile : public CMemFile
{
public:
    using CMemFile::CMemFile;

    /// The n-th write from now on, counted from 1, raises CFileException and writes nothing; later ones go well.
    void failWrite(int n, int cause = CFileException::hardIO) { m_write = {n, cause}; }
    /// The same for reads, for Flush, and for SetLength or Seek.
    void failRead(int n, int cause = CFileException::hardIO) { m_read = {n, cause}; }
    void failFlush(int n, int cause = CFileException::hardIO) { m_flush = {n, cause}; }
    void failSeek(int n, int cause = CFileException::badSeek) { m_seek = {n, cause}; }
    /// The disk holds so many bytes of this file: a write that goes behind them writes what fits and raises diskFull.
    void fullAfter(std::uint64_t bytes) { m_capacity = bytes; }
    /// Reads find the end of the file after so many bytes, while GetLength still tells of all.
    void endsAfter(std::uint64_t bytes) { m_readableBytes = bytes; }

    /// The sizes that were asked for, call by call.
    const std::vector<unsigned>& readSizes() const { return m_readSizes; }
    const std::vector<unsigned>& writeSizes() const { return m_writeSizes; }

    unsigned Read(void* data, unsigned count) override;
    void Write(const void* data, unsigned count) override;
    std::uint64_t Seek(std::int64_t offset, unsigned from) override;
    void SetLength(std::uint64_t bytes) override;
    void Flush() override;

private:
    struct Fault
    {
        int callsLeft = 0; // 0: none is planned
        int cause = 0;
    };
    void meet(Fault& fault) const;

    Fault m_read, m_write, m_flush, m_seek;
    std::uint64_t m_capacity = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t m_readableBytes = std::numeric_limits<std::uint64_t>::max();
    std::vector<unsigned> m_readSizes, m_writeSizes;
};

} // namespace megset
