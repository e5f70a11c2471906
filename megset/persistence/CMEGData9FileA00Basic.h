#pragma once
// Folder, names and trial files of a dataset.

#include "megset/display/CMEGData8Show.h"

namespace megset {

class CArchive;

class CMEGData9FileA00Basic : public CMEGData8Show
{
public:
    /// Takes the path of the archive's file as the dataset's. 1; 0 for null or an archive without a file.
    int checkFilePath(CArchive* ar);
};

} // namespace megset
