#pragma once

#include "megset/platform/CString.h"
#include "megset/platform/FileFilter.h"

#include <atomic>
#include <vector>

namespace megset {

class CWnd;

inline constexpr unsigned OFN_OVERWRITEPROMPT = 0x2;  ///< asks before a file that exists is chosen to save to
inline constexpr unsigned OFN_PATHMUSTEXIST = 0x800;  ///< takes a path in an existing folder only
inline constexpr unsigned OFN_FILEMUSTEXIST = 0x1000; ///< takes an existing file only

/// What one place in the program remembers of its file dialog while the process runs. It is meant for a static.
struct FileDialogMemory
{
    std::atomic<int> filterIndex{1};
};

/// The choice of a file by the user. All paths are in library form.
class CFileDialog
{
public:
    /// `filter` as for parseFileFilters, `flags` of the OFN_ constants; other bits have no effect. The parent window
    /// has none either: the host knows where to show the dialog.
    CFileDialog(bool bOpenFileDialog, const CString& defaultExtension, const CString& fileName, unsigned flags,
                const CString& filter, CWnd* parent = nullptr);

    /// Opens on the kind of file remembered there, and stores it back after an OK. `memory` must outlive DoModal.
    void remember(FileDialogMemory& memory);

    /// Asks the host: IDOK, with the path and m_nFilterIndex of the choice, or IDCANCEL, with nothing changed.
    int DoModal();

    /// The chosen file; before an OK the suggested name. The title is the name without its extension, the extension
    /// stands without its dot.
    const CString& GetPathName() const { return m_strPath; }
    CString GetFileName() const;
    CString GetFileTitle() const;
    CString GetFileExt() const;

    std::vector<FileFilter> filters() const { return parseFileFilters(m_strFilter); }

    int m_nFilterIndex = 1; ///< the kind of file on offer, counted from 1

private:
    bool m_bOpen;
    unsigned m_nFlags;
    CString m_strDefaultExtension;
    CString m_strFilter;
    CString m_strPath;
    FileDialogMemory* m_pMemory = nullptr;
};

} // namespace megset
