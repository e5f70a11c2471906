#include "apps/cli/dataset/informationFile.h"

#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/inspect/inspect.h"
#include "megset/platform/CFile.h"
#include "megset/platform/CFileException.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminalText.h"

#include <sstream>
#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

void openInformation(CFile& file, const fs::path& path, unsigned flags)
{
    CFileException fault;
    if (!file.Open(fromNative(fs::absolute(path)), flags, &fault))
        throw std::runtime_error(showControlCharacters(fault.GetErrorMessage()).toUtf8());
}

std::string meaningOf(std::string_view tag)
{
    const RecordKind* const kind = findRecordKind(tag);
    return kind != nullptr ? std::string(kind->meaning) : std::string(tag);
}

// Null for a file without a tag that is known.
const RecordKind* knownKind(const fs::path& path)
{
    CFile file;
    openInformation(file, path, CFile::modeRead | CFile::shareDenyNone);
    return kindOf(file); // the list of all tags is of no use here
}

void checkTag(const fs::path& path, std::string_view tag)
{
    const RecordKind* const kind = knownKind(path);
    if (kind == nullptr || kind->tag != tag)
        throw std::runtime_error(shownPath(path) + ": offset 0: this is no file of the kind: " + meaningOf(tag) +
                                 (kind != nullptr ? ", but: " + std::string(kind->meaning) : ""));
}

// In one line: where the reader gave up, why, and its own words.
std::string faultInWords(const TreeReport& report)
{
    std::string text = "offset " + std::to_string(report.end) + ": ";
    for (const std::string& fault : report.faults)
        text += (&fault == &report.faults.front() ? "" : "; ") + fault;
    if (!report.section.empty())
        text += ", in " + report.section;
    if (!report.messages.empty())
        text += ": " + report.messages.front().text;
    return showControlCharacters(CString(text)).toUtf8();
}

} // namespace

void checkInformation(const fs::path& path, std::string_view tag)
{
    checkTag(path, tag);
    std::ostringstream tree; // of which the first level is enough
    InspectOptions options;
    options.limits.depth = 0;
    const TreeReport report = inspectFile(path, options, tree);
    if (!report.faults.empty())
        throw std::runtime_error(shownPath(path) + ": " + faultInWords(report));
}

int readInformation(const fs::path& path, const Exchange& exchange, ArchiveTracer* tracer)
{
    CFile file;
    openInformation(file, path, CFile::modeRead | CFile::shareDenyNone);
    CArchive archive(&file, CArchive::load);
    archive.setTracer(tracer);
    try {
        return exchange(archive);
    } catch (const CArchiveException& fault) {
        throw std::runtime_error(shownPath(path) + ": offset " + std::to_string(archive.position()) + ": " +
                                 fault.what());
    }
}

void writeInformation(const fs::path& path, const Exchange& exchange)
{
    const fs::path part = path.string() + ".part";
    try {
        CFile file;
        openInformation(file, part, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
        CArchive archive(&file, CArchive::store);
        if (!exchange(archive))
            throw std::runtime_error(shownPath(path) + ": there is nothing to be written");
        archive.Close();
        file.Close();
        fs::rename(part, path);
    } catch (...) {
        std::error_code ignored; // what can't be removed can't be told from here either
        fs::remove(part, ignored);
        throw;
    }
}

fs::path withExtension(const fs::path& name, const std::string& extension)
{
    fs::path path = fs::absolute(name).lexically_normal();
    if (!path.has_extension())
        path += extension;
    return path;
}

} // namespace megset::cli
