// New datasets, and a virtual trial that belongs to none.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CFileException.h"
#include "megset/platform/paths.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicMaking_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MadeDataset : public TrialFiles
{
protected:
    MadeDataset()
    {
        filed.folder.makeFolder("new");
        document.SetPathName(path("new\\study.meg"));
        data.setDocument(&document, false);
        model = makeTrial(0, 2, 5);
        model->getChannel(0)->m_strChannelNameRaw = "MLF11";
        model->getChannel(1)->setChannelType(101);
        // What a model hands on is told by its first channel here.
        model->getChannel(0)->m_nMegListID = 11;
        model->getChannel(1)->m_nMegListID = 12;
    }
    std::vector<int> listIds(int trial)
    {
        const CMDTrialzk* opened = data.getTrialzk(trial);
        std::vector<int> ids;
        for (int i = 0; opened != nullptr && i < opened->getTotalChannel(); ++i)
            ids.push_back(opened->getChannel(i)->m_nMegListID);
        return ids;
    }

    std::unique_ptr<CMDTrialzk> model;
};

// ---- many trials

TEST_F(MadeDataset, HasAFileForEveryTrialAndTheFirstOneOpen)
{
    EXPECT_EQ(data.setTrialChannels(3, 2, model.get(), "avg"), 1);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_THAT(paths(),
                ElementsAre(path("new\\study_0avg.trl"), path("new\\study_1avg.trl"), path("new\\study_2avg.trl")));
    for (const int place : {0, 1, 2}) {
        const CMDTrialzk* trial = data.getTrialzk(place);
        ASSERT_NE(trial, nullptr);
        EXPECT_EQ(trial->m_strTrialName, CString::formatted("%davg", place));
        EXPECT_EQ(trial->m_nVirtualTrial, 0);
        EXPECT_EQ(trial->m_nTrialKind, 1);
        EXPECT_EQ(trial->m_nTrialIndex, place);
        EXPECT_EQ(trial->getTotalSample(0), 0);
        EXPECT_THAT(listIds(place), ElementsAre(11, 12));
    }
    host.expectNoMessages();
    EXPECT_THAT(host.calls(),
                ElementsAre("progress begin set trial and channel data ... 0..3",
                            "progress set trial and channel data ... 0", "progress set trial and channel data ... 1",
                            "progress set trial and channel data ... 2",
                            "progress end set trial and channel data ..."));
}

TEST_F(MadeDataset, NeedsNoModel)
{
    EXPECT_EQ(data.setTrialChannels(1, 3, nullptr, ""), 1);
    EXPECT_EQ(data.getTotalChannel(0), 3);
    EXPECT_EQ(data.m_aTrialFilePath.GetAt(0), path("new\\study_0.trl"));
    host.expectNoMessages();
}

TEST_F(MadeDataset, HasAsManyChannelsAsToldWhateverTheModelHas)
{
    EXPECT_EQ(data.setTrialChannels(1, 3, model.get(), ""), 1);
    EXPECT_THAT(listIds(0), ElementsAre(11, 12, -1));
    EXPECT_EQ(data.setTrialChannels(1, 1, model.get(), ""), 1);
    EXPECT_THAT(listIds(0), ElementsAre(11));
}

TEST_F(MadeDataset, TakesAModelThatBelongsToTheDataset)
{
    data.openTrial(1);
    data.m_ppTrial.set(1, std::move(model));
    EXPECT_EQ(data.setTrialChannels(2, 2, data.getMDTrial(1), ""), 1);
    EXPECT_THAT(listIds(1), ElementsAre(11, 12));
    data.m_ppTrial.set(0, makeTrial(0, 2, 5));
    data.getMDTrial(0)->getChannel(0)->m_nMegListID = 21;
    EXPECT_EQ(data.setOneTrialChannels(1, data.getMDTrial(0), &document, nullptr), 1);
    EXPECT_THAT(listIds(0), ElementsAre(21));
}

TEST_F(MadeDataset, LeavesTheFormerFilesAlone)
{
    data.openTrial(0);
    data.getMDTrial(0)->getChannel(0)->getDataWave()[0] = -9.0;
    data.setTrialChannels(1, 2, nullptr, "");
    EXPECT_EQ(waveInFile("Trial0.trl", 0), channelValues(0, 0, 5)); // not even saved
}

TEST_F(MadeDataset, IsEmptyForCountsBelowOne)
{
    for (const auto& [trials, channels] : {std::pair(0, 2), std::pair(-1, 2), std::pair(2, 0), std::pair(2, -1)})
        EXPECT_EQ(data.setTrialChannels(trials, channels, model.get(), ""), 0);
    EXPECT_EQ(data.setOneTrialChannels(0, model.get(), &document, nullptr), 0);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
    EXPECT_TRUE(filed.folder.native("new").empty() || std::filesystem::is_empty(filed.folder.native("new")));
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1); // and usable
    EXPECT_EQ(data.openTrial(0), 1);
}

TEST_F(MadeDataset, AsksForAFolderWithoutADocument)
{
    data.setDocument(nullptr, false);
    host.willChooseFile(path("new\\mine.trl"));
    EXPECT_EQ(data.setTrialChannels(1, 2, nullptr, ""), 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetAt(0), path("new\\mine_0.trl"));
    host.willCancelFile();
    EXPECT_EQ(data.setTrialChannels(1, 2, nullptr, ""), 0);
    EXPECT_EQ(data.getTotalTrial(), 0);
}

TEST_F(MadeDataset, NeedsAFolder)
{
    document.SetPathName("study.meg"); // names, but no folder
    EXPECT_EQ(data.setTrialChannels(1, 2, nullptr, ""), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File directory has not been initialized!"));
    EXPECT_EQ(data.getTotalTrial(), 0);
}

TEST_F(MadeDataset, GoesOnPastATrialThatCannotBeWritten)
{
    filed.folder.makeFolder("new\\study_1.trl");
    host.willAnswerNo();
    EXPECT_EQ(data.setTrialChannels(3, 2, nullptr, ""), 1);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_THAT(paths(), ElementsAre(path("new\\study_0.trl"), path("new\\study_2.trl")));
    EXPECT_EQ(host.messages().back(), "File path and trial error!"); // from opening the first one
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
}

TEST_F(MadeDataset, IsEmptyOnAFullDisk)
{
    std::filesystem::create_symlink("/dev/full", filed.folder.native("new\\study_1.trl"));
    EXPECT_THROW(data.setTrialChannels(3, 2, nullptr, ""), CFileException);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
    EXPECT_EQ(host.openBars(), 0);
}

TEST_F(MadeDataset, IsEmptyWithoutMemoryAndItsFilesStay)
{
    bool second = false;
    forEachAllocationFailure([&] {
        host.clearRecord();
        int done = 1;
        try {
            done = data.setTrialChannels(2, 2, model.get(), "");
        } catch (const CArchiveException&) {
            // A channel without memory leaves the reader in the middle of the first trial.
        }
        const FailingAllocator none(0);
        EXPECT_EQ(data.getTotalTrial(), done ? 2 : 0);
        if (done)
            return;
        EXPECT_FALSE(host.messages().empty());
        EXPECT_THAT(host.messages(),
                    Contains(testing::AnyOf(CString("Not enough memory?"), CString("Is there enough memory?!"))));
        EXPECT_EQ(data.getTotalTrial(), 0);
        EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
        second = second || filed.folder.has("new\\study_0.trl");
    });
    EXPECT_TRUE(second);
    EXPECT_EQ(data.getTotalTrial(), 2);
    host.clearRecord();
}

TEST_F(MadeDataset, KeepsItsFilesAwayFromThoseOfUnsavedTrialsOfTheFormerOne)
{
    ASSERT_EQ(data.setTrialChannels(2, 2, nullptr, ""), 1);
    data.getMDTrial(0)->m_strTrialName = "former";
    std::filesystem::remove(filed.folder.native("new\\study_0.trl"));
    host.willAnswerNo();
    data.saveAllTrials();
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.setTrialChannels(2, 2, nullptr, ""), 1);
    EXPECT_THAT(paths(), ElementsAre(path("new\\study_0_1.trl"), path("new\\study_1.trl")));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(read(path("new\\study_0.trl"))->m_strTrialName, "former");
    EXPECT_EQ(read(path("new\\study_0_1.trl"))->m_strTrialName, "0");
}

TEST_F(MadeDataset, DoesNotGiveItsPathsToUnsavedTrialsOfTheFormerOne)
{
    editAndLoseFile(1, -5.0);
    host.willAnswerNo();
    data.saveAllTrials();
    data.setTrialChannels(2, 2, nullptr, "");
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -5.0);
    EXPECT_EQ(data.getTrialzk(1)->getTotalSample(0), 0);
}

// ---- one virtual trial

TEST_F(MadeDataset, OfOneTrialKeepsItInMemory)
{
    const CString suffix = "avg";
    EXPECT_EQ(data.setOneTrialChannels(2, model.get(), &document, &suffix), 1);
    EXPECT_EQ(data.getTotalTrial(), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_THAT(paths(), ElementsAre(path("new\\study1avg.trl")));
    const CMDTrialzk* only = data.getMDTrial(0);
    ASSERT_NE(only, nullptr);
    EXPECT_EQ(only->m_nVirtualTrial, 1);
    EXPECT_EQ(only->m_nTrialKind, 2);
    EXPECT_EQ(only->m_nTrialIndex, 0);
    EXPECT_EQ(only->m_strTrialName, "0avg");
    EXPECT_THAT(listIds(0), ElementsAre(11, 12));
    EXPECT_EQ(read(path("new\\study1avg.trl"))->m_nVirtualTrial, 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MadeDataset, OfOneTrialNeedsNoSuffix)
{
    EXPECT_EQ(data.setOneTrialChannels(2, nullptr, nullptr, nullptr), 1); // the document is there already
    EXPECT_THAT(paths(), ElementsAre(path("new\\study1.trl")));
}

TEST_F(MadeDataset, OfOneTrialIsNoneWithoutAFolderOrAName)
{
    data.setDocument(nullptr, false);
    host.willCancelFile();
    EXPECT_EQ(data.setOneTrialChannels(2, nullptr, nullptr, nullptr), 0);
    document.SetPathName(".meg");
    EXPECT_EQ(data.setOneTrialChannels(2, nullptr, &document, nullptr), 0);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Please select a direcotry to store the  data!"));
}

TEST_F(MadeDataset, OfOneTrialThatCannotBeWrittenHasNoPath)
{
    filed.folder.makeFolder("new\\study1.trl");
    host.willAnswerNo();
    EXPECT_EQ(data.setOneTrialChannels(2, nullptr, &document, nullptr), 1);
    EXPECT_NE(data.getMDTrial(0), nullptr);
    EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
}

TEST_F(MadeDataset, OfOneTrialIsEmptyWithoutMemory)
{
    const auto failures = forEachAllocationFailure([&] {
        host.clearRecord();
        const int done = data.setOneTrialChannels(2, model.get(), &document, nullptr);
        const FailingAllocator none(0);
        EXPECT_EQ(done, host.messages().empty() ? 1 : 0);
        EXPECT_EQ(data.getTotalTrial(), done);
    });
    EXPECT_GE(failures, 4);
    host.clearRecord();
}

// ---- a trial of no dataset

class InitTrial : public MadeDataset
{
protected:
    std::unique_ptr<CMDTrialzk> make(CMDTrialzk* source, std::int64_t samples)
    {
        return std::unique_ptr<CMDTrialzk>(data.makeInitTrial(source, samples, 42, path("new\\"), "mean"));
    }
};

TEST_F(InitTrial, HasTheChannelsOfItsSourceAndSamplesOfZero)
{
    const auto trial = make(model.get(), 4);
    ASSERT_NE(trial, nullptr);
    EXPECT_EQ(trial->getTotalChannel(), 2);
    EXPECT_EQ(trial->getChannel(1)->m_nMegListID, 12);
    EXPECT_THAT(wave(*trial->getChannel(1)), ElementsAre(0.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(trial->m_nVirtualTrial, 1);
    EXPECT_EQ(trial->m_nTrialKind, 42);
    EXPECT_EQ(trial->m_strTrialName, "mean");
    EXPECT_EQ(trial->m_strTrialFilePath, path("new\\mean.trl"));
    EXPECT_FALSE(filed.folder.has("new\\mean.trl"));
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(InitTrial, HasNoSamplesForNone)
{
    for (const std::int64_t samples : {0, -1}) {
        const auto trial = make(model.get(), samples);
        ASSERT_NE(trial, nullptr);
        EXPECT_EQ(trial->getTotalSample(0), 0);
    }
}

TEST_F(InitTrial, IsLikeTheCurrentOneForNull)
{
    EXPECT_EQ(make(nullptr, 3), nullptr); // it is on disk
    EXPECT_THAT(host.messages(), ElementsAre("There is no data to make a new trial!"));
    data.openTrial(1);
    EXPECT_NE(make(nullptr, 3), nullptr);
}

TEST_F(InitTrial, IsNoneForASourceWithoutChannels)
{
    CMDTrialzk empty;
    EXPECT_EQ(make(&empty, 3), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(InitTrial, IsNoneWithoutMemory)
{
    const auto failures = forEachAllocationFailure([&] {
        host.clearRecord();
        const auto trial = make(model.get(), 4);
        EXPECT_EQ(trial != nullptr, host.messages().empty());
    });
    EXPECT_GE(failures, 4);
    host.clearRecord();
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicMaking_test
