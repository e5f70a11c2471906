// The dialog in which the user says which channels an operation takes.
#pragma once

namespace megset {

/// "Channel Selection": four boxes to tick. The host shows it.
class CDlgChnlSelect
{
public:
    /// IDOK with the flags as the user set them; IDCANCEL with the flags as they were.
    int DoModal();

    int m_nMEGChannel = 1;  ///< "MEG Channel"
    int m_nEEGChannel = 1;  ///< "EEG Channel"
    int m_nGoodChannel = 0; ///< "Good Channel"
    int m_nVisible = 0;     ///< "Visible"
};

} // namespace megset
