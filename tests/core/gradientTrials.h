#pragma once
// Trials with gradiometers, references and coefficient records, and noise reduction of them by plain loops over
// vectors.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::gradient {

/// What one channel is to be. A gain of 0 is a channel without a sensor.
struct Channel
{
    std::string name;
    int type = 100;
    double gain = 1.0; ///< the sensor's proper gain
    std::vector<double> samples{};
    std::string sensorName{}; ///< the channel's name unless given
};

/// Coefficients of one sensor by reference name.
struct Record
{
    std::string sensor;
    std::string type; ///< four characters such as "G3BR"
    std::vector<std::pair<std::string, double>> terms;
};

inline std::uint32_t typeCode(const std::string& text)
{
    std::uint32_t code = 0;
    for (const char c : text)
        code = code << 8U | static_cast<unsigned char>(c);
    return code;
}

inline CCoefficientDatazk recordOf(const Record& record)
{
    CCoefficientDatazk made;
    made.m_strCoefSensorName = CString(record.sensor);
    made.m_nCoefType = typeCode(record.type);
    made.m_nCoefCount = static_cast<int>(record.terms.size());
    for (std::size_t k = 0; k < record.terms.size(); ++k) {
        made.m_aCoefRefName.at(k) = CString(record.terms[k].first);
        made.m_aCoefValue.at(k) = record.terms[k].second;
    }
    return made;
}

inline void fill(CMDChannelzk& channel, const Channel& from)
{
    channel.setChannelName(CString(from.name), false);
    channel.m_nChannelType = from.type;
    if (from.gain != 0.0) {
        CMEGSensorzk* sensor = channel.ensureMEGSensor();
        ASSERT_NE(sensor, nullptr);
        sensor->m_strSensorName = CString(from.sensorName.empty() ? from.name : from.sensorName);
        sensor->initSensorInfo(1, from.type, 0, 0, from.gain, 1.0, 1.0, 0.0);
        sensor->setRealIdealCoefMode(true);
    }
    if (!from.samples.empty()) {
        ASSERT_NE(channel.addData(static_cast<std::int64_t>(from.samples.size()), from.samples.data()), 0);
    }
}

inline void fill(CMDTrialzk& trial, const std::vector<Channel>& channels)
{
    ASSERT_EQ(trial.allocateChannels(static_cast<int>(channels.size())), 1);
    for (std::size_t c = 0; c < channels.size(); ++c)
        fill(*trial.getChannel(static_cast<int>(c)), channels[c]);
}

/// A dataset in memory, the same channels in each of its trials.
inline void fill(CMEGDatazk& data, int trials, const std::vector<Channel>& channels, const std::vector<Record>& records)
{
    ASSERT_EQ(data.initMEGData(trials, static_cast<int>(channels.size()), 0), 1);
    for (int t = 0; t < trials; ++t)
        fill(*data.getMDTrial(t), channels);
    std::vector<CCoefficientDatazk> made;
    for (const Record& record : records)
        made.push_back(recordOf(record));
    data.m_recordInfo.m_coefficients.addCoefficientsData(static_cast<int>(made.size()), made.data());
}

inline std::vector<double> samples(const CMDChannelzk& channel)
{
    const double* data = channel.getDataWave();
    return data != nullptr ? std::vector<double>(data, data + channel.getTotalSample()) : std::vector<double>();
}

/// Of all channels of a trial.
inline std::vector<std::vector<double>> samples(const CMDTrialzk& trial)
{
    std::vector<std::vector<double>> all;
    for (int c = 0; c < trial.getTotalChannel(); ++c)
        all.push_back(samples(*trial.getChannel(c)));
    return all;
}

/// The rules by plain loops, for channels that all have a sensor and the same number of samples.
struct PlainReduction
{
    std::vector<Channel> channels;
    std::vector<Record> records;
    std::vector<std::string> modes; ///< type code per channel that its data are at; empty: none

    const Record* find(const Channel& channel, const std::string& type) const
    {
        for (const Record& record : records)
            if (record.type == type && record.sensor.find(channel.name) != std::string::npos)
                return &record;
        return nullptr;
    }
    const Channel* channelIn(const std::string& text) const
    {
        for (const Channel& channel : channels)
            if (text.find(channel.name) != std::string::npos)
                return &channel;
        return nullptr;
    }
    void change(Channel& channel, const Record& record, double sign)
    {
        for (std::size_t i = 0; i < channel.samples.size(); ++i) {
            double s = 0.0;
            for (const auto& [name, coefficient] : record.terms)
                if (const Channel* reference = channelIn(name))
                    s += reference->samples[i] * (reference->gain * coefficient / channel.gain);
            sign > 0.0 ? channel.samples[i] += s : channel.samples[i] -= s;
        }
    }
    void addBack()
    {
        modes.resize(channels.size());
        for (std::size_t c = 0; c < channels.size(); ++c)
            if (const Record* record = channels[c].type >= 100 ? find(channels[c], modes[c]) : nullptr)
                change(channels[c], *record, 1.0);
    }
    void bringTo(const std::string& type)
    {
        addBack();
        for (std::size_t c = 0; c < channels.size(); ++c) {
            if (const Record* record = find(channels[c], type)) {
                change(channels[c], *record, -1.0);
                modes[c] = type;
            }
        }
    }
};

} // namespace megset::gradient
