#pragma once
// Path operations on texts in library form, which all file code uses.

#include "megset/geometry/CMDTrial8Show.h"

namespace megset {

class CDocument;

/// The trial's layer for paths in library form, with backslashes, and for finding files.
class CMDTrial9FileA : public CMDTrial8Show
{
public:
    /// Everything up to and including the last backslash; empty if there is none.
    static CString filePath2FileDirectory(const CString& path);
    /// Everything behind the last backslash; empty, not the whole text, if there is none.
    static CString filePath2FileName(const CString& path);
    /// Everything before the last dot; the whole text if there is none.
    static CString fileName2FileTitle(const CString& name);
    /// Everything before the last dot; empty if there is none.
    static CString filePath2PathBasic(const CString& path);
    /// 1 with the full path in `found` when the file system finds a file at `path`, else 0 with `found` as it was.
    static int findFile(const CString& path, CString& found);
    /// The path of a file that exists: beside the document, beside the dataset file, as it stands, at the current
    /// directory, or where the user points when `ask` is set ("Would like to find the file%s"). Empty when there is
    /// none.
    static CString findFile4FilePath(const CString& path, const CDocument* doc, const CString& datasetPath, bool ask);

protected:
    /// The file whose path is the current directory with `name` right behind it; empty for an empty name and when there
    /// is none.
    static CString findAtCurrentDirectory(const CString& name);
};

} // namespace megset
