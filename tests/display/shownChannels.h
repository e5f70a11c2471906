#pragma once
// A dataset in memory of one trial, with channels of given types.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/ScriptedHost.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

class ShownChannels : public ::testing::Test
{
protected:
    void makeChannels(const std::vector<int>& types)
    {
        ASSERT_EQ(data.initMEGData(1, static_cast<int>(types.size()), 2), 1);
        for (std::size_t i = 0; i < types.size(); ++i)
            channel(static_cast<int>(i)).m_nChannelType = types[i];
    }
    /// A trial without an array of channels.
    void makeNoChannels()
    {
        ASSERT_EQ(data.m_ppTrial.allocate(1), 1);
        data.m_ppTrial.set(0, std::make_unique<CMDTrialzk>());
        data.m_nTotalTrial = 1;
        data.m_nCurrentTrial = 0;
    }
    void giveFlags() { ASSERT_EQ(data.checkInitChnlParam(data.getMDTrial(0)), 1); }
    CMDChannelzk& channel(int i) { return *data.getMDTrial(0)->m_ppChannel[i]; }
    std::vector<int> shown() const
    {
        std::vector<int> flags;
        for (int i = 0; i < data.m_nChnlParamCount; ++i)
            flags.push_back(data.isShowChnl4Alltrials(i));
        return flags;
    }

    ScriptedHost host;
    CMEGDatazk data;
};

} // namespace megset
