#include "apps/cli/electrodes/electrodeList.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <ostream>

namespace megset::cli {

std::vector<ListedElectrode> listElectrodes(const CMDTrialzk& trial)
{
    std::vector<ListedElectrode> list;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (channel == nullptr || !channel->isEEGChannel())
            continue;
        ListedElectrode& listed = list.emplace_back();
        listed.channel = i;
        listed.name = channel->m_strChannelName.toUtf8();
        listed.type = channel->m_nChannelType;
        if (const CEEGelectrodezk* const electrode = channel->getEegElectrode(0)) {
            listed.electrode = electrode->m_strElectrodeName.toUtf8();
            listed.label = electrode->m_strElectrodeLabel.toUtf8();
            listed.standard = electrode->m_strElectrodeStd.toUtf8();
            listed.position = positionOf(*channel);
            listed.found = electrode->m_nPosFound != 0;
            listed.impedance = electrode->m_dImpedance;
        }
    }
    return list;
}

void writeElectrodeText(const std::vector<ListedElectrode>& electrodes, std::ostream& out)
{
    out << "channel  type   x, mm     y, mm     z, mm  name\n" << std::fixed << std::setprecision(2);
    for (const ListedElectrode& listed : electrodes) {
        out << std::setw(7) << listed.channel << std::setw(6) << listed.type;
        if (listed.position)
            out << std::setw(10) << listed.position->x << std::setw(10) << listed.position->y << std::setw(10)
                << listed.position->z;
        else
            out << std::setw(30) << "no electrode";
        out << "  " << listed.name;
        if (!listed.standard.empty())
            out << " (standard " << listed.standard << ')';
        out << '\n';
    }
}

void writeElectrodeJson(const std::vector<ListedElectrode>& electrodes, int trial, std::ostream& out)
{
    using Json = nlohmann::ordered_json;
    Json list = Json::array();
    for (const ListedElectrode& listed : electrodes) {
        const auto& position = listed.position;
        list.push_back(
            {{"channel", listed.channel},
             {"name", listed.name},
             {"type", listed.type},
             {"electrode", position ? Json(listed.electrode) : Json(nullptr)},
             {"label", listed.label},
             {"standard", listed.standard},
             {"position_mm", position ? Json::array({position->x, position->y, position->z}) : Json(nullptr)},
             {"found", listed.found},
             {"impedance_kohm", listed.impedance}});
    }
    out << Json{{"trial", trial}, {"electrodes", list}}.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
