#pragma once

#include "megset/platform/ArchiveTracer.h"
#include "megset/platform/CString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace megset {

/// One field that an archive told of.
struct TracedField
{
    std::string section; ///< sections around it, outermost first, joined by "/"
    std::string name;
    std::string type;     ///< int, uint, int64, uint64, short, ushort, char, byte, float, double, text or block
    std::uint64_t offset; ///< from where the archive began
    std::int64_t integer = 0;
    double real = 0;
    CString text;
    std::uint64_t bytes = 0; ///< of a block
    std::uint64_t done = 0;  ///< bytes of a block that were there
    std::vector<std::byte> data = {};
    std::string elementType = {};
};

/// Collects what an archive tells while it reads or writes.
class TracingRecorder : public ArchiveTracer
{
public:
    const std::vector<TracedField>& fields() const { return m_fields; }
    /// Sections and fields as lines of text:
    ///     { section @0          0 int version = 20200801          4 text name = "A1"
    ///     12 double x = 1.5     20 block samples 80               20 block samples 16 of 80          } @100
    const std::vector<std::string>& lines() const { return m_lines; }
    /// Sections that are open.
    std::size_t depth() const { return m_sections.size(); }
    void clear();

    void enter(std::string_view section, std::uint64_t offset) override;
    void leave(std::uint64_t offset) override;
    void integer(std::string_view name, std::string_view type, std::uint64_t offset, std::int64_t value) override;
    void real(std::string_view name, std::string_view type, std::uint64_t offset, double value) override;
    void text(std::string_view name, std::uint64_t offset, const CString& value) override;
    void block(std::string_view name, std::uint64_t offset, const TracedBlock& block) override;

private:
    TracedField& add(std::string_view name, std::string_view type, std::uint64_t offset, const std::string& shown);

    std::vector<std::string> m_sections;
    std::vector<TracedField> m_fields;
    std::vector<std::string> m_lines;
};

} // namespace megset
