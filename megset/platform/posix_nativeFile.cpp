#include "megset/platform/CFileException.h"
#include "megset/platform/nativeFile.h"
#include "megset/platform/stopRequest.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace megset {
namespace {

// One call moves at most this much on Linux; larger blocks take several.
constexpr std::size_t maxTransfer = 0x7FFFF000U;

int causeOf(int error)
{
    switch (error) {
    case ENOENT:
        return CFileException::fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return CFileException::badPath;
    case EMFILE:
    case ENFILE:
        return CFileException::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
        return CFileException::accessDenied;
    case EBADF:
        return CFileException::invalidFile;
    case ESPIPE:
        return CFileException::badSeek;
    case EIO:
        return CFileException::hardIO;
    case EWOULDBLOCK:
        return CFileException::sharingViolation;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return CFileException::diskFull;
    default:
        return CFileException::genericException;
    }
}

FileFault fault(int error)
{
    return {causeOf(error), error};
}

FileFault lastFault()
{
    return fault(errno);
}

// A folder that is not there makes a new file impossible, which is another message than a missing file.
FileFault openFault(const FileOpening& opening)
{
    FileFault result = lastFault();
    if (opening.create && result.cause == CFileException::fileNotFound)
        result.cause = CFileException::badPath;
    return result;
}

int openFlags(const FileOpening& opening)
{
    // A file that is to be emptied must be open for writing, whoever asked for it.
    const bool write = opening.write || (opening.create && opening.truncate);
    const int access = opening.read && write ? O_RDWR : write ? O_WRONLY : O_RDONLY;
    // O_NONBLOCK keeps a pipe from waiting for its other end. Emptying waits until the lock is held.
    return access | O_CLOEXEC | O_NONBLOCK | (opening.create ? O_CREAT : 0);
}

} // namespace

FileFault NativeFile::open(const std::filesystem::path& path, const FileOpening& opening)
{
    close();
    // A zero inside a name would end it early, and another file would be opened.
    if (path.native().find('\0') != std::string::npos)
        return {CFileException::badPath, 0};
    if (opening.create && isStopRequested())
        return fault(EINTR);
    constexpr mode_t everybodyByUmask = 0666;
    do {
        m_handle = ::open(path.c_str(), openFlags(opening), everybodyByUmask);
    } while (m_handle < 0 && errno == EINTR);
    if (m_handle < 0)
        return openFault(opening);

    struct stat status = {};
    FileFault result = ::fstat(m_handle, &status) != 0 ? lastFault() : FileFault{};
    if (!result && S_ISDIR(status.st_mode))
        result = fault(EISDIR);
    if (!result && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)))
        result = {CFileException::invalidFile, 0};
    if (!result)
        result = lock(opening.sharing, opening.write);
    if (!result && opening.create && opening.truncate && S_ISREG(status.st_mode))
        result = empty();
    if (result)
        close();
    return result;
}

// A file that was emptied is written to the disk when it is closed on some file systems; a new one needn't wait for it.
FileFault NativeFile::empty()
{
    std::uint64_t bytes = 0;
    const FileFault result = length(bytes);
    return result || bytes == 0 ? result : setLength(0);
}

// The lock goes with the open file, so that two files of one program exclude each other as well.
FileFault NativeFile::lock(FileSharing sharing, bool writing)
{
    if (sharing == FileSharing::any)
        return {};
    const bool exclusive = sharing == FileSharing::none || writing;
    while (::flock(m_handle, (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return lastFault();
        if (errno != EINTR)
            return {}; // a file system without locks: the file is used without one
    }
    return {};
}

FileFault NativeFile::close()
{
    if (m_handle < 0)
        return {};
    // After EINTR the descriptor is gone on Linux; closing it again could hit another file.
    const int result = ::close(m_handle);
    m_handle = -1;
    return result != 0 && errno != EINTR ? lastFault() : FileFault{};
}

FileFault NativeFile::read(void* data, std::size_t size, std::size_t& done)
{
    done = 0;
    while (done < size) {
        const ssize_t got = ::read(m_handle, static_cast<char*>(data) + done, std::min(size - done, maxTransfer));
        if (got < 0 && errno != EINTR)
            return lastFault();
        if (got == 0)
            break;
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return {};
}

FileFault NativeFile::write(const void* data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        if (isStopRequested())
            return fault(EINTR);
        const ssize_t put =
            ::write(m_handle, static_cast<const char*>(data) + done, std::min(size - done, maxTransfer));
        if (put < 0 && errno != EINTR)
            return lastFault();
        if (put == 0)
            return fault(ENOSPC);
        done += put > 0 ? static_cast<std::size_t>(put) : 0;
    }
    return {};
}

FileFault NativeFile::seek(std::int64_t offset, int from, std::uint64_t& position)
{
    const off_t result = ::lseek(m_handle, offset, from == 0 ? SEEK_SET : from == 1 ? SEEK_CUR : SEEK_END);
    if (result < 0)
        return {errno == EINVAL ? static_cast<int>(CFileException::badSeek) : causeOf(errno), errno};
    position = static_cast<std::uint64_t>(result);
    return {};
}

FileFault NativeFile::length(std::uint64_t& bytes) const
{
    struct stat status = {};
    if (::fstat(m_handle, &status) != 0)
        return lastFault();
    bytes = static_cast<std::uint64_t>(status.st_size);
    return {};
}

FileFault NativeFile::setLength(std::uint64_t bytes)
{
    return ::ftruncate(m_handle, static_cast<off_t>(bytes)) != 0 ? lastFault() : FileFault{};
}

std::error_code createNewFile(const std::filesystem::path& path)
{
    if (isStopRequested())
        return std::make_error_code(std::errc::interrupted);
    constexpr mode_t everybodyByUmask = 0666;
    const int handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybodyByUmask);
    if (handle < 0)
        return {errno, std::generic_category()};
    ::close(handle);
    return {};
}

} // namespace megset
