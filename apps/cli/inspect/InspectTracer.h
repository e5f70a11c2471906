#pragma once
// Chooses what is shown of all that an archive tells, and remembers where the reader is.

#include "apps/cli/inspect/TreeWriter.h"

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace megset::cli {

/// How much of a tree is shown.
struct TreeLimits
{
    int depth = std::numeric_limits<int>::max(); ///< levels below the record
    int list = 16;                               ///< entries of a list; 0: all
};

/// Hands on to a writer what the limits let through. Memory doesn't grow with the file.
///
/// A list is told by its repetition: names that come again and again in a section, with no new one among them.
class InspectTracer : public ArchiveTracer
{
public:
    InspectTracer(TreeWriter& writer, const TreeLimits& limits);

    /// The field read last; nothing before the first. Its section is the innermost that holds it.
    std::optional<FieldPlace> lastField() const;
    /// Sections that are open now.
    std::string section() const;
    /// Sections that an exception left, the innermost too; empty when none passed.
    const std::string& brokenSection() const { return m_brokenSection; }
    /// The first block of which bytes were missing, as a sentence; empty when there is none.
    const std::string& shortBlock() const { return m_shortBlock; }
    /// Why the tree could not be written in full; empty when it was.
    const std::string& writerFault() const { return m_writerFault; }

    void enter(std::string_view section, std::uint64_t offset) override;
    void leave(std::uint64_t offset) override;
    void integer(std::string_view name, std::string_view type, std::uint64_t offset, std::int64_t value) override;
    void real(std::string_view name, std::string_view type, std::uint64_t offset, double value) override;
    void text(std::string_view name, std::uint64_t offset, const CString& value) override;
    void block(std::string_view name, std::uint64_t offset, const TracedBlock& block) override;

private:
    // How often a name came in a section: since the last new name, and in all.
    struct Count
    {
        std::uint64_t run = 0;
        std::uint64_t total = 0;
    };
    struct Section
    {
        std::string name; // with its place among equal ones
        bool shown = true;
        std::map<std::string, Count, std::less<>> counts = {};
        HiddenEntries hidden = {};
    };

    static Count& count(Section& section, std::string_view name);
    bool show(const Count& count, std::string_view name, std::uint64_t offset);
    void showHidden(Section& section);
    void closeSection(std::uint64_t offset);
    void field(const TreeField& field);
    void noteSection();

    TreeWriter& m_writer;
    TreeLimits m_limits;
    std::vector<Section> m_sections; // the first is the file itself
    int m_exceptions;                // in flight at the beginning
    FieldPlace m_lastField;
    bool m_hasField = false;
    bool m_fieldIsInside = false; // the last field lies in the innermost open section
    std::string m_brokenSection;
    std::string m_shortBlock;
    std::string m_writerFault;
};

} // namespace megset::cli
