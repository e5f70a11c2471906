#pragma once
// Opens dataset files for the commands.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace megset::cli {

/// A dataset with the document that it was opened from. The document outlives the dataset that points to it.
struct OpenDataset
{
    std::filesystem::path path; ///< absolute
    CDocument document;
    CMEGDatazk dataset;
    std::unique_ptr<CFile> held; ///< open to keep others from changing the dataset as well; null when looked at
};

/// What a dataset's reader had to say on its way, and the bytes that it left behind the record.
struct ReadingNotes
{
    std::vector<std::string> messages;
    std::uint64_t bytesLeft = 0;
};

/// The absolute path that a user means by the name of a dataset: ".meg" is added where it has no extension. Throws
/// std::runtime_error for a folder.
std::filesystem::path datasetPath(const std::filesystem::path& name);

/// What of a dataset is read to look at it.
enum class LookAt
{
    CurrentTrial, ///< the dataset, and its current trial
    DatasetAlone  ///< no trial: marks and the like are there at once, however large the trials are
};

/// Opens a dataset to look at it: nobody is asked, nothing is written, and others may have the files open. A trial that
/// can't be read doesn't hinder; it is told in the notes and not in memory then. Throws std::runtime_error with path
/// and reason when the dataset itself can't be read.
std::unique_ptr<OpenDataset> openDatasetToLook(const std::filesystem::path& path, ReadingNotes& notes,
                                               LookAt what = LookAt::CurrentTrial);

/// Opens a dataset as the library does, which may ask for its current trial and, for old files, writes trials back. As
/// long as it is there nobody else opens it to change it. Throws as above.
std::unique_ptr<OpenDataset> openDatasetToChange(const std::filesystem::path& path);

/// Where the file of a trial is, by the library's search but without a question; empty when it isn't found.
CString findTrialFile(const OpenDataset& open, int trial);

/// The path that the dataset has of a trial, as a person writes it on this system; one of another system stays as it
/// is.
std::string storedTrialPath(const OpenDataset& open, int trial);

/// Reads a trial without the dataset knowing. Throws std::runtime_error with the file and the reason.
std::unique_ptr<CMDTrialzk> readTrial(const OpenDataset& open, int trial);

} // namespace megset::cli
