#include "megset/platform/pathParts.h"

namespace megset {

CString fileNameOf(const CString& path)
{
    return path.Mid(path.ReverseFind(u'\\') + 1);
}

CString fileTitleOf(const CString& path)
{
    const CString name = fileNameOf(path);
    const int dot = name.ReverseFind(u'.');
    return dot < 0 ? name : name.Left(dot);
}

CString fileExtensionOf(const CString& path)
{
    const CString name = fileNameOf(path);
    const int dot = name.ReverseFind(u'.');
    return dot < 0 ? CString() : name.Mid(dot + 1);
}

} // namespace megset
