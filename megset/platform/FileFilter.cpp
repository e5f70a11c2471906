#include "megset/platform/FileFilter.h"

namespace megset {
namespace {

// The text up to the next bar, which is passed over.
CString nextField(const CString& filter, int& at)
{
    const int bar = filter.Find(u'|', at);
    const int end = bar < 0 ? filter.GetLength() : bar;
    CString field = filter.Mid(at, end - at);
    at = bar < 0 ? end : bar + 1;
    return field;
}

} // namespace

std::vector<FileFilter> parseFileFilters(const CString& filter)
{
    std::vector<FileFilter> filters;
    int at = 0;
    for (CString label = nextField(filter, at); !label.IsEmpty(); label = nextField(filter, at)) {
        const CString pattern = nextField(filter, at);
        if (!pattern.IsEmpty())
            filters.push_back({label, pattern});
    }
    return filters;
}

} // namespace megset
