#include "megset/platform/CRichInfozk.h"

#include "tests/kit/ScriptedHost.h"

#include <gtest/gtest.h>

namespace megset::CRichInfozk_test {
namespace {

class MuteHost : public ScriptedHost
{
public:
    int showReport(const CString&, const CString&) override { return 0; }
};

TEST(RichInfo, BothFormsShowTheTextUnderTheTitle)
{
    ScriptedHost host;
    CRichInfozk info;
    EXPECT_EQ(info.showRichInfo("a\nb", "first"), 1);
    EXPECT_EQ(info.showRichInfo02("", "MEG Data Information"), 1);
    const auto reports = host.reports();
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].text, "a\nb");
    EXPECT_EQ(reports[0].title, "first");
    EXPECT_EQ(reports[1].text, "");
    EXPECT_EQ(reports[1].title, "MEG Data Information");
}

TEST(RichInfo, GivesZeroWhenTheHostCannotShowIt)
{
    MuteHost host;
    EXPECT_EQ(CRichInfozk().showRichInfo("a", "b"), 0);
    EXPECT_EQ(CRichInfozk().showRichInfo02("a", "b"), 0);
}

} // namespace
} // namespace megset::CRichInfozk_test
