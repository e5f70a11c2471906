#include "megset/platform/CFileFind.h"

#include "megset/platform/paths.h"

#include <system_error>

namespace megset {

bool CFileFind::FindFile(const CString& path)
{
    Close();
    // A path that ends in a separator names what is inside a folder, and no file or folder itself.
    const char16_t last = path.GetAt(path.GetLength() - 1);
    if (path.IsEmpty() || last == u'\\' || last == u'/' || path.Find(u'\0') >= 0)
        return false;
    std::error_code error;
    const auto status = std::filesystem::status(toNative(path), error);
    if (error || !std::filesystem::exists(status))
        return false;
    m_strFound = fullPath(path);
    m_bDirectory = std::filesystem::is_directory(status);
    return true;
}

CString CFileFind::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(u'.');
    return dot < 0 ? name : name.Left(dot);
}

} // namespace megset
