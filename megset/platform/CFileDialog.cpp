#include "megset/platform/CFileDialog.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CUserHost.h"
#include "megset/platform/pathParts.h"

namespace megset {

CFileDialog::CFileDialog(bool bOpenFileDialog, const CString& defaultExtension, const CString& fileName, unsigned flags,
                         const CString& filter, CWnd* /*parent*/)
    : m_bOpen(bOpenFileDialog), m_nFlags(flags), m_strDefaultExtension(defaultExtension), m_strFilter(filter),
      m_strPath(fileName)
{
}

void CFileDialog::remember(FileDialogMemory& memory)
{
    m_pMemory = &memory;
    m_nFilterIndex = memory.filterIndex;
}

int CFileDialog::DoModal()
{
    FileRequest request;
    request.open = m_bOpen;
    request.filter = m_strFilter;
    request.filterIndex = m_nFilterIndex;
    request.fileName = m_strPath;
    request.defaultExtension = m_strDefaultExtension;
    request.fileMustExist = (m_nFlags & OFN_FILEMUSTEXIST) != 0;
    request.pathMustExist = request.fileMustExist || (m_nFlags & OFN_PATHMUSTEXIST) != 0;
    request.confirmOverwrite = !m_bOpen && (m_nFlags & OFN_OVERWRITEPROMPT) != 0;

    const auto choice = AfxGetHost().chooseFile(request);
    if (!choice)
        return IDCANCEL;
    m_strPath = choice->path;
    m_nFilterIndex = choice->filterIndex;
    if (m_pMemory != nullptr)
        m_pMemory->filterIndex = m_nFilterIndex;
    return IDOK;
}

CString CFileDialog::GetFileName() const
{
    return fileNameOf(m_strPath);
}

CString CFileDialog::GetFileTitle() const
{
    return fileTitleOf(m_strPath);
}

CString CFileDialog::GetFileExt() const
{
    return fileExtensionOf(m_strPath);
}

} // namespace megset
