#include "megset/platform/CDocument.h"

#include "megset/platform/pathParts.h"

namespace megset {

void CDocument::SetPathName(const CString& path)
{
    m_strPathName = path;
    SetTitle(fileTitleOf(path));
}

} // namespace megset
