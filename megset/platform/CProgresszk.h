#pragma once

#include "megset/platform/CString.h"

#include <cstdint>

namespace megset {

class CUserHost;

/// A progress bar over from..to, shown by the host from construction to destruction. Nothing here throws: a bar that
/// can't be shown does not disturb the work. The host of the construction shows the bar to its end.
class CProgresszk
{
public:
    CProgresszk(const CString& title, std::int64_t from, std::int64_t to) noexcept;
    CProgresszk(const CProgresszk&) = delete;
    CProgresszk& operator=(const CProgresszk&) = delete;
    ~CProgresszk();

    /// A position outside the range is brought into it.
    void setPos(std::int64_t position) noexcept;
    /// One further.
    void step() noexcept;
    std::int64_t getPos() const { return m_nPos; }

private:
    CUserHost* m_pHost = nullptr; // null when the host did not take the bar
    int m_nId;
    std::int64_t m_nFrom;
    std::int64_t m_nTo;
    std::int64_t m_nPos;
};

} // namespace megset
