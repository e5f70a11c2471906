#include "apps/cli/dataset/FormerFiles.h"

#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CFileException.h"
#include "megset/platform/nativeFile.h"

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

// Whether a change of the dataset is going on: it holds the file that was there at its beginning, which has its other
// name in the folder.
bool isHeld(const fs::path& dataset)
{
    return isLocked(dataset) || isLocked(folderOf(dataset) / dataset.filename());
}

// A change that was just done may be about to remove the folder.
bool staysInTheWay(const fs::path& folder)
{
    constexpr int most = 50;
    for (int i = 0; i < most && fs::exists(folder); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return fs::exists(folder);
}

} // namespace

fs::path cutOffChange(const fs::path& dataset)
{
    const fs::path folder = folderOf(dataset);
    std::error_code ignored;
    return fs::exists(folder / dataset.filename(), ignored) && !isHeld(dataset) ? folder : fs::path();
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
    if (!isHeld(dataset) && staysInTheWay(m_folder))
        throw std::runtime_error(shownPath(m_folder) +
                                 ": is in the way; its files are from before a change that was done, to be removed");
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
    if (m_hasFolder)
        fs::remove(m_folder / m_dataset.filename(), ignored); // from here on the change counts as done
    for (const Aside& aside : m_aside) {
        if (!fs::exists(aside.path, ignored)) {
            fs::rename(aside.former, aside.path, ignored);
            continue;
        }
        fs::permissions(aside.path, fs::status(aside.former, ignored).permissions(), ignored);
        fs::remove(aside.former, ignored);
    }
    m_aside.clear();
    if (m_hasFolder)
        removeFolder();
}

// The dataset's file gets another name there, or where there are no such names, a copy.
void FormerFiles::makeFolder()
{
    if (m_hasFolder)
        return;
    m_hasFolder = true;
    fs::create_directory(m_folder);
    std::error_code fault;
    fs::create_hard_link(m_dataset, m_folder / m_dataset.filename(), fault);
    if (fault)
        fs::copy_file(m_dataset, m_folder / m_dataset.filename(), fs::copy_options::overwrite_existing);
}

void FormerFiles::removeFolder()
{
    std::error_code ignored;
    fs::remove(m_folder / m_dataset.filename(), ignored);
    fs::remove(m_folder, ignored);
}

} // namespace megset::cli
