// Names of sessions and trials are what the files of others hold. Whatever that is, files are made in the document's
// folder alone.

#include "tests/persistence/acquisitionFiles.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileRecordNames_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;

class AcquiredNames : public AcquisitionFiles
{
protected:
    // The document's folder lies in another one, so that a file beside it would be found.
    void SetUp() override
    {
        AcquisitionFiles::SetUp();
        target.makeFolder("in");
        document.SetPathName(target.path("in\\session.meg"));
    }
    int openWith(const CString& session, const CString& trial)
    {
        writeTrial(0, trial);
        Parts made = parts(1, 0, 1);
        made.trials.session = session;
        return open(made);
    }
    std::vector<std::string> made() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(target.native()))
            if (entry.is_regular_file())
                names.push_back(entry.path().lexically_relative(target.native()).string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(AcquiredNames, OfATrialThatWouldLeaveTheFolderMakeAFileInIt)
{
    ASSERT_EQ(openWith("S", "\\..\\..\\out"), 1);
    ASSERT_THAT(made(), ElementsAre("in/S_.._.._out.trl"));
    EXPECT_THAT(paths(), ElementsAre(written("in\\S_.._.._out.trl")));
    EXPECT_EQ(dataset.getTrialzk(0)->m_strTrialName, CString("\\..\\..\\out")); // the name itself stays
    host.expectNoMessages();
}

TEST_F(AcquiredNames, OfASessionThatWouldLeaveTheFolderMakeAFileInIt)
{
    ASSERT_EQ(openWith("..\\S", "T"), 1);
    EXPECT_THAT(made(), ElementsAre("in/.._ST.trl"));
    EXPECT_EQ(dataset.getSessionName(), CString("..\\S"));
    host.expectNoMessages();
}

TEST_F(AcquiredNames, WithEitherSeparatorMakeOneFile)
{
    ASSERT_EQ(openWith("in/", "left\\right"), 1);
    EXPECT_THAT(made(), ElementsAre("in/in_left_right.trl"));
}

TEST_F(AcquiredNames, OfDotsAloneAreNames)
{
    ASSERT_EQ(openWith("", ".."), 1); // the session's is the dataset's file name then, which is empty too
    EXPECT_THAT(made(), ElementsAre("in/session...trl"));
}

// A zero ends a path for the system: the document itself would be what "session.meg" and a zero make.
TEST_F(AcquiredNames, WithControlCharactersMakeAFileOfATrial)
{
    target.write("in\\session.meg", "mine");
    ASSERT_EQ(openWith("session.meg", CString(std::u16string_view(u"\0T\n", 3))), 1);
    EXPECT_THAT(made(), ElementsAre("in/session.meg", "in/session.meg_T_.trl"));
    EXPECT_EQ(target.read("in\\session.meg").size(), 4U);
}

TEST_F(AcquiredNames, ThatBecomeTheSameGetFilesOfTheirOwn)
{
    writeTrial(0, "a/b");
    writeTrial(1, "a\\b");
    writeTrial(2, "a_b");
    ASSERT_EQ(open(parts()), 1);
    ASSERT_THAT(paths(), ElementsAre(written("in\\Sa_b.trl"), written("in\\Sa_b_1.trl"), written("in\\Sa_b_2.trl")));
    EXPECT_EQ(wave(*dataset.getTrialzk(1)->getChannel(0)), channelValues(1, 0, 4));
}

TEST_F(AcquiredNames, ThatAreTooLongForTheSystemAreToldAndTheTrialGetsNoPath)
{
    host.willAnswerNo();
    ASSERT_EQ(openWith("S", CString(u'x', 300)), 1);
    EXPECT_TRUE(made().empty());
    EXPECT_TRUE(paths().empty());
    EXPECT_EQ(host.messages().back(), CString("File path and trial error!"));
}

} // namespace

} // namespace megset::CMEGData9FileRecordNames_test
