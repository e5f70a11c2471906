#pragma once
// Extents of a trial's sensors, in space and on the plane of a map.

#include "megset/platform/formatVersion.h"

#include <cstdint>

namespace megset {

/// Extents in mm.
class CContourMap2DInfo
{
public:
    bool operator==(const CContourMap2DInfo&) const = default;

    double m_dXmin = 0.0; // of the sensors
    double m_dXmax = 0.0;
    double m_dYmin = 0.0;
    double m_dYmax = 0.0;
    double m_dZmin = 0.0;
    double m_dZmax = 0.0;
    double m_dPlaneXmin = 0.0; // of their places on the plane
    double m_dPlaneXmax = 0.0;
    double m_dPlaneYmin = 0.0;
    double m_dPlaneYmax = 0.0;
    double m_dPlaneScale = 0.0;      // the last scale applied; 0 none
    std::int64_t m_nContourWord = 0; // carried for the application; no file holds it, and loading leaves it
};

/// The file layer of the extents of a trial's sensors.
class CContourMap2DInfo09File : public CContourMap2DInfo
{
public:
    /// Reads or writes the record "CONTOURMAP2DINFOZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);
    /// Reads or writes the eleven doubles alone, as a trial's file has them.
    void exchangeExtents(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CContourMap2DInfo09File> s_versions[];
};

/// Extents of a trial's sensors; this is the class that is made.
class CContourMap2DInfozk : public CContourMap2DInfo09File
{
};

} // namespace megset
