#pragma once
// Where virtual sensors lie, how they point and how they are made of the channels.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <span>
#include <vector>

namespace megset {

/// One virtual sensor: position, orientation, and the spatial filter.
struct VirtSnsPOX
{
    void exchangeFields(CArchive& ar);
    bool operator==(const VirtSnsPOX&) const = default;

    CString m_strSensorName;
    std::array<double, 3> m_dPosition = {};    ///< mm, head frame
    std::array<double, 3> m_dOrientation = {}; ///< unit vector; 0, 0, 0: unknown
    std::vector<double> m_aWeight;             ///< per channel of the list; empty: not computed yet
};

/// The virtual sensors of a dataset that were defined for spectra or for waves.
class CVirtSnsPOXlist
{
public:
    std::int64_t getTotalVirtSns() const { return static_cast<std::int64_t>(m_aVirtSns.size()); }
    /// A sensor by number, -1 for the current one; null outside.
    const VirtSnsPOX* getVirtSns(std::int64_t index) const;
    /// The sensor's value for one value per channel of the list: the sum of weight times value. noValue outside,
    /// without weights, or for another number of values.
    double virtualValue(std::int64_t index, std::span<const double> channelValues) const;

    bool operator==(const CVirtSnsPOXlist&) const = default;

    std::int64_t m_nCurrentVirtSns = 0;
    std::vector<std::int32_t> m_aChannel; ///< channel indices that the weights belong to
    std::vector<VirtSnsPOX> m_aVirtSns;
};

/// The file layer of a list of virtual sensors.
class CVirtSnsPOXlist09File : public CVirtSnsPOXlist
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CVirtSnsPOXlist09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CVirtSnsPOXlist09File> s_versions[1];
};

/// A list of virtual sensors; this is the class that is made.
class CVirtSnsPOXlistzk : public CVirtSnsPOXlist09File
{
public:
    bool operator==(const CVirtSnsPOXlistzk&) const = default;
};

} // namespace megset
