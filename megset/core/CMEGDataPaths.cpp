// Where a dataset's trial files are, and how one that was moved is found again for the application.
#include "megset/core/CMEGData.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/pathParts.h"
#include "megset/platform/paths.h"

#include <array>

namespace megset {
namespace {

// The part of a path from its last backslash on; empty without one.
CString nameWithBackslash(const CString& path)
{
    const int separator = path.ReverseFind(u'\\');
    return separator < 0 ? CString() : path.Mid(separator);
}

// As the search takes it: in a buffer of 512, and nothing where it doesn't fit. Without its backslash, also at the
// root.
CString directoryOfSearch()
{
    std::array<char16_t, 512> buffer = {};
    const std::uint32_t length = GetCurrentDirectory(static_cast<std::uint32_t>(buffer.size()), buffer.data());
    const bool fits = length > 0 && length < buffer.size();
    const std::u16string_view directory(buffer.data(), fits ? length : 0);
    return CString(directory.ends_with(u'\\') ? directory.substr(0, directory.size() - 1) : directory);
}

} // namespace

// The text that stands for a path that can't be given; empty when it can.
CString CMEGData::trialFileFault(int index) const
{
    if (index >= m_nTotalTrial)
        return "Error > total";
    if (index < 0)
        return "Error < 0";
    if (!m_ppTrial)
        return "Error No Trials";
    return pathsMatchTrials() ? "" : "Error Path Array";
}

CString CMEGData::getTrialFilePath(int trial) const
{
    const int index = trialIndex(trial);
    const CString fault = trialFileFault(index);
    return fault.IsEmpty() ? m_aTrialFilePath.GetAt(index) : fault;
}

CString CMEGData::getTrialFileName(int trial) const
{
    const int index = trialIndex(trial);
    const CString fault = trialFileFault(index);
    return fault.IsEmpty() ? fileTitleOf(m_aTrialFilePath.GetAt(index)) : fault;
}

bool CMEGData::takeTrialFolder(const CString& folder)
{
    m_strTrialFolder = folder;
    m_strTrialFolder.Replace("/", "\\");
    if (!folder.IsEmpty() && m_strTrialFolder.Right(1) != "\\")
        m_strTrialFolder += u'\\';
    return SetCurrentDirectory(m_strTrialFolder);
}

// Whether there is such a file; its full path is then in `path`, and its folder is the dataset's.
bool CMEGData::takeFoundTrialFile(const CString& candidate, CString& path)
{
    if (!CMDTrialzk::findFile(candidate, path))
        return false;
    takeTrialFolder(CMDTrialzk::filePath2FileDirectory(path));
    return true;
}

int CMEGData::_checkFindFile(CString& path)
{
    if (takeFoundTrialFile(path, path))
        return 1;
    const CString name = nameWithBackslash(path);
    const CString directory = directoryOfSearch();
    if (!name.IsEmpty() && takeFoundTrialFile(directory + name, path))
        return 1;
    // The text has room for a second part, for which there is nothing: its blank stays.
    if (AfxMessageBox(CString::formatted("Would like to find the file%s %s", path, ""), MB_YESNO) != IDYES)
        return 0;
    static FileDialogMemory memory;
    CFileDialog dialog(true, "", "", OFN_FILEMUSTEXIST, "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||");
    dialog.remember(memory);
    if (dialog.DoModal() != IDOK)
        return 0;
    path = dialog.GetPathName();
    m_strTrialFolder = CMDTrialzk::filePath2FileDirectory(path); // the current directory stays here: it is meant so
    return 2;
}

CString CMEGData::_checkGetFileSameFold4Path(CString& path)
{
    if (m_pDocument != nullptr && !m_pDocument->GetPathName().IsEmpty()) {
        const CString folder = CMDTrialzk::filePath2FileDirectory(m_pDocument->GetPathName());
        if (takeFoundTrialFile(folder + CMDTrialzk::filePath2FileName(path), path))
            return path;
    }
    return _checkFindFile(path) ? path : CString();
}

} // namespace megset
