#include "megset/ui/CDlgChnlSelect.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CUserHost.h"

namespace megset {

int CDlgChnlSelect::DoModal()
{
    int* const fields[] = {&m_nMEGChannel, &m_nEEGChannel, &m_nGoodChannel, &m_nVisible};
    FlagRequest request{"Channel Selection", {}};
    for (const char* label : {"MEG Channel", "EEG Channel", "Good Channel", "Visible"})
        request.flags.push_back({label, *fields[request.flags.size()] != 0});
    const auto choice = AfxGetHost().chooseFlags(request);
    if (!choice || choice->size() != request.flags.size())
        return IDCANCEL;
    for (std::size_t i = 0; i < choice->size(); ++i)
        *fields[i] = (*choice)[i] ? 1 : 0;
    return IDOK;
}

} // namespace megset
