#include "megset/processing/CMEGData2Process.h"

#include "megset/core/CMDTrialzk.h"

#include <algorithm>

namespace megset {

// ---- filter setting

int CMEGData2Process::setFilterDcLtSettingzk(const CFilterDcLtSettingzk* setting)
{
    if (setting == nullptr)
        return 1;
    m_filterDcLt = *setting;
    ++m_nFilterSettingCount;
    return 1;
}

int CMEGData2Process::getFilterRange(double& low, double& high) const
{
    low = 0.0;
    high = m_recordInfo.m_dRecSampleRate * 0.5;
    if (m_nFilterSettingCount == 0)
        return 1;
    if (m_filterDcLt.m_bFiltBand) {
        low = m_filterDcLt.m_dFiltBandLowHz;
        high = m_filterDcLt.m_dFiltBandHighHz;
    }
    // High and low pass go before the band.
    if (m_filterDcLt.m_bFiltHighPass)
        low = m_filterDcLt.m_dFiltHighPassHz;
    if (m_filterDcLt.m_bFiltLowPass)
        high = m_filterDcLt.m_dFiltLowPassHz;
    return 1;
}

// ---- flags of channels

int CMEGData2Process::checkInitChnlParam(const CMDTrialzk* trial)
{
    if (trial == nullptr)
        return 0;
    const int count = trial->getTotalChannel();
    if (count != m_nChnlParamCount)
        _cleanChnlParam();
    if (count < 1)
        return 0;
    std::unique_ptr<int[]>* const arrays[] = {&m_pChnlGood, &m_pChnlShow, &m_pChnlSelect, &m_pChnlParam4};
    const bool anyMissing =
        std::any_of(std::begin(arrays), std::end(arrays), [](auto* array) { return *array == nullptr; });
    for (auto* array : arrays) {
        if (*array == nullptr)
            *array = tryNewZeroArray<int>(count);
        if (*array == nullptr) {
            _cleanChnlParam();
            return 0;
        }
    }
    m_nChnlParamCount = count;
    if (anyMissing) {
        // One new array sets all flags anew: they describe the same channels.
        std::fill_n(m_pChnlGood.get(), count, 1);
        std::fill_n(m_pChnlShow.get(), count, 1);
        std::fill_n(m_pChnlSelect.get(), count, 0);
        std::fill_n(m_pChnlParam4.get(), count, 0);
    }
    return 1;
}

bool CMEGData2Process::hasFlag(const std::unique_ptr<int[]>& flags, int channel) const
{
    return flags != nullptr && channel >= 0 && channel < m_nChnlParamCount;
}

int CMEGData2Process::isFlagSet(const std::unique_ptr<int[]>& flags, int channel) const
{
    return hasFlag(flags, channel) && flags[static_cast<std::size_t>(channel)] != 0 ? 1 : 0;
}

int CMEGData2Process::setFlag(const std::unique_ptr<int[]>& flags, int channel, int value)
{
    if (!hasFlag(flags, channel))
        return 0;
    flags[static_cast<std::size_t>(channel)] = value;
    return 1;
}

int CMEGData2Process::setSelectChnl4Alltrials(int channel, int value, bool all)
{
    if (!all)
        return setFlag(m_pChnlSelect, channel, value);
    if (m_pChnlSelect != nullptr)
        std::fill_n(m_pChnlSelect.get(), m_nChnlParamCount, value);
    return 1;
}

int CMEGData2Process::setChannelGood4Name(const CString& name, bool good, int trial)
{
    const CMDTrialzk* opened = getTrialzk(trial);
    if (opened == nullptr || !checkInitChnlParam(opened))
        return 0;
    return setGoodChnl4Alltrials(opened->findChnlID4NameS(name), good ? 1 : 0);
}

int CMEGData2Process::setMEGSensorShow(bool show, int channel, int, bool)
{
    return setShowChnl4Alltrials(channel, show ? 1 : 0);
}

// ---- electrodes of the trials

template <class Operation>
int CMEGData2Process::openAndRun(int trial, bool allTrials, Operation operation)
{
    if (!allTrials) {
        CMDTrialzk* opened = getTrialzk(trial);
        return opened != nullptr ? operation(*opened) : 0;
    }
    for (int i = 0; i < placedTrials(); ++i) {
        CMDTrialzk* opened = getTrialzk(i);
        if (opened != nullptr && !operation(*opened))
            return 0;
    }
    return 1;
}

int CMEGData2Process::setEEG_electrodes(const CEEGelectrodezk* electrode, int trial, bool allTrials)
{
    return openAndRun(trial, allTrials, [=](CMDTrialzk& opened) { return opened.setEEG_electrodes(electrode); });
}

int CMEGData2Process::setEEG_electrodesPositionMeg(CPtrArray* positions, int trial, bool allTrials)
{
    return openAndRun(trial, allTrials,
                      [=](CMDTrialzk& opened) { return opened.setEEG_electrodesPositionMe(positions); });
}

int CMEGData2Process::setEEG_electrodesPositionPohemus(int electrode, double x, double y, double z, int trial,
                                                       bool allTrials)
{
    return openAndRun(trial, allTrials,
                      [=](CMDTrialzk& opened) { return opened.setEEG_electrodesPositionPohemus(electrode, x, y, z); });
}

} // namespace megset
