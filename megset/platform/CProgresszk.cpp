#include "megset/platform/CProgresszk.h"

#include "megset/platform/CUserHost.h"

#include <algorithm>
#include <atomic>

namespace megset {
namespace {

std::atomic<int> lastId{0};

template <class Call>
bool succeeds(Call call) noexcept
{
    try {
        call();
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

CProgresszk::CProgresszk(const CString& title, std::int64_t from, std::int64_t to) noexcept
    : m_nId(++lastId), m_nFrom(from), m_nTo(std::max(from, to)), m_nPos(from)
{
    succeeds([&] {
        CUserHost& host = AfxGetHost();
        host.beginProgress(m_nId, title, m_nFrom, m_nTo);
        m_pHost = &host;
    });
}

CProgresszk::~CProgresszk()
{
    if (m_pHost != nullptr)
        succeeds([this] { m_pHost->endProgress(m_nId); });
}

void CProgresszk::setPos(std::int64_t position) noexcept
{
    m_nPos = std::clamp(position, m_nFrom, m_nTo);
    if (m_pHost != nullptr)
        succeeds([this] { m_pHost->setProgress(m_nId, m_nPos); });
}

void CProgresszk::step() noexcept
{
    setPos(m_nPos < m_nTo ? m_nPos + 1 : m_nTo);
}

} // namespace megset
