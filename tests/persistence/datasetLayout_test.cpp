// The page of the dataset's file, compared with what an archive goes through.

#include "tests/persistence/datasetRecord.h"
#include "tests/persistence/layoutSections.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::datasetLayout_test {

namespace {

using namespace megset::datasetRecord;

const std::string fileTag = "MEGDATASETZK";
const char* const page = "dataset.md";

std::vector<TracedField> tracedReading(std::int32_t version)
{
    Parts parts = filled(1);
    if (listForm(version) != ListForm::today) {
        parts.trials.presence = 1;
        parts.trials.behind = none(3);
    }
    if (listForm(version) == ListForm::doubleStore) {
        const ByteBuilder trial = trialRecord::record(trialRecord::newest, trialRecord::Parts());
        parts.trials.behind = ByteBuilder().i32(0).i32(1).append(trial).i32(0);
    }
    LoadingArchive archive(record(version, parts));
    TracingRecorder recorder;
    archive->setTracer(&recorder);
    CMEGDatazk dataset;
    try {
        EXPECT_EQ(dataset.serializezk(*archive), 1);
    } catch (const CArchiveException&) {
        EXPECT_EQ(version, readTwice);
    }
    return recorder.fields();
}

std::vector<TracedField> tracedWriting()
{
    CMEGDatazk dataset;
    fill(dataset, 1);
    return fieldsWritten(dataset);
}

// The page's short name of a section.
std::string shortName(const std::string& section)
{
    static const std::map<std::string, std::string> old = {
        {"_Zold_00serializeMDTrialzk_doubleStoreOpenTrl", "00 double"},
        {"_Zold_00serializeMDTrialzksml", "00 small"},
        {"_Zold_02serializeTrigs20170706", "02 of 7"},
        {"_Zold_02serializeTrigs", "02 of 6"},
        {"_zold_Zold_02serializeTrigs_obsolete20140421", "02 of 4"},
        {"_04serializeProcessInfo", "04 old"},
        {"_09serializeShowInfo_obsolete20120419", "09 old"},
        {"_Zold_12serializeParam4AllTrlChnlShow", "12 old"},
        {"_zold_13serializeSelectCut", "13 old"},
    };
    const auto found = old.find(section);
    return found != old.end() ? found->second : section.substr(1, 2);
}

// Sections, wave results and the number of items of the tail, as the page lists them.
std::string sectionsOfVersion(std::int32_t version)
{
    std::vector<std::string> names;
    int tail = 0;
    std::size_t tailPlace = 0;
    for (const TracedField& field : withSectionsClosed(fileTag, tracedReading(version))) {
        if (field.type == "section")
            names.push_back(shortName(field.name));
        else if (field.section == fileTag + "/FACEWAVEANALYZEDRESULTZK" && field.name == "tag")
            names.emplace_back("wave");
        else if (field.section == fileTag && field.name != "tag" && field.name != "version" && tail++ == 0)
            tailPlace = names.size();
    }
    if (tail > 0)
        names.insert(names.begin() + static_cast<std::ptrdiff_t>(tailPlace), "tail " + std::to_string(tail));
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list.empty() ? "none" : list;
}

TEST(DatasetPage, ShowsTheSectionsOfTheNewestVersionInTheirOrder)
{
    for (const auto& fields : {tracedWriting(), tracedReading(newest)})
        EXPECT_TRUE(followsLayoutPage(formatPages() / page, "CMEGData9FileB", withSectionsClosed(fileTag, fields)));
}

TEST(DatasetPage, ShowsTheFieldsOfEverySectionOfEveryVersion)
{
    std::set<std::string> sections;
    for (const std::int32_t version : versions) {
        if (version == readTwice)
            continue; // its end is followed by the beginning of a section that isn't there
        const std::vector<TracedField> fields = tracedReading(version);
        for (const TracedField& entry : withSectionsClosed(fileTag, fields)) {
            if (entry.type != "section")
                continue;
            sections.insert(entry.name);
            EXPECT_TRUE(followsLayoutPage(formatPages() / page, entry.name, only(fileTag, fields, entry.name)))
                << version;
        }
    }
    EXPECT_EQ(sections.size(), 20U);
}

TEST(DatasetPage, ShowsWhatIsWrittenOfEverySection)
{
    const std::vector<TracedField> fields = tracedWriting();
    int sections = 0;
    for (const TracedField& entry : withSectionsClosed(fileTag, fields)) {
        if (entry.type != "section")
            continue;
        ++sections;
        EXPECT_TRUE(followsLayoutPage(formatPages() / page, entry.name, only(fileTag, fields, entry.name)));
    }
    EXPECT_EQ(sections, 11);
}

TEST(DatasetPage, ShowsTheSectionsOfEveryVersion)
{
    const std::vector<LayoutRow> rows = layoutRows(textOf(page), "Sections of a version");
    ASSERT_EQ(rows.size(), versions.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].offset, std::to_string(versions[i]));
        EXPECT_EQ(rows[i].field, sectionsOfVersion(versions[i])) << versions[i];
    }
}

} // namespace

} // namespace megset::datasetLayout_test
