#include "megset/persistence/CMDTrial9FileA.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/CFileFind.h"
#include "megset/platform/paths.h"

#include <array>

namespace megset {

CString CMDTrial9FileA::filePath2FileDirectory(const CString& path)
{
    return path.Left(path.ReverseFind(u'\\') + 1);
}

CString CMDTrial9FileA::filePath2FileName(const CString& path)
{
    const int separator = path.ReverseFind(u'\\');
    return separator < 0 ? CString() : path.Mid(separator + 1);
}

CString CMDTrial9FileA::fileName2FileTitle(const CString& name)
{
    const int dot = name.ReverseFind(u'.');
    return dot < 0 ? name : name.Left(dot);
}

CString CMDTrial9FileA::filePath2PathBasic(const CString& path)
{
    return path.Left(path.ReverseFind(u'.'));
}

int CMDTrial9FileA::findFile(const CString& path, CString& found)
{
    CFileFind finder;
    if (!finder.FindFile(path) || finder.IsDirectory())
        return 0;
    found = finder.GetFilePath();
    return 1;
}

namespace {

// The current directory as the search takes it: in a buffer of 512, and nothing where it doesn't fit.
CString directoryOfSearch()
{
    std::array<char16_t, 512> buffer = {};
    const std::uint32_t length = GetCurrentDirectory(static_cast<std::uint32_t>(buffer.size()), buffer.data());
    return length > 0 && length < buffer.size() ? CString(std::u16string_view(buffer.data(), length)) : CString();
}

CString askForFile(const CString& path)
{
    if (AfxMessageBox("Would like to find the file" + path, MB_YESNO) != IDYES)
        return {};
    static FileDialogMemory memory;
    CFileDialog dialog(true, "", "", OFN_FILEMUSTEXIST, "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||");
    dialog.remember(memory);
    return dialog.DoModal() == IDOK ? dialog.GetPathName() : CString();
}

} // namespace

CString CMDTrial9FileA::findFile4FilePath(const CString& path, const CDocument* doc, const CString& datasetPath,
                                          bool ask)
{
    const CString name = filePath2FileName(path);
    CString found;
    if (doc != nullptr && findFile(filePath2FileDirectory(doc->GetPathName()) + name, found))
        return found;
    if (!datasetPath.IsEmpty() && findFile(filePath2FileDirectory(datasetPath) + name, found))
        return found;
    if (findFile(path, found))
        return found;
    found = findAtCurrentDirectory(name);
    return found.IsEmpty() && ask ? askForFile(path) : found;
}

// No backslash stands between the two: the search is for a file beside the current directory whose name begins with
// that directory's name. It is meant so.
CString CMDTrial9FileA::findAtCurrentDirectory(const CString& name)
{
    const CString directory = directoryOfSearch();
    CString found;
    if (!directory.IsEmpty() && !name.IsEmpty())
        findFile(directory + name, found);
    return found;
}

} // namespace megset
