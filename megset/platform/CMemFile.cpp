#include "megset/platform/CMemFile.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

namespace megset {

std::vector<std::byte> CMemFile::detach()
{
    m_position = 0;
    return std::exchange(m_content, {});
}

// There is nothing to open: the content stays as it is, or goes when it is to be made anew.
bool CMemFile::Open(const CString& path, unsigned flags, CFileException*)
{
    SetFilePath(path);
    m_position = 0;
    if ((flags & modeCreate) != 0 && (flags & modeNoTruncate) == 0)
        m_content.clear();
    return true;
}

unsigned CMemFile::Read(void* data, unsigned count)
{
    if (m_position >= m_content.size() || count == 0)
        return 0;
    const auto done = static_cast<unsigned>(std::min<std::uint64_t>(count, m_content.size() - m_position));
    std::memcpy(data, m_content.data() + m_position, done);
    m_position += done;
    return done;
}

void CMemFile::Write(const void* data, unsigned count)
{
    if (count == 0)
        return;
    const std::uint64_t behind = m_position + count;
    if (behind > m_content.size())
        grow(behind);
    std::memcpy(m_content.data() + m_position, data, count);
    m_position = behind;
}

std::uint64_t CMemFile::Seek(std::int64_t offset, unsigned from)
{
    const std::uint64_t base = from == begin ? 0 : from == current ? m_position : m_content.size();
    // The sum wraps around for an offset below 0, as it should; what is before the start ends up above the limit.
    const std::uint64_t position = base + static_cast<std::uint64_t>(offset);
    if (position > INT64_MAX)
        AfxThrowFileException(CFileException::badSeek, 0, GetFilePath());
    m_position = position;
    return m_position;
}

void CMemFile::SetLength(std::uint64_t bytes)
{
    m_content.resize(std::min<std::uint64_t>(bytes, m_content.size()));
    grow(bytes);
}

// Memory is the disk of this file: when it runs out, the disk is full.
void CMemFile::grow(std::uint64_t bytes)
{
    if (bytes <= m_content.size())
        return;
    try {
        m_content.resize(bytes);
    } catch (const std::bad_alloc&) {
        AfxThrowFileException(CFileException::diskFull, 0, GetFilePath());
    } catch (const std::length_error&) {
        AfxThrowFileException(CFileException::diskFull, 0, GetFilePath());
    }
}

} // namespace megset
