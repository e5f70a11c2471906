#pragma once
// Trials and units for the tests of montages.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/core/filedDataset.h"

#include <string>
#include <vector>

namespace megset {

using Samples = std::vector<double>;

/// Gives a trial channels with these samples, backup alike, named "C0", "C1", ...
inline void fillTrial(CMDTrialzk& trial, const std::vector<Samples>& channels)
{
    ASSERT_EQ(trial.allocateChannels(static_cast<int>(channels.size())), 1);
    for (std::size_t i = 0; i < channels.size(); ++i) {
        CMDChannelzk& channel = *trial.getChannel(static_cast<int>(i));
        channel.m_strChannelName = CString::formatted("C%d", static_cast<int>(i));
        channel.addData(std::ssize(channels[i]), channels[i].data());
    }
}

inline std::vector<Samples> waves(const CMDTrialzk& trial)
{
    std::vector<Samples> all;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        all.push_back(wave(*trial.getChannel(i)));
    return all;
}

inline std::vector<Samples> backups(const CMDTrialzk& trial)
{
    std::vector<Samples> all;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        all.push_back(backup(*trial.getChannel(i)));
    return all;
}

inline CMtgChnlOperatorzk reference(int id, double weight, const CString& name = "")
{
    CMtgChnlOperatorzk made;
    made.m_nMtgChnlID = id;
    made.m_dMtgWeight = weight;
    made.m_strMtgChnlName = name;
    return made;
}

inline void listChannel(CMDTrialzk& trial, int id)
{
    CMtgChnlIdNamezk entry;
    entry.m_nMtgChnlID = id;
    EXPECT_EQ(trial.addCopyMcrChnl(&entry), 1);
}

inline void listChannels(CMDTrialzk& trial, const std::vector<int>& ids)
{
    for (const int id : ids)
        listChannel(trial, id);
}

/// setMontageCr with operators by value.
inline int setReferences(CMDTrialzk& trial, std::vector<CMtgChnlOperatorzk> references, double divisor = 0.0,
                         int backupToo = 0)
{
    CPtrArray list;
    for (CMtgChnlOperatorzk& made : references)
        list.Add(&made);
    return trial.setMontageCr("montage", &list, divisor, backupToo);
}

inline CMtgUnit4IndividualRefzk unitOf(int target, const std::vector<CMtgChnlOperatorzk>& references,
                                       double divisor = 0.0, const CString& name = "")
{
    CMtgUnit4IndividualRefzk unit;
    unit.m_nMtgTargetID = target;
    unit.m_strMtgTargetName = name;
    unit.m_dMtgRefDivisor = divisor;
    for (const CMtgChnlOperatorzk& made : references)
        unit.m_aMtgRefOperators.addCopy(made);
    return unit;
}

} // namespace megset
