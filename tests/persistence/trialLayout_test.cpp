// The pages of the trial's file and of the channel's record, compared with what an archive goes through.

#include "tests/persistence/layoutSections.h"
#include "tests/persistence/trialRecord.h"

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/TracingRecorder.h"
#include "tests/kit/layoutPage.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::trialLayout_test {

namespace {

using namespace megset::trialRecord;

const std::string tag = "MEGTRIALZK";

std::vector<TracedField> tracedReading(std::int32_t version)
{
    LoadingArchive archive(record(version, filled(1)));
    TracingRecorder recorder;
    archive->setTracer(&recorder);
    CMDTrialzk trial;
    EXPECT_EQ(trial.serializezk(*archive), 1);
    return recorder.fields();
}

std::vector<TracedField> tracedWriting()
{
    CMDTrialzk trial;
    fill(trial, 1);
    return fieldsWritten(trial);
}

// The page's short name of a section, empty for what has none.
std::string shortName(const TracedField& field)
{
    static const std::map<std::string, std::string> names = {
        {"_03serializeTrialVlmSrc01", "03a"},
        {"_03serializeTrialVlmSrcCoh02", "03b"},
        {"_09serializeVirtWaveSpctmSrcCoh_obsolete20190730", "09 old"},
        {"m_bTrialResampled", "tail"},
    };
    const std::string& name = field.type == "section" || field.name == "m_bTrialResampled" ? field.name : std::string();
    if (const auto found = names.find(name); found != names.end())
        return found->second;
    if (field.section == "MEGTRIALZK/TRLWAVEANALYZEDRESULTZK" && field.name == "tag")
        return "wave";
    return field.type == "section" ? name.substr(1, 2) : std::string();
}

std::string sectionsOfVersion(std::int32_t version)
{
    std::string list;
    for (const TracedField& field : withSectionsClosed(tag, tracedReading(version)))
        if (const std::string name = shortName(field); !name.empty())
            list += (list.empty() ? "" : ", ") + name;
    return list;
}

TEST(TrialPage, ShowsTheSectionsOfTheNewestVersionInTheirOrder)
{
    for (const auto& fields : {tracedWriting(), tracedReading(newest)})
        EXPECT_TRUE(followsLayoutPage(formatPages() / "trial.md", "CMDTrial9FileB", withSectionsClosed(tag, fields)));
}

TEST(TrialPage, ShowsTheFieldsOfEverySection)
{
    const std::vector<TracedField> written = tracedWriting();
    const std::vector<TracedField> read = tracedReading(newest);
    int sections = 0;
    for (const TracedField& entry : withSectionsClosed(tag, written)) {
        if (entry.type != "section")
            continue;
        ++sections;
        EXPECT_TRUE(followsLayoutPage(formatPages() / "trial.md", entry.name, only(tag, written, entry.name)));
        EXPECT_TRUE(followsLayoutPage(formatPages() / "trial.md", entry.name, only(tag, read, entry.name)));
    }
    EXPECT_EQ(sections, 13);
}

TEST(TrialPage, ShowsTheOldFormOfTheVirtualChannels)
{
    const std::string old = "_09serializeVirtWaveSpctmSrcCoh_obsolete20190730";
    EXPECT_TRUE(followsLayoutPage(formatPages() / "trial.md", old, only(tag, tracedReading(20190906), old)));
}

TEST(TrialPage, ShowsTheSectionsOfEveryVersion)
{
    const std::vector<LayoutRow> rows = layoutRows(textOf("trial.md"), "Sections of a version");
    ASSERT_EQ(rows.size(), versions.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].offset, std::to_string(versions[i]));
        EXPECT_EQ(rows[i].field, sectionsOfVersion(versions[i])) << versions[i];
    }
}

// ---- the channel's record

CMDChannelzk& fillAll(CMDChannelzk& channel)
{
    channelRecord::fill(channel);
    channel.m_pSpctmChnlA = std::make_unique<CSpctmChnlzk>();
    channel.m_pSpctmChnlC = std::make_unique<CSpctmChnlzk>();
    channel.m_pSpctmChnlR = std::make_unique<CSpctmChnlzk>();
    channel.m_pWaveResultA = std::make_unique<CChnlWaveAnalyzedResultzk>();
    channel.m_pWaveResultC = std::make_unique<CChnlWaveAnalyzedResultzk>();
    channel.m_pWaveResultX = std::make_unique<CChnlWaveAnalyzedResultzk>();
    channel.m_pShowShrink = std::make_unique<SHOW_SHRINK_DATAF>();
    channel.m_pShowShrink->m_nBinCount = 1;
    channel.m_pShowShrink->m_pMax = std::make_unique<float[]>(1);
    channel.m_pShowShrink->m_pMin = std::make_unique<float[]>(1);
    return channel;
}

// The sections of a channel have no entry of their own in its table.
std::vector<TracedField> withSectionsOpened(std::vector<TracedField> fields)
{
    const std::string outer = "MEGCHANNELZK";
    for (TracedField& field : fields) {
        if (field.section.rfind(outer + "/_", 0) != 0)
            continue;
        const std::size_t end = field.section.find('/', outer.size() + 1);
        field.section = outer + (end == std::string::npos ? std::string() : field.section.substr(end));
    }
    return fields;
}

TEST(ChannelPage, ShowsTheFieldsOfTheNewestVersionInTheirOrder)
{
    CMDChannelzk channel;
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    TracingRecorder recorder;
    archive.setTracer(&recorder);
    ASSERT_EQ(fillAll(channel).serializezk(archive), 1);
    const std::vector<TracedField> fields = withSectionsOpened(recorder.fields());
    EXPECT_TRUE(followsLayoutPage(formatPages() / "channel.md", "CMDChannel9File", fields));
}

TEST(ChannelPage, NamesEveryVersion)
{
    const std::string page = textOf("channel.md");
    for (const std::int32_t version : channelRecord::versionsWithFields)
        EXPECT_NE(page.find("\n| " + std::to_string(version) + " |"), std::string::npos) << version;
}

// ---- the list of pages

TEST(FormatPages, AreAllInTheIndex)
{
    std::ifstream file(formatPages().parent_path() / "formats.md");
    std::stringstream index;
    index << file.rdbuf();
    int pages = 0;
    for (const auto& entry : std::filesystem::directory_iterator(formatPages())) {
        const std::string name = entry.path().filename().string();
        EXPECT_NE(index.str().find("(formats/" + name + ")"), std::string::npos) << name;
        ++pages;
    }
    EXPECT_GT(pages, 0);
}

} // namespace

} // namespace megset::trialLayout_test
