#pragma once
// Files that are made of sections, as their pages show them: a table of the sections, and one for each of them.

#include "tests/kit/TracingRecorder.h"
#include "tests/kit/layoutPage.h"
#include "tests/kit/memoryArchive.h"

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace megset {

/// The section of a file with that tag in which a field stands, empty for those outside.
inline std::string sectionOf(const std::string& tag, const TracedField& field)
{
    const std::string outer = tag + "/_";
    if (field.section.rfind(outer, 0) != 0)
        return {};
    return field.section.substr(outer.size() - 1, field.section.find('/', outer.size()) - outer.size() + 1);
}

/// The file with every section as one entry.
inline std::vector<TracedField> withSectionsClosed(const std::string& tag, const std::vector<TracedField>& fields)
{
    std::vector<TracedField> closed;
    std::string last;
    for (const TracedField& field : fields) {
        const std::string section = sectionOf(tag, field);
        if (section.empty())
            closed.push_back(field);
        else if (section != last)
            closed.push_back({tag, section, "section", field.offset, 0, 0, {}, 0, 0});
        last = section;
    }
    return closed;
}

/// The fields of one section, each record inside as one entry without a name.
inline std::vector<TracedField> only(const std::string& tag, const std::vector<TracedField>& fields,
                                     const std::string& section)
{
    const std::string outer = tag + "/" + section;
    std::vector<TracedField> inside;
    for (const TracedField& field : fields) {
        if (sectionOf(tag, field) != section)
            continue;
        if (field.section == outer)
            inside.push_back(field);
        else if (field.name == "tag" && field.section == outer + "/" + field.text.toUtf8())
            inside.push_back({outer, "", field.text.toUtf8(), field.offset, 0, 0, {}, 0, 0});
    }
    return inside;
}

/// The fields that an object writes by its serializezk.
template <class Object>
std::vector<TracedField> fieldsWritten(Object& object)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        EXPECT_EQ(object.serializezk(ar), 1);
    });
    return recorder.fields();
}

/// A page of docs/formats.
inline std::string textOf(const char* page)
{
    std::ifstream file(formatPages() / page);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace megset
