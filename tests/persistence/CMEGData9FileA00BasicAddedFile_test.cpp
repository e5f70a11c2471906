// A trial's file that the user adds to a dataset.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CFile.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicAddedFile_test {
namespace {

using ::testing::ElementsAre;

const CString asVirtual = "Add the Trial as Virtual (e.g. averaged)?";
const CString toFolder = "Add to the same fold with the dataset file?";

class AddedFile : public TrialFiles
{
protected:
    AddedFile() { data.m_strTrialFolder = filed.folder.path(); }
    CString put(const CString& name, CMDTrialzk& trial) const
    {
        CString target = path(name);
        EXPECT_EQ(trial.saveTrialData(target, nullptr, "", true), 1);
        return target;
    }
    CString noTrial() const
    {
        return filed.folder.write("other.trl", ByteBuilder().wide("MEGCHANNELZK").i32(20190730).bytes());
    }
    CString putElsewhere() const
    {
        filed.folder.makeFolder("elsewhere");
        return put("elsewhere\\extra.trl", *makeTrial(7, 2, 5));
    }
};

TEST_F(AddedFile, OfTheDatasetsFolderIsTakenWithItsName)
{
    host.willChooseFile(put("extra.trl", *makeTrial(7, 2, 5)));
    host.willAnswerNo(asVirtual);
    data.openTrial(0);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.getCurrentTrialIndx(), 3);
    EXPECT_EQ(listed(3), path("extra.trl"));
    EXPECT_EQ(data.getMDTrial(3)->m_nVirtualTrial, 0);
    EXPECT_EQ(data.getMDTrial(3)->m_strTrialName, "Trial7");
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_THAT(host.questions(), ElementsAre(asVirtual));
    host.expectNoMessages();
    ASSERT_EQ(host.fileRequests().size(), 1U);
    const FileRequest request = host.fileRequests().front();
    EXPECT_TRUE(request.open);
    EXPECT_TRUE(request.fileMustExist);
    EXPECT_EQ(request.filter, "MEG Trial Data(*.trl)|*.trl|All Files(*.*)|*.*||");
}

TEST_F(AddedFile, IsVirtualWithYes)
{
    auto trial = makeTrial(7, 2, 5);
    trial->m_nVirtualTrial = 9;
    host.willChooseFile(put("extra.trl", *trial));
    host.willAnswerYes(asVirtual);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(data.getMDTrial(3)->m_nVirtualTrial, 1);
}

TEST_F(AddedFile, FromElsewhereIsCopiedWithYes)
{
    host.willChooseFile(putElsewhere());
    host.willAnswerNo(asVirtual);
    host.willAnswerYes(toFolder);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), path("extra.trl"));
    EXPECT_EQ(data.getMDTrial(3)->m_strTrialFilePath, path("extra.trl"));
    EXPECT_EQ(waveInFile("extra.trl", 1), channelValues(7, 1, 5));
    EXPECT_THAT(host.questions(), ElementsAre(asVirtual, toFolder));
}

TEST_F(AddedFile, FromElsewhereStaysThereWithNo)
{
    const CString outside = putElsewhere();
    host.willChooseFile(outside);
    host.willAnswerYes(asVirtual);
    host.willAnswerNo(toFolder);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), outside);
    EXPECT_FALSE(filed.folder.has("extra.trl"));
}

TEST_F(AddedFile, StaysElsewhereWhenItCannotBeCopied)
{
    const CString outside = putElsewhere();
    host.willChooseFile(outside);
    filed.folder.makeFolder("extra.trl");
    host.willAnswerNo(asVirtual);
    host.willAnswerYes(toFolder);
    host.willAnswerNo(); // as a new file?
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), outside);
    EXPECT_EQ(data.getMDTrial(3)->m_strTrialFilePath, outside);
}

TEST_F(AddedFile, IsAskedAboutWhereFoldersDifferInCase)
{
    data.m_strTrialFolder.MakeUpper();
    host.willChooseFile(put("extra.trl", *makeTrial(7, 2, 5)));
    host.willAnswerNo(asVirtual);
    host.willAnswerNo(toFolder);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), path("extra.trl"));
}

TEST_F(AddedFile, KeepsAnExtensionInItsTitleAndGetsOneOtherwise)
{
    filed.folder.makeFolder("elsewhere");
    for (const auto& [name, copy] :
         {std::pair("a.trl.trl", "a.trl"), std::pair("b", "b.trl"), std::pair("c.dat", "c.trl"),
          std::pair("d.trl.x", "d.trl"), std::pair("e.trlx.trl", "e.trlx.trl")}) {
        host.willChooseFile(put(CString("elsewhere\\") + name, *makeTrial(7, 2, 5)));
        host.willAnswerNo(asVirtual);
        host.willAnswerYes(toFolder);
        EXPECT_EQ(data.addNewTrial2Dataset(), 1);
        EXPECT_EQ(listed(data.getCurrentTrialIndx()), path(copy));
    }
}

TEST_F(AddedFile, IsNotCopiedOverAnotherTrial)
{
    filed.folder.makeFolder("elsewhere");
    host.willChooseFile(put("elsewhere\\Trial1.trl", *makeTrial(7, 2, 5)));
    host.willAnswerNo(asVirtual);
    host.willAnswerYes(toFolder);
    EXPECT_EQ(data.addNewTrial2Dataset(), 1);
    EXPECT_EQ(listed(3), path("Trial1_1.trl"));
    EXPECT_EQ(waveOf(1, 0), channelValues(1, 0, 5));
    EXPECT_EQ(waveOf(3, 0), channelValues(7, 0, 5));
}

TEST_F(AddedFile, IsNoneWhenTheDialogIsCancelled)
{
    data.openTrial(0);
    host.willCancelFile();
    EXPECT_EQ(data.addNewTrial2Dataset(), 0);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_NE(data.getMDTrial(0), nullptr); // nothing was saved either
    host.expectNoMessages();
}

TEST_F(AddedFile, ThatIsNoTrialIsRefused)
{
    host.willChooseFile(noTrial());
    EXPECT_EQ(data.addNewTrial2Dataset(), 0);
    EXPECT_EQ(host.messages().back(), "Open trial data failed ");
    EXPECT_EQ(data.getTotalTrial(), 3);
}

TEST_F(AddedFile, ThatIsInUseElsewhereIsRefused)
{
    const CString extra = put("extra.trl", *makeTrial(7, 2, 5));
    CFile other;
    ASSERT_TRUE(other.Open(extra, CFile::modeRead | CFile::shareExclusive));
    host.willChooseFile(extra);
    EXPECT_EQ(data.addNewTrial2Dataset(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed "));
}

TEST_F(AddedFile, OfOtherLengthAndStepIsToldAndTaken)
{
    auto longer = makeTrial(7, 2, 9);
    for (const auto& [step, messages] : {std::pair(1, 0U), std::pair(2, 1U)}) {
        host.clearRecord();
        longer->m_nTrialResampleStep = step;
        host.willChooseFile(put(CString::formatted("extra%d.trl", step), *longer));
        host.willAnswerNo(asVirtual);
        EXPECT_EQ(data.addNewTrial2Dataset(), 1);
        ASSERT_EQ(host.messages().size(), messages);
    }
    EXPECT_THAT(host.messages(), ElementsAre("The trial data does not match with the recording, please re-sample and "
                                             "check the data!"));
    EXPECT_EQ(data.getTotalTrial(), 5);
}

TEST_F(AddedFile, WithoutChannelsIsTakenThoughTheResultIsNo)
{
    host.willChooseFile(put("extra.trl", *makeTrial(7, 0, 0)));
    host.willAnswerNo(asVirtual);
    EXPECT_EQ(data.addNewTrial2Dataset(), 0);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(listed(3), path("extra.trl"));
    host.expectNoMessages();
}

TEST_F(AddedFile, IsChosenOnTheKindOfFileThatWasUsedLast)
{
    for (const int index : {2, 1}) {
        host.willChooseFile(noTrial(), index);
        data.addNewTrial2Dataset();
        host.clearRecord();
        host.willCancelFile();
        data.addNewTrial2Dataset();
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

TEST_F(AddedFile, LeavesTheDatasetWholeWhereverMemoryEnds)
{
    const CString extra = put("extra.trl", *makeTrial(7, 2, 5));
    bool told = false;
    forEachAllocationFailure([&] {
        ScriptedHost inner;
        inner.willChooseFile(extra);
        inner.willAnswerNo(asVirtual);
        int done = 0;
        try {
            done = data.addNewTrial2Dataset();
        } catch (const CException&) {
        }
        const FailingAllocator none(0);
        told = told || (!inner.messages().empty() && inner.messages().back() == "Not enough memory?!");
        if (inner.questions().empty()) {
            EXPECT_EQ(AfxMessageBox(asVirtual, MB_YESNO), IDNO); // uses the answer up
        }
        EXPECT_EQ(data.getTotalTrial(), data.m_aTrialFilePath.GetSize());
        if (data.getTotalTrial() == 4) {
            EXPECT_EQ(data.deleteTrial4Dataset(3), 1);
        }
        EXPECT_EQ(done == 1 ? 3 : data.getTotalTrial(), 3);
    });
    EXPECT_TRUE(told);
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicAddedFile_test
