// The file of several datasets: what is written and read, trials found from the document, and files that are broken.

#include "megset/core/CArrayMEDataSet.h"

#include "megset/platform/CDocument.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"
#include "tests/persistence/datasetRecord.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArrayMEDataSetFile_test {

namespace {

using ::testing::ElementsAre;

constexpr const char* otherFile = "The opened file is not array for MEG dataset file or corrupted!";

ByteBuilder header(std::int32_t version = 20160909)
{
    return ByteBuilder().wide("ARRAYMEGDATASETZK").i32(version);
}

// A dataset of that seed as it stands in the file.
ByteBuilder entry(int seed)
{
    return ByteBuilder().i32(1).append(datasetRecord::record(datasetRecord::newest, datasetRecord::filled(seed)));
}

ByteBuilder twoDatasets(int current = 1)
{
    return header().i32(current).i32(3).append(entry(1)).i32(0).append(entry(2));
}

std::unique_ptr<CMEGDatazk> filledDataset(int seed)
{
    auto data = std::make_unique<CMEGDatazk>();
    datasetRecord::fill(*data, seed);
    return data;
}

class DatasetArrayFile : public ::testing::Test
{
protected:
    std::vector<std::byte> stored()
    {
        return storedBytes([&](CArchive& ar) { EXPECT_EQ(array.serialize(ar, &document), 1); });
    }
    int load(std::span<const std::byte> bytes)
    {
        return tryLoading(bytes, [&](CArchive& ar) { return array.serialize(ar, &document); });
    }
    int load(const ByteBuilder& bytes) { return load(std::span(bytes.bytes())); }
    std::vector<CString> sessions() const
    {
        std::vector<CString> names;
        for (int i = 0; i < array.getTotalDataset(); ++i)
            names.push_back(array.getSessionData(i)->getSessionName());
        return names;
    }

    ScriptedHost host;
    CDocument document;
    CArrayMEDataSetzk array;
};

TEST_F(DatasetArrayFile, IsWrittenFieldByField)
{
    array.m_aDataset.Add(filledDataset(1));
    array.m_aDataset.Add(std::unique_ptr<CMEGDatazk>());
    array.m_aDataset.Add(filledDataset(2));
    array.m_nCurrentDataset = 1;
    EXPECT_TRUE(sameBytes(stored(), twoDatasets()));
    EXPECT_TRUE(sameBytes(stored(), twoDatasets()));
    CArrayMEDataSetzk empty;
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { empty.serialize(ar, nullptr); }), header().zeros(8)));
    host.expectNoMessages();
}

TEST_F(DatasetArrayFile, BringsItsDatasetsAndDropsNullEntries)
{
    ASSERT_EQ(load(twoDatasets()), 1);
    EXPECT_THAT(sessions(), ElementsAre("session1", "session2"));
    EXPECT_TRUE(sameBytes(datasetRecord::stored(*array.getSessionData(1)),
                          datasetRecord::record(datasetRecord::newest, datasetRecord::filled(2))));
    EXPECT_EQ(array.getCurrentID(), 1);
}

TEST_F(DatasetArrayFile, IsAddedToTheDatasetsThatAreThere)
{
    array.m_aDataset.Add(filledDataset(9));
    ASSERT_EQ(load(twoDatasets(0)), 1);
    EXPECT_THAT(sessions(), ElementsAre("session9", "session1", "session2"));
}

TEST_F(DatasetArrayFile, TheCurrentIndexIsKeptAsRead)
{
    for (const int index : {0, 2, -1, 99, INT32_MIN}) {
        CArrayMEDataSetzk one;
        LoadingArchive archive(twoDatasets(index));
        ASSERT_EQ(one.serialize(*archive, nullptr), 1);
        EXPECT_EQ(one.getCurrentID(), index);
    }
}

TEST_F(DatasetArrayFile, GivesEachDatasetTheDocumentAndNoFlagStays)
{
    ASSERT_EQ(load(twoDatasets()), 1);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(array.getSessionData(i)->getDocument(), &document);
        EXPECT_EQ(array.getSessionData(i)->m_bInArray, 0);
    }
    CDocument other;
    storedBytes([&](CArchive& ar) { array.serialize(ar, &other); });
    EXPECT_EQ(array.getSessionData(0)->getDocument(), &other);
    EXPECT_EQ(array.getSessionData(0)->m_bInArray, 0);
}

// Looks at the flag from inside, when a field of the dataset passes by.
class FlagWatch : public ArchiveTracer
{
public:
    explicit FlagWatch(const CMEGData& data) : m_data(data) {}
    void enter(std::string_view, std::uint64_t) override {}
    void leave(std::uint64_t) override {}
    void integer(std::string_view name, std::string_view, std::uint64_t, std::int64_t) override
    {
        if (name == "m_nTailWordL")
            flag = m_data.m_bInArray;
    }
    void real(std::string_view, std::string_view, std::uint64_t, double) override {}
    void text(std::string_view, std::uint64_t, const CString&) override {}
    void block(std::string_view, std::uint64_t, const TracedBlock&) override {}

    int flag = -1;

private:
    const CMEGData& m_data;
};

TEST_F(DatasetArrayFile, ADatasetIsFlaggedWhileItIsWritten)
{
    array.m_aDataset.Add(filledDataset(1));
    FlagWatch watch(*array.getSessionData(0));
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&watch);
        array.serialize(ar, &document);
        ar.setTracer(nullptr);
    });
    EXPECT_EQ(watch.flag, 1);
}

TEST_F(DatasetArrayFile, OldVersionsOfDatasetsAreRead)
{
    const ByteBuilder old = datasetRecord::record(20190725, datasetRecord::filled(1));
    ASSERT_EQ(load(header().i32(0).i32(2).i32(1).append(old).append(entry(2))), 1);
    EXPECT_THAT(sessions(), ElementsAre("session1", "session2"));
}

// ---- trials

TEST_F(DatasetArrayFile, TrialsAreFoundFromTheDocument)
{
    FiledDataset filed(2, 1, 3);
    CMEGDatazk* const data = std::make_unique<CMEGDatazk>().release();
    array.addNewData(data);
    ASSERT_EQ(data->m_ppTrial.allocate(2), 1);
    data->m_nTotalTrial = 2;
    data->m_nCurrentTrial = 1;
    for (int i = 0; i < 2; ++i)
        data->m_aTrialFilePath.Add("X:\\gone\\" + FiledDataset::name(i));
    document.SetPathName(filed.folder.path("all.mega-array"));
    const std::vector<std::byte> bytes = stored();
    array.cleanData();
    ASSERT_EQ(load(bytes), 1);
    ASSERT_NE(array.getSessionData(0)->getMDTrial(1), nullptr);
    EXPECT_EQ(wave(*array.getSessionData(0)->getMDTrial(1)->getChannel(0)), channelValues(1, 0, 3));
    EXPECT_EQ(array.getSessionData(0)->m_strTrialFolder, CString()); // only the document was set
    host.expectNoMessages();
}

TEST_F(DatasetArrayFile, WithoutTrialsNoneIsOpenedAndNoDocumentSet)
{
    datasetRecord::Parts parts;
    parts.trials.total = 1;
    parts.trials.current = 0;
    parts.trials.presence = 1;
    parts.trials.paths = {"X:\\gone\\a.trl"};
    LoadingArchive archive(header().i32(0).i32(1).i32(1).append(datasetRecord::record(datasetRecord::newest, parts)));
    ASSERT_EQ(array.serializeWithoutTrials(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_EQ(array.getSessionData(0)->getTotalTrial(), 1);
    EXPECT_EQ(array.getSessionData(0)->getMDTrial(0), nullptr);
    EXPECT_THAT(host.calls(), ::testing::IsEmpty());
}

// ---- broken files

TEST_F(DatasetArrayFile, AnotherTagAndAnotherVersionHaveTheOneText)
{
    const std::vector<std::byte> whole = twoDatasets().bytes();
    const auto behindTag = std::span(whole).subspan(4 + 2 * 17);
    EXPECT_EQ(load(ByteBuilder().narrow("ARRAYMEGDATASETZK").raw(behindTag)), 1);
    host.expectNoMessages();
    for (const char* tag : {"ArrayMEGDatasetZk", "MEGDATASETZK", "ARRAYMEGDATASETZ", ""}) {
        const ScriptedHost told;
        EXPECT_EQ(load(ByteBuilder().narrow(tag).raw(behindTag)), 0) << tag;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherFile)));
    }
    for (const std::int32_t number : {20160910, 20160908, 20200729, 0}) {
        const ScriptedHost told;
        EXPECT_EQ(load(header(number).zeros(8)), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherFile)));
    }
    EXPECT_THAT(sessions(), ElementsAre("session1", "session2"));
}

TEST_F(DatasetArrayFile, ADatasetThatCannotBeReadIsInTheListAllTheSame)
{
    EXPECT_EQ(load(header().i32(0).i32(1).i32(1).wide("ANOTHERZK")), 1);
    EXPECT_EQ(array.getTotalDataset(), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not MEG dataset file or corrupted!")));
}

TEST_F(DatasetArrayFile, CountsBelowOneBringNoneAndOneThatTheFileCannotHoldEndsAtItsEnd)
{
    for (const int count : {0, -1, INT32_MIN}) {
        ASSERT_EQ(load(header().i32(5).i32(count)), 1);
        EXPECT_EQ(array.getTotalDataset(), 0);
        EXPECT_EQ(array.getCurrentID(), 5);
    }
    EXPECT_EQ(load(header().i32(0).i32(INT32_MAX).zeros(64)), 0);
    EXPECT_EQ(array.getTotalDataset(), 0);
}

TEST_F(DatasetArrayFile, EveryPrefixIsRefusedAndWhatWasReadStays)
{
    const std::vector<std::byte> bytes = twoDatasets().bytes();
    expectEveryPrefixRefused(
        bytes, [](CArchive& ar) { return CArrayMEDataSetzk().serialize(ar, nullptr); }, 37);
    EXPECT_EQ(load(std::span(bytes).first(bytes.size() - 1)), 0);
    EXPECT_THAT(sessions(), ElementsAre("session1"));
}

TEST_F(DatasetArrayFile, SingleBitFlipsDoNoHarm)
{
    const ByteBuilder small =
        header().i32(0).i32(2).i32(1).append(datasetRecord::record(datasetRecord::newest, datasetRecord::Parts()));
    forEachBitFlip(ByteBuilder(small).i32(0).bytes(), [](std::span<const std::byte> bytes) {
        const ScriptedHost told;
        CArrayMEDataSetzk one;
        if (tryLoading(bytes, [&](CArchive& ar) { return one.serializeWithoutTrials(ar); }) == 1)
            storedBytes([&](CArchive& ar) { ASSERT_EQ(one.serializeWithoutTrials(ar), 1); });
    });
}

TEST_F(DatasetArrayFile, WithoutMemoryForADatasetIsToldAndTheOthersStay)
{
    const std::vector<std::byte> bytes = header().i32(0).i32(2).append(entry(1)).append(entry(2)).bytes();
    int told = 0;
    const std::int64_t failures = forEachAllocationFailure([&] {
        const ScriptedHost here;
        CArrayMEDataSetzk one;
        if (tryLoading(bytes, [&](CArchive& ar) { return one.serialize(ar, nullptr); }) == 1)
            return;
        told += here.messages() == std::vector<CString>{"Not enough memory!"} && one.getTotalDataset() < 2 ? 1 : 0;
    });
    EXPECT_GT(failures, 2);
    EXPECT_GE(told, 2);
}

} // namespace

} // namespace megset::CArrayMEDataSetFile_test
