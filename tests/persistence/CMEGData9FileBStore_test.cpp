// Writing a dataset's file: the trials that are in memory go to their own files with it.

#include "tests/persistence/datasetRecord.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CFileException.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/ScriptedHost.h"

#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileBStore_test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three trials of one channel with four samples, in files and in memory.
class StoredDataset : public ::testing::Test
{
protected:
    StoredDataset()
    {
        for (int i = 0; i < 3; ++i) {
            data.m_ppTrial.set(i, makeTrial(i, 1, 4));
            data.getMDTrial(i)->m_strTrialName = "stored";
        }
    }
    std::vector<CString> namesInFiles() const
    {
        std::vector<CString> names;
        for (int i = 0; i < 3; ++i)
            names.push_back(std::filesystem::exists(native(i)) ? filed.readTrial(i)->m_strTrialName
                                                               : CString("absent"));
        return names;
    }
    std::filesystem::path native(int trial) const { return filed.folder.native(FiledDataset::name(trial)); }
    // Makes the trial's file one that can't be opened for writing.
    void blockFile(int trial)
    {
        std::filesystem::remove(native(trial));
        std::filesystem::create_directory(native(trial));
        host.willAnswerNo();
    }
    void store() { datasetRecord::stored(data); }

    ScriptedHost host;
    FiledDataset filed{3, 1, 4};
    CMEGDatazk& data = filed.data;
};

TEST_F(StoredDataset, SavesTheTrialsInMemoryAndKeepsThemThere)
{
    CMDTrialzk* const first = data.getMDTrial(0);
    store();
    EXPECT_EQ(data.getMDTrial(0), first);
    EXPECT_EQ(filed.trialsInMemory(), 3);
    EXPECT_THAT(namesInFiles(), ElementsAre(CString("stored"), CString("stored"), CString("stored")));
    EXPECT_EQ(first->m_strTrialFilePath, filed.path(0));
    host.expectNoMessages();
}

TEST_F(StoredDataset, DoesNotTouchTheFileOfAnAbsentTrial)
{
    data.m_ppTrial.set(1, nullptr);
    std::filesystem::remove(native(1));
    store();
    EXPECT_THAT(namesInFiles(), ElementsAre(CString("stored"), CString("absent"), CString("stored")));
    host.expectNoMessages();
}

TEST_F(StoredDataset, TwiceGivesTheSameBytesOfDatasetAndTrials)
{
    const std::vector<std::byte> first = datasetRecord::stored(data);
    const std::vector<std::byte> trial = filed.folder.read(FiledDataset::name(0));
    EXPECT_TRUE(sameBytes(datasetRecord::stored(data), first));
    EXPECT_TRUE(sameBytes(filed.folder.read(FiledDataset::name(0)), trial));
}

TEST_F(StoredDataset, ComesBackWithItsCurrentTrial)
{
    data.m_nCurrentTrial = 2;
    CMEGDatazk read;
    ASSERT_EQ(datasetRecord::load(read, datasetRecord::stored(data)), 1);
    EXPECT_EQ(read.getCurrentTrialIndx(), 2);
    ASSERT_NE(read.getCurrentTrialPt(), nullptr);
    EXPECT_EQ(wave(*read.getCurrentTrialPt()->getChannel(0)), channelValues(2, 0, 4));
    host.expectNoMessages();
}

TEST_F(StoredDataset, ATrialThatCannotBeSavedEndsTheStepAndIsKeptAmongTheUnsaved)
{
    blockFile(1);
    CMDTrialzk* const second = data.getMDTrial(1);
    store();
    ASSERT_EQ(host.messages().size(), 2U); // the first is the system's
    EXPECT_EQ(host.messages()[1], CString("Save trial data error!"));
    EXPECT_NE(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_NE(data.getMDTrial(2), nullptr);
    EXPECT_EQ(filed.readTrial(2)->m_strTrialName, CString("Trial2")); // not saved any more
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials()[0], second);
    std::filesystem::remove(native(1));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_THAT(namesInFiles(), ElementsAre(CString("stored"), CString("stored"), CString("Trial2")));
}

TEST_F(StoredDataset, WhatIsReadOverItGivesNoPathToItsUnsavedTrials)
{
    blockFile(1);
    store();
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    FiledDataset other(3, 1, 4);
    ASSERT_EQ(datasetRecord::load(data, datasetRecord::stored(other.data)), 1);
    std::filesystem::remove(native(1));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(filed.readTrial(1)->m_strTrialName, CString("stored")); // the former dataset's file
    EXPECT_EQ(data.getTrialzk(1)->m_strTrialName, CString("Trial1"));
    EXPECT_EQ(data.m_aTrialFilePath[1], other.path(1));
}

TEST_F(StoredDataset, ATrialSavedUnderAnotherNameGivesItsPathToTheListBehindTheFile)
{
    std::filesystem::remove(native(0));
    std::filesystem::create_directory(native(0));
    host.willAnswerYes();
    host.willChooseFile(filed.folder.path("other.trl"));
    const std::vector<std::byte> bytes = datasetRecord::stored(data);
    EXPECT_EQ(data.m_aTrialFilePath[0], filed.folder.path("other.trl"));
    EXPECT_NE(data.getMDTrial(0), nullptr);
    EXPECT_NE(datasetRecord::stored(data), bytes); // the first file names the old path
}

TEST_F(StoredDataset, ATrialWithoutAPathIsAskedForAndNeverLost)
{
    data.m_aTrialFilePath.RemoveAll();
    host.willAnswerNo();
    store();
    EXPECT_EQ(host.messages().back(), CString("Save trial data error!"));
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 2);
}

TEST_F(StoredDataset, AFullDiskPassesTheExceptionAndKeepsTheTrial)
{
    std::filesystem::remove(native(0));
    std::filesystem::create_symlink("/dev/full", native(0));
    EXPECT_THROW(store(), CFileException);
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 2);
}

TEST_F(StoredDataset, IsFlushedAndAFailureOfTheDatasetsOwnFileIsAnException)
{
    FailingFile file;
    file.fullAfter(1000);
    CArchive archive(&file, CArchive::store);
    EXPECT_THROW(data.serializezk(archive), CFileException);
    archive.Abort();

    FailingFile flushed;
    CArchive other(&flushed, CArchive::store);
    EXPECT_EQ(data.serializezk(other), 1);
    EXPECT_EQ(flushed.GetLength(), other.position());
}

TEST_F(StoredDataset, AnArchiveOfTheOtherDirectionIsRefusedByTheArchive)
{
    CMemFile file;
    CArchive archive(&file, CArchive::load);
    EXPECT_THROW(data.serializezk(archive), CArchiveException);
}

// ---- the trial step alone

TEST_F(StoredDataset, TheTrialStepSavesWithoutWritingAFileOfTheDataset)
{
    EXPECT_EQ(data._20serializeTrials(1), 1);
    EXPECT_THAT(namesInFiles(), ElementsAre(CString("stored"), CString("stored"), CString("stored")));
    EXPECT_EQ(filed.trialsInMemory(), 3);
}

TEST_F(StoredDataset, TheTrialStepGivesOneAlsoWhereATrialCannotBeSaved)
{
    blockFile(0);
    EXPECT_EQ(data._20serializeTrials(7), 1);
    EXPECT_EQ(host.messages().back(), CString("Save trial data error!"));
}

TEST_F(StoredDataset, TheTrialStepOpensTheTrialAtTheIndexInRange)
{
    for (int i = 0; i < 3; ++i)
        data.m_ppTrial.set(i, nullptr);
    data.m_nCurrentTrial = 9;
    EXPECT_EQ(data._20serializeTrials(0), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_EQ(data.m_aTrialFilePath[2], filed.path(2));
    host.expectNoMessages();
}

TEST_F(StoredDataset, WithoutMemoryForATrialTheTrialStepGivesOneAndOpensNone)
{
    for (int i = 0; i < 3; ++i)
        data.m_ppTrial.set(i, nullptr);
    const FailingAllocator first(1);
    EXPECT_EQ(data._20serializeTrials(0), 1);
    EXPECT_EQ(filed.trialsInMemory(), 0);
    host.expectNoMessages();
}

TEST_F(StoredDataset, ATrialThatIsThereStaysThereWhenItsFileCannotBeRead)
{
    std::filesystem::remove(native(0));
    host.willAnswerNo("Would like to find the file" + filed.path(0));
    CMDTrialzk* const there = data.getMDTrial(0);
    EXPECT_EQ(data._20serializeTrials(0), 0);
    EXPECT_EQ(data.getMDTrial(0), there);
    EXPECT_EQ(there->m_strTrialName, CString("stored"));
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
}

TEST_F(StoredDataset, ATrialFileOfAnotherKindFailsTheStep)
{
    data.m_ppTrial.set(0, nullptr);
    filed.folder.write(FiledDataset::name(0), ByteBuilder().wide("MEGDATASETZK").bytes());
    EXPECT_EQ(data._20serializeTrials(0), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not trial or corrupted!"),
                                             CString("Save trail data error!"), CString("Open trial data failed ")));
    EXPECT_EQ(data.getMDTrial(0), nullptr);
}

TEST_F(StoredDataset, ATrialFileThatEndsEarlyPassesTheException)
{
    data.m_ppTrial.set(0, nullptr);
    filed.folder.write(FiledDataset::name(0), ByteBuilder().wide("MEGTRIALZK").bytes());
    EXPECT_THROW(data._20serializeTrials(0), CArchiveException);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_THAT(host.messages(), IsEmpty());
}

} // namespace

} // namespace megset::CMEGData9FileBStore_test
