// A host that wants to keep a trial's file is told before it is written over.
#include "megset/core/CMDTrialzk.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace megset::trialFileIsWritten_test {

namespace {

class KeepingHost : public ScriptedHost
{
public:
    explicit KeepingHost(const TemporaryFolder& folder) : m_folder(folder) {}

    void trialFileIsWritten(const CString& path) override
    {
        told.push_back(path);
        content.push_back(m_folder.has("t.trl") ? m_folder.read("t.trl") : std::vector<std::byte>());
    }

    std::vector<CString> told;
    std::vector<std::vector<std::byte>> content; // of the file at that time

private:
    const TemporaryFolder& m_folder;
};

TEST(TrialFileIsWritten, IsToldWhileTheFormerFileIsWhole)
{
    const TemporaryFolder folder;
    KeepingHost host(folder);
    CString path = folder.path("t.trl");
    CMDTrialzk trial;
    ASSERT_EQ(trial.saveTrialData(path, nullptr, "", true), 1);
    const std::vector<std::byte> first = folder.read("t.trl");
    ASSERT_TRUE(trial.allocateChannels(2));
    ASSERT_EQ(trial.saveTrialData(path, nullptr, "", true), 1);
    EXPECT_NE(folder.read("t.trl"), first);
    EXPECT_EQ(host.told, (std::vector<CString>{folder.path("t.trl"), folder.path("t.trl")}));
    EXPECT_EQ(host.content, (std::vector<std::vector<std::byte>>{{}, first}));
}

TEST(TrialFileIsWritten, FileThatTheHostPutsAsideIsMadeAnew)
{
    class MovingHost : public ScriptedHost
    {
    public:
        explicit MovingHost(const TemporaryFolder& folder) : m_folder(folder) {}
        void trialFileIsWritten(const CString&) override
        {
            if (m_folder.has("t.trl"))
                std::filesystem::rename(m_folder.native("t.trl"), m_folder.native("former"));
        }

    private:
        const TemporaryFolder& m_folder;
    };
    const TemporaryFolder folder;
    const MovingHost host(folder);
    folder.write("t.trl", "before");
    CString path = folder.path("t.trl");
    CMDTrialzk trial;
    ASSERT_EQ(trial.saveTrialData(path, nullptr, "", true), 1);
    EXPECT_EQ(folder.read("former").size(), 6U);
    EXPECT_GT(folder.read("t.trl").size(), 6U);
}

} // namespace

} // namespace megset::trialFileIsWritten_test
