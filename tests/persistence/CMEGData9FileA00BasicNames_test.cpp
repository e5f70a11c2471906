// Folders and session names in any language and of 250 characters, in every operation that makes or looks for a path.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CArchive.h"
#include "megset/platform/CMemFile.h"
#include "megset/platform/paths.h"

#include "tests/persistence/trialFiles.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicNames_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Names
{
    const char* label;
    const char* folder; ///< null: as long as it takes for a path of 250 characters
    std::string session;
};

// With what the library puts behind it, the long session makes file names of up to 250 characters.
const std::vector<Names> allNames = {{"AnyLanguage", "данные 脑磁图 ünï 🧠", "сеанс 一 ٣ é 🧠"},
                                     {"Dots", "a.b.c", "run.1.meg"},
                                     {"Long", nullptr, std::string(230, 's')}};

class TrialsWithNames : public TrialFiles, public ::testing::WithParamInterface<Names>
{
protected:
    TrialsWithNames() : session(GetParam().session), folder(filed.folder.makeFolder(folderName()))
    {
        document.SetPathName(folder + session + ".meg");
    }
    CString file(const CString& ending) const { return folder + session + ending; }
    /// The file of the name, for the kit's folder.
    CString inside(const CString& ending) const { return file(ending).Mid(filed.folder.path().GetLength()); }
    void expectTrials(int count)
    {
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(waveOf(i, 1), channelValues(i, 1, 5)) << i;
    }
    void moveAll() { ASSERT_EQ(data.moveTrlFile2DocFold(&document), 1); }

    const CString session;
    const CString folder;

private:
    CString folderName() const
    {
        if (GetParam().folder != nullptr)
            return GetParam().folder;
        constexpr int longest = 250;
        const int left = longest - filed.folder.path().GetLength() - 1; // and its closing backslash
        return CString(std::string(static_cast<std::size_t>(left), 'f'));
    }
};

INSTANTIATE_TEST_SUITE_P(All, TrialsWithNames, ::testing::ValuesIn(allNames),
                         [](const auto& names) { return std::string(names.param.label); });

TEST_P(TrialsWithNames, TakeFolderAndSessionFromTheirDocument)
{
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.m_strTrialFolder, folder);
    EXPECT_EQ(data.m_strSessionName, session);
    EXPECT_EQ(data.m_strDatasetPath, folder + session);
    EXPECT_EQ(currentDirectory() + "\\", folder);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_P(TrialsWithNames, TakeTheFolderOfAnExistingFile)
{
    filed.folder.write(inside(".trl"), "x");
    EXPECT_EQ(data.setFilePathDirectory(file(".trl")), 1);
    EXPECT_EQ(data.m_strTrialFolder, folder);
    CString missing = file("gone.trl");
    EXPECT_EQ(data.setFilePathDirectory(missing), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Find file:" + missing + " error \n"));
}

TEST_P(TrialsWithNames, AreAddedAndFoundAgain)
{
    data.setDocument(&document, false);
    EXPECT_EQ(data.addTrial(newTrial(3), 0), 1);
    EXPECT_EQ(data.addTrialSave(newTrial(4), "", 1), 1);
    EXPECT_EQ(data.addTrialSave(newTrial(5), file("x.trl"), 1), 1);
    EXPECT_EQ(listed(3), file("Trial3.trl"));
    EXPECT_EQ(listed(4), file("Trial4.trl"));
    EXPECT_EQ(listed(5), file("x.trl"));
    expectTrials(6);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_P(TrialsWithNames, AreMadeAndFoundAgain)
{
    data.setDocument(&document, false);
    EXPECT_EQ(data.setTrialChannels(2, 2, nullptr, "é"), 1);
    EXPECT_THAT(paths(), ElementsAre(file("_0é.trl"), file("_1é.trl")));
    ASSERT_NE(data.getTrialzk(1), nullptr);
    const CString suffix = "一";
    EXPECT_EQ(data.setOneTrialChannels(2, nullptr, &document, &suffix), 1);
    EXPECT_THAT(paths(), ElementsAre(file("1一.trl")));
    EXPECT_EQ(read(file("1一.trl"))->m_strTrialName, "0一");
    host.expectNoMessages();
}

TEST_P(TrialsWithNames, AreComputedUpdatedAndReturned)
{
    const std::vector<double> block = {0.5, 1.5, 2.5, -0.5, -1.5, -2.5};
    data.setDocument(&document, false);
    const auto source = makeTrial(7, 2, 5);
    CMDTrialzk* detached = data.virtualTrialInit(source.get(), 42, "avg", true);
    ASSERT_NE(detached, nullptr);
    EXPECT_EQ(listed(3), file("VirtualTrial3avg.trl"));
    EXPECT_EQ(data.virtualTrialUpdate(detached, 2, 3, block.data()), 1);
    EXPECT_EQ(data.wkVtTrialReturn(detached), 1);
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_THAT(waveOf(3, 1), ElementsAre(-0.5, -1.5, -2.5));
    const std::unique_ptr<CMDTrialzk> free(data.makeInitTrial(source.get(), 4, 42, folder, session));
    EXPECT_EQ(free->m_strTrialFilePath, file(".trl"));
    CString target = free->m_strTrialFilePath;
    EXPECT_EQ(free->saveTrialData(target, nullptr, "", true), 1);
    EXPECT_TRUE(filed.folder.has(inside(".trl")));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_P(TrialsWithNames, AreMovedLentAndReturned)
{
    moveAll();
    EXPECT_THAT(paths(), ElementsAre(file("Trial0.trl"), file("Trial1.trl"), file("Trial2.trl")));
    expectTrials(3);
    CMDTrialzk* rented = data.wkVtTrialRent(1, false);
    ASSERT_NE(rented, nullptr);
    rented->getChannel(0)->getDataWave()[0] = -4.0;
    EXPECT_EQ(data.openTrial(2), 1);
    EXPECT_EQ(data.wkVtTrialReturn(rented), 1);
    EXPECT_EQ(listed(1), file("Trial1.trl"));
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(waveOf(1, 0)[0], -4.0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_P(TrialsWithNames, AreSavedUnderANewName)
{
    EXPECT_EQ(data.saveTrlFile2NewName(&document, session, 1), 1);
    EXPECT_EQ(listed(1), file(".trl"));
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "", 2), 1);
    EXPECT_EQ(listed(2), file("Trial2.trl"));
    expectTrials(3);
    EXPECT_EQ(data.getTrialzk(1)->m_strTrialName, session);
    EXPECT_EQ(data.getTrialFileName(1), session);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_P(TrialsWithNames, AreSavedWhereTheUserPointsInPlaceOfAVanishedFile)
{
    editAndLoseFile(0, -3.0);
    host.willAnswerYes();
    host.willChooseFile(file(".trl"));
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(listed(0), file(".trl"));
    EXPECT_EQ(waveOf(0, 0)[0], -3.0);
}

TEST_P(TrialsWithNames, AreCopiedIntoTheFolder)
{
    filed.folder.makeFolder("elsewhere");
    CString outside = path("elsewhere\\" + session + ".trl");
    ASSERT_EQ(makeTrial(3, 2, 5)->saveTrialData(outside, nullptr, "", true), 1);
    data.m_strTrialFolder = folder;
    host.willChooseFile(outside);
    host.willAnswerNo("Add the Trial as Virtual (e.g. averaged)?");
    host.willAnswerYes("Add to the same fold with the dataset file?");
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), file(".trl"));
    expectTrials(4);
    host.expectNoMessages();
}

TEST_P(TrialsWithNames, AreFoundBesideTheirDocumentAndWhereTheUserPoints)
{
    filed.folder.makeFolder("far");
    for (int i = 0; i < 3; ++i) {
        const CString ending = CString::formatted("Trial%d.trl", i);
        data.m_aTrialFilePath.SetAt(i, "D:\\данные\\" + session + ending);
        const CString target = i < 2 ? file(ending) : path("far\\" + session + ending);
        std::filesystem::rename(native(i), toNative(target));
    }
    data.setDocument(&document, true);
    CString first = listed(0);
    EXPECT_EQ(data._checkFindFile(first), 1); // in the current directory
    EXPECT_EQ(first, file("Trial0.trl"));
    CString second = listed(1);
    EXPECT_EQ(data._checkGetFileSameFold4Path(second), file("Trial1.trl"));
    host.willChooseFile(path("far\\" + session + "Trial2.trl"));
    EXPECT_EQ(data.updateTrlPath4Doc(&document), 1);
    EXPECT_THAT(paths(), ElementsAre(file("Trial0.trl"), file("Trial1.trl"), path("far\\" + session + "Trial2.trl")));
    EXPECT_THAT(host.questions(), IsEmpty());
    expectTrials(3);
}

TEST_P(TrialsWithNames, AreExported)
{
    ASSERT_EQ(data.openTrial(0), 1);
    data.setSessionName(session);
    host.willAnswerYes("Would you like to export all channels' data?");
    host.willAnswerNo("Would you like to export visible channel only?");
    host.willChooseFile(file(""));
    EXPECT_EQ(data.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    host.willAnswerYes("Would you like to export all channels' data?");
    host.willAnswerNo("Would you like to export visible channel only?");
    host.willChooseFile(file(".txt"));
    EXPECT_EQ(data.exportMEGData2TxtFile(0, 1, 0, 0), 1);
    host.willChooseFile(file("s"));
    EXPECT_EQ(data.exportSnsrInf2TxtFile(0), 1);
    host.willChooseFile(file(""));
    EXPECT_EQ(data.exportMEGData(0), 1);
    for (const char* ending : {".txt", "0.txt", "1.txt", "s.txt", ".mtb"})
        EXPECT_TRUE(filed.folder.has(inside(ending))) << ending;
    host.expectNoMessages();
}

TEST_P(TrialsWithNames, AreStoredAndOpenedFromAnotherFolder)
{
    moveAll();
    {
        CFile target(file(".meg"), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
        CArchive archive(&target, CArchive::store);
        EXPECT_EQ(data.serializezk(archive), 1);
    }
    const TemporaryFolder other;
    for (const CString& ending : {CString(".meg"), CString("Trial0.trl"), CString("Trial1.trl"), CString("Trial2.trl")})
        std::filesystem::rename(toNative(file(ending)), other.native(session + ending));
    document.SetPathName(other.path(session + ".meg"));
    CMEGDatazk opened;
    opened.setDocument(&document, false);
    CFile source(other.path(session + ".meg"), CFile::modeRead | CFile::shareExclusive);
    CArchive archive(&source, CArchive::load);
    EXPECT_EQ(opened.serializezk(archive), 1);
    EXPECT_EQ(opened.getSessionName(), session);
    EXPECT_EQ(opened.m_strTrialFolder, folder); // as stored, until the document is set with its folder
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(opened.getTrialzk(i), nullptr);
        EXPECT_EQ(opened.m_aTrialFilePath[i], other.path(session + CString::formatted("Trial%d.trl", i)));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- names that no file can have

// 250 characters of three bytes each: more than the file system takes for a name.
class TrialsWithoutRoomForTheirNames : public TrialFiles
{
protected:
    TrialsWithoutRoomForTheirNames()
    {
        data.m_strTrialFolder = filed.folder.path();
        data.m_strSessionName = session;
    }
    /// Runs the operation, which is to ask about the file of that ending, and is answered No.
    template <class Operation>
    void expectToldWithPath(const CString& ending, Operation operation)
    {
        host.clearRecord();
        host.willAnswerNo();
        operation();
        ASSERT_EQ(host.questions().size(), 1U);
        EXPECT_GE(host.questions().front().Find(path(session + ending)), 0) << host.questions().front().toUtf8();
    }

    const CString session = CString(std::u16string(250, u'脑'));
};

TEST_F(TrialsWithoutRoomForTheirNames, AreToldWithTheirPathWhenAddedAndStay)
{
    CMDTrialzk* trial = newTrial(7);
    expectToldWithPath("Trial3.trl", [&] { EXPECT_EQ(data.addTrial(trial, 0), 1); });
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    CMDTrialzk* complete = newTrial(8);
    expectToldWithPath("x.trl", [&] { EXPECT_EQ(data.addTrialSave(complete, path(session + "x.trl"), 1), 1); });
    EXPECT_EQ(data.getMDTrial(4), complete);
    EXPECT_EQ(wave(*trial->getChannel(0)), channelValues(7, 0, 5));
}

TEST_F(TrialsWithoutRoomForTheirNames, AreToldWithTheirPathWhenComputedAndStay)
{
    ASSERT_EQ(data.openTrial(0), 1);
    expectToldWithPath("VirtualTrial3.trl", [&] { EXPECT_NE(data.virtualTrialInit(nullptr, 42, "", false), nullptr); });
    EXPECT_NE(data.getMDTrial(3), nullptr);
}

TEST_F(TrialsWithoutRoomForTheirNames, KeepTheirFileWhenRenamed)
{
    expectToldWithPath(".trl", [&] { EXPECT_EQ(data.saveTrlFile2NewName(nullptr, session, 1), 0); });
    EXPECT_EQ(host.messages().back(), "Save trial to new name error!");
    EXPECT_EQ(listed(1), path("Trial1.trl"));
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(waveOf(1, 0), channelValues(1, 0, 5));
}

TEST_F(TrialsWithoutRoomForTheirNames, KeepTheirFilesWhenMoved)
{
    document.SetPathName(path(session + ".meg"));
    while (data.getTotalTrial() > 1)
        data.deleteTrial4Dataset(1);
    expectToldWithPath("Trial0.trl", [&] { EXPECT_EQ(data.moveTrlFile2DocFold(&document), 1); });
    EXPECT_EQ(waveInFile("Trial0.trl", 0), channelValues(0, 0, 5));
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1); // the first one was in memory
    data.m_aTrialFilePath.Add(path("Trial0.trl"));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveOf(0, 0), channelValues(0, 0, 5));
}

TEST_F(TrialsWithoutRoomForTheirNames, AreToldWithTheirPathWhenMade)
{
    document.SetPathName(path(session + ".meg"));
    data.setDocument(&document, false);
    expectToldWithPath("_0.trl", [&] { EXPECT_EQ(data.setTrialChannels(1, 2, nullptr, ""), 1); });
    EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
    expectToldWithPath("1.trl", [&] { EXPECT_EQ(data.setOneTrialChannels(2, nullptr, &document, nullptr), 1); });
    EXPECT_NE(data.getMDTrial(0), nullptr);
}

TEST_F(TrialsWithoutRoomForTheirNames, HaveTheirSessionInTheDatasetsFile)
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        EXPECT_EQ(data.serializezk(archive), 1);
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    CMEGDatazk opened;
    EXPECT_EQ(opened.serializezk(archive), 1);
    EXPECT_EQ(opened.getSessionName(), session);
    host.expectNoMessages();
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicNames_test
