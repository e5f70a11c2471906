#pragma once
// A file of the operating system: the thin layer below CFile, one implementation per system.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace megset {

/// A fault as CFileException tells it; `cause` 0 means none.
struct FileFault
{
    int cause = 0;
    int osError = 0;
    explicit operator bool() const { return cause != 0; }
};

/// What others may do with a file while it is open. Locks are advisory: they hold among programs that ask.
enum class FileSharing
{
    any,
    readers,
    none
};

/// How a file is opened.
struct FileOpening
{
    bool read = false;
    bool write = false;
    bool create = false;   ///< makes the file when it is not there, and empties it
    bool truncate = false; ///< with `create`: empties a file that is there
    FileSharing sharing = FileSharing::any;
};

/// An open file. Operations give the first fault they meet and never throw.
class NativeFile
{
public:
    NativeFile() = default;
    NativeFile(const NativeFile&) = delete;
    NativeFile& operator=(const NativeFile&) = delete;
    ~NativeFile() { close(); }

    bool isOpen() const { return m_handle >= 0; }
    FileFault open(const std::filesystem::path& path, const FileOpening& opening);
    FileFault close();
    /// Reads up to `size` bytes; `done` is less only at the end of the file or at a fault.
    FileFault read(void* data, std::size_t size, std::size_t& done);
    FileFault write(const void* data, std::size_t size);
    /// Moves to `offset` from the start (0), the present position (1) or the end (2).
    FileFault seek(std::int64_t offset, int from, std::uint64_t& position);
    FileFault length(std::uint64_t& bytes) const;
    FileFault setLength(std::uint64_t bytes);

private:
    FileFault lock(FileSharing sharing, bool writing);
    FileFault empty();

    int m_handle = -1;
};

/// Makes an empty file that no other program made before. The fault is std::errc::file_exists where there is one.
std::error_code createNewFile(const std::filesystem::path& path);

} // namespace megset
