#include "apps/cli/layout/SensorMap.h"

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/picture/svg.h"

#include <algorithm>
#include <ostream>

namespace megset::cli {

namespace {

bool hasMegPlace(const CMDChannelzk& channel)
{
    return channel.isMEGMeasureChannel() && channel.getMEGSensorzk() != nullptr;
}

bool hasEegPlace(const CMDChannelzk& channel)
{
    return channel.isEEGMeasureChannel() && channel.getEegElectrode(1) != nullptr;
}

// "MLC11-2908" without the recording system's number.
std::string shortName(const CMDChannelzk& channel)
{
    const std::string name = channel.m_strChannelName.toUtf8();
    return name.substr(0, name.find('-'));
}

template <class Has, class Place>
std::vector<MapPoint> collect(const CMDTrialzk& trial, Has has, Place place)
{
    std::vector<MapPoint> points;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i); channel != nullptr && has(*channel))
            points.push_back(place(*channel));
    return points;
}

// The plane's first axis points to the left of the head; a picture's to the right.
SensorMap makeMap(const std::string& title, std::vector<MapPoint> points)
{
    SensorMap map = {title, std::move(points), 0.0, 0.0};
    const auto [left, right] = std::ranges::minmax_element(map.points, {}, &MapPoint::x);
    const auto [front, back] = std::ranges::minmax_element(map.points, {}, &MapPoint::y);
    const double xMax = right->x;
    const double yMin = front->y;
    map.width = right->x - left->x;
    map.height = back->y - front->y;
    for (MapPoint& point : map.points) {
        point.x = xMax - point.x;
        point.y -= yMin;
    }
    return map;
}

constexpr double margin = 20.0;
constexpr double titleHeight = 14.0;

void writeMap(const SensorMap& map, double left, std::ostream& out)
{
    out << "<g transform=\"translate(" << left << ' ' << margin + titleHeight << ")\">\n"
        << "<text x=\"" << map.width / 2 << "\" y=\"" << -titleHeight << "\" font-size=\"7\">" << svgText(map.title)
        << "</text>\n";
    for (const MapPoint& point : map.points)
        out << "<circle cx=\"" << point.x << "\" cy=\"" << point.y << "\" r=\"2.2\"/>\n";
    for (const MapPoint& point : map.points) // over the circles of their neighbours
        out << "<text x=\"" << point.x << "\" y=\"" << point.y + 5 << "\">" << svgText(point.name) << "</text>\n";
    out << "</g>\n";
}

} // namespace

std::vector<SensorMap> makeSensorMaps(CMDTrialzk& trial)
{
    std::vector<SensorMap> maps;
    auto meg = collect(trial, hasMegPlace, [](const CMDChannelzk&) { return MapPoint(); });
    if (meg.size() > 1 && trial.projectMegMeasureSns3Dto2Dstd(1.0, true))
        maps.push_back(makeMap("MEG sensors", collect(trial, hasMegPlace, [](const CMDChannelzk& channel) {
                                   return MapPoint{shortName(channel), channel.m_dSns2dX, channel.m_dSns2dY};
                               })));
    auto eeg = collect(trial, hasEegPlace, [](const CMDChannelzk&) { return MapPoint(); });
    if (eeg.size() > 1 && trial.projectEegMeasureElectrode3Dto2Dstd(1.0, true))
        maps.push_back(makeMap("EEG electrodes", collect(trial, hasEegPlace, [](const CMDChannelzk& channel) {
                                   return MapPoint{shortName(channel), channel.m_dElct2dX, channel.m_dElct2dY};
                               })));
    return maps;
}

void writeSvg(const std::vector<SensorMap>& maps, std::ostream& out)
{
    double width = margin;
    double height = 0.0;
    for (const SensorMap& map : maps) {
        width += map.width + 2 * margin;
        height = std::max(height, map.height);
    }
    height += 2 * margin + titleHeight;
    beginSvg(width, height, 3.0,
             "text{font:2.6px sans-serif;text-anchor:middle;fill:#222}circle{fill:#9ecae1;stroke:#3182bd;"
             "stroke-width:.4}",
             out);
    double left = 1.5 * margin;
    for (const SensorMap& map : maps) {
        writeMap(map, left, out);
        left += map.width + 2 * margin;
    }
    out << "</svg>\n";
}

} // namespace megset::cli
