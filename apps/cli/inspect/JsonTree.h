#pragma once
// The tree for programs. docs/commands.md tells its keys.

#include "apps/cli/inspect/TreeWriter.h"

#include <iosfwd>

namespace megset::cli {

/// Writes one JSON object, while the file is read.
class JsonTree : public TreeWriter
{
public:
    explicit JsonTree(std::ostream& out) : m_out(out) {}

    void begin(const TreeHead& head) override;
    void enter(std::string_view section, std::uint64_t offset) override;
    void leave(std::uint64_t offset) override;
    void field(const TreeField& field) override;
    void hidden(const HiddenEntries& entries) override;
    void end(const TreeReport& report) override;

private:
    void startEntry();
    void blockValue(const TracedBlock& block);

    std::ostream& m_out;
    int m_depth = 1;
    bool m_hasEntries = false; // in the section that is open
};

} // namespace megset::cli
