#include "apps/cli/seeg/probeNames.h"

#include <charconv>
#include <cmath>
#include <stdexcept>

namespace megset::cli {

namespace {

// The number that is the whole text; -1 where it is none.
int numberOf(const std::string& text)
{
    int number = -1;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end && number >= 0 ? number : -1;
}

std::string namesOf(const CMDTrialzk& trial)
{
    std::string names;
    for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i)
        if (const CSeegProbezk* const probe = trial.m_aSeegProbe.GetAt(i))
            names += (names.empty() ? "" : ", ") + probe->m_strProbeName.toUtf8();
    return names;
}

[[noreturn]] void failAsPlace(const std::string& text)
{
    throw std::runtime_error("\"" + text + "\" is no place X,Y,Z in mm");
}

} // namespace

int findProbe(const CMDTrialzk& trial, const std::string& name)
{
    const auto& probes = trial.m_aSeegProbe;
    for (int i = 0; i < probes.GetSize(); ++i)
        if (probes.GetAt(i) != nullptr && probes.GetAt(i)->m_strProbeName.toUtf8() == name)
            return i;
    const int index = numberOf(name);
    return index >= 0 && index < probes.GetSize() && probes.GetAt(index) != nullptr ? index : -1;
}

int probeNamed(const CMDTrialzk& trial, const std::string& name)
{
    const int index = findProbe(trial, name);
    if (index >= 0)
        return index;
    const std::string names = namesOf(trial);
    throw std::runtime_error("there is no probe " + name +
                             (names.empty() ? "; the trial has no probes" : "; the trial has " + names));
}

int contactNamed(const CSeegProbezk& probe, const std::string& name)
{
    const int count = probe.getTotalContacts();
    const std::string ofProbe = "the probe " + probe.m_strProbeName.toUtf8();
    if (count == 0)
        throw std::runtime_error(ofProbe + " has no contacts");
    for (int i = 0; i < count; ++i)
        if (probe.m_aContacts.GetAt(i) != nullptr && probe.m_aContacts.GetAt(i)->m_strContactName.toUtf8() == name)
            return i;
    const int number = numberOf(name);
    if (number < 1 || number > count || probe.m_aContacts.GetAt(number - 1) == nullptr)
        throw std::runtime_error(ofProbe + " has no contact " + name + "; its contacts are 1 to " +
                                 std::to_string(count));
    return number - 1;
}

const std::vector<std::string>& probeTypes()
{
    static const std::vector<std::string> types = [] {
        std::vector<std::string> names;
        for (const SeegProbeModel& model : g_aSeegProbeModel)
            names.push_back(model.contacts == 0 ? "user" : std::to_string(model.contacts) + "P");
        return names;
    }();
    return types;
}

std::string probeTypeName(int mode)
{
    const auto& types = probeTypes();
    return mode >= 0 && mode < std::ssize(types) ? types[static_cast<std::size_t>(mode)] : "unknown";
}

Assignment parseAssignment(const std::string& text)
{
    const std::size_t equals = text.find('=');
    const std::size_t colon = equals == std::string::npos ? equals : text.rfind(':', equals);
    if (colon == std::string::npos || colon == 0 || colon + 1 == equals || equals + 1 == text.size())
        throw std::runtime_error("\"" + text + "\" is not of the form PROBE:CONTACT=CHANNEL");
    return {text.substr(0, colon), text.substr(colon + 1, equals - colon - 1), text.substr(equals + 1)};
}

std::array<double, 3> parsePlace(const std::string& text)
{
    std::array<double, 3> place{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t axis = 0; axis < place.size(); ++axis) {
        const bool isBehindComma = axis == 0 || (at != end && *at++ == ',');
        const auto [rest, error] = std::from_chars(at, end, place[axis]);
        if (!isBehindComma || error != std::errc() || !std::isfinite(place[axis]))
            failAsPlace(text);
        at = rest;
    }
    if (at != end)
        failAsPlace(text);
    return place;
}

} // namespace megset::cli
