#include "megset/platform/pathParts.h"

#include <algorithm>

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

CString asFileName(const CString& name)
{
    const auto isUnfit = [](char16_t unit) { return unit == u'\\' || unit == u'/' || unit < 0x20 || unit == 0x7F; };
    std::u16string text(name.view());
    std::replace_if(text.begin(), text.end(), isUnfit, u'_');
    return CString(std::move(text));
}

} // namespace megset
