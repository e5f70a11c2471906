#pragma once
// The filter, DC offset and linear trend settings of a dataset.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"

#include <cstdint>

namespace megset {

/// What the caller's filtering goes by. A setting holds frequencies also for a filter that is off.
class CFilterDcLtSetting
{
public:
    bool operator==(const CFilterDcLtSetting&) const = default;

    int m_bFiltLowPass = 0;
    int m_bFiltHighPass = 0;
    int m_bFiltBand = 0;
    double m_dFiltLowPassHz = 70.0;
    double m_dFiltHighPassHz = 1.0;
    double m_dFiltBandLowHz = 1.0;
    double m_dFiltBandHighHz = 70.0;
    int m_nFiltOrder = 4;           // of one pass
    int m_bFiltZeroPhase = 1;       // forward, then backward
    int m_bFiltNotch = 0;           // power line and its multiples
    double m_dFiltNotchHz = 50.0;   // of the line
    double m_dFiltNotchWidth = 2.0; // Hz
    int m_bDcOffset = 0;            // subtract the mean
    int m_bLinearTrend = 0;         // subtract the line of least squares
    int m_nDcLtRange = 0; // samples that mean and line are taken of: 0 all, 1 before the trigger, 2 the two below
    std::int64_t m_nDcLtBegin = 0; // first sample
    std::int64_t m_nDcLtEnd = 0;   // last sample
};

/// The file layer of the filter settings.
class CFilterDcLtSetting09File : public CFilterDcLtSetting
{
public:
    /// Reads or writes the record "FILTERDCLTZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFilterDcLtSetting09File> s_versions[];
};

/// The filter settings; this is the class that is made.
class CFilterDcLtSettingzk : public CFilterDcLtSetting09File
{
};

} // namespace megset
