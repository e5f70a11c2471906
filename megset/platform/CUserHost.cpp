#include "megset/platform/CUserHost.h"

#include "megset/platform/CConsoleHost.h"

#include <atomic>

namespace megset {
namespace {

std::atomic<CUserHost*> currentHost{nullptr};

// Never destroyed, so that threads and destructors that run at the end of the process can still speak.
CUserHost& defaultHost()
{
    static CUserHost& host = *new CConsoleHost;
    return host;
}

} // namespace

CUserHost* AfxSetHost(CUserHost* host)
{
    return currentHost.exchange(host);
}

CUserHost& AfxGetHost()
{
    CUserHost* host = currentHost.load();
    return host != nullptr ? *host : defaultHost();
}

} // namespace megset
