#pragma once

#include <cstdint>

namespace megset {

/// What a channel's geometry object is at the least. A channel owns one and destroys it through this class.
class CGeomzk
{
public:
    CGeomzk() = default;
    CGeomzk(const CGeomzk&) = default;
    CGeomzk(CGeomzk&&) = default;
    CGeomzk& operator=(const CGeomzk&) = default;
    CGeomzk& operator=(CGeomzk&&) = default;
    virtual ~CGeomzk() = default;

    bool operator==(const CGeomzk&) const = default;

    std::int64_t m_nGeomValue = 0; // carried for the application
};

} // namespace megset
