// Zooms: how large the views draw each kind of channel.
#include "megset/display/CMEGData8Show.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <array>
#include <cmath>

namespace megset {
namespace {

using Zoom = double CMEGData::*;

constexpr std::array<Zoom, 9> allZooms{
    &CMEGData::m_dZoomMEGSensor, &CMEGData::m_dZoomMEGRef,  &CMEGData::m_dZoomEEGSensor,
    &CMEGData::m_dZoomEEGRef,    &CMEGData::m_dZoomType903, &CMEGData::m_dZoomType902,
    &CMEGData::m_dZoomType904,   &CMEGData::m_dZoomTrig,    &CMEGData::m_dZoomOthers,
};

/// Channel types, both ends included, and their zoom.
struct ZoomRange
{
    int low;
    int high;
    Zoom zoom;
};

// The two tables differ, and are meant to: what one reads the other may not set.
constexpr ZoomRange zoomsRead[] = {
    {100, 120, &CMEGData::m_dZoomMEGSensor}, {10, 20, &CMEGData::m_dZoomMEGRef},
    {302, 303, &CMEGData::m_dZoomEEGSensor}, {300, 301, &CMEGData::m_dZoomEEGRef},
    {310, 354, &CMEGData::m_dZoomEEGRef},    {600, 602, &CMEGData::m_dZoomTrig},
    {902, 902, &CMEGData::m_dZoomType902},   {903, 903, &CMEGData::m_dZoomType903},
    {904, 904, &CMEGData::m_dZoomType904},
};
constexpr ZoomRange zoomsSet[] = {
    {100, 103, &CMEGData::m_dZoomMEGSensor}, {10, 13, &CMEGData::m_dZoomMEGRef},
    {302, 303, &CMEGData::m_dZoomEEGSensor}, {300, 300, &CMEGData::m_dZoomEEGRef},
    {600, 602, &CMEGData::m_dZoomTrig},      {902, 902, &CMEGData::m_dZoomType902},
    {903, 903, &CMEGData::m_dZoomType903},   {904, 904, &CMEGData::m_dZoomType904},
    {400, 402, &CMEGData::m_dZoomOthers},
};

// What a view looks for in the channels that are shown, first to last.
constexpr ZoomRange zoomsUsed[] = {
    {100, 103, &CMEGData::m_dZoomMEGSensor}, {10, 13, &CMEGData::m_dZoomMEGRef},
    {302, 303, &CMEGData::m_dZoomEEGSensor}, {300, 300, &CMEGData::m_dZoomEEGRef},
    {600, 602, &CMEGData::m_dZoomTrig},      {400, 402, &CMEGData::m_dZoomOthers},
};

bool isIn(const ZoomRange& range, int type)
{
    return type >= range.low && type <= range.high;
}

// The zoom of a type, null where the table has none.
template <std::size_t count>
Zoom zoomOf(const ZoomRange (&table)[count], int type)
{
    for (const ZoomRange& range : table)
        if (isIn(range, type))
            return range.zoom;
    return nullptr;
}

const CMDChannelzk* currentTrialChannel(const CMEGData& data, int chan)
{
    const CMDTrialzk* trial = data.getCurrentTrialPt();
    return trial != nullptr ? trial->getChannel(chan) : nullptr;
}

} // namespace

double CMEGData8Show::getShowZoomChnl(int chan) const
{
    const CMDChannelzk* channel = currentTrialChannel(*this, chan);
    if (channel == nullptr)
        return 1.0;
    const Zoom zoom = zoomOf(zoomsRead, channel->getChannelType());
    return zoom != nullptr ? this->*zoom : m_dZoomOthers;
}

int CMEGData8Show::setShowZoomChnl(int chan, double zoom)
{
    const CMDChannelzk* channel = currentTrialChannel(*this, chan);
    if (channel == nullptr)
        return 0;
    if (const Zoom field = zoomOf(zoomsSet, channel->getChannelType()))
        this->*field = zoom;
    return 1;
}

bool CMEGData8Show::countsAsShown(int chan) const
{
    return m_pChnlShow == nullptr || chan >= m_nChnlParamCount || getChnlShow_PhycVirt(chan);
}

double CMEGData8Show::getShowZoomUsed()
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return 0.0;
    for (const ZoomRange& range : zoomsUsed)
        for (int i = 0; i < trial->getTotalChannel(); ++i) {
            const CMDChannelzk* channel = trial->m_ppChannel[i];
            if (channel != nullptr && isIn(range, channel->getChannelType()) && countsAsShown(i))
                return this->*range.zoom;
        }
    return 1.0;
}

int CMEGData8Show::zoomAllChnlShow(double factor)
{
    for (const Zoom zoom : allZooms)
        this->*zoom *= factor;
    return 1;
}

int CMEGData8Show::setShowTimeScaleX(double scale)
{
    m_dShowTimeScaleX = std::abs(scale);
    return 1;
}

} // namespace megset
