#include "megset/platform/CFileDialog.h"

#include "megset/platform/AfxMessageBox.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CFileDialog_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString trialFilter = "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||";

TEST(FileFilterList, TakesLabelsAndPatternsInPairs)
{
    EXPECT_THAT(parseFileFilters(trialFilter),
                ElementsAre(FileFilter{"MEG trial files (*.trl)", "*.trl"}, FileFilter{"All Files (*.*)", "*.*"}));
}

TEST(FileFilterList, EndsAtAnEmptyLabelOrAtTheEndOfTheText)
{
    EXPECT_THAT(parseFileFilters("A|*.a"), ElementsAre(FileFilter{"A", "*.a"}));
    EXPECT_THAT(parseFileFilters("A|*.a|"), ElementsAre(FileFilter{"A", "*.a"}));
    EXPECT_THAT(parseFileFilters("A|*.a||B|*.b||"), ElementsAre(FileFilter{"A", "*.a"}));
}

TEST(FileFilterList, LeavesOutALabelWithoutPattern)
{
    EXPECT_THAT(parseFileFilters("A|*.a|B"), ElementsAre(FileFilter{"A", "*.a"}));
    EXPECT_THAT(parseFileFilters("A||"), IsEmpty());
    EXPECT_THAT(parseFileFilters(""), IsEmpty());
    EXPECT_THAT(parseFileFilters("||"), IsEmpty());
}

TEST(FileFilterList, KeepsSeveralPatternsOfOneKindTogether)
{
    EXPECT_THAT(parseFileFilters("Both|*.meg;*.mega||"), ElementsAre(FileFilter{"Both", "*.meg;*.mega"}));
}

TEST(FileDialog, GivesThePartsOfTheChosenPath)
{
    ScriptedHost host;
    host.willChooseFile("C:\\data.old\\run.1.trl");
    CFileDialog dialog(true, "trl", "", OFN_FILEMUSTEXIST, trialFilter);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), "C:\\data.old\\run.1.trl");
    EXPECT_EQ(dialog.GetFileName(), "run.1.trl");
    EXPECT_EQ(dialog.GetFileTitle(), "run.1");
    EXPECT_EQ(dialog.GetFileExt(), "trl");
}

TEST(FileDialog, ADotInTheFolderIsNoExtension)
{
    ScriptedHost host;
    host.willChooseFile("C:\\data.old\\run");
    CFileDialog dialog(true, "", "", 0, trialFilter);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetFileTitle(), "run");
    EXPECT_EQ(dialog.GetFileExt(), "");
}

TEST(FileDialog, PassesFlagsSuggestionAndFilterToTheHost)
{
    ScriptedHost host;
    host.willCancelFile();
    host.willCancelFile();
    host.willCancelFile();
    CFileDialog(false, "trl", "run1", OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST, trialFilter).DoModal();
    CFileDialog(true, "", "", OFN_OVERWRITEPROMPT | OFN_FILEMUSTEXIST, "").DoModal();
    CFileDialog(true, "", "", 0x4, "").DoModal();

    const auto requests = host.fileRequests();
    EXPECT_FALSE(requests[0].open);
    EXPECT_EQ(requests[0].fileName, "run1");
    EXPECT_EQ(requests[0].defaultExtension, "trl");
    EXPECT_EQ(requests[0].filter, trialFilter);
    EXPECT_EQ(requests[0].filterIndex, 1);
    EXPECT_TRUE(requests[0].confirmOverwrite);
    EXPECT_TRUE(requests[0].pathMustExist);
    EXPECT_FALSE(requests[0].fileMustExist);

    EXPECT_TRUE(requests[1].open);
    EXPECT_FALSE(requests[1].confirmOverwrite) << "opening overwrites nothing";
    EXPECT_TRUE(requests[1].fileMustExist);
    EXPECT_TRUE(requests[1].pathMustExist) << "a file that exists lies in a folder that exists";

    EXPECT_FALSE(requests[2].fileMustExist || requests[2].pathMustExist || requests[2].confirmOverwrite);
}

TEST(FileDialog, ACancelChangesNothing)
{
    ScriptedHost host;
    host.willCancelFile();
    FileDialogMemory memory;
    memory.filterIndex = 2;
    CFileDialog dialog(false, "", "run1.trl", 0, trialFilter);
    dialog.remember(memory);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialog.GetPathName(), "run1.trl");
    EXPECT_EQ(dialog.m_nFilterIndex, 2);
    EXPECT_EQ(memory.filterIndex, 2);
}

TEST(FileDialog, EachPlaceRemembersItsOwnFilterIndex)
{
    ScriptedHost host;
    FileDialogMemory here;
    FileDialogMemory there;
    const auto choose = [&](FileDialogMemory& memory) {
        CFileDialog dialog(true, "", "", 0, trialFilter);
        dialog.remember(memory);
        EXPECT_EQ(dialog.DoModal(), IDOK);
        return host.fileRequests().back().filterIndex;
    };
    host.willChooseFile("C:\\a.trl", 2);
    EXPECT_EQ(choose(here), 1);
    host.willChooseFile("C:\\b.trl");
    EXPECT_EQ(choose(here), 2);
    host.willChooseFile("C:\\c.trl");
    EXPECT_EQ(choose(there), 1);
    EXPECT_EQ(here.filterIndex, 2);
}

TEST(FileDialog, WithoutMemoryTheIndexIsTheDialogsOwn)
{
    ScriptedHost host;
    host.willChooseFile("C:\\a.trl", 2);
    CFileDialog dialog(true, "", "", 0, trialFilter);
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.m_nFilterIndex, 2);
    EXPECT_EQ(CFileDialog(true, "", "", 0, trialFilter).m_nFilterIndex, 1);
}

} // namespace
} // namespace megset::CFileDialog_test
