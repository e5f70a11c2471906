#include "megset/core/CMDTrial.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <cmath>
#include <limits>

namespace megset {
namespace {

// A sample as a trigger value; samples outside the range of int, and NaN, are no value at all.
bool isTrigValue(double sample, int value)
{
    const double cut = std::trunc(sample);
    return cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max() &&
           static_cast<int>(cut) == value;
}

int asInt(std::int64_t value)
{
    constexpr std::int64_t limit = std::numeric_limits<int>::max();
    return static_cast<int>(value < limit ? value : limit);
}

} // namespace

CMDTrial::CMDTrial() = default;

CMDTrial::~CMDTrial()
{
    _cleanTrialChannels();
}

int CMDTrial::_cleanTrialChannels()
{
    m_ppChannel.reset();
    m_nTotalChannel = 0;
    m_nCurrentChannel = 0;
    return 1;
}

CMDChannelzk* CMDTrial::getChannel(int index) const
{
    const int i = index == -1 ? m_nCurrentChannel : index;
    return i >= 0 && i < m_nTotalChannel ? m_ppChannel[i] : nullptr;
}

int CMDTrial::getTotalChannel() const
{
    return m_ppChannel ? m_nTotalChannel : 0;
}

int CMDTrial::getCurntChnlIndx()
{
    const int total = getTotalChannel();
    if (total < 1)
        return -1;
    m_nCurrentChannel = m_nCurrentChannel >= total ? total - 1 : m_nCurrentChannel < 0 ? 0 : m_nCurrentChannel;
    return m_nCurrentChannel;
}

int CMDTrial::setCurrentChannel(int index)
{
    if (index < 0 || index >= getTotalChannel())
        return 0;
    m_nCurrentChannel = index;
    return 1;
}

namespace {

// Makes the first channel current that passes the test, and gives its index; -1 when none does.
template <class Test>
int setCurrentToFirst(CMDTrial& trial, Test test)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.m_ppChannel[i];
        if (channel != nullptr && test(*channel)) {
            trial.m_nCurrentChannel = i;
            return i;
        }
    }
    return -1;
}

} // namespace

int CMDTrial::setCurrentChannel2Name(const CString& text)
{
    return setCurrentToFirst(*this,
                             [&](const CMDChannelzk& channel) { return channel.m_strChannelName.Find(text) >= 0; });
}

int CMDTrial::setCurntChannel2MegListID(int id)
{
    if (getTotalChannel() < 1)
        return 0;
    return setCurrentToFirst(*this, [id](const CMDChannelzk& channel) { return channel.m_nMegListID == id; });
}

int CMDTrial::setCurntChannel2EegListID(int id)
{
    if (getTotalChannel() < 1)
        return 0;
    return setCurrentToFirst(*this, [id](const CMDChannelzk& channel) { return channel.m_nEegListID == id; });
}

int CMDTrial::setSensorListID(int index, int id)
{
    CMDChannelzk* channel = getChannel(index);
    if (channel == nullptr)
        return 0;
    channel->m_nMegListID = id;
    return 1;
}

int CMDTrial::getChannType(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->m_nChannelType : -1;
}

CString CMDTrial::getChannelName(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr && !channel->m_strChannelName.IsEmpty() ? channel->m_strChannelName : CString("Unknown");
}

int CMDTrial::setChannelName(const CString& name, int index, bool raw)
{
    CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->setChannelName(name, raw) : 0;
}

int CMDTrial::setChannelPos(int index, double x, double y, double z)
{
    CMDChannelzk* channel = getChannel(index);
    if (channel == nullptr)
        return 0;
    if (CMEGSensorzk* sensor = channel->getMEGSensorzk())
        sensor->setSnsPos(-1, 0, x, y, z);
    return 1;
}

int CMDTrial::setChannelSizeData(std::uint32_t n, double* data, int index)
{
    CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? asInt(channel->setSizeData(n, data)) : 0;
}

int CMDTrial::getChannMEGDataS(double** out, int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    if (out != nullptr)
        *out = channel != nullptr ? channel->getDataWave() : nullptr;
    return channel != nullptr && out != nullptr ? 1 : 0;
}

double* CMDTrial::getChannMEGData4Name(const CString& text) const
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (channel != nullptr && channel->m_strChannelName.Find(text) >= 0)
            return channel->getDataWave();
    }
    return nullptr;
}

int CMDTrial::backupAllChnlData()
{
    int done = 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            done += channel->backup2RawData();
    return done;
}

int CMDTrial::setTrialGood(bool good)
{
    m_nGoodTrial = good ? 1 : 0;
    return m_nGoodTrial;
}

namespace {

// The first trigger channel and sample at which `isHit(channel index, channel, sample index)` holds.
template <class IsHit>
int findTrig(const CMDTrial& trial, int& pos, int& rest, IsHit isHit)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.m_ppChannel[i];
        if (channel == nullptr || !channel->isTriggerChannel())
            continue;
        for (std::int64_t k = 0; k < channel->m_nTotalSample; ++k) {
            if (isHit(i, *channel, k)) {
                pos = asInt(k);
                rest = asInt(channel->m_nTotalSample - k);
                return 1;
            }
        }
    }
    return 0;
}

} // namespace

int CMDTrial::find1stTrig(int value, int& pos, int& rest) const
{
    return findTrig(*this, pos, rest, [value](int, const CMDChannelzk& channel, std::int64_t k) {
        return channel.m_pDataWave != nullptr && isTrigValue(channel.m_pDataWave[static_cast<std::size_t>(k)], value);
    });
}

int CMDTrial::find1stTrigHD(int value, int& pos, int& rest, const std::int32_t* data) const
{
    if (data == nullptr)
        return 0;
    return findTrig(*this, pos, rest, [value, data](int i, const CMDChannelzk& channel, std::int64_t k) {
        return data[i * channel.m_nTotalSample + k] == value;
    });
}

int CMDTrial::isSameTrig(int value) const
{
    int pos = 0;
    int rest = 0;
    return find1stTrig(value, pos, rest);
}

} // namespace megset
