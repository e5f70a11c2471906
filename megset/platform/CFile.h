#pragma once

#include "megset/platform/CFileException.h"
#include "megset/platform/nativeFile.h"

#include <cstdint>

namespace megset {

/// A file, unbuffered: what was written is with the system at once. Paths are in library form.
/// Operations on an open file raise CFileException when they fail.
class CFile
{
public:
    /// How a file is opened: access, sharing and creation, joined by `|`.
    enum OpenFlags : unsigned
    {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010, ///< nobody else who asks for a lock may have it open
        shareDenyWrite = 0x0020, ///< others may read
        shareDenyRead = 0x0030,  ///< as shareExclusive: this system's locks can't tell the two apart
        shareDenyNone = 0x0040,
        modeCreate = 0x1000,     ///< makes the file, or empties the one that is there
        modeNoTruncate = 0x2000, ///< with modeCreate: keeps the content of a file that is there
        typeBinary = 0x8000
    };
    /// Where Seek counts from.
    enum SeekPosition : unsigned
    {
        begin = 0,
        current = 1,
        end = 2
    };

    CFile() = default;
    /// Opens the file; raises CFileException when that fails.
    CFile(const CString& path, unsigned flags);
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    virtual ~CFile();

    /// Opens the file, closing an open one first. False on failure, with the reason in `exception` if one is given.
    /// A file that is open elsewhere is not emptied. A folder or a pipe is refused.
    virtual bool Open(const CString& path, unsigned flags, CFileException* exception = nullptr);
    virtual bool isOpen() const { return m_file.isOpen(); }
    /// Reads up to `count` bytes; fewer only at the end of the file.
    virtual unsigned Read(void* data, unsigned count);
    virtual void Write(const void* data, unsigned count);
    /// Moves, and gives the new position in bytes from the start.
    virtual std::uint64_t Seek(std::int64_t offset, unsigned from);
    virtual std::uint64_t GetPosition() const;
    virtual std::uint64_t GetLength() const;
    virtual void SetLength(std::uint64_t bytes);
    /// Hands what was written to the system. It does not wait for the device.
    virtual void Flush();
    /// Closes an open file. Some systems tell of a full disk only here.
    virtual void Close();

    std::uint64_t SeekToEnd() { return Seek(0, end); }
    void SeekToBegin() { Seek(0, begin); }
    /// The full path, the name, and the name without its extension; empty for a file without one.
    CString GetFilePath() const { return m_strFileName; }
    CString GetFileName() const;
    CString GetFileTitle() const;
    void SetFilePath(const CString& path) { m_strFileName = path; }

private:
    void check(const FileFault& fault) const;

    mutable NativeFile m_file;
    CString m_strFileName;
};

} // namespace megset
