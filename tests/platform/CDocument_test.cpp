#include "megset/platform/CDocument.h"

#include <gtest/gtest.h>

namespace megset::CDocument_test {
namespace {

TEST(Document, StartsWithoutPathAndTitle)
{
    const CDocument document;
    EXPECT_EQ(document.GetPathName(), "");
    EXPECT_EQ(document.GetTitle(), "");
}

TEST(Document, TheTitleOfAPathIsTheFileTitle)
{
    CDocument document;
    document.SetPathName("C:\\data.old\\run.1.meg");
    EXPECT_EQ(document.GetPathName(), "C:\\data.old\\run.1.meg");
    EXPECT_EQ(document.GetTitle(), "run.1");
    document.SetPathName("run2");
    EXPECT_EQ(document.GetTitle(), "run2");
    document.SetPathName("C:\\data\\");
    EXPECT_EQ(document.GetTitle(), "");
}

TEST(Document, ATitleSetLaterLeavesThePath)
{
    CDocument document;
    document.SetPathName("C:\\data\\run.meg");
    document.SetTitle("Session 1");
    EXPECT_EQ(document.GetTitle(), "Session 1");
    EXPECT_EQ(document.GetPathName(), "C:\\data\\run.meg");
}

} // namespace
} // namespace megset::CDocument_test
