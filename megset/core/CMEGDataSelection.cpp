// The selection of a dataset: one range of samples for all channels, kept across trials.
#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace megset {
namespace {

// Sample indices come from files: sums of them stop at the ends of their range.
std::int64_t addLimited(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t subtractLimited(std::int64_t a, std::int64_t b)
{
    std::int64_t difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference))
        return difference;
    return b < 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t broughtInto(std::int64_t index, std::int64_t total)
{
    return std::max<std::int64_t>(std::min(index, total - 1), 0);
}

} // namespace

int CMEGData::setSelect(std::int64_t a, std::int64_t b)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return 0;
    const std::int64_t total = trial->getTotalSample(0);
    // The end is b even where b is the smaller: the two are not exchanged.
    m_nSelectStart = broughtInto(std::min(a, b), total);
    m_nSelectEnd = broughtInto(b, total);
    return 1;
}

std::int64_t CMEGData::getSelect(std::int64_t& from, std::int64_t& to)
{
    from = to = 0;
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    if (trial->getTotalChannel() < 1)
        return -1;
    const std::int64_t total = trial->getTotalSample(0);
    if (total < 1)
        return 0;
    m_nSelectStart = broughtInto(m_nSelectStart, total);
    m_nSelectEnd = std::min(std::max(m_nSelectEnd, m_nSelectStart), total - 1);
    from = m_nSelectStart;
    to = m_nSelectEnd;
    return to - from + 1;
}

std::int64_t CMEGData::nextSelect(int step, bool wrap)
{
    const std::int64_t length = subtractLimited(std::max(m_nSelectEnd, m_nSelectStart), m_nSelectStart);
    m_nSelectStart = addLimited(m_nSelectStart, step);
    m_nSelectEnd = addLimited(m_nSelectEnd, step);
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return 0;
    const std::int64_t total = trial->getTotalSample(0);
    if (m_nSelectStart < 0) {
        m_nSelectStart = wrap ? total - length - 1 : 0;
        m_nSelectEnd = wrap || length >= total ? total - 1 : length;
    }
    if (m_nSelectEnd >= total) {
        m_nSelectStart = wrap ? 0 : total - length - 1;
        m_nSelectEnd = wrap ? length : total - 1;
        if (!wrap && m_nSelectStart >= 0)
            return m_nSelectStart;
        m_nSelectStart = 0;
    }
    m_nSelectEnd = std::max(m_nSelectEnd, m_nSelectStart);
    return m_nSelectStart;
}

double CMEGData::getSelectData(int chan, std::int64_t from, std::int64_t to) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    const CMDChannelzk* channel = trial != nullptr ? trial->getChannel(chan) : nullptr;
    if (channel == nullptr)
        return 0.0;
    return channel->getCurrentV(from == -1 ? m_nSelectStart : from, to == -1 ? m_nSelectEnd : to);
}

CString CMEGData::getSelectDataValueUnit(int chan, std::int64_t from, std::int64_t to, int peak) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr)
        return "None";
    const CMDChannelzk* channel = trial->getChannel(chan);
    if (channel == nullptr)
        return "OutRange";
    double low = 0.0;
    double mean = 0.0;
    double high = 0.0;
    channel->getSelectMinMeaMaxV(from == -1 ? m_nSelectStart : from, to == -1 ? m_nSelectEnd : to, &low, &mean, &high,
                                 nullptr);
    const double extreme = std::fabs(high) > std::fabs(low) ? high : low;
    const double value = peak ? extreme : mean;
    const bool small = std::fabs(value) < 1000.0;
    if (channel->isMEGChannel())
        return small ? CString::formatted("%0.0ffT", value) : CString::formatted("%0.2fpT", value / 1000.0);
    if (channel->isEEGChannel())
        return small ? CString::formatted("%0.0fuV", value) : CString::formatted("%0.2fmV", value / 1000.0);
    return "";
}

CString CMEGData::getSelectUnit(int chan) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr)
        return "None";
    const CMDChannelzk* channel = trial->getChannel(chan);
    if (channel == nullptr)
        return "OutRange";
    return channel->isMEGChannel() ? "fT" : channel->isEEGChannel() ? "uV" : "u";
}

} // namespace megset
