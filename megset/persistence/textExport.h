#pragma once
// Text files for other tools: UTF-16, each piece with its terminating zero. Internal to persistence/.

#include "megset/platform/CFile.h"
#include "megset/platform/CString.h"

#include <string_view>
#include <vector>

namespace megset {

/// Writes a text and its terminating zero. CFileException passes.
void writeText(CFile& file, const CString& text);

/// One text that may be long, such as all samples of a channel: it goes to the file in pieces of 128 KiB.
class LongTextWriter
{
public:
    explicit LongTextWriter(CFile& file);

    /// Appends to the text.
    void put(std::u16string_view text);
    /// The number as "%f " gives it.
    void putSample(double value);
    /// Writes the rest and the terminating zero.
    void finish();

private:
    void makeRoom(std::size_t units);
    void drain();

    CFile& m_file;
    std::vector<char16_t> m_units;
    std::size_t m_at = 0;
};

} // namespace megset
