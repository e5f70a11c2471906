#include "tests/kit/FailingFile.h"

#include <algorithm>

namespace megset {
namespace {

// How many of `count` bytes from `position` on lie before `end`.
unsigned before(std::uint64_t end, std::uint64_t position, unsigned count)
{
    return static_cast<unsigned>(std::min<std::uint64_t>(count, end - std::min(end, position)));
}

} // namespace

void FailingFile::meet(Fault& fault) const
{
    if (fault.callsLeft > 0 && --fault.callsLeft == 0)
        AfxThrowFileException(fault.cause, 0, GetFilePath());
}

unsigned FailingFile::Read(void* data, unsigned count)
{
    m_readSizes.push_back(count);
    meet(m_read);
    return CMemFile::Read(data, before(m_readableBytes, GetPosition(), count));
}

void FailingFile::Write(const void* data, unsigned count)
{
    m_writeSizes.push_back(count);
    meet(m_write);
    const unsigned fits = before(m_capacity, GetPosition(), count);
    CMemFile::Write(data, fits);
    if (fits < count)
        AfxThrowFileException(CFileException::diskFull, 0, GetFilePath());
}

std::uint64_t FailingFile::Seek(std::int64_t offset, unsigned from)
{
    meet(m_seek);
    return CMemFile::Seek(offset, from);
}

void FailingFile::SetLength(std::uint64_t bytes)
{
    meet(m_seek);
    if (bytes > m_capacity)
        AfxThrowFileException(CFileException::diskFull, 0, GetFilePath());
    CMemFile::SetLength(bytes);
}

void FailingFile::Flush()
{
    meet(m_flush);
}

} // namespace megset
