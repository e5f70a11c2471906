#include "megset/platform/CFile.h"

#include "megset/platform/paths.h"

namespace megset {
namespace {

FileOpening openingOf(unsigned flags)
{
    const unsigned access = flags & 0x3U;
    FileOpening opening;
    opening.read = access != CFile::modeWrite;
    opening.write = access != CFile::modeRead;
    opening.create = (flags & CFile::modeCreate) != 0;
    opening.truncate = opening.create && (flags & CFile::modeNoTruncate) == 0;
    switch (flags & 0x70U) {
    case CFile::shareExclusive:
    case CFile::shareDenyRead:
        opening.sharing = FileSharing::none;
        break;
    case CFile::shareDenyWrite:
        opening.sharing = FileSharing::readers;
        break;
    default:
        break;
    }
    return opening;
}

} // namespace

CFile::CFile(const CString& path, unsigned flags)
{
    CFileException exception;
    if (!CFile::Open(path, flags, &exception))
        throw CFileException(exception);
}

CFile::~CFile() = default;

bool CFile::Open(const CString& path, unsigned flags, CFileException* exception)
{
    m_strFileName = path.IsEmpty() ? path : fullPath(path);
    const FileFault fault = m_file.open(toNative(path), openingOf(flags));
    if (!fault)
        return true;
    if (exception != nullptr)
        *exception = CFileException(fault.cause, fault.osError, m_strFileName);
    return false;
}

unsigned CFile::Read(void* data, unsigned count)
{
    std::size_t done = 0;
    check(m_file.read(data, count, done));
    return static_cast<unsigned>(done);
}

void CFile::Write(const void* data, unsigned count)
{
    check(m_file.write(data, count));
}

std::uint64_t CFile::Seek(std::int64_t offset, unsigned from)
{
    std::uint64_t position = 0;
    check(m_file.seek(offset, static_cast<int>(from), position));
    return position;
}

std::uint64_t CFile::GetPosition() const
{
    std::uint64_t position = 0;
    check(m_file.seek(0, current, position));
    return position;
}

std::uint64_t CFile::GetLength() const
{
    std::uint64_t bytes = 0;
    check(m_file.length(bytes));
    return bytes;
}

void CFile::SetLength(std::uint64_t bytes)
{
    check(m_file.setLength(bytes));
}

void CFile::Flush() {}

void CFile::Close()
{
    check(m_file.close());
}

CString CFile::GetFileName() const
{
    return m_strFileName.Mid(m_strFileName.ReverseFind(u'\\') + 1);
}

CString CFile::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(u'.');
    return dot < 0 ? name : name.Left(dot);
}

void CFile::check(const FileFault& fault) const
{
    if (fault)
        AfxThrowFileException(fault.cause, fault.osError, m_strFileName);
}

} // namespace megset
