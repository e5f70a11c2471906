#include "apps/cli/seeg/probeList.h"

#include "apps/cli/seeg/probeNames.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace megset::cli {

namespace {

using Json = nlohmann::ordered_json;

// -1 without probes; else the current index as the library brings it into the list.
int currentProbe(const CMDTrialzk& trial)
{
    const int count = trial.m_aSeegProbe.GetSize();
    return count == 0 ? -1 : std::clamp(trial.m_nCurrentSeegProbe, 0, count - 1);
}

Json contactsOf(const CSeegProbezk& probe)
{
    Json list = Json::array();
    for (int i = 0; i < probe.getTotalContacts(); ++i) {
        const CSeegContactzk* const contact = probe.m_aContacts.GetAt(i);
        if (contact == nullptr)
            continue;
        const bool isAssigned = contact->m_nContactChnlID >= 0;
        list.push_back({{"number", i + 1},
                        {"name", contact->m_strContactName.toUtf8()},
                        {"position_mm", {contact->m_dContactX, contact->m_dContactY, contact->m_dContactZ}},
                        {"size_mm", contact->m_dContactSize},
                        {"channel", isAssigned ? Json(contact->m_nContactChnlID) : Json(nullptr)},
                        {"channel_name", isAssigned ? Json(contact->m_strContactChnlName.toUtf8()) : Json(nullptr)}});
    }
    return list;
}

Json toJson(const CSeegProbezk& probe, int index)
{
    return {{"index", index},
            {"name", probe.m_strProbeName.toUtf8()},
            {"type", probeTypeName(probe.m_nProbeMode)},
            {"base_mm", probe.m_dProbeBase},
            {"tip_mm", probe.m_dProbeTip},
            {"pointing_mm", probe.m_dPointing},
            {"extension_percent", probe.m_dExtension},
            {"visible", probe.m_bProbeVisible != 0},
            {"contacts", contactsOf(probe)}};
}

void writePlace(double x, double y, double z, std::ostream& out)
{
    out << std::setw(10) << x << std::setw(10) << y << std::setw(10) << z;
}

void writeContacts(const CSeegProbezk& probe, std::ostream& out)
{
    for (int i = 0; i < probe.getTotalContacts(); ++i)
        if (const CSeegContactzk* const contact = probe.m_aContacts.GetAt(i)) {
            out << std::setw(8) << i + 1;
            writePlace(contact->m_dContactX, contact->m_dContactY, contact->m_dContactZ, out);
            out << "  " << contact->m_strContactName.toUtf8();
            if (contact->m_nContactChnlID >= 0)
                out << " = " << contact->m_strContactChnlName.toUtf8();
            out << '\n';
        }
}

} // namespace

void writeProbeText(const CMDTrialzk& trial, std::ostream& out)
{
    out << "contact     x, mm     y, mm     z, mm  name = channel\n" << std::fixed << std::setprecision(2);
    for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i)
        if (const CSeegProbezk* const probe = trial.m_aSeegProbe.GetAt(i)) {
            out << "probe " << i << ' ' << probe->m_strProbeName.toUtf8() << ", type "
                << probeTypeName(probe->m_nProbeMode) << (i == currentProbe(trial) ? ", current\n" : "\n");
            writeContacts(*probe, out);
        }
}

void writeProbeJson(const CMDTrialzk& trial, int index, std::ostream& out)
{
    Json list = Json::array();
    for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i)
        if (const CSeegProbezk* const probe = trial.m_aSeegProbe.GetAt(i))
            list.push_back(toJson(*probe, i));
    const Json json = {{"trial", index}, {"current", currentProbe(trial)}, {"probes", list}};
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
