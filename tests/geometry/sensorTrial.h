#pragma once
// Trials whose MEG sensors and electrodes stand at given places.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/kit/ScriptedHost.h"

#include <cstddef>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

struct Place
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

using PlanePlace = std::pair<double, double>;

/// What a channel of a trial is to be: its type, and the place of its sensor.
struct ChannelAt
{
    int type;
    Place place;
    bool hasSensor = true;
};

/// A trial without samples. MEG types get a sensor with one coil there, EEG types an electrode.
inline void makeSensors(CMDTrialzk& trial, const std::vector<ChannelAt>& channels)
{
    if (!channels.empty()) {
        ASSERT_EQ(trial.allocateChannels(static_cast<int>(channels.size())), 1);
    }
    for (std::size_t i = 0; i < channels.size(); ++i) {
        CMDChannelzk& channel = *trial.getChannel(static_cast<int>(i));
        const ChannelAt& wanted = channels[i];
        channel.m_nChannelType = wanted.type;
        if (wanted.hasSensor && channel.isMEGChannel()) {
            ASSERT_NE(channel.ensureMEGSensor(), nullptr);
            channel.getMEGSensorzk()->setSnsPos(-1, 0, wanted.place.x, wanted.place.y, wanted.place.z);
        }
        if (wanted.hasSensor && channel.isEEGChannel()) {
            ASSERT_NE(channel.ensureEegElectrode(), nullptr);
            channel.m_nChannelType = wanted.type;
            channel.getEegElectrode(0)->setElectrodePositionD(wanted.place.x, wanted.place.y, wanted.place.z);
        }
    }
}

/// An empty trial, and a host that tells what was shown.
class SensorTrial : public ::testing::Test
{
protected:
    CMDTrialzk& make(const std::vector<ChannelAt>& channels)
    {
        makeSensors(trial, channels);
        return trial;
    }

    ScriptedHost host;
    CMDTrialzk trial;
};

inline std::vector<PlanePlace> megPlaces(const CMDTrialzk& trial)
{
    std::vector<PlanePlace> places;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        places.emplace_back(trial.getChannel(i)->m_dSns2dX, trial.getChannel(i)->m_dSns2dY);
    return places;
}

inline std::vector<PlanePlace> eegPlaces(const CMDTrialzk& trial)
{
    std::vector<PlanePlace> places;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        places.emplace_back(trial.getChannel(i)->m_dElct2dX, trial.getChannel(i)->m_dElct2dY);
    return places;
}

/// Bounds of a map in the order x min, x max, y min, y max, then its scale.
inline std::vector<double> planeOf(const CContourMap2DInfozk& contour)
{
    return {contour.m_dPlaneXmin, contour.m_dPlaneXmax, contour.m_dPlaneYmin, contour.m_dPlaneYmax,
            contour.m_dPlaneScale};
}

/// A recording's mixture: sensors of both kinds at random places, some without their object, and other channels.
inline std::vector<ChannelAt> randomChannels(unsigned seed)
{
    std::mt19937 random(seed);
    const int types[] = {100, 100, 103, 11, 302, 302, 303, 300, 600, -1};
    std::uniform_real_distribution<double> across(-100.0, 100.0);
    std::uniform_real_distribution<double> up(-40.0, 130.0);
    std::vector<ChannelAt> channels;
    const auto count = 2 + random() % 60;
    for (std::size_t i = 0; i < count; ++i) {
        const int type = types[random() % 10];
        const Place place = {across(random), up(random), across(random)};
        channels.push_back({type, place, random() % 8 != 0});
    }
    return channels;
}

} // namespace megset
