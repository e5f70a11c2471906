#pragma once
// The tree for people: a line for each section and field, with its offset in front.

#include "apps/cli/inspect/TreeWriter.h"

#include <iosfwd>

namespace megset::cli {

///          0  [MEGTRIALZK]
///          0    text tag = "MEGTRIALZK"
///         24    int version = 20190730
///         28    [_01serializeTralBasic]
///         28      int64 m_nTrialReservedA = 0
class TextTree : public TreeWriter
{
public:
    explicit TextTree(std::ostream& out) : m_out(out) {}

    void begin(const TreeHead& head) override;
    void enter(std::string_view section, std::uint64_t offset) override;
    void leave(std::uint64_t offset) override;
    void field(const TreeField& field) override;
    void hidden(const HiddenEntries& entries) override;
    /// The last line tells where the reading ended.
    void end(const TreeReport& report) override;

private:
    void line(std::uint64_t offset, std::string_view text);

    std::ostream& m_out;
    int m_depth = 0;
};

} // namespace megset::cli
