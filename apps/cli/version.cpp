#include "megset/platform/version.h"
#include "apps/cli/commands.h"
#include "megset/numeric/processorPath.h"

#include <string>

namespace megset::cli {

namespace {

std::string versionReport()
{
    return "megset " + std::string(megset::version()) + "\ncompiler " + megset::compiler() + "\nprocessor path " +
           std::string(numeric::processorPath());
}

} // namespace

void addVersion(CLI::App& program)
{
    program.set_version_flag("--version", versionReport, "Print version, compiler and processor path, and exit");
}

} // namespace megset::cli
