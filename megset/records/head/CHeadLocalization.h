#pragma once
// Where the head is in the dewar: the fiducials in both frames, and the transforms between them.

#include "megset/records/head/CFiducial.h"

#include <array>

namespace megset {

/// A head's place. Frames are as in CFiducial.h: x to the left, y up, z to the back, mm.
class CHeadLocalization
{
public:
    CHeadLocalization() { initDefaultHeadLocalParams(); }

    bool operator==(const CHeadLocalization&) const = default;

    /// A head that was not localised: the standard head at its standard place, where dewar and head frame agree, the
    /// standard dewar frame in use, nothing measured.
    void initDefaultHeadLocalParams();

    /// Makes the head frame of the measured dewar fiducials: its origin halves the line between the ears, x runs along
    /// it to the left ear, z away from the nasion across it, y is across both. Sets both transforms, and m_fidHeadMsr
    /// to m_fidDewarMsr in that frame. Gives 1, or 0 when the three points are on one line, with nothing changed.
    int computeDewar2Head();
    /// The point in the other frame.
    void dewar2Head(double& x, double& y, double& z) const;
    void head2Dewar(double& x, double& y, double& z) const;
    /// The direction in the other frame: turned, not moved.
    void dewar2HeadDir(double& x, double& y, double& z) const;
    void head2DewarDir(double& x, double& y, double& z) const;

    int m_nWorkCoordinate = 0;              // the frame in use: 0 dewar standard, 1 dewar measured, 2 head
    CFiducialzk m_fidDewarStd;              // standard, in the dewar
    CFiducialzk m_fidDewarMsr;              // measured, in the dewar
    CFiducialzk m_fidHeadMsr;               // measured, in head coordinates
    CFiducialzk m_fidWorkMeg;               // the working copy
    std::array<double, 16> m_dDewar2Head{}; // 4 x 4, row by row, for columns x, y, z, 1
    std::array<double, 16> m_dHead2Dewar{}; // its inverse
};

/// The file layer of a head's place.
class CHeadLocalization09File : public CHeadLocalization
{
public:
    /// Reads or writes the record "HEADLOCALIZATIONZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CHeadLocalization09File> s_versions[];
};

/// A head's place; this is the class that is made.
class CHeadLocalizationzk : public CHeadLocalization09File
{
};

} // namespace megset
