#pragma once
// The SEEG probes of a trial, as the command line tells them.

#include "megset/core/CMDTrialzk.h"

#include <iosfwd>

namespace megset::cli {

void writeProbeText(const CMDTrialzk& trial, std::ostream& out);
/// A JSON object with the keys of docs/commands.md; `index` is the trial's.
void writeProbeJson(const CMDTrialzk& trial, int index, std::ostream& out);

} // namespace megset::cli
