#include "apps/cli/array/DatasetArray.h"

#include "apps/cli/dataset/informationFile.h"
#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/paths.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <memory>
#include <ostream>
#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view arrayTag = "ARRAYMEGDATASETZK";

fs::path absolutePath(const fs::path& path)
{
    return fs::absolute(path).lexically_normal();
}

// The dataset alone, without the trial that is opened along with it, with the trials' paths as they are found now.
std::unique_ptr<CMEGDatazk> readDataset(const fs::path& path)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(path, notes);
    const CStringArray& stored = open->dataset.m_aTrialFilePath;
    std::vector<CString> found;
    for (int i = 0; i < stored.GetSize(); ++i) {
        found.push_back(findTrialFile(*open, i));
        if (found.back().IsEmpty())
            throw std::runtime_error(stored.GetAt(i).toUtf8() + ": the trial's file is missing");
    }
    auto dataset = std::make_unique<CMEGDatazk>();
    const MessageRecorder host([] { return ReaderMessage(); });
    readInformation(path, [&dataset](CArchive& ar) { return dataset->serializeWithoutTrials(ar); });
    for (int i = 0; i < dataset->m_aTrialFilePath.GetSize(); ++i)
        dataset->m_aTrialFilePath.SetAt(i, found.at(static_cast<std::size_t>(i)));
    return dataset;
}

} // namespace

DatasetArray::DatasetArray(const fs::path& path) : m_path(absolutePath(path))
{
    checkInformation(m_path, arrayTag);
    m_document.SetPathName(fromNative(m_path));
    const MessageRecorder host([] { return ReaderMessage(); }); // what there is to say, the check has told
    if (!readInformation(m_path, [this](CArchive& ar) { return m_array.serializeWithoutTrials(ar); }))
        throw std::runtime_error(shownPath(m_path) + ": the array can't be read");
    m_nOfFile = size();
}

void DatasetArray::add(const fs::path& dataset)
{
    m_array.addNewData(readDataset(datasetPath(dataset)).release());
}

void DatasetArray::remove(int index)
{
    if (index < 0 || !m_array._deleteSessionData(index))
        throw std::runtime_error(
            shownPath(m_path) + ": there is no dataset " + std::to_string(index) +
            (size() == 0 ? "; the array is empty" : "; the array has 0 to " + std::to_string(size() - 1)));
    if (index < m_nOfFile)
        --m_nOfFile;
}

void DatasetArray::store(const fs::path& path)
{
    moveTo(absolutePath(path));
    writeInformation(m_path, [this](CArchive& ar) { return m_array.serializeWithoutTrials(ar); });
}

// Trials are found by their names beside the array: where a file of that name lies there, it must be the trial.
void DatasetArray::moveTo(const fs::path& path)
{
    CDocument target;
    target.SetPathName(fromNative(path));
    for (int i = 0; i < size(); ++i) {
        CMEGDatazk& dataset = *m_array.getSessionData(i);
        for (int trial = 0; trial < dataset.m_aTrialFilePath.GetSize(); ++trial) {
            const CString found = findTrial(i, trial);
            if (found.IsEmpty())
                continue;
            const CString then = CMDTrialzk::findFile4FilePath(found, &target, dataset.m_strDatasetPath, false);
            if (then != found)
                throw std::runtime_error(shownPath(toNative(then)) +
                                         ": beside the array this file would be taken for " +
                                         shownPath(toNative(found)));
            dataset.m_aTrialFilePath.SetAt(trial, found);
        }
    }
    m_path = path;
    m_document.SetPathName(fromNative(path));
    m_nOfFile = size();
}

const CMEGDatazk& DatasetArray::at(int index) const
{
    return *m_array.getSessionData(index);
}

// Of a dataset that has been added the paths are known; the others' trials are found from the array's file.
CString DatasetArray::findTrial(int index, int trial) const
{
    const CMEGDatazk& dataset = at(index);
    const CDocument* const document = index < m_nOfFile ? &m_document : nullptr;
    return CMDTrialzk::findFile4FilePath(dataset.m_aTrialFilePath.GetAt(trial), document, dataset.m_strDatasetPath,
                                         false);
}

int DatasetArray::countTrials(int index) const
{
    int found = 0;
    for (int i = 0; i < at(index).m_aTrialFilePath.GetSize(); ++i)
        found += findTrial(index, i).IsEmpty() ? 0 : 1;
    return found;
}

void DatasetArray::writeText(std::ostream& out) const
{
    out << "index  trials  found  samples   rate, Hz  session\n";
    for (int i = 0; i < size(); ++i) {
        const CMEGDatazk& dataset = at(i);
        out << std::setw(5) << i << std::setw(8) << dataset.getTotalTrial() << std::setw(7) << countTrials(i)
            << std::setw(9) << dataset.m_recordInfo.m_nRecTotalSample << std::setw(11)
            << dataset.m_recordInfo.m_dRecSampleRate << "  " << dataset.getSessionName().toUtf8()
            << (i == m_array.getCurrentID() ? " (current)\n" : "\n");
    }
}

void DatasetArray::writeJson(std::ostream& out) const
{
    using Json = nlohmann::ordered_json;
    Json list = Json::array();
    for (int i = 0; i < size(); ++i) {
        const CMEGDatazk& dataset = at(i);
        list.push_back({{"index", i},
                        {"session", dataset.getSessionName().toUtf8()},
                        {"trials", dataset.getTotalTrial()},
                        {"trials_found", countTrials(i)},
                        {"samples", dataset.m_recordInfo.m_nRecTotalSample},
                        {"rate_hz", dataset.m_recordInfo.m_dRecSampleRate}});
    }
    const Json json = {{"file", shownPath(m_path)}, {"current", m_array.getCurrentID()}, {"datasets", list}};
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
