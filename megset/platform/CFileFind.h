#pragma once

#include "megset/platform/CString.h"

namespace megset {

/// Looks one file or folder up. Paths are in library form; stars and question marks are ordinary characters.
class CFileFind
{
public:
    /// Whether `path` is there; a path that ends with a separator names nothing. The result is then asked for below.
    bool FindFile(const CString& path);

    /// The full path of what was found, its name, its name without the extension; empty before a find.
    CString GetFilePath() const { return m_strFound; }
    CString GetFileName() const { return m_strFound.Mid(m_strFound.ReverseFind(u'\\') + 1); }
    CString GetFileTitle() const;
    /// The folder of what was found, with its closing backslash.
    CString GetRoot() const { return m_strFound.Left(m_strFound.ReverseFind(u'\\') + 1); }
    bool IsDirectory() const { return m_bDirectory; }
    void Close() { *this = CFileFind(); }

private:
    CString m_strFound;
    bool m_bDirectory = false;
};

} // namespace megset
