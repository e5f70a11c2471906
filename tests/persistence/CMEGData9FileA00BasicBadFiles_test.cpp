// Trial files that another program holds, that belong to another dataset, that meet a full disk, or whose folder can't
// be written to: each is told with its path, the dataset stays usable, and no trial is lost.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CFile.h"
#include "megset/platform/CFileException.h"

#include "tests/persistence/trialFiles.h"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicBadFiles_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BadTrialFiles : public TrialFiles
{
protected:
    BadTrialFiles() { data.m_strTrialFolder = filed.folder.path(); }
    void edit(int trial, double first)
    {
        ASSERT_EQ(data.openTrial(trial), 1);
        data.getMDTrial(trial)->getChannel(0)->getDataWave()[0] = first;
    }
    /// All questions but those before are about this file.
    void expectAsked(const CString& file) const
    {
        ASSERT_FALSE(host.questions().empty());
        EXPECT_GE(host.questions().back().Find(file), 0) << host.questions().back().toUtf8();
    }
    /// Trials 0 to 2, of which the first sample of one was changed.
    void expectAllThere(int edited, double first)
    {
        EXPECT_EQ(data.saveUnsavedTrials(), 0);
        for (int i = 0; i < 3; ++i) {
            std::vector<double> expected = channelValues(i, 0, 5);
            if (i == edited)
                expected[0] = first;
            EXPECT_EQ(waveOf(i, 0), expected) << i;
        }
    }
};

// ---- in use elsewhere

class LockedTrialFiles : public BadTrialFiles
{
protected:
    void lock(int trial)
    {
        ASSERT_TRUE(other.Open(path(FiledDataset::name(trial)), CFile::modeRead | CFile::shareExclusive));
    }

    CFile other;
};

TEST_F(LockedTrialFiles, AreNotOpenedUntilTheyAreFree)
{
    ASSERT_EQ(data.openTrial(0), 1);
    lock(1);
    EXPECT_EQ(data.openTrial(1), 0);
    EXPECT_EQ(data.wkVtTrialRent(1, false), nullptr);
    EXPECT_THAT(host.messages(), Each(CString("Open trial data failed ")));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    other.Close();
    expectAllThere(-1, 0.0);
}

TEST_F(LockedTrialFiles, AreToldWithTheirPathWhenTheirTrialIsSaved)
{
    edit(0, -3.0);
    lock(0);
    host.willAnswerNo();
    EXPECT_EQ(data.openTrial(1), 1);
    expectAsked(path("Trial0.trl"));
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    other.Close();
    expectAllThere(0, -3.0);
}

TEST_F(LockedTrialFiles, KeepTheirTrialInItsPlaceWhenItIsToBeLent)
{
    edit(0, -3.0);
    lock(0);
    host.willAnswerNo();
    EXPECT_EQ(data.wkVtTrialRent(0, false), nullptr);
    expectAsked(path("Trial0.trl"));
    EXPECT_NE(data.getMDTrial(0), nullptr);
    other.Close();
    expectAllThere(0, -3.0);
}

TEST_F(LockedTrialFiles, KeepAnUpdateWithTheCaller)
{
    ASSERT_EQ(data.openTrial(0), 1);
    const std::unique_ptr<CMDTrialzk> detached(data.virtualTrialInit(nullptr, 42, "avg", true));
    ASSERT_TRUE(other.Open(listed(3), CFile::modeRead | CFile::shareExclusive));
    const std::vector<double> block = {1.0, 2.0, 3.0, 4.0};
    host.willAnswerNo();
    EXPECT_EQ(data.virtualTrialUpdate(detached.get(), 2, 2, block.data()), 0);
    expectAsked(path("UnknownVirtualTrial3avg.trl"));
    EXPECT_EQ(host.messages().back(), "Save updated virtual trial error!");
    other.Close();
    EXPECT_EQ(data.virtualTrialUpdate(detached.get(), 2, 2, block.data()), 1);
    EXPECT_THAT(waveOf(3, 1), ElementsAre(3.0, 4.0));
}

TEST_F(LockedTrialFiles, EndAMoveWithTheStateOfTheTrialThatWasInMemory)
{
    filed.folder.makeFolder("new");
    document.SetPathName(path("new\\study.meg"));
    edit(0, -3.0);
    lock(1);
    EXPECT_EQ(data.moveTrlFile2DocFold(&document), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed ", "Open trial for synchronization error!"));
    EXPECT_THAT(paths(), ElementsAre(path("new\\studyTrial0.trl"), path("Trial1.trl"), path("Trial2.trl")));
    other.Close();
    expectAllThere(0, -3.0);
    EXPECT_EQ(data.moveTrlFile2DocFold(&document), 1); // and once more
    expectAllThere(0, -3.0);
}

// ---- of another dataset

TEST_F(BadTrialFiles, OfAnotherDatasetAreOpenedWithAWarningAndLeaveTheOthersAlone)
{
    auto foreign = makeTrial(9, 3, 8);
    foreign->m_nTrialResampleStep = 2;
    filed.writeTrial(1, *foreign);
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Sample has been changed: 5->8, Please re-sample and check the data"));
    EXPECT_EQ(data.getTotalChannel(1), 3);
    EXPECT_EQ(waveOf(0, 1), channelValues(0, 1, 5));
    EXPECT_EQ(waveOf(2, 1), channelValues(2, 1, 5));
    EXPECT_EQ(waveInFile("Trial1.trl", 2), channelValues(9, 2, 8));
}

// ---- a full disk

TEST_F(BadTrialFiles, OnAFullDiskAreToldWithTheirPath)
{
    filed.folder.makeFolder("new");
    document.SetPathName(path("new\\study.meg"));
    const auto expectTold = [&](const CString& file, const std::function<void()>& operation) {
        fillDiskFor(file);
        try {
            operation();
            ADD_FAILURE() << file.toUtf8();
        } catch (const CFileException& exception) {
            EXPECT_EQ(exception.m_cause, CFileException::diskFull);
            EXPECT_EQ(exception.m_strFileName, path(file));
            EXPECT_NE(std::string(exception.what()).find("The disk is full"), std::string::npos);
        }
        std::filesystem::remove(filed.folder.native(file));
        host.expectNoMessages();
    };
    edit(0, -3.0);
    expectTold("Trial0.trl", [&] { data.openTrial(1); });
    expectAllThere(0, -3.0);
    ASSERT_EQ(data.openTrial(0), 1);
    expectTold("Trial0.trl", [&] { data.wkVtTrialRent(0, false); });
    filed.folder.write("Trial0.trl", ""); // beside which the virtual trial goes
    expectTold("UnknownVirtualTrial3.trl", [&] { data.virtualTrialInit(nullptr, 42, "", false); });
    ASSERT_EQ(data.getTotalTrial(), 4); // and without a path
    data.m_aTrialFilePath.Add(filed.folder.write("late.trl", ""));
    expectAllThere(0, -3.0);
    expectTold("average.trl", [&] { data.saveTrlFile2NewName(nullptr, "average", 1); });
    expectTold("new\\studyTrial0.trl", [&] { data.moveTrlFile2DocFold(&document); });
    expectAllThere(0, -3.0);
}

TEST_F(BadTrialFiles, OnAFullDiskLeaveAMoveWithTheStateOfTheTrialThatWasInMemory)
{
    filed.folder.makeFolder("new");
    document.SetPathName(path("new\\study.meg"));
    edit(0, -3.0);
    fillDiskFor("new\\studyTrial1.trl");
    EXPECT_THROW(data.moveTrlFile2DocFold(&document), CFileException);
    EXPECT_EQ(listed(0), path("new\\studyTrial0.trl"));
    EXPECT_EQ(listed(1), path("Trial1.trl"));
    std::filesystem::remove(filed.folder.native("new\\studyTrial1.trl"));
    expectAllThere(0, -3.0);
}

// ---- a folder that can't be written to

class ReadOnlyTrialFiles : public BadTrialFiles
{
protected:
    ReadOnlyTrialFiles() { protect(true); }
    ~ReadOnlyTrialFiles() override { protect(false); }
    void protect(bool on) const
    {
        namespace fs = std::filesystem;
        for (int i = 0; i < 3; ++i)
            fs::permissions(native(i), fs::perms(on ? 0444 : 0644));
        fs::permissions(filed.folder.native(), fs::perms(on ? 0555 : 0755));
    }
    /// Runs the operation as somebody who may not write, and who says No to all questions, which name these files.
    void expectAskedFor(const std::vector<CString>& files, const std::function<void()>& operation)
    {
        const WithoutPrivileges others;
        if (!others)
            GTEST_SKIP() << "permission bits do not hold here";
        for (std::size_t i = 0; i < files.size(); ++i)
            host.willAnswerNo();
        operation();
        const auto questions = host.questions();
        ASSERT_EQ(questions.size(), files.size());
        for (std::size_t i = 0; i < files.size(); ++i)
            EXPECT_GE(questions[i].Find(path(files[i])), 0) << questions[i].toUtf8();
    }
};

TEST_F(ReadOnlyTrialFiles, AreReadAndToldWithTheirPathWhenTheyAreLeft)
{
    expectAskedFor({"Trial0.trl"}, [this] {
        edit(0, -3.0);
        EXPECT_EQ(data.openTrial(1), 1);
        EXPECT_EQ(waveOf(1, 0), channelValues(1, 0, 5));
    });
    protect(false);
    if (!IsSkipped())
        expectAllThere(0, -3.0);
}

TEST_F(ReadOnlyTrialFiles, AreNotLentAndStay)
{
    expectAskedFor({"Trial0.trl"}, [this] {
        edit(0, -3.0);
        EXPECT_EQ(data.wkVtTrialRent(0, false), nullptr);
        EXPECT_EQ(host.messages().back(), "Save trial data error!");
    });
    protect(false);
    if (!IsSkipped())
        expectAllThere(0, -3.0);
}

TEST_F(ReadOnlyTrialFiles, GetNoCompanyThatIsNotToldWithItsPath)
{
    expectAskedFor({"UnknownTrial3.trl", "UnknownVirtualTrial4.trl"}, [this] {
        EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
        CMDTrialzk source;
        source.allocateChannels(1);
        source.getChannel(0)->initData(2, true);
        source.m_strTrialFilePath = path("Trial1.trl");
        EXPECT_NE(data.virtualTrialInit(&source, 42, "", false), nullptr);
    });
    if (IsSkipped())
        return;
    EXPECT_EQ(data.getTotalTrial(), 5);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(wave(*data.getMDTrial(3)->getChannel(0)), channelValues(7, 0, 5));
}

TEST_F(ReadOnlyTrialFiles, AreNotCopiedToButTheAddedTrialKeepsItsFile)
{
    const TemporaryFolder elsewhere;
    CString outside = elsewhere.path("extra.trl");
    ASSERT_EQ(makeTrial(7, 2, 5)->saveTrialData(outside, nullptr, "", true), 1);
    std::filesystem::permissions(elsewhere.native(), std::filesystem::perms(0777));
    std::filesystem::permissions(elsewhere.native("extra.trl"), std::filesystem::perms(0666));
    {
        const WithoutPrivileges others;
        if (!others)
            GTEST_SKIP() << "permission bits do not hold here";
        host.willChooseFile(outside);
        host.willAnswerNo("Add the Trial as Virtual (e.g. averaged)?");
        host.willAnswerYes("Add to the same fold with the dataset file?");
        host.willAnswerNo();
        EXPECT_EQ(data.addNewTrial2Dataset(), 1);
        expectAsked(path("extra.trl"));
    }
    protect(false);
    EXPECT_EQ(listed(3), outside);
    EXPECT_EQ(waveOf(0, 0), channelValues(0, 0, 5));
    EXPECT_EQ(waveOf(3, 0), channelValues(7, 0, 5));
}

TEST_F(ReadOnlyTrialFiles, AreToldWithTheirPathsWhenANewDatasetIsMadeBesideThem)
{
    document.SetPathName(path("study.meg"));
    data.setDocument(&document, false);
    expectAskedFor({"study_0.trl", "study_1.trl"}, [this] { EXPECT_EQ(data.setTrialChannels(2, 2, nullptr, ""), 1); });
    EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
    EXPECT_THAT(host.fileRequests(), IsEmpty());
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicBadFiles_test
