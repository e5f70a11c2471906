// The pages of an acquisition's files, of electrode and SEEG files and of arrays of datasets, compared with what an
// archive goes through.

#include "megset/core/CArrayMEDataSet.h"

#include "tests/persistence/acquisitionRecord.h"
#include "tests/persistence/informationFiles.h"
#include "tests/persistence/layoutSections.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::acquisitionLayout_test {

namespace {

const char* const page = "acquisition.md";
const std::string datasetTag = "MEACQDATASETZK";
const std::string trialTag = "MEACQTRIALZK";
const std::string channelTag = "ACQMECHANNELZK";

// What `exchange(archive)` goes through when it reads these bytes, or writes.
template <class Exchange>
std::vector<TracedField> traced(const ByteBuilder& bytes, Exchange exchange)
{
    LoadingArchive archive(bytes);
    TracingRecorder recorder;
    archive->setTracer(&recorder);
    EXPECT_EQ(exchange(*archive), 1);
    return recorder.fields();
}
template <class Exchange>
std::vector<TracedField> tracedWriting(Exchange exchange)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    TracingRecorder recorder;
    archive.setTracer(&recorder);
    EXPECT_EQ(exchange(archive), 1);
    return recorder.fields();
}

std::vector<TracedField> readDataset(std::int32_t version)
{
    CMEGDatazk dataset;
    return traced(acquisitionRecord::record(version, acquisitionRecord::filled(1)),
                  [&](CArchive& ar) { return dataset.serializeRecordWithoutTrials(ar); });
}

std::vector<TracedField> writtenDataset()
{
    CMEGDatazk dataset;
    acquisitionRecord::fill(dataset, 1);
    return tracedWriting([&](CArchive& ar) { return dataset.serializeRecordWithoutTrials(ar); });
}

std::vector<TracedField> readTrial()
{
    CMDTrialzk trial;
    return traced(acquisitionRecord::trial(acquisitionRecord::filledTrial(1)),
                  [&](CArchive& ar) { return trial.serializeAcq(ar); });
}

// Compares each section with its table, on the acquisition's page where it has one there, else on the other.
int compareSections(const std::string& tag, const std::vector<TracedField>& fields, const char* otherPage)
{
    int sections = 0;
    for (const TracedField& entry : withSectionsClosed(tag, fields)) {
        if (entry.type != "section")
            continue;
        ++sections;
        const bool isHere = !layoutRows(textOf(page), entry.name).empty();
        EXPECT_TRUE(
            followsLayoutPage(formatPages() / (isHere ? page : otherPage), entry.name, only(tag, fields, entry.name)));
    }
    return sections;
}

TEST(AcquisitionPage, ShowsTheSectionsOfTheDatasetInTheirOrder)
{
    for (const auto& fields : {readDataset(acquisitionRecord::newest), writtenDataset()})
        EXPECT_TRUE(
            followsLayoutPage(formatPages() / page, "CMEGData9FileRecord", withSectionsClosed(datasetTag, fields)));
}

TEST(AcquisitionPage, ShowsTheFieldsOfEverySectionOfTheDataset)
{
    for (const std::int32_t version : acquisitionRecord::versions)
        EXPECT_EQ(compareSections(datasetTag, readDataset(version), "dataset.md"), 11);
    EXPECT_EQ(compareSections(datasetTag, writtenDataset(), "dataset.md"), 11);
}

// Sections and the number of items of the tail, as the page lists them.
std::string sectionsOfVersion(std::int32_t version)
{
    std::string list;
    int tail = 0;
    for (const TracedField& field : withSectionsClosed(datasetTag, readDataset(version))) {
        if (field.type == "section") {
            const bool old = field.name == "_12serializeParam4AllTrlChnlShow_new";
            list += (list.empty() ? "" : ", ") + field.name.substr(1, 2) + (old ? " old" : "");
        } else if (field.name != "tag" && field.name != "version") {
            ++tail;
        }
    }
    return list + ", tail " + std::to_string(tail);
}

TEST(AcquisitionPage, ShowsTheSectionsOfEveryVersion)
{
    const std::vector<LayoutRow> rows = layoutRows(textOf(page), "Sections of a version");
    ASSERT_EQ(rows.size(), acquisitionRecord::versions.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].offset, std::to_string(acquisitionRecord::versions[i]));
        EXPECT_EQ(rows[i].field, sectionsOfVersion(acquisitionRecord::versions[i]));
    }
}

TEST(AcquisitionPage, ShowsTheTrial)
{
    CMDTrialzk filled;
    trialRecord::fill(filled, 1);
    for (const auto& fields : {readTrial(), tracedWriting([&](CArchive& ar) { return filled.serializeAcq(ar); })}) {
        EXPECT_TRUE(
            followsLayoutPage(formatPages() / page, "CMDTrial9FileBRecord", withSectionsClosed(trialTag, fields)));
        EXPECT_EQ(compareSections(trialTag, fields, "trial.md"), 6);
    }
}

// The sections of a channel have no entry of their own in its table.
std::vector<TracedField> withSectionsOpened(std::vector<TracedField> fields)
{
    for (TracedField& field : fields) {
        if (field.section.rfind(channelTag + "/_", 0) != 0)
            continue;
        const std::size_t end = field.section.find('/', channelTag.size() + 1);
        field.section = channelTag + (end == std::string::npos ? std::string() : field.section.substr(end));
    }
    return fields;
}

TEST(AcquisitionPage, ShowsTheChannel)
{
    CMDChannelzk read;
    CMDChannelzk filled;
    channelRecord::fill(filled);
    for (const auto& fields :
         {traced(acquisitionRecord::channel(), [&](CArchive& ar) { return read.serializeAcqzk(ar); }),
          tracedWriting([&](CArchive& ar) { return filled.serializeAcqzk(ar); })})
        EXPECT_TRUE(followsLayoutPage(formatPages() / page, "CMDChannel9FileRecord", withSectionsOpened(fields)));
}

// ---- electrodes and probes

TEST(ElectrodePage, ShowsTheFileOfElectrodes)
{
    FiledDataset filed(1, 3, 2);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    const ByteBuilder file = electrodeFile({electrodeEntry(302, 1), noElectrode(), electrodeEntry(303, 2)});
    const auto read = traced(file, [&](CArchive& ar) { return filed.data.serializeElectrodeInfo(ar, false); });
    const auto written = tracedWriting([&](CArchive& ar) { return filed.data.serializeElectrodeInfo(ar, false); });
    for (const auto& fields : {read, written})
        EXPECT_TRUE(followsLayoutPage(formatPages() / "electrodes.md", "ELECTRODINFOFILE", fields));
}

TEST(ElectrodePage, ShowsTheFileOfProbes)
{
    FiledDataset filed(1, 1, 2);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    const auto read = traced(seegFile({1, -1, 2}), [&](CArchive& ar) { return filed.data.serializeSeegInfo(ar, 0); });
    const auto written = tracedWriting([&](CArchive& ar) { return filed.data.serializeSeegInfo(ar, 0); });
    for (const auto& fields : {read, written})
        EXPECT_TRUE(followsLayoutPage(formatPages() / "electrodes.md", "SEEGINFO", fields));
}

// ---- arrays

TEST(ArrayPage, ShowsTheFile)
{
    const std::string tag = "ARRAYMEGDATASETZK";
    CArrayMEDataSetzk array;
    array.addNewData(std::make_unique<CMEGDatazk>().release());
    array.m_aDataset.Add(std::unique_ptr<CMEGDatazk>());
    CDocument* const none = nullptr;
    const auto written = tracedWriting([&](CArchive& ar) { return array.serialize(ar, none); });
    const std::vector<std::byte> bytes = storedBytes([&](CArchive& ar) { array.serialize(ar, none); });
    const auto read = traced(ByteBuilder().raw(bytes), [&](CArchive& ar) { return array.serialize(ar, none); });
    for (const auto& fields : {written, read}) {
        EXPECT_TRUE(
            followsLayoutPage(formatPages() / "array.md", "CArrayMEDataSet09File", withSectionsClosed(tag, fields)));
        EXPECT_TRUE(followsLayoutPage(formatPages() / "array.md", "_01serializeMEGData",
                                      only(tag, fields, "_01serializeMEGData")));
    }
}

} // namespace

} // namespace megset::acquisitionLayout_test
