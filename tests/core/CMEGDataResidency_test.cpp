// One trial in memory: opening, saving, and trials that could not be saved.
#include "megset/core/CMEGData.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CDocument.h"
#include "megset/platform/CFileException.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGDataResidency_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three trials of two channels with five samples.
class FiledTrials : public ::testing::Test
{
protected:
    CString question(int trial) const { return "Would like to find the file" + filed.path(trial); }
    std::filesystem::path native(int trial) const { return filed.folder.native(FiledDataset::name(trial)); }
    std::vector<double> waveInMemory(int trial, int channel)
    {
        return wave(*data.getMDTrial(trial)->getChannel(channel));
    }
    std::vector<double> waveInFile(int trial, int channel) const
    {
        return wave(*filed.readTrial(trial)->getChannel(channel));
    }
    /// Opens the trial, changes its first sample and makes its file vanish.
    void editAndLoseFile(int trial, double value)
    {
        ASSERT_EQ(data.openTrial(trial), 1);
        data.getMDTrial(trial)->getChannel(0)->getDataWave()[0] = value;
        std::filesystem::remove(native(trial));
    }

    FiledDataset filed{3, 2, 5};
    CMEGDatazk& data = filed.data;
};

// ---- opening

TEST_F(FiledTrials, ComeIntoMemoryWhenOpenedAndBecomeCurrent)
{
    const ScriptedHost host;
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(waveInMemory(1, 1), channelValues(1, 1, 5));
    EXPECT_EQ(data.getMDTrial(1)->m_strTrialFilePath, filed.path(1));
    host.expectNoMessages();
}

TEST_F(FiledTrials, AreInMemoryOneAtATime)
{
    for (const int trial : {0, 2, 1, 1, 0}) {
        ASSERT_EQ(data.openTrial(trial), 1);
        EXPECT_EQ(filed.trialsInMemory(), 1);
        EXPECT_NE(data.getMDTrial(trial), nullptr);
    }
}

TEST_F(FiledTrials, AreTheCurrentOneForMinusOne)
{
    data.m_nCurrentTrial = 2;
    EXPECT_EQ(data.openTrial(-1), 1);
    EXPECT_EQ(waveInMemory(2, 0), channelValues(2, 0, 5));
    EXPECT_EQ(data.getTrialzk(-1), data.getMDTrial(2));
}

TEST_F(FiledTrials, AreNotOpenedOutsideTheList)
{
    const ScriptedHost host;
    for (const int outside : {-2, 3, 1000}) {
        EXPECT_EQ(data.openTrial(outside), 0) << outside;
        EXPECT_EQ(data.getTrialzk(outside), nullptr) << outside;
    }
    data.m_ppTrial.reset();
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    host.expectNoMessages();
}

TEST_F(FiledTrials, AreGivenAtOnceWhenTheyAreCurrent)
{
    const ScriptedHost host;
    const CMDTrialzk* first = data.getTrialzk(1);
    ASSERT_NE(first, nullptr);
    std::filesystem::remove(native(1));
    data.m_aTrialFilePath.RemoveAll(); // no path is looked at either
    EXPECT_EQ(data.getTrialzk(1), first);
    EXPECT_EQ(data.getTrialzk(-1), first);
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(FiledTrials, AreOnlyLookedAtByTheirPlace)
{
    data.openTrial(1);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getTotalChannel(0), 0);
    EXPECT_EQ(data.getChannMEGData(0, 0), nullptr);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
}

TEST_F(FiledTrials, AreNotOpenedWhereThePathsAreOfAnotherNumber)
{
    const ScriptedHost host;
    data.m_aTrialFilePath.RemoveAt(2);
    EXPECT_EQ(data.openTrial(1), 0);
    EXPECT_EQ(data.saveAllTrials(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!", "File path and trial error!"));
}

TEST_F(FiledTrials, OfAnotherNumberThanThePathsAreToldWithoutAPlaceToo)
{
    const ScriptedHost host;
    EXPECT_EQ(CMEGDatazk().saveAllTrials(), 0);
    host.expectNoMessages();
    data.m_ppTrial.reset();
    EXPECT_EQ(data.saveAllTrials(), 0);
    host.expectNoMessages();
    data.m_aTrialFilePath.RemoveAt(2);
    EXPECT_EQ(data.saveAllTrials(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!"));
}

TEST_F(FiledTrials, AreFoundBesideTheDatasetAndTheListFollows)
{
    const TemporaryFolder moved;
    std::filesystem::rename(native(1), moved.native(FiledDataset::name(1)));
    data.m_strDatasetPath = moved.path("session.meg");
    const ScriptedHost host;
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetAt(1), moved.path(FiledDataset::name(1)));
    host.expectNoMessages();
}

TEST_F(FiledTrials, AreFoundBesideTheDocument)
{
    const TemporaryFolder moved;
    std::filesystem::rename(native(1), moved.native(FiledDataset::name(1)));
    CDocument document;
    document.SetPathName(moved.path("session.meg"));
    data.m_pDocument = &document;
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetAt(1), moved.path(FiledDataset::name(1)));
}

TEST_F(FiledTrials, LeaveTheFormerOneCurrentWhenTheyAreNotFound)
{
    ScriptedHost host;
    ASSERT_EQ(data.openTrial(0), 1);
    std::filesystem::remove(native(1));
    host.willAnswerNo(question(1));
    EXPECT_EQ(data.openTrial(1), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed "));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(filed.trialsInMemory(), 0);
    EXPECT_EQ(data.openTrial(0), 1);
}

TEST_F(FiledTrials, TellWhereTheirFileIsNone)
{
    const ScriptedHost host;
    filed.folder.write(FiledDataset::name(1), ByteBuilder().wide("MEGCHANNELZK").i32(20190730).bytes());
    EXPECT_EQ(data.getTrialzk(1), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre("The opened file is not trial or corrupted!", "Save trail data error!",
                                             "Open trial data failed "));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
}

TEST_F(FiledTrials, LeaveTheDatasetUsableWhenTheirFileIsCut)
{
    const auto length = std::filesystem::file_size(native(1));
    for (const std::uintmax_t part : {length / 4, length / 2, length - 1}) {
        const ScriptedHost host;
        ASSERT_EQ(data.openTrial(0), 1);
        std::filesystem::resize_file(native(1), part);
        try {
            EXPECT_EQ(data.openTrial(1), 0) << part;
        } catch (const CArchiveException&) {
        }
        EXPECT_EQ(data.getCurrentTrialIndx(), 0);
        EXPECT_EQ(filed.trialsInMemory(), 0);
        EXPECT_EQ(data.openTrial(0), 1);
    }
}

TEST_F(FiledTrials, TellOfSamplesThatWereChangedInNumberAndStep)
{
    const ScriptedHost host;
    data.m_recordInfo.m_nRecTotalSample = 40;
    EXPECT_EQ(data.openTrial(1), 1); // the step is that of the recording
    data.m_recordInfo.m_nRecTotalSample = 5;
    data.m_recordInfo.m_nResampleFactor = 8;
    EXPECT_EQ(data.openTrial(2), 1); // the number is that of the recording
    host.expectNoMessages();
    data.m_recordInfo.m_nRecTotalSample = 40;
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Sample has been changed: 40->5, Please re-sample and check the data"));
    EXPECT_NE(data.getMDTrial(1), nullptr);
}

TEST_F(FiledTrials, StayInTheirPlaceWithoutChannelsThoughOpeningTellsNo)
{
    const ScriptedHost host;
    filed.writeTrial(1, *makeTrial(1, 0, 0));
    EXPECT_EQ(data.openTrial(1), 0);
    EXPECT_NE(data.getMDTrial(1), nullptr);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    host.expectNoMessages();
}

TEST_F(FiledTrials, LeaveTheDatasetUsableWhereverMemoryEnds)
{
    forEachAllocationFailure([this] {
        const ScriptedHost host;
        {
            const FailingAllocator pause(0);
            ASSERT_EQ(data.openTrial(0), 1);
        }
        try {
            data.openTrial(1);
        } catch (const CArchiveException&) {
            // A channel without memory leaves the reader in the middle of the record.
        }
        const FailingAllocator none(0);
        data.m_ppTrial.set(1, nullptr);
        ASSERT_EQ(data.openTrial(1), 1);
        EXPECT_EQ(waveInMemory(1, 1), channelValues(1, 1, 5));
    });
}

// ---- saving

TEST_F(FiledTrials, AreWrittenWhenAnotherIsOpened)
{
    data.openTrial(0);
    data.getMDTrial(0)->getChannel(1)->getDataWave()[2] = -77.0;
    data.openTrial(1);
    EXPECT_EQ(waveInFile(0, 1)[2], -77.0);
    // The raw samples go with the working ones.
    EXPECT_EQ(backup(*filed.readTrial(0)->getChannel(1))[2], valueAt(0, 1, 2));
}

TEST_F(FiledTrials, AreWrittenThoughNothingChanged)
{
    data.openTrial(0);
    filed.folder.write(FiledDataset::name(0), "overwritten meanwhile");
    data.openTrial(1);
    EXPECT_EQ(waveInFile(0, 0), channelValues(0, 0, 5));
}

TEST_F(FiledTrials, AreWrittenAndFreedTogether)
{
    data.openTrial(0);
    data.m_ppTrial.set(2, makeTrial(9, 2, 5));
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(waveInFile(2, 0), channelValues(9, 0, 5));
}

TEST_F(FiledTrials, AreNotWrittenWhereNoneIsInMemory)
{
    const auto before = filed.folder.read(FiledDataset::name(0));
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(filed.folder.read(FiledDataset::name(0)), before);
    data.m_ppTrial.reset();
    EXPECT_EQ(data.saveAllTrials(), 0);
}

TEST_F(FiledTrials, AreNotSavedByTheDestructor)
{
    const TemporaryFolder folder;
    const CString path = folder.path("Trial0.trl");
    CString target = path;
    ASSERT_EQ(makeTrial(0, 1, 2)->saveTrialData(target, nullptr, "", true), 1);
    {
        CMEGDatazk other;
        other.m_ppTrial.allocate(1);
        other.m_nTotalTrial = 1;
        other.m_nCurrentTrial = 0;
        other.m_aTrialFilePath.Add(path);
        ASSERT_EQ(other.openTrial(0), 1);
        other.getMDTrial(0)->getChannel(0)->getDataWave()[0] = -1.0;
    }
    CMDTrialzk read;
    CString source = path;
    ASSERT_EQ(read.openTrialData(source, nullptr, ""), 1);
    EXPECT_EQ(wave(*read.getChannel(0)), channelValues(0, 0, 2));
}

TEST_F(FiledTrials, KeepTheSelectionAndFlagsOfTheDataset)
{
    data.setSelect(1, 3);
    data.openTrial(2);
    EXPECT_EQ(data.m_nSelectStart, 1);
    EXPECT_EQ(data.m_nSelectEnd, 3);
}

// ---- saving that fails

using UnsavedTrials = FiledTrials;

TEST_F(UnsavedTrials, AreKeptWhenTheFileHasVanishedAndNoneIsChosen)
{
    ScriptedHost host;
    editAndLoseFile(0, -5.0);
    host.willAnswerNo();
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(host.messages().back(), "Save trial data error!");
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(0)->getChannel(0)->getDataWave()[0], -5.0);
}

TEST_F(UnsavedTrials, CanBeSavedAgainToTheirPath)
{
    ScriptedHost host;
    editAndLoseFile(0, -5.0);
    host.willAnswerNo();
    data.saveAllTrials();
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_TRUE(data.getUnsavedTrials().IsEmpty());
    EXPECT_EQ(waveInFile(0, 0)[0], -5.0);
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(waveInMemory(0, 0)[0], -5.0);
}

TEST_F(UnsavedTrials, DoNotKeepAnotherTrialFromBeingOpened)
{
    ScriptedHost host;
    editAndLoseFile(0, -5.0);
    host.willAnswerNo();
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
}

TEST_F(UnsavedTrials, AreNoneWhenTheUserChoosesAnotherFileAndTheListFollows)
{
    ScriptedHost host;
    editAndLoseFile(0, -5.0);
    host.willAnswerYes();
    host.willChooseFile(filed.folder.path("Elsewhere.trl"));
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_TRUE(data.getUnsavedTrials().IsEmpty());
    EXPECT_EQ(data.m_aTrialFilePath.GetAt(0), filed.folder.path("Elsewhere.trl"));
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(waveInMemory(0, 0)[0], -5.0);
}

TEST_F(UnsavedTrials, EndTheSavingWithTheRestInMemory)
{
    ScriptedHost host;
    for (int i = 0; i < 3; ++i)
        data.m_ppTrial.set(i, makeTrial(i + 5, 2, 5));
    std::filesystem::remove(native(1));
    host.willAnswerNo();
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(waveInFile(0, 0), channelValues(5, 0, 5));
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_NE(data.getMDTrial(2), nullptr);
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(waveInFile(2, 0), channelValues(2, 0, 5));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile(1, 0), channelValues(6, 0, 5));
}

TEST_F(UnsavedTrials, StayInTheListWhenTheyCannotBeSavedOnceMore)
{
    ScriptedHost host;
    editAndLoseFile(0, -5.0);
    host.willAnswerNo();
    data.saveAllTrials();
    const CString path = data.m_aTrialFilePath.GetAt(0);
    data.m_aTrialFilePath.SetAt(0, filed.folder.path("missing\\Trial0.trl"));
    host.willAnswerNo();
    EXPECT_EQ(data.saveUnsavedTrials(), 1);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    data.m_aTrialFilePath.SetAt(0, path);
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile(0, 0)[0], -5.0);
}

TEST_F(UnsavedTrials, OfOnePlaceLeaveTheLaterVersionInTheFile)
{
    ScriptedHost host;
    for (const int version : {7, 8}) {
        data.m_ppTrial.set(0, makeTrial(version, 2, 5));
        std::filesystem::remove(native(0));
        host.willAnswerNo();
        data.saveAllTrials();
    }
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 2);
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile(0, 0), channelValues(8, 0, 5));
}

TEST_F(UnsavedTrials, GoToTheirOwnPathWhereTheListHasNone)
{
    ScriptedHost host;
    editAndLoseFile(2, -5.0);
    host.willAnswerNo();
    data.saveAllTrials();
    data._cleanDatasetTrials();
    data.m_aTrialFilePath.RemoveAll();
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile(2, 0)[0], -5.0);
}

#ifdef __linux__
TEST_F(UnsavedTrials, AreKeptWhenTheDiskIsFullAndTheExceptionPasses)
{
    const ScriptedHost host;
    editAndLoseFile(0, -5.0);
    std::filesystem::create_symlink("/dev/full", native(0));
    EXPECT_THROW(data.openTrial(1), CFileException);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(0)->getChannel(0)->getDataWave()[0], -5.0);
    EXPECT_THROW(data.saveUnsavedTrials(), CFileException);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    std::filesystem::remove(native(0));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile(0, 0)[0], -5.0);
    host.expectNoMessages();
}
#endif

TEST_F(UnsavedTrials, GoWithTheDataset)
{
    // The address sanitizer tells of a leak here.
    ScriptedHost host;
    FiledDataset other(1, 2, 3);
    ASSERT_EQ(other.data.openTrial(0), 1);
    std::filesystem::remove(other.folder.native(FiledDataset::name(0)));
    host.willAnswerNo();
    other.data.saveAllTrials();
    EXPECT_EQ(other.data.getUnsavedTrials().GetSize(), 1);
}

// ---- what needs the trials opened

TEST_F(FiledTrials, AreOpenedForTheSelection)
{
    data.m_nCurrentTrial = 1;
    EXPECT_EQ(data.setSelect(0, 99), 1);
    EXPECT_NE(data.getMDTrial(1), nullptr);
    EXPECT_EQ(data.m_nSelectEnd, 4);
}

TEST_F(FiledTrials, AreOpenedForTheirGoodFlag)
{
    auto trial = makeTrial(1, 2, 5);
    trial->setTrialGood(false);
    filed.writeTrial(1, *trial);
    EXPECT_EQ(data.getTrialComments(0), 1);
    EXPECT_EQ(data.getTrialComments(1), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
}

} // namespace
} // namespace megset::CMEGDataResidency_test
