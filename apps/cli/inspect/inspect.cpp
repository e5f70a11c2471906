#include "apps/cli/inspect/inspect.h"

#include "apps/cli/inspect/JsonTree.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/TextTree.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/inspect/recordKinds.h"
#include "apps/cli/inspect/shownValue.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminalText.h"

#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr int messageColumns = 200;

// Shared with whoever has the file open: to look at it changes nothing.
void open(CFile& file, const std::filesystem::path& path)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        throw std::runtime_error(shownPath(path) + ": is a folder; its files can be looked at one by one");
    CFileException fault;
    if (!file.Open(fromNative(path), CFile::modeRead | CFile::shareDenyNone, &fault))
        throw std::runtime_error(showControlCharacters(fault.GetErrorMessage()).toUtf8());
}

std::unique_ptr<TreeWriter> makeWriter(const InspectOptions& options, std::ostream& out)
{
    if (options.json)
        return std::make_unique<JsonTree>(out);
    return std::make_unique<TextTree>(out);
}

ReaderMessage placeOf(const InspectTracer& tracer)
{
    const auto last = tracer.lastField();
    return {"", tracer.section(), last ? last->offset : 0};
}

std::string bytesLeftOver(std::uint64_t bytes)
{
    return bytes == 1 ? "1 byte is left over behind the record"
                      : std::to_string(bytes) + " bytes are left over behind the record";
}

// Reads the record and gives what went wrong; empty when nothing did.
std::string readRecord(const RecordKind& kind, CArchive& ar)
{
    try {
        return kind.load(ar) ? "" : "the reader refused what it read";
    } catch (const CArchiveException& fault) {
        return fault.m_cause == CArchiveException::endOfFile ? "the file ends before the record does" : fault.what();
    } catch (const std::exception& fault) {
        return fault.what();
    }
}

void noteFaults(TreeReport& report, const std::string& fault, const InspectTracer& tracer)
{
    if (!fault.empty())
        report.faults.push_back(fault);
    if (!tracer.shortBlock().empty())
        report.faults.push_back(tracer.shortBlock());
    if (fault.empty() && report.messageCount > 0)
        report.faults.emplace_back("the reader went on after a message");
    if (fault.empty() && report.left > 0)
        report.faults.push_back(bytesLeftOver(report.left));
    if (!tracer.writerFault().empty())
        report.faults.push_back("the tree can't be written: " + tracer.writerFault());
}

std::string sectionOf(const TreeReport& report, const InspectTracer& tracer)
{
    if (!tracer.brokenSection().empty())
        return tracer.brokenSection();
    if (!report.messages.empty())
        return report.messages.front().section;
    return report.lastField ? report.lastField->section : "";
}

TreeReport readTree(const RecordKind& kind, CFile& file, TreeWriter& writer, const TreeLimits& limits)
{
    InspectTracer tracer(writer, limits);
    MessageRecorder host([&tracer] { return placeOf(tracer); });
    CArchive ar(&file, CArchive::load);
    ar.setTracer(&tracer);
    const std::string fault = readRecord(kind, ar);
    TreeReport report;
    report.end = ar.position();
    report.left = ar.bytesLeft();
    report.lastField = tracer.lastField();
    report.messages = host.messages();
    report.messageCount = host.count();
    report.section = sectionOf(report, tracer);
    noteFaults(report, fault, tracer);
    return report;
}

} // namespace

TreeReport inspectFile(const std::filesystem::path& path, const InspectOptions& options, std::ostream& out)
{
    CFile file;
    open(file, path);
    const RecordKind& kind = kindOfFile(file, path);
    const auto writer = makeWriter(options, out);
    writer->begin({shownPath(path), file.GetLength(), kind.tag, kind.meaning});
    const TreeReport report = readTree(kind, file, *writer, options.limits);
    writer->end(report);
    return report;
}

std::string describeFaults(const TreeReport& report)
{
    std::string text;
    for (const std::string& fault : report.faults)
        text += (text.empty() ? "" : "; ") + fault;
    if (text.empty())
        return text;
    text += "\n  section: " + report.section;
    if (report.lastField)
        text += "\n  last field read: " + report.lastField->type + " " + report.lastField->name + " at offset " +
                std::to_string(report.lastField->offset) + " in " + report.lastField->section;
    text += "\n  stopped at offset " + std::to_string(report.end) + ", bytes left: " + std::to_string(report.left);
    for (const ReaderMessage& message : report.messages)
        text += "\n  message after offset " + std::to_string(message.offset) + ": " +
                shownText(CString(message.text), messageColumns);
    if (report.messageCount > report.messages.size())
        text += "\n  and " + std::to_string(report.messageCount - report.messages.size()) + " more messages";
    return showControlCharacters(text).toUtf8();
}

} // namespace megset::cli
