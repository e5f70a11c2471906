#pragma once
// A dataset of three trials with two channels of five samples, its user and its document.

#include "megset/platform/CDocument.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <filesystem>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace megset {

/// While it lives, permission bits hold for root as for others. False where this system does not allow it.
class WithoutPrivileges
{
public:
    WithoutPrivileges() : m_wasRoot(geteuid() == 0), m_holds(!m_wasRoot || seteuid(nobody) == 0) {}
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
    ~WithoutPrivileges()
    {
        if (m_wasRoot && m_holds && seteuid(0) != 0)
            ADD_FAILURE() << "The privileges did not come back.";
    }
    explicit operator bool() const { return m_holds; }

private:
    static constexpr uid_t nobody = 65534;
    bool m_wasRoot;
    bool m_holds;
};

class TrialFiles : public ::testing::Test
{
protected:
    std::filesystem::path native(int trial) const { return filed.folder.native(FiledDataset::name(trial)); }
    CString path(const CString& name) const { return filed.folder.path(name); }
    CString listed(int trial) const { return data.m_aTrialFilePath.GetAt(trial); }
    std::vector<CString> paths() const { return {data.m_aTrialFilePath.begin(), data.m_aTrialFilePath.end()}; }
    /// The samples of a channel as a file of the dataset's folder holds them.
    std::vector<double> waveInFile(const CString& file, int channel) const
    {
        const auto trial = read(path(file));
        return trial != nullptr ? wave(*trial->getChannel(channel)) : std::vector<double>();
    }
    static std::unique_ptr<CMDTrialzk> read(CString file)
    {
        auto trial = std::make_unique<CMDTrialzk>();
        EXPECT_EQ(trial->openTrialData(file, nullptr, ""), 1);
        return trial;
    }
    /// The samples of a channel as the dataset gives them.
    std::vector<double> waveOf(int trial, int channel)
    {
        const CMDTrialzk* opened = data.getTrialzk(trial);
        return opened != nullptr ? wave(*opened->getChannel(channel)) : std::vector<double>();
    }
    /// Saves to that file meet a full disk.
    void fillDiskFor(const CString& name) const
    {
        std::filesystem::remove(filed.folder.native(name));
        std::filesystem::create_symlink("/dev/full", filed.folder.native(name));
    }
    /// Opens the trial, changes its first sample and makes its file vanish.
    void editAndLoseFile(int trial, double value)
    {
        ASSERT_EQ(data.openTrial(trial), 1);
        data.getMDTrial(trial)->getChannel(0)->getDataWave()[0] = value;
        std::filesystem::remove(native(trial));
    }
    CMDTrialzk* newTrial(int number) const { return makeTrial(number, 2, 5).release(); }

    FiledDataset filed{3, 2, 5};
    CMEGDatazk& data = filed.data;
    ScriptedHost host;
    CDocument document;
};

} // namespace megset
