#pragma once
// Fiducial points of the head: the landmarks that tie the head's frame to another.
//
// In every frame here x points to the left, y up and z to the back, in mm. Coordinates are those of the standard
// electrode tables.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"

#include <array>

namespace megset {

/// One landmark.
class CFiduciaryPt
{
public:
    bool operator==(const CFiduciaryPt&) const = default;

    void getFidPos(double& x, double& y, double& z) const;
    void setFidPos(double x, double y, double z);

    CString m_strFidName;
    std::array<double, 4> m_dFidPos{0.0, 0.0, 0.0, 1.0}; // x, y, z in mm, w
    double m_dFidSize = 5.0;                             // mm, as drawn
    int m_nFidFound = 0;                                 // the position was measured
    int m_nFidShow = 1;
};

/// The file layer of a landmark.
class CFiduciaryPt9File : public CFiduciaryPt
{
public:
    /// Reads or writes the record "FIDUCIARYPTZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFiduciaryPt9File> s_versions[];
};

/// A landmark; this is the class that is made.
class CFiduciaryPtzk : public CFiduciaryPt9File
{
};

/// The six landmarks of a head. A new set has their names and no positions.
class CFiducial
{
public:
    /// The landmarks by number.
    enum Point : int
    {
        nasion,
        leftEar,
        rightEar,
        inion,
        vertex,
        forehead,
        pointCount
    };

    CFiducial();

    bool operator==(const CFiducial&) const = default;

    /// The landmark with that number, null outside 0 to 5.
    CFiduciaryPtzk* getFiducialPt(int point);
    const CFiduciaryPtzk* getFiducialPt(int point) const;
    /// Sets a landmark up, -1 all of them: its name, and its place on the standard head, not measured. The names hold
    /// the common short and long words, so that a list's "nasion", "Nz", "LPA" or "Cz" occurs inside. Gives 1, or 0 for
    /// another number.
    int setUpFiducialPoint(int point);
    /// Number of landmarks that were measured.
    int getTotalFound() const;

    std::array<CFiduciaryPtzk, pointCount> m_aFidPt;
    int m_nCurrentFid = 0;
    int m_nFidSetShow = 1;

private:
    static CString standardName(int point);
};

/// The file layer of a set of landmarks.
class CFiducial9File : public CFiducial
{
public:
    /// Reads or writes the record "FIDUCIALZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFiducial9File> s_versions[];
};

/// A set of landmarks; this is the class that is made.
class CFiducialzk : public CFiducial9File
{
};

} // namespace megset
