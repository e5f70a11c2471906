#pragma once
// What is shown of a file's tree, piece by piece as the file is read.

#include "apps/cli/inspect/MessageRecorder.h"
#include "megset/platform/ArchiveTracer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace megset::cli {

/// The file as a whole.
struct TreeHead
{
    std::string file;
    std::uint64_t size = 0;
    std::string_view tag;
    std::string_view meaning; ///< of the tag
};

/// A field, valid for the length of a call.
struct TreeField
{
    std::string_view name;
    std::string_view type;
    std::uint64_t offset;
    std::variant<std::int64_t, std::uint64_t, double, const CString*, TracedBlock> value;
};

/// Entries of a section that follow one another and are not shown.
struct HiddenEntries
{
    std::uint64_t count = 0;
    std::uint64_t offset = 0;       ///< of the first
    std::vector<std::string> names; ///< each once, as many as a line has room for
};

/// Where the reader was when it read a field.
struct FieldPlace
{
    std::string section; ///< sections around it, outermost first, joined by "/"; "[i]" tells the i-th of equal ones
    std::string type;
    std::string name;
    std::uint64_t offset = 0;
};

/// How the reading ended.
struct TreeReport
{
    std::vector<std::string> faults; ///< sentences; none: all of the file was read and made sense
    std::uint64_t end = 0;           ///< offset at which the reading ended
    std::uint64_t left = 0;          ///< bytes of the file behind it
    std::string section;             ///< where the reader gave up; else where the last field is
    std::optional<FieldPlace> lastField;
    std::vector<ReaderMessage> messages;
    std::uint64_t messageCount = 0; ///< of all messages, of which `messages` has the first
};

/// Writes a tree as it comes: begin, sections with their fields, end.
class TreeWriter
{
public:
    TreeWriter() = default;
    TreeWriter(const TreeWriter&) = delete;
    TreeWriter& operator=(const TreeWriter&) = delete;
    virtual ~TreeWriter() = default;

    virtual void begin(const TreeHead& head) = 0;
    virtual void enter(std::string_view section, std::uint64_t offset) = 0;
    virtual void leave(std::uint64_t offset) = 0;
    virtual void field(const TreeField& field) = 0;
    virtual void hidden(const HiddenEntries& entries) = 0;
    virtual void end(const TreeReport& report) = 0;
};

} // namespace megset::cli
