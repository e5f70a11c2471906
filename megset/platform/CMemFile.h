#pragma once

#include "megset/platform/CFile.h"

#include <cstddef>
#include <span>
#include <vector>

namespace megset {

/// A file in memory.
class CMemFile : public CFile
{
public:
    CMemFile() = default;
    /// A file that holds `content` and stands at its start.
    explicit CMemFile(std::vector<std::byte> content) : m_content(std::move(content)) {}
    explicit CMemFile(std::span<const std::byte> content) : m_content(content.begin(), content.end()) {}

    std::span<const std::byte> content() const { return m_content; }
    /// Gives the content away and leaves the file empty.
    std::vector<std::byte> detach();

    bool Open(const CString& path, unsigned flags, CFileException* exception = nullptr) override;
    bool isOpen() const override { return true; }
    unsigned Read(void* data, unsigned count) override;
    void Write(const void* data, unsigned count) override;
    std::uint64_t Seek(std::int64_t offset, unsigned from) override;
    std::uint64_t GetPosition() const override { return m_position; }
    std::uint64_t GetLength() const override { return m_content.size(); }
    void SetLength(std::uint64_t bytes) override;
    void Flush() override {}
    void Close() override {}

private:
    void grow(std::uint64_t bytes);

    std::vector<std::byte> m_content;
    std::uint64_t m_position = 0;
};

} // namespace megset
