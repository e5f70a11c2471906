// The sections of a dataset's file that do more than hold a field: flags of channels, trial lists, and the opening and
// saving of trials with the file.

#include "tests/persistence/datasetRecord.h"

#include "megset/platform/CDocument.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileB_test {

namespace {

using namespace megset::datasetRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DatasetSections : public ::testing::Test
{
protected:
    ScriptedHost host;
    CMEGDatazk dataset;
};

// ---- the path of the file

TEST_F(DatasetSections, TakeThePathOfTheFileWithTheTrialListOfTodayAndTheSmallForm)
{
    for (const std::int32_t version : versions) {
        dataset.m_strDatasetPath = "former";
        loadWhole(dataset, version, record(version, Parts()));
        EXPECT_EQ(dataset.m_strDatasetPath, CString(version >= 20150724 ? "memory.bin" : "former")) << version;
    }
}

TEST_F(DatasetSections, TakeThePathOfTheFileWhenStoring)
{
    const TemporaryFolder folder;
    CFile file(folder.path("a.meg"), CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(dataset.serializezk(archive), 1);
    EXPECT_EQ(dataset.m_strDatasetPath, folder.path("a.meg"));
}

TEST_F(DatasetSections, APathIsTakenFromAnArchiveWithAFileOnly)
{
    LoadingArchive archive(ByteBuilder{});
    EXPECT_EQ(dataset.checkFilePath(&*archive), 1);
    EXPECT_EQ(dataset.m_strDatasetPath, CString("memory.bin"));
    CArchive without(nullptr, CArchive::load);
    EXPECT_EQ(dataset.checkFilePath(&without), 0);
    EXPECT_EQ(dataset.checkFilePath(nullptr), 0);
    EXPECT_EQ(dataset.m_strDatasetPath, CString("memory.bin"));
}

// ---- flags of channels

TEST_F(DatasetSections, FlagsOutliveTheFirstLookAtATrial)
{
    for (const std::int32_t version : versions) {
        CMEGDatazk read;
        loadWhole(read, version, record(version, filled(1)));
        CMDTrialzk trial;
        ASSERT_EQ(trial.allocateChannels(2), 1);
        ASSERT_EQ(read.checkInitChnlParam(&trial), 1);
        EXPECT_EQ(read.m_pChnlGood[1], hasFlags(version) ? 1045 : 1) << version;
        EXPECT_EQ(read.m_pChnlShow[0], hasFlags(version) ? 1046 : 1) << version;
        EXPECT_EQ(read.m_pChnlSelect[1], hasSelectFlags(version) ? 1049 : 0) << version;
        EXPECT_EQ(read.m_pChnlParam4[0], 0) << version;
    }
}

TEST_F(DatasetSections, TheFourthFlagIsMadeAnewAndZero)
{
    fillFlags(dataset, 0);
    dataset.m_pChnlParam4 = std::make_unique<int[]>(2);
    dataset.m_pChnlParam4[1] = 5;
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    ASSERT_NE(dataset.m_pChnlParam4, nullptr);
    EXPECT_EQ(dataset.m_pChnlParam4[0], 0);
    EXPECT_EQ(dataset.m_pChnlParam4[1], 0);
}

TEST_F(DatasetSections, EachArrayOfFlagsStandsInItsPlaceAlone)
{
    const std::pair<std::unique_ptr<int[]> CMEGData::*, ByteBuilder Parts::*> arrays[] = {
        {&CMEGData::m_pChnlGood, &Parts::good},
        {&CMEGData::m_pChnlShow, &Parts::shown},
        {&CMEGData::m_pChnlSelect, &Parts::select}};
    for (const auto& [array, bytes] : arrays) {
        CMEGDatazk written;
        written.m_nChnlParamCount = 1;
        written.*array = std::make_unique<int[]>(1);
        (written.*array)[0] = 9;
        Parts parts;
        parts.flagCount = 1;
        parts.*bytes = flags({9});
        EXPECT_TRUE(sameBytes(stored(written), record(newest, parts)));
        ASSERT_EQ(load(dataset, record(newest, parts)), 1);
        ASSERT_NE(dataset.*array, nullptr);
        EXPECT_EQ((dataset.*array)[0], 9);
    }
}

TEST_F(DatasetSections, ACountOfChannelsWithoutFlagsIsCarried)
{
    for (const int count : {0, -1, INT32_MAX, INT32_MIN}) {
        Parts parts;
        parts.flagCount = count;
        ASSERT_EQ(load(dataset, record(newest, parts)), 1);
        EXPECT_EQ(dataset.m_pChnlParam4, nullptr);
        EXPECT_TRUE(sameBytes(stored(dataset), record(newest, parts)));
    }
}

TEST_F(DatasetSections, ArraysOfNoFlagAreKept)
{
    Parts parts;
    parts.good = parts.shown = parts.select = flags({});
    ASSERT_EQ(load(dataset, record(newest, parts)), 1);
    EXPECT_TRUE(sameBytes(stored(dataset), record(newest, parts)));
}

// ---- the trials inside old files

TEST_F(DatasetSections, TrialsInsideOldFilesStayInMemory)
{
    for (const std::int32_t version : versions) {
        if (listForm(version) != ListForm::doubleStore)
            continue;
        Parts parts = filled(1);
        parts.trials.presence = 1;
        const ByteBuilder first = trialRecord::record(20080229, trialRecord::filled(1));
        const ByteBuilder third = trialRecord::record(trialRecord::newest, trialRecord::filled(2));
        parts.trials.behind = ByteBuilder().i32(1).append(first).i32(0).i32(-2).append(third);
        CMEGDatazk read;
        ASSERT_EQ(load(read, record(version, parts)), 1) << version;
        ASSERT_NE(read.getMDTrial(0), nullptr);
        EXPECT_EQ(read.getMDTrial(0)->m_strTrialName, CString("trial1"));
        EXPECT_EQ(read.getMDTrial(1), nullptr);
        ASSERT_NE(read.getMDTrial(2), nullptr);
        EXPECT_TRUE(sameBytes(trialRecord::stored(*read.getMDTrial(2)), third));
        EXPECT_EQ(read.getCurrentTrialIndx(), 1);
        read.m_ppTrial.reset();
        parts.trials.presence = 0;
        EXPECT_TRUE(sameBytes(stored(read), record(newest, afterReading(version, parts, Parts()))));
    }
    host.expectNoMessages();
}

TEST_F(DatasetSections, AnOldListWithoutSlotsHasNoFlags)
{
    for (const std::int32_t version : {20140516, 20150724, 20190725}) {
        Parts parts = filled(1);
        parts.trials.total = INT32_MAX;
        ASSERT_EQ(load(dataset, record(version, parts)), 1);
        EXPECT_EQ(dataset.getTotalTrial(), INT32_MAX);
        EXPECT_EQ(dataset.m_ppTrial, nullptr);
        EXPECT_EQ(dataset.saveAllTrials(), 0);
    }
}

// ---- trials on disk

// A folder with files of trials, each of two samples on one channel.
class DatasetWithTrials : public ::testing::Test
{
protected:
    void makeTrial(const std::string& name, std::int64_t samples = 2)
    {
        CMDTrialzk trial;
        trial.allocateChannels(1);
        trial.getChannel(0)->initData(samples, true);
        trial.m_strTrialName = name.c_str();
        CString path = folder.path(CString(name.c_str()) + ".trl");
        ASSERT_EQ(trial.saveTrialData(path, nullptr, {}, true), 1);
    }
    void makeTrials(int count)
    {
        for (int i = 0; i < count; ++i)
            makeTrial("t" + std::to_string(i));
    }
    // A list of `total` trials and the paths of so many files.
    TrialList list(int total, int current, int paths) const
    {
        TrialList made;
        made.total = total;
        made.current = current;
        made.presence = 1;
        for (int i = 0; i < paths; ++i)
            made.paths.push_back(folder.path(CString::formatted("t%d.trl", i)));
        return made;
    }
    int loadList(const TrialList& trials, std::int32_t version = newest)
    {
        Parts parts;
        parts.trials = trials;
        LoadingArchive archive(record(version, parts));
        archive.file().SetFilePath(folder.path("a.meg"));
        return dataset.serializezk(*archive);
    }
    CString trialName(int trial) const
    {
        return dataset.getMDTrial(trial) != nullptr ? dataset.getMDTrial(trial)->m_strTrialName : CString("absent");
    }
    std::vector<CString> trialNames() const
    {
        std::vector<CString> names;
        for (int i = 0; i < dataset.getTotalTrial(); ++i)
            names.push_back(trialName(i));
        return names;
    }

    const TemporaryFolder folder;
    ScriptedHost host;
    CMEGDatazk dataset;
};

TEST_F(DatasetWithTrials, OpensJustTheCurrentTrial)
{
    makeTrials(3);
    ASSERT_EQ(loadList(list(3, 1, 3)), 1);
    EXPECT_THAT(trialNames(), ElementsAre(CString("absent"), CString("t1"), CString("absent")));
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_EQ(dataset.m_strDatasetPath, folder.path("a.meg"));
    host.expectNoMessages();
}

TEST_F(DatasetWithTrials, ACurrentIndexOutOfRangeIsCorrectedBeforeTheTrialIsOpened)
{
    makeTrials(3);
    const std::pair<int, int> corrected[] = {{-1, 0}, {-100, 0}, {2, 2}, {3, 2}, {INT32_MAX, 2}};
    for (const auto& [inFile, expected] : corrected) {
        ASSERT_EQ(loadList(list(3, inFile, 3)), 1);
        EXPECT_EQ(dataset.getCurrentTrialIndx(), expected);
        EXPECT_EQ(trialName(expected), CString::formatted("t%d", expected));
    }
    host.expectNoMessages();
}

TEST_F(DatasetWithTrials, TwoPathsAndThreeTrialsWarnAndCapTheIndexAtOne)
{
    makeTrials(3);
    ASSERT_EQ(loadList(list(3, 2, 2)), 1);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_THAT(trialNames(), ElementsAre(CString("absent"), CString("t1"), CString("absent")));
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!")));
}

TEST_F(DatasetWithTrials, ThreePathsAndTwoTrialsWarnAndGoOn)
{
    makeTrials(3);
    ASSERT_EQ(loadList(list(2, 2, 3)), 1);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!")));
}

TEST_F(DatasetWithTrials, WithoutPathsTheTrialStepFailsAndTheFileCountsAsRead)
{
    EXPECT_EQ(loadList(list(2, 1, 0)), 1);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("No trial path for opening trial!"), CString("Serial trial error!")));
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_EQ(dataset._20serializeTrials(0), 0);
}

TEST_F(DatasetWithTrials, ATrialThatIsNotFoundFailsTheTrialStepAndTheFileCountsAsRead)
{
    host.willAnswerNo("Would like to find the file" + folder.path("t0.trl"));
    EXPECT_EQ(loadList(list(2, 0, 2)), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed "), CString("Serial trial error!")));
    EXPECT_EQ(dataset.getMDTrial(0), nullptr);
    EXPECT_EQ(dataset.getTotalTrial(), 2);
}

TEST_F(DatasetWithTrials, ATrialThatIsFoundByHandGivesItsPathToTheList)
{
    makeTrial("moved");
    host.willAnswerYes();
    host.willChooseFile(folder.path("moved.trl"));
    EXPECT_EQ(loadList(list(2, 0, 2)), 1);
    EXPECT_EQ(dataset.m_aTrialFilePath[0], folder.path("moved.trl"));
    EXPECT_EQ(trialName(0), CString("moved"));
}

TEST_F(DatasetWithTrials, NoTrialsOrNoSlotsNeedNoTrial)
{
    EXPECT_EQ(dataset._20serializeTrials(0), 1);
    EXPECT_EQ(dataset._20serializeTrials(1), 1);
    TrialList none = list(0, -1, 0);
    EXPECT_EQ(loadList(none), 1);
    none = list(3, -1, 0);
    none.presence = 0;
    EXPECT_EQ(loadList(none), 1);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), -1);
    host.expectNoMessages();
}

TEST_F(DatasetWithTrials, ADatasetWithNoTrialsWritesZerosAndReadsBack)
{
    EXPECT_TRUE(sameBytes(stored(dataset), record(newest, Parts())));
    EXPECT_EQ(load(dataset, stored(dataset)), 1);
    EXPECT_EQ(dataset.m_ppTrial, nullptr);
    host.expectNoMessages();
}

TEST_F(DatasetWithTrials, TheTrialStepReadsIntoTheTrialThatIsThere)
{
    makeTrials(2);
    ASSERT_EQ(loadList(list(2, 0, 2)), 1);
    CMDTrialzk* const there = dataset.getMDTrial(0);
    there->m_strTrialName = "changed";
    EXPECT_EQ(dataset._20serializeTrials(0), 1);
    EXPECT_EQ(dataset.getMDTrial(0), there);
    EXPECT_EQ(trialName(0), CString("t0"));
}

// ---- samples that were changed

TEST_F(DatasetWithTrials, AnotherCountAndAnotherStepAreTold)
{
    makeTrial("t0", 2); // its step is 1
    const auto messages = [&](std::int64_t samples, std::int64_t step) {
        host.clearRecord();
        Parts parts;
        parts.trials = list(1, 0, 1);
        CMEGRecordInfozkProzk info;
        info.m_nRecTotalSample = samples;
        info.m_nResampleFactor = step;
        parts.recordInfo = recordBytes(info);
        EXPECT_EQ(load(dataset, record(newest, parts)), 1);
        EXPECT_EQ(trialName(0), CString("t0"));
        return host.messages();
    };
    EXPECT_THAT(messages(3, 2),
                ElementsAre(CString("Sample has been changed: 3->2, Please re-sample and check the data")));
    EXPECT_THAT(messages(3, 1), IsEmpty());
    EXPECT_THAT(messages(2, 2), IsEmpty());
}

// ---- moving a dataset

TEST_F(DatasetWithTrials, ADatasetMovedToAnotherFolderOpensAndIsMended)
{
    makeTrials(3);
    ASSERT_EQ(loadList(list(3, 0, 3)), 1);
    {
        CFile file(folder.path("a.meg"), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        ASSERT_EQ(dataset.serializezk(archive), 1);
    }
    const TemporaryFolder other;
    for (const char* name : {"a.meg", "t0.trl", "t1.trl", "t2.trl"})
        std::filesystem::rename(folder.native(name), other.native(name));

    CMEGDatazk moved;
    CDocument document;
    document.SetPathName(other.path("a.meg"));
    for (CDocument* known : {static_cast<CDocument*>(nullptr), &document}) {
        moved.m_pDocument = known;
        CFile file(other.path("a.meg"), CFile::modeRead | CFile::shareExclusive);
        CArchive archive(&file, CArchive::load);
        ASSERT_EQ(moved.serializezk(archive), 1);
        EXPECT_EQ(moved.m_aTrialFilePath[0], other.path("t0.trl"));
        EXPECT_EQ(moved.m_aTrialFilePath[1], folder.path("t1.trl")); // until it is opened
        ASSERT_NE(moved.getTrialzk(1), nullptr);
        EXPECT_EQ(moved.m_aTrialFilePath[1], other.path("t1.trl"));
    }
    EXPECT_TRUE(folder.names().empty());
    host.expectNoMessages();
}

// ---- the small form of the trial list

TEST_F(DatasetWithTrials, EachFlagOfTheSmallFormOpensATrialAndOneStaysInTheEnd)
{
    makeTrials(3);
    for (const std::int32_t version : {20150724, 20150806, 20190725}) {
        TrialList trials = list(3, 0, 3);
        trials.behind = ByteBuilder().i32(1).i32(0).i32(5);
        ASSERT_EQ(loadList(trials, version), 1);
        EXPECT_THAT(trialNames(), ElementsAre(CString("absent"), CString("absent"), CString("t2")));
        EXPECT_EQ(dataset.getCurrentTrialIndx(), 2);
    }
    host.expectNoMessages();
}

TEST_F(DatasetWithTrials, ATrialOfTheSmallFormThatCannotBeOpenedEndsTheLoad)
{
    makeTrials(1);
    host.willAnswerNo();
    TrialList trials = list(3, 0, 3);
    trials.behind = ByteBuilder().i32(1).i32(1).i32(0);
    EXPECT_EQ(loadList(trials, 20190725), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed "),
                                             CString("Is there enough memory for read MEG trial data?")));
}

TEST_F(DatasetWithTrials, TheSmallFormNeedsAPathForEachTrial)
{
    makeTrials(2);
    TrialList trials = list(3, 0, 2);
    trials.behind = ByteBuilder().i32(1).i32(0).i32(0);
    EXPECT_EQ(loadList(trials, 20190725), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!"),
                                             CString("Is there enough memory for read MEG trial data?")));
}

// ---- looking into a file

TEST_F(DatasetWithTrials, WithoutTrialsAFileIsReadAndTheirFilesAreLeftAlone)
{
    makeTrials(1);
    for (const std::int32_t version : {newest, 20190725, 20150724}) {
        Parts parts;
        parts.trials = list(3, 7, 3);
        parts.trials.behind = ByteBuilder().i32(1).i32(1).i32(1);
        LoadingArchive archive(record(version, parts));
        EXPECT_EQ(dataset.serializeWithoutTrials(*archive), 1);
        EXPECT_EQ(archive->bytesLeft(), 0U);
        EXPECT_EQ(dataset.getTotalTrial(), 3);
        EXPECT_EQ(dataset.getCurrentTrialIndx(), 7);
        EXPECT_EQ(dataset.getMDTrial(0), nullptr);
    }
    host.expectNoMessages();
    ASSERT_EQ(loadList(list(1, 0, 1)), 1); // the next time with them again
    EXPECT_EQ(trialName(0), CString("t0"));
}

TEST_F(DatasetWithTrials, WithoutTrialsNoneIsSaved)
{
    makeTrials(1);
    ASSERT_EQ(loadList(list(1, 0, 1)), 1);
    std::filesystem::remove(folder.native("t0.trl"));
    EXPECT_FALSE(storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializeWithoutTrials(ar), 1); }).empty());
    EXPECT_NE(dataset.getMDTrial(0), nullptr);
    EXPECT_TRUE(folder.names().empty());
    host.expectNoMessages();
}

} // namespace

} // namespace megset::CMEGData9FileB_test
