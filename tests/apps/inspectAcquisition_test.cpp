// The files of an acquisition in `inspect`.
#include "apps/cli/inspect/inspect.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/persistence/acquisitionRecord.h"

#include <algorithm>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::inspectAcquisition_test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class InspectAcquisition : public testing::Test
{
protected:
    TreeReport inspect(const ByteBuilder& bytes)
    {
        m_folder.write("file", bytes.bytes());
        std::ostringstream out;
        TreeReport report = inspectFile(m_folder.native("file"), {}, out);
        m_tree = out.str();
        return report;
    }

    const TemporaryFolder m_folder;
    const ScriptedHost m_host; // nothing is asked
    std::string m_tree;
};

TEST_F(InspectAcquisition, DatasetIsShownInEitherVersionAndItsTrialsAreNotLookedFor)
{
    acquisitionRecord::Parts parts = acquisitionRecord::filled(1);
    parts.trials.presence = 1;
    for (const std::int32_t version : acquisitionRecord::versions) {
        EXPECT_THAT(inspect(acquisitionRecord::record(version, parts)).faults, IsEmpty());
        EXPECT_THAT(m_tree, HasSubstr(": acquired dataset (.mega), "));
        EXPECT_THAT(m_tree, HasSubstr("int version = " + std::to_string(version) + "\n"));
        EXPECT_THAT(m_tree, HasSubstr("text m_strRecordFolder = "));
        EXPECT_THAT(m_tree, EndsWith("  end\n"));
    }
    EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(InspectAcquisition, TheNewerVersionHasTheFourthArray)
{
    const acquisitionRecord::Parts parts = acquisitionRecord::filled(1);
    inspect(acquisitionRecord::record(20200727, parts));
    EXPECT_THAT(m_tree, Not(HasSubstr("m_pChnlParam4")));
    inspect(acquisitionRecord::record(20220418, parts));
    EXPECT_THAT(m_tree, HasSubstr("int m_pChnlParam4"));
}

TEST_F(InspectAcquisition, TrialIsShownWithItsChannels)
{
    const auto bytes = acquisitionRecord::trial(acquisitionRecord::namedTrial("T", {{1.0, 2.0}, {3.0, 4.0}}));
    EXPECT_THAT(inspect(bytes).faults, IsEmpty());
    EXPECT_THAT(m_tree, HasSubstr(": acquired trial (.trla), "));
    EXPECT_THAT(m_tree, HasSubstr("[_02serializeAcqTralChnls]\n"));
    EXPECT_THAT(m_tree, HasSubstr("[ACQMECHANNELZK]\n"));
    EXPECT_THAT(m_tree, HasSubstr("block m_pDataWave = 16 bytes, 2 double: 3, 4\n"));
}

TEST_F(InspectAcquisition, TrialThatIsCutTellsTheChannel)
{
    const auto whole = acquisitionRecord::trial(acquisitionRecord::namedTrial("T", {{1.0, 2.0}, {3.0, 4.0}}));
    const std::vector<std::byte>& bytes = whole.bytes();
    const std::vector<std::byte> tag = acquisitionRecord::channelHeader().bytes();
    const auto last = std::find_end(bytes.begin(), bytes.end(), tag.begin(), tag.end());
    ASSERT_NE(last, bytes.end());
    const auto length = static_cast<std::size_t>(last - bytes.begin()) + tag.size() + 10;
    const TreeReport report = inspect(ByteBuilder().raw(std::span(bytes).first(length)));
    EXPECT_THAT(report.faults, Not(IsEmpty()));
    EXPECT_THAT(report.section, HasSubstr("_02serializeAcqTralChnls/ACQMECHANNELZK[1]"));
}

TEST_F(InspectAcquisition, UnknownVersionsAreToldWithTheReadersWords)
{
    EXPECT_THAT(describeFaults(inspect(acquisitionRecord::header(20220419))),
                HasSubstr("Wrong MEG acquisition file format!!?"));
    EXPECT_THAT(describeFaults(inspect(acquisitionRecord::trialHeader(20200728))),
                HasSubstr("Wrong MeAcqTrial file format!!?"));
    EXPECT_THAT(describeFaults(inspect(acquisitionRecord::channelHeader(20200728))),
                HasSubstr("Wrong channel file format!!?"));
}

} // namespace

} // namespace megset::cli::inspectAcquisition_test
