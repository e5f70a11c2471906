#pragma once
// Probes, contacts and types of probes by name.

#include "megset/core/CMDTrialzk.h"

#include <string>
#include <vector>

namespace megset::cli {

/// The probe of that name, else the one with that index; -1 for none. Places without a probe have no name.
int findProbe(const CMDTrialzk& trial, const std::string& name);
/// The same. Throws std::runtime_error that tells the names of those that are there.
int probeNamed(const CMDTrialzk& trial, const std::string& name);
/// The contact of that name, else the one of that number, the deepest being 1. Throws std::runtime_error, also for a
/// probe without contacts.
int contactNamed(const CSeegProbezk& probe, const std::string& name);

/// Short names of the types of probes by mode: "user", "8P", "10P", "12P", "16P".
const std::vector<std::string>& probeTypes();
std::string probeTypeName(int mode);

/// "PROBE:CONTACT=CHANNEL".
struct Assignment
{
    std::string probe;
    std::string contact;
    std::string channel;
};

/// The channel stands behind the first "=", the contact behind the last ":" in front of it. Throws std::runtime_error.
Assignment parseAssignment(const std::string& text);

/// "X,Y,Z", finite numbers. Throws std::runtime_error.
std::array<double, 3> parsePlace(const std::string& text);

} // namespace megset::cli
