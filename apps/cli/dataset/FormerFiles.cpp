#include "apps/cli/dataset/FormerFiles.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CFileException.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& dataset)
{
    return dataset.string() + ".former";
}

bool mayBeWritten(const fs::path& path)
{
    NativeFile file;
    return !file.open(path, {.write = true});
}

bool isLocked(const fs::path& path)
{
    NativeFile file;
    return file.open(path, {.read = true, .sharing = FileSharing::none}).cause == CFileException::sharingViolation;
}

fs::path nameInFolder(const fs::path& dataset)
{
    return folderOf(dataset) / dataset.filename();
}

fs::path partOfCopy(const fs::path& dataset)
{
    return nameInFolder(dataset).string() + ".part";
}

// What that name becomes when the change is done.
fs::path doneMark(const fs::path& dataset)
{
    return nameInFolder(dataset).string() + ".done";
}

// Whether a change of the dataset is going on: it holds the dataset's file, and after that was replaced, the former
// one.
bool isHeld(const fs::path& dataset)
{
    return isLocked(dataset) || isLocked(nameInFolder(dataset));
}

// Removes what is left of a change that was done, or waits for the one that is about to. What else lies there stays.
bool isInTheWay(const fs::path& dataset)
{
    const fs::path folder = folderOf(dataset);
    constexpr int most = 50;
    std::error_code ignored;
    fs::remove(partOfCopy(dataset), ignored);
    for (int i = 0; i < most && fs::exists(folder); ++i) {
        if (fs::exists(doneMark(dataset)) && !isLocked(doneMark(dataset)))
            fs::remove_all(folder, ignored);
        else if (!fs::remove(folder, ignored)) // an empty one goes at once
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return fs::exists(folder);
}

std::runtime_error inTheWay(const fs::path& folder)
{
    return std::runtime_error(shownPath(folder) + ": is in the way; the former files of a change go there");
}

} // namespace

fs::path cutOffChange(const fs::path& dataset)
{
    const auto isThere = [name = nameInFolder(dataset)] {
        std::error_code ignored;
        return fs::exists(name, ignored);
    };
    // Looked for twice: a change that went on at first may be done when nobody holds the dataset any more.
    return isThere() && !isHeld(dataset) && isThere() ? folderOf(dataset) : fs::path();
}

std::string adviceAfterCutOff(const fs::path& folder)
{
    return "a change of the dataset was cut off; the files in this folder are those from before, to be moved back to " +
           shownPath(folder.parent_path());
}

FormerFiles::FormerFiles(const fs::path& dataset) : m_dataset(dataset), m_folder(folderOf(dataset))
{
    if (const fs::path folder = cutOffChange(dataset); !folder.empty())
        throw std::runtime_error(shownPath(folder) + ": " + adviceAfterCutOff(folder));
    if (!isHeld(dataset) && isInTheWay(dataset))
        throw inTheWay(m_folder);
}

FormerFiles::~FormerFiles()
{
    std::error_code ignored; // what can't be brought back stays in the folder
    for (const Aside& aside : m_aside)
        fs::rename(aside.former, aside.path, ignored);
    const bool isBack =
        std::ranges::none_of(m_aside, [&](const Aside& aside) { return fs::exists(aside.former, ignored); });
    if (isBack && m_hasFolder)
        removeFolder();
}

void FormerFiles::putAside(const fs::path& path)
{
    std::error_code fault;
    const fs::path file = fs::canonical(path, fault); // of a link the file that it stands for
    const auto isIt = [&file](const Aside& aside) { return aside.path == file; };
    if (fault || !fs::is_regular_file(file) || std::ranges::any_of(m_aside, isIt) || !mayBeWritten(file))
        return;
    makeFolder();
    Aside aside{file, m_folder / file.filename()};
    if (fs::exists(aside.former)) // of the same name, from another folder
        aside.former += std::to_string(m_aside.size());
    fs::rename(aside.path, aside.former, fault);
    if (fault) { // it lies on another disk
        aside.former = file.string() + ".former";
        if (fs::exists(aside.former))
            throw std::runtime_error(shownPath(aside.former) + ": exists already, from a change that was cut off");
        fs::rename(aside.path, aside.former);
    }
    m_aside.push_back(std::move(aside));
}

void FormerFiles::keepNew()
{
    std::error_code ignored; // former files that can't be removed are in nobody's way
    for (const Aside& aside : m_aside)
        if (!fs::exists(aside.path, ignored)) // nothing was written in its place
            fs::rename(aside.former, aside.path, ignored);
    if (m_hasFolder)
        fs::rename(nameInFolder(m_dataset), doneMark(m_dataset), ignored); // from here on the change counts as done
    for (const Aside& aside : m_aside) {
        if (const fs::file_status former = fs::status(aside.former, ignored); fs::exists(former))
            fs::permissions(aside.path, former.permissions(), ignored);
        fs::remove(aside.former, ignored);
    }
    m_aside.clear();
    if (m_hasFolder)
        removeFolder();
}

void FormerFiles::makeFolder()
{
    if (m_hasFolder)
        return;
    if (isInTheWay(m_dataset))
        throw inTheWay(m_folder);
    std::error_code fault;
    fs::create_directory(m_folder, fault);
    if (fault)
        throw std::runtime_error(shownPath(m_folder) + ": can't be made: " + fault.message());
    m_hasFolder = true;
    // Another name of the same file would do, but mv refuses to move that back.
    copyFile(m_dataset, partOfCopy(m_dataset));
    fs::rename(partOfCopy(m_dataset), nameInFolder(m_dataset));
    m_held.open(nameInFolder(m_dataset), {.read = true, .sharing = FileSharing::none});
}

void FormerFiles::removeFolder()
{
    std::error_code ignored;
    fs::remove(partOfCopy(m_dataset), ignored);
    fs::remove(nameInFolder(m_dataset), ignored);
    fs::remove(doneMark(m_dataset), ignored);
    fs::remove(m_folder, ignored);
}

} // namespace megset::cli
