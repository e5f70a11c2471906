#pragma once
// The dialog of a SEEG probe with a window that takes note of what is done to it, over a dataset with probes.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/ui/CDlgSeegProbeSetup.h"

#include "tests/kit/ScriptedHost.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// A list that records what is done to it, and may refuse to be emptied.
class RecordingContactList : public CListSeegContactzk
{
public:
    explicit RecordingContactList(std::vector<std::string>& calls) : m_calls(calls) {}

    void storeState() override { m_calls.emplace_back("store list"); }

    bool m_keepsRows = false;

protected:
    bool removeAllRows() override
    {
        m_calls.emplace_back("refill");
        return !m_keepsRows && CListSeegContactzk::removeAllRows();
    }

private:
    std::vector<std::string>& m_calls;
};

/// A window that records readings and repaints of its fields in order, and types what it is told on the next reading.
class SeegProbeWindow : public CDlgSeegProbeSetup
{
public:
    SeegProbeWindow() : SeegProbeWindow(std::make_unique<std::vector<std::string>>()) {}

    std::vector<std::string>& calls() { return *m_calls; }
    RecordingContactList& list() { return static_cast<RecordingContactList&>(contactList()); }

    std::function<void(CDlgSeegProbeSetup&)> m_type; ///< what is typed: runs at the next reading

protected:
    void readFields() override
    {
        m_calls->emplace_back("read");
        if (const auto type = std::exchange(m_type, nullptr))
            type(*this);
    }
    void showFields() override { m_calls->emplace_back("show"); }
    void refreshManager() override { m_calls->emplace_back("manager"); }

private:
    explicit SeegProbeWindow(std::unique_ptr<std::vector<std::string>> calls)
        : CDlgSeegProbeSetup(std::make_unique<RecordingContactList>(*calls)), m_calls(std::move(calls))
    {
    }

    std::unique_ptr<std::vector<std::string>> m_calls;
};

/// A dataset in memory whose trial has three channels and two probes, the second current: base at 0, 0, 100, tip at 0,
/// three contacts "B1" to "B3" of a user's type.
class SeegProbeDialog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(data.initMEGData(1, 3, 1), 1);
        trial().m_strTrialName = "Trial1";
        for (int i = 0; i < 3; ++i)
            trial().m_ppChannel[i]->m_strChannelName = CString::formatted("POL%d", i);
        addProbe("A");
        addProbe("B");
        ASSERT_EQ(probe().setUserContact(3, 10.0), 1);
        dialog.m_pDataset = &data;
        dialog.m_pParent = &parent;
        CMEGDatazk::setMsiSelect3DPts2Me(11.0, 12.0, 13.0);
        CMEGDatazk::setSeegProbContact2Me(0.0, 0.0, 0.0);
        CMEGDatazk::m_nSelectSeegProbeID = CMEGDatazk::m_nSelectSeegProbeContactID = -1;
    }
    void addProbe(const char* name)
    {
        auto made = std::make_unique<CSeegProbezk>();
        made->m_strProbeName = name;
        made->m_dProbeBase = {0.0, 0.0, 100.0};
        trial().addSeegProbe(made.release());
    }
    CMDTrialzk& trial() { return *data.getMDTrial(0); }
    CSeegProbezk& probe() { return *trial().getSeegProbe(-1); }
    CSeegContactzk& contact(int i) { return *probe().getContact(i); }
    static std::vector<double> placeOf(const CSeegContactzk& contact)
    {
        return {contact.m_dContactX, contact.m_dContactY, contact.m_dContactZ};
    }

    ScriptedHost host;
    CMEGDatazk data;
    CWnd parent;
    SeegProbeWindow dialog;
};

} // namespace megset
