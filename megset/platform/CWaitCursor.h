#pragma once

namespace megset {

class CUserHost;

/// Shows the wait cursor while it lives; wait cursors nest. Nothing here throws. The host of the construction also
/// ends it.
class CWaitCursor
{
public:
    CWaitCursor() noexcept;
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    ~CWaitCursor();

private:
    CUserHost* m_pHost = nullptr; // null when the host did not begin
};

} // namespace megset
